// The file system object, called early-bound, against the system and the scripting runtime doing the same.

#include <stdexcept>
#include <string>
#include <vector>

#include "filesystem/ScriptingInterfaces.h"
#include "harness.h"
#include "support/Component.h"
#include "support/TempFolder.h"

namespace zeq::bench {
namespace {

using automation::Bstr;
using automation::check;
using automation::ComPtr;
using automation::Variant;
using filesystem::scripting::IFileSystem;
using FileSystem = ComPtr<_CZEQFileSystemObject>;

template <class Interface>
ComPtr<Interface> createObject(const wchar_t* progId) {
  CLSID clsid{};
  check(CLSIDFromProgID(progId, &clsid));
  ComPtr<Interface> object;
  check(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface), object.outVoid()));
  return object;
}

void fileExists(std::vector<Row>& rows, const FileSystem& ours) {
  for (const wchar_t* path : {L"C:\\windows\\win.ini", L"C:\\windows\\none.ini"}) {
    rows.push_back({.what = path[11] == L'w' ? "`FSO_FileExists` of a file" : "`FSO_FileExists` of no file",
                    .peer = "`GetFileAttributesW`",
                    .target = 1.15,
                    .ours = each([ours, path = SysAllocString(path)]() mutable {
                      VARIANT_BOOL result = VARIANT_FALSE;
                      check(ours->FSO_FileExists(&path, &result));
                    }),
                    .theirs = each([path] { (void)GetFileAttributesW(path); })});
  }
}

void buildPath(std::vector<Row>& rows, const FileSystem& ours, const ComPtr<IFileSystem>& runtime) {
  BSTR path = SysAllocString(L"C:\\Program Files\\Some Program");
  BSTR name = SysAllocString(L"report.txt");
  rows.push_back({.what = "`FSO_BuildPath`",
                  .peer = "the scripting runtime's `BuildPath`, early-bound",
                  .target = 1.0,
                  .ours = each([=]() mutable {
                    Bstr result;
                    check(ours->FSO_BuildPath(&path, &name, result.out()));
                  }),
                  .theirs = each([=] {
                    Bstr result;
                    check(runtime->BuildPath(path, name, result.out()));
                  })});
}

unsigned long long bareWalk(const std::wstring& folder) {
  unsigned long long total = 0;
  WIN32_FIND_DATAW entry{};
  const HANDLE search = FindFirstFileExW((folder + L"\\*").c_str(), FindExInfoBasic, &entry,
                                         FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
  if (search == INVALID_HANDLE_VALUE) {
    throw std::runtime_error("the tree of files is gone");
  }
  do {
    if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
      total += (static_cast<unsigned long long>(entry.nFileSizeHigh) << 32) | entry.nFileSizeLow;
    } else if (entry.cFileName[0] != L'.') {
      total += bareWalk(folder + L"\\" + entry.cFileName);
    }
  } while (FindNextFileW(search, &entry) != FALSE);
  FindClose(search);
  return total;
}

void folderSize(std::vector<Row>& rows, const FileSystem& ours, const test::TempFolder& temp) {
  for (int i = 0; i < 100; ++i) {
    const std::wstring folder = L"tree\\" + std::to_wstring(i / 10) + L"\\" + std::to_wstring(i % 10);
    temp.folder(folder);
    for (int j = 0; j < 100; ++j) {
      temp.file(folder + L"\\file" + std::to_wstring(j), "content");
    }
  }
  const std::wstring tree = temp / L"tree";
  rows.push_back({.what = "`FSO_GetFolderSize` of a tree of 10,000 files",
                  .peer = "a bare walk with `FindFirstFileExW`",
                  .target = 1.10,
                  .ours = each([ours, tree] {
                    double size = 0;
                    check(ours->FSO_GetFolderSize(Bstr(tree).get(), &size));
                    if (size != 70000 / 1048576.0) {
                      throw std::runtime_error("a wrong size");
                    }
                  }),
                  .theirs = each([tree] {
                    if (bareWalk(tree) != 70000) {
                      throw std::runtime_error("a wrong size");
                    }
                  }),
                  .times = 1});
}

/// Enumerates the scripting runtime's files and adds each to a dictionary under its path in upper case.
void fillDictionary(IFileSystem& runtime, const std::wstring& path) {
  using namespace filesystem::scripting;
  ComPtr<IFolder> folder;
  check(runtime.GetFolder(Bstr(path).get(), folder.out()));
  ComPtr<IFileCollection> files;
  check(folder->get_Files(files.out()));
  ComPtr<IUnknown> made;
  check(files->get__NewEnum(made.out()));
  const auto enumerator = made.query<IEnumVARIANT>();
  const auto dictionary = createObject<IDispatch>(L"Scripting.Dictionary");
  wchar_t nameOfAdd[] = L"Add";
  wchar_t* name = nameOfAdd;
  DISPID add = DISPID_UNKNOWN;
  check(dictionary->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &add));
  Variant file;
  while (enumerator->Next(1, file.out(), nullptr) == S_OK) {
    const auto object = ComPtr<IDispatch>(file.get().pdispVal).query<IFile>();
    Bstr key;
    check(object->get_Path(key.out()));
    CharUpperBuffW(key.get(), SysStringLen(key.get()));
    const Variant keyValue(key.view());
    VARIANT arguments[] = {file.get(), keyValue.get()};
    DISPPARAMS parameters{arguments, nullptr, 2, 0};
    check(dictionary->Invoke(add, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                             nullptr, nullptr));
  }
}

void files(std::vector<Row>& rows, const FileSystem& ours, const ComPtr<IFileSystem>& runtime,
           const test::TempFolder& temp) {
  const std::wstring folder = temp.folder(L"list");
  for (int i = 0; i < 5000; ++i) {
    temp.file(L"list\\file" + std::to_wstring(i));
  }
  rows.push_back(
      {.what = "`FSO_GetFiles` of a folder of 5,000 files into a `Collection`",
       .peer = "the scripting runtime's `Files`, each added to a `Scripting.Dictionary` under its path in "
               "upper case",
       .target = 1.0,
       .ours = each([ours, folder] {
         const auto collection = test::create<Collection, _Collection>();
         IDispatch* argument = collection.get();
         long count = 0;
         check(ours->FSO_GetFiles(Bstr(folder).get(), &argument, &count));
         if (count != 5000) {
           throw std::runtime_error("a wrong count");
         }
       }),
       .theirs = each([runtime, folder] { fillDictionary(*runtime, folder); }),
       .times = 1});
}

const Area area("filesystem", [](std::vector<Row>& rows) {
  static const test::TempFolder temp;
  const auto ours = test::create<CZEQFileSystemObject, _CZEQFileSystemObject>();
  const auto runtime = createObject<IFileSystem>(L"Scripting.FileSystemObject");
  fileExists(rows, ours);
  buildPath(rows, ours, runtime);
  folderSize(rows, ours, temp);
  files(rows, ours, runtime, temp);
});

}  // namespace
}  // namespace zeq::bench
