#include "platform/ProfileFiles.h"

#include <windows.h>

namespace zeq::platform {

std::size_t readProfileString(const char* section, const char* key, const char* fallback,
                              std::span<char> buffer, const char* file) noexcept {
  return GetPrivateProfileStringA(section, key, fallback, buffer.data(), static_cast<DWORD>(buffer.size()),
                                  file);
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

}  // namespace zeq::platform
