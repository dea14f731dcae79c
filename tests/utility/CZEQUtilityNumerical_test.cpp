#include <gmock/gmock.h>

#include "automation/TypeInfo.h"
#include "support/Component.h"
#include "utility/Values.h"

namespace zeq::test {
namespace {

class CZEQUtilityNumericalTest : public testing::Test {
 protected:
  template <class... Arguments>
  double number(const wchar_t* name, Arguments... arguments) {
    const Variant result = late.get(name, value(static_cast<double>(arguments))...);
    EXPECT_EQ(result.type(), VT_R8);
    return result.get().dblVal;
  }

  ComPtr<_CZEQUtilityNumerical> numbers = create<CZEQUtilityNumerical, _CZEQUtilityNumerical>();
  Late late{numbers};
};

TEST_F(CZEQUtilityNumericalTest, Limits) {
  EXPECT_EQ(number(L"NumVal_Limit", 5, 10, 0), 0);
  EXPECT_EQ(number(L"NumVal_Limit", -1, 0, 255), 0);
  EXPECT_EQ(number(L"NumVal_Limit", 300, 0, 255), 255);
  double result = -1;
  EXPECT_EQ(numbers->NumVal_Limit(7, 0, 255, &result), S_OK);
  EXPECT_EQ(result, 7);
}

TEST_F(CZEQUtilityNumericalTest, Scales) {
  EXPECT_EQ(number(L"NumVal_Scale", 5, 0, 10, 100, 200), 150);
  EXPECT_EQ(number(L"NumVal_Scale", 5, 4, 4, 100, 200), 0);
  EXPECT_EQ(number(L"NumVal_Scale", 1e308, -1e308, 1, 0, 1), 0);
  double result = -1;
  EXPECT_EQ(numbers->NumVal_Scale(20, 0, 10, 100, 200, &result), S_OK);
  EXPECT_EQ(result, 300);
}

TEST_F(CZEQUtilityNumericalTest, Chooses) {
  EXPECT_EQ(number(L"NumVal_MaxOf", 1, 2), 2);
  EXPECT_EQ(number(L"NumVal_MinOf", 1, 2), 1);
  double result = -1;
  EXPECT_EQ(numbers->NumVal_MaxOf(3, -3, &result), S_OK);
  EXPECT_EQ(result, 3);
  EXPECT_EQ(numbers->NumVal_MinOf(3, -3, &result), S_OK);
  EXPECT_EQ(result, -3);
}

TEST_F(CZEQUtilityNumericalTest, TakesColoursApart) {
  short red = -1;
  short green = -1;
  short blue = -1;
  EXPECT_EQ(numbers->Color_GetRGBComponents(0x00112233, &red, &green, &blue), S_OK);
  EXPECT_EQ(red, 0x33);
  EXPECT_EQ(green, 0x22);
  EXPECT_EQ(blue, 0x11);
  EXPECT_EQ(numbers->Color_GetRGBComponents(0, nullptr, &green, &blue), E_POINTER);
}

TEST_F(CZEQUtilityNumericalTest, WritesComponentsIntoVariables) {
  Variant red = value(L"");
  Variant green;
  Variant blue;
  EXPECT_EQ(
      late.call(L"Color_GetRGBComponents", value(0x00112233), byRef(red), byRef(green), byRef(blue)).code,
      DISP_E_TYPEMISMATCH);  // A text that is no number goes into no integer parameter.
  red = value(0);
  EXPECT_EQ(
      late.call(L"Color_GetRGBComponents", value(0x00112233), byRef(red), byRef(green), byRef(blue)).code,
      S_OK);
  EXPECT_EQ(red.type(), VT_I2);
  EXPECT_EQ(red.get().iVal, 0x33);
  EXPECT_EQ(green.get().iVal, 0x22);
  EXPECT_EQ(blue.get().iVal, 0x11);
}

TEST_F(CZEQUtilityNumericalTest, CompressesColours) {
  OLE_COLOR result = 0;
  EXPECT_EQ(numbers->Color_CompressRange(0x00FFFFFF, 64, 191, &result), S_OK);
  EXPECT_EQ(result, 0x00BFBFBFU);
  const Variant byName = late.get(L"Color_CompressRange", value(0x00FFFFFF), value(64), value(191));
  EXPECT_EQ(byName.type(), VT_I4);
  EXPECT_EQ(byName.get().lVal, 0x00BFBFBF);
}

TEST_F(CZEQUtilityNumericalTest, TakesColoursOfTheSystem) {
  const Variant colour =
      late.get(L"Color_CompressRange", value(static_cast<int>(0x80112233U)), value(0), value(255));
  EXPECT_EQ(colour.get().lVal, 0x00112233);
}

TEST_F(CZEQUtilityNumericalTest, DescribesColoursAsTheStandardType) {
  ComPtr<ITypeInfo> dual;
  ASSERT_EQ(numbers->GetTypeInfo(0, LOCALE_USER_DEFAULT, dual.out()), S_OK);
  const auto info = automation::vtableSideOf(*dual);
  auto* name = const_cast<wchar_t*>(L"Color_CompressRange");
  MEMBERID id = 0;
  ASSERT_EQ(info->GetIDsOfNames(&name, 1, &id), S_OK);
  UINT index = 0;
  const auto info2 = info.query<ITypeInfo2>(IID_ITypeInfo2);
  ASSERT_EQ(info2->GetFuncIndexOfMemId(id, INVOKE_FUNC, &index), S_OK);
  const auto description = automation::functionAt(*info, index);
  const TYPEDESC& colour = description->lprgelemdescParam[0].tdesc;
  ASSERT_EQ(colour.vt, VT_USERDEFINED);
  const auto alias = automation::referredBy(*info, colour.hreftype);
  EXPECT_EQ(automation::documentationOf(*alias).name, L"OLE_COLOR");
  const auto attributes = automation::attributesOf(*alias);
  EXPECT_EQ(attributes->typekind, TKIND_ALIAS);
  EXPECT_EQ(attributes->tdescAlias.vt, VT_UI4);
}

}  // namespace
}  // namespace zeq::test
