#include "platform/Files.h"

#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <system_error>

#include "platform/NativePath.h"
#include "support/TempFolder.h"

namespace zeq::platform {
namespace {

using test::TempFolder;

/// The Win32 code that a call throws; 0 if it throws none.
template <class Call>
int errorOf(Call&& call) {
  try {
    call();
    return 0;
  } catch (const std::system_error& error) {
    return error.code().value();
  }
}

class Files : public testing::Test {
 protected:
  /// The path of a folder in the test's folder that is longer than 400 characters.
  std::wstring longFolder() {
    std::wstring name;
    for (int i = 0; i < 9; ++i) {
      name += (i == 0 ? L"" : L"\\") + std::wstring(50, static_cast<wchar_t>(L'a' + i));
    }
    return temp.folder(name);
  }

  TempFolder temp;
};

TEST_F(Files, ExistAsFileOrAsFolder) {
  const std::wstring file = temp.file(L"a.txt");
  EXPECT_TRUE(fileExists(file.c_str()));
  EXPECT_FALSE(folderExists(file.c_str()));
  EXPECT_FALSE(fileExists(temp.path().c_str()));
  EXPECT_TRUE(folderExists(temp.path().c_str()));
  EXPECT_TRUE(folderExists((temp.path() + L"\\").c_str()));
  EXPECT_FALSE(fileExists((temp / L"b.txt").c_str()));
  EXPECT_FALSE(folderExists((temp / L"b").c_str()));
  EXPECT_FALSE(fileExists((temp / L"*.txt").c_str()));
  EXPECT_FALSE(fileExists(L""));
  EXPECT_FALSE(folderExists(L""));
}

TEST_F(Files, MayHaveLongPaths) {
  const std::wstring folder = longFolder();
  ASSERT_GT(folder.size(), 400U);
  EXPECT_TRUE(folderExists(folder.c_str()));
  const std::wstring file = folder + L"\\file.txt";
  EXPECT_FALSE(fileExists(file.c_str()));
  truncateFile(file);
  EXPECT_TRUE(fileExists(file.c_str()));
  EXPECT_EQ(fileInfo(file).size, 0U);
  EXPECT_EQ(countFiles(folder), 1);
  const std::wstring subfolder = folder + L"\\sub";
  createFolder(subfolder);
  EXPECT_EQ(countSubfolders(folder), 1);
  moveFile(file, subfolder + L"\\");
  EXPECT_FALSE(fileExists(file.c_str()));
  EXPECT_TRUE(fileExists((subfolder + L"\\file.txt").c_str()));
  copyFolder(subfolder, folder + L"\\copy", false);
  EXPECT_EQ(folderSize(temp.path()), 0U);
  moveFolder(folder + L"\\copy", folder + L"\\moved");
  deleteFile(folder + L"\\moved\\*", false);
  EXPECT_EQ(countFiles(folder + L"\\moved"), 0);
  deleteFolder(temp / std::wstring(50, L'a'), false);
  EXPECT_EQ(countSubfolders(temp.path()), 0);
}

TEST_F(Files, HaveExtendedPathsForWhatIsLong) {
  EXPECT_EQ(extendedPath(L"C:\\a\\..\\b"), L"\\\\?\\C:\\b");
  EXPECT_EQ(extendedPath(L"\\\\server\\share\\a"), L"\\\\?\\UNC\\server\\share\\a");
  EXPECT_EQ(extendedPath(L"\\\\?\\C:\\a"), L"\\\\?\\C:\\a");
  EXPECT_EQ(extendedPath(L"\\\\.\\pipe\\a"), L"\\\\.\\pipe\\a");
  const std::wstring shortPath = L"C:\\a";
  EXPECT_EQ(NativePath(shortPath).get(), shortPath.c_str()) << "a short path is taken as it is";
  const std::wstring longPath = L"C:/" + std::wstring(300, L'a');
  EXPECT_STREQ(NativePath(longPath).get(), (L"\\\\?\\C:\\" + std::wstring(300, L'a')).c_str());
  EXPECT_EQ(errorOf([] { NativePath path(std::wstring(L"a\0b", 3)); }), ERROR_INVALID_NAME);
}

TEST_F(Files, HaveAbsolutePaths) {
  SetCurrentDirectoryW(temp.path().c_str());
  EXPECT_EQ(absolutePathName(L"a"), temp / L"a");
  EXPECT_EQ(absolutePathName(L"a/b\\.\\..\\c"), temp / L"a\\c");
  EXPECT_EQ(absolutePathName(L"."), temp.path());
  EXPECT_EQ(absolutePathName(L""), temp.path());
  EXPECT_EQ(absolutePathName(temp.path().substr(0, 2)), temp.path()) << "the current folder of the drive";
  EXPECT_EQ(absolutePathName(L"c:\\a\\"), L"C:\\a");
  EXPECT_EQ(absolutePathName(L"C:\\"), L"C:\\");
  EXPECT_EQ(absolutePathName(L"\\\\server\\share\\a\\..\\b\\"), L"\\\\server\\share\\b");
  EXPECT_EQ(absolutePathName(L"C:\\" + std::wstring(32000, L'x')).size(), 32003U);
  EXPECT_EQ(errorOf([] { (void)absolutePathName(std::wstring(L"a\0b", 3)); }), ERROR_INVALID_NAME);
  SetCurrentDirectoryW(L"C:\\");
}

TEST_F(Files, AreDescribed) {
  const std::wstring path = temp.file(L"a.txt", "12345");
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
  const FileInfo info = fileInfo(path);
  EXPECT_EQ(info.size, 5U);
  EXPECT_NE(info.attributes & FILE_ATTRIBUTE_READONLY, 0U);
  FILETIME now{};
  GetSystemTimeAsFileTime(&now);
  EXPECT_LE(CompareFileTime(&info.created, &now), 0);
  EXPECT_NE(info.modified.dwHighDateTime, 0U);
  EXPECT_EQ(errorOf([&] { (void)fileInfo(temp / L"none"); }), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(errorOf([&] { (void)fileInfo(temp / L"none\\none"); }), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(errorOf([&] { (void)fileInfo(temp.path()); }), ERROR_FILE_NOT_FOUND);
}

TEST_F(Files, OfATreeAddUp) {
  temp.file(L"a", "1");
  temp.folder(L"sub\\sub");
  temp.folder(L"empty");
  temp.file(L"sub\\b", "22");
  temp.file(L"sub\\sub\\c", "333");
  SetFileAttributesW((temp / L"sub\\b").c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
  EXPECT_EQ(folderSize(temp.path()), 6U);
  EXPECT_EQ(folderSize(temp.path() + L"\\"), 6U);
  EXPECT_EQ(folderSize(temp / L"empty"), 0U);
  EXPECT_EQ(countFiles(temp.path()), 1);
  EXPECT_EQ(countSubfolders(temp.path()), 2);
  EXPECT_EQ(countFiles(temp / L"empty"), 0);
  EXPECT_EQ(errorOf([&] { (void)folderSize(temp / L"none"); }), ERROR_PATH_NOT_FOUND);
  EXPECT_NE(errorOf([&] { (void)folderSize(temp / L"a"); }), 0);
  EXPECT_NE(errorOf([] { (void)folderSize(L""); }), 0);
  EXPECT_EQ(errorOf([&] { (void)countFiles(temp / L"none"); }), ERROR_PATH_NOT_FOUND);
}

TEST_F(Files, BehindALinkAreNotCounted) {
  temp.file(L"a", "1");
  temp.folder(L"sub");
  ASSERT_TRUE(test::linkFolder(temp / L"sub\\circle", temp.path()));
  EXPECT_EQ(folderSize(temp.path()), 1U);
  EXPECT_EQ(countSubfolders(temp / L"sub"), 1);
}

TEST_F(Files, StandOnDrives) {
  const wchar_t letter = temp.path()[0];
  const std::wstring name{letter, L':'};
  for (const std::wstring& drive : {std::wstring(1, letter), name, name + L"\\"}) {
    EXPECT_TRUE(driveExists(drive));
    const DriveSpace space = driveSpace(drive);
    EXPECT_GT(space.total, space.available);
    EXPECT_GE(space.free, space.available);
    EXPECT_GT(space.available, 0U);
  }
  EXPECT_TRUE(driveExists(temp.path())) << "a path stands for its drive";
  EXPECT_EQ(errorOf([&] { (void)driveSpace(temp.path()); }), ERROR_INVALID_PARAMETER);
  for (const wchar_t* drive :
       {L"", L"Y", L"Y:", L"Y:\\", L"1:", L"CC", L"C:x", L"C:/", L"\\\\none\\none", L"\\\\none"}) {
    EXPECT_FALSE(driveExists(drive));
    EXPECT_NE(errorOf([&] { (void)driveSpace(drive); }), 0);
  }
  EXPECT_EQ(errorOf([] { (void)driveSpace(L"Y:"); }), ERROR_INVALID_DRIVE);
  EXPECT_FALSE(driveExists(std::wstring_view(L"C\0", 2)));
}

TEST_F(Files, GetTemporaryNames) {
  std::set<std::wstring> names;
  for (int i = 0; i < 100; ++i) {
    const std::wstring name = temporaryName();
    EXPECT_TRUE(std::regex_match(name, std::wregex(L"rad[0-9A-F]{5}\\.tmp")));
    names.insert(name);
  }
  EXPECT_GT(names.size(), 95U);
}

}  // namespace
}  // namespace zeq::platform
