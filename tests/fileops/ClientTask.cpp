#include "fileops/ClientTask.h"

#include <algorithm>

namespace zeq::test {

ComPtr<ClientTask> ClientTask::make(std::vector<Estimate> estimates) {
  return ComPtr<ClientTask>::attach(new ClientTask(std::move(estimates)));
}

void ClientTask::cancel() noexcept {
  result_ = S_OK;
  success_ = VARIANT_FALSE;
  state_ = exstFinished_Cancelled;
}

void ClientTask::raiseEstimate(const Estimate& estimate) {
  const Variant drive(estimate.drive);
  raise(5, {Variant(estimate.bytes).get(), Variant(estimate.fills).get(), drive.get()});
}

HRESULT ClientTask::raiseMalformed(DISPID event) {
  return raise(event, {Variant::null().get()});
}

STDMETHODIMP ClientTask::QueryInterface(REFIID iid, void** object) noexcept {
  const bool isHidden = !hasEvents_ && IsEqualIID(iid, IID_IConnectionPointContainer);
  return ClientObject::QueryInterface(isHidden ? IID_NULL : iid, object);
}

STDMETHODIMP ClientTask::get_State(enumExecutionState* result) noexcept {
  *result = state_;
  return S_OK;
}

STDMETHODIMP ClientTask::Execute(VARIANT_BOOL, VARIANT_BOOL* result) noexcept {
  for (const Estimate& estimate : estimates_) {
    raiseEstimate(estimate);
  }
  if (whenExecuted_) {
    whenExecuted_();
  }
  *result = success_;
  return result_;
}

STDMETHODIMP ClientTask::FindConnectionPoint(REFIID iid, IConnectionPoint** point) noexcept {
  *point = nullptr;
  if (!IsEqualIID(iid, __uuidof(__CFileOperation))) {
    return CONNECT_E_NOCONNECTION;
  }
  *point = ComPtr<IConnectionPoint>(&point_).detach();
  return S_OK;
}

STDMETHODIMP ClientTask::Point::QueryInterface(REFIID iid, void** object) noexcept {
  *object = nullptr;
  if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IConnectionPoint)) {
    return E_NOINTERFACE;
  }
  *object = ComPtr<IConnectionPoint>(this).detach();
  return S_OK;
}

STDMETHODIMP ClientTask::Point::Advise(IUnknown* sink, DWORD* cookie) noexcept {
  *cookie = ++task_.lastCookie_;
  task_.sinks_[*cookie] = ComPtr<IUnknown>(sink).query<IDispatch>(IID_IDispatch);
  return S_OK;
}

STDMETHODIMP ClientTask::Point::Unadvise(DWORD cookie) noexcept {
  if (!task_.ignoresUnadvise_) {
    task_.sinks_.erase(cookie);
  }
  return S_OK;
}

HRESULT ClientTask::raise(DISPID event, std::vector<VARIANT> arguments) {
  HRESULT result = S_OK;
  const auto sinks = sinks_;
  for (const auto& [cookie, sink] : sinks) {
    DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    result = sink->Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                          nullptr, nullptr);
  }
  return result;
}

}  // namespace zeq::test
