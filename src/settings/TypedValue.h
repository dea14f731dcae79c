#pragma once
// What the typed readers make of a setting.

#include <string>

#include "automation/Variant.h"

namespace zeq::settings {

/// A setting's value in another type: the value itself if it converts, else the default if it is given and
/// converts, else the type's zero.
template <VARTYPE type>
[[nodiscard]] auto typedValue(const VARIANT& value, const VARIANT& fallback) {
  automation::Variant converted;
  const bool isConverted = value.vt != type;
  if (isConverted && FAILED(automation::changeType(converted.get(), value, type)) &&
      (automation::isMissing(fallback) || FAILED(automation::changeType(converted.get(), fallback, type)))) {
    converted = automation::Variant().to(type);
  }
  const VARIANT& result = isConverted ? converted.get() : value;
  if constexpr (type == VT_BSTR) {
    return std::wstring(automation::text(result.bstrVal));
  } else if constexpr (type == VT_BOOL) {
    return result.boolVal != VARIANT_FALSE;
  } else if constexpr (type == VT_I2) {
    return result.iVal;
  } else if constexpr (type == VT_I4) {
    return result.lVal;
  } else if constexpr (type == VT_R4) {
    return result.fltVal;
  } else {
    static_assert(type == VT_R8);
    return result.dblVal;
  }
}

}  // namespace zeq::settings
