// Existence, dates, sizes, objects and lists, on real files and drives.

#include <algorithm>
#include <functional>
#include <vector>

#include "filesystem/FileSystemTest.h"
#include "support/ClientObject.h"
#include "support/ImportHook.h"

namespace zeq::test {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

/// A collection as a script might write one: known by name only, and without names for its arguments.
class ScriptCollection final : public ClientObject<> {
 public:
  std::vector<std::wstring> keys;
  std::vector<VARTYPE> types;
  HRESULT failure = S_OK;
  std::function<void()> whenAdding = [] {};

  STDMETHODIMP GetIDsOfNames(REFIID, wchar_t** names, UINT count, LCID, DISPID* ids) noexcept override {
    std::fill_n(ids, count, DISPID_UNKNOWN);
    if (std::wstring_view(names[0]) == L"Add") {
      ids[0] = 7;
    }
    return count == 1 && ids[0] == 7 ? S_OK : DISP_E_UNKNOWNNAME;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*, EXCEPINFO* exception,
                      UINT*) noexcept override {
    if (id != 7 || parameters->cArgs != 2 || parameters->cNamedArgs != 0 ||
        parameters->rgvarg[0].vt != VT_BSTR) {
      return DISP_E_MEMBERNOTFOUND;
    }
    if (FAILED(failure)) {
      exception->scode = failure;
      return DISP_E_EXCEPTION;
    }
    whenAdding();
    keys.emplace_back(automation::text(parameters->rgvarg[0].bstrVal));
    types.push_back(parameters->rgvarg[1].vt);
    return S_OK;
  }
};

class FileSystemObject : public FileSystemTest {
 protected:
  ComPtr<_Collection> collection = create<Collection, _Collection>();

  long add(HRESULT (STDMETHODCALLTYPE Fso::*member)(BSTR, IDispatch**, long*), std::wstring_view path,
           IDispatch* target) {
    long result = -1;
    EXPECT_EQ((fso.get()->*member)(Bstr(path).get(), &target, &result), S_OK);
    return result;
  }
  long size() {
    long result = -1;
    EXPECT_EQ(collection->get_Count(&result), S_OK);
    return result;
  }
  /// The name of the object that the collection has under a path in upper case; "" if there is none.
  std::wstring nameUnder(std::wstring path) {
    CharUpperBuffW(path.data(), static_cast<DWORD>(path.size()));
    Variant item;
    if (FAILED(collection->get_Item(Variant(std::wstring_view(path)).get(), item.out()))) {
      return {};
    }
    return textIn(Late(item.get().pdispVal).get(L"Name"));
  }
  /// The date that a member writes, or what it was before.
  double dateOf(HRESULT (STDMETHODCALLTYPE Fso::*member)(BSTR, DATE*, VARIANT_BOOL*), std::wstring_view path,
                bool expected) {
    DATE date = 12345.5;
    VARIANT_BOOL result = 1;
    EXPECT_EQ((fso.get()->*member)(Bstr(path).get(), &date, &result), S_OK);
    EXPECT_EQ(isTrue(result), expected);
    return date;
  }
};

TEST_F(FileSystemObject, TellsFilesFromFolders) {
  const std::wstring file = temp.file(L"a.txt");
  EXPECT_TRUE(test(&Fso::FSO_FileExists, file));
  EXPECT_FALSE(test(&Fso::FSO_FolderExists, file));
  EXPECT_FALSE(test(&Fso::FSO_FileExists, temp.path()));
  EXPECT_TRUE(test(&Fso::FSO_FolderExists, temp.path()));
  EXPECT_TRUE(test(&Fso::FSO_FolderExists, temp.path() + L"\\"));
  for (const std::wstring& path :
       {temp / L"none", temp / L"none\\none", temp / L"*", std::wstring(), std::wstring(L"?"),
        file + std::wstring(L"\0", 1), temp.path() + std::wstring(L"\0x", 2), std::wstring(32000, L'x'),
        L"C:\\" + std::wstring(40000, L'x')}) {
    EXPECT_FALSE(test(&Fso::FSO_FileExists, path));
    EXPECT_FALSE(test(&Fso::FSO_FolderExists, path));
  }
}

TEST_F(FileSystemObject, SeesLongPaths) {
  std::wstring name = L"a";
  while (name.size() < 400) {
    name += L"\\" + std::wstring(60, L'b');
  }
  const std::wstring folder = temp.folder(name);
  const std::wstring file = temp.file(name + L"\\file.bin", std::string(1024, 'x'));
  EXPECT_TRUE(test(&Fso::FSO_FolderExists, folder));
  EXPECT_TRUE(test(&Fso::FSO_FileExists, file));
  EXPECT_EQ(numberOf(&Fso::FSO_GetFileSize, file), 1024.0 / 1048576);
  EXPECT_EQ(numberOf(&Fso::FSO_GetFolderSize, temp.path()), 1024.0 / 1048576);
  EXPECT_GT(dateOf(&Fso::FSO_GetFileCreationDate, file, true), 40000);
}

TEST_F(FileSystemObject, KnowsDrives) {
  const std::wstring letter = temp.path().substr(0, 1);
  for (const std::wstring& drive : {letter, letter + L":", letter + L":\\"}) {
    EXPECT_TRUE(test(&Fso::FSO_DriveExists, drive));
    EXPECT_GT(numberOf(&Fso::FSO_GetDriveTotalSize, drive), 0);
    EXPECT_GT(numberOf(&Fso::FSO_GetDriveAvailableSpace, drive), 0);
    EXPECT_LT(numberOf(&Fso::FSO_GetDriveAvailableSpace, drive),
              numberOf(&Fso::FSO_GetDriveTotalSize, drive));
  }
  for (const wchar_t* drive :
       {L"", L"Y", L"Y:", L"Y:\\", L"CC", L"1", L"?", L"\\\\nobody\\nothing", L"C:x"}) {
    EXPECT_FALSE(test(&Fso::FSO_DriveExists, drive));
    EXPECT_EQ(numberOf(&Fso::FSO_GetDriveTotalSize, drive), 0);
    EXPECT_EQ(numberOf(&Fso::FSO_GetDriveAvailableSpace, drive), 0);
  }
}

TEST_F(FileSystemObject, MeasuresDrivesInMebibytes) {
  ULARGE_INTEGER total{};
  ASSERT_TRUE(GetDiskFreeSpaceExW(temp.path().c_str(), nullptr, &total, nullptr));
  EXPECT_EQ(numberOf(&Fso::FSO_GetDriveTotalSize, temp.path().substr(0, 2)),
            static_cast<double>(total.QuadPart) / 1048576.0);
}

BOOL WINAPI answerSpace(const wchar_t* /*root*/, ULARGE_INTEGER* available, ULARGE_INTEGER* total,
                        ULARGE_INTEGER* free) {
  available->QuadPart = 1536;
  total->QuadPart = std::uint64_t{5} << 40;
  free->QuadPart = std::uint64_t{3} << 40;
  return TRUE;
}

TEST_F(FileSystemObject, MeasuresWhatTheUserMayFill) {
  const ImportHook hook(component(), "GetDiskFreeSpaceExW", &answerSpace);
  EXPECT_EQ(numberOf(&Fso::FSO_GetDriveAvailableSpace, L"C:"), 0.00146484375);
  EXPECT_EQ(numberOf(&Fso::FSO_GetDriveTotalSize, L"C"), 5242880.0);
}

TEST_F(FileSystemObject, MeasuresFilesAndFoldersInMebibytes) {
  temp.file(L"one", std::string(1048576, 'x'));
  temp.folder(L"sub\\sub");
  temp.file(L"sub\\sub\\small", std::string(1536, 'x'));
  EXPECT_EQ(numberOf(&Fso::FSO_GetFileSize, temp / L"one"), 1.0);
  EXPECT_EQ(numberOf(&Fso::FSO_GetFileSize, temp / L"sub\\sub\\small"), 0.00146484375);
  EXPECT_EQ(numberOf(&Fso::FSO_GetFolderSize, temp.path()), 1.00146484375);
  EXPECT_EQ(numberOf(&Fso::FSO_GetFolderSize, temp / L"sub"), 0.00146484375);
  for (const std::wstring& path : {temp / L"none", std::wstring(), (temp / L"one") + L'\0'}) {
    EXPECT_EQ(numberOf(&Fso::FSO_GetFileSize, path), 0);
    EXPECT_EQ(numberOf(&Fso::FSO_GetFolderSize, path), 0);
  }
  EXPECT_EQ(numberOf(&Fso::FSO_GetFileSize, temp / L"sub"), 0);
  EXPECT_EQ(numberOf(&Fso::FSO_GetFolderSize, temp / L"one"), 0);
}

TEST_F(FileSystemObject, ReadsTheDatesOfFiles) {
  const std::wstring path = temp.file(L"a.txt");
  const HANDLE file = CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  const SYSTEMTIME local{2021, 3, 0, 14, 18, 30, 15, 700};
  FILETIME localTime{};
  FILETIME time{};
  SystemTimeToFileTime(&local, &localTime);
  LocalFileTimeToFileTime(&localTime, &time);
  ASSERT_TRUE(SetFileTime(file, &time, nullptr, &time));
  CloseHandle(file);
  DATE expected = 0;
  SystemTimeToVariantTime(const_cast<SYSTEMTIME*>(&local), &expected);
  EXPECT_EQ(dateOf(&Fso::FSO_GetFileLastModificationDate, path, true), expected);

  const Late object(objectOf(&Fso::FSO_GetFile, path));
  EXPECT_EQ(dateOf(&Fso::FSO_GetFileLastModificationDate, path, true),
            object.get(L"DateLastModified").get().date);
  EXPECT_EQ(dateOf(&Fso::FSO_GetFileCreationDate, path, true), object.get(L"DateCreated").get().date);
}

TEST_F(FileSystemObject, LeavesTheDateOfNoFileAsItWas) {
  for (const std::wstring& path : {temp / L"none", temp.path(), std::wstring()}) {
    EXPECT_EQ(dateOf(&Fso::FSO_GetFileCreationDate, path, false), 12345.5);
    EXPECT_EQ(dateOf(&Fso::FSO_GetFileLastModificationDate, path, false), 12345.5);
  }
  VARIANT_BOOL result = VARIANT_TRUE;
  EXPECT_EQ(fso->FSO_GetFileCreationDate(Bstr(temp.file(L"a")).get(), nullptr, &result), S_OK);
  EXPECT_EQ(result, VARIANT_FALSE);
}

TEST_F(FileSystemObject, HandsOutTheScriptingRuntimesObjects) {
  const std::wstring path = temp.file(L"a.txt", "12345");
  const Late file(objectOf(&Fso::FSO_GetFile, path));
  EXPECT_EQ(textIn(file.get(L"Path")), path);
  Variant size = file.get(L"Size");
  ASSERT_EQ(VariantChangeType(&size.get(), &size.get(), 0, VT_I4), S_OK);
  EXPECT_EQ(size.get().lVal, 5);
  const Late folder(objectOf(&Fso::FSO_GetFolder, temp.path()));
  EXPECT_EQ(textIn(folder.get(L"Path")), temp.path());
  EXPECT_EQ(Late(folder.get(L"Files").get().pdispVal).get(L"Count").get().lVal, 1);
  EXPECT_FALSE(objectOf(&Fso::FSO_GetFile, temp.path()));
  EXPECT_FALSE(objectOf(&Fso::FSO_GetFolder, path));
  for (const std::wstring& none : {temp / L"none", std::wstring(), path + L'\0', temp.path() + L'\0'}) {
    EXPECT_FALSE(objectOf(&Fso::FSO_GetFile, none));
    EXPECT_FALSE(objectOf(&Fso::FSO_GetFolder, none));
  }
}

TEST_F(FileSystemObject, DescribesTheTypeOfAFileAsTheShellDoes) {
  const auto type = [&](const std::wstring& path) {
    Bstr result;
    EXPECT_EQ(fso->FSO_GetFileType(Bstr(path).get(), result.out()), S_OK);
    return std::wstring(result.view());
  };
  HKEY key = nullptr;
  constexpr const wchar_t* extension = L".zeqtest";
  constexpr const wchar_t* description = L"zeqtestfile";
  for (const auto& [name, value] :
       {std::pair{extension, L"zeqtestfile"}, std::pair{description, L"A test's own file"}}) {
    ASSERT_EQ(RegCreateKeyW(HKEY_CLASSES_ROOT, name, &key), ERROR_SUCCESS);
    RegSetValueExW(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(value),
                   static_cast<DWORD>((std::wcslen(value) + 1) * sizeof(wchar_t)));
    RegCloseKey(key);
  }
  EXPECT_EQ(type(temp.file(L"a.zeqtest")), L"A test's own file");
  EXPECT_EQ(type(temp / L"none.zeqtest"), L"");
  EXPECT_EQ(type(temp.folder(L"folder.zeqtest")), L"") << "a folder is no file";
  EXPECT_EQ(type(L""), L"");
  EXPECT_NE(type(temp.file(L"a.unheardof")), L"");
  RegDeleteKeyW(HKEY_CLASSES_ROOT, extension);
  RegDeleteKeyW(HKEY_CLASSES_ROOT, description);
}

TEST_F(FileSystemObject, ListsFilesUnderTheirPaths) {
  temp.file(L"a.txt");
  temp.file(L"B.txt");
  temp.file(L"\x00E9.txt");
  temp.folder(L"sub");
  EXPECT_EQ(add(&Fso::FSO_GetFiles, temp.path(), collection.get()), 3);
  EXPECT_EQ(size(), 3);
  EXPECT_EQ(nameUnder(temp / L"A.TXT"), L"a.txt");
  EXPECT_EQ(nameUnder(temp / L"b.txt"), L"B.txt");
  EXPECT_EQ(nameUnder(temp / L"\x00C9.txt"), L"\x00E9.txt");
  EXPECT_EQ(nameUnder(temp / L"sub"), L"");
}

TEST_F(FileSystemObject, ListsFoldersUnderTheirPaths) {
  temp.file(L"a.txt");
  temp.folder(L"sub\\deeper");
  temp.folder(L"other");
  EXPECT_EQ(add(&Fso::FSO_GetFolders, temp.path(), collection.get()), 2);
  EXPECT_EQ(size(), 2);
  EXPECT_EQ(nameUnder(temp / L"sub"), L"sub");
  EXPECT_EQ(nameUnder(temp / L"other"), L"other");
}

TEST_F(FileSystemObject, AddsToWhatTheCollectionHolds) {
  temp.file(L"a");
  const Variant old(std::wstring_view(L"old"));
  const Variant missing = Variant::missing();
  ASSERT_EQ(collection->Add(old.get(), missing.get(), missing.get(), missing.get()), S_OK);
  EXPECT_EQ(add(&Fso::FSO_GetFiles, temp.path(), collection.get()), 1);
  EXPECT_EQ(size(), 2);
  EXPECT_EQ(add(&Fso::FSO_GetFolders, temp.path(), collection.get()), 0);
  EXPECT_EQ(size(), 2);
}

TEST_F(FileSystemObject, EndsAListAtAKeyThatIsTaken) {
  for (const wchar_t* name : {L"a", L"b", L"c"}) {
    temp.file(name);
    temp.folder(std::wstring(L"sub\\") + name);
  }
  const Variant missing = Variant::missing();
  for (const wchar_t* taken : {L"b", L"sub\\c"}) {
    const Variant key{std::wstring_view(temp / taken)};
    ASSERT_EQ(collection->Add(missing.get(), key.get(), missing.get(), missing.get()), S_OK);
  }
  EXPECT_EQ(add(&Fso::FSO_GetFiles, temp.path(), collection.get()), 0);
  EXPECT_EQ(add(&Fso::FSO_GetFolders, temp / L"sub", collection.get()), 0);
  // What the platform lists before the taken one is added, in its order.
  std::vector<std::wstring> before;
  for (const wchar_t* folder : {L"", L"sub\\"}) {
    WIN32_FIND_DATAW entry{};
    const bool files = *folder == L'\0';
    const HANDLE search = FindFirstFileW((temp / folder + L"*").c_str(), &entry);
    do {
      const bool isFolder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
      if (std::wstring_view(entry.cFileName) == (files ? L"b" : L"c")) {
        break;
      }
      if (isFolder != files && entry.cFileName[0] != L'.') {
        before.emplace_back(entry.cFileName);
      }
    } while (FindNextFileW(search, &entry) != FALSE);
    FindClose(search);
  }
  EXPECT_EQ(size(), 2 + static_cast<long>(before.size()));
}

TEST_F(FileSystemObject, ListsNothingOfNoFolder) {
  EXPECT_EQ(add(&Fso::FSO_GetFiles, temp.folder(L"empty"), collection.get()), 0);
  EXPECT_EQ(add(&Fso::FSO_GetFolders, temp / L"empty", collection.get()), 0);
  for (const std::wstring& path : {temp / L"none", temp.file(L"file"), std::wstring(), temp.path() + L'\0'}) {
    EXPECT_EQ(add(&Fso::FSO_GetFiles, path, collection.get()), 0);
    EXPECT_EQ(add(&Fso::FSO_GetFolders, path, collection.get()), 0);
  }
  EXPECT_EQ(size(), 0);
  EXPECT_EQ(add(&Fso::FSO_GetFiles, temp.path(), nullptr), 0);
  EXPECT_EQ(add(&Fso::FSO_GetFolders, temp.path(), nullptr), 0);
  EXPECT_EQ(add(&Fso::FSO_GetFiles, temp.path(), fso.get()), 0) << "no collection";
  long result = -1;
  EXPECT_EQ(fso->FSO_GetFiles(Bstr(temp.path()).get(), nullptr, &result), S_OK);
  EXPECT_EQ(result, 0);
}

TEST_F(FileSystemObject, ListsIntoCollectionsOfOthers) {
  temp.file(L"a");
  temp.folder(L"sub");
  ScriptCollection script;
  EXPECT_EQ(add(&Fso::FSO_GetFiles, temp.path(), &script), 1);
  EXPECT_EQ(add(&Fso::FSO_GetFolders, temp.path(), &script), 1);
  std::wstring file = temp / L"A";
  std::wstring folder = temp / L"SUB";
  CharUpperW(file.data());
  CharUpperW(folder.data());
  EXPECT_THAT(script.keys, ElementsAre(file, folder));
  EXPECT_THAT(script.types, ElementsAre(VT_DISPATCH, VT_DISPATCH));
  script.failure = E_FAIL;
  EXPECT_EQ(add(&Fso::FSO_GetFiles, temp.path(), &script), 0);

  // A dictionary takes the key first, but knows its arguments' names.
  CLSID clsid{};
  automation::check(CLSIDFromProgID(L"Scripting.Dictionary", &clsid));
  ComPtr<IDispatch> dictionary;
  automation::check(
      CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, dictionary.outVoid()));
  EXPECT_EQ(add(&Fso::FSO_GetFiles, temp.path(), dictionary.get()), 1);
  const Variant item = Late(dictionary).get(L"Item", Variant(std::wstring_view(file)));
  ASSERT_EQ(item.type(), VT_DISPATCH);
  EXPECT_EQ(textIn(Late(item.get().pdispVal).get(L"Name")), L"a");
}

TEST_F(FileSystemObject, CountsAgainAfterListing) {
  temp.file(L"a");
  temp.file(L"b");
  temp.folder(L"sub");
  ScriptCollection script;
  script.whenAdding = [&] {
    DeleteFileW((temp / L"a").c_str());
    DeleteFileW((temp / L"b").c_str());
  };
  EXPECT_EQ(add(&Fso::FSO_GetFiles, temp.path(), &script), 0);
  EXPECT_GE(script.keys.size(), 1U);
  script.whenAdding = [&] { temp.folder(L"another"); };
  EXPECT_EQ(add(&Fso::FSO_GetFolders, temp.path(), &script), 2);
}

TEST_F(FileSystemObject, CountsWhatChangesSinceThePreviousList) {
  for (long count = 1; count <= 20; ++count) {
    temp.file(L"file" + std::to_wstring(count));
    const auto files = create<Collection, _Collection>();
    EXPECT_EQ(add(&Fso::FSO_GetFiles, temp.path(), files.get()), count);
  }
}

}  // namespace
}  // namespace zeq::test
