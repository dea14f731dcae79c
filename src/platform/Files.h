#pragma once
// Files, folders and drives. Functions that can fail throw std::system_error with the Win32 error code
// (category std::system_category()); the others answer false. Sizes are bytes. Paths may be longer than 260
// characters; a path with a NUL in it names nothing.

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zeq::platform {

/// The full path of a path, resolved against the current folder of its drive: drive letter in upper case, no
/// separator at the end but a root's. The current folder for an empty path. Does not look at the disk.
[[nodiscard]] std::wstring absolutePathName(const std::wstring& path);

[[nodiscard]] bool fileExists(const wchar_t* path) noexcept;
[[nodiscard]] bool folderExists(const wchar_t* path) noexcept;
/// A drive letter (C, C: or a path that begins with C:\) or a network share. True also for a drive without a
/// medium.
[[nodiscard]] bool driveExists(std::wstring_view drive) noexcept;

/// What the file system says of one file or folder.
struct FileInfo {
  std::uint64_t size = 0;
  DWORD attributes = 0;  ///< FILE_ATTRIBUTE_…
  FILETIME created{};    ///< UTC
  FILETIME modified{};   ///< UTC
};
/// Throws ERROR_FILE_NOT_FOUND if there is no file (a folder is none).
[[nodiscard]] FileInfo fileInfo(const std::wstring& path);
/// The file or the folder (see its attributes) at a path, in one query; nothing where there is neither.
[[nodiscard]] std::optional<FileInfo> lookUp(const std::wstring& path) noexcept;

/// The total size of all files in a folder and its subfolders; links to other folders are not followed.
/// Throws if there is no such folder or one of its subfolders cannot be read.
[[nodiscard]] std::uint64_t folderSize(const std::wstring& path);

/// How many files, or how many subfolders, a folder holds directly. Throws if there is no such folder.
[[nodiscard]] long countFiles(const std::wstring& folder);
[[nodiscard]] long countSubfolders(const std::wstring& folder);

struct DriveSpace {
  std::uint64_t total = 0;
  std::uint64_t free = 0;       ///< On the whole drive.
  std::uint64_t available = 0;  ///< To the current user.
};
/// The drive is C, C:, C:\ or a network share. Throws if there is no such drive or it is not ready.
[[nodiscard]] DriveSpace driveSpace(std::wstring_view drive);

// The scripting runtime's operations of the same names. A source may have wildcards in its last component;
// then, or if the destination ends with a separator, the destination is the folder to put things in, else
// their new name. `force` includes what is read only. They stop at the first failure; what is done stays
// done.
void deleteFile(const std::wstring& source, bool force);
void deleteFolder(const std::wstring& source, bool force);
void moveFile(const std::wstring& source, const std::wstring& destination);
void moveFolder(const std::wstring& source, const std::wstring& destination);
/// Merges into folders that exist. A link to another folder is copied as the contents that it shows, links
/// further down in them as empty folders, so that a circle of links comes to an end.
void copyFolder(const std::wstring& source, const std::wstring& destination, bool overwrite);
void createFolder(const std::wstring& path);

/// Creates an empty file, or empties an existing one.
void truncateFile(const std::wstring& path);

/// A random name for a temporary file, in the scripting runtime's form: "rad1A2B3.tmp".
[[nodiscard]] std::wstring temporaryName();

}  // namespace zeq::platform
