#include "settings/MRegistry.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <cwctype>
#include <string>
#include <utility>

#include "automation/Text.h"
#include "platform/CodePage.h"
#include "platform/NarrowRegistry.h"
#include "platform/ProfileFiles.h"

namespace zeq::settings {
namespace {

using automation::Variant;
using platform::NarrowRegistryKey;
using platform::toAnsi;

struct NamedHive {
  std::wstring_view name;
  std::uint32_t key;
};

constexpr std::array hives{
    NamedHive{L"HKCU", 0x80000001}, NamedHive{L"HKLM", 0x80000002}, NamedHive{L"HKU", 0x80000003},
    NamedHive{L"HKDD", 0x80000006}, NamedHive{L"HKCC", 0x80000005}, NamedHive{L"HKCR", 0x80000000},
};

/// The handle of a predefined key is its 32-bit number, sign-extended.
HKEY rootKey(std::uint32_t hive) noexcept {
  const auto number = static_cast<LONG_PTR>(static_cast<std::int32_t>(hive));
  return reinterpret_cast<HKEY>(number);  // NOLINT(performance-no-int-to-ptr)
}

wchar_t upper(wchar_t letter) noexcept {
  return static_cast<wchar_t>(std::towupper(letter));
}

StoredValue readText(const NarrowRegistryKey& key, const std::string& name) {
  StoredValue result;
  std::string data;
  DWORD type = REG_NONE;
  result.status = key.read(name, data, type);
  if (result.status == ERROR_SUCCESS) {
    result.isStoredText = type == REG_SZ && !data.empty() && data.back() == '\0';
    data.resize(data.empty() ? 0 : data.size() - 1);  // Without the NUL at the end.
    result.value = Variant(std::wstring_view(platform::fromAnsi(data)));
  }
  return result;
}

template <class Number>
StoredValue readNumber(const NarrowRegistryKey& key, const std::string& name, VARTYPE type) {
  Number number = 0;
  StoredValue result;
  result.status = key.read(name, &number, sizeof number);
  if (result.status == ERROR_SUCCESS) {
    result.value = Variant(static_cast<long>(number)).to(type);
  }
  return result;
}

StoredValue readRegistry(HKEY root, std::wstring_view path, std::wstring_view name, wchar_t type,
                         const Variant& fallback) {
  NarrowRegistryKey key;
  StoredValue result;
  result.status = key.openToRead(root, toAnsi(path));
  if (result.status == ERROR_SUCCESS) {
    switch (upper(type)) {
      case L'S':
        result = readText(key, toAnsi(name));
        break;
      case L'B':
        result = readNumber<std::int16_t>(key, toAnsi(name), VT_BOOL);
        break;
      case L'D':
        result = readNumber<std::int32_t>(key, toAnsi(name), VT_I4);
        break;
      default:
        result.value = fallback;
    }
  }
  if (result.status != ERROR_SUCCESS) {
    result.value = fallback;
  }
  return result;
}

/// What the caller is not told: whether the value was written.
void writeRegistryValue(NarrowRegistryKey& key, const std::string& name, wchar_t type, const VARIANT& value) {
  switch (upper(type)) {
    case L'S': {
      const std::string text = toAnsi(automation::textOf(value));
      key.write(name, REG_SZ, text.c_str(), text.size() + 1);
      break;
    }
    case L'B': {
      const VARIANT_BOOL flag = Variant(value).to(VT_BOOL).get().boolVal;
      key.write(name, REG_BINARY, &flag, sizeof flag);
      break;
    }
    case L'D': {
      const long number = Variant(value).to(VT_I4).get().lVal;
      key.write(name, REG_DWORD, &number, sizeof number);
      break;
    }
    default:
      break;
  }
}

long writeIniText(const std::string& file, std::wstring_view section, std::wstring_view key,
                  const VARIANT& value) {
  platform::writeProfileString(toAnsi(section).c_str(), toAnsi(key).c_str(),
                               toAnsi(automation::textOf(value)).c_str(), file.c_str());
  return ERROR_SUCCESS;
}

}  // namespace

std::uint32_t Reg_HiveFromName(std::wstring_view name) {
  const std::wstring wanted = automation::foldCase(name);
  const auto* found =
      std::find_if(hives.begin(), hives.end(), [&](const auto& each) { return each.name == wanted; });
  if (found != hives.end()) {
    return found->key;
  }
  return platform::normalFileExists(toAnsi(name)) ? iniFileHive : invalidHive;
}

StoredValue Reg_GetValue(std::wstring_view hive, std::wstring_view path, std::wstring_view name, wchar_t type,
                         Variant fallback) noexcept {
  try {
    const std::uint32_t key = Reg_HiveFromName(hive);
    if (key == iniFileHive && upper(type) == L'S') {
      const std::wstring defaultText = automation::textOf(fallback.get());
      const std::wstring text = platform::profileValue(path, name, defaultText, hive);
      return {.status = ERROR_SUCCESS, .value = Variant(std::wstring_view(text))};
    }
    if (key == iniFileHive) {
      return {.status = ERROR_SUCCESS, .value = std::move(fallback)};
    }
    if (key != invalidHive) {
      return readRegistry(rootKey(key), path, name, type, fallback);
    }
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): nothing was read.
  }
  return {.status = nothingDone, .value = std::move(fallback)};
}

long Reg_SetValue(std::wstring_view hive, std::wstring_view path, std::wstring_view name, wchar_t type,
                  const VARIANT& value) noexcept {
  try {
    const std::uint32_t root = Reg_HiveFromName(hive);
    if (root == iniFileHive) {
      return upper(type) == L'S' ? writeIniText(toAnsi(hive), path, name, value) : nothingDone;
    }
    if (root == invalidHive) {
      return nothingDone;
    }
    NarrowRegistryKey key;
    const LSTATUS status = key.createToWrite(rootKey(root), toAnsi(path));
    if (status == ERROR_SUCCESS) {
      writeRegistryValue(key, toAnsi(name), type, value);
    }
    return status;
  } catch (const std::exception&) {
    return nothingDone;  // The value has no form of that type.
  }
}

}  // namespace zeq::settings
