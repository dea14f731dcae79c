// Deleting, creating, archiving, and the names of new files and folders.

#include <array>
#include <regex>

#include "filesystem/FileSystemTest.h"
#include "support/ImportHook.h"

namespace zeq::test {
namespace {

class FileSystemObjectChanges : public FileSystemTest {
 protected:
  bool deleteFile(std::wstring_view path, VARIANT_BOOL force) {
    const Bstr argument(path);
    BSTR pointer = argument.get();
    VARIANT_BOOL result = 1;
    EXPECT_EQ(fso->FSO_DeleteFile(&pointer, &force, &result), S_OK);
    return isTrue(result);
  }
  bool createFolderPath(std::wstring_view path) { return test(&Fso::FSO_CreateFolderPath, path); }
  bool archive(std::wstring_view oldFile, std::wstring_view newFile) {
    VARIANT_BOOL result = 1;
    EXPECT_EQ(fso->FSO_ArchiveAndReplaceFile(Bstr(oldFile).get(), Bstr(newFile).get(), &result), S_OK);
    return isTrue(result);
  }
  std::wstring tempFileName(std::wstring_view folder, short tries) {
    Bstr result;
    EXPECT_EQ(fso->FSO_GetTempFileName(Bstr(folder).get(), tries, result.out()), S_OK);
    return std::wstring(result.view());
  }
  std::wstring suggestFile(std::wstring_view folder, std::wstring_view base, std::wstring_view extension,
                           short tries) {
    Bstr result;
    EXPECT_EQ(fso->FSO_SuggestFileChild(Bstr(folder).get(), Bstr(base).get(), Bstr(extension).get(), tries,
                                        result.out()),
              S_OK);
    return std::wstring(result.view());
  }
  std::wstring suggestFolder(std::wstring_view folder, std::wstring_view base, short tries) {
    Bstr result;
    EXPECT_EQ(fso->FSO_SuggestFolderChild(Bstr(folder).get(), Bstr(base).get(), tries, result.out()), S_OK);
    return std::wstring(result.view());
  }
  std::wstring specialFolder(int id) {
    Bstr result;
    EXPECT_EQ(fso->FSO_GetSpecialFolderLocation(static_cast<FSO_SystemFolderID>(id), result.out()), S_OK);
    return std::wstring(result.view());
  }
};

TEST_F(FileSystemObjectChanges, DeletesFiles) {
  const std::wstring path = temp.file(L"a.txt");
  EXPECT_TRUE(deleteFile(path, VARIANT_FALSE));
  EXPECT_FALSE(exists(path));
  EXPECT_FALSE(deleteFile(path, VARIANT_FALSE));
  EXPECT_FALSE(deleteFile(temp.folder(L"sub"), VARIANT_TRUE));
  EXPECT_FALSE(deleteFile(L"", VARIANT_TRUE));
  EXPECT_TRUE(exists(temp / L"sub"));
}

TEST_F(FileSystemObjectChanges, DeletesReadOnlyFilesOnlyIfForced) {
  const std::wstring path = temp.file(L"a.txt");
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_FALSE(deleteFile(path, VARIANT_FALSE));
  const Bstr argument(path);
  BSTR pointer = argument.get();
  VARIANT_BOOL result = VARIANT_TRUE;
  EXPECT_EQ(fso->FSO_DeleteFile(&pointer, nullptr, &result), S_OK) << "nothing said is not forced";
  EXPECT_EQ(result, VARIANT_FALSE);
  EXPECT_TRUE(exists(path));
  EXPECT_TRUE(deleteFile(path, VARIANT_TRUE));
  EXPECT_FALSE(exists(path));
}

TEST_F(FileSystemObjectChanges, DeletesFilesByWildcards) {
  for (const wchar_t* name : {L"a.txt", L"b.txt", L"c.doc"}) {
    temp.file(name);
  }
  EXPECT_TRUE(deleteFile(temp / L"*.txt", VARIANT_FALSE));
  EXPECT_FALSE(exists(temp / L"a.txt"));
  EXPECT_FALSE(exists(temp / L"b.txt"));
  EXPECT_TRUE(exists(temp / L"c.doc"));
  EXPECT_FALSE(deleteFile(temp / L"*.txt", VARIANT_FALSE));
  EXPECT_FALSE(deleteFile((temp / L"c.doc") + std::wstring(L"\0*", 2), VARIANT_TRUE));
  EXPECT_TRUE(exists(temp / L"c.doc"));
}

TEST_F(FileSystemObjectChanges, DeletesFilesUpToTheFirstThatItMayNot) {
  for (const wchar_t* name : {L"1.q", L"2.q", L"3.q"}) {
    temp.file(name);
  }
  SetFileAttributesW((temp / L"2.q").c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_FALSE(deleteFile(temp / L"*.q", VARIANT_FALSE));
  EXPECT_FALSE(exists(temp / L"1.q")) << "what is deleted before the failure stays deleted";
  EXPECT_TRUE(exists(temp / L"2.q"));
  EXPECT_TRUE(exists(temp / L"3.q"));
  EXPECT_TRUE(deleteFile(temp / L"*.q", VARIANT_TRUE));
  EXPECT_FALSE(exists(temp / L"2.q"));
  EXPECT_FALSE(exists(temp / L"3.q"));
}

TEST_F(FileSystemObjectChanges, DeletesFilesWithoutExtensionByADotAtThePatternsEnd) {
  temp.file(L"none");
  temp.file(L"another");
  temp.file(L"a.txt");
  EXPECT_TRUE(deleteFile(temp / L"*.", VARIANT_FALSE));
  EXPECT_FALSE(exists(temp / L"none"));
  EXPECT_FALSE(exists(temp / L"another"));
  EXPECT_TRUE(exists(temp / L"a.txt"));
  EXPECT_FALSE(deleteFile(temp / L"a*.", VARIANT_FALSE));
  EXPECT_TRUE(exists(temp / L"a.txt"));
}

TEST_F(FileSystemObjectChanges, CreatesEveryMissingFolderOfAPath) {
  temp.folder(L"a");
  const std::wstring path = temp / L"a\\b\\c";
  EXPECT_TRUE(createFolderPath(path));
  EXPECT_TRUE(exists(temp / L"a\\b"));
  EXPECT_TRUE(exists(path));
  EXPECT_TRUE(createFolderPath(path));
  EXPECT_TRUE(createFolderPath(temp / L"d\\e\\"));
  EXPECT_TRUE(exists(temp / L"d\\e"));
  EXPECT_TRUE(createFolderPath(temp / L"f//g\\\\h"));
  EXPECT_TRUE(exists(temp / L"f\\g\\h"));
  SetCurrentDirectoryW(temp.path().c_str());
  EXPECT_TRUE(createFolderPath(L"relative\\sub"));
  SetCurrentDirectoryW(L"C:\\");
  EXPECT_TRUE(exists(temp / L"relative\\sub"));
}

TEST_F(FileSystemObjectChanges, CreatesLongFolderPaths) {
  std::wstring path = temp.path();
  while (path.size() < 1500) {
    path += L"\\" + std::wstring(9, L'x');
  }
  EXPECT_TRUE(createFolderPath(path));
  EXPECT_TRUE(exists(path));
}

TEST_F(FileSystemObjectChanges, CreatesNoFolderWhereItsParentCannotBe) {
  temp.file(L"file");
  EXPECT_FALSE(createFolderPath(temp / L"file\\a\\b"));
  EXPECT_FALSE(createFolderPath(temp / L"file"));
  EXPECT_FALSE(createFolderPath(L"Y:\\a\\b"));
  EXPECT_FALSE(createFolderPath(L""));
  EXPECT_FALSE(createFolderPath(L"   "));
  EXPECT_FALSE(createFolderPath((temp / L"a") + std::wstring(L"\0b\\c", 4)));
  EXPECT_FALSE(exists(temp / L"a"));
  EXPECT_FALSE(createFolderPath(temp / L"made\\b*d\\c"));
  EXPECT_TRUE(exists(temp / L"made")) << "what is made before the failure stays";
  std::wstring deep = L"Y:";
  for (int i = 0; i < 8000; ++i) {
    deep += L"\\x";
  }
  EXPECT_FALSE(createFolderPath(deep)) << "thousands of folders need no deep stack";
}

TEST_F(FileSystemObjectChanges, CreatesTheOuterFoldersOfAPathThatIsTooLong) {
  std::wstring path = temp / L"outer";
  path.append(L"\\inner\\").append(300'000, L'x');
  EXPECT_FALSE(createFolderPath(path));
  EXPECT_TRUE(exists(temp / L"outer\\inner"));
  EXPECT_FALSE(createFolderPath(std::wstring(L"Y:").append(300'000, L'\\')));
}

TEST_F(FileSystemObjectChanges, ArchivesAndReplacesAFile) {
  const std::wstring oldFile = temp.file(L"x.ini", "old");
  const std::wstring newFile = temp.file(L"x.new", "new");
  temp.file(L"x_ini.000", "oldest");
  EXPECT_TRUE(archive(oldFile, newFile));
  EXPECT_EQ(contentOf(temp / L"x_ini.000"), "oldest");
  EXPECT_EQ(contentOf(temp / L"x_ini.001"), "old");
  EXPECT_EQ(contentOf(oldFile), "new");
  EXPECT_FALSE(exists(newFile));
}

TEST_F(FileSystemObjectChanges, ArchivesAFileWithoutExtensionOrFolder) {
  const std::wstring oldFile = temp.file(L"base", "old");
  EXPECT_TRUE(archive(oldFile, temp.file(L"new", "new")));
  EXPECT_EQ(contentOf(temp / L"base_.000"), "old");
  SetCurrentDirectoryW(temp.path().c_str());
  temp.file(L"new", "newer");
  EXPECT_TRUE(archive(L"base", L"new"));
  SetCurrentDirectoryW(L"C:\\");
  EXPECT_EQ(contentOf(temp / L"base_.001"), "new");
  EXPECT_EQ(contentOf(temp / L"base"), "newer");
}

TEST_F(FileSystemObjectChanges, ArchivesOnlyWhatExists) {
  const std::wstring newFile = temp.file(L"new", "new");
  EXPECT_FALSE(archive(temp / L"none.ini", newFile));
  EXPECT_TRUE(exists(newFile));
  EXPECT_FALSE(exists(temp / L"none.ini"));
  EXPECT_FALSE(exists(temp / L"none_ini.000"));
  const std::wstring oldFile = temp.file(L"old.ini", "old");
  EXPECT_FALSE(archive(oldFile, temp / L"none"));
  EXPECT_FALSE(exists(oldFile));
  EXPECT_EQ(contentOf(temp / L"old_ini.000"), "old") << "archived already when the second move fails";
  EXPECT_FALSE(archive(L"", L""));
}

TEST_F(FileSystemObjectChanges, MovesNothingIntoAFolderInTheArchivesPlace) {
  const std::wstring oldFile = temp.file(L"x.ini", "old");
  const std::wstring newFile = temp.file(L"new", "new");
  temp.folder(L"x_ini.000");
  EXPECT_FALSE(archive(oldFile, newFile));
  EXPECT_EQ(contentOf(oldFile), "old");
  EXPECT_EQ(contentOf(newFile), "new");
}

TEST_F(FileSystemObjectChanges, TakesNoWildcardsForTheNewFile) {
  const std::wstring oldFile = temp.file(L"x.ini", "old");
  temp.file(L"new.1", "new");
  EXPECT_FALSE(archive(oldFile, temp / L"new.*"));
  EXPECT_EQ(contentOf(temp / L"x_ini.000"), "old");
  EXPECT_EQ(contentOf(temp / L"new.1"), "new");
  EXPECT_FALSE(exists(oldFile));
}

TEST_F(FileSystemObjectChanges, ArchivesNothingWhenAllNumbersAreTaken) {
  const std::wstring oldFile = temp.file(L"x.ini", "old");
  const std::wstring newFile = temp.file(L"new", "new");
  for (int i = 0; i < 1000; ++i) {
    const std::wstring digits = std::to_wstring(1000 + i).substr(1);
    if (i != 999) {
      temp.file(L"x_ini." + digits);
    }
  }
  EXPECT_TRUE(archive(oldFile, newFile));
  EXPECT_EQ(contentOf(temp / L"x_ini.999"), "old");
  temp.file(L"new", "newer");
  EXPECT_FALSE(archive(oldFile, newFile));
  EXPECT_EQ(contentOf(oldFile), "new");
  EXPECT_EQ(contentOf(newFile), "newer");
}

TEST_F(FileSystemObjectChanges, FindsTemporaryNames) {
  const std::wstring first = tempFileName(temp.path(), 0);
  EXPECT_TRUE(first.starts_with(temp.path() + L"\\"));
  EXPECT_TRUE(std::regex_match(first.substr(temp.path().size() + 1), std::wregex(L"rad[0-9A-F]{5}\\.tmp")));
  EXPECT_FALSE(exists(first)) << "nothing is created";
  EXPECT_NE(tempFileName(temp.path(), 3), first);
  EXPECT_TRUE(tempFileName(temp.path() + L"\\", 32767).starts_with(temp.path() + L"\\rad"));
  EXPECT_EQ(tempFileName(temp.path(), -1), L"");
  EXPECT_EQ(tempFileName(temp / L"none", 5), L"");
  EXPECT_EQ(tempFileName(temp.file(L"file"), 5), L"");
  EXPECT_EQ(tempFileName(L"", 5), L"");
}

BOOLEAN NTAPI noChance(void* /*buffer*/, ULONG /*size*/) {
  return FALSE;
}

TEST_F(FileSystemObjectChanges, SaysSoWhereNoTemporaryNameCanBeMade) {
  const ImportHook hook(component(), "SystemFunction036", &noChance);
  Bstr result(L"old");
  EXPECT_EQ(fso->FSO_GetTempFileName(Bstr(temp.path()).get(), 5, result.out()),
            static_cast<HRESULT>(0x800A0039));
  EXPECT_EQ(result.view(), L"");
  EXPECT_EQ(Late(fso).call(L"FSO_GetTempFileName", Variant(std::wstring_view(temp.path())), Variant(5L)).code,
            DISP_E_EXCEPTION);
  EXPECT_EQ(tempFileName(temp / L"none", 5), L"");
}

TEST_F(FileSystemObjectChanges, SuggestsFileNames) {
  EXPECT_EQ(suggestFile(temp.path(), L" Report ", L" txt ", 3), L"Report_001.txt");
  temp.file(L"Report_001.txt");
  EXPECT_EQ(suggestFile(temp.path(), L" Report ", L"txt", 3), L"Report_002.txt");
  temp.file(L"Report_002.txt");
  temp.folder(L"Report_003.txt");
  EXPECT_EQ(suggestFile(temp.path(), L"Report", L"txt", 3), L"Report_003.txt") << "a folder is no file";
  SetFileAttributesW(temp.file(L"other_001.txt").c_str(), FILE_ATTRIBUTE_HIDDEN);
  EXPECT_EQ(suggestFile(temp.path(), L"other", L"txt", 1), L"");
  EXPECT_EQ(suggestFile(temp.path(), L"Report", L"txt", 2), L"");
  EXPECT_EQ(suggestFile(temp.path(), L"Report", L"txt", 0), L"");
  EXPECT_EQ(suggestFile(temp.path(), L"Report", L"txt", -5), L"");
  EXPECT_EQ(suggestFile(temp.path(), L"", L"", 1), L"_001.");
  EXPECT_EQ(suggestFile(temp / L"none", L"Report", L"txt", 3), L"");
  EXPECT_EQ(suggestFile(L"", L"Report", L"txt", 3), L"");
}

TEST_F(FileSystemObjectChanges, SuggestsFolderNames) {
  EXPECT_EQ(suggestFolder(temp.path(), L" Photos ", 2), L"Photos_001");
  temp.folder(L"Photos_001");
  temp.file(L"Photos_002");
  EXPECT_EQ(suggestFolder(temp.path(), L"Photos", 2), L"Photos_002") << "a file is no folder";
  EXPECT_EQ(suggestFolder(temp.path(), L"Photos", 1), L"");
  EXPECT_EQ(suggestFolder(temp.path(), L"Photos", 0), L"");
  EXPECT_EQ(suggestFolder(temp / L"none", L"Photos", 2), L"");
}

TEST_F(FileSystemObjectChanges, FindsSpecialFolders) {
  const std::wstring folder = specialFolder(CSIDL_APPDATA);
  ASSERT_FALSE(folder.empty());
  EXPECT_EQ(folder.back(), L'\\');
  EXPECT_NE(folder[folder.size() - 2], L'\\');
  EXPECT_TRUE(exists(folder.substr(0, folder.size() - 1)));
  EXPECT_EQ(specialFolder(CSIDL_APPDATA + CSIDL_FLAG_DONT_VERIFY), folder);
  EXPECT_EQ(specialFolder(CSIDL_APPDATA | CSIDL_FLAG_CREATE), folder);
  std::array<wchar_t, MAX_PATH> windows{};
  GetWindowsDirectoryW(windows.data(), static_cast<UINT>(windows.size()));
  EXPECT_EQ(specialFolder(CSIDL_WINDOWS), std::wstring(windows.data()) + L"\\");
  EXPECT_EQ(specialFolder(CSIDL_PRINTERS), L"");
  EXPECT_EQ(specialFolder(200), L"");
}

TEST_F(FileSystemObjectChanges, FindsTheFolderForTemporaryFiles) {
  const auto tempPath = [&] {
    Bstr result;
    EXPECT_EQ(fso->FSO_GetTempPath(result.out()), S_OK);
    return std::wstring(result.view());
  };
  std::array<wchar_t, MAX_PATH + 1> old{};
  GetEnvironmentVariableW(L"TMP", old.data(), static_cast<DWORD>(old.size()));
  SetEnvironmentVariableW(L"TMP", temp.path().c_str());
  EXPECT_EQ(tempPath(), temp.path() + L"\\");
  SetEnvironmentVariableW(L"TMP", temp.folder(std::wstring(256 - temp.path().size(), L'a')).c_str());
  EXPECT_EQ(tempPath().size(), 256U) << "the whole buffer, whatever is in it";
  SetEnvironmentVariableW(L"TMP", old.data());
}

}  // namespace
}  // namespace zeq::test
