#pragma once
// A key and a value, for clients that keep settings of their own.

#include "ZEQUtility2.h"
#include "automation/Object.h"
#include "settings/Setting.h"

namespace zeq::settings {

class CAppSetting final : public automation::Object<CAppSetting, ::CAppSetting, ::_CAppSetting> {
 public:
  STDMETHODIMP get_Key(BSTR* result) noexcept override;
  STDMETHODIMP put_Key(BSTR value) noexcept override;
  STDMETHODIMP get_value(VARIANT* result) noexcept override;
  STDMETHODIMP put_value(VARIANT value) noexcept override;
  STDMETHODIMP AsString(BSTR IndentA, BSTR* result) noexcept override;

 private:
  Setting setting_;
};

}  // namespace zeq::settings
