// Settings and ini files against the platform calls that they stand on.

#include <windows.h>

#include <array>
#include <string>
#include <vector>

#include "harness.h"
#include "support/Component.h"
#include "support/IniText.h"

namespace zeq::bench {
namespace {

using automation::check;
using automation::ComPtr;
using automation::Variant;
using test::Bstr;
using test::IniText;

constexpr const char* registryPath = "Software\\ZEQUtility2Bench\\Editor";

/// The registry value that is read; it stays in the prefix that the benchmarks run in.
void storeInRegistry() {
  HKEY key = nullptr;
  RegCreateKeyExA(HKEY_CURRENT_USER, registryPath, 0, nullptr, 0, KEY_SET_VALUE, nullptr, &key, nullptr);
  constexpr std::string_view text = "Arial";
  RegSetValueExA(key, "Font", 0, REG_SZ, reinterpret_cast<const BYTE*>(text.data()),
                 static_cast<DWORD>(text.size() + 1));
  RegCloseKey(key);
}

void readFromRegistry() {
  HKEY key = nullptr;
  RegOpenKeyExA(HKEY_CURRENT_USER, registryPath, 0, KEY_QUERY_VALUE, &key);
  std::array<BYTE, 64> data{};
  DWORD size = 0;
  DWORD type = REG_SZ;
  RegQueryValueExA(key, "Font", nullptr, &type, data.data(), &size);
  RegQueryValueExA(key, "Font", nullptr, &type, data.data(), &size);
  RegCloseKey(key);
}

void addRegistryRow(std::vector<Row>& rows) {
  storeInRegistry();
  const auto options = test::create<CAppOptions, _CAppOptions>();
  check(options->put_Hive(Bstr(L"HKCU").get()));
  check(options->put_RootKey(Bstr(L"Software\\ZEQUtility2Bench").get()));
  rows.push_back(
      {.what = "a text option read from the registry (`CAppOptions.ReadSettingString`)",
       .peer = "`RegOpenKeyExA`, `RegQueryValueExA` twice, `RegCloseKey`",
       .target = 1.3,
       .ours = each([options] {
         const Bstr group(L"Editor");
         const Bstr key(L"Font");
         Bstr value;
         check(options->ReadSettingString(group.get(), key.get(), Variant::missing().get(), value.out()));
       }),
       .theirs = each(readFromRegistry)});
}

/// Reads ten settings that are spread evenly over a group.
Work cachedReads(int settings) {
  const auto group = test::create<CAppSettings, _CAppSettings>();
  std::vector<std::wstring> names;
  for (int i = 0; i < settings; ++i) {
    const std::wstring name = L"Setting number " + std::to_wstring(i);
    check(group->WriteSetting(Bstr(name).get(), Variant(static_cast<long>(i)).get()));
    if (i % (settings / 10) == 0) {
      names.push_back(name);
    }
  }
  return each([group, names, next = std::size_t{0}]() mutable {
    const Bstr name(names[next]);
    next = (next + 1) % names.size();
    Variant value;
    check(group->ReadSetting(name.get(), Variant::missing().get(), value.out()));
  });
}

void addIniRows(std::vector<Row>& rows) {
  static IniText ini("[Window]\r\nWidth=80\r\nHeight=25\r\nFont=Arial\r\n");
  const auto reader = test::create<CIniFile, _CIniFile>();
  Bstr path(ini.path());
  BSTR file = path.get();
  check(reader->put_FileName(&file));
  check(reader->put_section(Bstr(L"Window").get()));
  rows.push_back({.what = "a value read by `CIniFile.GetString`",
                  .peer = "`GetPrivateProfileStringA`",
                  .target = 1.3,
                  .ours = each([reader] {
                    const Bstr key(L"Font");
                    BSTR name = key.get();
                    BSTR none = nullptr;
                    Bstr value;
                    check(reader->GetString(&name, &none, &none, value.out()));
                  }),
                  .theirs = each([narrow = ini.narrowPath()] {
                    std::array<char, 256> buffer{};
                    GetPrivateProfileStringA("Window", "Font", "", buffer.data(), 256, narrow.c_str());
                  })});
}

void addSectionRow(std::vector<Row>& rows) {
  std::string content = "[Window]\r\n";
  for (int i = 0; i < 500; ++i) {
    content += "Key number " + std::to_string(i) + "=value\r\n";
  }
  static IniText ini(content);
  const auto file = test::create<CIniFileEx, _CIniFileEx>();
  check(file->put_file(Bstr(ini.path()).get()));
  check(file->put_section(Bstr(L"Window").get()));
  rows.push_back({.what = "500 pairs by `CIniFileEx.enumSectionValuePairs`",
                  .peer = "the calls of `GetPrivateProfileSectionA` that it takes",
                  .target = 2,
                  .ours = each([file] {
                    Variant pairs;
                    short count = 0;
                    check(file->enumSectionValuePairs(&pairs.get(), &count));
                  }),
                  .theirs = each([narrow = ini.narrowPath()] {
                    std::array<char, 16383> buffer{};
                    for (const DWORD size : {2047UL, 4095UL, 8191UL, 16383UL}) {
                      if (GetPrivateProfileSectionA("Window", buffer.data(), size, narrow.c_str()) !=
                          size - 2) {
                        break;
                      }
                    }
                  })});
}

const Area area("settings", [](std::vector<Row>& rows) {
  addRegistryRow(rows);
  rows.push_back({.what = "ten cached settings of 10,000 read in turn (`CAppSettings.ReadSetting`)",
                  .peer = "the same of 10",
                  .target = 2,
                  .ours = cachedReads(10000),
                  .theirs = cachedReads(10)});
  addIniRows(rows);
  addSectionRow(rows);
});

}  // namespace
}  // namespace zeq::bench
