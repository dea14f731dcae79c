// Running one operation: its events in their order, its outcome, and what it does to the disk.

#include <gmock/gmock.h>

#include "fileops/ExecutionTest.h"
#include "support/Leaks.h"

namespace zeq::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Lines = std::vector<std::wstring>;

// Everything that both ways of running have in common.

class BothWaysTest : public ExecutionTest, public testing::WithParamInterface<bool> {};
INSTANTIATE_TEST_SUITE_P(Execution, BothWaysTest, testing::Bool(),
                         [](const auto& run) { return run.param ? "ForReal" : "Simulated"; });

TEST_P(BothWaysTest, OtherTypesDoNothing) {
  for (const int type : {0, 5, -1}) {
    set(static_cast<enumOpType>(type), sandbox.file(L"a", 1), sandbox.path(L"b"));
    EXPECT_FALSE(execute(GetParam()));
    EXPECT_EQ(state(), exstFinished_Error);
    EXPECT_THAT(events.lines(), IsEmpty());
    EXPECT_EQ(percent(), 100);
  }
}

TEST_P(BothWaysTest, CreatesOfAnythingElseFailSilently) {
  for (const int type : {3, 0, 7}) {
    set(otypCreate, sandbox.path(L"new"), {}, ovrtYes, static_cast<enumParamType>(type));
    EXPECT_FALSE(execute(GetParam()));
    EXPECT_EQ(state(), exstFinished_Error);
    EXPECT_THAT(events.lines(), IsEmpty());
    EXPECT_FALSE(exists(sandbox.path(L"new")));
  }
}

TEST_P(BothWaysTest, TheSamePathSucceedsAndTouchesNothing) {
  const std::wstring source = sandbox.file(L"Same.txt", 10);
  for (const auto type : {otypMove, otypCopy}) {
    for (const auto& other :
         {source, L"  " + source + L" ", sandbox.path(L"SAME.TXT"), sandbox.path(L"same.txt ")}) {
      set(type, source, other);
      expectSuccess(GetParam());
      EXPECT_THAT(events.lines(), ElementsAre(L"AboutToExecute()", L"Executed(True, False, Succeeded)"));
    }
    set(type, sandbox.path(L"missing"), sandbox.path(L"MISSING"));
    expectSuccess(GetParam());
    set(type, L"", L"  ");
    expectSuccess(GetParam());
  }
  EXPECT_EQ(contentOf(source), std::string(10, 'x'));
}

TEST_P(BothWaysTest, TransfersNeedTheirSource) {
  const std::wstring file = sandbox.file(L"file", 1);
  const std::wstring folder = sandbox.folder(L"folder");
  const std::wstring missing = sandbox.path(L"missing");
  const std::wstring target = sandbox.path(L"target");
  const wchar_t* const noFile = L"Source file does not exist";
  const wchar_t* const noFolder = L"Source folder does not exist";
  for (const auto type : {otypMove, otypCopy}) {
    for (const int any : {3, 0, 9}) {
      set(type, missing, target, ovrtYes, static_cast<enumParamType>(any));
      expectFailure(GetParam(), noFile);
    }
    set(type, missing, target, ovrtYes, ptypFile);
    expectFailure(GetParam(), noFile);
    set(type, folder, target, ovrtYes, ptypFile);
    expectFailure(GetParam(), noFile);
    set(type, missing, target, ovrtYes, ptypFolder);
    expectFailure(GetParam(), noFolder);
    set(type, file, target, ovrtYes, ptypFolder);
    expectFailure(GetParam(), noFolder);
    set(type, L"", target, ovrtYes);
    expectFailure(GetParam(), noFile);
    set(type, sandbox.path(L"fil*"), target, ovrtYes);
    expectFailure(GetParam(), noFile);
    EXPECT_THAT(events.lines(),
                ElementsAre(L"AboutToExecute()", L"Executed(False, False, Source file does not exist)"));
  }
  EXPECT_FALSE(exists(target));
}

TEST_P(BothWaysTest, ExistingDestinationsAreRefused) {
  const std::wstring file = sandbox.file(L"file", 1);
  const std::wstring folder = sandbox.folder(L"folder");
  const std::wstring otherFile = sandbox.file(L"other file", 2);
  const std::wstring otherFolder = sandbox.folder(L"other folder");
  for (const auto type : {otypMove, otypCopy}) {
    for (const auto pathType : {ptypAny, ptypFile}) {
      set(type, file, otherFile, ovrtNo, pathType);
      expectFailure(GetParam(), L"Destination already exists");
    }
    for (const auto pathType : {ptypAny, ptypFolder}) {
      set(type, folder, otherFolder, ovrtNo, pathType);
      expectFailure(GetParam(), L"Destination already exists");
    }
  }
  EXPECT_EQ(contentOf(otherFile).size(), 2U);
}

TEST_P(BothWaysTest, AskingWithoutAnswerCancels) {
  const std::wstring file = sandbox.file(L"file", 1);
  const std::wstring other = sandbox.file(L"other", 2);
  const std::wstring folder = sandbox.folder(L"folder");
  const std::wstring full = sandbox.folder(L"full");
  sandbox.file(L"full\\inside", 3);
  for (const auto type : {otypMove, otypCopy}) {
    set(type, file, other, ovrtAsk);
    expectCancelled(GetParam(), L"Overwrite cancelled");
    EXPECT_THAT(events.lines(),
                ElementsAre(L"AboutToExecute()",
                            L"BeforeOverwrite(" + file + L", " + other + L", by reference: False)",
                            L"Executed(False, True, Overwrite cancelled)"));
    set(type, folder, full, ovrtAsk);
    expectCancelled(GetParam(), L"Overwrite cancelled");
    EXPECT_EQ(events.lines().at(1), L"BeforeOverwrite(" + folder + L", " + full + L", by reference: False)");
  }
  set(otypCreate, other, {}, ovrtAsk, ptypFile);
  expectCancelled(GetParam(), L"Overwrite cancelled");
  EXPECT_EQ(events.lines().at(1), L"BeforeOverwrite(" + other + L", " + other + L", by reference: False)");
  operation->put_DeleteNonEmptyFolder(ovrtAsk);
  set(otypDelete, full);
  expectCancelled(GetParam(), L"Delete cancelled");
  EXPECT_THAT(events.lines(),
              ElementsAre(L"AboutToExecute()", L"BeforeFolderDelete(" + full + L", by reference: False)",
                          L"Executed(False, True, Delete cancelled)"));

  events.disconnect();
  for (const auto type : {otypCopy, otypDelete}) {
    set(type, type == otypDelete ? full : file, other, ovrtAsk);
    EXPECT_FALSE(execute(GetParam()));
    EXPECT_EQ(state(), exstFinished_Cancelled);
  }
  EXPECT_EQ(contentOf(other).size(), 2U);
  EXPECT_TRUE(exists(full + L"\\inside"));
}

TEST_P(BothWaysTest, DeletesTakeTheirGoalAsReached) {
  set(otypDelete, sandbox.path(L"missing"));
  expectSuccess(GetParam(), L"Source already deleted");
  EXPECT_EQ(events.lines().size(), 2U);
  set(otypDelete, L"", {}, ovrtNo, ptypFolder);
  expectSuccess(GetParam(), L"Source already deleted");
  const std::wstring file = sandbox.file(L"read only", 5);
  setReadOnly(file);
  set(otypDelete, file);
  expectSuccess(GetParam(), L"Skipped read only file");
  EXPECT_EQ(events.lines().size(), 2U);
  EXPECT_TRUE(exists(file));
}

TEST_P(BothWaysTest, FoldersThatAreNotEmptyAreRefused) {
  const std::wstring onlyFolders = sandbox.folder(L"only folders");
  sandbox.folder(L"only folders\\empty");
  const std::wstring onlyFiles = sandbox.folder(L"only files");
  sandbox.file(L"only files\\file", 0);
  for (const auto& folder : {onlyFolders, onlyFiles}) {
    for (const auto pathType : {ptypAny, ptypFile, ptypFolder}) {
      set(otypDelete, folder, {}, ovrtYes, pathType);
      expectFailure(GetParam(), L"Folder is not empty");
      EXPECT_TRUE(exists(folder));
    }
  }
}

TEST_P(BothWaysTest, CreatesRespectWhatIsThere) {
  const std::wstring file = sandbox.file(L"file", 8);
  const std::wstring folder = sandbox.folder(L"folder");
  set(otypCreate, file, {}, ovrtNo, ptypFile);
  expectFailure(GetParam(), L"File already exists");
  set(otypCreate, folder, {}, ovrtNo, ptypFolder);
  expectSuccess(GetParam(), L"Folder already exists");
  EXPECT_EQ(events.lines().size(), 2U);
  EXPECT_EQ(contentOf(file).size(), 8U);
}

TEST_P(BothWaysTest, StateAndProgressWhileItRuns) {
  const std::wstring file = sandbox.file(L"file", 8);
  Lines seen;
  const auto note = [&](const Recorder::Arguments&) {
    seen.push_back(std::to_wstring(state()) + (simulating() ? L" simulating " : L" real ") +
                   std::to_wstring(static_cast<int>(percent())));
  };
  for (const wchar_t* event :
       {L"AboutToExecute", L"BeforeOverwrite", L"DriveUsageChangeEstimate", L"Executed"}) {
    events.on(event, note);
  }
  set(otypCreate, file, {}, ovrtAsk, ptypFile);
  execute(GetParam());
  EXPECT_THAT(seen, testing::Each(GetParam() ? L"2 real 50" : L"2 simulating 50"));
  EXPECT_EQ(seen.size(), 3U);
  EXPECT_EQ(percent(), 100);
  EXPECT_EQ(state(), exstFinished_Cancelled);
  // Without a state of its own, the figure of the last run is what is left.
  operation->put_State(exstExecuting);
  EXPECT_EQ(percent(), 100);
}

TEST_P(BothWaysTest, RunsAgainFromTheStart) {
  const std::wstring file = sandbox.file(L"file", 8);
  set(otypCreate, file, {}, ovrtNo, ptypFile);
  expectFailure(GetParam(), L"File already exists");
  operation->put_Overwrite(ovrtYes);
  expectSuccess(GetParam());
  EXPECT_EQ(events.lines().front(), L"AboutToExecute()");
}

TEST_P(BothWaysTest, TheRunHonoursWhatAHandlerChanges) {
  const std::wstring file = sandbox.file(L"file", 8);
  // The type of a run is settled when it starts; paths and policies until they are needed.
  events.on(L"AboutToExecute", [&](const Recorder::Arguments&) {
    operation->put_OpType(otypDelete);
    operation->put_Parameter(1, Bstr(sandbox.path(L"other")).get());
  });
  set(otypCreate, file, {}, ovrtNo, ptypFile);
  expectSuccess(GetParam());
  EXPECT_EQ(exists(sandbox.path(L"other")), GetParam());
  EXPECT_TRUE(exists(file));
}

TEST_P(BothWaysTest, AHandlerMayReleaseOrRunTheOperation) {
  const std::wstring file = sandbox.file(L"file", 8);
  int depth = 0;
  events.on(L"BeforeOverwrite", [&](const Recorder::Arguments& arguments) {
    if (depth++ == 0) {
      VARIANT_BOOL result = VARIANT_FALSE;
      operation->Execute(GetParam() ? VARIANT_TRUE : VARIANT_FALSE, &result);
      operation.reset();
    }
    sayYes(arguments);
  });
  set(otypCreate, file, {}, ovrtAsk, ptypFile);
  _CFileOperation* raw = operation.get();
  VARIANT_BOOL result = VARIANT_FALSE;
  EXPECT_EQ(raw->Execute(GetParam() ? VARIANT_TRUE : VARIANT_FALSE, &result), S_OK);
  EXPECT_EQ(result, VARIANT_TRUE);
  EXPECT_EQ(depth, 2);
}

TEST_P(BothWaysTest, LeaksNothing) {
  const std::wstring file = sandbox.file(L"file", 8);
  set(otypCopy, file, sandbox.file(L"other", 1), ovrtAsk);
  expectNoLeak(10000, [&] { execute(GetParam()); });
}

// What only a real run does.

TEST_F(ExecutionTest, CopiesAFile) {
  const std::wstring source = sandbox.file(L"source.bin", 100000);
  set(otypCopy, source, sandbox.path(L"copy.bin"));
  expectSuccess(forReal);
  EXPECT_THAT(events.lines(), ElementsAre(L"AboutToExecute()", L"Executed(True, False, Succeeded)"));
  EXPECT_EQ(contentOf(sandbox.path(L"copy.bin")), contentOf(source));
}

TEST_F(ExecutionTest, MovesAFile) {
  const std::wstring source = sandbox.file(L"source.bin", 1000);
  set(otypMove, source, sandbox.path(L"moved.bin"), ovrtNo, ptypFile);
  expectSuccess(forReal);
  EXPECT_FALSE(exists(source));
  EXPECT_EQ(contentOf(sandbox.path(L"moved.bin")).size(), 1000U);
}

TEST_F(ExecutionTest, MovesAndCopiesBetweenDrives) {
  const Sandbox other(folderOnOtherDrive());
  ASSERT_NE(sandbox.root().substr(0, 2), other.root().substr(0, 2));
  set(otypCopy, sandbox.file(L"a", 300), other.path(L"a"));
  expectSuccess(forReal);
  EXPECT_EQ(contentOf(other.path(L"a")).size(), 300U);
  set(otypMove, sandbox.path(L"a"), other.path(L"b"));
  expectSuccess(forReal);
  EXPECT_FALSE(exists(sandbox.path(L"a")));
  EXPECT_EQ(contentOf(other.path(L"b")).size(), 300U);
  sandbox.file(L"folder\\deep\\c", 7);
  set(otypCopy, sandbox.path(L"folder"), other.path(L"folder"));
  expectSuccess(forReal);
  EXPECT_EQ(contentOf(other.path(L"folder\\deep\\c")).size(), 7U);
}

TEST_F(ExecutionTest, MoveReplacesAnExistingFileWithoutTheShellAsking) {
  const std::wstring source = sandbox.file(L"source", 10);
  const std::wstring destination = sandbox.file(L"destination", 99);
  set(otypMove, source, destination, ovrtYes);
  expectSuccess(forReal);
  EXPECT_EQ(contentOf(destination).size(), 10U);
  EXPECT_FALSE(exists(source));
}

TEST_F(ExecutionTest, AnyOtherOverwritePolicyGoesAhead) {
  set(otypMove, sandbox.file(L"source", 10), sandbox.file(L"destination", 99),
      static_cast<enumOverwriteType>(0));
  expectSuccess(forReal);
  EXPECT_EQ(contentOf(sandbox.path(L"destination")).size(), 10U);
}

TEST_F(ExecutionTest, MoveNeedsForceForAReadOnlyDestination) {
  const std::wstring source = sandbox.file(L"source", 10);
  const std::wstring destination = sandbox.file(L"destination", 99);
  setReadOnly(destination);
  set(otypMove, source, destination, ovrtYes);
  expectFailure(forReal, L"Permission denied");
  EXPECT_TRUE(exists(source));
  EXPECT_EQ(contentOf(destination).size(), 99U);
  operation->put_OverRideReadOnly(VARIANT_TRUE);
  expectSuccess(forReal);
  EXPECT_EQ(contentOf(destination).size(), 10U);
}

TEST_F(ExecutionTest, AHandlerAllowsTheOverwrite) {
  const std::wstring source = sandbox.file(L"source", 10);
  const std::wstring destination = sandbox.file(L"destination", 99);
  events.on(L"BeforeOverwrite", sayYes);
  set(otypMove, source, destination, ovrtAsk);
  expectSuccess(forReal);
  EXPECT_THAT(events.lines(),
              ElementsAre(L"AboutToExecute()",
                          L"BeforeOverwrite(" + source + L", " + destination + L", by reference: False)",
                          L"Executed(True, False, Succeeded)"));
  EXPECT_EQ(contentOf(destination).size(), 10U);
}

TEST_F(ExecutionTest, TheShellAsksBeforeACopyOverwrites) {
  const std::wstring source = sandbox.file(L"source", 10);
  const std::wstring destination = sandbox.file(L"destination", 99);
  set(otypCopy, source, destination, ovrtYes);
  {
    const ShellAnswer no(IDNO);
    expectCancelled(forReal, L"Overwrite cancelled");
    EXPECT_EQ(no.given(), 1);
  }
  EXPECT_EQ(contentOf(destination).size(), 99U);
  {
    const ShellAnswer cancel(IDCANCEL);
    expectCancelled(forReal, L"Overwrite cancelled");
    EXPECT_EQ(cancel.given(), 1);
  }
  EXPECT_EQ(contentOf(destination).size(), 99U);
  {
    const ShellAnswer yes(IDYES);
    expectSuccess(forReal);
    EXPECT_EQ(yes.given(), 1);
  }
  EXPECT_EQ(contentOf(destination).size(), 10U);
}

TEST_F(ExecutionTest, TheStatusWindowOwnsTheShellsDialogs) {
  const HWND window =
      CreateWindowW(L"STATIC", L"owner", WS_OVERLAPPED, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
  ASSERT_NE(window, nullptr);
  operation->put_StatusHWnd(static_cast<long>(reinterpret_cast<INT_PTR>(window)));
  set(otypCopy, sandbox.file(L"source", 10), sandbox.file(L"destination", 99), ovrtYes);
  const ShellAnswer yes(IDYES);
  expectSuccess(forReal);
  EXPECT_EQ(yes.owner(), window);
  DestroyWindow(window);
}

TEST_F(ExecutionTest, AFailedShellTransferSaysSo) {
  const std::wstring source = sandbox.file(L"source", 10);
  const std::wstring destination = sandbox.file(L"destination", 99);
  // The shell finds neither of the two files that were there when the run began.
  events.on(L"BeforeOverwrite", [&](const Recorder::Arguments& arguments) {
    DeleteFileW(source.c_str());
    DeleteFileW(destination.c_str());
    sayYes(arguments);
  });
  set(otypCopy, source, destination, ovrtAsk);
  expectFailure(forReal, L"Problem copying file");
}

TEST_F(ExecutionTest, NamesThatTheShellWouldMisreadAreNeverHandedToIt) {
  // In the ANSI code page of the tests a Thai letter has no place; replaced by "?" it would name both files.
  const std::wstring source = sandbox.file(L"\u0E01", 10);
  const std::wstring other = sandbox.file(L"1", 20);
  set(otypMove, source, sandbox.folder(L"target") + L"\\\u0E02");
  expectFailure(forReal, L"Problem moving file");
  EXPECT_TRUE(exists(source));
  EXPECT_TRUE(exists(other));
  // So would a path with an embedded NUL name several files.
  set(otypCopy, other + std::wstring(L"\0x", 2), sandbox.path(L"target\\y"));
  EXPECT_FALSE(execute(forReal));
  EXPECT_FALSE(exists(sandbox.path(L"target\\y")));
}

TEST_F(ExecutionTest, CopyMergesFolders) {
  sandbox.file(L"source\\new", 1);
  sandbox.file(L"source\\both", 2);
  sandbox.file(L"source\\deep\\deeper", 3);
  sandbox.file(L"destination\\both", 50);
  sandbox.file(L"destination\\old", 60);
  set(otypCopy, sandbox.path(L"source"), sandbox.path(L"destination"), ovrtYes);
  expectSuccess(forReal);
  EXPECT_EQ(contentOf(sandbox.path(L"destination\\new")).size(), 1U);
  EXPECT_EQ(contentOf(sandbox.path(L"destination\\both")).size(), 2U);
  EXPECT_EQ(contentOf(sandbox.path(L"destination\\deep\\deeper")).size(), 3U);
  EXPECT_EQ(contentOf(sandbox.path(L"destination\\old")).size(), 60U);
  EXPECT_TRUE(exists(sandbox.path(L"source\\both")));
}

TEST_F(ExecutionTest, MoveDeletesTheExistingFolderFirst) {
  sandbox.file(L"source\\new", 1);
  sandbox.file(L"destination\\old", 60);
  set(otypMove, sandbox.path(L"source"), sandbox.path(L"destination"), ovrtYes, ptypFolder);
  expectSuccess(forReal);
  EXPECT_FALSE(exists(sandbox.path(L"source")));
  EXPECT_TRUE(exists(sandbox.path(L"destination\\new")));
  EXPECT_FALSE(exists(sandbox.path(L"destination\\old")));
}

TEST_F(ExecutionTest, MoveOfAFolderNeedsForceForReadOnlyFilesInItsWay) {
  sandbox.file(L"source\\new", 1);
  setReadOnly(sandbox.file(L"destination\\old", 60));
  set(otypMove, sandbox.path(L"source"), sandbox.path(L"destination"), ovrtYes);
  expectFailure(forReal, L"Permission denied");
  EXPECT_TRUE(exists(sandbox.path(L"source\\new")));
  operation->put_OverRideReadOnly(VARIANT_TRUE);
  expectSuccess(forReal);
  EXPECT_TRUE(exists(sandbox.path(L"destination\\new")));
}

TEST_F(ExecutionTest, ADestinationOfTheOtherKindIsLeftToThePlatform) {
  sandbox.file(L"source\\new", 1);
  const std::wstring file = sandbox.file(L"file", 5);
  set(otypCopy, sandbox.path(L"source"), file, ovrtNo);
  EXPECT_FALSE(execute(forReal));
  EXPECT_EQ(state(), exstFinished_Error);
  EXPECT_NE(events.lines().back(), L"Executed(False, False, Destination already exists)");
  EXPECT_EQ(contentOf(file).size(), 5U);
}

TEST_F(ExecutionTest, DeletesFilesAndFolders) {
  const std::wstring file = sandbox.file(L"file", 5);
  set(otypDelete, file, {}, ovrtNo, ptypFolder);  // What the path names is found out.
  expectSuccess(forReal);
  EXPECT_FALSE(exists(file));
  const std::wstring empty = sandbox.folder(L"empty");
  set(otypDelete, empty, {}, ovrtNo, ptypFile);
  expectSuccess(forReal);
  EXPECT_FALSE(exists(empty));
  for (const int policy : {2, 0, 4}) {
    sandbox.file(L"full\\deep\\file", 5);
    operation->put_DeleteNonEmptyFolder(static_cast<enumOverwriteType>(policy));
    set(otypDelete, sandbox.path(L"full"));
    expectSuccess(forReal);
    EXPECT_FALSE(exists(sandbox.path(L"full")));
    EXPECT_EQ(events.lines().size(), 2U);
  }
}

TEST_F(ExecutionTest, AHandlerAllowsTheDelete) {
  sandbox.file(L"full\\file", 5);
  operation->put_DeleteNonEmptyFolder(ovrtAsk);
  events.on(L"BeforeFolderDelete", sayYes);
  set(otypDelete, sandbox.path(L"full"));
  expectSuccess(forReal);
  EXPECT_FALSE(exists(sandbox.path(L"full")));
  // An empty one is not asked about.
  set(otypDelete, sandbox.folder(L"empty"));
  expectSuccess(forReal);
  EXPECT_EQ(events.lines().size(), 2U);
}

TEST_F(ExecutionTest, DeletesReadOnlyThingsByForce) {
  const std::wstring file = sandbox.file(L"read only", 5);
  setReadOnly(file);
  setReadOnly(sandbox.file(L"folder\\inside", 5));
  operation->put_DeleteNonEmptyFolder(ovrtYes);
  set(otypDelete, sandbox.path(L"folder"));
  expectFailure(forReal, L"Permission denied");
  operation->put_OverRideReadOnly(VARIANT_TRUE);
  expectSuccess(forReal);
  EXPECT_FALSE(exists(sandbox.path(L"folder")));
  set(otypDelete, file);
  expectSuccess(forReal);
  EXPECT_FALSE(exists(file));
}

TEST_F(ExecutionTest, ALockedFileCannotBeDeleted) {
  const std::wstring file = sandbox.file(L"locked", 5);
  const HANDLE locked = CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  set(otypDelete, file);
  expectFailure(forReal, L"Permission denied");
  CloseHandle(locked);
  EXPECT_TRUE(exists(file));
}

TEST_F(ExecutionTest, CreatesAndEmptiesFiles) {
  const std::wstring file = sandbox.path(L"new");
  set(otypCreate, file, {}, ovrtNo, ptypFile);
  expectSuccess(forReal);
  EXPECT_TRUE(exists(file));
  EXPECT_EQ(contentOf(file).size(), 0U);
  for (const int policy : {2, 0}) {
    sandbox.file(L"new", 44);
    set(otypCreate, file, {}, static_cast<enumOverwriteType>(policy), ptypFile);
    expectSuccess(forReal);
    EXPECT_EQ(contentOf(file).size(), 0U);
  }
  sandbox.file(L"new", 44);
  events.on(L"BeforeOverwrite", sayYes);
  set(otypCreate, file, {}, ovrtAsk, ptypFile);
  expectSuccess(forReal);
  EXPECT_EQ(contentOf(file).size(), 0U);
}

TEST_F(ExecutionTest, PlatformErrorsBecomeTheDescription) {
  set(otypCreate, sandbox.path(L"missing folder\\new"), {}, ovrtNo, ptypFile);
  expectFailure(forReal, L"Path not found");
  EXPECT_EQ(events.lines().size(), 2U);
  const std::wstring file = sandbox.file(L"locked", 3);
  const HANDLE locked = CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  set(otypCreate, file, {}, ovrtYes, ptypFile);
  expectFailure(forReal, L"Permission denied");
  CloseHandle(locked);
  EXPECT_EQ(contentOf(file).size(), 3U);
  set(otypCreate, sandbox.folder(L"folder"), {}, ovrtNo, ptypFile);
  expectFailure(forReal, L"Permission denied");
}

TEST_F(ExecutionTest, CreatesFolderPaths) {
  set(otypCreate, sandbox.path(L"one\\two\\three"), {}, ovrtNo, ptypFolder);
  expectSuccess(forReal);
  EXPECT_TRUE(exists(sandbox.path(L"one\\two\\three")));
}

TEST_F(ExecutionTest, AFolderThatCannotBeCreatedIsNotNoticed) {
  const std::wstring path = sandbox.file(L"file", 3) + L"\\folder";
  set(otypCreate, path, {}, ovrtNo, ptypFolder);
  expectSuccess(forReal);
  EXPECT_FALSE(exists(path));
  // Nor does a file of that name count as a folder.
  set(otypCreate, sandbox.path(L"file"), {}, ovrtNo, ptypFolder);
  expectSuccess(forReal);
  EXPECT_EQ(contentOf(sandbox.path(L"file")).size(), 3U);
}

TEST_F(ExecutionTest, ProgressOfARunningMoveComparesTheFiles) {
  const std::wstring source = sandbox.file(L"source", 200);
  const std::wstring destination = sandbox.file(L"destination", 50);
  double before = -1;
  double after = -1;
  events.on(L"AboutToExecute", [&](const Recorder::Arguments&) { before = percent(); });
  events.on(L"Executed", [&](const Recorder::Arguments&) { after = percent(); });
  set(otypMove, source, destination, ovrtYes);
  expectSuccess(forReal);
  EXPECT_EQ(before, 25);
  EXPECT_EQ(after, 100);
}

// What only a simulation does.

TEST_F(ExecutionTest, SimulatedTransfersTellTheirEffect) {
  const Sandbox other(folderOnOtherDrive());
  const std::wstring source = sandbox.file(L"file", 10);
  const std::wstring target = other.path(L"file");
  set(otypCopy, source, target);
  expectSuccess(simulated);
  EXPECT_THAT(events.lines(), ElementsAre(L"AboutToExecute()", estimate(target, true, 10),
                                          L"Executed(True, False, Succeeded)"));
  set(otypMove, source, target);
  expectSuccess(simulated);
  EXPECT_THAT(events.lines(), ElementsAre(L"AboutToExecute()", estimate(target, true, 10),
                                          estimate(source, false, 10), L"Executed(True, False, Succeeded)"));
  EXPECT_TRUE(exists(source));
  EXPECT_FALSE(exists(target));
}

TEST_F(ExecutionTest, SimulatedFolderTransfersCountEverythingInside) {
  sandbox.file(L"source\\a", 10);
  sandbox.file(L"source\\deep\\b", 20);
  sandbox.file(L"destination\\old", 500);
  const std::wstring source = sandbox.path(L"source");
  const std::wstring target = sandbox.path(L"destination");
  set(otypMove, source, target, ovrtYes);
  expectSuccess(simulated);
  EXPECT_THAT(events.lines(), ElementsAre(L"AboutToExecute()", estimate(target, true, 30),
                                          estimate(source, false, 30), L"Executed(True, False, Succeeded)"));
  EXPECT_TRUE(exists(sandbox.path(L"destination\\old")));
  EXPECT_TRUE(exists(sandbox.path(L"source\\deep\\b")));
}

TEST_F(ExecutionTest, SimulatedOverwritesDoNotSubtractWhatIsThere) {
  const std::wstring source = sandbox.file(L"source", 10);
  const std::wstring destination = sandbox.file(L"destination", 99);
  events.on(L"BeforeOverwrite", sayYes);
  set(otypCopy, source, destination, ovrtAsk);
  expectSuccess(simulated);
  EXPECT_THAT(events.lines(),
              ElementsAre(L"AboutToExecute()",
                          L"BeforeOverwrite(" + source + L", " + destination + L", by reference: False)",
                          estimate(destination, true, 10), L"Executed(True, False, Succeeded)"));
  EXPECT_EQ(contentOf(destination).size(), 99U);
}

TEST_F(ExecutionTest, TheSizeIsThatAfterTheQuestion) {
  const std::wstring source = sandbox.file(L"source", 10);
  const std::wstring destination = sandbox.file(L"destination", 99);
  events.on(L"BeforeOverwrite", [&](const Recorder::Arguments& arguments) {
    sandbox.file(L"source", 77);
    sayYes(arguments);
  });
  set(otypCopy, source, destination, ovrtAsk);
  expectSuccess(simulated);
  EXPECT_EQ(events.lines().at(2), estimate(destination, true, 77));
}

TEST_F(ExecutionTest, SimulatedDeletesFreeWhatIsThere) {
  const std::wstring file = sandbox.file(L"folder\\file", 10);
  sandbox.file(L"folder\\deep\\b", 20);
  set(otypDelete, file);
  expectSuccess(simulated);
  EXPECT_THAT(events.lines(), ElementsAre(L"AboutToExecute()", estimate(file, false, 10),
                                          L"Executed(True, False, Succeeded)"));
  operation->put_DeleteNonEmptyFolder(ovrtYes);
  set(otypDelete, sandbox.path(L"folder"));
  expectSuccess(simulated);
  EXPECT_EQ(events.lines().at(1), estimate(file, false, 30));
  setReadOnly(file);
  operation->put_OverRideReadOnly(VARIANT_TRUE);
  set(otypDelete, file);
  expectSuccess(simulated);
  EXPECT_EQ(events.lines().at(1), estimate(file, false, 10));
  EXPECT_TRUE(exists(file));
}

TEST_F(ExecutionTest, SimulatedCreatesCountWhatIsThere) {
  const std::wstring path = sandbox.path(L"new");
  set(otypCreate, path, {}, ovrtYes, ptypFile);
  expectSuccess(simulated);
  EXPECT_THAT(events.lines(),
              ElementsAre(L"AboutToExecute()", estimate(path, true, 0), L"Executed(True, False, Succeeded)"));
  EXPECT_FALSE(exists(path));
  sandbox.file(L"new", 33);
  expectSuccess(simulated);
  EXPECT_EQ(events.lines().at(1), estimate(path, true, 33));
  EXPECT_EQ(contentOf(path).size(), 33U);
  const std::wstring folder = sandbox.path(L"folder\\path");
  set(otypCreate, folder, {}, ovrtNo, ptypFolder);
  expectSuccess(simulated);
  EXPECT_THAT(events.lines(), ElementsAre(L"AboutToExecute()", estimate(folder, true, 0),
                                          L"Executed(True, False, Succeeded)"));
  EXPECT_FALSE(exists(sandbox.path(L"folder")));
}

TEST_F(ExecutionTest, APathWithoutDriveIsEstimatedUnderNoName) {
  set(otypCreate, L"relative\\folder", {}, ovrtNo, ptypFolder);
  expectSuccess(simulated);
  EXPECT_EQ(events.lines().at(1), L"DriveUsageChangeEstimate(, True, 0)");
}

TEST_F(ExecutionTest, AnswersByName) {
  const Late late(operation);
  const std::wstring path = sandbox.path(L"by name");
  late.call(L"SetCreate", Variant(path));
  EXPECT_EQ(late.get(L"Execute", Variant(false)).get().boolVal, VARIANT_TRUE);
  EXPECT_FALSE(exists(path));
  EXPECT_EQ(late.get(L"Execute", Variant(short{1})).get().boolVal, VARIANT_TRUE);
  EXPECT_TRUE(exists(path));
  EXPECT_EQ(late.get(L"PercentComplete").get().dblVal, 100);
  EXPECT_EQ(late.get(L"Simulating").get().boolVal, VARIANT_FALSE);
}

}  // namespace
}  // namespace zeq::test
