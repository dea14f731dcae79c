#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "support/Component.h"
#include "support/IniText.h"

namespace zeq::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr HRESULT duplicateKey = static_cast<HRESULT>(0x800A01C9);

class CIniFileTest : public testing::Test {
 protected:
  void open(std::wstring_view path) { ASSERT_EQ(reader->Create(TextArgument(path)), S_OK); }
  void openFile(std::string_view content) {
    file.write(content);
    open(file.path());
  }
  HRESULT setSection(std::wstring_view name) { return reader->put_section(Bstr(name).get()); }
  std::wstring section() {
    Bstr result;
    EXPECT_EQ(reader->get_section(result.out()), S_OK);
    return std::wstring(result.view());
  }
  std::wstring fileName() {
    Bstr result;
    EXPECT_EQ(reader->get_FileName(result.out()), S_OK);
    return std::wstring(result.view());
  }
  ComPtr<_Collection> keyCollection() {
    ComPtr<_Collection> result;
    EXPECT_EQ(reader->get_Keys(result.out()), S_OK);
    return result;
  }
  std::vector<std::wstring> keys() {
    const auto collection = keyCollection();
    long count = 0;
    EXPECT_EQ(collection->get_Count(&count), S_OK);
    std::vector<std::wstring> result;
    for (long position = 1; position <= count; ++position) {
      Variant item;
      EXPECT_EQ(collection->get_Item(Variant(position).get(), item.out()), S_OK);
      result.push_back(textIn(item));
    }
    return result;
  }
  std::wstring getString(std::wstring_view key, std::wstring_view sectionName = {},
                         std::wstring_view fallback = {}) {
    Bstr result;
    EXPECT_EQ(
        reader->GetString(TextArgument(key), TextArgument(sectionName), TextArgument(fallback), result.out()),
        S_OK);
    return std::wstring(result.view());
  }
  /// What the system itself reads, converted.
  std::wstring platform(const char* sectionName, const char* key, const char* fallback = "") {
    return wide(file.platformValue(sectionName, key, fallback));
  }
  std::vector<std::wstring> platformKeys(const char* sectionName) {
    const std::string list = file.platformValue(sectionName, nullptr);
    std::vector<std::wstring> result;
    for (std::size_t at = 0; at < list.size(); at = list.find('\0', at) + 1) {
      result.push_back(wide(list.c_str() + at));
    }
    return result;
  }

  IniText file;
  ComPtr<_CIniFile> reader = create<CIniFile, _CIniFile>();
};

TEST_F(CIniFileTest, StartsEmpty) {
  EXPECT_EQ(fileName(), L"");
  EXPECT_EQ(section(), L"");
  EXPECT_THAT(keys(), IsEmpty());
}

TEST_F(CIniFileTest, CreateNamesAFileThatNeedNotExist) {
  open(L"C:\\no such folder\\no such file.ini");
  EXPECT_EQ(fileName(), L"C:\\no such folder\\no such file.ini");
  EXPECT_EQ(setSection(L"General"), S_OK);
  EXPECT_THAT(keys(), IsEmpty());
  EXPECT_EQ(getString(L"Name"), L"");
  EXPECT_EQ(getString(L"Name", L"", L"fallback"), L"fallback");
  EXPECT_EQ(GetFileAttributesW(L"C:\\no such folder"), INVALID_FILE_ATTRIBUTES);
}

TEST_F(CIniFileTest, ReadsNothingBeforeASectionIsSet) {
  openFile("[]\r\nName=no section\r\n[General]\r\nName=x\r\n");
  EXPECT_EQ(getString(L"Name", L"", L"fallback"), L"");
  EXPECT_EQ(section(), L"");
}

TEST_F(CIniFileTest, ReadsValuesOfTheCurrentSection) {
  openFile("[General]\r\nName = Alpha \r\n[Other]\r\nName=Beta\r\n");
  ASSERT_EQ(setSection(L"General"), S_OK);
  EXPECT_EQ(getString(L"Name"), L"Alpha");
  EXPECT_EQ(getString(L"nAME"), L"Alpha");
}

TEST_F(CIniFileTest, SectionNameBecomesTheCurrentSection) {
  openFile("[General]\r\nName=Alpha\r\n[Other]\r\nName=Beta\r\nSize=2\r\n");
  ASSERT_EQ(setSection(L"General"), S_OK);
  EXPECT_EQ(getString(L"Name", L"Other"), L"Beta");
  EXPECT_EQ(section(), L"Other");
  EXPECT_THAT(keys(), ElementsAre(L"Name", L"Size"));
  EXPECT_EQ(getString(L"Size"), L"2");
}

TEST_F(CIniFileTest, EmptyKeyReadsNothingButStillSelectsTheSection) {
  openFile("[General]\r\nName=Alpha\r\n");
  EXPECT_EQ(getString(L"", L"General", L"fallback"), L"");
  EXPECT_EQ(section(), L"General");
  EXPECT_THAT(keys(), ElementsAre(L"Name"));
}

TEST_F(CIniFileTest, WithoutAFileNameNothingIsRead) {
  EXPECT_EQ(getString(L"Name", L"General", L"fallback"), L"");
  EXPECT_EQ(section(), L"General");
  EXPECT_THAT(keys(), IsEmpty());
}

TEST_F(CIniFileTest, MissingKeyGivesTheDefault) {
  openFile("[General]\r\nName=Alpha\r\nEmpty=\r\n");
  ASSERT_EQ(setSection(L"General"), S_OK);
  EXPECT_EQ(getString(L"Missing", L"", L"x"), L"x");
  EXPECT_EQ(getString(L"Missing"), L"");
  EXPECT_EQ(getString(L"Empty", L"", L"x"), platform("General", "Empty", "x"));
  EXPECT_EQ(getString(L"Name", L"No such section", L"x"), L"x");
}

TEST_F(CIniFileTest, KeysStandInFileOrderUnderTheirNames) {
  openFile("[General]\r\nc=3\r\na=1\r\nb=2\r\n");
  ASSERT_EQ(setSection(L"General"), S_OK);
  EXPECT_THAT(keys(), ElementsAre(L"c", L"a", L"b"));
  Variant item;
  EXPECT_EQ(keyCollection()->get_Item(Variant(L"A").get(), item.out()), S_OK);
  EXPECT_EQ(textIn(item), L"a");
}

TEST_F(CIniFileTest, KeysIsTheReadersOwnCollection) {
  openFile("[General]\r\na=1\r\n[Other]\r\nb=2\r\n");
  const auto collection = keyCollection();
  ASSERT_EQ(setSection(L"General"), S_OK);
  EXPECT_EQ(keyCollection().get(), collection.get());
  const Variant missing = Variant::missing();
  ASSERT_EQ(collection->Add(Variant(L"added").get(), missing.get(), missing.get(), missing.get()), S_OK);
  EXPECT_THAT(keys(), ElementsAre(L"a", L"added"));
  ASSERT_EQ(setSection(L"Other"), S_OK);
  EXPECT_THAT(keys(), ElementsAre(L"b"));
}

TEST_F(CIniFileTest, TheSameSectionIsReadOnce) {
  openFile("[General]\r\na=1\r\n");
  ASSERT_EQ(setSection(L"General"), S_OK);
  file.write("[General]\r\na=1\r\nb=2\r\n");
  ASSERT_EQ(setSection(L"General"), S_OK);
  EXPECT_THAT(keys(), ElementsAre(L"a"));
  ASSERT_EQ(setSection(L"general"), S_OK);
  EXPECT_EQ(section(), L"general");
  EXPECT_THAT(keys(), ElementsAre(L"a", L"b"));
}

TEST_F(CIniFileTest, AnotherFileShowsInKeysWithTheNextSection) {
  openFile("[General]\r\na=1\r\n[Other]\r\nx=1\r\n");
  ASSERT_EQ(setSection(L"General"), S_OK);
  const IniText second("[General]\r\nb=2\r\n[Other]\r\ny=2\r\n");
  ASSERT_EQ(reader->put_FileName(TextArgument(second.path())), S_OK);
  EXPECT_EQ(fileName(), second.path());
  EXPECT_THAT(keys(), ElementsAre(L"a"));
  EXPECT_EQ(getString(L"b"), L"2");
  ASSERT_EQ(setSection(L"Other"), S_OK);
  EXPECT_THAT(keys(), ElementsAre(L"y"));
}

TEST_F(CIniFileTest, EmptySectionNameHasNoKeys) {
  openFile("[General]\r\na=1\r\n");
  ASSERT_EQ(setSection(L"General"), S_OK);
  ASSERT_EQ(setSection(L""), S_OK);
  EXPECT_EQ(section(), L"");
  EXPECT_THAT(keys(), IsEmpty());
}

TEST_F(CIniFileTest, AKeyThatIsListedTwiceIsAnError) {
  openFile("[General]\r\na=1\r\nb=2\r\nA=3\r\nc=4\r\n");
  ASSERT_THAT(platformKeys("General"), ElementsAre(L"a", L"b", L"A", L"c"));
  EXPECT_EQ(setSection(L"General"), duplicateKey);
  EXPECT_EQ(section(), L"General");
  EXPECT_THAT(keys(), ElementsAre(L"a", L"b"));
  // The section is current now, so that reading goes on without another look at its keys.
  EXPECT_EQ(getString(L"a"), platform("General", "a"));
  EXPECT_EQ(getString(L"c"), L"4");

  setSection(L"");
  Bstr result;
  EXPECT_EQ(reader->GetString(TextArgument(L"c"), TextArgument(L"General"), TextArgument(L""), result.out()),
            duplicateKey);
  EXPECT_EQ(result.view(), L"");
}

TEST_F(CIniFileTest, ReadsTheFormatAsTheSystemDoes) {
  openFile(
      "Name=before any section\r\n"
      "; Name=a comment\r\n"
      "[General]\r\n"
      "  Name  =  spaces around both  \r\n"
      ";Name=another comment\r\n"
      "Quoted=\"in double quotes\"\r\n"
      "Single='in single quotes'\r\n"
      "Half=\"only one\r\n"
      "Spaced=\"  kept  \"\r\n"
      "Equals=a=b=c\r\n"
      "Lonely\r\n"
      "Remark=text ; not a comment\r\n"
      "  [Indented]  \r\n"
      "Inside=1\r\n"
      "[Twice]\r\nFirst=1\r\n[Between]\r\nx=1\r\n[twice]\r\nFirst=2\r\nSecond=2\r\n");
  EXPECT_EQ(getString(L"Name", L"General"), L"spaces around both");
  EXPECT_EQ(getString(L"Quoted"), L"in double quotes");
  EXPECT_EQ(getString(L"Equals"), L"a=b=c");
  EXPECT_EQ(getString(L"; Name"), L"");
  for (const char* key : {"Single", "Half", "Spaced", "Lonely", "Remark"}) {
    EXPECT_EQ(getString(wide(key), L"", L"none"), platform("General", key, "none")) << key;
  }
  for (const char* name : {"General", "Indented", "Twice", "TWICE"}) {
    ASSERT_EQ(setSection(wide(name)), S_OK);
    EXPECT_EQ(keys(), platformKeys(name)) << name;
    EXPECT_EQ(getString(L"First", L"", L"none"), platform(name, "First", "none")) << name;
    EXPECT_EQ(getString(L"Second", L"", L"none"), platform(name, "Second", "none")) << name;
    EXPECT_EQ(getString(L"Inside", L"", L"none"), platform(name, "Inside", "none")) << name;
  }
}

TEST_F(CIniFileTest, ReadsLongValuesWhole) {
  for (const unsigned length :
       {1U, 253U, 254U, 255U, 256U, 300U, 509U, 510U, 511U, 512U, 8190U, 8191U, 16381U, 16382U, 16383U}) {
    const std::string value(length, 'v');
    openFile("[General]\r\nName=" + value + "\r\n");
    EXPECT_EQ(getString(L"Name", L"General"), wide(value)) << length;
  }
}

TEST_F(CIniFileTest, CutsAValueThatTheLargestBufferCannotHold) {
  for (const unsigned length : {16384U, 20000U, 40000U}) {
    openFile("[General]\r\nName=" + std::string(length, 'v') + "\r\n");
    EXPECT_EQ(getString(L"Name", L"General").size(), 16383U) << length;
    EXPECT_EQ(getString(L"Name"), wide(file.platformValue("General", "Name", "", 16384)));
  }
}

TEST_F(CIniFileTest, ReadsALongDefaultWhole) {
  openFile("[General]\r\nName=x\r\n");
  const std::wstring fallback(3000, L'd');
  EXPECT_EQ(getString(L"Missing", L"General", fallback), fallback);
}

TEST_F(CIniFileTest, ReadsAValueOfControlCharacters) {
  const std::string value(300, '\1');
  openFile("[General]\r\nName=" + value + "\r\n");
  EXPECT_EQ(getString(L"Name", L"General"), wide(value));
}

TEST_F(CIniFileTest, ListsTheKeysOfABigSection) {
  std::string content = "[General]\r\n";
  std::vector<std::wstring> expected;
  for (int i = 0; i < 700; ++i) {
    const std::string key = "Key number " + std::to_string(i);
    content += key + "=1\r\n";
    expected.push_back(wide(key));
  }
  openFile(content);
  ASSERT_EQ(setSection(L"General"), S_OK);
  EXPECT_EQ(keys(), expected);
}

TEST_F(CIniFileTest, ListsOnlyTheKeysThatTheLargestBufferHolds) {
  std::string content = "[General]\r\n";
  for (int i = 0; i < 2000; ++i) {
    content += "Key number " + std::to_string(i) + "=1\r\n";
  }
  openFile(content);
  const std::string list = file.platformValue("General", nullptr, "", 16384);
  ASSERT_EQ(setSection(L"General"), S_OK);
  const auto listed = keys();
  EXPECT_EQ(listed.size(), static_cast<std::size_t>(std::count(list.begin(), list.end(), '\0')) +
                               (list.back() == '\0' ? 0U : 1U));
  EXPECT_EQ(listed.front(), L"Key number 0");
}

TEST_F(CIniFileTest, ReadsAFileOf60000Bytes) {
  std::string content;
  for (int i = 0; content.size() < 60000; ++i) {
    content += "[Section " + std::to_string(i) + "]\r\nName=value " + std::to_string(i) + "\r\n";
  }
  openFile(content + "[Last]\r\nName=last value\r\n");
  EXPECT_EQ(getString(L"Name", L"Section 1000"), L"value 1000");
  EXPECT_EQ(getString(L"Name", L"Last"), L"last value");
}

TEST_F(CIniFileTest, TextIsInTheNarrowCodePage) {
  openFile(
      "[Gr\xFC\xDF"
      "e]\r\nCaf\xE9=na\xEFve\r\n?mega=substitute\r\n");
  const std::wstring name = wide(
      "Gr\xFC\xDF"
      "e");
  EXPECT_EQ(getString(wide("Caf\xE9"), name), wide("na\xEFve"));
  EXPECT_THAT(keys(), ElementsAre(wide("Caf\xE9"), L"?mega"));
  // A character that the code page lacks is looked for as its substitute.
  EXPECT_EQ(getString(L"\x4E2Dmega"), platform("Gr\xFC\xDF"
                                               "e",
                                               narrow(L"\x4E2Dmega").c_str()));
  EXPECT_EQ(getString(L"Missing", L"", L"\x4E2D"), wide(narrow(L"\x4E2D")));
}

TEST_F(CIniFileTest, TheSystemSeesTextsUpToTheFirstNul) {
  openFile("[General]\r\nNa=short\r\n");
  using namespace std::literals;
  EXPECT_EQ(getString(L"Na\0me"sv, L"General\0x"sv, L"d\0e"sv), L"short");
  EXPECT_EQ(section(), L"General\0x"sv);
  EXPECT_EQ(getString(L"Missing", L"", L"d\0e"sv), L"d");
}

TEST_F(CIniFileTest, ReadsAReadOnlyFile) {
  openFile("[General]\r\nName=x\r\n");
  file.setReadOnly();
  EXPECT_EQ(getString(L"Name", L"General"), L"x");
  EXPECT_EQ(file.content(), "[General]\r\nName=x\r\n");
}

TEST_F(CIniFileTest, ANameWithoutAFolderMeansTheWindowsFolder) {
  std::array<wchar_t, MAX_PATH> folder{};
  GetWindowsDirectoryW(folder.data(), MAX_PATH);
  const std::wstring path = std::wstring(folder.data()) + L"\\zequtility2 test.ini";
  ASSERT_NE(WritePrivateProfileStringW(L"General", L"Name", L"x", path.c_str()), FALSE);
  open(L"zequtility2 test.ini");
  EXPECT_EQ(getString(L"Name", L"General"), L"x");
  DeleteFileW(path.c_str());
}

TEST_F(CIniFileTest, ScriptsLeaveOutOptionalArguments) {
  openFile("[General]\r\nName=Alpha\r\n");
  const Late late(reader);
  EXPECT_EQ(late.put(L"section", Variant(L"General")).code, S_OK);
  EXPECT_EQ(textIn(late.get(L"GetString", Variant(L"Name"))), L"Alpha");
  EXPECT_EQ(textIn(late.get(L"GetString", Variant(L"Missing"))), L"");
  EXPECT_EQ(textIn(late.get(L"GetString", Variant(L"Missing"), Variant::missing(), Variant(L"x"))), L"x");
  Variant key(L"Name");
  EXPECT_EQ(textIn(late.get(L"GetString", byRef(key), Variant(L"General"))), L"Alpha");
}

TEST_F(CIniFileTest, ScriptsSeeTheDuplicateKeyError) {
  openFile("[General]\r\na=1\r\na=2\r\n");
  const Outcome outcome = Late(reader).put(L"section", Variant(L"General"));
  EXPECT_EQ(outcome.code, DISP_E_EXCEPTION);
  EXPECT_EQ(outcome.scode, duplicateKey);
  EXPECT_EQ(outcome.description, L"This key is already associated with an element of this collection");
}

TEST_F(CIniFileTest, ItsEndEmptiesTheKeys) {
  openFile("[G]\r\na=1\r\nb=2\r\n");
  EXPECT_EQ(setSection(L"G"), S_OK);
  const auto kept = keyCollection();
  EXPECT_THAT(keys(), ElementsAre(L"a", L"b"));
  reader.reset();
  long count = -1;
  EXPECT_EQ(kept->get_Count(&count), S_OK);
  EXPECT_EQ(count, 0);
}

TEST_F(CIniFileTest, WhatIsOptionalMayBeANullPointer) {
  openFile("[G]\r\na=1\r\n");
  EXPECT_EQ(setSection(L"G"), S_OK);
  Bstr result;
  EXPECT_EQ(reader->GetString(TextArgument(L"a"), nullptr, nullptr, result.out()), S_OK);
  EXPECT_EQ(result.view(), L"1");
  EXPECT_EQ(reader->GetString(nullptr, nullptr, nullptr, result.out()), E_POINTER);
}

}  // namespace
}  // namespace zeq::test
