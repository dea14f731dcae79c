// Every member as a script calls it, by name, and what 10,000 calls of each leave behind.

#include <functional>

#include "filesystem/FileSystemTest.h"
#include "support/Leaks.h"
#include "support/Printable.h"

namespace zeq::test {
namespace {

Variant string(std::wstring_view text) {
  return Variant(text);
}

class LateFileSystemObject : public FileSystemTest {
 protected:
  std::wstring late(const wchar_t* name, const auto&... arguments) {
    return textIn(script.get(name, arguments...));
  }
  bool lateTest(const wchar_t* name, const auto&... arguments) {
    const Variant result = script.get(name, arguments...);
    EXPECT_EQ(result.type(), VT_BOOL);
    return isTrue(result.get().boolVal);
  }
  double lateNumber(const wchar_t* name, const auto&... arguments) {
    const Variant result = script.get(name, arguments...);
    EXPECT_EQ(result.type(), VT_R8);
    return result.get().dblVal;
  }

  Late script{fso};
};

TEST_F(LateFileSystemObject, AnswersForPaths) {
  Variant path = string(L"C:\\dir\\file.txt");  // A script's variable.
  EXPECT_EQ(late(L"FSO_BuildPath", byRef(path), string(L"a")), L"C:\\dir\\file.txt\\a");
  EXPECT_EQ(late(L"FSO_GetAbsolutePathName", byRef(path)), L"C:\\dir\\file.txt");
  EXPECT_EQ(late(L"FSO_GetBaseName", byRef(path)), L"file");
  EXPECT_EQ(late(L"FSO_GetExtensionName", byRef(path)), L"txt");
  EXPECT_EQ(late(L"FSO_GetFileName", string(L"C:\\dir\\file.txt")), L"file.txt");
  EXPECT_EQ(late(L"FSO_GetParentFolderName", string(L"C:\\dir\\file.txt")), L"C:\\dir");
  EXPECT_EQ(late(L"FSO_GetDriveName", byRef(path)), L"C:");
  EXPECT_EQ(textIn(path), L"C:\\dir\\file.txt") << "read only";
  EXPECT_TRUE(lateTest(L"FSO_IsBaseFileNameSensible", string(L"file")));
  Variant folder, base, extension(std::wstring_view(L"old"));
  EXPECT_TRUE(lateTest(L"FSO_SplitFullFilePath", byRef(path), byRef(folder), byRef(base), byRef(extension)));
  EXPECT_EQ(textIn(folder), L"C:\\dir");
  EXPECT_EQ(textIn(base), L"file");
  EXPECT_EQ(textIn(extension), L"txt");
  EXPECT_TRUE(lateTest(L"FSO_SplitFullFilePath", byRef(path), byRef(path), byRef(base), byRef(extension)));
  EXPECT_EQ(textIn(path), L"C:\\dir");
}

TEST_F(LateFileSystemObject, AnswersForFiles) {
  const Variant file = string(temp.file(L"a.txt", std::string(1536, 'x')));
  const Variant folder = string(temp.path());
  const Variant drive = string(temp.path().substr(0, 1));
  EXPECT_TRUE(lateTest(L"FSO_FileExists", file));
  EXPECT_TRUE(lateTest(L"FSO_FolderExists", folder));
  EXPECT_TRUE(lateTest(L"FSO_DriveExists", drive));
  EXPECT_EQ(lateNumber(L"FSO_GetFileSize", file), 0.00146484375);
  EXPECT_EQ(lateNumber(L"FSO_GetFolderSize", folder), 0.00146484375);
  EXPECT_GT(lateNumber(L"FSO_GetDriveTotalSize", drive), 0);
  EXPECT_GT(lateNumber(L"FSO_GetDriveAvailableSpace", drive), 0);
  Variant date;
  EXPECT_TRUE(lateTest(L"FSO_GetFileCreationDate", file, byRef(date)));
  EXPECT_EQ(date.type(), VT_DATE);
  Variant modified;
  EXPECT_TRUE(lateTest(L"FSO_GetFileLastModificationDate", file, byRef(modified)));
  EXPECT_EQ(modified.type(), VT_DATE);
  EXPECT_EQ(script.get(L"FSO_GetFile", file).type(), VT_DISPATCH);
  EXPECT_EQ(script.get(L"FSO_GetFolder", folder).type(), VT_DISPATCH);
  const Variant nothing = script.get(L"FSO_GetFile", folder);
  EXPECT_EQ(nothing.type(), VT_DISPATCH);
  EXPECT_EQ(nothing.get().pdispVal, nullptr);
  EXPECT_NE(late(L"FSO_GetFileType", file), L"");
  Variant collection(static_cast<IDispatch*>(create<Collection, _Collection>().get()));
  EXPECT_EQ(script.get(L"FSO_GetFiles", folder, byRef(collection)).get().lVal, 1);
  EXPECT_EQ(script.get(L"FSO_GetFolders", folder, collection).get().lVal, 0);
  EXPECT_EQ(Late(collection.get().pdispVal).get(L"Count").get().lVal, 1);
  Variant none(static_cast<IDispatch*>(nullptr));
  EXPECT_EQ(script.get(L"FSO_GetFiles", folder, none).get().lVal, 0);
}

TEST_F(LateFileSystemObject, MakesAndNamesFiles) {
  const Variant folder = string(temp.path());
  EXPECT_TRUE(lateTest(L"FSO_CreateFolderPath", string(temp / L"a\\b")));
  const Variant file = string(temp.file(L"a.txt"));
  SetFileAttributesW((temp / L"a.txt").c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_FALSE(lateTest(L"FSO_DeleteFile", file));
  EXPECT_TRUE(lateTest(L"FSO_DeleteFile", file, Variant(true)));
  temp.file(L"x.ini");
  EXPECT_TRUE(lateTest(L"FSO_ArchiveAndReplaceFile", string(temp / L"x.ini"), string(temp.file(L"new"))));
  EXPECT_TRUE(exists(temp / L"x_ini.000"));
  EXPECT_TRUE(late(L"FSO_GetTempFileName", folder, Variant(5L)).starts_with(temp.path()));
  EXPECT_EQ(late(L"FSO_SuggestFileChild", folder, string(L"a"), string(L"txt"), Variant(5L)), L"a_001.txt");
  EXPECT_EQ(late(L"FSO_SuggestFolderChild", folder, string(L"a"), Variant(5L)), L"a_001");
  EXPECT_NE(late(L"FSO_GetSpecialFolderLocation", Variant(26L)), L"");
  EXPECT_NE(late(L"FSO_GetTempPath"), L"");
}

TEST_F(LateFileSystemObject, RefusesWhatIsNoPath) {
  Variant object(static_cast<IDispatch*>(fso.get()));
  EXPECT_EQ(script.call(L"FSO_FileExists", object).code, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(script.call(L"FSO_FileExists").code, DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(script.call(L"FSO_GetFiles", string(L"C:\\"), string(L"no collection")).code,
            DISP_E_TYPEMISMATCH);
  EXPECT_EQ(script.call(L"FSO_SuggestFolderChild", string(L"C:\\"), string(L"a"), Variant(32768L)).code,
            DISP_E_OVERFLOW);
}

class LateFileSystemObjectLeaks : public LateFileSystemObject {
 protected:
  static void expectNothingLeft(const std::function<void()>& call) { expectNoLeak(10000, call); }
  /// By calls of a member, which succeed.
  void expectNothingLeftBy(const wchar_t* name, const auto&... arguments) {
    SCOPED_TRACE(printable(name));
    expectNothingLeft([&] { automation::check(script.call(name, arguments...).code); });
  }

  const std::wstring subfolder = temp.folder(L"list\\sub");
  Variant file = string(temp.file(L"list\\a.txt"));
  Variant folder = string(temp / L"list");
  Variant drive = string(temp.path().substr(0, 1));
};

TEST_F(LateFileSystemObjectLeaks, PartsOfPathsLeaveNothingBehind) {
  for (const wchar_t* name :
       {L"FSO_GetAbsolutePathName", L"FSO_GetBaseName", L"FSO_GetExtensionName", L"FSO_GetFileName",
        L"FSO_GetParentFolderName", L"FSO_GetDriveName", L"FSO_IsBaseFileNameSensible"}) {
    expectNothingLeftBy(name, byRef(file));
  }
  expectNothingLeftBy(L"FSO_BuildPath", byRef(file), folder);
  Variant parent, base, extension;
  expectNothingLeftBy(L"FSO_SplitFullFilePath", byRef(file), byRef(parent), byRef(base), byRef(extension));
}

TEST_F(LateFileSystemObjectLeaks, QuestionsAboutAFileLeaveNothingBehind) {
  for (const wchar_t* name : {L"FSO_FileExists", L"FSO_GetFileSize", L"FSO_GetFile", L"FSO_GetFileType"}) {
    expectNothingLeftBy(name, byRef(file));
  }
  Variant date;
  expectNothingLeftBy(L"FSO_GetFileCreationDate", byRef(file), byRef(date));
  expectNothingLeftBy(L"FSO_GetFileLastModificationDate", byRef(file), byRef(date));
}

TEST_F(LateFileSystemObjectLeaks, QuestionsAboutFoldersAndDrivesLeaveNothingBehind) {
  expectNothingLeftBy(L"FSO_FolderExists", folder);
  expectNothingLeftBy(L"FSO_GetFolderSize", folder);
  expectNothingLeftBy(L"FSO_GetFolder", folder);
  expectNothingLeftBy(L"FSO_GetSpecialFolderLocation", Variant(26L));
  expectNothingLeftBy(L"FSO_GetTempPath");
  expectNothingLeftBy(L"FSO_DriveExists", drive);
  expectNothingLeftBy(L"FSO_GetDriveTotalSize", drive);
  expectNothingLeftBy(L"FSO_GetDriveAvailableSpace", drive);
}

TEST_F(LateFileSystemObjectLeaks, WhatCannotBeDoneLeavesNothingBehind) {
  Variant none = string(temp / L"none");
  for (const wchar_t* name : {L"FSO_GetFileSize", L"FSO_GetFile", L"FSO_GetFileType", L"FSO_DeleteFile"}) {
    expectNothingLeftBy(name, byRef(none));
  }
  for (const wchar_t* name :
       {L"FSO_FolderExists", L"FSO_DriveExists", L"FSO_GetFolderSize", L"FSO_GetFolder",
        L"FSO_CreateFolderPath", L"FSO_GetDriveTotalSize", L"FSO_GetDriveAvailableSpace"}) {
    expectNothingLeftBy(name, byRef(file));  // Neither a folder nor the name of a drive.
  }
}

TEST_F(LateFileSystemObjectLeaks, ListsLeaveNothingBehind) {
  for (const wchar_t* name : {L"FSO_GetFiles", L"FSO_GetFolders"}) {
    SCOPED_TRACE(printable(name));
    expectNothingLeft([&] {
      const auto collection = create<Collection, _Collection>();
      const Variant argument(static_cast<IDispatch*>(collection.get()));
      EXPECT_EQ(script.get(name, folder, argument).get().lVal, 1);
    });
  }
}

TEST_F(LateFileSystemObjectLeaks, NamesForNewFilesLeaveNothingBehind) {
  expectNothingLeftBy(L"FSO_GetTempFileName", folder, Variant(2L));
  expectNothingLeftBy(L"FSO_SuggestFileChild", folder, string(L"b"), string(L"txt"), Variant(2L));
  expectNothingLeftBy(L"FSO_SuggestFolderChild", folder, string(L"b"), Variant(2L));
}

TEST_F(LateFileSystemObjectLeaks, ChangesLeaveNothingBehind) {
  expectNothingLeftBy(L"FSO_CreateFolderPath", folder);
  expectNothingLeft([&] { EXPECT_TRUE(lateTest(L"FSO_DeleteFile", string(temp.file(L"deleted")))); });
  expectNothingLeft([&] {
    const Variant oldFile = string(temp.file(L"x.ini"));
    EXPECT_TRUE(lateTest(L"FSO_ArchiveAndReplaceFile", oldFile, string(temp.file(L"new"))));
    DeleteFileW((temp / L"x_ini.000").c_str());
  });
}

}  // namespace
}  // namespace zeq::test
