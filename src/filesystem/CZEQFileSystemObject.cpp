#include "filesystem/CZEQFileSystemObject.h"

#include <algorithm>
#include <cwchar>
#include <vector>

#include "automation/CollectionArgument.h"
#include "filesystem/FileNames.h"
#include "platform/FileTypes.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "platform/SpecialFolders.h"
#include "utility/MZEQUtilityStrings.h"

namespace zeq::filesystem {
namespace {

using automation::Bstr;
using automation::CollectionArgument;
using automation::Error;
using automation::ErrorNumber;
using automation::quietly;
using automation::raising;
using automation::text;
using utility::trimmed;

constexpr double mebibyte = 1048576;

double inMebibytes(std::uint64_t bytes) noexcept {
  return static_cast<double>(bytes) / mebibyte;
}

/// A text as a path for the system, which stops at a NUL: a path with one in it names nothing.
const wchar_t* pathIn(const BSTR* argument) {
  const std::wstring_view path = text(argument);
  if (path.empty()) {
    return L"";
  }
  if (std::wcslen(path.data()) != path.size()) {
    throw Error(ErrorNumber::badFileName);
  }
  return path.data();
}

/// The same for the scripting runtime.
BSTR checkedPath(BSTR path) {
  (void)pathIn(&path);
  return path;
}

/// Adds the runtime's objects to a collection under their paths in upper case.
ScriptingRuntime::Visitor addTo(CollectionArgument& collection) {
  return [&collection](const automation::Variant& object, std::wstring_view path) {
    collection.add(object, automation::Variant(automation::foldCase(trimmed(path))));
  };
}

/// A time of the file system as automation has it: local, in whole seconds.
DATE dateOf(const FILETIME& time) {
  FILETIME local{};
  SYSTEMTIME parts{};
  DATE date = 0;
  if (FileTimeToLocalFileTime(&time, &local) == FALSE || FileTimeToSystemTime(&local, &parts) == FALSE ||
      SystemTimeToVariantTime(&parts, &date) == FALSE) {
    throw Error(ErrorNumber::invalidProcedureCall);
  }
  return date;
}

void assignDate(DATE* target, const FILETIME& time) {
  if (target == nullptr) {
    throw Error(E_POINTER);
  }
  *target = dateOf(time);
}

// The members of an object as its other members call them: through the interface.

using Member = ::_CZEQFileSystemObject;
using TextOfPath = HRESULT (STDMETHODCALLTYPE Member::*)(BSTR* path, BSTR* result);
using TestOfPath = HRESULT (STDMETHODCALLTYPE Member::*)(BSTR* path, VARIANT_BOOL* result);

std::wstring part(Member& object, TextOfPath member, std::wstring_view path) {
  const Bstr argument(path);
  BSTR pointer = argument.get();
  Bstr result;
  automation::check((object.*member)(&pointer, result.out()));
  return std::wstring(result.view());
}

bool exists(Member& object, TestOfPath member, std::wstring_view path) {
  const Bstr argument(path);
  BSTR pointer = argument.get();
  VARIANT_BOOL result = VARIANT_FALSE;
  automation::check((object.*member)(&pointer, &result));
  return result != VARIANT_FALSE;
}

std::wstring childOf(Member& object, std::wstring_view folder, std::wstring_view name) {
  const Bstr folderArgument(folder);
  const Bstr nameArgument(name);
  BSTR folderPointer = folderArgument.get();
  BSTR namePointer = nameArgument.get();
  Bstr result;
  automation::check(object.FSO_BuildPath(&folderPointer, &namePointer, result.out()));
  return std::wstring(result.view());
}

}  // namespace

STDMETHODIMP CZEQFileSystemObject::FSO_BuildPath(BSTR* PathA, BSTR* NameA, BSTR* result) noexcept {
  return quietly(result, [&] {
    const platform::JoinedPath joined = platform::joinPath(text(PathA), text(NameA));
    Bstr path = Bstr::ofLength(joined.size());
    joined.copyTo(path.get());
    return path;
  });
}

STDMETHODIMP CZEQFileSystemObject::FSO_GetAbsolutePathName(BSTR* PathA, BSTR* result) noexcept {
  return quietly(result, [&] { return platform::absolutePathName(std::wstring(text(PathA))); });
}

STDMETHODIMP CZEQFileSystemObject::FSO_GetBaseName(BSTR* Path, BSTR* result) noexcept {
  return quietly(result, [&] { return platform::baseName(text(Path)); });
}

STDMETHODIMP CZEQFileSystemObject::FSO_GetExtensionName(BSTR* Path, BSTR* result) noexcept {
  return quietly(result, [&] { return platform::extensionName(text(Path)); });
}

STDMETHODIMP CZEQFileSystemObject::FSO_GetFileName(BSTR* Path, BSTR* result) noexcept {
  return quietly(result, [&] { return platform::fileName(text(Path)); });
}

STDMETHODIMP CZEQFileSystemObject::FSO_GetParentFolderName(BSTR* PathA, BSTR* result) noexcept {
  return quietly(result, [&] { return platform::parentFolderName(text(PathA)); });
}

STDMETHODIMP CZEQFileSystemObject::FSO_GetDriveName(BSTR* Path, BSTR* result) noexcept {
  return quietly(result, [&] { return platform::driveName(text(Path)); });
}

STDMETHODIMP CZEQFileSystemObject::FSO_SplitFullFilePath(BSTR fullPathA, BSTR* folderA, BSTR* baseNameA,
                                                         BSTR* fileExtA, VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] {
    // The outputs may be the variable that the path came in.
    const std::wstring path(text(fullPathA));
    for (BSTR* output : {folderA, baseNameA, fileExtA}) {
      automation::assign(output, {});
    }
    automation::assign(folderA, part(*this, &Member::FSO_GetParentFolderName, path));
    if (!path.empty() && platform::isSeparator(path.back())) {
      return false;  // Names a folder, no file.
    }
    const std::wstring baseName = part(*this, &Member::FSO_GetBaseName, path);
    automation::assign(baseNameA, baseName);
    automation::assign(fileExtA, part(*this, &Member::FSO_GetExtensionName, path));
    return !trimmed(baseName).empty();
  });
}

STDMETHODIMP CZEQFileSystemObject::FSO_IsBaseFileNameSensible(BSTR fName, VARIANT_BOOL* result) noexcept {
  return raising(result, [&] { return isSensibleBaseName(text(fName)); });
}

STDMETHODIMP CZEQFileSystemObject::FSO_FileExists(BSTR* FileSpec, VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] { return platform::fileExists(pathIn(FileSpec)); });
}

STDMETHODIMP CZEQFileSystemObject::FSO_FolderExists(BSTR* FolderSpec, VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] { return platform::folderExists(pathIn(FolderSpec)); });
}

STDMETHODIMP CZEQFileSystemObject::FSO_DriveExists(BSTR* DriveSpec, VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] { return platform::driveExists(text(DriveSpec)); });
}

STDMETHODIMP CZEQFileSystemObject::FSO_GetFileCreationDate(BSTR PathA, DATE* DateA,
                                                           VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] {
    assignDate(DateA, platform::fileInfo(std::wstring(text(PathA))).created);
    return true;
  });
}

STDMETHODIMP CZEQFileSystemObject::FSO_GetFileLastModificationDate(BSTR PathA, DATE* DateA,
                                                                   VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] {
    assignDate(DateA, platform::fileInfo(std::wstring(text(PathA))).modified);
    return true;
  });
}

STDMETHODIMP CZEQFileSystemObject::FSO_GetFileSize(BSTR PathA, double* result) noexcept {
  return quietly(result, [&] { return inMebibytes(platform::fileInfo(std::wstring(text(PathA))).size); });
}

STDMETHODIMP CZEQFileSystemObject::FSO_GetFolderSize(BSTR PathA, double* result) noexcept {
  return quietly(result, [&] { return inMebibytes(platform::folderSize(std::wstring(text(PathA)))); });
}

STDMETHODIMP CZEQFileSystemObject::FSO_GetDriveTotalSize(BSTR DriveSpecA, double* result) noexcept {
  return quietly(result, [&] { return inMebibytes(platform::driveSpace(text(DriveSpecA)).total); });
}

STDMETHODIMP CZEQFileSystemObject::FSO_GetDriveAvailableSpace(BSTR DriveSpecA, double* result) noexcept {
  return quietly(result, [&] { return inMebibytes(platform::driveSpace(text(DriveSpecA)).available); });
}

STDMETHODIMP CZEQFileSystemObject::FSO_GetFile(BSTR pathNameA, IDispatch** result) noexcept {
  return quietly(result, [&] { return scripting_.file(checkedPath(pathNameA)); });
}

STDMETHODIMP CZEQFileSystemObject::FSO_GetFolder(BSTR pathNameA, IDispatch** result) noexcept {
  return quietly(result, [&] { return scripting_.folder(checkedPath(pathNameA)); });
}

STDMETHODIMP CZEQFileSystemObject::FSO_GetFileType(BSTR pathNameA, BSTR* result) noexcept {
  return quietly(result, [&] { return platform::fileTypeName(std::wstring(text(pathNameA))); });
}

STDMETHODIMP CZEQFileSystemObject::FSO_GetFiles(BSTR PathA, IDispatch** FilesA, long* result) noexcept {
  return quietly(result, [&] {
    const auto alive = keepAlive();
    CollectionArgument files(FilesA);
    return scripting_.forEachFile(checkedPath(PathA), addTo(files));
  });
}

STDMETHODIMP CZEQFileSystemObject::FSO_GetFolders(BSTR PathA, IDispatch** FoldersA, long* result) noexcept {
  return quietly(result, [&] {
    const auto alive = keepAlive();
    CollectionArgument folders(FoldersA);
    return scripting_.forEachSubfolder(checkedPath(PathA), addTo(folders));
  });
}

STDMETHODIMP CZEQFileSystemObject::FSO_DeleteFile(BSTR* FileSpec, VARIANT_BOOL* ForceDeleteA,
                                                  VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] {
    const bool force = ForceDeleteA != nullptr && *ForceDeleteA != VARIANT_FALSE;
    platform::deleteFile(std::wstring(text(FileSpec)), force);
    return true;
  });
}

STDMETHODIMP CZEQFileSystemObject::FSO_CreateFolderPath(BSTR pathName, VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] {
    // Of a longer path no more than the outer folders can be made; what is cut off costs no time.
    const bool isTooLong = text(pathName).size() > platform::longestPath;
    const std::wstring path(text(pathName).substr(0, platform::longestPath));
    const auto isMissing = [&](std::wstring_view folder) {
      return !exists(*this, &Member::FSO_FolderExists, folder);
    };
    // How long the missing folders are, from the whole path upwards: a path may have thousands of them.
    std::vector<std::size_t> missing{path.size()};
    for (;;) {
      const std::wstring parent =
          part(*this, &Member::FSO_GetParentFolderName, std::wstring_view(path).substr(0, missing.back()));
      if (trimmed(parent).empty() || !isMissing(parent)) {
        break;
      }
      missing.push_back(parent.size());
    }
    const auto makeFolder = [&](std::size_t length) {
      const std::wstring folder = path.substr(0, length);
      if (isMissing(folder)) {
        platform::createFolder(folder);
      }
      return !isMissing(folder);
    };
    return std::all_of(missing.rbegin(), missing.rend() - (isTooLong ? 1 : 0), makeFolder) && !isTooLong;
  });
}

STDMETHODIMP CZEQFileSystemObject::FSO_ArchiveAndReplaceFile(BSTR oldFile, BSTR newFile,
                                                             VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] {
    const std::wstring path(text(oldFile));
    const std::wstring folder = part(*this, &Member::FSO_GetParentFolderName, path);
    const std::wstring name =
        part(*this, &Member::FSO_GetBaseName, path) + L"_" + part(*this, &Member::FSO_GetExtensionName, path);
    const std::wstring archive = archivePath(
        childOf(*this, folder, name),
        [&](const std::wstring& candidate) { return exists(*this, &Member::FSO_FileExists, candidate); });
    if (archive.empty()) {
      return false;
    }
    platform::moveFile(path, archive);
    platform::moveFile(std::wstring(text(newFile)), path);
    return true;
  });
}

STDMETHODIMP CZEQFileSystemObject::FSO_GetTempFileName(BSTR folder, short maxTries, BSTR* result) noexcept {
  return raising(result, [&]() -> std::wstring {
    const std::wstring parent(text(folder));
    if (!exists(*this, &Member::FSO_FolderExists, parent)) {
      return {};
    }
    return freePath(
        maxTries, [&] { return childOf(*this, parent, platform::temporaryName()); },
        [&](const std::wstring& candidate) { return exists(*this, &Member::FSO_FileExists, candidate); });
  });
}

STDMETHODIMP CZEQFileSystemObject::FSO_SuggestFileChild(BSTR parentFolderA, BSTR baseName, BSTR ext,
                                                        short maxTries, BSTR* result) noexcept {
  return raising(result, [&]() -> std::wstring {
    const std::wstring parent(text(parentFolderA));
    if (!exists(*this, &Member::FSO_FolderExists, parent)) {
      return {};
    }
    const std::wstring prefix = std::wstring(trimmed(text(baseName))) + L"_";
    const std::wstring suffix = L"." + std::wstring(trimmed(text(ext)));
    return suggestName(prefix, suffix, maxTries, [&](const std::wstring& name) {
      return exists(*this, &Member::FSO_FileExists, childOf(*this, parent, name));
    });
  });
}

STDMETHODIMP CZEQFileSystemObject::FSO_SuggestFolderChild(BSTR parentFolderA, BSTR baseName, short maxTries,
                                                          BSTR* result) noexcept {
  return raising(result, [&]() -> std::wstring {
    const std::wstring parent(text(parentFolderA));
    if (!exists(*this, &Member::FSO_FolderExists, parent)) {
      return {};
    }
    const std::wstring prefix = std::wstring(trimmed(text(baseName))) + L"_";
    return suggestName(prefix, {}, maxTries, [&](const std::wstring& name) {
      return exists(*this, &Member::FSO_FolderExists, childOf(*this, parent, name));
    });
  });
}

STDMETHODIMP CZEQFileSystemObject::FSO_GetSpecialFolderLocation(FSO_SystemFolderID PathID,
                                                                BSTR* result) noexcept {
  return quietly(result, [&]() -> std::wstring {
    const auto folder = platform::specialFolder(PathID);
    if (!folder) {
      return {};
    }
    return folder->ends_with(L'\\') ? *folder : *folder + L'\\';
  });
}

STDMETHODIMP CZEQFileSystemObject::FSO_GetTempPath(BSTR* result) noexcept {
  return quietly(result, [&] { return platform::temporaryFolder(); });
}

}  // namespace zeq::filesystem
