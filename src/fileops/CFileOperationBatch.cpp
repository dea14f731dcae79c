#include "fileops/CFileOperationBatch.h"

#include <array>
#include <limits>
#include <system_error>

#include "fileops/CFakeDrive.h"
#include "fileops/CFileOperation.h"
#include "platform/Files.h"
#include "utility/MZEQUtilityStrings.h"

namespace zeq::fileops {

using automation::check;
using automation::ComPtr;
using automation::Error;
using automation::ErrorNumber;
using automation::quietly;
using automation::raising;
using automation::text;
using automation::Variant;

namespace {

/// Dispatch identifiers of __CFileOperationBatch; one of a task's events is forwarded under its own plus
/// `forwarded`.
enum Event : DISPID {
  starting = 1,
  finished = 2,
  forwarded = 2,
  aboutToExecuteOperation = 3,
  executedOperation = 4,
  beforeOperationOverwrite = 5,
  beforeOperationFolderDelete = 6,
  operationDriveUsageChangeEstimate = 7,
};

/// An item of a collection as an object of the library's interfaces; empty if it is none.
template <class Interface>
ComPtr<Interface> objectAt(const automation::Collection& collection, long position) {
  if (position < 1 || position > collection.size()) {
    return nullptr;
  }
  const Variant& item = collection.at(position);
  return ComPtr<IUnknown>(automation::objectIn(item.get())).query<Interface>();
}

bool answered(HRESULT result, VARIANT_BOOL answer) noexcept {
  return SUCCEEDED(result) && answer != VARIANT_FALSE;
}

/// The task itself if its setter accepted the arguments.
ComPtr<_CFileOperation> ifAccepted(ComPtr<_CFileOperation> task, HRESULT result,
                                   VARIANT_BOOL answer) noexcept {
  return answered(result, answer) ? std::move(task) : nullptr;
}

}  // namespace

CFileOperationBatch::~CFileOperationBatch() {
  tasks_->clear();
}

STDMETHODIMP CFileOperationBatch::get_Tasks(_Collection** result) noexcept {
  return quietly(result, [&] { return tasks_; });
}

STDMETHODIMP CFileOperationBatch::get_DriveMonitors(_Collection** result) noexcept {
  return quietly(result, [&] { return driveMonitors_; });
}

STDMETHODIMP CFileOperationBatch::get_Simulating(VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] { return simulating_; });
}

STDMETHODIMP CFileOperationBatch::get_CurrentTaskIndex(short* result) noexcept {
  return quietly(result, [&] { return currentTaskIndex_; });
}

STDMETHODIMP CFileOperationBatch::get_CurrentTask(_CFileOperation** result) noexcept {
  return quietly(result, [&] { return taskAt(currentTaskIndex_); });
}

STDMETHODIMP CFileOperationBatch::get_State(enumExecutionState* result) noexcept {
  return quietly(result, [&] { return static_cast<enumExecutionState>(state_); });
}

STDMETHODIMP CFileOperationBatch::put_State(enumExecutionState value) noexcept {
  return quietly([&] {
    const auto state = static_cast<ExecutionState>(value);
    if (state_ == state) {
      return;
    }
    state_ = state;
    if (state == ExecutionState::notStarted) {
      forEachTask([](_CFileOperation& task) { task.put_State(exstNotStarted); });
    }
  });
}

STDMETHODIMP CFileOperationBatch::get_StatusHWnd(long* result) noexcept {
  return quietly(result, [&] { return statusWindow_; });
}

STDMETHODIMP CFileOperationBatch::put_StatusHWnd(long value) noexcept {
  return quietly([&] {
    if (statusWindow_ != value) {
      statusWindow_ = value;
      forEachTask([value](_CFileOperation& task) { task.put_StatusHWnd(value); });
    }
  });
}

STDMETHODIMP CFileOperationBatch::Clear() noexcept {
  return quietly([&] {
    const auto alive = keepAlive();
    tasks_->clear();
  });
}

STDMETHODIMP CFileOperationBatch::Add(_CFileOperation** result) noexcept {
  return quietly(result, [&] { return append(); });
}

STDMETHODIMP CFileOperationBatch::AddMove(BSTR src, BSTR dst, enumOverwriteType overwriteA,
                                          enumParamType paramTypeA, _CFileOperation** result) noexcept {
  return quietly(result, [&] {
    auto task = append();
    VARIANT_BOOL accepted = VARIANT_FALSE;
    const HRESULT set = task->SetMove(src, dst, overwriteA, paramTypeA, &accepted);
    return ifAccepted(std::move(task), set, accepted);
  });
}

STDMETHODIMP CFileOperationBatch::AddCopy(BSTR src, BSTR dst, enumOverwriteType overwriteA,
                                          enumParamType paramTypeA, _CFileOperation** result) noexcept {
  return quietly(result, [&] {
    auto task = append();
    VARIANT_BOOL accepted = VARIANT_FALSE;
    const HRESULT set = task->SetCopy(src, dst, overwriteA, paramTypeA, &accepted);
    return ifAccepted(std::move(task), set, accepted);
  });
}

STDMETHODIMP CFileOperationBatch::AddDelete(BSTR src, enumParamType paramTypeA,
                                            _CFileOperation** result) noexcept {
  return quietly(result, [&] {
    auto task = append();
    VARIANT_BOOL accepted = VARIANT_FALSE;
    const HRESULT set = task->SetDelete(src, paramTypeA, &accepted);
    return ifAccepted(std::move(task), set, accepted);
  });
}

STDMETHODIMP CFileOperationBatch::AddCreate(BSTR dst, enumOverwriteType overwriteA, enumParamType paramTypeA,
                                            _CFileOperation** result) noexcept {
  return quietly(result, [&] {
    auto task = append();
    VARIANT_BOOL accepted = VARIANT_FALSE;
    const HRESULT set = task->SetCreate(dst, overwriteA, paramTypeA, &accepted);
    return ifAccepted(std::move(task), set, accepted);
  });
}

STDMETHODIMP CFileOperationBatch::Execute(VARIANT_BOOL forReal, VARIANT_BOOL* result) noexcept {
  return raising(result, [&] {
    const auto alive = keepAlive();
    struct Ending {
      CFileOperationBatch& batch;
      ~Ending() {
        batch.currentOperation_.reset();
        batch.simulating_ = false;
      }
    } const ending{*this};
    simulating_ = forReal == VARIANT_FALSE;
    driveMonitors_->clear();
    currentTaskIndex_ = 0;
    state_ = ExecutionState::notStarted;
    raise(starting);
    const Result outcome = runTasks(forReal);
    state_ = outcome.success     ? ExecutionState::finishedOk
             : outcome.cancelled ? ExecutionState::finishedCancelled
                                 : ExecutionState::finishedError;
    raise(finished, outcome.success, outcome.cancelled);
    return outcome.success;
  });
}

STDMETHODIMP CFileOperationBatch::StateAsString(enumExecutionState StateA, VARIANT_BOOL verbose,
                                                BSTR* result) noexcept {
  return quietly(result,
                 [&] { return stateText(static_cast<ExecutionState>(StateA), verbose != VARIANT_FALSE); });
}

STDMETHODIMP CFileOperationBatch::get_AsString(VARIANT_BOOL verbose, BSTR* result) noexcept {
  return quietly(result, [&] {
    std::wstring lines =
        describeBatch(static_cast<std::size_t>(tasks_->size()), state_, verbose != VARIANT_FALSE);
    for (long position = 1; position <= tasks_->size(); ++position) {
      lines.append(L"\r\n");
      automation::Bstr line;
      if (const Task task = taskAt(position);
          task && SUCCEEDED(task->get_AsString(verbose, nullptr, nullptr, line.out()))) {
        lines.append(line.view());
      }
    }
    return lines;
  });
}

/// Runs the tasks that there are at the start, until one fails.
CFileOperationBatch::Result CFileOperationBatch::runTasks(VARIANT_BOOL forReal) {
  const long count = tasks_->size();
  if (count > std::numeric_limits<short>::max()) {
    throw Error(ErrorNumber::overflow);
  }
  Result result;
  for (long position = 1; position <= count && result.success; ++position) {
    result = runTask(static_cast<short>(position), forReal);
  }
  return result;
}

/// Runs the task at a position; one that is gone by now, or is no operation, fails.
CFileOperationBatch::Result CFileOperationBatch::runTask(short position, VARIANT_BOOL forReal) {
  currentTaskIndex_ = position;
  state_ = ExecutionState::executing;
  const Task task = taskAt(position);
  if (!task) {
    return {false, false};
  }
  TaskListener& listener = *this;
  currentOperation_ = std::make_unique<TaskConnection>(task, listener);
  VARIANT_BOOL success = VARIANT_FALSE;
  const HRESULT executed = task->Execute(forReal, &success);
  if (answered(executed, success)) {
    return {};
  }
  auto state = exstFinished_Error;
  return {false, SUCCEEDED(task->get_State(&state)) && state == exstFinished_Cancelled};
}

void CFileOperationBatch::onTaskEvent(_CFileOperation& task, DISPID event, DISPPARAMS& parameters) {
  constexpr std::array<UINT, 5> counts{0, 3, 3, 2, 3};
  if (event < 1 || event > static_cast<DISPID>(counts.size())) {
    return;
  }
  if (parameters.cArgs != counts[static_cast<std::size_t>(event - 1)]) {
    throw Error(DISP_E_BADPARAMCOUNT);
  }
  const auto alive = keepAlive();
  IDispatch* op = &task;
  VARIANTARG* arguments = parameters.rgvarg;  // The last one first.
  switch (event + forwarded) {
    case aboutToExecuteOperation:
      return raise(aboutToExecuteOperation, &op);
    case beforeOperationFolderDelete:
      return raise(beforeOperationFolderDelete, &op, arguments[1], arguments[0]);
    case operationDriveUsageChangeEstimate:
      quietly([&] { recordUsage(arguments[2], arguments[1], arguments[0]); });
      [[fallthrough]];
    default:
      // The arguments go on as they came: an answer by reference is the task's own variable.
      return raise(event + forwarded, &op, arguments[2], arguments[1], arguments[0]);
  }
}

void CFileOperationBatch::recordUsage(const VARIANT& drive, const VARIANT& fills, const VARIANT& bytes) {
  const Variant name = Variant(drive).to(VT_BSTR);
  const bool isFilled = Variant(fills).to(VT_BOOL).get().boolVal != VARIANT_FALSE;
  const double amount = Variant(bytes).to(VT_R8).get().dblVal;
  const auto monitor = driveMonitor(text(name.get().bstrVal));
  check(isFilled ? monitor->UseBytes(amount) : monitor->FreeBytes(amount));
}

/// The monitor of a drive, made on first use.
ComPtr<_CFakeDrive> CFileOperationBatch::driveMonitor(std::wstring_view name) {
  const std::wstring key = automation::foldCase(utility::trimmed(name));
  for (long position = 1; position <= driveMonitors_->size(); ++position) {
    auto monitor = objectAt<_CFakeDrive>(*driveMonitors_, position);
    automation::Bstr monitored;
    if (monitor && SUCCEEDED(monitor->get_Name(monitored.out())) &&
        automation::foldCase(utility::trimmed(monitored.view())) == key) {
      return monitor;
    }
  }
  return addDriveMonitor(name, key);
}

ComPtr<_CFakeDrive> CFileOperationBatch::addDriveMonitor(std::wstring_view name, const std::wstring& key) {
  ComPtr<_CFakeDrive> monitor(CFakeDrive::make().get());
  check(monitor->put_Name(automation::Bstr(key).get()));
  driveMonitors_->append(Variant(monitor.get()), key);
  try {
    const auto space = platform::driveSpace(name);
    check(monitor->put_SafetyMargin(0));
    check(monitor->put_Capacity(static_cast<double>(space.total)));
    check(monitor->put_SpaceUsed(static_cast<double>(space.total) - static_cast<double>(space.free)));
  } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch)
    // A drive that cannot be had is monitored all the same, from nothing.
  }
  return monitor;
}

CFileOperationBatch::Task CFileOperationBatch::append() {
  Task task(CFileOperation::make().get());
  tasks_->append(Variant(task.get()));
  check(task->put_StatusHWnd(statusWindow_));
  return task;
}

CFileOperationBatch::Task CFileOperationBatch::taskAt(long position) const {
  return objectAt<_CFileOperation>(*tasks_, position);
}

/// Tasks may be client code that changes the list while it is gone through.
template <class Body>
void CFileOperationBatch::forEachTask(Body&& body) {
  const auto alive = keepAlive();
  for (long position = 1; position <= tasks_->size(); ++position) {
    if (const Task task = taskAt(position)) {
      body(*task);
    }
  }
}

}  // namespace zeq::fileops
