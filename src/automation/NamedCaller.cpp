#include "automation/NamedCaller.h"

namespace zeq::automation {

Variant NamedCaller::invoke(const wchar_t* name, WORD flags, VARIANTARG* arguments, UINT count) const {
  if (!target_) {
    throw Error(ErrorNumber::objectNotSet);
  }
  auto* writableName = const_cast<wchar_t*>(name);  // The platform's declaration lacks the const.
  DISPID id = DISPID_UNKNOWN;
  if (FAILED(target_->GetIDsOfNames(IID_NULL, &writableName, 1, LOCALE_USER_DEFAULT, &id))) {
    throw Error(ErrorNumber::memberNotSupported);
  }
  const bool isPut = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  DISPID newValue = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{arguments, isPut ? &newValue : nullptr, count, isPut ? 1U : 0U};
  Variant result;
  CallException exception;
  const HRESULT outcome = target_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                          isPut ? nullptr : result.out(), exception.out(), nullptr);
  if (FAILED(outcome)) {
    throw exception.error(outcome);
  }
  return result;
}

}  // namespace zeq::automation
