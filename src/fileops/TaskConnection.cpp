#include "fileops/TaskConnection.h"

#include "automation/Policy.h"
#include "automation/Unknown.h"

namespace zeq::fileops {

using automation::ComPtr;

/// What the task knows of the listener. It may outlive the connection, because tasks hold their sinks.
class TaskConnection::Sink final : public automation::Unknown<IDispatch> {
 public:
  Sink(_CFileOperation& task, TaskListener& listener) noexcept : task_(&task), listener_(&listener) {}

  /// Lets both go: what the task still sends goes nowhere.
  void disconnect() noexcept {
    listener_ = nullptr;
    task_.reset();
  }

  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override {
    if (count == nullptr) {
      return E_POINTER;
    }
    *count = 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, wchar_t**, UINT, LCID, DISPID*) noexcept override {
    return DISP_E_UNKNOWNNAME;
  }
  STDMETHODIMP Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                      UINT*) noexcept override {
    return arguments == nullptr ? E_POINTER : automation::raising([&] {
      if (listener_ != nullptr) {
        const ComPtr<_CFileOperation> task(task_);
        listener_->onTaskEvent(*task, event, *arguments);
      }
    });
  }

 private:
  [[nodiscard]] IUnknown* findInterface(REFIID iid) noexcept override {
    const bool isKnown = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch) ||
                         IsEqualIID(iid, __uuidof(__CFileOperation));
    return isKnown ? this : nullptr;
  }

  ComPtr<_CFileOperation> task_;
  TaskListener* listener_;
};

TaskConnection::TaskConnection(const ComPtr<_CFileOperation>& task, TaskListener& listener)
    : sink_(ComPtr<Sink>::attach(new Sink(*task, listener))) {
  const auto container = task.query<IConnectionPointContainer>(IID_IConnectionPointContainer);
  if (container && SUCCEEDED(container->FindConnectionPoint(__uuidof(__CFileOperation), point_.out())) &&
      point_) {
    point_->Advise(sink_.get(), &cookie_);
  }
}

TaskConnection::~TaskConnection() {
  sink_->disconnect();
  if (cookie_ != 0) {
    point_->Unadvise(cookie_);
  }
}

}  // namespace zeq::fileops
