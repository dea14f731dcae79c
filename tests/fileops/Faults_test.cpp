// What a run does when the system fails it: the disk is full, access is denied, a file is in use, something
// vanishes or appears between the check and the act, a path is too long, a drive goes away. Real faults where
// they can be made; the others are injected at the component's own calls.

#include <windows.h>
#include <shellapi.h>

#include <functional>

#include "fileops/ExecutionTest.h"
#include "support/ImportHook.h"
#include "support/TempFolder.h"

namespace zeq::test {
namespace {

using testing::AnyOf;
using testing::ElementsAre;

// Each fault stands in for one function: what happens before the call, and the error that it then ends with
// instead of being made (0: the call is made). Hooks are plain functions, so the fault stands outside.

struct Fault {
  std::function<void()> before = {};
  DWORD error = 0;
  int callsBefore = 0;  ///< How many calls succeed first.

  /// True if this call fails.
  bool strikes() {
    if (callsBefore-- > 0) {
      return false;
    }
    if (before) {
      before();
    }
    SetLastError(error);
    return error != 0;
  }
};

Fault fault;

BOOL WINAPI faultyCopy(const wchar_t* from, const wchar_t* to, BOOL mustBeNew) {
  return !fault.strikes() && CopyFileW(from, to, mustBeNew);
}
BOOL WINAPI faultyMove(const wchar_t* from, const wchar_t* to) {
  return !fault.strikes() && MoveFileW(from, to);
}
BOOL WINAPI faultyDelete(const wchar_t* path) {
  return !fault.strikes() && DeleteFileW(path);
}
BOOL WINAPI faultyRemove(const wchar_t* path) {
  return !fault.strikes() && RemoveDirectoryW(path);
}
BOOL WINAPI faultyCreateFolder(const wchar_t* path, SECURITY_ATTRIBUTES* security) {
  return !fault.strikes() && CreateDirectoryW(path, security);
}
HANDLE WINAPI faultyOpen(const wchar_t* path, DWORD access, DWORD sharing, SECURITY_ATTRIBUTES* security,
                         DWORD creation, DWORD flags, HANDLE model) {
  return fault.strikes() ? INVALID_HANDLE_VALUE
                         : CreateFileW(path, access, sharing, security, creation, flags, model);
}
HANDLE WINAPI faultySearch(const wchar_t* pattern, FINDEX_INFO_LEVELS level, void* entry,
                           FINDEX_SEARCH_OPS search, void* filter, DWORD flags) {
  return fault.strikes() ? INVALID_HANDLE_VALUE
                         : FindFirstFileExW(pattern, level, entry, search, filter, flags);
}
/// The shell reports a full disk with a number and no abort.
int WINAPI faultyShell(SHFILEOPSTRUCTA* operation) {
  return fault.strikes() ? static_cast<int>(fault.error) : SHFileOperationA(operation);
}

class FaultsTest : public ExecutionTest {
 protected:
  FaultsTest() { fault = {}; }

  /// The real shell copies nothing. Wine's reports most failures as the user's abort, and a move that failed
  /// as done, so that the shell's answers are given where the words matter.
  void expectNotCopied() {
    EXPECT_FALSE(execute(forReal));
    EXPECT_THAT(events.lines().back(), AnyOf(L"Executed(False, False, Problem copying file)",
                                             L"Executed(False, True, Overwrite cancelled)"));
  }
  void expectText(const std::wstring& name, const std::string& text) {
    EXPECT_EQ(contentOf(sandbox.path(name)), text);
  }
};

/// Nobody else can open the file while it lives.
class Lock {
 public:
  explicit Lock(const std::wstring& path)
      : file_(CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr)) {}
  ~Lock() { CloseHandle(file_); }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

 private:
  HANDLE file_;
};

// The disk is full.

TEST_F(FaultsTest, AFullDiskEndsTheCopyOfAFolder) {
  for (const wchar_t* name : {L"from\\a", L"from\\b", L"from\\c"}) {
    sandbox.file(name, 5);
  }
  const ImportHook hook(component(), "CopyFileW", &faultyCopy);
  fault = {.error = ERROR_DISK_FULL, .callsBefore = 2};
  set(otypCopy, sandbox.path(L"from"), sandbox.path(L"to"));
  expectFailure(forReal, L"Disk full");
  int whole = 0;
  for (const wchar_t* name : {L"a", L"b", L"c"}) {
    expectText(std::wstring(L"from\\") + name, "xxxxx");
    if (exists(sandbox.path(std::wstring(L"to\\") + name))) {
      expectText(std::wstring(L"to\\") + name, "xxxxx");
      ++whole;
    }
  }
  EXPECT_EQ(whole, 2) << "what was copied before stays";
  fault = {};  // Now there is room.
  operation->put_Overwrite(ovrtYes);
  expectSuccess(forReal);
  expectText(L"to\\c", "xxxxx");
}

TEST_F(FaultsTest, AFullDiskEndsTheCopyOfAFile) {
  const std::wstring source = sandbox.file(L"a", 5);
  const ImportHook hook(component(), "SHFileOperationA", &faultyShell);
  fault = {.error = ERROR_DISK_FULL};
  set(otypCopy, source, sandbox.path(L"b"));
  expectFailure(forReal, L"Problem copying file");
  set(otypMove, source, sandbox.path(L"b"));
  expectFailure(forReal, L"Problem moving file");
  expectText(L"a", "xxxxx");
}

TEST_F(FaultsTest, AFullDiskHasNoRoomForANewFile) {
  const ImportHook hook(component(), "CreateFileW", &faultyOpen);
  fault = {.error = ERROR_DISK_FULL};
  set(otypCreate, sandbox.path(L"new"), {}, ovrtNo, ptypFile);
  expectFailure(forReal, L"Disk full");
}

TEST_F(FaultsTest, AFullDiskEndsABatchAndLeavesTheRestUntouched) {
  const auto batch = create<CFileOperationBatch, _CFileOperationBatch>();
  Recorder batchEvents(batch.get(), __uuidof(__CFileOperationBatch), Recorder::batchEvents());
  for (const wchar_t* name : {L"1", L"2", L"3"}) {
    ComPtr<_CFileOperation> task;
    batch->AddCopy(Bstr(sandbox.file(name, 5)).get(), Bstr(sandbox.path(std::wstring(name) + L".copy")).get(),
                   ovrtNo, ptypAny, task.out());
  }
  const ImportHook hook(component(), "SHFileOperationA", &faultyShell);
  fault = {.error = ERROR_DISK_FULL, .callsBefore = 1};
  VARIANT_BOOL success = VARIANT_TRUE;
  ASSERT_EQ(batch->Execute(VARIANT_TRUE, &success), S_OK);
  EXPECT_EQ(success, VARIANT_FALSE);
  EXPECT_THAT(
      batchEvents.lines(),
      ElementsAre(L"Starting()", L"AboutToExecuteOperation(op)",
                  L"ExecutedOperation(op, True, False, Succeeded)", L"AboutToExecuteOperation(op)",
                  L"ExecutedOperation(op, False, False, Problem copying file)", L"Finished(False, False)"));
  expectText(L"1.copy", "xxxxx");
  EXPECT_FALSE(exists(sandbox.path(L"3.copy")));
}

// Access is denied.

TEST_F(FaultsTest, DeniedAccessIsTheDescription) {
  const std::wstring file = sandbox.file(L"folder\\file", 5);
  const std::wstring folder = sandbox.path(L"folder");
  operation->put_DeleteNonEmptyFolder(ovrtYes);
  const auto expectDenied = [&](const char* function, auto* replacement) {
    const ImportHook hook(component(), function, replacement);
    fault = {.error = ERROR_ACCESS_DENIED};
    expectFailure(forReal, L"Permission denied");
    expectText(L"folder\\file", "xxxxx");
  };
  set(otypDelete, file);
  expectDenied("DeleteFileW", &faultyDelete);
  set(otypDelete, folder);
  expectDenied("DeleteFileW", &faultyDelete);
  set(otypDelete, sandbox.folder(L"empty"));
  expectDenied("RemoveDirectoryW", &faultyRemove);
  set(otypMove, folder, sandbox.path(L"other"));
  expectDenied("MoveFileW", &faultyMove);
  set(otypCopy, folder, sandbox.path(L"other"), ovrtYes);
  expectDenied("CreateDirectoryW", &faultyCreateFolder);
  expectDenied("FindFirstFileExW", &faultySearch);
  expectDenied("CopyFileW", &faultyCopy);
  set(otypCreate, file, {}, ovrtYes, ptypFile);
  expectDenied("CreateFileW", &faultyOpen);
}

TEST_F(FaultsTest, AFolderThatMayNotBeReadHasNoSize) {
  sandbox.file(L"folder\\file", 5);
  const std::wstring folder = sandbox.path(L"folder");
  const ImportHook hook(component(), "FindFirstFileExW", &faultySearch);
  fault = {.error = ERROR_ACCESS_DENIED};
  set(otypCopy, folder, sandbox.path(L"other"));
  expectSuccess(simulated);
  EXPECT_EQ(events.lines().at(1), estimate(folder, true, 0));
  set(otypDelete, folder);  // Nor does it show anything inside.
  expectSuccess(simulated);
}

TEST_F(FaultsTest, AFolderThatMayNotBeMadeGoesUnnoticed) {
  const ImportHook hook(component(), "CreateDirectoryW", &faultyCreateFolder);
  fault = {.error = ERROR_ACCESS_DENIED};
  set(otypCreate, sandbox.path(L"a\\b"), {}, ovrtNo, ptypFolder);
  expectSuccess(forReal);
  EXPECT_FALSE(exists(sandbox.path(L"a")));
}

// A file is in use.

TEST_F(FaultsTest, AFileInUseIsNotTransferred) {
  const std::wstring source = sandbox.file(L"a", 5);
  const Lock lock(source);
  set(otypCopy, source, sandbox.path(L"b"));
  expectNotCopied();
  const ImportHook hook(component(), "SHFileOperationA", &faultyShell);
  fault = {.error = ERROR_SHARING_VIOLATION};
  expectFailure(forReal, L"Problem copying file");
  set(otypMove, source, sandbox.path(L"b"));
  expectFailure(forReal, L"Problem moving file");
  EXPECT_TRUE(exists(source));
  EXPECT_FALSE(exists(sandbox.path(L"b")));
}

TEST_F(FaultsTest, AFileInUseEndsTheCopyOfItsFolder) {
  sandbox.file(L"from\\free", 5);
  const std::wstring used = sandbox.file(L"from\\used", 5);
  set(otypCopy, sandbox.path(L"from"), sandbox.path(L"to"));
  {
    const Lock lock(used);
    expectFailure(forReal, L"Permission denied");
  }
  operation->put_Overwrite(ovrtYes);
  expectSuccess(forReal);
  expectText(L"to\\free", "xxxxx");
  expectText(L"to\\used", "xxxxx");
}

TEST_F(FaultsTest, AFileInUseIsNotReplaced) {
  const std::wstring source = sandbox.file(L"a", 5);
  const std::wstring destination = sandbox.file(L"b", 7);
  set(otypMove, source, destination, ovrtYes);
  {
    const Lock lock(destination);
    expectFailure(forReal, L"Permission denied");
  }
  expectText(L"a", "xxxxx");
  expectText(L"b", "xxxxxxx");
}

TEST_F(FaultsTest, AFileInUseKeepsItsFolder) {
  const std::wstring used = sandbox.file(L"folder\\used", 5);
  sandbox.file(L"from\\file", 5);
  operation->put_DeleteNonEmptyFolder(ovrtYes);
  {
    const Lock lock(used);
    set(otypDelete, sandbox.path(L"folder"));
    expectFailure(forReal, L"Permission denied");
    set(otypMove, sandbox.path(L"from"), sandbox.path(L"folder"), ovrtYes);
    expectFailure(forReal, L"Permission denied");
  }
  expectText(L"folder\\used", "xxxxx");
  expectText(L"from\\file", "xxxxx");
}

// Something vanishes between the check and the act.

TEST_F(FaultsTest, ASourceMayVanishBeforeTheAct) {
  sandbox.file(L"to\\file", 7);
  sandbox.file(L"other", 7);
  for (const auto type : {otypCopy, otypMove}) {
    const std::wstring file = sandbox.file(L"file", 5);
    {
      const ImportHook hook(component(), "SHFileOperationA", &faultyShell);
      fault.before = [&] { DeleteFileW(file.c_str()); };
      if (type == otypMove) {
        fault.error = ERROR_FILE_NOT_FOUND;
      }
      set(type, file, sandbox.path(L"new"), ovrtNo);
      expectFailure(forReal, type == otypCopy ? L"Problem copying file" : L"Problem moving file");
    }
    EXPECT_FALSE(exists(sandbox.path(L"new")));
    sandbox.folder(L"from");
    events.on(L"BeforeOverwrite", [&](const Recorder::Arguments& arguments) {
      RemoveDirectoryW(sandbox.path(L"from").c_str());
      sayYes(arguments);
    });
    set(type, sandbox.path(L"from"), sandbox.path(L"to"), ovrtAsk);
    expectFailure(forReal, L"Path not found");
  }
  // Nothing that is done before is undone: the move had deleted what was in its way.
  EXPECT_FALSE(exists(sandbox.path(L"to")));
  expectText(L"other", "xxxxxxx");
}

TEST_F(FaultsTest, ASourceThatVanishesHasNoSize) {
  const std::wstring file = sandbox.file(L"file", 5);
  const std::wstring other = sandbox.file(L"other", 7);
  events.on(L"BeforeOverwrite", [&](const Recorder::Arguments& arguments) {
    DeleteFileW(file.c_str());
    sayYes(arguments);
  });
  set(otypCopy, file, other, ovrtAsk);
  expectSuccess(simulated);
  EXPECT_EQ(events.lines().at(2), estimate(other, true, 0));
}

TEST_F(FaultsTest, WhatIsToBeDeletedMayVanish) {
  const std::wstring file = sandbox.file(L"file", 5);
  {
    const ImportHook hook(component(), "DeleteFileW", &faultyDelete);
    fault.before = [&] { DeleteFileW(file.c_str()); };
    set(otypDelete, file);
    expectFailure(forReal, L"File not found");
  }
  sandbox.file(L"folder\\file", 5);
  operation->put_DeleteNonEmptyFolder(ovrtAsk);
  events.on(L"BeforeFolderDelete", [&](const Recorder::Arguments& arguments) {
    DeleteFileW(sandbox.path(L"folder\\file").c_str());
    RemoveDirectoryW(sandbox.path(L"folder").c_str());
    sayYes(arguments);
  });
  set(otypDelete, sandbox.path(L"folder"));
  expectFailure(forReal, L"Path not found");
}

// Something appears between the check and the act.

TEST_F(FaultsTest, TheShellAsksAboutADestinationThatAppears) {
  const std::wstring source = sandbox.file(L"a", 5);
  const ImportHook hook(component(), "SHFileOperationA", &faultyShell);
  fault.before = [&] { sandbox.file(L"b", 7); };
  set(otypCopy, source, sandbox.path(L"b"));
  const ShellAnswer no(IDNO);
  expectCancelled(forReal, L"Overwrite cancelled");
  EXPECT_EQ(no.given(), 1);
  expectText(L"b", "xxxxxxx");
}

TEST_F(FaultsTest, AFolderIsNotMovedOntoOneThatAppears) {
  sandbox.file(L"from\\file", 5);
  const ImportHook hook(component(), "MoveFileW", &faultyMove);
  fault.before = [&] { sandbox.file(L"to\\other", 7); };
  set(otypMove, sandbox.path(L"from"), sandbox.path(L"to"));
  EXPECT_FALSE(execute(forReal));
  EXPECT_EQ(state(), exstFinished_Error);
  expectText(L"from\\file", "xxxxx");
  expectText(L"to\\other", "xxxxxxx");
}

TEST_F(FaultsTest, AFolderIsCopiedIntoOneThatAppears) {
  sandbox.file(L"from\\file", 5);
  const ImportHook hook(component(), "CreateDirectoryW", &faultyCreateFolder);
  fault.before = [&] { sandbox.file(L"to\\other", 7); };
  set(otypCopy, sandbox.path(L"from"), sandbox.path(L"to"));
  expectSuccess(forReal);
  expectText(L"to\\file", "xxxxx");
  expectText(L"to\\other", "xxxxxxx");
}

TEST_F(FaultsTest, SomebodyElseMayMakeTheFolderFirst) {
  const ImportHook hook(component(), "CreateDirectoryW", &faultyCreateFolder);
  fault.before = [&] { sandbox.folder(L"a\\b"); };
  set(otypCreate, sandbox.path(L"a\\b"), {}, ovrtNo, ptypFolder);
  expectSuccess(forReal);
  EXPECT_TRUE(exists(sandbox.path(L"a\\b")));
}

TEST_F(FaultsTest, AFileThatFillsItsFolderKeepsIt) {
  sandbox.file(L"folder\\file", 5);
  const ImportHook hook(component(), "RemoveDirectoryW", &faultyRemove);
  fault.before = [&] { sandbox.file(L"folder\\new", 7); };
  operation->put_DeleteNonEmptyFolder(ovrtYes);
  set(otypDelete, sandbox.path(L"folder"));
  expectFailure(forReal, L"Path/File access error");
  expectText(L"folder\\new", "xxxxxxx");
}

// A path is too long.

TEST_F(FaultsTest, TheShellTakesNoLongPath) {
  const std::wstring source = sandbox.file(L"a", 5);
  const std::wstring folder = sandbox.folder(std::wstring(100, L'f') + L"\\" + std::wstring(100, L'g'));
  for (const std::size_t length : {259U, 260U, 300U, 600U, 32000U}) {
    const std::wstring target = folder + L"\\" + std::wstring(length - folder.size() - 1, L'x');
    set(otypCopy, source, target);
    if (length == 259) {
      expectSuccess(forReal);
      continue;
    }
    expectFailure(forReal, L"Problem copying file");
    set(otypMove, source, target);
    expectFailure(forReal, L"Problem moving file");
    set(otypCopy, source, target);
    expectSuccess(simulated);
  }
  const std::wstring name = folder.substr(sandbox.root().size() + 1) + L"\\" + std::wstring(100, L'l');
  const std::wstring deep = sandbox.file(name, 5);
  ASSERT_GE(deep.size(), std::size_t{MAX_PATH});
  set(otypCopy, deep, sandbox.path(L"b"));
  expectFailure(forReal, L"Problem copying file");
  EXPECT_FALSE(exists(sandbox.path(L"b")));
  expectText(L"a", "xxxxx");
  set(otypDelete, deep);  // Whatever the shell is not needed for takes any path.
  expectSuccess(forReal);
  EXPECT_FALSE(exists(deep));
}

TEST_F(FaultsTest, ANameMayBeTooLong) {
  const std::wstring name(300, L'n');
  set(otypCreate, sandbox.path(name), {}, ovrtNo, ptypFile);
  EXPECT_FALSE(execute(forReal));
  EXPECT_EQ(state(), exstFinished_Error);
  set(otypCreate, sandbox.path(name + L"\\b"), {}, ovrtNo, ptypFolder);
  expectSuccess(forReal);
  sandbox.file(L"from\\file", 5);
  for (const auto type : {otypCopy, otypMove}) {
    set(type, sandbox.path(L"from"), sandbox.path(name));
    EXPECT_FALSE(execute(forReal));
    EXPECT_EQ(state(), exstFinished_Error);
  }
  expectText(L"from\\file", "xxxxx");
  EXPECT_FALSE(exists(sandbox.path(name)));
}

// A drive goes away.

TEST_F(FaultsTest, ADriveMayGoAwayBeforeTheAct) {
  const std::wstring here = sandbox.file(L"file", 5);
  const std::wstring there = std::wstring(MappedDrive::name()) + L"\\file";
  const Sandbox onDrive;
  onDrive.file(L"file", 7);
  const auto removeBefore = [&](const wchar_t* event, const MappedDrive& drive) {
    events.on(event, [&](const Recorder::Arguments& arguments) {
      drive.remove();
      if (!arguments.empty()) {
        sayYes(arguments);
      }
    });
  };
  {
    const MappedDrive drive(onDrive.root());
    removeBefore(L"BeforeOverwrite", drive);
    set(otypCopy, here, there, ovrtAsk);
    expectNotCopied();
  }
  {
    const MappedDrive drive(onDrive.root());
    removeBefore(L"AboutToExecute", drive);
    set(otypCopy, there, sandbox.path(L"new"));
    expectFailure(forReal, L"Source file does not exist");
    set(otypDelete, there);
    expectSuccess(forReal, L"Source already deleted");
    set(otypCreate, there, {}, ovrtNo, ptypFile);
    EXPECT_FALSE(execute(forReal));
    EXPECT_THAT(events.lines().back(),
                AnyOf(L"Executed(False, False, Path not found)", L"Executed(False, False, File not found)"));
  }
  EXPECT_EQ(contentOf(onDrive.path(L"file")), "xxxxxxx");
  expectText(L"file", "xxxxx");
}

TEST_F(FaultsTest, ADriveThatIsGoneIsMonitoredFromNothing) {
  const auto batch = create<CFileOperationBatch, _CFileOperationBatch>();
  Recorder batchEvents(batch.get(), __uuidof(__CFileOperationBatch), Recorder::batchEvents());
  const Sandbox onDrive;
  const MappedDrive drive(onDrive.root());
  batchEvents.on(L"AboutToExecuteOperation", [&](const Recorder::Arguments&) { drive.remove(); });
  ComPtr<_CFileOperation> task;
  batch->AddCopy(Bstr(sandbox.file(L"file", 5)).get(),
                 Bstr(std::wstring(MappedDrive::name()) + L"\\file").get(), ovrtNo, ptypAny, task.out());
  VARIANT_BOOL success = VARIANT_FALSE;
  ASSERT_EQ(batch->Execute(VARIANT_FALSE, &success), S_OK);
  EXPECT_EQ(success, VARIANT_TRUE);
  ComPtr<_Collection> monitors;
  batch->get_DriveMonitors(monitors.out());
  Variant item;
  ASSERT_EQ(monitors->get_Item(Variant(std::wstring_view(MappedDrive::name())).get(), item.out()), S_OK);
  const Late monitor(item.get().pdispVal);
  EXPECT_EQ(monitor.get(L"Capacity").get().dblVal, 0);
  EXPECT_EQ(monitor.get(L"SpaceUsed").get().dblVal, 5);
  EXPECT_EQ(monitor.get(L"TooFull").get().boolVal, VARIANT_TRUE);
}

}  // namespace
}  // namespace zeq::test
