#pragma once
// One named value in a persistent store: a key of the registry or a section of an ini file. The "hive" names
// the store: HKCU, HKLM, HKU, HKDD, HKCC, HKCR (in either case), or the path of an ini file that exists.
//
// The type letter says how a value is stored, in either case: S text, B boolean (two bytes of REG_BINARY), D
// 32-bit integer (REG_DWORD). An ini file keeps texts only.

#include <windows.h>

#include <cstdint>
#include <string_view>

#include "automation/Variant.h"

namespace zeq::settings {

/// What Reg_HiveFromName answers for an ini file, and for a name that is neither.
inline constexpr std::uint32_t iniFileHive = 1;
inline constexpr std::uint32_t invalidHive = 0;

/// The status of a call that did nothing: there is no such hive, or its store keeps no values of that type.
/// Any other status is a Win32 error code, 0 for success.
inline constexpr long nothingDone = 99;

/// The predefined registry key, iniFileHive or invalidHive.
[[nodiscard]] std::uint32_t Reg_HiveFromName(std::wstring_view name);

struct StoredValue {
  long status = nothingDone;
  automation::Variant value;  ///< The default where nothing was read.
  /// The registry holds this text as a string value: writing it back would change nothing but letters outside
  /// the code page, which were lost in reading.
  bool isStoredText = false;
};

/// Reads a value. A missing key of an ini file is the default's text, with success; an ini file's values of
/// the other types are the default, with success.
[[nodiscard]] StoredValue Reg_GetValue(std::wstring_view hive, std::wstring_view path, std::wstring_view name,
                                       wchar_t type, automation::Variant fallback) noexcept;

/// Writes a value, with the registry keys of its path. Only a key that cannot be opened or created is
/// reported: a write that fails after that counts as done.
long Reg_SetValue(std::wstring_view hive, std::wstring_view path, std::wstring_view name, wchar_t type,
                  const VARIANT& value) noexcept;

}  // namespace zeq::settings
