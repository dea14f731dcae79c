#pragma once
// A folder of the test's own on the real disk, removed with all that is in it at the end of the test.

#include <windows.h>

#include <string>
#include <string_view>

namespace zeq::test {

class TempFolder {
 public:
  /// In the folder for temporary files.
  TempFolder();
  /// In another folder.
  explicit TempFolder(const std::wstring& parent);
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  /// The folder without a separator at the end.
  [[nodiscard]] const std::wstring& path() const noexcept { return path_; }
  /// The path of something in it.
  [[nodiscard]] std::wstring operator/(std::wstring_view name) const;

  /// Makes a file, or replaces one, and returns its path.
  std::wstring file(std::wstring_view name, std::string_view content = {}) const;
  /// Makes a folder with the folders above it and returns its path.
  std::wstring folder(std::wstring_view name) const;

 private:
  std::wstring path_;
};

/// The content of a file; throws if there is none.
[[nodiscard]] std::string contentOf(const std::wstring& path);

/// True if there is a file or folder of that path, however long.
[[nodiscard]] bool exists(const std::wstring& path);

/// A drive letter for a folder, until the drive is removed. Throws where it cannot be made.
class MappedDrive {
 public:
  explicit MappedDrive(const std::wstring& folder);
  ~MappedDrive() { remove(); }
  MappedDrive(const MappedDrive&) = delete;
  MappedDrive& operator=(const MappedDrive&) = delete;

  [[nodiscard]] static const wchar_t* name() noexcept { return L"R:"; }
  [[nodiscard]] static std::wstring root() { return std::wstring(name()) + L"\\"; }
  void remove() const;

 private:
  std::wstring folder_;
};

/// Makes a link to a folder. False where the system has no links.
[[nodiscard]] bool linkFolder(const std::wstring& link, const std::wstring& target);

}  // namespace zeq::test
