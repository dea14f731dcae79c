#pragma once
// Reads named values from one section of an ini file at a time, and knows the key names of that section.

#include <string>
#include <string_view>

#include "ZEQUtility2.h"
#include "automation/Collection.h"
#include "automation/Object.h"

namespace zeq::inifiles {

class CIniFile final : public automation::Object<CIniFile, ::CIniFile, ::_CIniFile> {
 public:
  ~CIniFile() override;

  // For the library's own classes: the members of the same names below.
  void setFileName(std::wstring_view name) { fileName_ = name; }
  void setSection(std::wstring_view name);
  [[nodiscard]] std::wstring getString(std::wstring_view key, std::wstring_view section = {},
                                       std::wstring_view fallback = {});

  // _CIniFile
  STDMETHODIMP Create(BSTR* fName) noexcept override;
  STDMETHODIMP get_FileName(BSTR* result) noexcept override;
  STDMETHODIMP put_FileName(BSTR* value) noexcept override;
  STDMETHODIMP get_section(BSTR* result) noexcept override;
  STDMETHODIMP put_section(BSTR value) noexcept override;
  STDMETHODIMP get_Keys(::_Collection** result) noexcept override;
  STDMETHODIMP GetString(BSTR* Key, BSTR* SectionName, BSTR* Default, BSTR* result) noexcept override;

 private:
  [[nodiscard]] automation::ComPtr<automation::Collection> keys();
  void readKeys();

  std::wstring fileName_;
  std::wstring section_;
  automation::ComPtr<automation::Collection> keys_;
};

}  // namespace zeq::inifiles
