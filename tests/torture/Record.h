#pragma once
// A record of the client's own, of a type that the component cannot know and larger than any VARIANT.

#include <windows.h>
#include <oleauto.h>

#include <array>

#include "automation/ComPtr.h"
#include "automation/Variant.h"
#include "support/ClientObject.h"

namespace zeq::torture {

/// The type of one record, which is a part of it.
class Record final : public test::ClientObject<IDispatch, IRecordInfo> {
 public:
  /// A VARIANT with a record.
  [[nodiscard]] static automation::Variant make();
  /// Null if there is no memory for it.
  [[nodiscard]] static SAFEARRAY* makeArray(UINT dimensions, SAFEARRAYBOUND* bounds);

  /// How many there are.
  [[nodiscard]] static long alive() noexcept { return alive_; }

  STDMETHODIMP RecordInit(void* record) noexcept override;
  STDMETHODIMP RecordClear(void* record) noexcept override;
  STDMETHODIMP RecordCopy(void* source, void* target) noexcept override;
  STDMETHODIMP GetGuid(GUID* guid) noexcept override;
  STDMETHODIMP GetName(BSTR* name) noexcept override;
  STDMETHODIMP GetSize(ULONG* size) noexcept override;
  STDMETHODIMP GetTypeInfo(ITypeInfo** info) noexcept override;
  STDMETHODIMP GetField(void* record, const OLECHAR* name, VARIANT* value) noexcept override;
  STDMETHODIMP GetFieldNoCopy(void* record, const OLECHAR* name, VARIANT* value,
                              void** array) noexcept override;
  STDMETHODIMP PutField(ULONG flags, void* record, const OLECHAR* name, VARIANT* value) noexcept override;
  STDMETHODIMP PutFieldNoCopy(ULONG flags, void* record, const OLECHAR* name,
                              VARIANT* value) noexcept override;
  STDMETHODIMP GetFieldNames(ULONG* count, BSTR* names) noexcept override;
  STDMETHODIMP_(BOOL) IsMatchingType(IRecordInfo* other) noexcept override;
  STDMETHODIMP_(void*) RecordCreate() noexcept override;
  STDMETHODIMP RecordCreateCopy(void* source, void** target) noexcept override;
  STDMETHODIMP RecordDestroy(void* record) noexcept override;
  using ClientObject::GetTypeInfo;

 private:
  using Content = std::array<long long, 5>;

  Record() { ++alive_; }
  ~Record() override { --alive_; }

  Content content_{};
  static inline long alive_ = 0;
};

}  // namespace zeq::torture
