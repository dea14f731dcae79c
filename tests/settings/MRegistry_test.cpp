#include "settings/MRegistry.h"

#include <gmock/gmock.h>

#include <string>

#include "support/IniText.h"
#include "support/TestKey.h"

namespace zeq::settings {
namespace {

using namespace std::literals;
using automation::Variant;
using test::IniText;
using test::TestKey;

std::wstring textIn(const Variant& value) {
  EXPECT_EQ(value.type(), VT_BSTR);
  return value.type() == VT_BSTR ? std::wstring(automation::text(value.get().bstrVal)) : L"";
}

TEST(MRegistryTest, HivesHaveTheirAbbreviationsInEitherCase) {
  EXPECT_EQ(Reg_HiveFromName(L"HKCU"), 0x80000001U);
  EXPECT_EQ(Reg_HiveFromName(L"HKLM"), 0x80000002U);
  EXPECT_EQ(Reg_HiveFromName(L"HKU"), 0x80000003U);
  EXPECT_EQ(Reg_HiveFromName(L"HKDD"), 0x80000006U);
  EXPECT_EQ(Reg_HiveFromName(L"HKCC"), 0x80000005U);
  EXPECT_EQ(Reg_HiveFromName(L"HKCR"), 0x80000000U);
  EXPECT_EQ(Reg_HiveFromName(L"hkcu"), 0x80000001U);
  EXPECT_EQ(Reg_HiveFromName(L"hKlM"), 0x80000002U);
}

TEST(MRegistryTest, AnyOtherHiveIsAnIniFileThatExists) {
  const IniText ini;
  EXPECT_EQ(Reg_HiveFromName(ini.path()), iniFileHive);
  EXPECT_EQ(Reg_HiveFromName(L""), invalidHive);
  EXPECT_EQ(Reg_HiveFromName(L"HKXX"), invalidHive);
  EXPECT_EQ(Reg_HiveFromName(L" HKCU"), invalidHive);
  EXPECT_EQ(Reg_HiveFromName(L"C:\\no such folder\\x.ini"), invalidHive);
  EXPECT_EQ(Reg_HiveFromName(L"C:\\windows"), invalidHive);
  EXPECT_EQ(Reg_HiveFromName(L"C:\\no*such?file"), invalidHive);
  EXPECT_EQ(Reg_HiveFromName(L"?:\\<|>"), invalidHive);
}

TEST(MRegistryTest, TheSearchForAFilePassesOverHiddenAndSystemFiles) {
  const IniText ini;
  for (const int each : {FILE_ATTRIBUTE_HIDDEN, FILE_ATTRIBUTE_SYSTEM}) {
    const auto attributes = static_cast<DWORD>(each);
    SetFileAttributesW(ini.path().c_str(), attributes);
    if (GetFileAttributesW(ini.path().c_str()) == attributes) {  // Not every file system keeps them.
      EXPECT_EQ(Reg_HiveFromName(ini.path()), invalidHive) << attributes;
    }
  }
  SetFileAttributesW(ini.path().c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(Reg_HiveFromName(ini.path()), iniFileHive);
  SetFileAttributesW(ini.path().c_str(), FILE_ATTRIBUTE_NORMAL);
  std::wstring pattern = ini.path();
  pattern.back() = L'?';
  EXPECT_EQ(Reg_HiveFromName(pattern), iniFileHive);
}

class MRegistryRegistryTest : public testing::Test {
 protected:
  StoredValue get(const wchar_t* name, wchar_t type, const Variant& fallback = Variant(L"default")) {
    return Reg_GetValue(L"HKCU", key.path(L"Editor"), name, type, fallback);
  }
  long set(const wchar_t* name, wchar_t type, const Variant& value) {
    return Reg_SetValue(L"HKCU", key.path(L"Editor"), name, type, value.get());
  }
  TestKey::Value stored(const wchar_t* name) { return key.value(L"Editor", name); }

  TestKey key;
};

TEST_F(MRegistryRegistryTest, TextsAreStoredWithTheirNul) {
  EXPECT_EQ(set(L"Font", L'S', Variant(L"Arial")), 0);
  EXPECT_EQ(stored(L"Font"), TestKey::textValue(L"Arial"));
  const StoredValue read = get(L"Font", L's');
  EXPECT_EQ(read.status, 0);
  EXPECT_EQ(textIn(read.value), L"Arial");
  EXPECT_TRUE(read.isStoredText);
}

TEST_F(MRegistryRegistryTest, ValuesOfEveryTypeAreStoredAsTheirText) {
  VARIANT date;
  VariantInit(&date);
  date.vt = VT_CY;
  date.cyVal.int64 = 12500;
  const std::pair<Variant, std::wstring> cases[] = {
      {Variant(80L), L"80"},      {Variant(true), L"True"},
      {Variant(false), L"False"}, {Variant(short{-3}), L"-3"},
      {Variant(), L""},           {Variant(date), L"1.25"},
      {Variant(0.5), L"0.5"},     {Variant(L"text"), L"text"},
  };
  for (const auto& [value, text] : cases) {
    EXPECT_EQ(set(L"Value", L'S', value), 0);
    EXPECT_EQ(key.text(L"Editor", L"Value"), text);
  }
}

TEST_F(MRegistryRegistryTest, LongTextsAndNulsSurvive) {
  for (const unsigned length : {254U, 255U, 16383U, 16384U, 100000U}) {
    const std::wstring text(length, L'v');
    EXPECT_EQ(set(L"Long", L'S', Variant(std::wstring_view(text))), 0);
    EXPECT_EQ(textIn(get(L"Long", L'S').value), text) << length;
  }
  EXPECT_EQ(set(L"Nul", L'S', Variant(L"a\0b"sv)), 0);
  EXPECT_EQ(textIn(get(L"Nul", L'S').value), L"a\0b"sv);
}

TEST_F(MRegistryRegistryTest, ACharacterOutsideTheCodePageIsStoredAsItsSubstitute) {
  const std::wstring substitute = test::wide(test::narrow(L"\x4E2D"));
  ASSERT_NE(substitute, L"\x4E2D");
  EXPECT_EQ(set(L"Text", L'S', Variant(L"\x4E2D")), 0);
  EXPECT_EQ(key.text(L"Editor", L"Text"), substitute);
  EXPECT_EQ(textIn(get(L"Text", L'S').value), substitute);
}

TEST_F(MRegistryRegistryTest, EmptyTextsAreRead) {
  EXPECT_EQ(set(L"Empty", L'S', Variant(L"")), 0);
  EXPECT_EQ(stored(L"Empty"), TestKey::textValue(L""));
  const StoredValue read = get(L"Empty", L'S');
  EXPECT_EQ(read.status, 0);
  EXPECT_EQ(textIn(read.value), L"");

  key.setValue(L"Editor", L"No data", {REG_SZ, {}});
  EXPECT_EQ(get(L"No data", L'S').status, 0);
  EXPECT_EQ(textIn(get(L"No data", L'S').value), L"");
  EXPECT_FALSE(get(L"No data", L'S').isStoredText);
}

TEST_F(MRegistryRegistryTest, TheEmptyNameIsTheKeysDefaultValue) {
  EXPECT_EQ(set(L"", L'S', Variant(L"x")), 0);
  EXPECT_EQ(key.text(L"Editor", L""), L"x");
  EXPECT_EQ(textIn(get(L"", L'S').value), L"x");
}

TEST_F(MRegistryRegistryTest, WhatIsMissingIsReportedAndGivesTheDefault) {
  StoredValue read = get(L"Missing", L'S');
  EXPECT_EQ(read.status, ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(textIn(read.value), L"default");
  key.setValue(L"Editor", L"Other", TestKey::textValue(L"x"));
  for (const wchar_t type : {L'S', L'B', L'D'}) {
    read = get(L"Missing", type);
    EXPECT_EQ(read.status, 2);
    EXPECT_EQ(textIn(read.value), L"default");
    EXPECT_FALSE(read.isStoredText);
  }
  EXPECT_FALSE(key.exists(L"No such key"));
  EXPECT_EQ(Reg_GetValue(L"HKCU", key.path(L"No such key"), L"x", L'S', Variant()).status, 2);
  EXPECT_FALSE(key.exists(L"No such key"));
}

TEST_F(MRegistryRegistryTest, BooleansAreTwoBytes) {
  EXPECT_EQ(set(L"Flag", L'B', Variant(true)), 0);
  EXPECT_EQ(stored(L"Flag"), (TestKey::Value{REG_BINARY, {0xFF, 0xFF}}));
  EXPECT_EQ(get(L"Flag", L'b').value.type(), VT_BOOL);
  EXPECT_EQ(get(L"Flag", L'B').value.get().boolVal, VARIANT_TRUE);
  EXPECT_EQ(set(L"Flag", L'b', Variant(0L)), 0);
  EXPECT_EQ(stored(L"Flag"), (TestKey::Value{REG_BINARY, {0, 0}}));
  EXPECT_EQ(get(L"Flag", L'B').value.get().boolVal, VARIANT_FALSE);
  EXPECT_EQ(set(L"Flag", L'B', Variant(L"True")), 0);
  EXPECT_EQ(stored(L"Flag"), (TestKey::Value{REG_BINARY, {0xFF, 0xFF}}));
}

TEST_F(MRegistryRegistryTest, IntegersAreDoubleWords) {
  EXPECT_EQ(set(L"Number", L'D', Variant(L"-2")), 0);
  EXPECT_EQ(stored(L"Number"), (TestKey::Value{REG_DWORD, {0xFE, 0xFF, 0xFF, 0xFF}}));
  EXPECT_EQ(get(L"Number", L'd').value.type(), VT_I4);
  EXPECT_EQ(get(L"Number", L'D').value.get().lVal, -2);
  EXPECT_EQ(set(L"Number", L'D', Variant(2.5)), 0);
  EXPECT_EQ(get(L"Number", L'D').value.get().lVal, 2);
}

TEST_F(MRegistryRegistryTest, ATypedReadRefusesALongerValue) {
  key.setValue(L"Editor", L"Five", {REG_BINARY, {1, 2, 3, 4, 5}});
  for (const wchar_t type : {L'B', L'D'}) {
    const StoredValue read = get(L"Five", type);
    EXPECT_EQ(read.status, ERROR_MORE_DATA);
    EXPECT_EQ(textIn(read.value), L"default");
  }
}

TEST_F(MRegistryRegistryTest, TheStoredTypeIsNotAsked) {
  key.setValue(L"Editor", L"Bytes", {REG_BINARY, {'a', 'b', 'c', 'd'}});
  StoredValue read = get(L"Bytes", L'S');
  EXPECT_EQ(read.status, 0);
  EXPECT_EQ(textIn(read.value), L"abc");
  EXPECT_FALSE(read.isStoredText);
  EXPECT_EQ(get(L"Bytes", L'D').value.get().lVal, 0x64636261);
  TestKey::Value expandable = TestKey::textValue(L"%x%");
  expandable.type = REG_EXPAND_SZ;
  key.setValue(L"Editor", L"Expandable", expandable);
  read = get(L"Expandable", L'S');
  EXPECT_EQ(textIn(read.value), L"%x%");
  EXPECT_FALSE(read.isStoredText);
}

TEST_F(MRegistryRegistryTest, AnUnknownTypeLetterStoresNothing) {
  EXPECT_EQ(set(L"Value", L'X', Variant(L"x")), 0);
  EXPECT_TRUE(key.exists(L"Editor"));
  EXPECT_EQ(stored(L"Value"), TestKey::Value{});
  key.setValue(L"Editor", L"Value", TestKey::textValue(L"x"));
  const StoredValue read = get(L"Value", L'X');
  EXPECT_EQ(read.status, 0);
  EXPECT_EQ(textIn(read.value), L"default");
}

TEST_F(MRegistryRegistryTest, AValueWithoutThatTypesFormIsNotStored) {
  EXPECT_EQ(set(L"Value", L'S', Variant(L"kept")), 0);
  EXPECT_EQ(set(L"Value", L'S', Variant::null()), nothingDone);
  EXPECT_EQ(set(L"Value", L'D', Variant(L"abc")), nothingDone);
  EXPECT_EQ(set(L"Value", L'B', Variant(L"abc")), nothingDone);
  EXPECT_EQ(key.text(L"Editor", L"Value"), L"kept");
}

TEST_F(MRegistryRegistryTest, KeysThatCannotBeOpenedOrCreatedAreReported) {
  // Only system code may create keys directly under this root.
  const LSTATUS expected = [] {
    HKEY made = nullptr;
    const LSTATUS status =
        RegCreateKeyExA(HKEY_USERS, "", 0, nullptr, 0, KEY_SET_VALUE, nullptr, &made, nullptr);
    RegCloseKey(made);
    return status;
  }();
  EXPECT_EQ(Reg_SetValue(L"HKU", L"", L"x", L'X', Variant(L"x").get()), expected);
  const std::wstring tooLong(300, L'k');
  HKEY opened = nullptr;
  const LSTATUS openStatus = RegOpenKeyExA(HKEY_CURRENT_USER, std::string(300, 'k').c_str(), 0, 1, &opened);
  ASSERT_NE(openStatus, ERROR_SUCCESS);
  EXPECT_EQ(Reg_GetValue(L"HKCU", tooLong, L"x", L'S', Variant()).status, openStatus);
  const LSTATUS createStatus = RegCreateKeyExA(HKEY_CURRENT_USER, std::string(300, 'k').c_str(), 0, nullptr,
                                               0, 6, nullptr, &opened, nullptr);
  ASSERT_NE(createStatus, ERROR_SUCCESS);
  EXPECT_EQ(Reg_SetValue(L"HKCU", tooLong, L"x", L'S', Variant(L"x").get()), createStatus);
  EXPECT_EQ(RegOpenKeyExA(HKEY_DYN_DATA, "x", 0, 1, &opened),
            Reg_GetValue(L"HKDD", L"x", L"x", L'S', Variant()).status);
}

TEST_F(MRegistryRegistryTest, AFailedWriteIsNotReported) {
  // A value name may have 16,383 characters.
  const std::wstring name(20000, L'n');
  HKEY opened = nullptr;
  ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, key.path().c_str(), 0, KEY_SET_VALUE, &opened), ERROR_SUCCESS);
  ASSERT_NE(
      RegSetValueExA(opened, test::narrow(name).c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>("x"), 2),
      ERROR_SUCCESS);
  RegCloseKey(opened);
  EXPECT_EQ(set(name.c_str(), L'S', Variant(L"x")), 0);
  EXPECT_NE(get(name.c_str(), L'S').status, 0);
}

TEST_F(MRegistryRegistryTest, TheViewIsThatOfTheProcess) {
  // A key that the test makes itself shows where the library writes.
  ASSERT_EQ(Reg_SetValue(L"HKLM", L"Software\\ZEQUtility2Test", L"x", L'S', Variant(L"here").get()), 0);
  constexpr REGSAM ownView = sizeof(void*) == 4 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
  constexpr REGSAM otherView = sizeof(void*) == 4 ? KEY_WOW64_64KEY : KEY_WOW64_32KEY;
  const auto existsIn = [](REGSAM view) {
    HKEY opened = nullptr;
    const LSTATUS status =
        RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"Software\\ZEQUtility2Test", 0, KEY_QUERY_VALUE | view, &opened);
    RegCloseKey(opened);
    return status == ERROR_SUCCESS;
  };
  EXPECT_TRUE(existsIn(ownView));
  EXPECT_FALSE(existsIn(otherView));
  EXPECT_EQ(textIn(Reg_GetValue(L"HKLM", L"Software\\ZEQUtility2Test", L"x", L'S', Variant()).value),
            L"here");
  RegDeleteKeyW(HKEY_LOCAL_MACHINE, L"Software\\ZEQUtility2Test");
}

TEST(MRegistryIniTest, TextsAreReadAndWritten) {
  const IniText ini;
  EXPECT_EQ(Reg_SetValue(ini.path(), L"Tools\\Editor", L"Width", L's', Variant(80L).get()), 0);
  EXPECT_EQ(ini.platformValue("Tools\\Editor", "Width"), "80");
  const StoredValue read = Reg_GetValue(ini.path(), L"Tools\\Editor", L"width", L'S', Variant(L"d"));
  EXPECT_EQ(read.status, 0);
  EXPECT_EQ(textIn(read.value), L"80");
  EXPECT_FALSE(read.isStoredText);
}

TEST(MRegistryIniTest, WhatIsMissingIsTheDefaultsTextWithSuccess) {
  const IniText ini;
  const StoredValue read = Reg_GetValue(ini.path(), L"Section", L"Missing", L'S', Variant(5L));
  EXPECT_EQ(read.status, 0);
  EXPECT_EQ(textIn(read.value), L"5");
  EXPECT_EQ(ini.content(), "");
}

TEST(MRegistryIniTest, TextsAreCutTo254Characters) {
  for (const unsigned length : {253U, 254U, 255U, 300U}) {
    const IniText ini("[S]\r\nLong=" + std::string(length, 'v') + "\r\n");
    EXPECT_EQ(textIn(Reg_GetValue(ini.path(), L"S", L"Long", L'S', Variant(L"")).value),
              std::wstring(std::min(length, 254U), L'v'));
  }
}

TEST(MRegistryIniTest, OtherTypesAreNotKept) {
  const IniText ini("[S]\r\nNumber=7\r\n");
  for (const wchar_t type : {L'B', L'D', L'X'}) {
    EXPECT_EQ(Reg_SetValue(ini.path(), L"S", L"Number", type, Variant(8L).get()), nothingDone);
    const StoredValue read = Reg_GetValue(ini.path(), L"S", L"Number", type, Variant(5L));
    EXPECT_EQ(read.status, 0);
    EXPECT_EQ(read.value.type(), VT_I4);
    EXPECT_EQ(read.value.get().lVal, 5);
  }
  EXPECT_EQ(ini.content(), "[S]\r\nNumber=7\r\n");
}

TEST(MRegistryIniTest, AWriteThatFailsIsNotReported) {
  const IniText ini("[S]\r\nx=kept\r\n");
  const auto lock = ini.denyWriting();
  EXPECT_EQ(Reg_SetValue(ini.path(), L"S", L"x", L'S', Variant(L"new").get()), 0);
  EXPECT_EQ(ini.content(), "[S]\r\nx=kept\r\n");
}

TEST(MRegistryIniTest, AFileThatIsNotThereIsNeverMade) {
  const std::wstring path = [] {
    const IniText removed;
    return removed.path();
  }();
  EXPECT_EQ(Reg_SetValue(path, L"S", L"x", L'S', Variant(L"x").get()), 99);
  const StoredValue read = Reg_GetValue(path, L"S", L"x", L'S', Variant(5L));
  EXPECT_EQ(read.status, 99);
  EXPECT_EQ(read.value.get().lVal, 5);
  EXPECT_EQ(GetFileAttributesW(path.c_str()), INVALID_FILE_ATTRIBUTES);
}

}  // namespace
}  // namespace zeq::settings
