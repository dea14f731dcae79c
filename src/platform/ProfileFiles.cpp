#include "platform/ProfileFiles.h"

#include <windows.h>

#include <array>

#include "platform/CodePage.h"

namespace zeq::platform {

std::size_t readProfileString(const char* section, const char* key, const char* fallback,
                              std::span<char> buffer, const char* file) noexcept {
  return GetPrivateProfileStringA(section, key, fallback, buffer.data(), static_cast<DWORD>(buffer.size()),
                                  file);
}

std::wstring profileValue(std::wstring_view section, std::wstring_view key, std::wstring_view fallback,
                          std::wstring_view file) {
  std::array<char, 255> buffer{};
  const std::size_t length = readProfileString(toAnsi(section).c_str(), toAnsi(key).c_str(),
                                               toAnsi(fallback).c_str(), buffer, toAnsi(file).c_str());
  return fromAnsi(std::string_view(buffer.data(), length));
}

std::size_t readProfileSection(const char* section, std::span<char> buffer, const char* file) noexcept {
  return GetPrivateProfileSectionA(section, buffer.data(), static_cast<DWORD>(buffer.size()), file);
}

std::size_t readProfileSectionNames(std::span<char> buffer, const char* file) noexcept {
  return GetPrivateProfileSectionNamesA(buffer.data(), static_cast<DWORD>(buffer.size()), file);
}

bool writeProfileString(const char* section, const char* key, const char* value, const char* file) noexcept {
  return WritePrivateProfileStringA(section, key, value, file) != FALSE;
}

bool writeProfileSection(const char* section, const std::string& lines, const char* file) noexcept {
  return WritePrivateProfileSectionA(section, lines.c_str(), file) != FALSE;
}

bool normalFileExists(const std::string& name) noexcept {
  constexpr DWORD notNormal = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
  WIN32_FIND_DATAA found{};
  HANDLE search = FindFirstFileA(name.c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) {
    return false;
  }
  bool isNormal = false;
  do {
    isNormal = (found.dwFileAttributes & notNormal) == 0;
  } while (!isNormal && FindNextFileA(search, &found) != FALSE);
  FindClose(search);
  return isNormal;
}

}  // namespace zeq::platform
