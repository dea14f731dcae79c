#pragma once
// One operation to run, the record of its events, and a folder for it to work in.

#include <gmock/gmock.h>

#include <string>

#include "fileops/Recorder.h"
#include "support/Component.h"

namespace zeq::test {

inline constexpr bool forReal = true;
inline constexpr bool simulated = false;

class ExecutionTest : public testing::Test {
 protected:
  ComPtr<_CFileOperation> operation = create<CFileOperation, _CFileOperation>();
  Recorder events{operation.get(), __uuidof(__CFileOperation), Recorder::operationEvents()};
  Sandbox sandbox;

  void set(enumOpType type, const std::wstring& source, const std::wstring& destination = {},
           enumOverwriteType overwrite = ovrtNo, enumParamType pathType = ptypAny) {
    operation->put_OpType(type);
    operation->put_Parameter(1, Bstr(source).get());
    operation->put_Parameter(2, Bstr(destination).get());
    operation->put_Overwrite(overwrite);
    operation->put_ParameterType(pathType);
  }

  bool execute(bool real) {
    events.clear();
    VARIANT_BOOL result = VARIANT_FALSE;
    EXPECT_EQ(operation->Execute(real ? VARIANT_TRUE : VARIANT_FALSE, &result), S_OK);
    EXPECT_FALSE(simulating());
    return result != VARIANT_FALSE;
  }
  enumExecutionState state() {
    auto value = exstNotStarted;
    EXPECT_EQ(operation->get_State(&value), S_OK);
    return value;
  }
  bool simulating() {
    VARIANT_BOOL value = VARIANT_FALSE;
    EXPECT_EQ(operation->get_Simulating(&value), S_OK);
    return value != VARIANT_FALSE;
  }
  double percent() {
    double value = -1;
    EXPECT_EQ(operation->get_PercentComplete(&value), S_OK);
    return value;
  }

  // Each runs the operation and compares the result, the final state and the last event.
  void expectSuccess(bool real, const std::wstring& description = L"Succeeded") {
    EXPECT_TRUE(execute(real));
    EXPECT_EQ(state(), exstFinished_OK);
    expectExecuted(L"True, False, " + description);
  }
  void expectFailure(bool real, const std::wstring& description) {
    EXPECT_FALSE(execute(real));
    EXPECT_EQ(state(), exstFinished_Error);
    expectExecuted(L"False, False, " + description);
  }
  void expectCancelled(bool real, const std::wstring& description) {
    EXPECT_FALSE(execute(real));
    EXPECT_EQ(state(), exstFinished_Cancelled);
    expectExecuted(L"False, True, " + description);
  }

  static std::wstring estimate(const std::wstring& path, bool fills, int bytes) {
    return L"DriveUsageChangeEstimate(" + path.substr(0, 2) + (fills ? L", True, " : L", False, ") +
           std::to_wstring(bytes) + L")";
  }

 private:
  void expectExecuted(const std::wstring& arguments) {
    ASSERT_GE(events.lines().size(), 2U);
    EXPECT_EQ(events.lines().front(), L"AboutToExecute()");
    EXPECT_EQ(events.lines().back(), L"Executed(" + arguments + L")");
  }
};

}  // namespace zeq::test
