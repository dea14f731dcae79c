#pragma once
// Key mappings as the lines of a key-map file.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zeq::keymap {

struct Keystroke {
  std::int16_t keyCode = 0;
  std::int16_t shift = 0;
};

/// A named command and the keystroke that it is bound to.
struct Mapping {
  std::wstring name;
  std::wstring description;
  Keystroke keystroke;
};

/// The integer nearest to the number that a text holds, ties to even. A number has digits with an optional
/// decimal part and exponent; blanks and a sign may stand before it and blanks behind it. None if the text
/// holds no number; throws std::overflow_error if the integer has more than 16 bits.
[[nodiscard]] std::optional<std::int16_t> integerIn(std::wstring_view text);

/// The key that a file has the number of its mappings under, and that of one of them, counted from 1.
inline constexpr std::wstring_view countKey = L"NMappings";
[[nodiscard]] std::wstring mappingKey(int position);

/// What stands under a mapping's key.
[[nodiscard]] std::wstring mappingValue(const Mapping& mapping);

/// Reads the mappings of a file one after the other.
class MappingReader {
 public:
  /// The mapping that a value describes; none if it has too few fields. A key code or shift state that is no
  /// number is that of the value before. Throws std::overflow_error for one that has more than 16 bits.
  [[nodiscard]] std::optional<Mapping> read(std::wstring_view value);

 private:
  Keystroke last_;
};

}  // namespace zeq::keymap
