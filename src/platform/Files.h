#pragma once
// Files, folders and drives. Functions that can fail throw std::system_error with the Win32 error code (category
// std::system_category()); the others answer false. Sizes are bytes. Paths may be longer than 260 characters.

#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace zeq::platform {

/// The full path of a path, resolved against the current folder of its drive.
[[nodiscard]] std::wstring absolutePathName(const std::wstring& path);

[[nodiscard]] bool fileExists(const wchar_t* path) noexcept;
[[nodiscard]] bool folderExists(const wchar_t* path) noexcept;
/// A drive given as C, C: or C:\, or a network share.
[[nodiscard]] bool driveExists(std::wstring_view drive) noexcept;

/// What the file system says of one file.
struct FileInfo {
  std::uint64_t size = 0;
  DWORD attributes = 0;  ///< FILE_ATTRIBUTE_…
  FILETIME created{};    ///< UTC
  FILETIME modified{};   ///< UTC
};
/// Throws if there is no file (a folder is none).
[[nodiscard]] FileInfo fileInfo(const std::wstring& path);

/// The total size of all files in a folder and its subfolders. Throws if there is no such folder; what cannot be read
/// further down counts as 0.
[[nodiscard]] std::uint64_t folderSize(const std::wstring& path);

/// How many files, or how many subfolders, a folder holds directly. Throws if there is no such folder.
[[nodiscard]] long countFiles(const std::wstring& folder);
[[nodiscard]] long countSubfolders(const std::wstring& folder);

struct DriveSpace {
  std::uint64_t total = 0;
  std::uint64_t free = 0;       ///< On the whole drive.
  std::uint64_t available = 0;  ///< To the current user.
};
/// The drive is given as for driveExists. Throws if there is no such drive or it is not ready.
[[nodiscard]] DriveSpace driveSpace(std::wstring_view drive);

// The scripting runtime's operations of the same names. Wildcards are allowed in the last component of a source.
// `force` includes what is read only. They stop at the first failure; what is done stays done.
void deleteFile(const std::wstring& spec, bool force);
void deleteFolder(const std::wstring& spec, bool force);
void moveFile(const std::wstring& source, const std::wstring& destination);
void moveFolder(const std::wstring& source, const std::wstring& destination);
void copyFolder(const std::wstring& source, const std::wstring& destination, bool overwrite);
void createFolder(const std::wstring& path);

/// Creates an empty file, or empties an existing one.
void truncateFile(const std::wstring& path);

/// A random name for a temporary file, as unlikely to collide as eight random characters are: "rad1A2B3.tmp".
[[nodiscard]] std::wstring temporaryName();

}  // namespace zeq::platform
