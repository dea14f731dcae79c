// Deleting, moving, copying and creating, on real files.

#include <gtest/gtest.h>

#include <system_error>

#include "platform/Files.h"
#include "support/TempFolder.h"

namespace zeq::platform {
namespace {

using test::contentOf;
using test::exists;
using test::MappedDrive;
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

/// What the system itself says to a writer of a file: an administrator of Wine's machine may write what is
/// read only.
int writeError(const std::wstring& path) {
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  const DWORD error = file == INVALID_HANDLE_VALUE ? GetLastError() : 0;
  CloseHandle(file);
  return static_cast<int>(error);
}

void makeReadOnly(const std::wstring& path) {
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
}

class FileChanges : public testing::Test {
 protected:
  TempFolder temp;
};

TEST_F(FileChanges, DeleteOneFile) {
  const std::wstring path = temp.file(L"a.txt");
  deleteFile(path, false);
  EXPECT_FALSE(exists(path));
  EXPECT_EQ(errorOf([&] { deleteFile(path, false); }), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(errorOf([&] { deleteFile(temp / L"none\\a", false); }), ERROR_PATH_NOT_FOUND);
  EXPECT_EQ(errorOf([&] { deleteFile(temp.folder(L"sub"), false); }), ERROR_FILE_NOT_FOUND);
  EXPECT_TRUE(exists(temp / L"sub"));
  EXPECT_NE(errorOf([] { deleteFile(L"", false); }), 0);
}

TEST_F(FileChanges, NeverCutAPathAtANul) {
  const std::wstring path = temp.file(L"a.txt");
  EXPECT_EQ(errorOf([&] { deleteFile(path + std::wstring(L"\0b", 2), true); }), ERROR_INVALID_NAME);
  EXPECT_EQ(errorOf([&] { moveFile(path + L'\0', temp / L"b"); }), ERROR_INVALID_NAME);
  EXPECT_EQ(errorOf([&] { createFolder((temp / L"c") + L'\0'); }), ERROR_INVALID_NAME);
  EXPECT_EQ(errorOf([&] { truncateFile(path + L'\0'); }), ERROR_INVALID_NAME);
  EXPECT_TRUE(exists(path));
  EXPECT_FALSE(exists(temp / L"c"));
}

TEST_F(FileChanges, DeleteReadOnlyFilesOnlyIfForced) {
  const std::wstring path = temp.file(L"a.txt");
  makeReadOnly(path);
  EXPECT_EQ(errorOf([&] { deleteFile(path, false); }), ERROR_ACCESS_DENIED);
  EXPECT_TRUE(exists(path));
  deleteFile(path, true);
  EXPECT_FALSE(exists(path));
}

TEST_F(FileChanges, DeleteFilesByWildcards) {
  temp.file(L"a.txt");
  temp.file(L"b.txt");
  temp.file(L"c.doc");
  temp.folder(L"d.txt");
  deleteFile(temp / L"*.txt", false);
  EXPECT_FALSE(exists(temp / L"a.txt"));
  EXPECT_FALSE(exists(temp / L"b.txt"));
  EXPECT_TRUE(exists(temp / L"c.doc"));
  EXPECT_TRUE(exists(temp / L"d.txt"));
  EXPECT_EQ(errorOf([&] { deleteFile(temp / L"*.txt", false); }), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(errorOf([&] { deleteFile(temp / L"?.pdf", false); }), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(errorOf([&] { deleteFile(temp / L"none\\*", false); }), ERROR_PATH_NOT_FOUND);
  deleteFile(temp / L"?.doc", false);
  EXPECT_FALSE(exists(temp / L"c.doc"));
}

TEST_F(FileChanges, DeleteFolders) {
  temp.folder(L"a\\b\\c");
  temp.file(L"a\\x", "1");
  temp.file(L"a\\b\\c\\y", "1");
  EXPECT_EQ(errorOf([&] { deleteFolder(temp / L"a\\", false); }), ERROR_PATH_NOT_FOUND);
  EXPECT_EQ(errorOf([&] { deleteFolder(temp / L"a\\x", false); }), ERROR_PATH_NOT_FOUND);
  EXPECT_EQ(errorOf([&] { deleteFolder(temp / L"none", false); }), ERROR_PATH_NOT_FOUND);
  EXPECT_EQ(errorOf([&] { deleteFolder(temp / L"n*", false); }), ERROR_PATH_NOT_FOUND);
  EXPECT_EQ(errorOf([] { deleteFolder(L"C:", false); }), ERROR_PATH_NOT_FOUND);
  EXPECT_TRUE(exists(temp / L"a\\b\\c\\y"));
  deleteFolder(temp / L"a", false);
  EXPECT_FALSE(exists(temp / L"a"));
}

TEST_F(FileChanges, DeleteReadOnlyTreesOnlyIfForced) {
  temp.folder(L"a\\b");
  makeReadOnly(temp.file(L"a\\b\\c"));
  EXPECT_EQ(errorOf([&] { deleteFolder(temp / L"a", false); }), ERROR_ACCESS_DENIED);
  EXPECT_TRUE(exists(temp / L"a\\b\\c"));
  deleteFolder(temp / L"a", true);
  EXPECT_FALSE(exists(temp / L"a"));
}

TEST_F(FileChanges, DeleteFoldersByWildcards) {
  temp.folder(L"a1\\sub");
  temp.folder(L"a2");
  temp.folder(L"b");
  temp.file(L"a3");
  deleteFolder(temp / L"a*", false);
  EXPECT_FALSE(exists(temp / L"a1"));
  EXPECT_FALSE(exists(temp / L"a2"));
  EXPECT_TRUE(exists(temp / L"a3"));
  EXPECT_TRUE(exists(temp / L"b"));
}

TEST_F(FileChanges, DeleteLinksAndNotWhatTheyShow) {
  temp.folder(L"kept");
  temp.file(L"kept\\file");
  temp.folder(L"a");
  ASSERT_TRUE(test::linkFolder(temp / L"a\\link", temp / L"kept"));
  // Where Wine follows the link in RemoveDirectoryW, the folder that it shows is not empty.
  const int error = errorOf([&] { deleteFolder(temp / L"a", true); });
  EXPECT_TRUE(error == 0 ? !exists(temp / L"a") : error == ERROR_DIR_NOT_EMPTY) << error;
  EXPECT_TRUE(exists(temp / L"kept\\file"));
}

TEST_F(FileChanges, MoveFiles) {
  const std::wstring a = temp.file(L"a", "1");
  moveFile(a, temp / L"b");
  EXPECT_FALSE(exists(a));
  EXPECT_EQ(contentOf(temp / L"b"), "1");
  temp.file(L"c", "2");
  EXPECT_EQ(errorOf([&] { moveFile(temp / L"c", temp / L"b"); }), ERROR_ALREADY_EXISTS);
  EXPECT_EQ(errorOf([&] { moveFile(temp / L"c", temp.folder(L"sub")); }), ERROR_ALREADY_EXISTS);
  EXPECT_EQ(errorOf([&] { moveFile(temp / L"none", temp / L"d"); }), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(errorOf([&] { moveFile(temp / L"sub", temp / L"d"); }), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(errorOf([&] { moveFile(temp / L"c", temp / L"none\\c"); }), ERROR_PATH_NOT_FOUND);
  moveFile(temp / L"c", temp / L"sub\\");
  EXPECT_EQ(contentOf(temp / L"sub\\c"), "2");
  moveFile(temp / L"?", temp / L"sub");
  EXPECT_EQ(contentOf(temp / L"sub\\b"), "1");
}

TEST_F(FileChanges, MoveFolders) {
  temp.folder(L"a\\sub");
  temp.file(L"a\\sub\\x", "1");
  moveFolder(temp / L"a", temp / L"b");
  EXPECT_FALSE(exists(temp / L"a"));
  EXPECT_EQ(contentOf(temp / L"b\\sub\\x"), "1");
  temp.folder(L"c");
  EXPECT_EQ(errorOf([&] { moveFolder(temp / L"c", temp / L"b"); }), ERROR_ALREADY_EXISTS);
  EXPECT_EQ(errorOf([&] { moveFolder(temp / L"none", temp / L"d"); }), ERROR_PATH_NOT_FOUND);
  EXPECT_EQ(errorOf([&] { moveFolder(temp / L"b\\sub\\x", temp / L"d"); }), ERROR_PATH_NOT_FOUND);
  moveFolder(temp / L"c", temp / L"b\\");
  EXPECT_TRUE(exists(temp / L"b\\c"));
  temp.folder(L"d1");
  temp.folder(L"d2");
  moveFolder(temp / L"d*", temp / L"b");
  EXPECT_TRUE(exists(temp / L"b\\d1"));
  EXPECT_TRUE(exists(temp / L"b\\d2"));
}

TEST_F(FileChanges, CopyFolders) {
  temp.folder(L"a\\sub\\empty");
  temp.file(L"a\\x", "1");
  temp.file(L"a\\sub\\y", "2");
  copyFolder(temp / L"a", temp / L"b", false);
  EXPECT_EQ(contentOf(temp / L"a\\x"), "1");
  EXPECT_EQ(contentOf(temp / L"b\\x"), "1");
  EXPECT_EQ(contentOf(temp / L"b\\sub\\y"), "2");
  EXPECT_TRUE(exists(temp / L"b\\sub\\empty"));
  EXPECT_EQ(errorOf([&] { copyFolder(temp / L"none", temp / L"c", true); }), ERROR_PATH_NOT_FOUND);
  EXPECT_EQ(errorOf([&] { copyFolder(temp / L"a", temp / L"none\\c", true); }), ERROR_PATH_NOT_FOUND);
  EXPECT_EQ(errorOf([&] { copyFolder(temp / L"a", temp / L"a\\x", true); }), ERROR_ACCESS_DENIED);
  EXPECT_EQ(errorOf([&] { copyFolder(temp / L"a", temp.file(L"file"), true); }), ERROR_ALREADY_EXISTS);
  temp.folder(L"into");
  copyFolder(temp / L"a", temp / L"into\\", false);
  EXPECT_EQ(contentOf(temp / L"into\\a\\sub\\y"), "2");
  copyFolder(temp / L"a\\s*", temp / L"into", false);
  EXPECT_EQ(contentOf(temp / L"into\\sub\\y"), "2");
}

TEST_F(FileChanges, CopyOverFilesOnlyIfAllowed) {
  temp.folder(L"a");
  temp.folder(L"b");
  temp.file(L"a\\x", "new");
  temp.file(L"b\\x", "old");
  temp.file(L"b\\y", "kept");
  EXPECT_EQ(errorOf([&] { copyFolder(temp / L"a", temp / L"b", false); }), ERROR_FILE_EXISTS);
  EXPECT_EQ(contentOf(temp / L"b\\x"), "old");
  copyFolder(temp / L"a", temp / L"b", true);
  EXPECT_EQ(contentOf(temp / L"b\\x"), "new");
  EXPECT_EQ(contentOf(temp / L"b\\y"), "kept");
  makeReadOnly(temp / L"b\\x");
  EXPECT_EQ(errorOf([&] { copyFolder(temp / L"a", temp / L"b", true); }), writeError(temp / L"b\\x"));
}

TEST_F(FileChanges, NeverCopyAFolderIntoItself) {
  temp.folder(L"a\\sub");
  EXPECT_EQ(errorOf([&] { copyFolder(temp / L"a", temp / L"A\\sub\\copy", true); }), ERROR_ACCESS_DENIED);
  EXPECT_EQ(errorOf([&] { copyFolder(temp / L"a", temp / L"a", true); }), ERROR_ACCESS_DENIED);
  copyFolder(temp / L"a", temp / L"ab", true);
  EXPECT_TRUE(exists(temp / L"ab\\sub"));
}

TEST_F(FileChanges, NeverCopyAFolderIntoItselfInOtherLetterCase) {
  temp.folder(L"\u00c4");
  EXPECT_EQ(errorOf([&] { copyFolder(temp / L"\u00c4", temp / L"\u00e4\\copy", true); }),
            ERROR_ACCESS_DENIED);
  EXPECT_FALSE(exists(temp / L"\u00c4\\copy"));
}

TEST_F(FileChanges, NeverCopyARootIntoItself) {
  const MappedDrive drive(temp.folder(L"root"));
  temp.file(L"root\\x");
  EXPECT_EQ(errorOf([&] { copyFolder(drive.root() + L".", drive.root() + L"copy", true); }),
            ERROR_ACCESS_DENIED);
  EXPECT_FALSE(exists(temp / L"root\\copy"));
}

TEST_F(FileChanges, CopyAFolderIntoItselfOnceWhereNoNameTells) {
  temp.folder(L"a\\sub");
  temp.file(L"a\\x", "1");
  const MappedDrive drive(temp / L"a");
  copyFolder(temp / L"a", drive.root() + L"copy", true);
  EXPECT_EQ(contentOf(temp / L"a\\copy\\x"), "1");
  EXPECT_TRUE(exists(temp / L"a\\copy\\sub"));
  EXPECT_FALSE(exists(temp / L"a\\copy\\copy"));
}

TEST_F(FileChanges, CopyALinkToWhatHoldsTheDestinationOnce) {
  temp.folder(L"a");
  ASSERT_TRUE(test::linkFolder(temp / L"a\\link", temp.path()));
  temp.file(L"x", "1");
  copyFolder(temp / L"a", temp / L"b", true);
  EXPECT_EQ(contentOf(temp / L"b\\link\\x"), "1");
  EXPECT_TRUE(exists(temp / L"b\\link\\a\\link"));
  EXPECT_FALSE(exists(temp / L"b\\link\\b"));
}

TEST_F(FileChanges, DeleteNoRoot) {
  const MappedDrive drive(temp.folder(L"root"));
  temp.file(L"root\\x");
  EXPECT_EQ(errorOf([&] { deleteFolder(drive.root() + L".", true); }), ERROR_ACCESS_DENIED);
  EXPECT_TRUE(exists(temp / L"root\\x"));
}

TEST_F(FileChanges, CopyWhatALinkShowsButNoCircle) {
  temp.folder(L"a");
  temp.file(L"a\\x", "1");
  temp.folder(L"shown");
  temp.file(L"shown\\y", "2");
  ASSERT_TRUE(test::linkFolder(temp / L"a\\link", temp / L"shown"));
  ASSERT_TRUE(test::linkFolder(temp / L"a\\circle", temp / L"a"));
  copyFolder(temp / L"a", temp / L"b", false);
  EXPECT_EQ(contentOf(temp / L"b\\link\\y"), "2");
  EXPECT_EQ(contentOf(temp / L"b\\circle\\x"), "1");
  EXPECT_TRUE(exists(temp / L"b\\circle\\circle"));
  EXPECT_FALSE(exists(temp / L"b\\circle\\circle\\x"));
}

TEST_F(FileChanges, CreateFolders) {
  createFolder(temp / L"a");
  EXPECT_TRUE(folderExists((temp / L"a").c_str()));
  EXPECT_EQ(errorOf([&] { createFolder(temp / L"a"); }), ERROR_ALREADY_EXISTS);
  EXPECT_EQ(errorOf([&] { createFolder(temp.file(L"file")); }), ERROR_ALREADY_EXISTS);
  EXPECT_EQ(errorOf([&] { createFolder(temp / L"b\\c"); }), ERROR_PATH_NOT_FOUND);
  EXPECT_NE(errorOf([] { createFolder(L""); }), 0);
}

TEST_F(FileChanges, CreateAndEmptyFiles) {
  truncateFile(temp / L"a");
  EXPECT_EQ(contentOf(temp / L"a"), "");
  const std::wstring full = temp.file(L"b", "content");
  SetFileAttributesW(full.c_str(), FILE_ATTRIBUTE_HIDDEN);
  truncateFile(full);
  EXPECT_EQ(contentOf(full), "");
  makeReadOnly(full);
  EXPECT_EQ(errorOf([&] { truncateFile(full); }), writeError(full));
  EXPECT_EQ(errorOf([&] { truncateFile(temp / L"none\\a"); }), ERROR_PATH_NOT_FOUND);
  EXPECT_EQ(errorOf([&] { truncateFile(temp.path()); }), ERROR_ACCESS_DENIED);
}

}  // namespace
}  // namespace zeq::platform
