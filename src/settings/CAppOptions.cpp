#include "settings/CAppOptions.h"

#include "settings/TypedValue.h"
#include "utility/MZEQUtilityStrings.h"

namespace zeq::settings {
namespace {

using automation::ComPtr;
using automation::quietly;
using automation::text;
using automation::Variant;

constexpr DISPID changedEvent = 1;

ComPtr<CAppSettings> groupIn(const Variant& item) {
  return ComPtr<CAppSettings>(static_cast<CAppSettings*>(static_cast<::_CAppSettings*>(item.get().pdispVal)));
}

/// Whether a new text replaces the present one: it is not blank, and it differs in more than case and outer
/// blanks.
bool replaces(std::wstring_view value, std::wstring_view present) {
  const std::wstring_view trimmed = utility::trimmed(value);
  return !trimmed.empty() && automation::foldCase(trimmed) != automation::foldCase(utility::trimmed(present));
}

}  // namespace

STDMETHODIMP CAppOptions::get_Hive(BSTR* result) noexcept {
  return quietly(result, [&] { return std::wstring_view(hive_); });
}

STDMETHODIMP CAppOptions::put_Hive(BSTR value) noexcept {
  return quietly([&] {
    if (replaces(text(value), hive_)) {
      hive_ = utility::trimmed(text(value));
    }
  });
}

STDMETHODIMP CAppOptions::get_RootKey(BSTR* result) noexcept {
  return quietly(result, [&] { return std::wstring_view(rootKey_); });
}

STDMETHODIMP CAppOptions::put_RootKey(BSTR value) noexcept {
  return quietly([&] {
    if (replaces(text(value), rootKey_)) {
      rootKey_ = text(value);  // With its outer blanks, unlike a hive.
    }
  });
}

STDMETHODIMP CAppOptions::get_AutoSave(VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] { return autoSave_; });
}

STDMETHODIMP CAppOptions::put_AutoSave(VARIANT_BOOL value) noexcept {
  return quietly([&] {
    const bool autoSave = value != VARIANT_FALSE;
    if (autoSave == autoSave_) {  // Any other value is ignored: options are always saved at once.
      autoSave_ = autoSave;
      for (const Group& each : cachedGroups()) {
        each->setAutoSave(autoSave);
      }
    }
  });
}

STDMETHODIMP CAppOptions::get_Group(BSTR grpKey, ::_CAppSettings** result) noexcept {
  return quietly(result, [&] { return group(text(grpKey)); });
}

STDMETHODIMP CAppOptions::WriteSetting(BSTR grpKey, BSTR KeyA, VARIANT ValueA) noexcept {
  return quietly([&] {
    const auto alive = keepAlive();
    group(text(grpKey))->WriteSetting(KeyA, ValueA);
    raise(changedEvent, grpKey, KeyA);
  });
}

STDMETHODIMP CAppOptions::ReadSetting(BSTR grpKey, BSTR KeyA, VARIANT defaultA, VARIANT* result) noexcept {
  return quietly(result, [&] {
    const auto alive = keepAlive();
    return read(grpKey, KeyA, defaultA);
  });
}

template <VARTYPE type, class Result>
HRESULT CAppOptions::readAs(BSTR group, BSTR key, const VARIANT& fallback, Result* result) noexcept {
  return quietly(result, [&] {
    const auto alive = keepAlive();
    return typedValue<type>(read(group, key, fallback).get(), fallback);
  });
}

STDMETHODIMP CAppOptions::ReadSettingString(BSTR grpKey, BSTR KeyA, VARIANT defaultA, BSTR* result) noexcept {
  return readAs<VT_BSTR>(grpKey, KeyA, defaultA, result);
}

STDMETHODIMP CAppOptions::ReadSettingBoolean(BSTR grpKey, BSTR KeyA, VARIANT defaultA,
                                             VARIANT_BOOL* result) noexcept {
  return readAs<VT_BOOL>(grpKey, KeyA, defaultA, result);
}

STDMETHODIMP CAppOptions::ReadSettingInteger(BSTR grpKey, BSTR KeyA, VARIANT defaultA,
                                             short* result) noexcept {
  return readAs<VT_I2>(grpKey, KeyA, defaultA, result);
}

STDMETHODIMP CAppOptions::ReadSettingLong(BSTR grpKey, BSTR KeyA, VARIANT defaultA, long* result) noexcept {
  return readAs<VT_I4>(grpKey, KeyA, defaultA, result);
}

STDMETHODIMP CAppOptions::ReadSettingSingle(BSTR grpKey, BSTR KeyA, VARIANT defaultA,
                                            float* result) noexcept {
  return readAs<VT_R4>(grpKey, KeyA, defaultA, result);
}

STDMETHODIMP CAppOptions::ReadSettingDouble(BSTR grpKey, BSTR KeyA, VARIANT defaultA,
                                            double* result) noexcept {
  return readAs<VT_R8>(grpKey, KeyA, defaultA, result);
}

STDMETHODIMP CAppOptions::Save() noexcept {
  return quietly([&] {
    const auto alive = keepAlive();
    for (const Group& each : cachedGroups()) {
      each->save();
    }
  });
}

STDMETHODIMP CAppOptions::Clear() noexcept {
  return quietly([&] { groups_->clear(); });
}

STDMETHODIMP CAppOptions::AsString(BSTR IndentA, BSTR* result) noexcept {
  return quietly(result, [&] {
    std::wstring described(text(IndentA));
    described.append(hive_).append(L" \\").append(rootKey_);
    const std::wstring inner = std::wstring(text(IndentA)) + L"    ";
    for (const Group& each : cachedGroups()) {
      described.append(L"\r\n").append(each->asString(inner));
    }
    return described;
  });
}

CAppOptions::Group CAppOptions::group(std::wstring_view key) const {
  if (const Variant* cached = groups_->find(key)) {
    return groupIn(*cached);
  }
  Group made = CAppSettings::make();
  made->setAutoSave(autoSave_);
  made->setHive(hive_);
  made->setRootKey(rootKey_);
  made->setSubKey(key);
  return made;
}

std::vector<CAppOptions::Group> CAppOptions::cachedGroups() const {
  std::vector<Group> result;
  for (long position = 1; position <= groups_->size(); ++position) {
    result.push_back(groupIn(groups_->at(position)));
  }
  return result;
}

Variant CAppOptions::read(BSTR group, BSTR key, const VARIANT& fallback) const {
  return this->group(text(group))->read(text(key), fallback);
}

}  // namespace zeq::settings
