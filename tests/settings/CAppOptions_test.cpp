#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "support/Component.h"
#include "support/IniText.h"
#include "support/TestKey.h"

namespace zeq::test {
namespace {

using testing::ElementsAre;
using testing::Pair;

class CAppOptionsTest : public testing::Test {
 protected:
  using Getter = HRESULT (STDMETHODCALLTYPE _CAppOptions::*)(BSTR*);
  using Setter = HRESULT (STDMETHODCALLTYPE _CAppOptions::*)(BSTR);

  void set(Setter setter, std::wstring_view value) {
    EXPECT_EQ((options.get()->*setter)(Bstr(value).get()), S_OK);
  }
  std::wstring get(Getter getter) {
    Bstr result;
    EXPECT_EQ((options.get()->*getter)(result.out()), S_OK);
    return std::wstring(result.view());
  }
  void useRegistry() {
    set(&_CAppOptions::put_Hive, L"HKCU");
    set(&_CAppOptions::put_RootKey, key.path());
  }
  void useIni() {
    set(&_CAppOptions::put_Hive, ini.path());
    set(&_CAppOptions::put_RootKey, L"Tools");
  }
  void write(std::wstring_view group, std::wstring_view name, const Variant& value) {
    EXPECT_EQ(options->WriteSetting(Bstr(group).get(), Bstr(name).get(), value.get()), S_OK);
  }
  Variant read(std::wstring_view group, std::wstring_view name,
               const Variant& fallback = Variant::missing()) {
    Variant result;
    EXPECT_EQ(options->ReadSetting(Bstr(group).get(), Bstr(name).get(), fallback.get(), result.out()), S_OK);
    return result;
  }
  template <class Result>
  Result read(HRESULT (STDMETHODCALLTYPE _CAppOptions::*reader)(BSTR, BSTR, VARIANT, Result*),
              std::wstring_view name, const Variant& fallback = Variant::missing()) {
    Result result{};
    EXPECT_EQ((options.get()->*reader)(Bstr(L"Editor").get(), Bstr(name).get(), fallback.get(), &result),
              S_OK);
    return result;
  }
  ComPtr<_CAppSettings> group(std::wstring_view name) {
    ComPtr<_CAppSettings> result;
    EXPECT_EQ(options->get_Group(Bstr(name).get(), result.out()), S_OK);
    return result;
  }
  std::wstring asString(std::wstring_view indent = {}) {
    Bstr result;
    EXPECT_EQ(options->AsString(Bstr(indent).get(), result.out()), S_OK);
    return std::wstring(result.view());
  }
  VARIANT_BOOL autoSave() {
    VARIANT_BOOL result = 7;
    EXPECT_EQ(options->get_AutoSave(&result), S_OK);
    return result;
  }

  TestKey key;
  IniText ini;
  ComPtr<_CAppOptions> options = create<CAppOptions, _CAppOptions>();
};

TEST_F(CAppOptionsTest, StartsEmpty) {
  EXPECT_EQ(get(&_CAppOptions::get_Hive), L"");
  EXPECT_EQ(get(&_CAppOptions::get_RootKey), L"");
  EXPECT_EQ(autoSave(), VARIANT_TRUE);
  EXPECT_EQ(options->Save(), S_OK);
  EXPECT_EQ(options->Clear(), S_OK);
  EXPECT_EQ(asString(), L" \\");
}

TEST_F(CAppOptionsTest, HiveKeepsItsCaseAndLosesItsBlanks) {
  set(&_CAppOptions::put_Hive, L" HKCU  ");
  EXPECT_EQ(get(&_CAppOptions::get_Hive), L"HKCU");
  set(&_CAppOptions::put_Hive, L"hkcu");
  set(&_CAppOptions::put_Hive, L"  ");
  set(&_CAppOptions::put_Hive, L"");
  EXPECT_EQ(get(&_CAppOptions::get_Hive), L"HKCU");
  set(&_CAppOptions::put_Hive, L"HKLM");
  EXPECT_EQ(get(&_CAppOptions::get_Hive), L"HKLM");
}

TEST_F(CAppOptionsTest, RootKeyKeepsItsBlanks) {
  set(&_CAppOptions::put_RootKey, L"Software\\X ");
  EXPECT_EQ(get(&_CAppOptions::get_RootKey), L"Software\\X ");
  set(&_CAppOptions::put_RootKey, L" software\\x");
  set(&_CAppOptions::put_RootKey, L"   ");
  EXPECT_EQ(get(&_CAppOptions::get_RootKey), L"Software\\X ");
  set(&_CAppOptions::put_RootKey, L" Software\\Y ");
  EXPECT_EQ(get(&_CAppOptions::get_RootKey), L" Software\\Y ");
}

TEST_F(CAppOptionsTest, AutoSaveStaysTrue) {
  EXPECT_EQ(options->put_AutoSave(VARIANT_FALSE), S_OK);
  EXPECT_EQ(autoSave(), VARIANT_TRUE);
  EXPECT_EQ(options->put_AutoSave(VARIANT_TRUE), S_OK);
  EXPECT_EQ(autoSave(), VARIANT_TRUE);
}

TEST_F(CAppOptionsTest, EveryGroupIsANewOne) {
  useRegistry();
  const auto first = group(L"Editor");
  const auto second = group(L"Editor");
  ASSERT_TRUE(first && second);
  EXPECT_NE(first.get(), second.get());
  Bstr text;
  EXPECT_EQ(first->get_Hive(text.out()), S_OK);
  EXPECT_EQ(text.view(), L"HKCU");
  EXPECT_EQ(first->get_RootKey(text.out()), S_OK);
  EXPECT_EQ(text.view(), key.path());
  EXPECT_EQ(first->get_SubKey(text.out()), S_OK);
  EXPECT_EQ(text.view(), L"Editor");
  VARIANT_BOOL saves = VARIANT_FALSE;
  EXPECT_EQ(first->get_AutoSave(&saves), S_OK);
  EXPECT_EQ(saves, VARIANT_TRUE);
  EXPECT_EQ(first->WriteSetting(Bstr(L"a").get(), Variant(1L).get()), S_OK);
  EXPECT_EQ(asString(), L"HKCU \\" + key.path());
}

TEST_F(CAppOptionsTest, WritesReachTheStoreAndRaiseChanged) {
  useRegistry();
  std::vector<std::pair<std::wstring, std::wstring>> changes;
  std::wstring storedThen;
  const Sink sink(options.get(), __uuidof(__CAppOptions), [&](DISPID event, std::vector<VARIANT*> arguments) {
    EXPECT_EQ(event, 1);
    EXPECT_EQ(arguments.size(), 2U);
    changes.emplace_back(automation::text(arguments[0]->bstrVal), automation::text(arguments[1]->bstrVal));
    storedThen = key.text(L"Editor", L"Width");
    return S_OK;
  });
  write(L"Editor", L"Width", Variant(80L));
  EXPECT_THAT(changes, ElementsAre(Pair(L"Editor", L"Width")));
  EXPECT_EQ(storedThen, L"80");
  write(L"Editor", L"Width", Variant(80L));
  EXPECT_EQ(changes.size(), 2U);
  read(L"Editor", L"Missing", Variant(5L));
  EXPECT_EQ(key.text(L"Editor", L"Missing"), L"5");
  EXPECT_EQ(changes.size(), 2U);
}

TEST_F(CAppOptionsTest, AWriteThatFailsRaisesChangedAllTheSame) {
  int changes = 0;
  const Sink sink(options.get(), __uuidof(__CAppOptions), [&](DISPID, const std::vector<VARIANT*>&) {
    ++changes;
    return S_OK;
  });
  write(L"Editor", L"Width", Variant(80L));
  EXPECT_EQ(changes, 1);
}

TEST_F(CAppOptionsTest, AStoreThatRefusesKeepsWhatItHolds) {
  useRegistry();
  write(L"Editor", L"Width", Variant(80L));
  std::vector<std::wstring> changes;
  const Sink sink(options.get(), __uuidof(__CAppOptions), [&](DISPID, std::vector<VARIANT*> arguments) {
    changes.emplace_back(automation::text(arguments[1]->bstrVal));
    return S_OK;
  });
  {
    const auto denied = key.deny(L"Editor", KEY_SET_VALUE | KEY_CREATE_SUB_KEY);
    write(L"Editor", L"Width", Variant(90L));
    EXPECT_EQ(textIn(read(L"Editor", L"Width")), L"80") << "every read goes to the store";
    EXPECT_EQ(read(L"Editor", L"Missing", Variant(5L)).get().lVal, 5);
  }
  EXPECT_THAT(changes, ElementsAre(L"Width"));
  EXPECT_EQ(key.text(L"Editor", L"Width"), L"80");
  EXPECT_EQ(read(L"Editor", L"Missing").type(), VT_EMPTY);
}

TEST_F(CAppOptionsTest, AHandlerMayWriteAndLetGoOfTheOptions) {
  useRegistry();
  int changes = 0;
  Sink sink(options.get(), __uuidof(__CAppOptions), [&](DISPID, const std::vector<VARIANT*>&) {
    if (++changes == 1) {
      write(L"Editor", L"Inner", Variant(1L));
      options.reset();
    }
    return S_OK;
  });
  _CAppOptions* object = options.get();
  EXPECT_EQ(object->WriteSetting(Bstr(L"Editor").get(), Bstr(L"Outer").get(), Variant(1L).get()), S_OK);
  EXPECT_EQ(changes, 2);
  EXPECT_EQ(key.text(L"Editor", L"Inner"), L"1");
}

TEST_F(CAppOptionsTest, EachReadGoesToTheStore) {
  useRegistry();
  write(L"Editor", L"Width", Variant(80L));
  EXPECT_EQ(textIn(read(L"Editor", L"Width")), L"80");
  key.setValue(L"Editor", L"Width", TestKey::textValue(L"90"));
  EXPECT_EQ(textIn(read(L"Editor", L"Width")), L"90");
  EXPECT_EQ(textIn(read(L"editor", L"width")), L"90");
  EXPECT_EQ(read(L"Other", L"Width").type(), VT_EMPTY);
  EXPECT_EQ(read(L"Other", L"Width", Variant(7L)).get().lVal, 7);
  EXPECT_EQ(key.text(L"Other", L"Width"), L"7");
}

TEST_F(CAppOptionsTest, ReadingLeavesAStoredTextAlone) {
  useRegistry();
  key.setValue(L"Editor", L"Word", TestKey::textValue(L"\x4E2D"));
  EXPECT_EQ(textIn(read(L"Editor", L"Word")), wide(narrow(L"\x4E2D")));
  EXPECT_EQ(key.text(L"Editor", L"Word"), L"\x4E2D");
}

TEST_F(CAppOptionsTest, AnIniFileKeepsOptionsTheSameWay) {
  useIni();
  write(L"Editor", L"Width", Variant(80L));
  EXPECT_EQ(ini.platformValue("Tools\\Editor", "Width"), "80");
  EXPECT_EQ(textIn(read(L"Editor", L"Width")), L"80");
  EXPECT_EQ(textIn(read(L"Editor", L"Missing", Variant(5L))), L"");
  EXPECT_EQ(ini.platformValue("Tools\\Editor", "Missing", "none"), "");
}

TEST_F(CAppOptionsTest, TypedReadersConvertOrFallBack) {
  useRegistry();
  key.setValue(L"Editor", L"Number", TestKey::textValue(L"40000"));
  EXPECT_EQ(owned(read(&_CAppOptions::ReadSettingString, L"Number")).view(), L"40000");
  EXPECT_EQ(read(&_CAppOptions::ReadSettingBoolean, L"Number"), VARIANT_TRUE);
  EXPECT_EQ(read(&_CAppOptions::ReadSettingInteger, L"Number"), 0);
  EXPECT_EQ(read(&_CAppOptions::ReadSettingInteger, L"Number", Variant(L"12")), 12);
  EXPECT_EQ(read(&_CAppOptions::ReadSettingInteger, L"Number", Variant(L"x")), 0);
  EXPECT_EQ(read(&_CAppOptions::ReadSettingLong, L"Number"), 40000);
  EXPECT_EQ(read(&_CAppOptions::ReadSettingSingle, L"Number"), 40000.0F);
  EXPECT_EQ(read(&_CAppOptions::ReadSettingDouble, L"Number"), 40000.0);
  EXPECT_EQ(read(&_CAppOptions::ReadSettingLong, L"Missing"), 0);
  EXPECT_EQ(read(&_CAppOptions::ReadSettingLong, L"Missing", Variant(3L)), 3);
  EXPECT_EQ(key.text(L"Editor", L"Missing"), L"3");
}

TEST_F(CAppOptionsTest, DescribesItself) {
  set(&_CAppOptions::put_Hive, L"HKCU");
  set(&_CAppOptions::put_RootKey, L"Software\\Tools");
  EXPECT_EQ(asString(), L"HKCU \\Software\\Tools");
  EXPECT_EQ(asString(L"  "), L"  HKCU \\Software\\Tools");
}

TEST_F(CAppOptionsTest, ScriptsUseItByName) {
  useRegistry();
  const Late late(options);
  EXPECT_EQ(late.call(L"WriteSetting", Variant(L"Editor"), Variant(L"Width"), Variant(80L)).code, S_OK);
  EXPECT_EQ(late.get(L"ReadSettingLong", Variant(L"Editor"), Variant(L"Width")).get().lVal, 80);
  EXPECT_EQ(late.get(L"ReadSettingLong", Variant(L"Editor"), Variant(L"None"), Variant(L"4")).get().lVal, 4);
  const Variant group = late.get(L"Group", Variant(L"Editor"));
  EXPECT_EQ(textIn(Late(group.get().pdispVal).get(L"ReadSetting", Variant(L"Width"))), L"80");
}

}  // namespace
}  // namespace zeq::test
