#include "platform/ProfileFiles.h"

#include <windows.h>

#include <array>
#include <cstring>

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

/// What the narrow functions can take of a text: for a longer one, some systems use what lies in the memory.
constexpr std::size_t longestText = 32766;

template <class... Texts>
bool areShort(Texts... texts) noexcept {
  return ((texts == nullptr || strnlen(texts, longestText + 1) <= longestText) && ...);
}

/// The file to read from: one that cannot be named, or not be searched for such names, is one that is not
/// there.
template <class... Names>
const char* readable(const char* file, Names... names) noexcept {
  return isNameable(file) && areShort(names...) ? file : "C:\\?";
}

/// A name to look for.
const char* readableName(const char* name) noexcept {
  return areShort(name) ? name : "";
}

}  // namespace

std::size_t readProfileString(const char* section, const char* key, const char* fallback,
                              std::span<char> buffer, const char* file) {
  const std::string cutFallback = areShort(fallback) ? std::string() : std::string(fallback, longestText);
  return GetPrivateProfileStringA(readableName(section), readableName(key),
                                  areShort(fallback) ? fallback : cutFallback.c_str(), buffer.data(),
                                  static_cast<DWORD>(buffer.size()), readable(file, section, key));
}

std::wstring profileValue(std::wstring_view section, std::wstring_view key, std::wstring_view fallback,
                          std::wstring_view file) {
  std::array<char, 255> buffer{};
  const std::size_t length = readProfileString(toAnsi(section).c_str(), toAnsi(key).c_str(),
                                               toAnsi(fallback).c_str(), buffer, toAnsi(file).c_str());
  return fromAnsi(std::string_view(buffer.data(), length));
}

std::size_t readProfileSection(const char* section, std::span<char> buffer, const char* file) noexcept {
  return GetPrivateProfileSectionA(readableName(section), buffer.data(), static_cast<DWORD>(buffer.size()),
                                   readable(file, section));
}

std::size_t readProfileSectionNames(std::span<char> buffer, const char* file) noexcept {
  return GetPrivateProfileSectionNamesA(buffer.data(), static_cast<DWORD>(buffer.size()), readable(file));
}

bool writeProfileString(const char* section, const char* key, const char* value, const char* file) {
  if (!isNameable(file) || !areShort(section, key)) {
    return false;
  }
  if (areShort(value)) {
    return WritePrivateProfileStringA(section, key, value, file) != FALSE;
  }
  return WritePrivateProfileStringW(fromAnsi(section).c_str(), fromAnsi(key).c_str(), fromAnsi(value).c_str(),
                                    fromAnsi(file).c_str()) != FALSE;
}

bool writeProfileSection(const char* section, const std::string& lines, const char* file) noexcept {
  return isNameable(file) && areShort(section) &&
         WritePrivateProfileSectionA(section, lines.c_str(), file) != FALSE;
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
