#pragma once
// What every class of the library inherits: IUnknown, late binding, class information, error information and
// event sources.
//
//   class CFakeDrive final : public automation::Object<CFakeDrive, ::CFakeDrive, ::_CFakeDrive> { ... };
//   class CFileOperation final
//       : public automation::Object<CFileOperation, ::CFileOperation, ::_CFileOperation, ::__CFileOperation>
//       { ... };
//   class CWinHelp final
//       : public automation::Object<CWinHelp, ::CWinHelp, ::_CWinHelp, void, ::IHelpProvider> { ... };

#include <windows.h>
#include <oleauto.h>
#include <olectl.h>

#include <type_traits>
#include <utility>

#include "automation/ComPtr.h"
#include "automation/Dispatch.h"
#include "automation/Errors.h"
#include "automation/Events.h"
#include "automation/Module.h"
#include "automation/Policy.h"
#include "automation/Unknown.h"

namespace zeq::automation {

/// The dispatch table of a dual interface, made on first use.
template <class Interface>
const DispatchTable& dispatchTable() {
  static const DispatchTable table(typeInfo(__uuidof(Interface)));
  return table;
}

/// Hands out the type library's description of an interface or a class.
inline HRESULT giveTypeInfo(REFGUID id, ITypeInfo** info) noexcept {
  try {
    *info = typeInfo(id).detach();
    return S_OK;
  } catch (...) {
    return currentFailure().code;
  }
}

/// The IDispatch side of one dual interface: names and identifiers are those of that interface.
template <class Interface>
class Dual : public Interface {
 public:
  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override {
    if (count == nullptr) {
      return E_POINTER;
    }
    *count = 1;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT index, LCID /*locale*/, ITypeInfo** info) noexcept override {
    if (info == nullptr) {
      return E_POINTER;
    }
    *info = nullptr;
    return index == 0 ? giveTypeInfo(__uuidof(Interface), info) : DISP_E_BADINDEX;
  }
  STDMETHODIMP GetIDsOfNames(REFIID reserved, wchar_t** names, UINT count, LCID /*locale*/,
                             DISPID* ids) noexcept override {
    if (!IsEqualIID(reserved, IID_NULL)) {
      return DISP_E_UNKNOWNINTERFACE;
    }
    try {
      return dispatchTable<Interface>().getIDsOfNames(names, count, ids);
    } catch (...) {
      return currentFailure().code;
    }
  }
  STDMETHODIMP Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* arguments,
                      VARIANT* result, EXCEPINFO* exception, UINT* argumentError) noexcept override {
    try {
      return dispatchTable<Interface>().invoke(static_cast<Interface*>(this), id, reserved, locale, flags,
                                               arguments, result, exception, argumentError);
    } catch (...) {
      return currentFailure().code;
    }
  }

 protected:
  ~Dual() = default;
};

struct NoEvents {};

/// `Coclass` and the interfaces are the type library's own declarations; `Source` is the class's event
/// dispinterface (void for none), `Further` are dual interfaces that it implements besides its default one.
template <class Class, class Coclass, class Interface, class Source = void, class... Further>
class Object : public Unknown<Dual<Interface>, IProvideClassInfo2, ISupportErrorInfo,
                              std::conditional_t<std::is_void_v<Source>, NoEvents, EventSource<Source>>,
                              Dual<Further>...> {
 public:
  static constexpr bool hasEvents = !std::is_void_v<Source>;

  /// A new object, in the C++ sense of its class.
  template <class... Arguments>
  [[nodiscard]] static ComPtr<Class> make(Arguments&&... arguments) {
    return ComPtr<Class>::attach(new Class(std::forward<Arguments>(arguments)...));
  }

  /// A new object for a class factory.
  static HRESULT create(REFIID iid, void** object) noexcept {
    *object = nullptr;
    try {
      return make()->QueryInterface(iid, object);
    } catch (...) {
      return reportCurrent();
    }
  }

  // IProvideClassInfo2
  STDMETHODIMP GetClassInfo(ITypeInfo** info) noexcept override {
    if (info == nullptr) {
      return E_POINTER;
    }
    *info = nullptr;
    return giveTypeInfo(__uuidof(Coclass), info);
  }
  STDMETHODIMP GetGUID(DWORD kind, GUID* guid) noexcept override {
    if (guid == nullptr) {
      return E_POINTER;
    }
    *guid = GUID_NULL;
    if constexpr (hasEvents) {
      if (kind == GUIDKIND_DEFAULT_SOURCE_DISP_IID) {
        *guid = __uuidof(Source);
        return S_OK;
      }
    }
    return E_INVALIDARG;
  }

  // ISupportErrorInfo
  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) noexcept override {
    const bool supported = IsEqualIID(iid, __uuidof(Interface)) || IsEqualIID(iid, IID_IDispatch) ||
                           (IsEqualIID(iid, __uuidof(Further)) || ...);
    return supported ? S_OK : S_FALSE;
  }

 protected:
  /// Keeps the object alive over a call that runs client code.
  [[nodiscard]] ComPtr<Interface> keepAlive() noexcept { return ComPtr<Interface>(this); }

 private:
  [[nodiscard]] IUnknown* findInterface(REFIID iid) noexcept override {
    if (IsEqualIID(iid, __uuidof(Interface)) || IsEqualIID(iid, IID_IDispatch) ||
        IsEqualIID(iid, IID_IUnknown)) {
      return static_cast<Interface*>(this);
    }
    if (IsEqualIID(iid, IID_IProvideClassInfo2) || IsEqualIID(iid, IID_IProvideClassInfo)) {
      return static_cast<IProvideClassInfo2*>(this);
    }
    if (IsEqualIID(iid, IID_ISupportErrorInfo)) {
      return static_cast<ISupportErrorInfo*>(this);
    }
    if constexpr (hasEvents) {
      if (IsEqualIID(iid, IID_IConnectionPointContainer)) {
        return static_cast<IConnectionPointContainer*>(this);
      }
    }
    IUnknown* further = nullptr;
    ((IsEqualIID(iid, __uuidof(Further)) ? void(further = static_cast<Further*>(this)) : void()), ...);
    return further;
  }
};

}  // namespace zeq::automation
