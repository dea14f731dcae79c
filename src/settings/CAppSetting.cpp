#include "settings/CAppSetting.h"

namespace zeq::settings {

using automation::quietly;
using automation::text;
using automation::Variant;

STDMETHODIMP CAppSetting::get_Key(BSTR* result) noexcept {
  return quietly(result, [&] { return std::wstring_view(setting_.key); });
}

STDMETHODIMP CAppSetting::put_Key(BSTR value) noexcept {
  return quietly([&] { setting_.key = text(value); });
}

STDMETHODIMP CAppSetting::get_value(VARIANT* result) noexcept {
  return quietly(result, [&] { return setting_.value; });
}

STDMETHODIMP CAppSetting::put_value(VARIANT value) noexcept {
  return quietly([&] {
    const auto alive = keepAlive();
    setting_.value = Variant(value);
  });
}

STDMETHODIMP CAppSetting::AsString(BSTR IndentA, BSTR* result) noexcept {
  return quietly(result, [&] {
    const auto alive = keepAlive();
    const Setting described = setting_;  // An object's default member may change the setting.
    return lineOf(described, text(IndentA));
  });
}

}  // namespace zeq::settings
