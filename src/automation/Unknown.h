#pragma once
// IUnknown for every object of the library: reference counting, QueryInterface and the lock that keeps the
// module loaded.

#include <windows.h>
#include <unknwn.h>

#include "automation/Module.h"

namespace zeq::automation {

/// Implements `Interfaces`, which all derive from IUnknown. The maker holds the first reference; the last to
/// go deletes the object.
template <class... Interfaces>
class Unknown : public Interfaces... {
 public:
  Unknown(const Unknown&) = delete;
  Unknown& operator=(const Unknown&) = delete;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override {
    if (object == nullptr) {
      return E_POINTER;
    }
    IUnknown* found = findInterface(iid);
    *object = found;
    if (found == nullptr) {
      return E_NOINTERFACE;
    }
    found->AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() noexcept override {
    return static_cast<ULONG>(InterlockedIncrement(&references_));
  }
  STDMETHODIMP_(ULONG) Release() noexcept override {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0) {
      references_ = beingDestroyed;  // What the destructor calls may take and drop references once more.
      delete this;
    }
    return static_cast<ULONG>(left);
  }

 protected:
  Unknown() noexcept = default;
  virtual ~Unknown() = default;

  /// The object as the interface asked for, without a reference of its own; null if it has no such interface.
  [[nodiscard]] virtual IUnknown* findInterface(REFIID iid) noexcept = 0;

 private:
  static constexpr LONG beingDestroyed = 0x40000000;

  LONG references_ = 1;
  ModuleLock lock_;
};

/// An object whose only interface, besides IUnknown, is `Interface`.
template <class Interface>
class SingleInterface : public Unknown<Interface> {
 protected:
  [[nodiscard]] IUnknown* findInterface(REFIID iid) noexcept override {
    return IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, __uuidof(Interface)) ? this : nullptr;
  }
};

}  // namespace zeq::automation
