#pragma once
// The version of a named thing, compared with other versions and read from an ini file.

#include <string>

#include "ZEQUtility2.h"
#include "automation/Object.h"

namespace zeq::inifiles {

class CVersionInfo final : public automation::Object<CVersionInfo, ::CVersionInfo, ::_CVersionInfo> {
 public:
  STDMETHODIMP get_ItemName(BSTR* result) noexcept override;
  STDMETHODIMP put_ItemName(BSTR value) noexcept override;
  STDMETHODIMP get_CreationDate(DATE* result) noexcept override;
  STDMETHODIMP put_CreationDate(DATE value) noexcept override;
  STDMETHODIMP get_VerMajor(long* result) noexcept override;
  STDMETHODIMP put_VerMajor(long value) noexcept override;
  STDMETHODIMP get_VerMinor(long* result) noexcept override;
  STDMETHODIMP put_VerMinor(long value) noexcept override;
  STDMETHODIMP get_Revision(long* result) noexcept override;
  STDMETHODIMP put_Revision(long value) noexcept override;
  STDMETHODIMP get_description(BSTR* result) noexcept override;
  STDMETHODIMP put_description(BSTR value) noexcept override;
  STDMETHODIMP Clear() noexcept override;
  STDMETHODIMP IsEqualTo(long* mj, long* mn, long* rv, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP IsLaterThan(long* mj, long* mn, long* rv, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP IsLaterThanVer(::_CVersionInfo** ver, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP ReadFromIniFile(BSTR* fn, BSTR* sectID, VARIANT_BOOL* result) noexcept override;

 private:
  struct Fields {
    std::wstring itemName;
    DATE creationDate = 0;
    long major = 0;
    long minor = 0;
    long revision = 0;
    std::wstring description;
  };
  Fields fields_;
};

}  // namespace zeq::inifiles
