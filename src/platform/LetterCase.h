#pragma once
// The letter case of texts, by the system's rules.

#include <string>
#include <string_view>

namespace zeq::platform {

/// The text in lower case, character by character.
[[nodiscard]] std::wstring lowerCase(std::wstring_view text);

}  // namespace zeq::platform
