#pragma once
// An operation of the client's own, as a batch may find it among its tasks.

#include <windows.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "support/ClientObject.h"
#include "support/Component.h"

namespace zeq::test {

/// Its Execute raises the estimates that it was made with, and succeeds unless told otherwise. It answers
/// what a batch needs; every other member is not implemented.
class ClientTask final : public ClientObject<_CFileOperation, IConnectionPointContainer> {
 public:
  struct Estimate {
    std::wstring drive;
    bool fills;
    double bytes;
  };

  static ComPtr<ClientTask> make(std::vector<Estimate> estimates);

  void fail(HRESULT result) noexcept { result_ = result; }
  void cancel() noexcept;
  /// Keeps every sink that connects, even after it disconnects.
  void ignoreUnadvise() noexcept { ignoresUnadvise_ = true; }
  void forgetSinks() { sinks_.clear(); }
  void hideEvents() noexcept { hasEvents_ = false; }
  /// Runs inside Execute.
  void whenExecuted(std::function<void()> action) { whenExecuted_ = std::move(action); }
  void raiseEstimate(const Estimate& estimate);
  /// Raises an event with one argument of a wrong type, and returns what a sink said.
  HRESULT raiseMalformed(DISPID event);

  STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override;

  STDMETHODIMP get_State(enumExecutionState* result) noexcept override;
  STDMETHODIMP put_State(enumExecutionState) noexcept override { return S_OK; }
  STDMETHODIMP put_StatusHWnd(long) noexcept override { return S_OK; }
  STDMETHODIMP Execute(VARIANT_BOOL forReal, VARIANT_BOOL* result) noexcept override;

  STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints**) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** point) noexcept override;

  STDMETHODIMP SetMove(BSTR, BSTR, enumOverwriteType, enumParamType, VARIANT_BOOL*) noexcept override {
    return E_NOTIMPL;
  }
  STDMETHODIMP SetCopy(BSTR, BSTR, enumOverwriteType, enumParamType, VARIANT_BOOL*) noexcept override {
    return E_NOTIMPL;
  }
  STDMETHODIMP SetDelete(BSTR, enumParamType, VARIANT_BOOL*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP SetCreate(BSTR, enumOverwriteType, enumParamType, VARIANT_BOOL*) noexcept override {
    return E_NOTIMPL;
  }
  STDMETHODIMP get_OpType(enumOpType*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP put_OpType(enumOpType) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP get_Overwrite(enumOverwriteType*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP put_Overwrite(enumOverwriteType) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP get_OverRideReadOnly(VARIANT_BOOL*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP put_OverRideReadOnly(VARIANT_BOOL) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP get_DeleteNonEmptyFolder(enumOverwriteType*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP put_DeleteNonEmptyFolder(enumOverwriteType) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP get_ParameterType(enumParamType*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP put_ParameterType(enumParamType) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP get_Parameter(short, BSTR*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP put_Parameter(short, BSTR) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP get_StatusHWnd(long*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP get_AsString(VARIANT_BOOL, BSTR, BSTR, BSTR*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP get_Simulating(VARIANT_BOOL*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP get_PercentComplete(double*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP StateAsString(enumExecutionState, VARIANT_BOOL, BSTR*) noexcept override { return E_NOTIMPL; }

 private:
  class Point final : public IConnectionPoint {
   public:
    explicit Point(ClientTask& task) noexcept : task_(task) {}
    STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override;
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return task_.AddRef(); }
    STDMETHODIMP_(ULONG) Release() noexcept override { return task_.Release(); }
    STDMETHODIMP GetConnectionInterface(IID*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer**) noexcept override {
      return E_NOTIMPL;
    }
    STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) noexcept override;
    STDMETHODIMP Unadvise(DWORD cookie) noexcept override;
    STDMETHODIMP EnumConnections(IEnumConnections**) noexcept override { return E_NOTIMPL; }

   private:
    ClientTask& task_;
  };

  explicit ClientTask(std::vector<Estimate> estimates) : estimates_(std::move(estimates)) {}
  HRESULT raise(DISPID event, std::vector<VARIANT> arguments);

  std::vector<Estimate> estimates_;
  HRESULT result_ = S_OK;
  VARIANT_BOOL success_ = VARIANT_TRUE;
  enumExecutionState state_ = exstFinished_OK;
  bool ignoresUnadvise_ = false;
  bool hasEvents_ = true;
  std::function<void()> whenExecuted_;
  Point point_{*this};
  std::map<DWORD, ComPtr<IDispatch>> sinks_;
  DWORD lastCookie_ = 0;
};

}  // namespace zeq::test
