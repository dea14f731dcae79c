#pragma once
// An application's options, addressed by group and key, with an event for every write.

#include <string>
#include <string_view>
#include <vector>

#include "ZEQUtility2.h"
#include "automation/Collection.h"
#include "automation/Object.h"
#include "automation/Variant.h"
#include "settings/CAppSettings.h"

namespace zeq::settings {

class CAppOptions final
    : public automation::Object<CAppOptions, ::CAppOptions, ::_CAppOptions, ::__CAppOptions> {
 public:
  ~CAppOptions() override { groups_->clear(); }

  STDMETHODIMP get_Hive(BSTR* result) noexcept override;
  STDMETHODIMP put_Hive(BSTR value) noexcept override;
  STDMETHODIMP get_RootKey(BSTR* result) noexcept override;
  STDMETHODIMP put_RootKey(BSTR value) noexcept override;
  STDMETHODIMP get_AutoSave(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP put_AutoSave(VARIANT_BOOL value) noexcept override;
  STDMETHODIMP get_Group(BSTR grpKey, ::_CAppSettings** result) noexcept override;
  STDMETHODIMP WriteSetting(BSTR grpKey, BSTR KeyA, VARIANT ValueA) noexcept override;
  STDMETHODIMP ReadSetting(BSTR grpKey, BSTR KeyA, VARIANT defaultA, VARIANT* result) noexcept override;
  STDMETHODIMP ReadSettingString(BSTR grpKey, BSTR KeyA, VARIANT defaultA, BSTR* result) noexcept override;
  STDMETHODIMP ReadSettingBoolean(BSTR grpKey, BSTR KeyA, VARIANT defaultA,
                                  VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP ReadSettingInteger(BSTR grpKey, BSTR KeyA, VARIANT defaultA, short* result) noexcept override;
  STDMETHODIMP ReadSettingLong(BSTR grpKey, BSTR KeyA, VARIANT defaultA, long* result) noexcept override;
  STDMETHODIMP ReadSettingSingle(BSTR grpKey, BSTR KeyA, VARIANT defaultA, float* result) noexcept override;
  STDMETHODIMP ReadSettingDouble(BSTR grpKey, BSTR KeyA, VARIANT defaultA, double* result) noexcept override;
  STDMETHODIMP Save() noexcept override;
  STDMETHODIMP Clear() noexcept override;
  STDMETHODIMP AsString(BSTR IndentA, BSTR* result) noexcept override;

 private:
  using Group = automation::ComPtr<CAppSettings>;

  [[nodiscard]] Group group(std::wstring_view key) const;
  [[nodiscard]] std::vector<Group> cachedGroups() const;
  [[nodiscard]] automation::Variant read(BSTR group, BSTR key, const VARIANT& fallback) const;
  /// What the readers of one type do.
  template <VARTYPE type, class Result>
  HRESULT readAs(BSTR group, BSTR key, const VARIANT& fallback, Result* result) noexcept;

  std::wstring hive_;
  std::wstring rootKey_;
  bool autoSave_ = true;
  /// Groups under their keys. Every group is made anew, so that each read sees the store: none is ever added.
  automation::ComPtr<automation::Collection> groups_ = automation::Collection::make();
};

}  // namespace zeq::settings
