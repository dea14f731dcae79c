#pragma once
// What the shell knows of one file: its type, and how to open it.

#include <string>

namespace zeq::platform {

/// The shell's description of a file's type, asked for with the path in the code page (SHGetFileInfoA); empty
/// if the shell gives none. In contrast to fileTypeName (FileTypes.h) it is the shell's answer as it comes,
/// whether or not there is such a file.
[[nodiscard]] std::wstring fileTypeDescription(const std::wstring& path);

/// Opens a file with the program for its type (ShellExecuteA). Where there is no such program, the user is
/// asked for one. Failures go unnoticed.
void openFile(const std::wstring& path);

}  // namespace zeq::platform
