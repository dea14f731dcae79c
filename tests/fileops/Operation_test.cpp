#include "fileops/Operation.h"

#include <gtest/gtest.h>

namespace zeq::fileops {
namespace {

Operation operationOf(OperationType type, PathType pathType = PathType::any) {
  Operation operation;
  operation.type = type;
  operation.pathType = pathType;
  operation.paths = {L"C:\\a.txt", L"D:\\b.txt"};
  return operation;
}

TEST(StateText, HasWordsAndMemberNames) {
  struct Case {
    int state;
    const wchar_t* verbose;
    const wchar_t* terse;
  };
  for (const auto& [state, verbose, terse] : {
           Case{1, L"Not started", L"exstNotStarted"},
           Case{2, L"In progress", L"exstExecuting"},
           Case{3, L"Completed sucessfully", L"exstFinished_OK"},
           Case{4, L"Cancelled", L"exstFinished_Cancelled"},
           Case{5, L"Completed unsucessfully", L"exstFinished_Error"},
           Case{0, L"### State Unknown ###", L"######"},
           Case{6, L"### State Unknown ###", L"######"},
           Case{-1, L"### State Unknown ###", L"######"},
           Case{INT32_MAX, L"### State Unknown ###", L"######"},
       }) {
    EXPECT_EQ(stateText(static_cast<ExecutionState>(state), true), verbose) << state;
    EXPECT_EQ(stateText(static_cast<ExecutionState>(state), false), terse) << state;
  }
}

TEST(Describe, SaysWhenNothingIsSetUp) {
  EXPECT_EQ(describe({}, true, L"\r\n", L"\t"), L"### Operation Uninitialised ###");
  EXPECT_EQ(describe({}, false, {}, {}), L"### Operation Uninitialised ###");
}

TEST(Describe, IsOneLineWithoutLineBreaks) {
  const auto move = operationOf(OperationType::move);
  EXPECT_EQ(describe(move, true, {}, {}),
            L"Moving C:\\a.txt to D:\\b.txt [Don't overwrite] CurrentState: Not started");
  EXPECT_EQ(describe(move, false, {}, {}), L"Moving C:\\a.txt to D:\\b.txt ");
}

TEST(Describe, BreaksAndIndentsLines) {
  EXPECT_EQ(
      describe(operationOf(OperationType::move), true, L"\r\n", L"\t"),
      L"Moving \r\n\tC:\\a.txt\r\n to \r\n\tD:\\b.txt \r\n[Don't overwrite] \r\nCurrentState: Not started");
  EXPECT_EQ(describe(operationOf(OperationType::remove), true, L"|", L"--"),
            L"Deleting |--C:\\a.txt |[Don't delete non-empty folder] |CurrentState: Not started");
  EXPECT_EQ(describe(operationOf(OperationType::create), false, L"|", L"--"), L"Creating |--C:\\a.txt ");
}

TEST(Describe, NamesTypesAndWhatThePathsAre) {
  EXPECT_EQ(describe(operationOf(OperationType::move, PathType::file), false, {}, {}),
            L"Moving file C:\\a.txt to D:\\b.txt ");
  EXPECT_EQ(describe(operationOf(OperationType::copy, PathType::folder), false, {}, {}),
            L"Copying folder C:\\a.txt to D:\\b.txt ");
  EXPECT_EQ(describe(operationOf(OperationType::remove, PathType::any), false, {}, {}),
            L"Deleting C:\\a.txt ");
  EXPECT_EQ(describe(operationOf(OperationType::create, PathType::folder), false, {}, {}),
            L"Creating folder C:\\a.txt ");
  EXPECT_EQ(describe(operationOf(OperationType::create, static_cast<PathType>(9)), false, {}, {}),
            L"Creating C:\\a.txt ");
  EXPECT_EQ(describe(operationOf(static_cast<OperationType>(7), PathType::file), true, L"|", L"-"),
            L"file ||CurrentState: Not started");
}

TEST(Describe, TagsTheOverwritePolicy) {
  for (const auto& [policy, tag] :
       {std::pair{1, L"[Don't overwrite] "}, std::pair{2, L"[Overwrite] "},
        std::pair{3, L"[Ask before overwriting] "}, std::pair{0, L""}, std::pair{4, L""}}) {
    for (const auto type : {OperationType::move, OperationType::copy, OperationType::create}) {
      auto operation = operationOf(type);
      operation.overwrite = static_cast<Policy>(policy);
      const std::wstring text = describe(operation, true, L"|", {});
      EXPECT_TRUE(text.ends_with(std::wstring(L" |") + tag + L"|CurrentState: Not started")) << policy;
    }
  }
}

TEST(Describe, TagsTheFolderPolicyOfDeletes) {
  for (const auto& [policy, tag] :
       {std::pair{1, L"[Don't delete non-empty folder] "}, std::pair{2, L"[Delete non-empty folder] "},
        std::pair{3, L"[Ask before deleting non-empty folder] "}, std::pair{0, L""}, std::pair{4, L""}}) {
    for (const auto pathType : {PathType::folder, PathType::any, static_cast<PathType>(0)}) {
      auto operation = operationOf(OperationType::remove, pathType);
      operation.deleteNonEmptyFolder = static_cast<Policy>(policy);
      const std::wstring text = describe(operation, true, L"|", {});
      EXPECT_TRUE(text.ends_with(std::wstring(L"C:\\a.txt |") + tag + L"|CurrentState: Not started"))
          << policy;
    }
  }
  EXPECT_EQ(describe(operationOf(OperationType::remove, PathType::file), true, L"|", {}),
            L"Deleting file |C:\\a.txt |CurrentState: Not started");
}

TEST(Describe, EndsWithTheStateInWords) {
  auto operation = operationOf(OperationType::copy);
  operation.state = ExecutionState::finishedOk;
  EXPECT_TRUE(describe(operation, true, {}, {}).ends_with(L"] CurrentState: Completed sucessfully"));
}

TEST(Describe, KeepsEmbeddedNuls) {
  auto operation = operationOf(OperationType::remove);
  operation.paths[0] = std::wstring(L"a\0b", 3);
  EXPECT_EQ(describe(operation, false, {}, {}), std::wstring(L"Deleting a\0b ", 13));
}

TEST(DescribeBatch, HeadsTheList) {
  EXPECT_EQ(describeBatch(0, ExecutionState::notStarted, true), L"Batch (0 tasks)  State: Not started\r\n");
  EXPECT_EQ(describeBatch(1, ExecutionState::finishedError, false),
            L"Batch (1 tasks)  State: exstFinished_Error\r\n");
  EXPECT_EQ(describeBatch(32768, ExecutionState::executing, true),
            L"Batch (32768 tasks)  State: In progress\r\n");
}

TEST(CopiedPercent, ComparesSizes) {
  EXPECT_EQ(copiedPercent(0, 0), 0);
  EXPECT_EQ(copiedPercent(0, 1), 100);
  EXPECT_EQ(copiedPercent(200, 0), 0);
  EXPECT_EQ(copiedPercent(200, 50), 25);
  EXPECT_EQ(copiedPercent(200, 200), 100);
  EXPECT_EQ(copiedPercent(200, 500), 100);
}

}  // namespace
}  // namespace zeq::fileops
