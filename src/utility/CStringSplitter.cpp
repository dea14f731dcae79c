#include "utility/CStringSplitter.h"

#include <vector>

#include "automation/Enumerator.h"

namespace zeq::utility {

using automation::raising;
using automation::text;
using automation::Variant;
using automation::VariantEnumerator;

STDMETHODIMP CStringSplitter::get_CountEmptyFields(VARIANT_BOOL* result) noexcept {
  return raising(result, [&] { return splitter_.countsEmptyFields(); });
}

STDMETHODIMP CStringSplitter::put_CountEmptyFields(VARIANT_BOOL value) noexcept {
  return raising([&] { splitter_.setCountsEmptyFields(value != VARIANT_FALSE); });
}

STDMETHODIMP CStringSplitter::get_TrimFields(VARIANT_BOOL* result) noexcept {
  return raising(result, [&] { return splitter_.trimsFields(); });
}

STDMETHODIMP CStringSplitter::put_TrimFields(VARIANT_BOOL value) noexcept {
  return raising([&] { splitter_.setTrimsFields(value != VARIANT_FALSE); });
}

STDMETHODIMP CStringSplitter::get_FieldSep(BSTR* result) noexcept {
  return raising(result, [&] { return std::wstring_view(splitter_.separator()); });
}

STDMETHODIMP CStringSplitter::put_FieldSep(BSTR value) noexcept {
  return raising([&] { splitter_.setSeparator(text(value)); });
}

STDMETHODIMP CStringSplitter::get_Record(BSTR* result) noexcept {
  return raising(result, [&] { return std::wstring_view(splitter_.record()); });
}

STDMETHODIMP CStringSplitter::put_Record(BSTR value) noexcept {
  return raising([&] { splitter_.setRecord(text(value)); });
}

STDMETHODIMP CStringSplitter::get_count(short* result) noexcept {
  return raising(result, [&] { return splitter_.count(); });
}

STDMETHODIMP CStringSplitter::get_Field(short fldIdx, BSTR* result) noexcept {
  return raising(result, [&] { return splitter_.field(fldIdx); });
}

STDMETHODIMP CStringSplitter::get_NewEnum(IUnknown** result) noexcept {
  return raising(result, [&] {
    VariantEnumerator::Elements fields;
    fields.reserve(static_cast<std::size_t>(splitter_.count()));
    for (int position = 1; position <= splitter_.count(); ++position) {
      fields.push_back({Variant(splitter_.field(position))});
    }
    return VariantEnumerator::make(std::move(fields));
  });
}

STDMETHODIMP CStringSplitter::Split(BSTR sRecordA, BSTR sFieldSepA, VARIANT_BOOL fTrimFieldsA,
                                    VARIANT_BOOL fCountEmptyFieldsA, short* result) noexcept {
  return raising(result, [&] {
    splitter_.split(text(sRecordA), text(sFieldSepA), fTrimFieldsA != VARIANT_FALSE,
                    fCountEmptyFieldsA != VARIANT_FALSE);
    return splitter_.count();
  });
}

}  // namespace zeq::utility
