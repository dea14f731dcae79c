#include "platform/ProfileFiles.h"

#include <windows.h>

#include <array>

#include "platform/CodePage.h"

namespace zeq::platform {
namespace {

/// The length of the path that the system makes of a name: a name without any folder lies in the Windows
/// folder.
std::size_t pathLength(std::string_view file) noexcept {
  if (file.find_first_of("\\/:") == std::string_view::npos) {
    return GetWindowsDirectoryA(nullptr, 0) + file.size();  // With the NUL's place for the separator.
  }
  std::array<char, MAX_PATH> path;
  const DWORD length = GetFullPathNameA(file.data(), MAX_PATH, path.data(), nullptr);
  return length != 0 ? length : MAX_PATH;  // Some systems refuse to make a path that is so long.
}

/// False for a file whose path is too long for the system, which reaches beyond the place that it has for
/// one.
bool isNameable(std::string_view file) noexcept {
  const bool isAbsolute = file.size() > 2 && ((file[1] == ':' && (file[2] == '\\' || file[2] == '/')) ||
                                              file.starts_with("\\\\"));
  return file.size() < MAX_PATH && (isAbsolute || pathLength(file) < MAX_PATH);  // No absolute path grows.
}

/// The file to read from: one that cannot be named is one that is not there.
const char* readable(const char* file) noexcept {
  return isNameable(file) ? file : "C:\\?";
}

}  // namespace

std::size_t readProfileString(const char* section, const char* key, const char* fallback,
                              std::span<char> buffer, const char* file) noexcept {
  return GetPrivateProfileStringA(section, key, fallback, buffer.data(), static_cast<DWORD>(buffer.size()),
                                  readable(file));
}

std::wstring profileValue(std::wstring_view section, std::wstring_view key, std::wstring_view fallback,
                          std::wstring_view file) {
  std::array<char, 255> buffer{};
  const std::size_t length = readProfileString(toAnsi(section).c_str(), toAnsi(key).c_str(),
                                               toAnsi(fallback).c_str(), buffer, toAnsi(file).c_str());
  return fromAnsi(std::string_view(buffer.data(), length));
}

std::size_t readProfileSection(const char* section, std::span<char> buffer, const char* file) noexcept {
  return GetPrivateProfileSectionA(section, buffer.data(), static_cast<DWORD>(buffer.size()), readable(file));
}

std::size_t readProfileSectionNames(std::span<char> buffer, const char* file) noexcept {
  return GetPrivateProfileSectionNamesA(buffer.data(), static_cast<DWORD>(buffer.size()), readable(file));
}

bool writeProfileString(const char* section, const char* key, const char* value, const char* file) noexcept {
  return isNameable(file) && WritePrivateProfileStringA(section, key, value, file) != FALSE;
}

bool writeProfileSection(const char* section, const std::string& lines, const char* file) noexcept {
  return isNameable(file) && WritePrivateProfileSectionA(section, lines.c_str(), file) != FALSE;
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
