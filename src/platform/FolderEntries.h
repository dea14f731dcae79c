#pragma once
// The entries of one folder.

#include <windows.h>

#include <string>
#include <string_view>

#include "platform/Failure.h"

namespace zeq::platform {

[[nodiscard]] inline bool isFolder(DWORD attributes) noexcept {
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}
[[nodiscard]] inline bool isFolder(const WIN32_FIND_DATAW& entry) noexcept {
  return isFolder(entry.dwFileAttributes);
}
[[nodiscard]] inline bool isReadOnly(DWORD attributes) noexcept {
  return (attributes & FILE_ATTRIBUTE_READONLY) != 0;
}

/// A junction or symbolic link, in contrast to other reparse points, such as the folders of a cloud store.
[[nodiscard]] inline bool isLink(const WIN32_FIND_DATAW& entry) noexcept {
  return (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
         (entry.dwReserved0 == 0 || IsReparseTagNameSurrogate(entry.dwReserved0));
}

/// Finds what matches a pattern, one entry after the other.
class EntrySearch {
 public:
  explicit EntrySearch(const std::wstring& pattern)
      : handle_(FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &entry_, FindExSearchNameMatch, nullptr,
                                 FIND_FIRST_EX_LARGE_FETCH)) {
    // The root of an empty drive has not even the entries "." and "..".
    if (handle_ == INVALID_HANDLE_VALUE && GetLastError() != ERROR_FILE_NOT_FOUND) {
      failLast();
    }
    found_ = handle_ != INVALID_HANDLE_VALUE;
    skipDots();
  }
  EntrySearch(const EntrySearch&) = delete;
  EntrySearch& operator=(const EntrySearch&) = delete;
  ~EntrySearch() {
    if (handle_ != INVALID_HANDLE_VALUE) {
      FindClose(handle_);
    }
  }

  /// False at the end.
  [[nodiscard]] explicit operator bool() const noexcept { return found_; }
  [[nodiscard]] const WIN32_FIND_DATAW& operator*() const noexcept { return entry_; }
  void next() {
    step();
    skipDots();
  }

 private:
  void step() {
    found_ = FindNextFileW(handle_, &entry_) != FALSE;
    if (!found_ && GetLastError() != ERROR_NO_MORE_FILES) {
      failLast();
    }
  }
  void skipDots() {
    const auto isDots = [&] {
      const wchar_t* name = entry_.cFileName;
      return name[0] == L'.' && (name[1] == L'\0' || (name[1] == L'.' && name[2] == L'\0'));
    };
    while (found_ && isDots()) {
      step();
    }
  }

  WIN32_FIND_DATAW entry_{};
  HANDLE handle_;
  bool found_ = false;
};

/// Calls visit(const WIN32_FIND_DATAW&) for everything in a folder, which is given in its extended form.
template <class Visitor>
void forEachEntry(const std::wstring& folder, Visitor&& visit) {
  const bool isRoot = !folder.empty() && folder.back() == L'\\';
  for (EntrySearch search(folder + (isRoot ? L"*" : L"\\*")); search; search.next()) {
    visit(*search);
  }
}

/// The path of an entry of a folder.
[[nodiscard]] inline std::wstring childPath(const std::wstring& folder, const wchar_t* name) {
  const bool isRoot = !folder.empty() && folder.back() == L'\\';
  return folder + (isRoot ? L"" : L"\\") + name;
}

}  // namespace zeq::platform
