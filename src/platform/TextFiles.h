#pragma once
// Whole writes to plain text files in the system's ANSI code page. Every function opens the file, does its
// work and closes it again, whatever happens; a failure is thrown as std::system_error with the Win32 code.

#include <string>
#include <string_view>

namespace zeq::platform {

/// Adds text to the end of a file, which is created if it is not there. Others may read and write it
/// meanwhile.
void appendText(const std::wstring& path, std::wstring_view text);

/// Replaces the content of a file, which is created if it is not there.
void overwriteText(const std::wstring& path, std::wstring_view text);

void deleteTextFile(const std::wstring& path);

}  // namespace zeq::platform
