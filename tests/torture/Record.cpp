#include "torture/Record.h"

#include <objbase.h>

#include <cstring>

namespace zeq::torture {

automation::Variant Record::make() {
  automation::Variant result;
  auto* record = new Record();
  V_RECORD(&result.get()) = &record->content_;
  V_RECORDINFO(&result.get()) = record;
  result.get().vt = VT_RECORD;
  return result;
}

SAFEARRAY* Record::makeArray(UINT dimensions, SAFEARRAYBOUND* bounds) {
  const auto type = automation::ComPtr<IRecordInfo>::attach(new Record());
  return SafeArrayCreateEx(VT_RECORD, dimensions, bounds, type.get());
}

STDMETHODIMP Record::RecordInit(void* record) noexcept {
  std::memset(record, 0, sizeof(Content));
  return S_OK;
}

STDMETHODIMP Record::RecordClear(void* record) noexcept {
  return RecordInit(record);
}

STDMETHODIMP Record::RecordCopy(void* source, void* target) noexcept {
  std::memmove(target, source, sizeof(Content));
  return S_OK;
}

STDMETHODIMP Record::GetGuid(GUID* guid) noexcept {
  *guid = GUID_NULL;
  return S_OK;
}

STDMETHODIMP Record::GetName(BSTR* name) noexcept {
  *name = SysAllocString(L"Record");
  return *name != nullptr ? S_OK : E_OUTOFMEMORY;
}

STDMETHODIMP Record::GetSize(ULONG* size) noexcept {
  *size = sizeof(Content);
  return S_OK;
}

STDMETHODIMP Record::GetTypeInfo(ITypeInfo** info) noexcept {
  *info = nullptr;
  return E_NOTIMPL;
}

STDMETHODIMP Record::GetField(void* /*record*/, const OLECHAR* /*name*/, VARIANT* /*value*/) noexcept {
  return E_NOTIMPL;
}

STDMETHODIMP Record::GetFieldNoCopy(void* /*record*/, const OLECHAR* /*name*/, VARIANT* /*value*/,
                                    void** /*array*/) noexcept {
  return E_NOTIMPL;
}

STDMETHODIMP Record::PutField(ULONG /*flags*/, void* /*record*/, const OLECHAR* /*name*/,
                              VARIANT* /*value*/) noexcept {
  return E_NOTIMPL;
}

STDMETHODIMP Record::PutFieldNoCopy(ULONG /*flags*/, void* /*record*/, const OLECHAR* /*name*/,
                                    VARIANT* /*value*/) noexcept {
  return E_NOTIMPL;
}

STDMETHODIMP Record::GetFieldNames(ULONG* count, BSTR* /*names*/) noexcept {
  *count = 0;
  return S_OK;
}

STDMETHODIMP_(BOOL) Record::IsMatchingType(IRecordInfo* other) noexcept {
  return other == this ? TRUE : FALSE;
}

STDMETHODIMP_(void*) Record::RecordCreate() noexcept {
  void* record = CoTaskMemAlloc(sizeof(Content));
  if (record != nullptr) {
    RecordInit(record);
  }
  return record;
}

STDMETHODIMP Record::RecordCreateCopy(void* source, void** target) noexcept {
  *target = RecordCreate();
  return *target != nullptr ? RecordCopy(source, *target) : E_OUTOFMEMORY;
}

STDMETHODIMP Record::RecordDestroy(void* record) noexcept {
  if (record != &content_) {
    CoTaskMemFree(record);
  }
  return S_OK;
}

}  // namespace zeq::torture
