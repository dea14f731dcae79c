#pragma once
// What the shell calls a type of file.

#include <string>

namespace zeq::platform {

/// The shell's description of the type of a file that exists, "Text Document" for example. Throws
/// std::system_error.
[[nodiscard]] std::wstring fileTypeName(const std::wstring& path);

}  // namespace zeq::platform
