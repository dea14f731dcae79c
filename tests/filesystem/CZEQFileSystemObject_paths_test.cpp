// Path texts, held against the scripting runtime's own operations at run time. What Wine's scripting runtime
// is known not to do as its model does is held against stated expectations, with the reason.

#include <array>
#include <functional>
#include <vector>

#include "filesystem/FileSystemTest.h"
#include "filesystem/ScriptingInterfaces.h"
#include "support/Printable.h"

namespace zeq::test {
namespace {

using filesystem::scripting::IFileSystem;
using namespace std::string_view_literals;

class PathsOfFileSystemObject : public FileSystemTest {
 protected:
  using RuntimeMember = HRESULT (STDMETHODCALLTYPE IFileSystem::*)(BSTR, BSTR*);

  PathsOfFileSystemObject() {
    automation::check(CoCreateInstance(filesystem::scripting::fileSystemObject, nullptr, CLSCTX_INPROC_SERVER,
                                       __uuidof(IFileSystem), runtime.outVoid()));
  }

  /// What the scripting runtime answers; "" where it fails.
  std::wstring runtimeText(RuntimeMember member, std::wstring_view path) {
    Bstr result;
    if (FAILED((runtime.get()->*member)(Bstr(path).get(), result.out()))) {
      return {};
    }
    return std::wstring(result.view());
  }
  std::wstring runtimeBuildPath(std::wstring_view path, std::wstring_view name) {
    Bstr result;
    automation::check(runtime->BuildPath(Bstr(path).get(), Bstr(name).get(), result.out()));
    return std::wstring(result.view());
  }

  ComPtr<IFileSystem> runtime;
};

/// How a path begins, with the drive that it names.
struct Start {
  std::wstring_view text;
  std::wstring_view drive;
  [[nodiscard]] bool isShare() const { return drive.size() > 2; }
};

constexpr std::array starts{
    Start{L"", L""},
    Start{L"C:", L"C:"},
    Start{L"C:\\", L"C:"},
    Start{L"c:/", L"c:"},
    Start{L"C:\\\\", L"C:"},
    Start{L"C:\\dir\\", L"C:"},
    Start{L"C:/dir/", L"C:"},
    Start{L"C:\\dir.d\\", L"C:"},
    Start{L"C:dir\\", L"C:"},
    Start{L"\\", L""},
    Start{L"/", L""},
    Start{L"..\\", L""},
    Start{L".\\", L""},
    Start{L"dir\\\\dir\\", L""},
    Start{L"\\\\server\\share\\", L"\\\\server\\share"},
    Start{L"//server/share/", L"//server/share"},
    Start{L"\\\\server\\share\\dir.d\\", L"\\\\server\\share"},
    Start{L"\\\\?\\C:\\", L""},
    Start{L"\\\\?\\C:\\dir\\", L""},
    Start{L"1:\\", L"1:"},
};

/// How a path goes on, with the extension of its last component.
struct End {
  std::wstring_view text;
  std::wstring_view extension;
};

constexpr std::array ends{
    End{L"", L""},
    End{L"file", L""},
    End{L"file.txt", L"txt"},
    End{L"file.tar.gz", L"gz"},
    End{L".hidden", L"hidden"},
    End{L"file.", L""},
    End{L".", L""},
    End{L"..", L""},
    End{L"...", L""},
    End{L" file .txt ", L"txt "},
    End{L"dir\\file.txt", L"txt"},
    End{L"dir.d/file", L""},
    End{L"dir\\", L""},
    End{L"dir.d\\", L"d"},
    End{L"dir.d//", L"d"},
    End{L"*.t?t", L"t?t"},
    End{L"a:b.c", L"c"},
    End{L"\x00E9\x4E2D.\x03A9", L"\x03A9"},
};

TEST_F(PathsOfFileSystemObject, AgreeWithTheScriptingRuntime) {
  static_assert(starts.size() * ends.size() >= 150);
  struct Compared {
    HRESULT (STDMETHODCALLTYPE Fso::*ours)(BSTR*, BSTR*);
    RuntimeMember theirs;
  };
  const std::array members{Compared{&Fso::FSO_GetFileName, &IFileSystem::GetFileName},
                           Compared{&Fso::FSO_GetBaseName, &IFileSystem::GetBaseName},
                           Compared{&Fso::FSO_GetParentFolderName, &IFileSystem::GetParentFolderName}};
  for (const Start& start : starts) {
    for (const End& end : ends) {
      const std::wstring path = std::wstring(start.text).append(end.text);
      for (const Compared& member : members) {
        EXPECT_EQ(textOf(member.ours, path), runtimeText(member.theirs, path)) << printable(path);
      }
    }
  }
}

TEST_F(PathsOfFileSystemObject, HaveTheExtensionOfTheirLastComponent) {
  for (const Start& start : starts) {
    for (const End& end : ends) {
      const std::wstring path = std::wstring(start.text).append(end.text);
      // With nothing after it, the start is itself what the path ends with.
      const std::wstring_view stated = end.text.empty() && path.ends_with(L".d\\") ? L"d"sv : end.extension;
      EXPECT_EQ(textOf(&Fso::FSO_GetExtensionName, path), stated) << printable(path);
      // Wine's scripting runtime takes the last dot of the whole path, whatever component it is in.
      const std::size_t dot = path.rfind(L'.');
      if (dot == std::wstring::npos || path.find_first_of(L"\\/", dot) == std::wstring::npos) {
        EXPECT_EQ(stated, runtimeText(&IFileSystem::GetExtensionName, path)) << printable(path);
      }
    }
  }
}

TEST_F(PathsOfFileSystemObject, NameTheirDriveOrShare) {
  for (const Start& start : starts) {
    for (const End& end : ends) {
      const std::wstring path = std::wstring(start.text).append(end.text);
      // A drive that only the path's end names: "a:b.c".
      const std::wstring_view stated =
          start.text.empty() && end.text.starts_with(L"a:") ? L"a:"sv : start.drive;
      EXPECT_EQ(textOf(&Fso::FSO_GetDriveName, path), stated) << printable(path);
      if (!start.isShare()) {  // Wine's scripting runtime names no shares.
        EXPECT_EQ(stated, runtimeText(&IFileSystem::GetDriveName, path)) << printable(path);
      }
    }
  }
  EXPECT_EQ(textOf(&Fso::FSO_GetDriveName, L"\\\\server\\share"), L"\\\\server\\share");
  for (const wchar_t* path :
       {L"\\\\server", L"\\\\server\\", L"\\\\", L"\\\\\\share", L"\\\\server\\\\share", L":", L"C"}) {
    EXPECT_EQ(textOf(&Fso::FSO_GetDriveName, path), L"") << printable(path);
  }
}

/// What a path stands for with the current folder C:\, however deep; the system's answer without a separator
/// at the end.
std::wstring fullPath(const std::wstring& path) {
  std::array<wchar_t, 1000> buffer{};
  GetFullPathNameW(path.empty() ? L"." : path.c_str(), static_cast<DWORD>(buffer.size()), buffer.data(),
                   nullptr);
  std::wstring result = buffer.data();
  while (result.size() > 2 && result.back() == L'\\' && result[result.size() - 2] != L':') {
    result.pop_back();
  }
  if (result.size() > 1 && result[1] == L':' && result[0] >= L'a' && result[0] <= L'z') {
    result[0] = static_cast<wchar_t>(result[0] - L'a' + L'A');
  }
  return result;
}

TEST_F(PathsOfFileSystemObject, HaveAnAbsoluteForm) {
  SetCurrentDirectoryW(L"C:\\");
  int compared = 0;
  for (const Start& start : starts) {
    for (const End& end : ends) {
      const std::wstring path = std::wstring(start.text).append(end.text);
      const std::wstring ours = textOf(&Fso::FSO_GetAbsolutePathName, path);
      EXPECT_EQ(ours, fullPath(path)) << printable(path);
      // Wine's scripting runtime cuts a path after the first folder that is not there, and takes the server
      // of a share for such a folder.
      const bool isDirectChild =
          ours.size() >= 2 && ours[1] == L':' && ours.find(L'\\', 3) == std::wstring::npos;
      if (isDirectChild && !path.empty()) {  // Wine's scripting runtime knows no path without text.
        EXPECT_EQ(ours, runtimeText(&IFileSystem::GetAbsolutePathName, path)) << printable(path);
        ++compared;
      }
    }
  }
  EXPECT_GE(compared, 100);
  SetCurrentDirectoryW(temp.path().c_str());
  EXPECT_EQ(textOf(&Fso::FSO_GetAbsolutePathName, L"a\\..\\b"), temp / L"b");
  EXPECT_EQ(textOf(&Fso::FSO_GetAbsolutePathName, L"*.*\\may97"), temp / L"*.*\\may97");
  SetCurrentDirectoryW(L"C:\\");
}

TEST_F(PathsOfFileSystemObject, AreBuiltWithExactlyOneSeparator) {
  const std::array paths{L"a"sv,
                         L"a\\"sv,
                         L"a\\\\"sv,
                         L"C:\\"sv,
                         L"C:"sv,
                         L"C:\\dir"sv,
                         L"C:\\dir\\"sv,
                         L"C:/dir"sv,
                         L"\\"sv,
                         L"\\\\server\\share"sv,
                         L"\\\\?\\C:\\dir"sv,
                         L".."sv,
                         L"a b "sv};
  const std::array names{L""sv,    L"b"sv,    L"\\b"sv,   L"\\"sv, L"\\\\b"sv,
                         L"b\\"sv, L"b\\c"sv, L"C:\\b"sv, L"."sv,  L" b.c"sv};
  for (const auto path : paths) {
    for (const auto name : names) {
      std::wstring theirs = runtimeBuildPath(path, name);
      if (!theirs.empty() && theirs.back() == L'\0') {
        theirs.pop_back();  // Wine's counts one character too many after a drive.
      }
      EXPECT_EQ(buildPath(path, name), theirs) << printable(path) << " + " << printable(name);
    }
  }
  // To Wine's a "/" is no separator here, though it is one to its other operations; and it reads the
  // character before an empty path, where the runtime gives the name alone for a path that is no text at all.
  EXPECT_EQ(buildPath(L"C:/dir/", L"b"), L"C:/dir/b");
  EXPECT_EQ(buildPath(L"C:/dir", L"/b"), L"C:/dir/b");
  EXPECT_EQ(buildPath(L"C:/dir/", L"/b"), L"C:/dir/b");
  EXPECT_EQ(buildPath(L"C:\\dir\\", L"/b"), L"C:\\dir/b");
  EXPECT_EQ(buildPath(L"", L"b"), L"b");
  EXPECT_EQ(buildPath(L"", L""), L"");
}

TEST_F(PathsOfFileSystemObject, KeepEveryCharacter) {
  // Texts are counted. Wine's scripting runtime stops at a NUL in some of its operations.
  const std::wstring path(L"C:\\a\0b\\c\0d.e\0f", 14);
  EXPECT_EQ(textOf(&Fso::FSO_GetFileName, path), std::wstring(L"c\0d.e\0f", 7));
  EXPECT_EQ(textOf(&Fso::FSO_GetBaseName, path), std::wstring(L"c\0d", 3));
  EXPECT_EQ(textOf(&Fso::FSO_GetExtensionName, path), std::wstring(L"e\0f", 3));
  EXPECT_EQ(textOf(&Fso::FSO_GetParentFolderName, path), std::wstring(L"C:\\a\0b", 6));
  EXPECT_EQ(textOf(&Fso::FSO_GetDriveName, path), L"C:");
  EXPECT_EQ(textOf(&Fso::FSO_GetAbsolutePathName, path), L"") << "no path of the system has a NUL";
  EXPECT_EQ(buildPath(path, std::wstring(L"\0", 1)), path + L'\\' + L'\0');
}

TEST_F(PathsOfFileSystemObject, MayBeVeryLong) {
  const std::wstring folder = L"C:\\" + std::wstring(31987, L'x');
  const std::wstring path = folder + L"\\name.txt\\";
  ASSERT_EQ(path.size(), 32000U);
  const std::wstring_view members[] = {
      textOf(&Fso::FSO_GetParentFolderName, path) == folder ? L"ok"sv : L"parent"sv,
      textOf(&Fso::FSO_GetAbsolutePathName, path) == folder + L"\\name.txt" ? L"ok"sv : L"full"sv};
  EXPECT_THAT(members, testing::Each(L"ok"sv));
  EXPECT_EQ(textOf(&Fso::FSO_GetFileName, path), L"name.txt");
  EXPECT_EQ(textOf(&Fso::FSO_GetBaseName, path), L"name");
  EXPECT_EQ(textOf(&Fso::FSO_GetExtensionName, path), L"txt");
  EXPECT_EQ(textOf(&Fso::FSO_GetDriveName, path), L"C:");
  EXPECT_EQ(buildPath(folder, L"name.txt\\"), path);
  EXPECT_EQ(textOf(&Fso::FSO_GetFileName, path), runtimeText(&IFileSystem::GetFileName, path));
  EXPECT_EQ(textOf(&Fso::FSO_GetParentFolderName, path),
            runtimeText(&IFileSystem::GetParentFolderName, path));
}

TEST_F(PathsOfFileSystemObject, AreSplit) {
  struct Split {
    std::wstring_view path, folder, base, extension;
    bool result;
  };
  const std::array table{
      Split{L"C:\\dir\\file.txt", L"C:\\dir", L"file", L"txt", true},
      Split{L"C:\\dir\\", L"C:\\", L"", L"", false},
      Split{L"C:\\dir.d/", L"C:\\", L"", L"", false},
      Split{L"C:\\dir\\   .txt", L"C:\\dir", L"   ", L"txt", false},
      Split{L"C:\\dir\\.txt", L"C:\\dir", L"", L"txt", false},
      Split{L"file", L"", L"file", L"", true},
      Split{L"C:\\", L"", L"", L"", false},
      Split{L"", L"", L"", L"", false},
      Split{L"\\\\server\\share\\a.b.c", L"\\\\server\\share", L"a.b", L"c", true},
  };
  for (const Split& each : table) {
    Bstr folder(L"old"), base(L"old"), extension(L"old");
    BSTR outputs[] = {folder.detach(), base.detach(), extension.detach()};
    VARIANT_BOOL result = 1;
    EXPECT_EQ(
        fso->FSO_SplitFullFilePath(Bstr(each.path).get(), &outputs[0], &outputs[1], &outputs[2], &result),
        S_OK);
    EXPECT_EQ(automation::text(outputs[0]), each.folder) << printable(each.path);
    EXPECT_EQ(automation::text(outputs[1]), each.base) << printable(each.path);
    EXPECT_EQ(automation::text(outputs[2]), each.extension) << printable(each.path);
    EXPECT_EQ(isTrue(result), each.result) << printable(each.path);
    for (BSTR output : outputs) {
      SysFreeString(output);
    }
  }
}

TEST_F(PathsOfFileSystemObject, AreSplitIntoTheirOwnVariable) {
  BSTR path = SysAllocString(L"C:\\dir\\file.txt");
  BSTR base = nullptr;
  BSTR extension = nullptr;
  VARIANT_BOOL result = VARIANT_FALSE;
  EXPECT_EQ(fso->FSO_SplitFullFilePath(path, &path, &base, &extension, &result), S_OK);
  EXPECT_TRUE(isTrue(result));
  EXPECT_EQ(automation::text(path), L"C:\\dir");
  EXPECT_EQ(automation::text(base), L"file");
  EXPECT_EQ(automation::text(extension), L"txt");
  EXPECT_EQ(fso->FSO_SplitFullFilePath(path, &path, nullptr, &extension, &result), S_OK);
  EXPECT_FALSE(isTrue(result));
  EXPECT_EQ(automation::text(path), L"") << "what was written before the failure stays written";
  EXPECT_EQ(automation::text(extension), L"txt");
  for (BSTR each : {path, base, extension}) {
    SysFreeString(each);
  }
}

TEST_F(PathsOfFileSystemObject, MayHaveSensibleBaseNames) {
  EXPECT_TRUE(test(&Fso::FSO_IsBaseFileNameSensible, L"report"));
  EXPECT_TRUE(test(&Fso::FSO_IsBaseFileNameSensible, L" report "));
  EXPECT_TRUE(test(&Fso::FSO_IsBaseFileNameSensible, L"CON"));
  for (const wchar_t* name :
       {L"report.txt", L"a/b", L"x?", L"   ", L"", L"a\"b", L"a\rb", L"a\nb", L"a=b", L"[a]"}) {
    EXPECT_FALSE(test(&Fso::FSO_IsBaseFileNameSensible, name));
  }
}

TEST_F(PathsOfFileSystemObject, MayBeNullTexts) {
  BSTR nothing = nullptr;
  Bstr result(L"old");
  EXPECT_EQ(fso->FSO_GetFileName(&nothing, result.out()), S_OK);
  EXPECT_EQ(result.view(), L"");
  EXPECT_EQ(fso->FSO_GetFileName(nullptr, result.out()), S_OK)
      << "no variable is a failure, and a failure is empty";
  EXPECT_EQ(result.view(), L"");
  EXPECT_EQ(fso->FSO_GetFileName(&nothing, nullptr), E_POINTER);
  VARIANT_BOOL exists = VARIANT_TRUE;
  EXPECT_EQ(fso->FSO_FileExists(&nothing, &exists), S_OK);
  EXPECT_EQ(exists, VARIANT_FALSE);
}

}  // namespace
}  // namespace zeq::test
