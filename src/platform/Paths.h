#pragma once
// Paths as texts, with the scripting runtime's semantics: nothing here touches the disk or needs Windows.
// Both "\" and "/" separate components; a separator at the end belongs to no component. The parts of a path
// are views of its text.

#include <string>
#include <string_view>

namespace zeq::platform {

/// The system takes no longer path, in UTF-16 code units.
inline constexpr std::size_t longestPath = 32767;

[[nodiscard]] constexpr bool isSeparator(wchar_t character) noexcept {
  return character == L'\\' || character == L'/';
}

/// What buildPath puts together: a path, the separator that it needs or none, and a name.
struct JoinedPath {
  std::wstring_view path;
  std::wstring_view separator;
  std::wstring_view name;

  [[nodiscard]] std::size_t size() const noexcept { return path.size() + separator.size() + name.size(); }
  /// Writes size() characters.
  void copyTo(wchar_t* target) const noexcept;
};

/// Joins a path and a name with one separator between them. None is added to an empty path or after a drive
/// ("C:").
[[nodiscard]] JoinedPath joinPath(std::wstring_view path, std::wstring_view name) noexcept;
[[nodiscard]] std::wstring buildPath(std::wstring_view path, std::wstring_view name);

/// The last component; "" for a drive or a path of separators only.
[[nodiscard]] std::wstring_view fileName(std::wstring_view path) noexcept;

/// The last component up to its last dot.
[[nodiscard]] std::wstring_view baseName(std::wstring_view path) noexcept;

/// What follows the last dot of the last component; "" if it has none.
[[nodiscard]] std::wstring_view extensionName(std::wstring_view path) noexcept;

/// The path without its last component and the separators before it; "" where there is no parent. The root of
/// a drive keeps its separator ("C:\").
[[nodiscard]] std::wstring_view parentFolderName(std::wstring_view path) noexcept;

/// The drive ("C:") or share ("\\server\share") that a path begins with; "" if it names none.
[[nodiscard]] std::wstring_view driveName(std::wstring_view path) noexcept;

}  // namespace zeq::platform
