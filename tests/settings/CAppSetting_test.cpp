#include <gmock/gmock.h>

#include "support/Component.h"

namespace zeq::test {
namespace {

class CAppSettingTest : public testing::Test {
 protected:
  void setValue(const Variant& value) { EXPECT_EQ(setting->put_value(value.get()), S_OK); }
  Variant value() {
    Variant result;
    EXPECT_EQ(setting->get_value(result.out()), S_OK);
    return result;
  }
  std::wstring asString(std::wstring_view indent = {}) {
    Bstr result;
    EXPECT_EQ(setting->AsString(Bstr(indent).get(), result.out()), S_OK);
    return std::wstring(result.view());
  }

  ComPtr<_CAppSetting> setting = create<CAppSetting, _CAppSetting>();
};

TEST_F(CAppSettingTest, StartsEmpty) {
  Bstr key;
  EXPECT_EQ(setting->get_Key(key.out()), S_OK);
  EXPECT_EQ(key.view(), L"");
  EXPECT_EQ(value().type(), VT_EMPTY);
  EXPECT_EQ(asString(), L"[] ");
}

TEST_F(CAppSettingTest, KeepsKeyAndValueOfAnyType) {
  EXPECT_EQ(setting->put_Key(Bstr(L"Width").get()), S_OK);
  Bstr key;
  EXPECT_EQ(setting->get_Key(key.out()), S_OK);
  EXPECT_EQ(key.view(), L"Width");
  setValue(Variant(80L));
  EXPECT_EQ(value().type(), VT_I4);
  EXPECT_EQ(value().get().lVal, 80);
  EXPECT_EQ(asString(), L"[Width] 80");
  EXPECT_EQ(asString(L"  "), L"  [Width] 80");
  setValue(Variant(true));
  EXPECT_EQ(asString(), L"[Width] True");
  setValue(Variant(setting.get()));
  EXPECT_EQ(value().get().pdispVal, setting.get());
  setValue(Variant());
}

TEST_F(CAppSettingTest, AValueWithoutATextStaysBlank) {
  setValue(Variant::null());
  EXPECT_EQ(asString(L"> "), L"> [] ");
  setValue(Variant(create<CAppSettings, _CAppSettings>().get()));
  EXPECT_EQ(asString(), L"[] ");
}

TEST_F(CAppSettingTest, ScriptsUseItByName) {
  const Late late(setting);
  Variant size(L"large");
  EXPECT_EQ(late.put(L"Key", Variant(L"Size")).code, S_OK);
  EXPECT_EQ(late.put(L"value", byRef(size)).code, S_OK);
  EXPECT_EQ(textIn(late.get(L"AsString")), L"[Size] large");
  EXPECT_EQ(textIn(late.get(L"AsString", Variant(L"  "))), L"  [Size] large");
}

}  // namespace
}  // namespace zeq::test
