#pragma once
// An ordered list of file operations, run one after another. A simulation keeps one simulated drive for each
// drive that the operations would touch.

#include <memory>
#include <string>
#include <string_view>

#include "ZEQUtility2.h"
#include "automation/Collection.h"
#include "automation/Object.h"
#include "fileops/Operation.h"
#include "fileops/TaskConnection.h"

namespace zeq::fileops {

/// Tasks are known by their public interfaces only: clients may put operations of their own into `Tasks`, and
/// anything else; what is no operation fails when its turn comes.
class CFileOperationBatch final : public automation::Object<CFileOperationBatch, ::CFileOperationBatch,
                                                            ::_CFileOperationBatch, ::__CFileOperationBatch>,
                                  private TaskListener {
 public:
  ~CFileOperationBatch() override;

  STDMETHODIMP get_Tasks(_Collection** result) noexcept override;
  STDMETHODIMP get_DriveMonitors(_Collection** result) noexcept override;
  STDMETHODIMP get_Simulating(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP get_CurrentTaskIndex(short* result) noexcept override;
  STDMETHODIMP get_CurrentTask(_CFileOperation** result) noexcept override;
  STDMETHODIMP get_State(enumExecutionState* result) noexcept override;
  STDMETHODIMP put_State(enumExecutionState value) noexcept override;
  STDMETHODIMP get_StatusHWnd(long* result) noexcept override;
  STDMETHODIMP put_StatusHWnd(long value) noexcept override;
  STDMETHODIMP Clear() noexcept override;
  STDMETHODIMP Add(_CFileOperation** result) noexcept override;
  STDMETHODIMP AddMove(BSTR src, BSTR dst, enumOverwriteType overwriteA, enumParamType paramTypeA,
                       _CFileOperation** result) noexcept override;
  STDMETHODIMP AddCopy(BSTR src, BSTR dst, enumOverwriteType overwriteA, enumParamType paramTypeA,
                       _CFileOperation** result) noexcept override;
  STDMETHODIMP AddDelete(BSTR src, enumParamType paramTypeA, _CFileOperation** result) noexcept override;
  STDMETHODIMP AddCreate(BSTR dst, enumOverwriteType overwriteA, enumParamType paramTypeA,
                         _CFileOperation** result) noexcept override;
  STDMETHODIMP Execute(VARIANT_BOOL forReal, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP StateAsString(enumExecutionState StateA, VARIANT_BOOL verbose, BSTR* result) noexcept override;
  STDMETHODIMP get_AsString(VARIANT_BOOL verbose, BSTR* result) noexcept override;

 private:
  using Task = automation::ComPtr<_CFileOperation>;
  struct Result {
    bool success = true;
    bool cancelled = false;
  };

  void onTaskEvent(_CFileOperation& task, DISPID event, DISPPARAMS& arguments) override;
  void recordUsage(const VARIANT& drive, const VARIANT& fills, const VARIANT& bytes);
  [[nodiscard]] automation::ComPtr<_CFakeDrive> driveMonitor(std::wstring_view name);
  [[nodiscard]] automation::ComPtr<_CFakeDrive> addDriveMonitor(std::wstring_view name,
                                                                const std::wstring& key);

  [[nodiscard]] Task append();
  [[nodiscard]] Task taskAt(long position) const;
  template <class Body>
  void forEachTask(Body&& body);
  [[nodiscard]] Result runTasks(VARIANT_BOOL forReal);
  [[nodiscard]] Result runTask(short position, VARIANT_BOOL forReal);

  automation::ComPtr<automation::Collection> tasks_ = automation::Collection::make();
  automation::ComPtr<automation::Collection> driveMonitors_ = automation::Collection::make();
  bool simulating_ = false;
  short currentTaskIndex_ = 0;
  ExecutionState state_ = ExecutionState::notStarted;
  long statusWindow_ = 0;
  std::unique_ptr<TaskConnection> currentOperation_;
};

}  // namespace zeq::fileops
