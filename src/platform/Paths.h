#pragma once
// Paths as texts, with the scripting runtime's semantics. Nothing here touches the disk or needs Windows.

#include <string>
#include <string_view>

namespace zeq::platform {

/// Joins a path and a name with a separator between them, unless the path ends with one ("\", "/" or ":").
[[nodiscard]] std::wstring buildPath(std::wstring_view path, std::wstring_view name);

/// The last component; "" for a root.
[[nodiscard]] std::wstring fileName(std::wstring_view path);

/// The last component without its extension.
[[nodiscard]] std::wstring baseName(std::wstring_view path);

/// What follows the last dot of the last component; "" if it has none.
[[nodiscard]] std::wstring extensionName(std::wstring_view path);

/// The path without its last component; "" where there is no parent.
[[nodiscard]] std::wstring parentFolderName(std::wstring_view path);

/// The drive ("C:") or share ("\\server\share") that a path begins with; "" if it names none.
[[nodiscard]] std::wstring driveName(std::wstring_view path);

}  // namespace zeq::platform
