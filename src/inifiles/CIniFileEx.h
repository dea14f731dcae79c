#pragma once
// Reads and writes one ini file: single values, whole sections, lists of sections, keys and values.

#include <string>
#include <string_view>

#include "ZEQUtility2.h"
#include "automation/Object.h"
#include "automation/Variant.h"

namespace zeq::inifiles {

class CIniFileEx final : public automation::Object<CIniFileEx, ::CIniFileEx, ::_CIniFileEx> {
 public:
  STDMETHODIMP get_file(BSTR* result) noexcept override;
  STDMETHODIMP put_file(BSTR value) noexcept override;
  STDMETHODIMP get_section(BSTR* result) noexcept override;
  STDMETHODIMP put_section(BSTR value) noexcept override;
  STDMETHODIMP get_values(BSTR ValueName, VARIANT* result) noexcept override;
  STDMETHODIMP put_values(BSTR ValueName, VARIANT value) noexcept override;
  STDMETHODIMP getValue(BSTR ValueName, BSTR Default, VARIANT_BOOL* Failed,
                        VARIANT* result) noexcept override;
  STDMETHODIMP addSection(BSTR Name, VARIANT_BOOL* SetAsCurrent) noexcept override;
  STDMETHODIMP deleteSection(BSTR SectionName) noexcept override;
  STDMETHODIMP deleteKey(BSTR KeyName) noexcept override;
  STDMETHODIMP flush() noexcept override;
  STDMETHODIMP writeSection(VARIANT rValue) noexcept override;
  STDMETHODIMP enumSections(VARIANT* ArrayResult, short* result) noexcept override;
  STDMETHODIMP enumSectionKeys(VARIANT* ArrayResult, short* result) noexcept override;
  STDMETHODIMP enumSectionValues(VARIANT* ArrayResult, short* result) noexcept override;
  STDMETHODIMP enumSectionValuePairs(VARIANT* ArrayResult, short* result) noexcept override;

 private:
  /// The value of a name in the current section or the fallback, cut to 254 characters.
  [[nodiscard]] std::wstring read(std::wstring_view name, std::wstring_view fallback) const;
  void write(std::wstring_view name, std::wstring_view value);

  std::wstring file_;
  std::wstring section_;
};

}  // namespace zeq::inifiles
