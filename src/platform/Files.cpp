#include "platform/Files.h"

#include <algorithm>
#include <array>
#include <exception>
#include <optional>
#include <vector>

#include "platform/Failure.h"
#include "platform/FolderEntries.h"
#include "platform/NativePath.h"
#include "platform/Paths.h"

namespace zeq::platform {
namespace {

constexpr std::uint64_t joined(DWORD high, DWORD low) noexcept {
  return (static_cast<std::uint64_t>(high) << 32) | low;
}

DWORD attributesOf(const wchar_t* path) noexcept {
  try {
    return GetFileAttributesW(NativePath(path).get());
  } catch (const std::exception&) {
    return INVALID_FILE_ATTRIBUTES;
  }
}

/// What there is at a path; otherwise nothing, and GetLastError tells why.
std::optional<FileInfo> query(const std::wstring& path) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (GetFileAttributesExW(NativePath(path).get(), GetFileExInfoStandard, &data) == FALSE) {
    return std::nullopt;
  }
  return FileInfo{joined(data.nFileSizeHigh, data.nFileSizeLow), data.dwFileAttributes, data.ftCreationTime,
                  data.ftLastWriteTime};
}

constexpr bool isLetter(wchar_t character) noexcept {
  return (character >= L'A' && character <= L'Z') || (character >= L'a' && character <= L'z');
}

/// How a drive is written: its root folder and what follows it in the text.
struct DriveText {
  std::wstring root;
  std::wstring_view rest;
};

std::optional<DriveText> parseDrive(std::wstring_view drive) {
  if (drive.empty() || drive.find(L'\0') != std::wstring_view::npos) {
    return std::nullopt;
  }
  if (isLetter(drive[0]) && (drive.size() == 1 || drive[1] == L':')) {
    const std::wstring_view rest = drive.substr(std::min<std::size_t>(drive.size(), 2));
    if (!rest.empty() && rest[0] != L'\\') {
      return std::nullopt;
    }
    return DriveText{{drive[0], L':', L'\\'}, rest.substr(rest.empty() ? 0 : 1)};
  }
  const std::wstring_view share = driveName(drive);
  if (share.empty() || !isSeparator(share[0])) {
    return std::nullopt;
  }
  const std::wstring_view rest = drive.substr(share.size());
  return DriveText{std::wstring(share).append(L"\\"), rest.substr(rest.empty() ? 0 : 1)};
}

bool rootExists(const std::wstring& root) noexcept {
  return isSeparator(root[0]) ? folderExists(root.c_str()) : GetDriveTypeW(root.c_str()) > DRIVE_NO_ROOT_DIR;
}

/// Counts the entries of a folder that are folders, or those that are not.
long countEntries(const std::wstring& folder, bool folders) {
  long count = 0;
  forEachEntry(extendedPath(folder),
               [&](const WIN32_FIND_DATAW& entry) { count += isFolder(entry) == folders ? 1 : 0; });
  return count;
}

}  // namespace

std::wstring absolutePathName(const std::wstring& path) {
  std::wstring result = fullPath(path.empty() ? L"." : path);
  if (result.size() >= 2 && result[1] == L':') {
    CharUpperBuffW(result.data(), 1);
  }
  // The separator after a drive is part of its name, that of "\\?\C:\" too.
  while (result.size() > 2 && result.back() == L'\\' && result[result.size() - 2] != L':') {
    result.pop_back();
  }
  return result;
}

bool fileExists(const wchar_t* path) noexcept {
  const DWORD attributes = attributesOf(path);
  return attributes != INVALID_FILE_ATTRIBUTES && !isFolder(attributes);
}

bool folderExists(const wchar_t* path) noexcept {
  return isFolder(attributesOf(path));
}

bool driveExists(std::wstring_view drive) noexcept {
  try {
    const auto parsed = parseDrive(drive);
    return parsed && rootExists(parsed->root);
  } catch (const std::exception&) {
    return false;
  }
}

FileInfo fileInfo(const std::wstring& path) {
  const auto found = query(path);
  if (!found) {
    const DWORD error = GetLastError();
    fail(error == ERROR_PATH_NOT_FOUND ? ERROR_FILE_NOT_FOUND : error);
  }
  if (isFolder(found->attributes)) {
    fail(ERROR_FILE_NOT_FOUND);
  }
  return *found;
}

std::optional<FileInfo> lookUp(const std::wstring& path) noexcept {
  try {
    return query(path);
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

std::uint64_t folderSize(const std::wstring& path) {
  std::uint64_t total = 0;
  std::vector<std::wstring> pending{extendedPath(path)};
  while (!pending.empty()) {
    const std::wstring folder = std::move(pending.back());
    pending.pop_back();
    forEachEntry(folder, [&](const WIN32_FIND_DATAW& entry) {
      if (!isFolder(entry)) {
        total += joined(entry.nFileSizeHigh, entry.nFileSizeLow);
      } else if (!isLink(entry)) {
        pending.push_back(childPath(folder, entry.cFileName));
      }
    });
  }
  return total;
}

long countFiles(const std::wstring& folder) {
  return countEntries(folder, false);
}

long countSubfolders(const std::wstring& folder) {
  return countEntries(folder, true);
}

DriveSpace driveSpace(std::wstring_view drive) {
  const auto parsed = parseDrive(drive);
  if (!parsed || !parsed->rest.empty()) {
    fail(ERROR_INVALID_PARAMETER);
  }
  if (!rootExists(parsed->root)) {
    fail(ERROR_INVALID_DRIVE);
  }
  ULARGE_INTEGER available{};
  ULARGE_INTEGER total{};
  ULARGE_INTEGER free{};
  if (GetDiskFreeSpaceExW(parsed->root.c_str(), &available, &total, &free) == FALSE) {
    failLast();
  }
  return {total.QuadPart, free.QuadPart, available.QuadPart};
}

}  // namespace zeq::platform
