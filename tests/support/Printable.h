#pragma once
// Texts for the messages of tests.

#include <string>
#include <string_view>

namespace zeq::test {

/// The text in plain ASCII: any other character is shown as #.
[[nodiscard]] inline std::string printable(std::wstring_view text) {
  std::string result;
  for (const wchar_t each : text) {
    result += each >= L' ' && each < 127 ? static_cast<char>(each) : '#';
  }
  return result;
}

}  // namespace zeq::test
