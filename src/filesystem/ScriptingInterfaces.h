#pragma once
// The scripting runtime's interfaces, as its type library declares them, up to the last member that is called
// here.

#include <windows.h>
#include <oleauto.h>

namespace zeq::filesystem::scripting {

struct IFile : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_Path(BSTR* path) = 0;
};

struct IFileCollection : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_Item(VARIANT key, IFile** file) = 0;
  virtual HRESULT STDMETHODCALLTYPE get__NewEnum(IUnknown** enumerator) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Count(long* count) = 0;
};

struct IFolder : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_Path(BSTR* path) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Name(BSTR* name) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Name(BSTR name) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ShortPath(BSTR* path) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ShortName(BSTR* name) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Drive(IDispatch** drive) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ParentFolder(IFolder** folder) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Attributes(int* attributes) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Attributes(int attributes) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_DateCreated(DATE* date) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_DateLastModified(DATE* date) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_DateLastAccessed(DATE* date) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Type(BSTR* type) = 0;
  virtual HRESULT STDMETHODCALLTYPE Delete(VARIANT_BOOL force) = 0;
  virtual HRESULT STDMETHODCALLTYPE Copy(BSTR destination, VARIANT_BOOL overwrite) = 0;
  virtual HRESULT STDMETHODCALLTYPE Move(BSTR destination) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_IsRootFolder(VARIANT_BOOL* isRoot) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Size(VARIANT* size) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_SubFolders(struct IFolderCollection** folders) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Files(IFileCollection** files) = 0;
};

struct IFolderCollection : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE Add(BSTR name, IFolder** folder) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Item(VARIANT key, IFolder** folder) = 0;
  virtual HRESULT STDMETHODCALLTYPE get__NewEnum(IUnknown** enumerator) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Count(long* count) = 0;
};

struct IFileSystem : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_Drives(IDispatch** drives) = 0;
  virtual HRESULT STDMETHODCALLTYPE BuildPath(BSTR path, BSTR name, BSTR* result) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetDriveName(BSTR path, BSTR* result) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetParentFolderName(BSTR path, BSTR* result) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetFileName(BSTR path, BSTR* result) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetBaseName(BSTR path, BSTR* result) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetExtensionName(BSTR path, BSTR* result) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetAbsolutePathName(BSTR path, BSTR* result) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetTempName(BSTR* result) = 0;
  virtual HRESULT STDMETHODCALLTYPE DriveExists(BSTR drive, VARIANT_BOOL* exists) = 0;
  virtual HRESULT STDMETHODCALLTYPE FileExists(BSTR path, VARIANT_BOOL* exists) = 0;
  virtual HRESULT STDMETHODCALLTYPE FolderExists(BSTR path, VARIANT_BOOL* exists) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetDrive(BSTR drive, IDispatch** result) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetFile(BSTR path, IFile** file) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetFolder(BSTR path, IFolder** folder) = 0;
};

/// CLSID of Scripting.FileSystemObject.
inline constexpr CLSID fileSystemObject{
    0x0D43FE01, 0xF093, 0x11CF, {0x89, 0x40, 0x00, 0xA0, 0xC9, 0x05, 0x42, 0x28}};

}  // namespace zeq::filesystem::scripting

// The identifiers of those that are asked for.
__CRT_UUID_DECL(zeq::filesystem::scripting::IFileSystem, 0x0AB5A3D0, 0xE5B6, 0x11D0, 0xAB, 0xF5, 0x00, 0xA0,
                0xC9, 0x0F, 0xFF, 0xC0)
__CRT_UUID_DECL(zeq::filesystem::scripting::IFile, 0xC7C3F5A4, 0x88A3, 0x11D0, 0xAB, 0xCB, 0x00, 0xA0, 0xC9,
                0x0F, 0xFF, 0xC0)
__CRT_UUID_DECL(zeq::filesystem::scripting::IFolder, 0xC7C3F5A2, 0x88A3, 0x11D0, 0xAB, 0xCB, 0x00, 0xA0, 0xC9,
                0x0F, 0xFF, 0xC0)
