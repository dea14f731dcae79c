#pragma once
// Paths as the operating system takes them.

#include <windows.h>

#include <string>

namespace zeq::platform {

/// Some functions take no longer path than this without the prefix \\?\.
inline constexpr std::size_t shortPathLimit = 248;

/// GetFullPathNameW.
[[nodiscard]] std::wstring fullPath(const std::wstring& path);

/// The form that has no limit of length: \\?\C:\folder or \\?\UNC\server\share, resolved against the current
/// folder.
[[nodiscard]] std::wstring extendedPath(const std::wstring& path);

/// A path for one call: the text itself where that is short enough, else its extended form. Refers to the
/// text that it is made from.
class NativePath {
 public:
  /// Throws ERROR_INVALID_NAME for a text with a NUL in it.
  explicit NativePath(const std::wstring& path);
  explicit NativePath(const wchar_t* path);

  [[nodiscard]] const wchar_t* get() const noexcept { return extended_.empty() ? short_ : extended_.c_str(); }

 private:
  const wchar_t* short_;
  std::wstring extended_;
};

}  // namespace zeq::platform
