#include "settings/Setting.h"

namespace zeq::settings {

std::wstring lineOf(const Setting& setting, std::wstring_view indent) {
  std::wstring line(indent);
  line.append(L"[").append(setting.key).append(L"] ");
  automation::Variant converted;
  if (SUCCEEDED(automation::changeType(converted.get(), setting.value.get(), VT_BSTR))) {
    line.append(automation::text(converted.get().bstrVal));
  }
  return line;
}

}  // namespace zeq::settings
