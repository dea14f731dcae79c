#include <gmock/gmock.h>

#include "support/Component.h"
#include "support/Leaks.h"
#include "utility/Values.h"

namespace zeq::test {
namespace {

using testing::ElementsAre;

class CStringSplitterTest : public testing::Test {
 protected:
  short split(std::wstring_view record, std::wstring_view separator = L"", bool trim = true,
              bool countEmpty = true) {
    short result = -1;
    EXPECT_EQ(splitter->Split(Bstr(record).get(), Bstr(separator).get(), trim ? VARIANT_TRUE : VARIANT_FALSE,
                              countEmpty ? VARIANT_TRUE : VARIANT_FALSE, &result),
              S_OK);
    return result;
  }
  short count() {
    short result = -1;
    EXPECT_EQ(splitter->get_count(&result), S_OK);
    return result;
  }
  std::wstring field(short position) {
    Bstr result;
    EXPECT_EQ(splitter->get_Field(position, result.out()), S_OK);
    return std::wstring(result.view());
  }
  std::vector<std::wstring> fields() {
    std::vector<std::wstring> result;
    for (short position = 1; position <= count(); ++position) {
      result.push_back(field(position));
    }
    return result;
  }
  std::vector<std::wstring> enumerated() {
    ComPtr<IUnknown> unknown;
    EXPECT_EQ(splitter->get_NewEnum(unknown.out()), S_OK);
    const auto enumerator = unknown.query<IEnumVARIANT>(IID_IEnumVARIANT);
    std::vector<std::wstring> result;
    Variant item;
    while (enumerator->Next(1, item.out(), nullptr) == S_OK) {
      result.push_back(textIn(item));
    }
    return result;
  }

  ComPtr<_CStringSplitter> splitter = create<CStringSplitter, _CStringSplitter>();
  Late late{splitter};
};

TEST_F(CStringSplitterTest, StartsEmpty) {
  EXPECT_EQ(count(), 0);
  EXPECT_EQ(field(1), L"");
  EXPECT_THAT(enumerated(), ElementsAre());
  EXPECT_EQ(lateText(late, L"FieldSep"), L" ");
  EXPECT_EQ(lateText(late, L"Record"), L"");
  EXPECT_EQ(late.get(L"TrimFields").get().boolVal, VARIANT_TRUE);
  EXPECT_EQ(late.get(L"CountEmptyFields").get().boolVal, VARIANT_FALSE);
}

TEST_F(CStringSplitterTest, CountsEmptyFieldsAsPropertyAndArgumentSay) {
  EXPECT_EQ(splitter->put_Record(Bstr(L"alpha  beta").get()), S_OK);
  EXPECT_THAT(fields(), ElementsAre(L"alpha", L"beta"));
  EXPECT_EQ(late.get(L"Split", value(L"alpha  beta")).get().iVal, 3);
  EXPECT_THAT(fields(), ElementsAre(L"alpha", L"", L"beta"));
  EXPECT_EQ(late.get(L"CountEmptyFields").get().boolVal, VARIANT_TRUE);
}

TEST_F(CStringSplitterTest, KeepsItsSeparator) {
  EXPECT_EQ(split(L"x;Y;z", L";"), 3);
  EXPECT_EQ(late.put(L"FieldSep", value(L";")).code, S_OK);
  EXPECT_EQ(late.put(L"FieldSep", value(L"")).code, S_OK);
  EXPECT_EQ(lateText(late, L"FieldSep"), L";");
  EXPECT_THAT(fields(), ElementsAre(L"x", L"Y", L"z"));
  EXPECT_EQ(split(L"1;2"), 2);
  EXPECT_EQ(late.put(L"FieldSep", value(L"y")).code, S_OK);
  EXPECT_THAT(fields(), ElementsAre(L"1;2"));
}

TEST_F(CStringSplitterTest, SplitsAgainAtEveryChange) {
  EXPECT_EQ(split(L"a, ,b ", L","), 3);
  EXPECT_EQ(splitter->put_CountEmptyFields(VARIANT_FALSE), S_OK);
  EXPECT_THAT(fields(), ElementsAre(L"a", L"b"));
  EXPECT_EQ(splitter->put_TrimFields(VARIANT_FALSE), S_OK);
  EXPECT_THAT(fields(), ElementsAre(L"a", L" ", L"b "));
  EXPECT_EQ(late.put(L"Record", value(L"1,2")).code, S_OK);
  EXPECT_THAT(fields(), ElementsAre(L"1", L"2"));
  EXPECT_EQ(lateText(late, L"Record"), L"1,2");
}

TEST_F(CStringSplitterTest, FindsSeparatorsInEitherCase) {
  EXPECT_EQ(split(L"this and that And \u00C4ther", L"AND"), 3);
  EXPECT_EQ(field(3), L"\u00C4ther");
  EXPECT_EQ(split(L"1\u00E42\u00C43", L"\u00C4"), 3);
}

TEST_F(CStringSplitterTest, CutsListsWithNulCharacters) {
  const std::wstring list(L"k1\0k2\0\0", 7);
  const std::wstring nul(1, L'\0');
  EXPECT_EQ(split(list, nul, true, false), 2);
  EXPECT_THAT(enumerated(), ElementsAre(L"k1", L"k2"));
  EXPECT_EQ(split(list, nul, true, true), 4);
  EXPECT_THAT(enumerated(), ElementsAre(L"k1", L"k2", L"", L""));
}

TEST_F(CStringSplitterTest, GivesFieldsAsItsDefaultMember) {
  EXPECT_EQ(late.get(L"Split", value(L"a b")).get().iVal, 2);
  Variant position = value(2);
  DISPPARAMS parameters{&position.get(), nullptr, 1, 0};
  Variant result;
  ASSERT_EQ(splitter->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &parameters,
                             result.out(), nullptr, nullptr),
            S_OK);
  EXPECT_EQ(textIn(result), L"b");
  EXPECT_EQ(lateText(late, L"Field", 0), L"");
  EXPECT_EQ(lateText(late, L"Field", -1), L"");
  EXPECT_EQ(lateText(late, L"Field", 3), L"");
  EXPECT_EQ(lateText(late, L"field", 1), L"a");
}

TEST_F(CStringSplitterTest, EnumeratesByTheStandardIdentifier) {
  split(L"a b c");
  DISPPARAMS none{};
  Variant result;
  ASSERT_EQ(splitter->Invoke(DISPID_NEWENUM, IID_NULL, LOCALE_USER_DEFAULT,
                             DISPATCH_PROPERTYGET | DISPATCH_METHOD, &none, result.out(), nullptr, nullptr),
            S_OK);
  ASSERT_EQ(result.type(), VT_UNKNOWN);
  const auto enumerator = ComPtr<IUnknown>(result.get().punkVal).query<IEnumVARIANT>(IID_IEnumVARIANT);
  ASSERT_TRUE(enumerator);
  ASSERT_EQ(enumerator->Skip(2), S_OK);
  split(L"x");  // What is enumerated are the fields that were there.
  Variant item;
  EXPECT_EQ(enumerator->Next(1, item.out(), nullptr), S_OK);
  EXPECT_EQ(textIn(item), L"c");
}

TEST_F(CStringSplitterTest, SpellsItsCountInLowerCase) {
  ComPtr<ITypeInfo> info;
  ASSERT_EQ(splitter->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.out()), S_OK);
  auto* name = const_cast<wchar_t*>(L"COUNT");
  MEMBERID id = 0;
  ASSERT_EQ(info->GetIDsOfNames(&name, 1, &id), S_OK);
  Bstr spelling;
  UINT found = 0;
  ASSERT_EQ(info->GetNames(id, spelling.out(), 1, &found), S_OK);
  EXPECT_EQ(spelling.view(), L"count");
}

TEST_F(CStringSplitterTest, RaisesOverflowForASeparatorTooFarToTheRight) {
  const std::wstring filler(32766, L'x');
  EXPECT_EQ(split(filler.substr(1) + L",y", L","), 2);
  expectError(late.put(L"Record", value(filler + L",y")), 6, L"Overflow");
  EXPECT_EQ(count(), 1);
  expectError(late.call(L"Split", value(std::wstring(40000, L','))), 6, L"Overflow");
  EXPECT_EQ(split(std::wstring(40000, L'y')), 1);
  // The record that is still there is split by the new separator before the new record comes.
  expectError(late.call(L"Split", value(L"a;b"), value(L"y")), 6, L"Overflow");
  EXPECT_EQ(lateText(late, L"FieldSep"), L"y");
}

TEST_F(CStringSplitterTest, RefusesPositionsThatAreTooLarge) {
  EXPECT_EQ(late.call(L"Field", value(40000)).code, DISP_E_OVERFLOW);
}

TEST_F(CStringSplitterTest, LeaksNothing) {
  expectNoLeak(50, [] {
    const auto object = create<CStringSplitter, _CStringSplitter>();
    const Late byName(object);
    byName.get(L"Split", value(L"a,b,c"), value(L","));
    ComPtr<IUnknown> enumerator;
    object->get_NewEnum(enumerator.out());
    byName.call(L"Split", value(std::wstring(40000, L',')));
  });
}

}  // namespace
}  // namespace zeq::test
