#include <gmock/gmock.h>

#include <string>

#include "support/Component.h"
#include "support/IniText.h"

namespace zeq::test {
namespace {

constexpr HRESULT overflow = static_cast<HRESULT>(0x800A0006);
constexpr HRESULT objectNotSet = static_cast<HRESULT>(0x800A005B);
constexpr DATE newYear1996 = 35065;

struct Numbers {
  long major = 0;
  long minor = 0;
  long revision = 0;
  bool operator==(const Numbers&) const = default;
};

class CVersionInfoTest : public testing::Test {
 protected:
  static void setNumbers(_CVersionInfo& object, Numbers numbers) {
    EXPECT_EQ(object.put_VerMajor(numbers.major), S_OK);
    EXPECT_EQ(object.put_VerMinor(numbers.minor), S_OK);
    EXPECT_EQ(object.put_Revision(numbers.revision), S_OK);
  }
  Numbers numbers() {
    Numbers result;
    EXPECT_EQ(version->get_VerMajor(&result.major), S_OK);
    EXPECT_EQ(version->get_VerMinor(&result.minor), S_OK);
    EXPECT_EQ(version->get_Revision(&result.revision), S_OK);
    return result;
  }
  DATE date() {
    DATE result = -1;
    EXPECT_EQ(version->get_CreationDate(&result), S_OK);
    return result;
  }
  std::wstring itemName() {
    Bstr result;
    EXPECT_EQ(version->get_ItemName(result.out()), S_OK);
    return std::wstring(result.view());
  }
  std::wstring description() {
    Bstr result;
    EXPECT_EQ(version->get_description(result.out()), S_OK);
    return std::wstring(result.view());
  }
  bool isLaterThan(Numbers other) {
    VARIANT_BOOL result = 7;
    EXPECT_EQ(version->IsLaterThan(&other.major, &other.minor, &other.revision, &result), S_OK);
    return result != VARIANT_FALSE;
  }
  bool isEqualTo(Numbers other) {
    VARIANT_BOOL result = 7;
    EXPECT_EQ(version->IsEqualTo(&other.major, &other.minor, &other.revision, &result), S_OK);
    return result != VARIANT_FALSE;
  }
  HRESULT read(std::wstring_view section = {}) {
    answer = 7;
    return version->ReadFromIniFile(TextArgument(ini.path()), TextArgument(section), &answer);
  }
  /// Reads a VERSION section with these lines.
  void readLines(std::string_view lines) {
    ini.write("[VERSION]\r\n" + std::string(lines));
    EXPECT_EQ(read(), S_OK);
    EXPECT_EQ(answer, VARIANT_TRUE);
  }

  IniText ini;
  ComPtr<_CVersionInfo> version = create<CVersionInfo, _CVersionInfo>();
  VARIANT_BOOL answer = VARIANT_FALSE;
};

TEST_F(CVersionInfoTest, StartsClear) {
  EXPECT_EQ(numbers(), (Numbers{0, 0, 0}));
  EXPECT_EQ(date(), 0);
  EXPECT_EQ(itemName(), L"");
  EXPECT_EQ(description(), L"");
}

TEST_F(CVersionInfoTest, KeepsItsFieldsUntilCleared) {
  setNumbers(*version.get(), {100000, -2, 3});
  EXPECT_EQ(version->put_CreationDate(36526.5), S_OK);
  EXPECT_EQ(version->put_ItemName(Bstr(L"Editor").get()), S_OK);
  EXPECT_EQ(version->put_description(Bstr(L"a text").get()), S_OK);
  EXPECT_EQ(numbers(), (Numbers{100000, -2, 3}));
  EXPECT_EQ(date(), 36526.5);
  EXPECT_EQ(itemName(), L"Editor");
  EXPECT_EQ(description(), L"a text");
  EXPECT_EQ(version->Clear(), S_OK);
  EXPECT_EQ(numbers(), (Numbers{0, 0, 0}));
  EXPECT_EQ(date(), 0);
  EXPECT_EQ(itemName(), L"");
  EXPECT_EQ(description(), L"");
}

TEST_F(CVersionInfoTest, IsEqualToComparesTheNumbersOnly) {
  setNumbers(*version.get(), {1, 2, 3});
  version->put_ItemName(Bstr(L"Editor").get());
  version->put_CreationDate(1);
  version->put_description(Bstr(L"a text").get());
  EXPECT_TRUE(isEqualTo({1, 2, 3}));
  EXPECT_FALSE(isEqualTo({0, 2, 3}));
  EXPECT_FALSE(isEqualTo({1, 0, 3}));
  EXPECT_FALSE(isEqualTo({1, 2, 0}));
}

TEST_F(CVersionInfoTest, IsLaterThanComparesMajorMinorRevision) {
  struct Case {
    Numbers own;
    bool later;
  };
  for (const auto& [own, later] :
       {Case{{1, 2, 3}, false}, Case{{1, 2, 4}, true}, Case{{1, 3, 0}, true}, Case{{2, 0, 0}, true},
        Case{{0, 9, 9}, false}, Case{{1, 2, 2}, false}, Case{{1, 1, 9}, false}}) {
    setNumbers(*version.get(), own);
    EXPECT_EQ(isLaterThan({1, 2, 3}), later) << own.major << own.minor << own.revision;
  }
}

TEST_F(CVersionInfoTest, IsLaterThanVerReadsTheOtherVersion) {
  const auto other = create<CVersionInfo, _CVersionInfo>();
  setNumbers(*other.get(), {1, 2, 3});
  other->put_CreationDate(100);
  setNumbers(*version.get(), {1, 2, 4});
  _CVersionInfo* argument = other.get();
  EXPECT_EQ(version->IsLaterThanVer(&argument, &answer), S_OK);
  EXPECT_EQ(answer, VARIANT_TRUE);
  argument = version.get();
  EXPECT_EQ(other->IsLaterThanVer(&argument, &answer), S_OK);
  EXPECT_EQ(answer, VARIANT_FALSE);
  EXPECT_EQ(version->IsLaterThanVer(&argument, &answer), S_OK);
  EXPECT_EQ(answer, VARIANT_FALSE);
}

TEST_F(CVersionInfoTest, IsLaterThanVerOfNothingIsAnError) {
  _CVersionInfo* nothing = nullptr;
  EXPECT_EQ(version->IsLaterThanVer(&nothing, &answer), objectNotSet);
  EXPECT_EQ(version->IsLaterThanVer(nullptr, &answer), objectNotSet);
  const Outcome outcome = Late(version).call(L"IsLaterThanVer", Variant(static_cast<IDispatch*>(nullptr)));
  EXPECT_EQ(outcome.code, DISP_E_EXCEPTION);
  EXPECT_EQ(outcome.scode, objectNotSet);
  EXPECT_EQ(outcome.description, L"Object variable or With block variable not set");
}

TEST_F(CVersionInfoTest, ReadsARecord) {
  readLines(
      "ItemName= Editor \r\nCreationDate=2/3/2001\r\nVerMajor= 3 \r\nVerMinor=14\r\nRevision=-5\r\n"
      "Description=\"a text\"\r\n");
  EXPECT_EQ(itemName(), L"Editor");
  EXPECT_EQ(numbers(), (Numbers{3, 14, -5}));
  EXPECT_EQ(description(), L"a text");
  DATE expected = 0;
  ASSERT_EQ(VarDateFromStr(Bstr(L"2/3/2001").get(), LOCALE_USER_DEFAULT, 0, &expected), S_OK);
  EXPECT_EQ(date(), expected);
}

TEST_F(CVersionInfoTest, BlanksInsideQuotesAreRemoved) {
  readLines("ItemName=\"  Editor  \"\r\nVerMajor=\" 3 \"\r\nDescription=\"  a text \"\r\n");
  EXPECT_EQ(itemName(), L"Editor");
  EXPECT_EQ(numbers().major, 3);
  EXPECT_EQ(description(), L"a text");
}

TEST_F(CVersionInfoTest, WhatIsMissingReadsAsVersion111) {
  version->put_ItemName(Bstr(L"before").get());
  version->put_description(Bstr(L"before").get());
  for (const char* content : {"", "[Other]\r\nVerMajor=9\r\n", "[VERSION]\r\n"}) {
    setNumbers(*version.get(), {7, 8, 9});
    ini.write(content);
    EXPECT_EQ(read(), S_OK);
    EXPECT_EQ(answer, VARIANT_TRUE);
    EXPECT_EQ(numbers(), (Numbers{1, 1, 1}));
    EXPECT_EQ(date(), newYear1996);
    EXPECT_EQ(itemName(), L"");
    EXPECT_EQ(description(), L"");
  }
  EXPECT_EQ(version->ReadFromIniFile(TextArgument(L"C:\\no such folder\\x.ini"), TextArgument(L""), &answer),
            S_OK);
  EXPECT_EQ(answer, VARIANT_TRUE);
  EXPECT_EQ(numbers(), (Numbers{1, 1, 1}));
}

TEST_F(CVersionInfoTest, WithoutAFileNameTheReaderAnswersNothing) {
  setNumbers(*version.get(), {7, 8, 9});
  EXPECT_EQ(version->ReadFromIniFile(TextArgument(L""), TextArgument(L""), &answer), S_OK);
  EXPECT_EQ(answer, VARIANT_TRUE);
  EXPECT_EQ(numbers(), (Numbers{7, 8, 9}));
  EXPECT_EQ(date(), 0);
}

TEST_F(CVersionInfoTest, ReadsAnotherSection) {
  ini.write("[VERSION]\r\nVerMajor=1\r\n[Data]\r\nVerMajor=5\r\n");
  EXPECT_EQ(read(L"Data"), S_OK);
  EXPECT_EQ(numbers().major, 5);
  EXPECT_EQ(read(), S_OK);
  EXPECT_EQ(numbers().major, 1);
}

TEST_F(CVersionInfoTest, WhatIsNoNumberOrDateIsNotStored) {
  setNumbers(*version.get(), {7, 8, 9});
  version->put_CreationDate(36526);
  readLines("CreationDate=some day\r\nVerMajor=abc\r\nVerMinor=\r\nRevision=1.2.3\r\n");
  EXPECT_EQ(numbers(), (Numbers{7, 8, 9}));
  EXPECT_EQ(date(), 36526);
}

TEST_F(CVersionInfoTest, NumbersAreRoundedWithHalvesToEven) {
  readLines("VerMajor=2.5\r\nVerMinor=3.5\r\nRevision=2.500001\r\n");
  EXPECT_EQ(numbers(), (Numbers{2, 4, 3}));
  readLines("VerMajor=-2.5\r\nVerMinor=1e2\r\nRevision=32767.4\r\n");
  EXPECT_EQ(numbers(), (Numbers{-2, 100, 32767}));
}

TEST_F(CVersionInfoTest, NumbersBeyond16BitsOverflowAfterTheEarlierFields) {
  for (const char* number : {"40000", "32768", "-32769", "32767.5", "1e300"}) {
    version->Clear();
    version->put_description(Bstr(L"before").get());
    ini.write(std::string("[VERSION]\r\nItemName=Editor\r\nVerMajor=2\r\nVerMinor=") + number +
              "\r\nRevision=3\r\nDescription=after\r\n");
    EXPECT_EQ(read(), overflow) << number;
    EXPECT_EQ(answer, VARIANT_FALSE);
    EXPECT_EQ(itemName(), L"Editor");
    EXPECT_EQ(date(), newYear1996);
    EXPECT_EQ(numbers(), (Numbers{2, 0, 0}));
    EXPECT_EQ(description(), L"before");
  }
  readLines("VerMajor=32767\r\nVerMinor=-32768\r\n");
  EXPECT_EQ(numbers(), (Numbers{32767, -32768, 1}));
}

TEST_F(CVersionInfoTest, DatesAreThoseOfTheUsersLocale) {
  SYSTEMTIME day{.wYear = 2001,
                 .wMonth = 12,
                 .wDayOfWeek = 0,
                 .wDay = 24,
                 .wHour = 0,
                 .wMinute = 0,
                 .wSecond = 0,
                 .wMilliseconds = 0};
  std::string shortForm(80, '\0');
  const int length = GetDateFormatA(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &day, nullptr, shortForm.data(),
                                    static_cast<int>(shortForm.size()));
  ASSERT_GT(length, 1);
  shortForm.resize(static_cast<std::size_t>(length - 1));
  readLines("CreationDate=" + shortForm + "\r\n");
  EXPECT_EQ(date(), 37249);
  readLines("CreationDate=#" + shortForm + "#\r\n");
  EXPECT_EQ(date(), 37249);
  readLines("CreationDate=#01/01/1996#\r\n");
  EXPECT_EQ(date(), newYear1996);
}

TEST_F(CVersionInfoTest, AKeyThatIsListedTwiceIsAnErrorOfTheReader) {
  ini.write("[VERSION]\r\nVerMajor=1\r\nVerMajor=2\r\n");
  EXPECT_EQ(read(), static_cast<HRESULT>(0x800A01C9));
}

TEST_F(CVersionInfoTest, ScriptsUseItByName) {
  ini.write("[VERSION]\r\nVerMajor=2\r\nVerMinor=1\r\nRevision=0\r\nDescription=text\r\n");
  const Late late(version);
  EXPECT_EQ(late.get(L"ReadFromIniFile", Variant(ini.path())).get().boolVal, VARIANT_TRUE);
  EXPECT_EQ(late.get(L"CreationDate").type(), VT_DATE);
  EXPECT_EQ(textIn(late.get(L"description")), L"text");
  EXPECT_EQ(late.get(L"IsEqualTo", Variant(2L), Variant(1L), Variant(0L)).get().boolVal, VARIANT_TRUE);
  EXPECT_EQ(late.get(L"IsLaterThan", Variant(L"2"), Variant(short{0}), Variant(5.0)).get().boolVal,
            VARIANT_TRUE);
  const auto other = create<CVersionInfo, _CVersionInfo>();
  EXPECT_EQ(late.get(L"IsLaterThanVer", Variant(other.get())).get().boolVal, VARIANT_TRUE);
}

}  // namespace
}  // namespace zeq::test
