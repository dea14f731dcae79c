#include <windows.h>
#include <ntsecapi.h>

#include <array>
#include <cwchar>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Files.h"
#include "platform/FolderEntries.h"
#include "platform/NativePath.h"
#include "platform/Paths.h"

namespace zeq::platform {
namespace {

/// Where a text stops being the folder that things are in, and starts being their names.
std::size_t nameStart(std::wstring_view path) noexcept {
  return path.find_last_of(L"\\/:") + 1;
}

bool hasWildcards(std::wstring_view path) noexcept {
  return path.substr(nameStart(path)).find_first_of(L"*?") != std::wstring_view::npos;
}

void succeed(BOOL result) {
  if (result == FALSE) {
    failLast();
  }
}

enum class Kind { file, folder };

/// The extended paths of the files, or the folders, that a text names. Throws if there are none.
std::vector<std::wstring> sources(const std::wstring& source, Kind kind) {
  const bool wantsFolder = kind == Kind::folder;
  const DWORD notFound = wantsFolder ? ERROR_PATH_NOT_FOUND : ERROR_FILE_NOT_FOUND;
  if (fileName(source).empty() || isSeparator(source.back())) {
    fail(ERROR_PATH_NOT_FOUND);
  }
  std::wstring path = extendedPath(source);
  if (!hasWildcards(source)) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
      const DWORD error = GetLastError();
      fail(error == ERROR_FILE_NOT_FOUND ? notFound : error);
    }
    if (isFolder(attributes) != wantsFolder) {
      fail(notFound);
    }
    return {std::move(path)};
  }
  std::vector<std::wstring> result;
  const std::wstring folder = path.substr(0, nameStart(path));
  for (EntrySearch search(path); search; search.next()) {
    if (isFolder(*search) == wantsFolder) {
      result.push_back(folder + (*search).cFileName);
    }
  }
  if (result.empty()) {
    fail(notFound);
  }
  return result;
}

/// Calls act(from, to), both in extended form, for everything that is to go to a destination.
template <class Action>
void forEachSource(const std::wstring& source, const std::wstring& destination, Kind kind, Action&& act) {
  const bool isInto = hasWildcards(source) || (!destination.empty() && isSeparator(destination.back()));
  const std::wstring target = extendedPath(destination);
  for (const std::wstring& from : sources(source, kind)) {
    act(from, isInto ? childPath(target, from.c_str() + nameStart(from)) : target);
  }
}

/// Lets a path be deleted although it is read only.
void makeWritable(const std::wstring& path, DWORD attributes, bool force) {
  if (isReadOnly(attributes)) {
    if (!force) {
      fail(ERROR_ACCESS_DENIED);
    }
    succeed(SetFileAttributesW(path.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY)));
  }
}

void deleteOneFile(const std::wstring& path, DWORD attributes, bool force) {
  makeWritable(path, attributes, force);
  succeed(DeleteFileW(path.c_str()));
}

/// Deletes a folder with all that is in it; of a link, only the link.
void deleteTree(const std::wstring& root, bool force) {
  struct Folder {
    std::wstring path;
    DWORD attributes;
    bool isLink;
  };
  // Every folder stands before its subfolders, so that from the end of the list each one is empty when its
  // turn comes.
  std::vector<Folder> folders;
  const auto add = [&](std::wstring path, const WIN32_FIND_DATAW& entry) {
    folders.push_back({std::move(path), entry.dwFileAttributes, isLink(entry)});
  };
  if (const EntrySearch self(root); self) {
    add(root, *self);
  }
  // NOLINTNEXTLINE(modernize-loop-convert): the list grows on the way.
  for (std::size_t i = 0; i < folders.size(); ++i) {
    const std::wstring folder = folders[i].path;
    if (folders[i].isLink) {
      continue;
    }
    forEachEntry(folder, [&](const WIN32_FIND_DATAW& entry) {
      std::wstring path = childPath(folder, entry.cFileName);
      if (isFolder(entry)) {
        add(std::move(path), entry);
      } else {
        deleteOneFile(path, entry.dwFileAttributes, force);
      }
    });
  }
  for (auto folder = folders.rbegin(); folder != folders.rend(); ++folder) {
    makeWritable(folder->path, folder->attributes, force);
    succeed(RemoveDirectoryW(folder->path.c_str()));
  }
}

void createFolderUnlessThere(const std::wstring& path) {
  if (CreateDirectoryW(path.c_str(), nullptr) == FALSE) {
    const DWORD error = GetLastError();
    if (error != ERROR_ALREADY_EXISTS || !isFolder(GetFileAttributesW(path.c_str()))) {
      fail(error);
    }
  }
}

/// True if a path is another one or lies in it. Both are in extended form.
bool isWithin(const std::wstring& path, const std::wstring& folder) noexcept {
  return _wcsnicmp(path.c_str(), folder.c_str(), folder.size()) == 0 &&
         (path.size() == folder.size() || isSeparator(path[folder.size()]));
}

void copyTree(const std::wstring& root, const std::wstring& destination, bool overwrite) {
  if (isWithin(destination, root)) {
    fail(ERROR_ACCESS_DENIED);
  }
  struct Pending {
    std::wstring from;
    std::wstring to;
    bool isBelowLink;
  };
  std::vector<Pending> pending{{root, destination, false}};
  while (!pending.empty()) {
    const Pending folder = std::move(pending.back());
    pending.pop_back();
    createFolderUnlessThere(folder.to);
    forEachEntry(folder.from, [&](const WIN32_FIND_DATAW& entry) {
      std::wstring from = childPath(folder.from, entry.cFileName);
      std::wstring to = childPath(folder.to, entry.cFileName);
      if (!isFolder(entry)) {
        succeed(CopyFileW(from.c_str(), to.c_str(), overwrite ? FALSE : TRUE));
      } else if (isLink(entry) && folder.isBelowLink) {
        createFolderUnlessThere(to);
      } else {
        pending.push_back({std::move(from), std::move(to), folder.isBelowLink || isLink(entry)});
      }
    });
  }
}

}  // namespace

void deleteFile(const std::wstring& source, bool force) {
  for (const std::wstring& path : sources(source, Kind::file)) {
    deleteOneFile(path, GetFileAttributesW(path.c_str()), force);
  }
}

void deleteFolder(const std::wstring& source, bool force) {
  for (const std::wstring& path : sources(source, Kind::folder)) {
    deleteTree(path, force);
  }
}

void moveFile(const std::wstring& source, const std::wstring& destination) {
  forEachSource(source, destination, Kind::file, [](const std::wstring& from, const std::wstring& to) {
    succeed(MoveFileW(from.c_str(), to.c_str()));
  });
}

void moveFolder(const std::wstring& source, const std::wstring& destination) {
  forEachSource(source, destination, Kind::folder, [](const std::wstring& from, const std::wstring& to) {
    succeed(MoveFileW(from.c_str(), to.c_str()));
  });
}

void copyFolder(const std::wstring& source, const std::wstring& destination, bool overwrite) {
  forEachSource(source, destination, Kind::folder,
                [&](const std::wstring& from, const std::wstring& to) { copyTree(from, to, overwrite); });
}

void createFolder(const std::wstring& path) {
  succeed(CreateDirectoryW(NativePath(path).get(), nullptr));
}

void truncateFile(const std::wstring& path) {
  // Opening and cutting also works on a hidden file, which CREATE_ALWAYS refuses.
  const HANDLE opened = CreateFileW(NativePath(path).get(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                    OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (opened == INVALID_HANDLE_VALUE) {
    failLast();
  }
  const std::unique_ptr<void, decltype(&CloseHandle)> file(opened, &CloseHandle);
  succeed(SetEndOfFile(file.get()));
}

std::wstring temporaryName() {
  ULONG random = 0;
  if (RtlGenRandom(&random, sizeof random) == FALSE) {
    fail(ERROR_GEN_FAILURE);
  }
  std::array<wchar_t, 13> name{};
  swprintf(name.data(), name.size(), L"rad%05lX.tmp", random & 0xFFFFFUL);
  return name.data();
}

}  // namespace zeq::platform
