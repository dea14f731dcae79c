#include <windows.h>
#include <ntsecapi.h>

#include <array>
#include <cwchar>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Failure.h"
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
  const bool wantsExtension =
      source.back() != L'.';  // "*." is what has none; the extended form loses the dot.
  for (EntrySearch search(path); search; search.next()) {
    const bool hasExtension = std::wcschr((*search).cFileName, L'.') != nullptr;
    if (isFolder(*search) == wantsFolder && (wantsExtension || !hasExtension)) {
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
  const EntrySearch self(root);
  if (!self) {
    fail(ERROR_ACCESS_DENIED);  // Nothing finds the root of a drive, which cannot be deleted.
  }
  add(root, *self);
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

/// True if a path is another one or lies in it, as far as their texts tell. Both are in extended form.
bool isWithin(std::wstring_view path, std::wstring_view folder) noexcept {
  if (isSeparator(folder.back())) {
    folder.remove_suffix(1);  // A root's.
  }
  const int length = static_cast<int>(folder.size());
  return path.size() >= folder.size() &&
         CompareStringOrdinal(path.data(), length, folder.data(), length, TRUE) == CSTR_EQUAL &&
         (path.size() == folder.size() || isSeparator(path[folder.size()]));
}

struct FolderToCopy {
  std::wstring from;
  std::wstring to;
  bool isBelowLink = false;
  bool isEmpty = false;  ///< To be made without what is in it.
  std::vector<std::wstring> files{};
};

/// A folder, then all that are in it. Every folder stands before its subfolders.
std::vector<FolderToCopy> foldersToCopy(const std::wstring& root, const std::wstring& destination) {
  std::vector<FolderToCopy> folders{{root, destination}};
  for (std::size_t i = 0; i < folders.size(); ++i) {
    if (folders[i].isEmpty) {
      continue;
    }
    forEachEntry(std::wstring(folders[i].from), [&](const WIN32_FIND_DATAW& entry) {
      FolderToCopy& folder = folders[i];
      if (isFolder(entry)) {
        folders.push_back({childPath(folder.from, entry.cFileName), childPath(folder.to, entry.cFileName),
                           folder.isBelowLink || isLink(entry), folder.isBelowLink && isLink(entry)});
      } else {
        folder.files.emplace_back(entry.cFileName);
      }
    });
  }
  return folders;
}

void copyTree(const std::wstring& root, const std::wstring& destination, bool overwrite) {
  if (isWithin(destination, root)) {
    fail(ERROR_ACCESS_DENIED);
  }
  // All is listed before the first folder is made: short names, links and substituted drives can hide that
  // the destination is in the source, and the copy must not find what it makes itself.
  for (const FolderToCopy& folder : foldersToCopy(root, destination)) {
    createFolderUnlessThere(folder.to);
    for (const std::wstring& file : folder.files) {
      succeed(CopyFileW(childPath(folder.from, file.c_str()).c_str(),
                        childPath(folder.to, file.c_str()).c_str(), overwrite ? FALSE : TRUE));
    }
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
