#pragma once
// Adapters: an object that answers only by name, such as a script's, taken for one that implements an
// interface.
//
//   class StepAdapter final : public automation::Adapter<StepAdapter, IWizardStep> {
//    public:
//     using Adapter::Adapter;
//     STDMETHODIMP get_Name(BSTR* result) noexcept override {
//       return raising(result, [&] { return textOf(caller().get(L"Name").get()); });
//     }
//   };
//   registerAdapter<StepAdapter>();  // once, before any object is handed out

#include <windows.h>
#include <oleauto.h>

#include "automation/ComPtr.h"
#include "automation/NamedCaller.h"
#include "automation/Unknown.h"

namespace zeq::automation {

/// What adapters answer to QueryInterface with the object that they stand for.
extern const IID adaptedObjectId;

/// A new adapter for an object.
using AdapterFactory = ComPtr<IUnknown> (*)(IDispatch* target);

/// From then on, an object that answers only by name is accepted for parameters of the interface.
void registerAdapter(REFIID interfaceId, AdapterFactory factory);

template <class AdapterClass>
void registerAdapter() {
  registerAdapter(AdapterClass::interfaceId(), &AdapterClass::make);
}

/// True if there is an adapter for the interface.
[[nodiscard]] bool hasAdapter(REFIID interfaceId) noexcept;

/// The object as another interface, through an adapter if it does not implement it itself. Empty if neither
/// is possible.
[[nodiscard]] ComPtr<IUnknown> adaptTo(REFIID interfaceId, IUnknown* object) noexcept;

/// What the client knows the object by: the adapted object of an adapter, any other object itself.
[[nodiscard]] ComPtr<IUnknown> withoutAdapter(IUnknown* object) noexcept;

/// The same for a reference that the caller owns.
void dropAdapter(IUnknown*& object) noexcept;

/// The base of every adapter. `Interface` is a dual interface; the adapter's own members implement it by
/// calling the target, and its IDispatch is the target's, so that clients reach all members of their object
/// through it.
template <class Class, class Interface>
class Adapter : public Unknown<Interface> {
 public:
  explicit Adapter(IDispatch* target) noexcept : caller_(target) {}
  [[nodiscard]] static REFIID interfaceId() noexcept { return __uuidof(Interface); }
  [[nodiscard]] static ComPtr<IUnknown> make(IDispatch* target) {
    return ComPtr<IUnknown>::attach(new Class(target));
  }

  // IDispatch
  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override {
    return caller_.target()->GetTypeInfoCount(count);
  }
  STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) noexcept override {
    return caller_.target()->GetTypeInfo(index, locale, info);
  }
  STDMETHODIMP GetIDsOfNames(REFIID /*reserved*/, wchar_t** names, UINT count, LCID locale,
                             DISPID* ids) noexcept override {
    return caller_.findNames(names, count, locale, ids);
  }
  STDMETHODIMP Invoke(DISPID id, REFIID /*reserved*/, LCID locale, WORD flags, DISPPARAMS* arguments,
                      VARIANT* result, EXCEPINFO* exception, UINT* argumentError) noexcept override {
    return caller_.invokeMember(id, locale, flags, arguments, result, exception, argumentError);
  }

 protected:
  [[nodiscard]] const NamedCaller& caller() const noexcept { return caller_; }

 private:
  [[nodiscard]] IUnknown* findInterface(REFIID iid) noexcept override {
    if (IsEqualIID(iid, adaptedObjectId)) {
      return caller_.target();
    }
    const bool isKnown =
        IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch) || IsEqualIID(iid, interfaceId());
    return isKnown ? this : nullptr;
  }

  NamedCaller caller_;
};

}  // namespace zeq::automation
