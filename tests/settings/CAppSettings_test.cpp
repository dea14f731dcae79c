#include <gmock/gmock.h>

#include <string>

#include "support/Component.h"
#include "support/ImportHook.h"
#include "support/IniText.h"
#include "support/TestKey.h"

namespace zeq::test {
namespace {

class CAppSettingsTest : public testing::Test {
 protected:
  using Getter = HRESULT (STDMETHODCALLTYPE _CAppSettings::*)(BSTR*);
  using Setter = HRESULT (STDMETHODCALLTYPE _CAppSettings::*)(BSTR);

  void set(Setter setter, std::wstring_view value) {
    EXPECT_EQ((group.get()->*setter)(Bstr(value).get()), S_OK);
  }
  std::wstring get(Getter getter) {
    Bstr result;
    EXPECT_EQ((group.get()->*getter)(result.out()), S_OK);
    return std::wstring(result.view());
  }
  void useRegistry() { useStore(L"HKCU", key.path()); }
  void useIni() { useStore(ini.path(), L"Tools"); }
  void useStore(std::wstring_view hive, std::wstring_view rootKey) {
    set(&_CAppSettings::put_Hive, hive);
    set(&_CAppSettings::put_RootKey, rootKey);
    set(&_CAppSettings::put_SubKey, L"Editor");
  }
  void setAutoSave(bool autoSave) {
    EXPECT_EQ(group->put_AutoSave(autoSave ? VARIANT_TRUE : VARIANT_FALSE), S_OK);
  }
  void write(std::wstring_view name, const Variant& value) {
    EXPECT_EQ(group->WriteSetting(Bstr(name).get(), value.get()), S_OK);
  }
  Variant read(std::wstring_view name, const Variant& fallback = Variant::missing()) {
    Variant result;
    EXPECT_EQ(group->ReadSetting(Bstr(name).get(), fallback.get(), result.out()), S_OK);
    return result;
  }
  template <class Result>
  Result read(HRESULT (STDMETHODCALLTYPE _CAppSettings::*reader)(BSTR, VARIANT, Result*),
              std::wstring_view name, const Variant& fallback = Variant::missing()) {
    Result result{};
    EXPECT_EQ((group.get()->*reader)(Bstr(name).get(), fallback.get(), &result), S_OK);
    return result;
  }
  std::wstring readString(std::wstring_view name, const Variant& fallback = Variant::missing()) {
    const auto result = owned(read<BSTR>(&_CAppSettings::ReadSettingString, name, fallback));
    return std::wstring(result.view());
  }
  std::wstring asString(std::wstring_view indent = {}) {
    Bstr result;
    EXPECT_EQ(group->AsString(Bstr(indent).get(), result.out()), S_OK);
    return std::wstring(result.view());
  }
  std::wstring stored(const std::wstring& name) { return key.text(L"Editor", name); }
  bool isStored(const std::wstring& name) { return key.value(L"Editor", name).type != REG_NONE; }

  TestKey key;
  IniText ini;
  ComPtr<_CAppSettings> group = create<CAppSettings, _CAppSettings>();
};

TEST_F(CAppSettingsTest, StartsEmptyWithAutoSave) {
  EXPECT_EQ(get(&_CAppSettings::get_Hive), L"");
  EXPECT_EQ(get(&_CAppSettings::get_RootKey), L"");
  EXPECT_EQ(get(&_CAppSettings::get_SubKey), L"");
  VARIANT_BOOL autoSave = VARIANT_FALSE;
  EXPECT_EQ(group->get_AutoSave(&autoSave), S_OK);
  EXPECT_EQ(autoSave, VARIANT_TRUE);
  EXPECT_EQ(asString(L"> "), L"> Group: ");
}

TEST_F(CAppSettingsTest, HiveIsTrimmedAndNeverBlank) {
  set(&_CAppSettings::put_Hive, L"  HKCU ");
  EXPECT_EQ(get(&_CAppSettings::get_Hive), L"HKCU");
  set(&_CAppSettings::put_Hive, L"   ");
  set(&_CAppSettings::put_Hive, L"");
  EXPECT_EQ(get(&_CAppSettings::get_Hive), L"HKCU");
  set(&_CAppSettings::put_RootKey, L" a ");
  set(&_CAppSettings::put_SubKey, L" b ");
  EXPECT_EQ(get(&_CAppSettings::get_RootKey), L" a ");
  EXPECT_EQ(get(&_CAppSettings::get_SubKey), L" b ");
  set(&_CAppSettings::put_RootKey, L"");
  EXPECT_EQ(get(&_CAppSettings::get_RootKey), L"");
}

TEST_F(CAppSettingsTest, WritesAreStoredAtOnce) {
  useRegistry();
  write(L"Width", Variant(80L));
  EXPECT_EQ(stored(L"Width"), L"80");
  write(L"Width", Variant(true));
  EXPECT_EQ(stored(L"Width"), L"True");
  EXPECT_EQ(read(L"Width").type(), VT_BOOL);
  EXPECT_EQ(asString(), L"Group: Editor\r\n    [Width] True");
}

TEST_F(CAppSettingsTest, ValuesOfEveryTypeAreStoredAsTheirAutomationText) {
  const auto number = [](VARTYPE type, double value) {
    Variant result(value);
    EXPECT_EQ(VariantChangeType(&result.get(), &result.get(), 0, type), S_OK) << type;
    return result;
  };
  Variant date(36526.25);
  date.get().vt = VT_DATE;
  const std::vector<Variant> values{Variant(),
                                    Variant(short{-3}),
                                    Variant(80L),
                                    number(VT_R4, 0.5),
                                    Variant(0.1),
                                    number(VT_CY, 1.25),
                                    date,
                                    Variant(L"a text"),
                                    Variant(true),
                                    Variant(false),
                                    number(VT_DECIMAL, -2.5),
                                    number(VT_I1, -1),
                                    number(VT_UI1, 255),
                                    number(VT_UI2, 65535),
                                    number(VT_UI4, 4e9),
                                    number(VT_I8, -4e9),
                                    number(VT_UI8, 4e9),
                                    number(VT_INT, -7),
                                    number(VT_UINT, 7)};
  for (const Variant& value : values) {
    Variant expected(value);
    ASSERT_EQ(VariantChangeType(&expected.get(), &expected.get(), VARIANT_ALPHABOOL, VT_BSTR), S_OK)
        << value.type();
    useRegistry();
    write(L"Value", value);
    EXPECT_EQ(stored(L"Value"), textIn(expected)) << value.type();
    useIni();
    write(L"Value", value);
    EXPECT_EQ(ini.platformValue("Tools\\Editor", "Value", "none"), narrow(textIn(expected))) << value.type();
    EXPECT_EQ(read(L"Value").type(), value.type()) << "the cache keeps the type";
  }
}

TEST_F(CAppSettingsTest, WithoutAutoSaveWritesWaitForSave) {
  useRegistry();
  setAutoSave(false);
  write(L"Width", Variant(80L));
  write(L"Font", Variant(L"Arial"));
  EXPECT_FALSE(key.exists(L"Editor"));
  EXPECT_EQ(read(L"Width").get().lVal, 80);
  EXPECT_EQ(group->Save(), S_OK);
  EXPECT_EQ(stored(L"Width"), L"80");
  EXPECT_EQ(stored(L"Font"), L"Arial");
}

TEST_F(CAppSettingsTest, SaveWritesWhateverAutoSaveSays) {
  useRegistry();
  write(L"Width", Variant(80L));
  key.setValue(L"Editor", L"Width", TestKey::textValue(L"changed"));
  EXPECT_EQ(group->Save(), S_OK);
  EXPECT_EQ(stored(L"Width"), L"80");
}

TEST_F(CAppSettingsTest, TheCacheIsAskedFirst) {
  useRegistry();
  write(L"Width", Variant(80L));
  key.setValue(L"Editor", L"Width", TestKey::textValue(L"90"));
  EXPECT_EQ(read(L"Width").get().lVal, 80);
  key.setValue(L"Editor", L"Font", TestKey::textValue(L"Arial"));
  EXPECT_EQ(textIn(read(L"Font")), L"Arial");
  key.setValue(L"Editor", L"Font", TestKey::textValue(L"Courier"));
  EXPECT_EQ(textIn(read(L"Font")), L"Arial");
  EXPECT_EQ(stored(L"Font"), L"Courier");
}

TEST_F(CAppSettingsTest, KeysAreCaseSensitive) {
  useRegistry();
  write(L"a", Variant(1L));
  write(L"A", Variant(2L));
  EXPECT_EQ(asString(), L"Group: Editor\r\n    [a] 1\r\n    [A] 2");
  EXPECT_EQ(read(L"a").get().lVal, 1);
  EXPECT_EQ(read(L"A").get().lVal, 2);
  EXPECT_EQ(stored(L"a"), L"2");  // The registry does not tell them apart.
}

TEST_F(CAppSettingsTest, AMissingSettingStoresItsDefault) {
  useRegistry();
  const Variant value = read(L"Missing", Variant(5L));
  EXPECT_EQ(value.type(), VT_I4);
  EXPECT_EQ(value.get().lVal, 5);
  EXPECT_EQ(stored(L"Missing"), L"5");
  EXPECT_EQ(asString(), L"Group: Editor\r\n    [Missing] 5");
}

TEST_F(CAppSettingsTest, WithoutAutoSaveADefaultIsOnlyCached) {
  useRegistry();
  setAutoSave(false);
  EXPECT_EQ(read(L"Missing", Variant(5L)).get().lVal, 5);
  EXPECT_FALSE(isStored(L"Missing"));
  EXPECT_EQ(read(L"Missing", Variant(6L)).get().lVal, 5);
}

TEST_F(CAppSettingsTest, AMissingSettingWithoutADefaultIsEmptyAndNotCached) {
  useRegistry();
  EXPECT_EQ(read(L"Missing").type(), VT_EMPTY);
  EXPECT_EQ(read(L"Missing", Variant()).type(), VT_EMPTY);
  EXPECT_EQ(asString(), L"Group: Editor");
  EXPECT_FALSE(key.exists(L"Editor"));
}

TEST_F(CAppSettingsTest, AnEmptyStoredTextIsAValue) {
  useRegistry();
  key.setValue(L"Editor", L"Empty", TestKey::textValue(L""));
  EXPECT_EQ(textIn(read(L"Empty", Variant(L"default"))), L"");
  EXPECT_EQ(asString(), L"Group: Editor\r\n    [Empty] ");
}

TEST_F(CAppSettingsTest, WhatIsReadIsStoredAsAText) {
  useRegistry();
  key.setValue(L"Editor", L"Bytes", {REG_BINARY, {'a', 'b', 'c', 0}});
  EXPECT_EQ(textIn(read(L"Bytes")), L"abc");
  EXPECT_EQ(key.value(L"Editor", L"Bytes"), TestKey::textValue(L"abc"));
}

TEST_F(CAppSettingsTest, AnIniFileNeverLacksASetting) {
  useIni();
  EXPECT_EQ(textIn(read(L"Missing", Variant(5L))), L"");
  EXPECT_EQ(textIn(read(L"Other")), L"");
  EXPECT_EQ(asString(), L"Group: Editor\r\n    [Missing] \r\n    [Other] ");
  EXPECT_EQ(ini.platformValue("Tools\\Editor", nullptr), std::string("Missing\0Other\0", 14));
}

TEST_F(CAppSettingsTest, AnIniFileIsReadAndWritten) {
  useIni();
  write(L"Width", Variant(80L));
  EXPECT_EQ(ini.platformValue("Tools\\Editor", "Width"), "80");
  ini.write("[Tools\\Editor]\r\nFont=\"Arial\"\r\n");
  EXPECT_EQ(textIn(read(L"Font")), L"Arial");
  EXPECT_EQ(ini.content(), "[Tools\\Editor]\r\nFont=Arial\r\n");
}

TEST_F(CAppSettingsTest, ALongIniValueIsReadAndLeftWith254Characters) {
  useIni();
  ini.write("[Tools\\Editor]\r\nLong=" + std::string(300, 'v') + "\r\n");
  EXPECT_EQ(textIn(read(L"Long")), std::wstring(254, L'v'));
  EXPECT_EQ(ini.content(), "[Tools\\Editor]\r\nLong=" + std::string(254, 'v') + "\r\n");
}

TEST_F(CAppSettingsTest, WithoutAStoreItIsACache) {
  EXPECT_EQ(read(L"Missing", Variant(5L)).get().lVal, 5);
  write(L"Width", Variant(80L));
  EXPECT_EQ(read(L"Width").get().lVal, 80);
  EXPECT_EQ(asString(), L"Group: \r\n    [Missing] 5\r\n    [Width] 80");
}

TEST_F(CAppSettingsTest, TypedReadersConvert) {
  useRegistry();
  key.setValue(L"Editor", L"Number", TestKey::textValue(L"7"));
  EXPECT_EQ(readString(L"Number"), L"7");
  EXPECT_EQ(read(&_CAppSettings::ReadSettingBoolean, L"Number"), VARIANT_TRUE);
  EXPECT_EQ(read(&_CAppSettings::ReadSettingInteger, L"Number"), 7);
  EXPECT_EQ(read(&_CAppSettings::ReadSettingLong, L"Number"), 7);
  EXPECT_EQ(read(&_CAppSettings::ReadSettingSingle, L"Number"), 7.0F);
  EXPECT_EQ(read(&_CAppSettings::ReadSettingDouble, L"Number"), 7.0);
  write(L"Flag", Variant(true));
  EXPECT_EQ(readString(L"Flag"), L"True");
  EXPECT_EQ(read(&_CAppSettings::ReadSettingLong, L"Flag"), -1);
  key.setValue(L"Editor", L"Stored flag", TestKey::textValue(L"False"));
  EXPECT_EQ(read(&_CAppSettings::ReadSettingBoolean, L"Stored flag", Variant(true)), VARIANT_FALSE);
  write(L"Half", Variant(2.5));
  EXPECT_EQ(read(&_CAppSettings::ReadSettingInteger, L"Half"), 2);
  EXPECT_EQ(read(&_CAppSettings::ReadSettingSingle, L"Half"), 2.5F);
  EXPECT_EQ(read(&_CAppSettings::ReadSettingDouble, L"Half"), 2.5);
}

TEST_F(CAppSettingsTest, TypedReadersFallBackOnTheConvertedDefault) {
  useRegistry();
  key.setValue(L"Editor", L"Width", TestKey::textValue(L"abc"));
  EXPECT_EQ(read(&_CAppSettings::ReadSettingLong, L"Width", Variant(10L)), 10);
  EXPECT_EQ(read(&_CAppSettings::ReadSettingInteger, L"Width", Variant(L"11")), 11);
  EXPECT_EQ(read(&_CAppSettings::ReadSettingBoolean, L"Width", Variant(1L)), VARIANT_TRUE);
  EXPECT_EQ(read(&_CAppSettings::ReadSettingSingle, L"Width", Variant(1.5)), 1.5F);
  EXPECT_EQ(read(&_CAppSettings::ReadSettingDouble, L"Width", Variant(L"2")), 2.0);
  EXPECT_EQ(stored(L"Width"), L"abc");
  key.setValue(L"Editor", L"Big", TestKey::textValue(L"40000"));
  EXPECT_EQ(read(&_CAppSettings::ReadSettingInteger, L"Big", Variant(L"12")), 12);
  EXPECT_EQ(read(&_CAppSettings::ReadSettingInteger, L"Big"), 0);
  EXPECT_EQ(read(&_CAppSettings::ReadSettingLong, L"Big"), 40000);
}

TEST_F(CAppSettingsTest, TypedReadersFallBackOnZero) {
  useRegistry();
  key.setValue(L"Editor", L"Width", TestKey::textValue(L"abc"));
  for (const Variant& fallback :
       {Variant::missing(), Variant(L"xyz"), Variant::null(), Variant(group.get())}) {
    EXPECT_EQ(read(&_CAppSettings::ReadSettingLong, L"Width", fallback), 0);
    EXPECT_EQ(read(&_CAppSettings::ReadSettingInteger, L"Width", fallback), 0);
    EXPECT_EQ(read(&_CAppSettings::ReadSettingBoolean, L"Width", fallback), VARIANT_FALSE);
    EXPECT_EQ(read(&_CAppSettings::ReadSettingSingle, L"Width", fallback), 0.0F);
    EXPECT_EQ(read(&_CAppSettings::ReadSettingDouble, L"Width", fallback), 0.0);
  }
  write(L"Null", Variant::null());
  EXPECT_EQ(readString(L"Null"), L"");
  EXPECT_EQ(readString(L"Null", Variant(5L)), L"5");
}

TEST_F(CAppSettingsTest, TypedReadersOfWhatIsMissing) {
  useRegistry();
  EXPECT_EQ(readString(L"Missing"), L"");
  EXPECT_EQ(read(&_CAppSettings::ReadSettingLong, L"Missing"), 0);
  EXPECT_EQ(asString(), L"Group: Editor");
  EXPECT_EQ(read(&_CAppSettings::ReadSettingLong, L"Missing", Variant(L"10")), 10);
  EXPECT_EQ(stored(L"Missing"), L"10");
}

TEST_F(CAppSettingsTest, ClearKeepsTheLastSetting) {
  useRegistry();
  EXPECT_EQ(group->Clear(), S_OK);
  EXPECT_EQ(asString(), L"Group: Editor");
  write(L"a", Variant(1L));
  EXPECT_EQ(group->Clear(), S_OK);
  EXPECT_EQ(asString(), L"Group: Editor\r\n    [a] 1");
  write(L"b", Variant(2L));
  write(L"c", Variant(3L));
  EXPECT_EQ(group->Clear(), S_OK);
  EXPECT_EQ(asString(), L"Group: Editor\r\n    [c] 3");
  EXPECT_EQ(stored(L"a"), L"1");
  key.setValue(L"Editor", L"a", TestKey::textValue(L"9"));
  EXPECT_EQ(textIn(read(L"a")), L"9");
}

TEST_F(CAppSettingsTest, AStoreThatFailsIsSilent) {
  const std::wstring tooLong(300, L'k');
  useStore(L"HKCU", tooLong);
  write(L"Width", Variant(80L));
  EXPECT_EQ(read(L"Other", Variant(5L)).get().lVal, 5);
  EXPECT_EQ(group->Save(), S_OK);
  ini.write("[Tools\\Editor]\r\nFont=Arial\r\n");
  const auto lock = ini.denyWriting();
  useIni();
  write(L"Font", Variant(L"Courier"));
  EXPECT_EQ(group->Save(), S_OK);
  EXPECT_EQ(ini.content(), "[Tools\\Editor]\r\nFont=Arial\r\n");
}

TEST_F(CAppSettingsTest, AValueWithoutATextIsOnlyCached) {
  useRegistry();
  key.setValue(L"Editor", L"Width", TestKey::textValue(L"80"));
  write(L"Width", Variant::null());
  EXPECT_EQ(read(L"Width").type(), VT_NULL);
  EXPECT_EQ(stored(L"Width"), L"80");
  EXPECT_EQ(read(L"Missing", Variant::null()).type(), VT_NULL);
  EXPECT_FALSE(isStored(L"Missing"));
}

TEST_F(CAppSettingsTest, AKeyThatMayNotBeWrittenKeepsWhatItHolds) {
  useRegistry();
  key.setValue(L"Editor", L"Width", TestKey::textValue(L"80"));
  {
    const auto denied = key.deny(L"Editor", KEY_SET_VALUE);
    EXPECT_EQ(textIn(read(L"Width")), L"80");
    write(L"Width", Variant(90L));
    EXPECT_EQ(read(L"Missing", Variant(5L)).get().lVal, 5);
    EXPECT_EQ(group->Save(), S_OK);
    EXPECT_EQ(stored(L"Width"), L"80");
    EXPECT_FALSE(isStored(L"Missing"));
  }
  EXPECT_EQ(group->Save(), S_OK) << "and takes what was cached when it may";
  EXPECT_EQ(stored(L"Width"), L"90");
  EXPECT_EQ(stored(L"Missing"), L"5");
}

TEST_F(CAppSettingsTest, AKeyThatMayNotBeReadGivesTheDefault) {
  useRegistry();
  key.setValue(L"Editor", L"Width", TestKey::textValue(L"80"));
  {
    const auto denied = key.deny(L"Editor", KEY_QUERY_VALUE | KEY_SET_VALUE);
    EXPECT_EQ(read(L"Width").type(), VT_EMPTY);
    EXPECT_EQ(read(L"Width", Variant(5L)).get().lVal, 5);
  }
  EXPECT_EQ(stored(L"Width"), L"80");
}

LSTATUS WINAPI refuseValue(HKEY, const char*, DWORD, DWORD, const BYTE*, DWORD) {
  return ERROR_DISK_FULL;
}

BOOL WINAPI refuseLine(const char*, const char*, const char*, const char*) {
  SetLastError(ERROR_DISK_FULL);
  return FALSE;
}

TEST_F(CAppSettingsTest, AFullDiskKeepsWhatWasStored) {
  const std::string content = "[Tools\\Editor]\r\nWidth=80\r\n";
  ini.write(content);
  key.setValue(L"Editor", L"Width", TestKey::textValue(L"80"));
  const ImportHook noValue(component(), "RegSetValueExA", &refuseValue);
  const ImportHook noLine(component(), "WritePrivateProfileStringA", &refuseLine);
  useRegistry();
  write(L"Width", Variant(90L));
  EXPECT_EQ(read(L"Missing", Variant(5L)).get().lVal, 5);
  useIni();
  EXPECT_EQ(group->Save(), S_OK);
  EXPECT_EQ(asString(), L"Group: Editor\r\n    [Width] 90\r\n    [Missing] 5");
  EXPECT_EQ(stored(L"Width"), L"80");
  EXPECT_FALSE(isStored(L"Missing"));
  EXPECT_EQ(ini.content(), content);
}

int systemCalls = 0;

LSTATUS WINAPI countValue(HKEY key, const char* name, DWORD reserved, DWORD type, const BYTE* data,
                          DWORD size) {
  ++systemCalls;
  return RegSetValueExA(key, name, reserved, type, data, size);
}

BOOL WINAPI countLine(const char* section, const char* key, const char* value, const char* file) {
  ++systemCalls;
  return WritePrivateProfileStringA(section, key, value, file);
}

TEST_F(CAppSettingsTest, EachWriteIsOneCallOfTheSystem) {
  const ImportHook values(component(), "RegSetValueExA", &countValue);
  const ImportHook lines(component(), "WritePrivateProfileStringA", &countLine);
  for (const bool inRegistry : {true, false}) {
    inRegistry ? useRegistry() : useIni();
    group->Clear();
    systemCalls = 0;
    write(L"Width", Variant(80L));
    EXPECT_EQ(systemCalls, 1);
    write(L"Width", Variant(80L));
    write(L"Height", Variant(25L));
    EXPECT_EQ(systemCalls, 3);
    EXPECT_EQ(group->Save(), S_OK);
    EXPECT_EQ(systemCalls, 5);
  }
}

TEST_F(CAppSettingsTest, AReadOnlyFileIsReadAndWrittenWhereTheSystemWrites) {
  const std::string content = "[Tools\\Editor]\r\nWidth=80\r\n";
  ini.write(content);
  ini.setReadOnly();
  const bool isProtected =
      WritePrivateProfileStringA("Tools\\Editor", "Width", "80", ini.narrowPath().c_str()) == FALSE;
  useIni();
  EXPECT_EQ(textIn(read(L"Width")), L"80");
  write(L"Width", Variant(90L));
  EXPECT_EQ(ini.platformValue("Tools\\Editor", "Width"), isProtected ? "80" : "90");
}

TEST_F(CAppSettingsTest, NothingIsWrittenWhenAGroupGoes) {
  useRegistry();
  setAutoSave(false);
  write(L"a", Variant(1L));
  write(L"b", Variant(1L));
  group.reset();
  EXPECT_FALSE(key.exists(L"Editor"));
}

TEST_F(CAppSettingsTest, TenThousandSettingsAreFound) {
  for (int i = 0; i < 10000; ++i) {
    write(L"Setting " + std::to_wstring(i), Variant(static_cast<long>(i)));
  }
  EXPECT_EQ(read(L"Setting 0").get().lVal, 0);
  EXPECT_EQ(read(L"Setting 9999").get().lVal, 9999);
  EXPECT_EQ(group->Clear(), S_OK);
  EXPECT_EQ(asString(), L"Group: \r\n    [Setting 9999] 9999");
}

TEST_F(CAppSettingsTest, ScriptsUseItByName) {
  useRegistry();
  const Late late(group);
  Variant width(80L);
  EXPECT_EQ(late.call(L"WriteSetting", Variant(L"Width"), byRef(width)).code, S_OK);
  width = Variant(90L);
  EXPECT_EQ(late.get(L"ReadSetting", Variant(L"Width")).get().lVal, 80);
  EXPECT_EQ(textIn(late.get(L"ReadSettingString", Variant(L"Width"))), L"80");
  EXPECT_EQ(late.get(L"ReadSettingInteger", Variant(L"Missing"), Variant(L"3")).get().iVal, 3);
  EXPECT_EQ(late.get(L"ReadSetting", Variant(L"None")).type(), VT_EMPTY);
  EXPECT_EQ(textIn(late.get(L"AsString", Variant(L"> "))),
            L"> Group: Editor\r\n>     [Width] 80\r\n>     [Missing] 3");
}

}  // namespace
}  // namespace zeq::test
