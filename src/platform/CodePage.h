#pragma once
// Text in the system's narrow (ANSI) code page, for the platform functions that take no other. Strings are
// counted: an embedded NUL survives. A character that the other side does not have becomes its substitute.

#include <string>
#include <string_view>

namespace zeq::platform {

[[nodiscard]] std::string toAnsi(std::wstring_view text);
[[nodiscard]] std::wstring fromAnsi(std::string_view text);

}  // namespace zeq::platform
