#pragma once
// One setting: a key and a value of any type.

#include <string>
#include <string_view>

#include "automation/Variant.h"

namespace zeq::settings {

struct Setting {
  std::wstring key;
  automation::Variant value;
};

/// The setting in one line: "[Width] 80". A value without a text, such as an object, stays blank.
[[nodiscard]] std::wstring lineOf(const Setting& setting, std::wstring_view indent);

}  // namespace zeq::settings
