#include <windows.h>
#include <gmock/gmock.h>
#include <shellapi.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>

#include "support/Component.h"
#include "support/ImportHook.h"
#include "support/Leaks.h"
#include "support/TempFolder.h"

namespace zeq::test {
namespace {

class CAttachmentTest : public testing::Test {
 protected:
  using Getter = HRESULT (STDMETHODCALLTYPE _CAttachment::*)(BSTR*);

  std::wstring get(Getter getter) {
    Bstr text;
    EXPECT_EQ((attachment.get()->*getter)(text.out()), S_OK);
    return std::wstring(text.view());
  }
  void attach(const std::wstring& path) { EXPECT_EQ(attachment->Create(Bstr(path).get()), S_OK); }
  bool execute() {
    VARIANT_BOOL result = VARIANT_FALSE;
    EXPECT_EQ(attachment->Execute(&result), S_OK);
    return result == VARIANT_TRUE;
  }

  ComPtr<_CAttachment> attachment = create<CAttachment, _CAttachment>();
};

// ---- what it says of a file

TEST_F(CAttachmentTest, StartsEmpty) {
  for (const Getter getter :
       {&_CAttachment::get_FullPath, &_CAttachment::get_Location, &_CAttachment::get_Name,
        &_CAttachment::get_Extension, &_CAttachment::get_Association, &_CAttachment::get_IconKey}) {
    EXPECT_EQ(get(getter), L"");
  }
  EXPECT_FALSE(execute());
}

TEST_F(CAttachmentTest, CreateSplitsThePath) {
  attachment->put_IconKey(Bstr(L"old").get());
  attach(L"C:\\docs\\plan.txt");
  EXPECT_EQ(get(&_CAttachment::get_FullPath), L"C:\\docs\\plan.txt");
  EXPECT_EQ(get(&_CAttachment::get_Location), L"C:\\docs");
  EXPECT_EQ(get(&_CAttachment::get_Name), L"plan");
  EXPECT_EQ(get(&_CAttachment::get_Extension), L"txt");
  EXPECT_EQ(get(&_CAttachment::get_IconKey), L"");
}

TEST_F(CAttachmentTest, PropertiesAreIndependent) {
  attach(L"C:\\docs\\plan.txt");
  const Late late(attachment);
  for (const wchar_t* name : {L"Location", L"Name", L"Extension", L"Association", L"IconKey"}) {
    EXPECT_EQ(late.put(name, Variant(L"other")).code, S_OK);
    EXPECT_EQ(textIn(late.get(name)), L"other") << name;
    EXPECT_EQ(textIn(late.get(L"FullPath")), L"C:\\docs\\plan.txt");
  }
  EXPECT_EQ(late.put(L"FullPath", Variant(L"D:\\a.b")).code, S_OK);
  EXPECT_EQ(textIn(late.get(L"FullPath")), L"D:\\a.b");
  EXPECT_EQ(textIn(late.get(L"Name")), L"other");
  EXPECT_EQ(late.put(L"Name", Variant(L"OTHER")).code, S_OK);
  EXPECT_EQ(textIn(late.get(L"Name")), L"OTHER");  // The comparison is exact.
}

TEST_F(CAttachmentTest, AssociationIsWhatTheShellSays) {
  for (const char* path : {"C:\\docs\\plan.txt", "C:\\windows", "nowhere.zzz"}) {
    SHFILEINFOA info{};
    SHGetFileInfoA(path, 0, &info, sizeof info, 0x2600);
    attach(std::wstring(path, path + std::char_traits<char>::length(path)));
    const std::string expected(info.szTypeName);
    EXPECT_EQ(get(&_CAttachment::get_Association), std::wstring(expected.begin(), expected.end()));
  }
}

// The shell of this system may refuse to describe a type, so that its answers are given here.
struct TypeQuestion {
  std::string path;
  DWORD attributes = 1;
  UINT size = 0;
  UINT flags = 0;
};
std::optional<TypeQuestion> typeQuestion;
std::string typeAnswer;

DWORD_PTR WINAPI answerType(const char* path, DWORD attributes, SHFILEINFOA* info, UINT size, UINT flags) {
  typeQuestion = TypeQuestion{path, attributes, size, flags};
  std::copy_n(typeAnswer.data(), std::min(typeAnswer.size(), sizeof info->szTypeName), info->szTypeName);
  return 0;  // Not looked at.
}

TEST_F(CAttachmentTest, AsksTheShellForTheType) {
  const ImportHook hook(component(), "SHGetFileInfoA", &answerType);
  typeAnswer = "Pl\xe4ne";
  attach(L"C:\\docs\\pl\u00e4ne.txt");
  ASSERT_TRUE(typeQuestion);
  EXPECT_EQ(typeQuestion->path, "C:\\docs\\pl\xe4ne.txt");
  EXPECT_EQ(typeQuestion->attributes, 0U);
  EXPECT_EQ(typeQuestion->size, sizeof(SHFILEINFOA));
#ifndef _WIN64
  EXPECT_EQ(typeQuestion->size, 352U);
#endif
  EXPECT_EQ(typeQuestion->flags, 0x2600U);
  EXPECT_EQ(get(&_CAttachment::get_Association), L"Pl\u00e4ne");

  typeAnswer = std::string("Text\0Document", 13);
  attach(L"a.txt");
  EXPECT_EQ(get(&_CAttachment::get_Association), L"Text");
  typeAnswer = std::string(100, 'x');  // The type name has 80 characters and here no end.
  attach(L"a.txt");
  EXPECT_EQ(get(&_CAttachment::get_Association), std::wstring(80, L'x'));
  typeAnswer.clear();
  attach(L"a.txt");
  EXPECT_EQ(get(&_CAttachment::get_Association), L"");
}

TEST_F(CAttachmentTest, PathsMayBeOfAnyLength) {
  const std::wstring folder = L"C:\\" + std::wstring(31990, L'x');
  attach(folder + L"\\a.b");
  EXPECT_EQ(get(&_CAttachment::get_Location), folder);
  EXPECT_EQ(get(&_CAttachment::get_Name), L"a");
  EXPECT_EQ(get(&_CAttachment::get_Extension), L"b");
  EXPECT_FALSE(execute());
}

// ---- opening it: the arguments

struct Launch {
  HWND owner;
  std::string verb, file, parameters, folder;
  int show;
};
std::optional<Launch> launch;
std::intptr_t launchAnswer = 33;
std::wstring startedCommand;
STARTUPINFOW startedWith;

HINSTANCE WINAPI answerLaunch(HWND owner, const char* verb, const char* file, const char* parameters,
                              const char* folder, int show) {
  launch = Launch{owner, verb, file, parameters, folder, show};
  return reinterpret_cast<HINSTANCE>(launchAnswer);
}

BOOL WINAPI answerStart(const wchar_t* program, wchar_t* command, SECURITY_ATTRIBUTES*, SECURITY_ATTRIBUTES*,
                        BOOL, DWORD, void*, const wchar_t*, STARTUPINFOW* startup, PROCESS_INFORMATION*) {
  std::array<wchar_t, MAX_PATH> system{};
  GetSystemDirectoryW(system.data(), MAX_PATH);
  EXPECT_EQ(program, std::wstring(system.data()) + L"\\rundll32.exe") << "no folder is searched for it";
  startedCommand = command;
  startedWith = *startup;
  SetLastError(ERROR_FILE_NOT_FOUND);
  return FALSE;  // Goes unnoticed.
}

class CAttachmentLaunchTest : public CAttachmentTest {
 protected:
  CAttachmentLaunchTest() {
    launch.reset();
    launchAnswer = 33;
    startedCommand.clear();
  }

  TempFolder folder;
  ImportHook launches{component(), "ShellExecuteA", &answerLaunch};
  ImportHook starts{component(), "CreateProcessW", &answerStart};
};

TEST_F(CAttachmentLaunchTest, MissingFileStartsNothing) {
  attach(folder.path() + L"\\missing.txt");
  EXPECT_FALSE(execute());
  attach(folder.path());  // A folder is no file.
  EXPECT_FALSE(execute());
  EXPECT_FALSE(launch);
  EXPECT_EQ(startedCommand, L"");
}

TEST_F(CAttachmentLaunchTest, OpensThroughTheShell) {
  const std::wstring path = folder.file(L"pl\u00e4ne.txt", "x");
  attach(path);
  attachment->put_Name(Bstr(L"other").get());
  attachment->put_Extension(Bstr(L"doc").get());
  EXPECT_TRUE(execute());
  ASSERT_TRUE(launch);
  EXPECT_EQ(launch->owner, GetDesktopWindow());
  EXPECT_EQ(launch->verb, "Open");
  EXPECT_TRUE(launch->file.ends_with("\\pl\xe4ne.txt"));
  EXPECT_EQ(launch->file.size(), path.size());
  EXPECT_EQ(launch->parameters, "0");
  EXPECT_EQ(launch->folder, "0");
  EXPECT_EQ(launch->show, 1);
  EXPECT_EQ(startedCommand, L"");
}

TEST_F(CAttachmentLaunchTest, FailuresGoUnnoticed) {
  attach(folder.file(L"plan.txt", "x"));
  for (const std::intptr_t answer : {0, 2, 5, 27, 30, 32}) {
    launchAnswer = answer;
    EXPECT_TRUE(execute());
    EXPECT_EQ(startedCommand, L"");
  }
}

TEST_F(CAttachmentLaunchTest, AsksForAProgramWhereThereIsNone) {
  const std::wstring path = folder.file(L"my plan.zqnone", "x");
  attach(path);
  launchAnswer = 31;
  EXPECT_TRUE(execute());
  EXPECT_EQ(startedCommand, L"rundll32.exe shell32.dll,OpenAs_RunDLL " + path);
  EXPECT_NE(startedWith.dwFlags & STARTF_USESHOWWINDOW, 0U);
  EXPECT_EQ(startedWith.wShowWindow, SW_SHOWNORMAL);
}

// ---- opening it for real

/// The record that the recorder leaves: its command line and its current folder.
struct Record {
  std::wstring commandLine, folder;
};

std::wstring programFolder() {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
  return path.substr(0, path.rfind(L'\\'));
}

std::optional<Record> waitForRecord(const std::wstring& program) {
  const std::wstring path = program + L".txt";
  for (int waited = 0; GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES; ++waited) {
    if (waited == 600) {
      return std::nullopt;
    }
    Sleep(50);
  }
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  std::wstring text(4096, L'\0');
  DWORD bytes = 0;
  ReadFile(file, text.data(), static_cast<DWORD>(text.size() * sizeof(wchar_t)), &bytes, nullptr);
  CloseHandle(file);
  DeleteFileW(path.c_str());
  text.resize(bytes / sizeof(wchar_t));
  const std::size_t end = text.find(L'\n');
  return Record{text.substr(0, end), text.substr(end + 1, text.size() - end - 2)};
}

/// While it lives, files with an extension are opened by a command line. Wine's shell knows no types of the
/// current user alone.
class FileType {
 public:
  FileType(std::wstring extension, const std::wstring& command) : extension_(std::move(extension)) {
    set(extension_, L"ZEQUtility2Test.Attachment");
    set(L"ZEQUtility2Test.Attachment\\shell\\open\\command", command);
  }
  ~FileType() {
    RegDeleteTreeW(HKEY_CLASSES_ROOT, extension_.c_str());
    RegDeleteTreeW(HKEY_CLASSES_ROOT, L"ZEQUtility2Test.Attachment");
  }
  FileType(const FileType&) = delete;
  FileType& operator=(const FileType&) = delete;

 private:
  static void set(const std::wstring& key, const std::wstring& value) {
    EXPECT_EQ(RegSetKeyValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, REG_SZ, value.c_str(),
                              static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t))),
              ERROR_SUCCESS);
  }

  std::wstring extension_;
};

class CurrentFolder {
 public:
  explicit CurrentFolder(const std::wstring& folder) {
    before_.resize(GetCurrentDirectoryW(MAX_PATH, before_.data()));
    SetCurrentDirectoryW(folder.c_str());
  }
  ~CurrentFolder() { SetCurrentDirectoryW(before_.c_str()); }
  CurrentFolder(const CurrentFolder&) = delete;
  CurrentFolder& operator=(const CurrentFolder&) = delete;

 private:
  std::wstring before_ = std::wstring(MAX_PATH, L'\0');
};

TEST_F(CAttachmentTest, StartsTheProgramForTheType) {
  const std::wstring recorder = programFolder() + L"\\recorder.exe";
  const FileType type(L".zqattach", L"\"" + recorder + L"\" \"%1\" parameters %*");
  const TempFolder folder;
  const std::wstring path = folder.file(L"my plan.zqattach", "x");
  // The folder to start in is named as "0", too.
  const std::wstring start = folder.folder(L"0");
  const CurrentFolder current(folder.path());
  attach(path);
  EXPECT_TRUE(execute());
  const auto record = waitForRecord(recorder);
  ASSERT_TRUE(record);
  EXPECT_EQ(record->commandLine, L"\"" + recorder + L"\" \"" + path + L"\" parameters 0");
  EXPECT_EQ(record->folder, start);
}

TEST_F(CAttachmentTest, TheShellKnowsNoProgramForAnUnknownType) {
  const TempFolder folder;
  const std::wstring path = folder.file(L"my plan.zqnone", "x");
  const ImportHook hook(component(), "CreateProcessW", &answerStart);
  startedCommand.clear();
  attach(path);
  EXPECT_TRUE(execute());
  EXPECT_EQ(startedCommand, L"rundll32.exe shell32.dll,OpenAs_RunDLL " + path);
}

TEST_F(CAttachmentTest, NoMemberLeaks) {
  const Late late(attachment);
  const Variant path(L"C:\\docs\\missing.txt");
  expectNoLeak(10000, [&] { late.call(L"Create", path); });
  for (const wchar_t* property :
       {L"FullPath", L"Location", L"Name", L"Extension", L"Association", L"IconKey"}) {
    expectNoLeak(10000, [&] { late.get(property); });
    expectNoLeak(10000, [&] { late.put(property, path); });
  }
  expectNoLeak(10000, [&] { late.call(L"Execute"); });
  expectNoLeak(1000, [&] { create<CAttachment, _CAttachment>()->Create(path.get().bstrVal); });
}

}  // namespace
}  // namespace zeq::test
