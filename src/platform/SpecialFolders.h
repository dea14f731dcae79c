#pragma once
// The shell's special folders and the folder for temporary files. Both are asked for in the system's narrow
// code page.

#include <optional>
#include <string>

namespace zeq::platform {

/// The path of one of the shell's folders (CSIDL_…, with flags or without); none for a folder without a path.
[[nodiscard]] std::optional<std::wstring> specialFolder(int id);

/// The folder for temporary files as the system gives it, in 256 characters at the most.
[[nodiscard]] std::wstring temporaryFolder();

}  // namespace zeq::platform
