#include "automation/NamedCaller.h"

namespace zeq::automation {

HRESULT NamedCaller::findNames(wchar_t** names, UINT count, LCID locale, DISPID* ids) const noexcept {
  if (!extended_) {
    return target_->GetIDsOfNames(IID_NULL, names, count, locale, ids);
  }
  if (names == nullptr || ids == nullptr || count == 0) {
    return E_INVALIDARG;
  }
  for (UINT name = 0; name < count; ++name) {
    ids[name] = DISPID_UNKNOWN;  // The names of arguments stay unknown: there is no question for them.
  }
  Bstr name;
  *name.out() = SysAllocString(names[0]);
  if (name.get() == nullptr) {
    return E_OUTOFMEMORY;
  }
  const HRESULT outcome = extended_->GetDispID(name.get(), fdexNameCaseInsensitive, &ids[0]);
  return SUCCEEDED(outcome) && count > 1 ? DISP_E_UNKNOWNNAME : outcome;
}

HRESULT NamedCaller::invokeMember(DISPID id, LCID locale, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                                  EXCEPINFO* exception, UINT* argumentError) const noexcept {
  return extended_
             ? extended_->InvokeEx(id, locale, flags, arguments, result, exception, nullptr)
             : target_->Invoke(id, IID_NULL, locale, flags, arguments, result, exception, argumentError);
}

Variant NamedCaller::invoke(const wchar_t* name, WORD flags, VARIANTARG* arguments, UINT count) const {
  if (!target_) {
    throw Error(ErrorNumber::objectNotSet);
  }
  auto* writableName = const_cast<wchar_t*>(name);  // The platform's declaration lacks the const.
  DISPID id = DISPID_UNKNOWN;
  if (FAILED(findNames(&writableName, 1, LOCALE_USER_DEFAULT, &id))) {
    throw Error(ErrorNumber::memberNotSupported);
  }
  const bool isPut = flags == DISPATCH_PROPERTYPUT;
  DISPID newValue = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{arguments, isPut ? &newValue : nullptr, count, isPut ? 1U : 0U};
  Variant result;
  CallException exception;
  const HRESULT outcome = invokeMember(id, LOCALE_USER_DEFAULT, flags, &parameters,
                                       isPut ? nullptr : result.out(), exception.out(), nullptr);
  if (outcome == DISP_E_TYPEMISMATCH) {
    throw ArgumentRefused();
  }
  if (FAILED(outcome)) {
    throw exception.error(outcome);
  }
  return result;
}

}  // namespace zeq::automation
