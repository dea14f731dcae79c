#pragma once
// The private-profile (ini file) functions of the system, in its narrow code page. A file that is named
// without a folder lies in the Windows folder. A file whose name or whole path has 260 characters or more
// counts as one that is not there and cannot be made; a section or a key with a name of more than 32,766
// characters is never found and not written. Values may have any length. Where a null pointer has a meaning
// of its own it is said.

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace zeq::platform {

/// Copies the value of a key, or the fallback if there is none, cut to the buffer; returns its length.
/// Without a key (null) it copies the names of the section's keys, each followed by a NUL, and one more NUL.
std::size_t readProfileString(const char* section, const char* key, const char* fallback,
                              std::span<char> buffer, const char* file);

/// The value of a key, or the fallback if there is none, cut to 254 characters.
[[nodiscard]] std::wstring profileValue(std::wstring_view section, std::wstring_view key,
                                        std::wstring_view fallback, std::wstring_view file);

/// Copies the lines of a section, each followed by a NUL, and one more NUL; returns the length without that
/// last one, or the size of the buffer less 2 if it is too small.
std::size_t readProfileSection(const char* section, std::span<char> buffer, const char* file) noexcept;

/// The same for the names of a file's sections.
std::size_t readProfileSectionNames(std::span<char> buffer, const char* file) noexcept;

/// Stores a value. Without a value (null) it removes the key, without a key (null) the section; without all
/// three it makes the system write out what it holds back of the file. False if the file cannot be written.
bool writeProfileString(const char* section, const char* key, const char* value, const char* file);

/// Replaces the content of a section by lines, each followed by a NUL, and one more NUL.
bool writeProfileSection(const char* section, const std::string& lines, const char* file) noexcept;

/// True if a directory search for the name finds a file that is neither hidden nor a system file.
[[nodiscard]] bool normalFileExists(const std::string& name) noexcept;

}  // namespace zeq::platform
