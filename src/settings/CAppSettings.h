#pragma once
// The settings of one group, cached, and stored as texts under one registry key or in one section of an ini
// file.

#include <list>
#include <string>
#include <string_view>
#include <unordered_map>

#include "ZEQUtility2.h"
#include "automation/Object.h"
#include "automation/Variant.h"
#include "settings/Setting.h"

namespace zeq::settings {

class CAppSettings final : public automation::Object<CAppSettings, ::CAppSettings, ::_CAppSettings> {
 public:
  ~CAppSettings() override { clear(); }

  // For the library's own classes: the members of the same names below.
  void setHive(std::wstring_view hive);
  void setRootKey(std::wstring_view key) { rootKey_ = key; }
  void setSubKey(std::wstring_view key) { subKey_ = key; }
  void setAutoSave(bool autoSave) noexcept { autoSave_ = autoSave; }
  void write(std::wstring_view key, const VARIANT& value);
  [[nodiscard]] automation::Variant read(std::wstring_view key, const VARIANT& fallback);
  void save() const;
  [[nodiscard]] std::wstring asString(std::wstring_view indent) const;

  // _CAppSettings
  STDMETHODIMP get_SubKey(BSTR* result) noexcept override;
  STDMETHODIMP put_SubKey(BSTR value) noexcept override;
  STDMETHODIMP get_RootKey(BSTR* result) noexcept override;
  STDMETHODIMP put_RootKey(BSTR value) noexcept override;
  STDMETHODIMP get_Hive(BSTR* result) noexcept override;
  STDMETHODIMP put_Hive(BSTR value) noexcept override;
  STDMETHODIMP get_AutoSave(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP put_AutoSave(VARIANT_BOOL value) noexcept override;
  STDMETHODIMP WriteSetting(BSTR KeyA, VARIANT ValueA) noexcept override;
  STDMETHODIMP ReadSetting(BSTR KeyA, VARIANT defaultA, VARIANT* result) noexcept override;
  STDMETHODIMP ReadSettingString(BSTR KeyA, VARIANT defaultA, BSTR* result) noexcept override;
  STDMETHODIMP ReadSettingBoolean(BSTR KeyA, VARIANT defaultA, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP ReadSettingInteger(BSTR KeyA, VARIANT defaultA, short* result) noexcept override;
  STDMETHODIMP ReadSettingLong(BSTR KeyA, VARIANT defaultA, long* result) noexcept override;
  STDMETHODIMP ReadSettingSingle(BSTR KeyA, VARIANT defaultA, float* result) noexcept override;
  STDMETHODIMP ReadSettingDouble(BSTR KeyA, VARIANT defaultA, double* result) noexcept override;
  STDMETHODIMP Save() noexcept override;
  STDMETHODIMP Clear() noexcept override;
  STDMETHODIMP AsString(BSTR IndentA, BSTR* result) noexcept override;

 private:
  [[nodiscard]] std::wstring storePath() const { return rootKey_ + L"\\" + subKey_; }
  /// What the readers of one type do.
  template <VARTYPE type, class Result>
  HRESULT readAs(BSTR key, const VARIANT& fallback, Result* result) noexcept;
  void cache(std::wstring_view key, automation::Variant value);
  void store(std::wstring_view key, const VARIANT& value) const;
  void clear() noexcept;

  std::wstring subKey_;
  std::wstring rootKey_;
  std::wstring hive_;
  bool autoSave_ = true;
  std::list<Setting> settings_;
  std::unordered_map<std::wstring_view, Setting*> byKey_;  ///< The texts are those of the settings.
};

}  // namespace zeq::settings
