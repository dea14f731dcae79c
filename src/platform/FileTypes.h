#pragma once
// What the shell calls a type of file.

#include <string>

namespace zeq::platform {

/// The shell's description of the type of a file that exists, "Text Document" for example. In contrast to
/// fileTypeDescription (ShellFiles.h) it takes paths of any length and with any letters, and throws
/// std::system_error where there is no such file.
[[nodiscard]] std::wstring fileTypeName(const std::wstring& path);

}  // namespace zeq::platform
