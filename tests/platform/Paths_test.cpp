#include "platform/Paths.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace zeq::platform {
namespace {

using namespace std::string_view_literals;

struct Parts {
  std::wstring_view path, file, base, extension, parent, drive;
};

TEST(Paths, AreTakenApart) {
  const std::array table{
      Parts{L"", L"", L"", L"", L"", L""},
      Parts{L"report.txt", L"report.txt", L"report", L"txt", L"", L""},
      Parts{L"C:\\a\\report.txt", L"report.txt", L"report", L"txt", L"C:\\a", L"C:"},
      Parts{L"C:\\a\\report", L"report", L"report", L"", L"C:\\a", L"C:"},
      Parts{L"C:\\a.b\\report", L"report", L"report", L"", L"C:\\a.b", L"C:"},
      Parts{L"C:\\dir\\", L"dir", L"dir", L"", L"C:\\", L"C:"},
      Parts{L"C:\\dir.d\\\\", L"dir.d", L"dir", L"d", L"C:\\", L"C:"},
      Parts{L"C:\\", L"", L"", L"", L"", L"C:"},
      Parts{L"C:", L"", L"", L"", L"", L"C:"},
      Parts{L"C:a.txt", L"C:a.txt", L"C:a", L"txt", L"", L"C:"},
      Parts{L"C:.txt", L"C:.txt", L"", L"txt", L"", L"C:"},
      Parts{L"C:a\\b", L"b", L"b", L"", L"C:a", L"C:"},
      Parts{L"C:/a/b.c", L"b.c", L"b", L"c", L"C:/a", L"C:"},
      Parts{L"C:\\\\a", L"a", L"a", L"", L"C:\\", L"C:"},
      Parts{L"\\a", L"a", L"a", L"", L"", L""},
      Parts{L"a\\\\b", L"b", L"b", L"", L"a", L""},
      Parts{L".hidden", L".hidden", L"", L"hidden", L"", L""},
      Parts{L"a.", L"a.", L"a", L"", L"", L""},
      Parts{L"a.b.c", L"a.b.c", L"a.b", L"c", L"", L""},
      Parts{L"..", L"..", L".", L"", L"", L""},
      Parts{L"\\\\server", L"server", L"server", L"", L"", L""},
      Parts{L"\\\\server\\", L"server", L"server", L"", L"", L""},
      Parts{L"\\\\server\\share", L"share", L"share", L"", L"\\\\server", L"\\\\server\\share"},
      Parts{L"\\\\server\\share\\a.b", L"a.b", L"a", L"b", L"\\\\server\\share", L"\\\\server\\share"},
      Parts{L"//server/share/a", L"a", L"a", L"", L"//server/share", L"//server/share"},
      Parts{L"\\\\server\\\\share", L"share", L"share", L"", L"\\\\server", L""},
      Parts{L"\\\\?\\C:\\a\\b.c", L"b.c", L"b", L"c", L"\\\\?\\C:\\a", L""},
      Parts{L"\\\\.\\pipe\\a", L"a", L"a", L"", L"\\\\.\\pipe", L""},
      Parts{L"a\0b\\c\0.d\0"sv, L"c\0.d\0"sv, L"c\0"sv, L"d\0"sv, L"a\0b"sv, L""},
  };
  for (const Parts& each : table) {
    const std::string path(each.path.begin(), each.path.end());
    EXPECT_EQ(fileName(each.path), each.file) << path;
    EXPECT_EQ(baseName(each.path), each.base) << path;
    EXPECT_EQ(extensionName(each.path), each.extension) << path;
    EXPECT_EQ(parentFolderName(each.path), each.parent) << path;
    EXPECT_EQ(driveName(each.path), each.drive) << path;
  }
}

TEST(Paths, AreJoinedWithOneSeparator) {
  struct Joined {
    std::wstring_view path, name, result;
  };
  const std::array table{
      Joined{L"C:\\a", L"b", L"C:\\a\\b"},
      Joined{L"C:\\a\\", L"b", L"C:\\a\\b"},
      Joined{L"C:\\a", L"\\b", L"C:\\a\\b"},
      Joined{L"C:\\a\\", L"\\b", L"C:\\a\\b"},
      Joined{L"C:/a/", L"b", L"C:/a/b"},
      Joined{L"C:/a", L"/b", L"C:/a/b"},
      Joined{L"C:", L"b", L"C:b"},
      Joined{L"C:", L"\\b", L"C:\\b"},
      Joined{L"C:\\", L"b", L"C:\\b"},
      Joined{L"", L"b", L"b"},
      Joined{L"", L"", L""},
      Joined{L"a", L"", L"a\\"},
      Joined{L"a\\", L"", L"a\\"},
      Joined{L"a\\\\", L"b", L"a\\\\b"},
      Joined{L"a\0b"sv, L"c\0"sv, L"a\0b\\c\0"sv},
  };
  for (const Joined& each : table) {
    EXPECT_EQ(buildPath(each.path, each.name), each.result)
        << std::string(each.path.begin(), each.path.end()) << " + "
        << std::string(each.name.begin(), each.name.end());
  }
}

TEST(Paths, MayBeAsLongAsTextsAre) {
  const std::wstring folder = L"C:\\" + std::wstring(32000, L'x');
  const std::wstring path = buildPath(folder, L"name.ext");
  EXPECT_EQ(path.size(), folder.size() + 9);
  EXPECT_EQ(parentFolderName(path), folder);
  EXPECT_EQ(baseName(path), L"name");
}

}  // namespace
}  // namespace zeq::platform
