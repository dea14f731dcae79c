#pragma once
// Calls an automation object that is known by the names of its members only.

#include <windows.h>
#include <dispex.h>
#include <oleauto.h>

#include <utility>

#include "automation/CallOut.h"
#include "automation/ComPtr.h"
#include "automation/Variant.h"

namespace zeq::automation {

/// The called object took an argument for one of a wrong type, before it did anything.
class ArgumentRefused : public Error {
 public:
  ArgumentRefused() : Error(DISP_E_TYPEMISMATCH) {}
};

/// An object that has IDispatchEx is called through it: the instances of a script's class may answer nothing
/// through IDispatch itself. The members throw Error: number 438 for a name that the object does not have,
/// ArgumentRefused, else what the object reports.
class NamedCaller {
 public:
  explicit NamedCaller(IDispatch* target) noexcept
      : target_(target), extended_(target_.query<IDispatchEx>()) {}

  [[nodiscard]] IDispatch* target() const noexcept { return target_.get(); }

  /// What IDispatch::GetIDsOfNames and IDispatch::Invoke of the target answer, for those that pass its calls
  /// on. The target must not be null.
  HRESULT findNames(wchar_t** names, UINT count, LCID locale, DISPID* ids) const noexcept;
  HRESULT invokeMember(DISPID id, LCID locale, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                       EXCEPINFO* exception, UINT* argumentError) const noexcept;

  /// Calls a method. See CallArgument for what can be passed.
  template <class... Arguments>
  Variant call(const wchar_t* name, Arguments&&... arguments) const {
    return invoke(name, DISPATCH_METHOD, std::forward<Arguments>(arguments)...);
  }

  /// Reads a property.
  template <class... Arguments>
  [[nodiscard]] Variant get(const wchar_t* name, Arguments&&... arguments) const {
    return invoke(name, DISPATCH_PROPERTYGET, std::forward<Arguments>(arguments)...);
  }

  /// Assigns a value to a property. The value comes last, after the property's own arguments.
  template <class... Arguments>
  void put(const wchar_t* name, Arguments&&... argumentsAndValue) const {
    invoke(name, DISPATCH_PROPERTYPUT, std::forward<Arguments>(argumentsAndValue)...);
  }

 private:
  template <class... Arguments>
  Variant invoke(const wchar_t* name, WORD flags, Arguments&&... arguments) const {
    CallArguments list(std::forward<Arguments>(arguments)...);
    return invoke(name, flags, list.data(), list.size());
  }
  Variant invoke(const wchar_t* name, WORD flags, VARIANTARG* arguments, UINT count) const;

  ComPtr<IDispatch> target_;
  ComPtr<IDispatchEx> extended_;
};

}  // namespace zeq::automation
