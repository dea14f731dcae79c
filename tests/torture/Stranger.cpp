#include "torture/Stranger.h"

#include <algorithm>

namespace zeq::torture {

STDMETHODIMP Stranger::QueryInterface(REFIID iid, void** object) noexcept {
  const bool isHidden = kind_ == Kind::answersNoName && IsEqualIID(iid, IID_IDispatch);
  return ClientObject::QueryInterface(isHidden ? IID_NULL : iid, object);
}

STDMETHODIMP Stranger::GetIDsOfNames(REFIID /*reserved*/, wchar_t** /*names*/, UINT count, LCID /*locale*/,
                                     DISPID* ids) noexcept {
  const bool knows = kind_ == Kind::knowsEveryName;
  std::fill_n(ids, count, knows ? 1 : DISPID_UNKNOWN);
  return knows ? S_OK : DISP_E_UNKNOWNNAME;
}

STDMETHODIMP Stranger::Invoke(DISPID /*id*/, REFIID /*reserved*/, LCID /*locale*/, WORD /*flags*/,
                              DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                              UINT* /*argumentError*/) noexcept {
  return manners_.answer(*arguments, result, exception);
}

}  // namespace zeq::torture
