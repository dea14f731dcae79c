#include "automation/CallOut.h"

namespace zeq::automation {

CallException::~CallException() {
  SysFreeString(info_.bstrSource);
  SysFreeString(info_.bstrDescription);
  SysFreeString(info_.bstrHelpFile);
}

Error CallException::error(HRESULT outcome) {
  switch (outcome) {
    case DISP_E_MEMBERNOTFOUND:
    case DISP_E_UNKNOWNNAME:
      return Error(ErrorNumber::memberNotSupported);
    case DISP_E_EXCEPTION:
      break;
    default:
      return Error(outcome);
  }
  if (info_.pfnDeferredFillIn != nullptr) {
    info_.pfnDeferredFillIn(&info_);
  }
  // An exception carries an HRESULT or, from old clients, an error number.
  const HRESULT code = FAILED(info_.scode) ? info_.scode : codeOf(static_cast<ErrorNumber>(info_.wCode));
  return {code, std::wstring(text(info_.bstrDescription))};
}

}  // namespace zeq::automation
