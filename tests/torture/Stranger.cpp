#include "torture/Stranger.h"

#include <algorithm>

namespace zeq::torture {

STDMETHODIMP Stranger::QueryInterface(REFIID iid, void** object) noexcept {
  const bool isKnown =
      IsEqualIID(iid, IID_IUnknown) || (IsEqualIID(iid, IID_IDispatch) && kind_ != Kind::answersNoName);
  *object = isKnown ? this : nullptr;
  if (!isKnown) {
    return E_NOINTERFACE;
  }
  AddRef();
  return S_OK;
}

STDMETHODIMP_(ULONG) Stranger::Release() noexcept {
  const ULONG left = --references_;
  if (left == 0) {
    delete this;
  }
  return left;
}

STDMETHODIMP Stranger::GetTypeInfoCount(UINT* count) noexcept {
  *count = 0;
  return S_OK;
}

STDMETHODIMP Stranger::GetTypeInfo(UINT /*index*/, LCID /*locale*/, ITypeInfo** info) noexcept {
  *info = nullptr;
  return E_NOTIMPL;
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
  return answer_(*arguments, result, exception);
}

}  // namespace zeq::torture
