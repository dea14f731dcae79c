#pragma once
// A field splitter for clients.

#include "ZEQUtility2.h"
#include "automation/Object.h"
#include "platform/LetterCase.h"
#include "utility/FieldSplitter.h"

namespace zeq::utility {

class CStringSplitter final
    : public automation::Object<CStringSplitter, ::CStringSplitter, ::_CStringSplitter> {
 public:
  STDMETHODIMP get_CountEmptyFields(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP put_CountEmptyFields(VARIANT_BOOL value) noexcept override;
  STDMETHODIMP get_TrimFields(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP put_TrimFields(VARIANT_BOOL value) noexcept override;
  STDMETHODIMP get_FieldSep(BSTR* result) noexcept override;
  STDMETHODIMP put_FieldSep(BSTR value) noexcept override;
  STDMETHODIMP get_Record(BSTR* result) noexcept override;
  STDMETHODIMP put_Record(BSTR value) noexcept override;
  STDMETHODIMP get_count(short* result) noexcept override;
  STDMETHODIMP get_Field(short fldIdx, BSTR* result) noexcept override;
  STDMETHODIMP get_NewEnum(IUnknown** result) noexcept override;
  STDMETHODIMP Split(BSTR sRecordA, BSTR sFieldSepA, VARIANT_BOOL fTrimFieldsA,
                     VARIANT_BOOL fCountEmptyFieldsA, short* result) noexcept override;

 private:
  FieldSplitter splitter_{&platform::lowerCase};
};

}  // namespace zeq::utility
