#include "settings/CAppSettings.h"

#include <utility>
#include <vector>

#include "settings/MRegistry.h"
#include "settings/TypedValue.h"
#include "utility/MZEQUtilityStrings.h"

namespace zeq::settings {
namespace {

using automation::quietly;
using automation::text;
using automation::Variant;

/// All values are stored as texts.
constexpr wchar_t textType = L'S';

}  // namespace

void CAppSettings::setHive(std::wstring_view hive) {
  const std::wstring_view trimmed = utility::trimmed(hive);
  if (!trimmed.empty()) {
    hive_ = trimmed;
  }
}

void CAppSettings::write(std::wstring_view key, const VARIANT& value) {
  const Variant written(value);
  cache(key, written);
  if (autoSave_) {
    store(key, written.get());
  }
}

Variant CAppSettings::read(std::wstring_view key, const VARIANT& fallback) {
  if (const auto found = byKey_.find(key); found != byKey_.end()) {
    return found->second->value;
  }
  StoredValue stored = Reg_GetValue(hive_, storePath(), key, textType, Variant(std::wstring_view()));
  if (stored.status == ERROR_SUCCESS && stored.isStoredText) {
    // Storing it again could only undo what another program writes meanwhile.
    cache(key, stored.value);
    return std::move(stored.value);
  }
  Variant loaded;
  if (stored.status == ERROR_SUCCESS) {
    loaded = std::move(stored.value);
  } else if (!automation::isMissing(fallback)) {
    loaded = Variant(fallback);
  }
  if (loaded.type() != VT_EMPTY) {
    // Through the member, whose failures do not end the read.
    WriteSetting(automation::Bstr(key).get(), loaded.get());
  }
  return loaded;
}

void CAppSettings::save() const {
  // A copy: taking an object's text may run client code that changes the group.
  const std::list<Setting> saved = settings_;
  for (const Setting& setting : saved) {
    store(setting.key, setting.value.get());
  }
}

std::wstring CAppSettings::asString(std::wstring_view indent) const {
  const std::list<Setting> described = settings_;
  std::wstring result(indent);
  result.append(L"Group: ").append(subKey_);
  const std::wstring inner = std::wstring(indent) + L"    ";
  for (const Setting& setting : described) {
    result.append(L"\r\n").append(lineOf(setting, inner));
  }
  return result;
}

STDMETHODIMP CAppSettings::get_SubKey(BSTR* result) noexcept {
  return quietly(result, [&] { return std::wstring_view(subKey_); });
}

STDMETHODIMP CAppSettings::put_SubKey(BSTR value) noexcept {
  return quietly([&] { setSubKey(text(value)); });
}

STDMETHODIMP CAppSettings::get_RootKey(BSTR* result) noexcept {
  return quietly(result, [&] { return std::wstring_view(rootKey_); });
}

STDMETHODIMP CAppSettings::put_RootKey(BSTR value) noexcept {
  return quietly([&] { setRootKey(text(value)); });
}

STDMETHODIMP CAppSettings::get_Hive(BSTR* result) noexcept {
  return quietly(result, [&] { return std::wstring_view(hive_); });
}

STDMETHODIMP CAppSettings::put_Hive(BSTR value) noexcept {
  return quietly([&] { setHive(text(value)); });
}

STDMETHODIMP CAppSettings::get_AutoSave(VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] { return autoSave_; });
}

STDMETHODIMP CAppSettings::put_AutoSave(VARIANT_BOOL value) noexcept {
  return quietly([&] { setAutoSave(value != VARIANT_FALSE); });
}

STDMETHODIMP CAppSettings::WriteSetting(BSTR KeyA, VARIANT ValueA) noexcept {
  return quietly([&] {
    const auto alive = keepAlive();
    write(text(KeyA), ValueA);
  });
}

STDMETHODIMP CAppSettings::ReadSetting(BSTR KeyA, VARIANT defaultA, VARIANT* result) noexcept {
  return quietly(result, [&] {
    const auto alive = keepAlive();
    return read(text(KeyA), defaultA);
  });
}

template <VARTYPE type, class Result>
HRESULT CAppSettings::readAs(BSTR key, const VARIANT& fallback, Result* result) noexcept {
  return quietly(result, [&] {
    const auto alive = keepAlive();
    return typedValue<type>(read(text(key), fallback).get(), fallback);
  });
}

STDMETHODIMP CAppSettings::ReadSettingString(BSTR KeyA, VARIANT defaultA, BSTR* result) noexcept {
  return readAs<VT_BSTR>(KeyA, defaultA, result);
}

STDMETHODIMP CAppSettings::ReadSettingBoolean(BSTR KeyA, VARIANT defaultA, VARIANT_BOOL* result) noexcept {
  return readAs<VT_BOOL>(KeyA, defaultA, result);
}

STDMETHODIMP CAppSettings::ReadSettingInteger(BSTR KeyA, VARIANT defaultA, short* result) noexcept {
  return readAs<VT_I2>(KeyA, defaultA, result);
}

STDMETHODIMP CAppSettings::ReadSettingLong(BSTR KeyA, VARIANT defaultA, long* result) noexcept {
  return readAs<VT_I4>(KeyA, defaultA, result);
}

STDMETHODIMP CAppSettings::ReadSettingSingle(BSTR KeyA, VARIANT defaultA, float* result) noexcept {
  return readAs<VT_R4>(KeyA, defaultA, result);
}

STDMETHODIMP CAppSettings::ReadSettingDouble(BSTR KeyA, VARIANT defaultA, double* result) noexcept {
  return readAs<VT_R8>(KeyA, defaultA, result);
}

STDMETHODIMP CAppSettings::Save() noexcept {
  return quietly([&] {
    const auto alive = keepAlive();
    save();
  });
}

STDMETHODIMP CAppSettings::Clear() noexcept {
  return quietly([&] {
    const auto alive = keepAlive();
    clear();
  });
}

STDMETHODIMP CAppSettings::AsString(BSTR IndentA, BSTR* result) noexcept {
  return quietly(result, [&] {
    const auto alive = keepAlive();
    return asString(text(IndentA));
  });
}

void CAppSettings::cache(std::wstring_view key, Variant value) {
  if (const auto found = byKey_.find(key); found != byKey_.end()) {
    std::swap(found->second->value, value);  // The old value goes last: releasing it may run client code.
    return;
  }
  settings_.push_back({std::wstring(key), std::move(value)});
  try {
    byKey_.emplace(settings_.back().key, &settings_.back());
  } catch (...) {
    settings_.pop_back();
    throw;
  }
}

void CAppSettings::store(std::wstring_view key, const VARIANT& value) const {
  Reg_SetValue(hive_, storePath(), key, textType, value);
}

/// Keeps the last setting.
void CAppSettings::clear() noexcept {
  while (settings_.size() > 1) {
    std::list<Setting> removed;
    removed.splice(removed.begin(), settings_, settings_.begin());
    byKey_.erase(removed.front().key);
  }
}

}  // namespace zeq::settings
