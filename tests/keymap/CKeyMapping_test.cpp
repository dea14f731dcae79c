#include <gmock/gmock.h>

#include "support/Component.h"
#include "support/Leaks.h"

namespace zeq::test {
namespace {

std::wstring asString(_CKeyMapping& mapping, const wchar_t* indent) {
  Bstr text;
  EXPECT_EQ(mapping.AsString(Bstr(indent).get(), text.out()), S_OK);
  return std::wstring(text.view());
}

TEST(CKeyMappingTest, StartsEmpty) {
  const auto mapping = create<CKeyMapping, _CKeyMapping>();
  short number = 1;
  Bstr text(L"x");
  EXPECT_EQ(mapping->get_KeyCode(&number), S_OK);
  EXPECT_EQ(number, 0);
  EXPECT_EQ(mapping->get_Shift(&number), S_OK);
  EXPECT_EQ(number, 0);
  EXPECT_EQ(mapping->get_Name(text.out()), S_OK);
  EXPECT_EQ(text.view(), L"");
  EXPECT_EQ(mapping->get_description(text.out()), S_OK);
  EXPECT_EQ(text.view(), L"");
  EXPECT_EQ(asString(*mapping, L""), L"[[0]]  - ");
}

TEST(CKeyMappingTest, KeepsWhatItIsGiven) {
  const auto mapping = create<CKeyMapping, _CKeyMapping>();
  short number = 0;
  for (const short value : {short{112}, short{-1}, short{32767}, short{-32768}}) {
    EXPECT_EQ(mapping->put_KeyCode(value), S_OK);
    EXPECT_EQ(mapping->get_KeyCode(&number), S_OK);
    EXPECT_EQ(number, value);
    EXPECT_EQ(mapping->put_Shift(value), S_OK);
    EXPECT_EQ(mapping->get_Shift(&number), S_OK);
    EXPECT_EQ(number, value);
  }
  const std::wstring_view odd(L" a|b\0c ", 7);
  Bstr text;
  EXPECT_EQ(mapping->put_Name(Bstr(odd).get()), S_OK);
  EXPECT_EQ(mapping->get_Name(text.out()), S_OK);
  EXPECT_EQ(text.view(), odd);
  EXPECT_EQ(mapping->put_description(Bstr(odd).get()), S_OK);
  EXPECT_EQ(mapping->get_description(text.out()), S_OK);
  EXPECT_EQ(text.view(), odd);
}

TEST(CKeyMappingTest, DescribesItself) {
  const auto mapping = create<CKeyMapping, _CKeyMapping>();
  mapping->put_KeyCode(112);
  mapping->put_Shift(7);
  mapping->put_Name(Bstr(L"Help").get());
  mapping->put_description(Bstr(L"Shows the help").get());
  EXPECT_EQ(asString(*mapping, L""), L"[CTRL-ALT-SHIFT F1] Help - Shows the help");
  EXPECT_EQ(asString(*mapping, L"  "), L"  [CTRL-ALT-SHIFT F1] Help - Shows the help");
}

TEST(CKeyMappingTest, AnswersByName) {
  const Late late(create<CKeyMapping, _CKeyMapping>());
  EXPECT_EQ(late.put(L"KeyCode", Variant(65L)).code, S_OK);
  EXPECT_EQ(late.put(L"Shift", Variant(L"1")).code, S_OK);
  EXPECT_EQ(late.put(L"Name", Variant(L"A")).code, S_OK);
  EXPECT_EQ(late.put(L"Description", Variant(L"B")).code, S_OK);
  EXPECT_EQ(late.get(L"KeyCode").get().iVal, 65);
  EXPECT_EQ(late.get(L"Shift").get().iVal, 1);
  EXPECT_EQ(textIn(late.get(L"Name")), L"A");
  EXPECT_EQ(textIn(late.get(L"description")), L"B");
  EXPECT_EQ(textIn(late.get(L"AsString")), L"[SHIFT A] A - B");
  EXPECT_EQ(textIn(late.get(L"AsString", Variant(L">"))), L">[SHIFT A] A - B");
  EXPECT_EQ(late.put(L"KeyCode", Variant(40000L)).code, DISP_E_OVERFLOW);
}

}  // namespace
}  // namespace zeq::test
