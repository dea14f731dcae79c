#pragma once
// The front end to the file system: path texts, existence, dates, sizes, lists, and names for new files and
// folders.

#include <string>
#include <string_view>

#include "ZEQUtility2.h"
#include "automation/Object.h"
#include "filesystem/ScriptingRuntime.h"

namespace zeq::filesystem {

class CZEQFileSystemObject final
    : public automation::Object<CZEQFileSystemObject, ::CZEQFileSystemObject, ::_CZEQFileSystemObject> {
 public:
  // Path texts
  STDMETHODIMP FSO_BuildPath(BSTR* PathA, BSTR* NameA, BSTR* result) noexcept override;
  STDMETHODIMP FSO_GetAbsolutePathName(BSTR* PathA, BSTR* result) noexcept override;
  STDMETHODIMP FSO_GetBaseName(BSTR* Path, BSTR* result) noexcept override;
  STDMETHODIMP FSO_GetExtensionName(BSTR* Path, BSTR* result) noexcept override;
  STDMETHODIMP FSO_GetFileName(BSTR* Path, BSTR* result) noexcept override;
  STDMETHODIMP FSO_GetParentFolderName(BSTR* PathA, BSTR* result) noexcept override;
  STDMETHODIMP FSO_GetDriveName(BSTR* Path, BSTR* result) noexcept override;
  STDMETHODIMP FSO_SplitFullFilePath(BSTR fullPathA, BSTR* folderA, BSTR* baseNameA, BSTR* fileExtA,
                                     VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP FSO_IsBaseFileNameSensible(BSTR fName, VARIANT_BOOL* result) noexcept override;

  // Existence
  STDMETHODIMP FSO_FileExists(BSTR* FileSpec, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP FSO_FolderExists(BSTR* FolderSpec, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP FSO_DriveExists(BSTR* DriveSpec, VARIANT_BOOL* result) noexcept override;

  // Dates and sizes
  STDMETHODIMP FSO_GetFileCreationDate(BSTR PathA, DATE* DateA, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP FSO_GetFileLastModificationDate(BSTR PathA, DATE* DateA,
                                               VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP FSO_GetFileSize(BSTR PathA, double* result) noexcept override;
  STDMETHODIMP FSO_GetFolderSize(BSTR PathA, double* result) noexcept override;
  STDMETHODIMP FSO_GetDriveTotalSize(BSTR DriveSpecA, double* result) noexcept override;
  STDMETHODIMP FSO_GetDriveAvailableSpace(BSTR DriveSpecA, double* result) noexcept override;

  // Objects and lists
  STDMETHODIMP FSO_GetFile(BSTR pathNameA, IDispatch** result) noexcept override;
  STDMETHODIMP FSO_GetFolder(BSTR pathNameA, IDispatch** result) noexcept override;
  STDMETHODIMP FSO_GetFileType(BSTR pathNameA, BSTR* result) noexcept override;
  STDMETHODIMP FSO_GetFiles(BSTR PathA, IDispatch** FilesA, long* result) noexcept override;
  STDMETHODIMP FSO_GetFolders(BSTR PathA, IDispatch** FoldersA, long* result) noexcept override;

  // Changes
  STDMETHODIMP FSO_DeleteFile(BSTR* FileSpec, VARIANT_BOOL* ForceDeleteA,
                              VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP FSO_CreateFolderPath(BSTR pathName, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP FSO_ArchiveAndReplaceFile(BSTR oldFile, BSTR newFile, VARIANT_BOOL* result) noexcept override;

  // Names
  STDMETHODIMP FSO_GetTempFileName(BSTR folder, short maxTries, BSTR* result) noexcept override;
  STDMETHODIMP FSO_SuggestFileChild(BSTR parentFolderA, BSTR baseName, BSTR ext, short maxTries,
                                    BSTR* result) noexcept override;
  STDMETHODIMP FSO_SuggestFolderChild(BSTR parentFolderA, BSTR baseName, short maxTries,
                                      BSTR* result) noexcept override;
  STDMETHODIMP FSO_GetSpecialFolderLocation(FSO_SystemFolderID PathID, BSTR* result) noexcept override;
  STDMETHODIMP FSO_GetTempPath(BSTR* result) noexcept override;

 private:
  ScriptingRuntime scripting_;
};

}  // namespace zeq::filesystem
