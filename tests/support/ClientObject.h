#pragma once
// The formalities of an automation object of the client's own, for sinks, pages, collections and script
// objects. It needs nothing but the system's headers: clients that know only what is delivered use it too.

#include <windows.h>
#include <oaidl.h>

#include <algorithm>

namespace zeq::test {

/// Hands out `Interface`, which is IDispatch or derives from it, and `Others`, which do not. It has no type
/// information and knows no member: a class answers by overriding what it needs. The maker holds the first
/// reference; the last to go deletes the object, so one that is its maker's own may also live on the stack.
template <class Interface = IDispatch, class... Others>
class ClientObject : public Interface, public Others... {
 public:
  ClientObject() = default;
  ClientObject(const ClientObject&) = delete;
  ClientObject& operator=(const ClientObject&) = delete;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override {
    *object = nullptr;
    if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch) ||
        IsEqualIID(iid, __uuidof(Interface))) {
      *object = static_cast<Interface*>(this);
    } else {
      (offer<Others>(iid, object), ...);
    }
    if (*object == nullptr) {
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() noexcept override {
    return static_cast<ULONG>(InterlockedIncrement(&references_));
  }
  STDMETHODIMP_(ULONG) Release() noexcept override {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0) {
      delete this;
    }
    return static_cast<ULONG>(left);
  }

  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override {
    *count = 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT /*index*/, LCID /*locale*/, ITypeInfo** info) noexcept override {
    *info = nullptr;
    return E_NOTIMPL;
  }
  STDMETHODIMP GetIDsOfNames(REFIID /*reserved*/, wchar_t** /*names*/, UINT count, LCID /*locale*/,
                             DISPID* ids) noexcept override {
    std::fill_n(ids, count, DISPID_UNKNOWN);
    return DISP_E_UNKNOWNNAME;
  }
  STDMETHODIMP Invoke(DISPID /*id*/, REFIID /*reserved*/, LCID /*locale*/, WORD /*flags*/,
                      DISPPARAMS* /*arguments*/, VARIANT* /*result*/, EXCEPINFO* /*exception*/,
                      UINT* /*argumentError*/) noexcept override {
    return DISP_E_MEMBERNOTFOUND;
  }

  [[nodiscard]] ULONG references() const noexcept { return static_cast<ULONG>(references_); }

 protected:
  virtual ~ClientObject() = default;

 private:
  template <class Other>
  void offer(REFIID iid, void** object) noexcept {
    if (IsEqualIID(iid, __uuidof(Other))) {
      *object = static_cast<Other*>(this);
    }
  }

  LONG references_ = 1;
};

}  // namespace zeq::test
