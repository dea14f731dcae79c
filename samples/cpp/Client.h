// What a C++ program has to have of its own to use COM objects: it creates them, hears their events and hands
// them objects that it implements itself. Nothing here depends on anything but COM: take it along.
//
//   const auto batch = client::create<_CFileOperationBatch>(__uuidof(CFileOperationBatch));
//   const client::Events<__CFileOperationBatch> events(batch.Get(), [](DISPID event, VARIANTARG* arguments) {
//     ...
//   });
//
// A failed call ends the program with a message, as suits a small console program. One that is to go on
// throws an exception in `check` instead, and catches it in its event handlers: none may pass through COM.

#pragma once

#include <windows.h>
#include <ocidl.h>
#include <wrl/client.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <utility>

namespace client {

using Microsoft::WRL::ComPtr;

/// Ends the program if `result` is that of a failed call, and says what it was about to do.
inline void check(HRESULT result, const char* what) {
  if (FAILED(result)) {
    std::printf("%s failed: %08lX\n", what, static_cast<unsigned long>(result));
    std::exit(1);
  }
}

/// A new object of the registered class `clsid`.
template <class Interface>
[[nodiscard]] ComPtr<Interface> create(REFCLSID clsid, const char* what = "creating an object") {
  ComPtr<Interface> object;
  check(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface),
                         reinterpret_cast<void**>(object.GetAddressOf())),
        what);
  return object;
}

/// Another interface of an object.
template <class Interface>
[[nodiscard]] ComPtr<Interface> query(IUnknown* object, const char* what) {
  ComPtr<Interface> other;
  check(object->QueryInterface(__uuidof(Interface), reinterpret_cast<void**>(other.GetAddressOf())), what);
  return other;
}

/// The base of an object that the program implements itself and keeps in a variable: references to it are not
/// counted, so that it has to outlive all who hold one. `Interface` is a dual interface or that of an
/// object's events. The formalities of IDispatch are here; the derived class has the members of `Interface`,
/// or Invoke for events.
template <class Interface>
class StackObject : public Interface {
 public:
  StackObject() = default;
  StackObject(const StackObject&) = delete;
  StackObject& operator=(const StackObject&) = delete;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    const bool known = iid == __uuidof(IUnknown) || iid == __uuidof(IDispatch) || iid == __uuidof(Interface);
    *object = known ? static_cast<Interface*>(this) : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
    return DISP_E_MEMBERNOTFOUND;
  }

 protected:
  ~StackObject() = default;
};

/// Hands the events of an object to a function for as long as this lives. The identifiers of the events of
/// `Interface`, and what they bring, stand in the type library.
template <class Interface>
class Events final : public StackObject<Interface> {
 public:
  /// The arguments of an event come as a list, the last one first.
  using Handler = std::function<void(DISPID event, VARIANTARG* arguments)>;

  Events(IUnknown* source, Handler handler) : handler_(std::move(handler)) {
    const auto container = query<IConnectionPointContainer>(source, "asking for events");
    check(container->FindConnectionPoint(__uuidof(Interface), point_.GetAddressOf()), "finding the events");
    check(point_->Advise(this, &cookie_), "connecting");
  }
  ~Events() { point_->Unadvise(cookie_); }

  STDMETHODIMP Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                      UINT*) override {
    handler_(event, arguments->rgvarg);
    return S_OK;
  }

 private:
  Handler handler_;
  ComPtr<IConnectionPoint> point_;
  DWORD cookie_ = 0;
};

}  // namespace client
