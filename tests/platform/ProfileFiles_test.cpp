// Ini files with names and texts as long as the system's functions can take, and longer.

#include "platform/ProfileFiles.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <array>

#include "platform/CodePage.h"
#include "support/TempFolder.h"

namespace zeq::platform {
namespace {

using test::contentOf;
using test::exists;
using test::TempFolder;

std::string currentFolder() {
  std::array<char, MAX_PATH> path{};
  GetCurrentDirectoryA(path.size(), path.data());
  return path.data();
}

class ProfileFiles : public testing::Test {
 protected:
  ~ProfileFiles() override { SetCurrentDirectoryA(before_.c_str()); }

  /// A path of that length in the test's folder: existing folders as far as the system makes them, then a
  /// file that is not there.
  [[nodiscard]] std::string pathOf(std::size_t length) const {
    std::string path = toAnsi(temp.path());
    while (length - path.size() > 60) {
      path += "\\" + std::string(40, 'f');
      CreateDirectoryA(path.c_str(), nullptr);
    }
    path += "\\";
    return path + std::string(length - path.size(), 'n');
  }

  /// What each function makes of the name of a file that is not there and cannot be made.
  static void expectRefused(const std::string& file) {
    std::array<char, 300> buffer;
    buffer.fill('#');
    EXPECT_FALSE(writeProfileString("S", "k", "v", file.c_str()));
    EXPECT_FALSE(writeProfileString("S", nullptr, nullptr, file.c_str()));
    EXPECT_FALSE(writeProfileSection("S", std::string("k=v\0", 4), file.c_str()));
    const std::size_t length = readProfileString("S", "k", "fallback", buffer, file.c_str());
    EXPECT_EQ(std::string_view(buffer.data(), length), "fallback");
    EXPECT_EQ(buffer[length], '\0');
    EXPECT_EQ(readProfileString("S", nullptr, "", buffer, file.c_str()), 0U);
    EXPECT_EQ(readProfileSection("S", buffer, file.c_str()), 0U);
    EXPECT_EQ(readProfileSectionNames(buffer, file.c_str()), 0U);
    EXPECT_EQ(profileValue(L"S", L"k", L"fallback", fromAnsi(file)), L"fallback");
    EXPECT_FALSE(normalFileExists(file));
  }

  static void expectServed(const std::string& file) {
    std::array<char, 300> buffer;
    EXPECT_TRUE(writeProfileString("S", "k", "v", file.c_str()));
    const std::size_t length = readProfileString("S", "k", "fallback", buffer, file.c_str());
    EXPECT_EQ(std::string_view(buffer.data(), length), "v");
    EXPECT_EQ(readProfileSection("S", buffer, file.c_str()), 4U);
    EXPECT_EQ(readProfileSectionNames(buffer, file.c_str()), 2U);
    EXPECT_TRUE(writeProfileSection("S", std::string("k=w\0", 4), file.c_str()));
    EXPECT_EQ(profileValue(L"S", L"k", L"fallback", fromAnsi(file)), L"w");
    EXPECT_TRUE(normalFileExists(file));
  }

  TempFolder temp;

 private:
  std::string before_ = currentFolder();
};

TEST_F(ProfileFiles, APathOf259CharactersServes) {
  const std::string file = pathOf(259);
  ASSERT_EQ(file.size(), 259U);
  expectServed(file);
}

TEST_F(ProfileFiles, LongerPathsAreFilesThatAreNotThere) {
  for (const std::size_t length : {260U, 261U, 1000U, 32'000U, 70'000U}) {
    SCOPED_TRACE(length);
    const std::string file = pathOf(length);
    ASSERT_EQ(file.size(), length);
    expectRefused(file);
  }
}

TEST_F(ProfileFiles, TheWholePathCountsWhereANameIsRelative) {
  const std::string file = pathOf(259);
  const std::string folder = file.substr(0, file.find_last_of('\\'));
  const std::string above = folder.substr(0, folder.find_last_of('\\'));
  ASSERT_TRUE(SetCurrentDirectoryA(above.c_str()));
  const std::string relative = file.substr(above.size() + 1);
  expectServed(relative);
  EXPECT_TRUE(exists(fromAnsi(file)));
  expectRefused(relative + "n");
  expectRefused(".\\" + std::string(1000, 'n'));
}

TEST_F(ProfileFiles, ValuesHaveAnyLength) {
  const std::string file = toAnsi(temp.file(L"x.ini"));
  for (const std::size_t length : {32'766U, 32'767U, 65'536U, 100'000U}) {
    SCOPED_TRACE(length);
    const std::string value = std::string(length - 1, 'v') + "\xE9";
    EXPECT_TRUE(writeProfileString("S", "k", value.c_str(), file.c_str()));
    EXPECT_TRUE(contentOf(fromAnsi(file)) == "[S]\r\nk=" + value + "\r\n");
    std::array<char, 300> buffer;
    EXPECT_EQ(readProfileString("S", "k", "", buffer, file.c_str()), 299U);
    EXPECT_EQ(readProfileString("S", "none", value.c_str(), buffer, file.c_str()), 299U);
    EXPECT_EQ(std::string_view(buffer.data()), value.substr(0, 299));
    EXPECT_TRUE(writeProfileSection("S", "k=" + value + std::string(1, '\0'), file.c_str()));
    EXPECT_TRUE(contentOf(fromAnsi(file)) == "[S]\r\nk=" + value + "\r\n");
  }
}

TEST_F(ProfileFiles, NamesOfMoreThan32766CharactersAreNeverFound) {
  const std::string file = toAnsi(temp.file(L"x.ini", "[S]\r\nk=v\r\n"));
  std::array<char, 300> buffer;
  for (const std::size_t length : {32'767U, 65'536U, 100'000U}) {
    SCOPED_TRACE(length);
    const std::string name(length, 'n');
    EXPECT_EQ(readProfileString(name.c_str(), "k", "fallback", buffer, file.c_str()), 8U);
    EXPECT_EQ(readProfileString("S", name.c_str(), "fallback", buffer, file.c_str()), 8U);
    EXPECT_EQ(std::string_view(buffer.data()), "fallback");
    EXPECT_EQ(readProfileString(name.c_str(), nullptr, "", buffer, file.c_str()), 0U);
    EXPECT_EQ(readProfileSection(name.c_str(), buffer, file.c_str()), 0U);
    EXPECT_FALSE(writeProfileString(name.c_str(), "k", "v", file.c_str()));
    EXPECT_FALSE(writeProfileString("S", name.c_str(), "v", file.c_str()));
    EXPECT_FALSE(writeProfileString(name.c_str(), nullptr, nullptr, file.c_str()));
    EXPECT_FALSE(writeProfileSection(name.c_str(), std::string("k=w\0", 4), file.c_str()));
    EXPECT_EQ(contentOf(fromAnsi(file)), "[S]\r\nk=v\r\n");
  }
  const std::string longest(32'766, 'n');
  EXPECT_TRUE(writeProfileString(longest.c_str(), longest.c_str(), "v", file.c_str()));
  EXPECT_EQ(readProfileString(longest.c_str(), longest.c_str(), "", buffer, file.c_str()), 1U);
}

TEST_F(ProfileFiles, ANameWithoutAFolderCountsFromTheWindowsFolder) {
  std::array<char, MAX_PATH> windows{};
  const std::size_t folder = GetWindowsDirectoryA(windows.data(), windows.size()) + 1;
  const std::string name(259 - folder, 'n');
  const std::string file = std::string(windows.data()) + "\\" + name;
  ASSERT_EQ(file.size(), 259U);
  EXPECT_TRUE(writeProfileString("S", "k", "v", name.c_str()));
  EXPECT_EQ(contentOf(fromAnsi(file)), "[S]\r\nk=v\r\n");
  DeleteFileA(file.c_str());
  for (const std::size_t longer : {1U, 2U, 8U, 300U, 32'000U}) {
    SCOPED_TRACE(longer);
    expectRefused(name + std::string(longer, 'n'));
  }
}

}  // namespace
}  // namespace zeq::platform
