// Settings, ini files and versions.

#include "Scenario.h"

namespace conformance {
namespace {

const Scenario settingScenario(L"CAppSetting", [] {
  const Object<_CAppSetting> setting(L"CAppSetting");
  PUT(setting, Key, L"Width");
  PUT(setting, value, 80);
  equal(L"the key is kept", GET(setting, Key), L"Width");
  equal(L"the value is kept", GET(setting, value), 80);
  equal(L"it describes itself", CALL(setting, AsString, L" "), L" [Width] 80");
});

const Scenario settingsScenario(L"CAppSettings", [] {
  const Object<_CAppSettings> group(L"CAppSettings");
  PUT(group, AutoSave, false);
  PUT(group, Hive, writeFile(L"group.ini", ""));
  PUT(group, RootKey, L"Root");
  PUT(group, SubKey, L"Editor");
  equal(L"AutoSave is off", GET(group, AutoSave), false);
  equal(L"the hive is kept", GET(group, Hive), scratchFolder() + L"\\group.ini");
  equal(L"the root key is kept", GET(group, RootKey), L"Root");
  equal(L"the group is kept", GET(group, SubKey), L"Editor");
  CALL(group, WriteSetting, L"Width", 80);
  equal(L"a value", CALL(group, ReadSetting, L"Width", Value::missing()), 80);
  equal(L"as string", CALL(group, ReadSettingString, L"Width", Value::missing()), L"80");
  equal(L"as boolean", CALL(group, ReadSettingBoolean, L"Width", Value::missing()), true);
  equal(L"as 16-bit integer", CALL(group, ReadSettingInteger, L"Width", Value::missing()), 80);
  equal(L"as 32-bit integer", CALL(group, ReadSettingLong, L"Width", Value::missing()), 80);
  equal(L"as single", CALL(group, ReadSettingSingle, L"Width", Value::missing()), 80);
  equal(L"as double", CALL(group, ReadSettingDouble, L"Width", Value::missing()), 80);
  equal(L"it describes itself", CALL(group, AsString, L""), L"Group: Editor\r\n    [Width] 80");
  CALL(group, Save);
  CALL(group, Clear);
});

const Scenario optionsScenario(L"CAppOptions", [] {
  const Object<_CAppOptions> options(L"CAppOptions");
  const std::wstring path = writeFile(L"options.ini", "");
  const Listener events(options, DIID___CAppOptions);
  PUT(options, Hive, path);
  PUT(options, RootKey, L"Root");
  PUT(options, AutoSave, true);
  equal(L"AutoSave is on", GET(options, AutoSave), true);
  equal(L"the hive is kept", GET(options, Hive), path);
  equal(L"the root key is kept", GET(options, RootKey), L"Root");
  CALL(options, WriteSetting, L"Editor", L"Width", 80);
  equal(L"a change is told", events.count(), 1);
  equal(L"a value", CALL(options, ReadSetting, L"Editor", L"Width", Value::missing()), L"80");
  equal(L"as string", CALL(options, ReadSettingString, L"Editor", L"Width", Value::missing()), L"80");
  equal(L"as boolean", CALL(options, ReadSettingBoolean, L"Editor", L"Width", Value::missing()), true);
  equal(L"as 16-bit integer", CALL(options, ReadSettingInteger, L"Editor", L"Width", Value::missing()), 80);
  equal(L"as 32-bit integer", CALL(options, ReadSettingLong, L"Editor", L"Width", Value::missing()), 80);
  equal(L"as single", CALL(options, ReadSettingSingle, L"Editor", L"Width", Value::missing()), 80);
  equal(L"as double", CALL(options, ReadSettingDouble, L"Editor", L"Width", Value::missing()), 80);
  const Object<_CAppSettings> group(GET(options, Group, L"Editor"));
  equal(L"a group of its own", GET(group, SubKey), L"Editor");
  CALL(options, Save);
  CALL(options, Clear);
  equal(L"it describes itself", CALL(options, AsString, L"").text().empty(), false);
});

const Scenario iniFileScenario(L"CIniFile", [] {
  const Object<_CIniFile> ini(L"CIniFile");
  Value path = writeFile(L"reader.ini", "[General]\r\nName=Alpha\r\n[Other]\r\nName=Beta\r\n");
  CALL(ini, Create, ref(path));
  equal(L"the file is kept", GET(ini, FileName), path);
  PUT(ini, section, L"General");
  equal(L"the section is kept", GET(ini, section), L"General");
  equal(L"its keys", GET(Object<_Collection>(GET(ini, Keys)), Item, 1), L"Name");
  Value key = L"Name";
  Value other = L"Other";
  Value fallback = L"";
  equal(L"a value", CALL(ini, GetString, ref(key), ref(other), ref(fallback)), L"Beta");
  PUT(ini, FileName, path);
});

const Scenario iniFileExScenario(L"CIniFileEx", [] {
  const Object<_CIniFileEx> ini(L"CIniFileEx");
  PUT(ini, file, scratchFolder() + L"\\writer.ini");
  PUT(ini, section, L"General");
  equal(L"the file is kept", GET(ini, file), scratchFolder() + L"\\writer.ini");
  equal(L"the section is kept", GET(ini, section), L"General");
  PUT(ini, values, L"Name", L"Alpha");
  PUT(ini, values, L"Gone", L"x");
  equal(L"a value", GET(ini, values, L"Name"), L"Alpha");
  Value failed = true;
  equal(L"a value or its default", CALL(ini, getValue, L"Name", L"", ref(failed)), L"Alpha");
  equal(L"it did not fail", failed, false);
  CALL(ini, deleteKey, L"Gone");
  Value current = false;
  CALL(ini, addSection, L"New", ref(current));
  CALL(ini, flush);
  Value list;
  equal(L"sections are counted", CALL(ini, enumSections, ref(list)), 2);
  equal(L"the sections come back", (list.get().vt & VT_ARRAY) != 0, true);
  equal(L"keys are counted", CALL(ini, enumSectionKeys, ref(list)), 1);
  equal(L"values are counted", CALL(ini, enumSectionValues, ref(list)), 1);
  equal(L"pairs are counted", CALL(ini, enumSectionValuePairs, ref(list)), 1);
  CALL(ini, writeSection, list);
  CALL(ini, deleteSection, L"New");
});

const Scenario versionScenario(L"CVersionInfo", [] {
  const Object<_CVersionInfo> version(L"CVersionInfo");
  Value path = writeFile(L"version.ini", "[VERSION]\r\nItemName=Editor\r\nVerMajor=2\r\n");
  Value section = L"";
  equal(L"reading succeeds", CALL(version, ReadFromIniFile, ref(path), ref(section)), true);
  equal(L"the name is read", GET(version, ItemName), L"Editor");
  PUT(version, ItemName, L"Other");
  PUT(version, CreationDate, Value(36526.0).as(VT_DATE));
  PUT(version, VerMajor, 1);
  PUT(version, VerMinor, 2);
  PUT(version, Revision, 3);
  PUT(version, description, L"text");
  equal(L"the date is kept", GET(version, CreationDate), 36526.0);
  equal(L"the major number is kept", GET(version, VerMajor), 1);
  equal(L"the minor number is kept", GET(version, VerMinor), 2);
  equal(L"the revision is kept", GET(version, Revision), 3);
  equal(L"the description is kept", GET(version, description), L"text");
  Value one = 1;
  Value two = 2;
  Value three = 3;
  equal(L"equal numbers", CALL(version, IsEqualTo, ref(one), ref(two), ref(three)), true);
  equal(L"not later than itself", CALL(version, IsLaterThan, ref(one), ref(two), ref(three)), false);
  Value itself = version;
  equal(L"not later than the same version", CALL(version, IsLaterThanVer, ref(itself)), false);
  CALL(version, Clear);
  equal(L"a cleared version", GET(version, VerMajor), 0);
});

}  // namespace
}  // namespace conformance
