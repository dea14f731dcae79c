// What arrives at the shell when one file is moved or copied, and what its answers become.

#include <windows.h>
#include <shellapi.h>

#include <cstring>
#include <functional>

#include "fileops/ExecutionTest.h"
#include "support/ImportHook.h"
#include "support/IniText.h"

namespace zeq::test {
namespace {

/// The last call, and the answer that it gets. Hooks are plain functions, so both stand outside.
struct ShellCall {
  HWND owner = nullptr;
  UINT function = 0;
  std::string from, to, title;
  unsigned flags = 0;
  bool hasMappings = true;
};
ShellCall call;
int result;
bool aborts;
std::function<void()> whenCalled;

/// A text that two NUL characters must end.
std::string listed(const char* text) {
  std::string list = text;
  EXPECT_EQ(text[list.size() + 1], '\0') << list;
  return list;
}

int WINAPI answer(SHFILEOPSTRUCTA* operation) {
  call = {operation->hwnd,
          operation->wFunc,
          listed(operation->pFrom),
          listed(operation->pTo),
          listed(operation->lpszProgressTitle),
          operation->fFlags,
          operation->hNameMappings != nullptr};
#ifndef _WIN64
  const char* title = nullptr;  // Nothing lies between the 2 bytes of the flags and what follows them.
  std::memcpy(&title, reinterpret_cast<const char*>(operation) + 26, sizeof title);
  EXPECT_EQ(title, operation->lpszProgressTitle);
#endif
  EXPECT_FALSE(operation->fAnyOperationsAborted);
  operation->fAnyOperationsAborted = aborts ? TRUE : FALSE;
  if (whenCalled) {
    whenCalled();
  }
  return result;
}

class ShellTransferTest : public ExecutionTest {
 protected:
  ShellTransferTest() {
    call = {};
    result = 0;
    aborts = false;
    whenCalled = {};
  }
  std::string title(enumOpType type, const std::wstring& source, const std::wstring& destination) {
    set(type, source, destination, ovrtYes);
    expectSuccess(forReal);
    return call.title;
  }

  ImportHook hook{component(), "SHFileOperationA", &answer};
};

TEST_F(ShellTransferTest, HandsTheShellOneFile) {
  const std::wstring source = sandbox.file(L"a.txt", 5);
  const std::wstring destination = sandbox.path(L"b.txt");
  operation->put_StatusHWnd(-5);  // A handle of the upper half, as 64-bit Windows extends it.
  for (const auto type : {otypMove, otypCopy}) {
    set(type, source, destination);
    expectSuccess(forReal);
    EXPECT_EQ(call.function, type == otypMove ? 1U : 2U);
    EXPECT_EQ(call.from, narrow(source));
    EXPECT_EQ(call.to, narrow(destination));
    EXPECT_EQ(call.flags, 128U);
    EXPECT_FALSE(call.hasMappings);
    EXPECT_EQ(reinterpret_cast<INT_PTR>(call.owner), -5);
  }
}

TEST_F(ShellTransferTest, TitlesNameTheFiles) {
  const std::wstring source = sandbox.file(L"Plan.txt", 5);
  EXPECT_EQ(title(otypMove, source, sandbox.path(L"other.doc")), "Moving Plan.txt to other.doc");
  EXPECT_EQ(title(otypCopy, source, sandbox.path(L"other.doc")), "Copying Plan.txt to other.doc");
  for (const wchar_t* same : {L"sub\\Plan.txt", L"sub\\PLAN.TXT", L"sub\\plan.txt ", L"sub\\ Plan.txt"}) {
    EXPECT_EQ(title(otypCopy, source, sandbox.path(same)), "Copying Plan.txt");
  }
  EXPECT_EQ(title(otypCopy, source, sandbox.path(L"sub\\Plan")), "Copying Plan.txt to Plan");
}

TEST_F(ShellTransferTest, TextsAreInTheCodePage) {
  const std::wstring source = sandbox.file(L"pl\u00e4ne", 5);
  EXPECT_EQ(title(otypCopy, source, sandbox.path(L"\u00e9")), "Copying pl\xe4ne to \xe9");
  EXPECT_TRUE(call.from.ends_with("\\pl\xe4ne"));
  EXPECT_TRUE(call.to.ends_with("\\\xe9"));
}

TEST_F(ShellTransferTest, AnswersBecomeOutcomes) {
  const std::wstring source = sandbox.file(L"a", 5);
  for (const auto type : {otypMove, otypCopy}) {
    set(type, source, sandbox.path(L"b"));
    for (const int number : {0, 5, 117, -1}) {
      result = number;
      aborts = true;
      expectCancelled(forReal, L"Overwrite cancelled");
      aborts = false;
      if (number == 0) {
        expectSuccess(forReal);
      } else {
        expectFailure(forReal, type == otypMove ? L"Problem moving file" : L"Problem copying file");
      }
    }
  }
}

TEST_F(ShellTransferTest, OnlyAMoveDeletesTheDestinationBeforehand) {
  const std::wstring source = sandbox.file(L"a", 5);
  const std::wstring destination = sandbox.file(L"b", 7);
  bool existed = false;
  whenCalled = [&] { existed = exists(destination); };
  set(otypCopy, source, destination, ovrtYes);
  expectSuccess(forReal);
  EXPECT_TRUE(existed);
  set(otypMove, source, destination, ovrtYes);
  aborts = true;
  expectCancelled(forReal, L"Overwrite cancelled");
  EXPECT_FALSE(existed);
  EXPECT_FALSE(exists(destination)) << "nothing is rolled back";
}

TEST_F(ShellTransferTest, FoldersAndSimulationsNeedNoShell) {
  const std::wstring file = sandbox.file(L"from\\file", 5);
  for (const auto type : {otypCopy, otypMove}) {
    set(type, file, sandbox.path(L"copy"));
    expectSuccess(simulated);
    set(type, sandbox.path(L"from"), sandbox.path(type == otypCopy ? L"one" : L"two"));
    expectSuccess(forReal);
  }
  EXPECT_EQ(call.function, 0U);
  EXPECT_TRUE(exists(sandbox.path(L"two\\file")));
}

}  // namespace
}  // namespace zeq::test
