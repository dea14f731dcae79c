#include "fileops/CFileOperation.h"

namespace zeq::fileops {

using automation::Bstr;
using automation::quietly;
using automation::text;

namespace {

/// Dispatch identifiers of __CFileOperation.
enum Event : DISPID {
  aboutToExecute = 1,
  executed = 2,
  beforeOverwrite = 3,
  beforeFolderDelete = 4,
  driveUsageChangeEstimate = 5,
};

// The operation's own enumerations and the type library's have the same numbers.
static_assert(static_cast<int>(ExecutionState::finishedError) == exstFinished_Error);
static_assert(static_cast<int>(OperationType::create) == otypCreate);
static_assert(static_cast<int>(Policy::ask) == ovrtAsk);
static_assert(static_cast<int>(PathType::any) == ptypAny);

template <class To, class From>
constexpr To as(From value) noexcept {
  return static_cast<To>(static_cast<std::int32_t>(value));
}

constexpr bool isPathIndex(short index) noexcept {
  return index == 1 || index == 2;
}

}  // namespace

STDMETHODIMP CFileOperation::SetMove(BSTR src, BSTR dst, enumOverwriteType overwriteA,
                                     enumParamType paramTypeA, VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] { return setTransfer(OperationType::move, src, dst, overwriteA, paramTypeA); });
}

STDMETHODIMP CFileOperation::SetCopy(BSTR src, BSTR dst, enumOverwriteType overwriteA,
                                     enumParamType paramTypeA, VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] { return setTransfer(OperationType::copy, src, dst, overwriteA, paramTypeA); });
}

STDMETHODIMP CFileOperation::SetDelete(BSTR src, enumParamType paramTypeA, VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] {
    operation_.type = OperationType::remove;
    operation_.paths = {std::wstring(text(src)), {}};
    operation_.pathType = as<PathType>(paramTypeA);
    return true;
  });
}

STDMETHODIMP CFileOperation::SetCreate(BSTR src, enumOverwriteType overwriteA, enumParamType paramTypeA,
                                       VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] {
    if (paramTypeA != ptypFile && paramTypeA != ptypFolder) {
      return false;
    }
    return setTransfer(OperationType::create, src, nullptr, overwriteA, paramTypeA);
  });
}

STDMETHODIMP CFileOperation::get_OpType(enumOpType* result) noexcept {
  return quietly(result, [&] { return as<enumOpType>(operation_.type); });
}

STDMETHODIMP CFileOperation::put_OpType(enumOpType value) noexcept {
  return quietly([&] { operation_.type = as<OperationType>(value); });
}

STDMETHODIMP CFileOperation::get_Overwrite(enumOverwriteType* result) noexcept {
  return quietly(result, [&] { return as<enumOverwriteType>(operation_.overwrite); });
}

STDMETHODIMP CFileOperation::put_Overwrite(enumOverwriteType value) noexcept {
  return quietly([&] { operation_.overwrite = as<Policy>(value); });
}

STDMETHODIMP CFileOperation::get_OverRideReadOnly(VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] { return operation_.overridesReadOnly; });
}

STDMETHODIMP CFileOperation::put_OverRideReadOnly(VARIANT_BOOL value) noexcept {
  return quietly([&] { operation_.overridesReadOnly = value != VARIANT_FALSE; });
}

STDMETHODIMP CFileOperation::get_DeleteNonEmptyFolder(enumOverwriteType* result) noexcept {
  return quietly(result, [&] { return as<enumOverwriteType>(operation_.deleteNonEmptyFolder); });
}

STDMETHODIMP CFileOperation::put_DeleteNonEmptyFolder(enumOverwriteType value) noexcept {
  return quietly([&] { operation_.deleteNonEmptyFolder = as<Policy>(value); });
}

STDMETHODIMP CFileOperation::get_ParameterType(enumParamType* result) noexcept {
  return quietly(result, [&] { return as<enumParamType>(operation_.pathType); });
}

STDMETHODIMP CFileOperation::put_ParameterType(enumParamType value) noexcept {
  return quietly([&] { operation_.pathType = as<PathType>(value); });
}

STDMETHODIMP CFileOperation::get_Parameter(short Index, BSTR* result) noexcept {
  return quietly(result, [&]() -> std::wstring_view {
    return isPathIndex(Index) ? operation_.paths[static_cast<std::size_t>(Index - 1)] : std::wstring_view();
  });
}

STDMETHODIMP CFileOperation::put_Parameter(short Index, BSTR value) noexcept {
  return quietly([&] {
    if (isPathIndex(Index)) {
      operation_.paths[static_cast<std::size_t>(Index - 1)] = text(value);
    }
  });
}

STDMETHODIMP CFileOperation::get_State(enumExecutionState* result) noexcept {
  return quietly(result, [&] { return as<enumExecutionState>(operation_.state); });
}

STDMETHODIMP CFileOperation::put_State(enumExecutionState value) noexcept {
  return quietly([&] { operation_.state = as<ExecutionState>(value); });
}

STDMETHODIMP CFileOperation::get_StatusHWnd(long* result) noexcept {
  return quietly(result, [&] { return static_cast<long>(operation_.statusWindow); });
}

STDMETHODIMP CFileOperation::put_StatusHWnd(long value) noexcept {
  return quietly([&] { operation_.statusWindow = value; });
}

STDMETHODIMP CFileOperation::get_AsString(VARIANT_BOOL verbose, BSTR lineBreaks, BSTR indents,
                                          BSTR* result) noexcept {
  return quietly(result, [&] {
    return fileops::describe(operation_, verbose != VARIANT_FALSE, text(lineBreaks), text(indents));
  });
}

STDMETHODIMP CFileOperation::get_Simulating(VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] { return simulating_; });
}

STDMETHODIMP CFileOperation::get_PercentComplete(double* result) noexcept {
  return quietly(result, [&] {
    switch (operation_.state) {
      case ExecutionState::executing:
        return percentWhileExecuting();
      case ExecutionState::finishedOk:
      case ExecutionState::finishedCancelled:
      case ExecutionState::finishedError:
        return 100.0;
      default:
        return 0.0;
    }
  });
}

STDMETHODIMP CFileOperation::StateAsString(enumExecutionState StateA, VARIANT_BOOL verbose,
                                           BSTR* result) noexcept {
  return quietly(result, [&] { return stateText(as<ExecutionState>(StateA), verbose != VARIANT_FALSE); });
}

STDMETHODIMP CFileOperation::Execute(VARIANT_BOOL forReal, VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] {
    const auto alive = keepAlive();
    simulating_ = forReal == VARIANT_FALSE;
    operation_.state = ExecutionState::notStarted;
    progress_ = 50;
    const Outcome outcome = runStep(simulating_);
    operation_.state = outcome.success     ? ExecutionState::finishedOk
                       : outcome.cancelled ? ExecutionState::finishedCancelled
                                           : ExecutionState::finishedError;
    progress_ = 100;
    simulating_ = false;
    return outcome.success;
  });
}

/// Everything from the first event of a run to the last.
Outcome CFileOperation::runStep(bool simulates) {
  if (!isRunnable(operation_)) {
    return {};
  }
  const OperationType type = operation_.type;
  operation_.state = ExecutionState::executing;
  raise(aboutToExecute);
  Outcome outcome;
  try {
    outcome = run(operation_, type, simulates, *this);
  } catch (...) {
    outcome.description = automation::currentFailure().description;
  }
  if (hasSinks()) {
    raise(executed, outcome.success, outcome.cancelled, Bstr(outcome.description));
  }
  return outcome;
}

bool CFileOperation::mayOverwrite(std::wstring_view source, std::wstring_view destination) {
  VARIANT_BOOL answer = VARIANT_FALSE;
  raise(beforeOverwrite, Bstr(source), Bstr(destination), &answer);
  return answer != VARIANT_FALSE;
}

bool CFileOperation::mayDelete(std::wstring_view folder) {
  VARIANT_BOOL answer = VARIANT_FALSE;
  raise(beforeFolderDelete, Bstr(folder), &answer);
  return answer != VARIANT_FALSE;
}

void CFileOperation::estimate(std::wstring_view drive, bool fills, double bytes) {
  if (hasSinks()) {
    raise(driveUsageChangeEstimate, Bstr(drive), fills, bytes);
  }
}

bool CFileOperation::setTransfer(OperationType type, BSTR source, BSTR destination,
                                 enumOverwriteType overwrite, enumParamType pathType) {
  operation_.type = type;
  operation_.paths = {std::wstring(text(source)), std::wstring(text(destination))};
  operation_.pathType = as<PathType>(pathType);
  operation_.overwrite = as<Policy>(overwrite);
  return true;
}

double CFileOperation::percentWhileExecuting() const {
  switch (operation_.type) {
    case OperationType::move:
    case OperationType::copy:
      return copiedPercent(fileSizeOrZero(operation_.paths[0]), fileSizeOrZero(operation_.paths[1]));
    case OperationType::remove:
    case OperationType::create:
      return progress_;
    default:
      return 0;
  }
}

}  // namespace zeq::fileops
