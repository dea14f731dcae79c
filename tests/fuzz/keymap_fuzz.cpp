// Key-map lines: numbers against what the standard library reads, and mappings that come back as they were
// written.

#include <cmath>
#include <cwchar>
#include <limits>
#include <optional>
#include <regex>
#include <stdexcept>
#include <vector>

#include "fuzz/Input.h"
#include "keymap/KeyMapText.h"

namespace zeq::keymap {
namespace {

void checkNumber(const std::wstring& text) {
  static const std::wregex number(L" *[+-]? *([0-9]+\\.?[0-9]*|\\.[0-9]+)([eE][+-]?[0-9]+)? *");
  const bool isNumber = std::regex_match(text, number);
  // So few digits are exact in a long double.
  std::wstring joined;
  for (const wchar_t each : text) {
    joined.append(each != L' ' ? 1U : 0U, each);
  }
  const long double value = isNumber ? std::nearbyint(std::wcstold(joined.c_str(), nullptr)) : 0;
  const bool fits =
      value >= std::numeric_limits<std::int16_t>::min() && value <= std::numeric_limits<std::int16_t>::max();
  try {
    const std::optional<std::int16_t> read = integerIn(text);
    fuzz::require(read.has_value() == isNumber, "numbers are told from other texts");
    fuzz::require(!read || (fits && *read == value), "the integer is the nearest");
  } catch (const std::overflow_error&) {
    fuzz::require(isNumber && !fits, "what fits does not overflow");
  }
}

std::wstring trimmed(const std::wstring& text) {
  const std::size_t first = text.find_first_not_of(L' ');
  return first == std::wstring::npos ? L"" : text.substr(first, text.find_last_not_of(L' ') - first + 1);
}

void checkMapping(fuzz::Input& input, MappingReader& reader) {
  const std::wstring name = input.text(8, L"ab =;\"\x00E9");
  const std::wstring description = input.text(8, L"ab =;\"\x00E9");
  const Keystroke keystroke{input.any<std::int16_t>(), input.any<std::int16_t>()};
  const auto mapping = reader.read(mappingValue({name, description, keystroke}));
  fuzz::require(mapping.has_value(), "what was written is read");
  fuzz::require(mapping->name == trimmed(name) && mapping->description == trimmed(description),
                "texts lose their outer blanks only");
  fuzz::require(
      mapping->keystroke.keyCode == keystroke.keyCode && mapping->keystroke.shift == keystroke.shift,
      "the keystroke comes back");
}

void checkLine(const std::wstring& line, MappingReader& reader) {
  std::vector<std::wstring> fields(1);
  for (const wchar_t each : line) {
    if (each == L'|') {
      fields.emplace_back();
    } else {
      fields.back() += each;
    }
  }
  try {
    const auto mapping = reader.read(line);
    fuzz::require(mapping.has_value() == (fields.size() > 3), "four fields make a mapping");
    fuzz::require(
        !mapping || (mapping->name == trimmed(fields[0]) && mapping->description == trimmed(fields[1])),
        "the first two fields are its texts");
  } catch (const std::overflow_error&) {
    fuzz::require(fields.size() > 3 && line.size() > 7, "five digits and three separators overflow");
  }
}

}  // namespace
}  // namespace zeq::keymap

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zeq::fuzz::Input input(data, size);
  zeq::keymap::checkNumber(input.text(16, L"0123456789.eE+- 05"));
  zeq::keymap::MappingReader reader;
  zeq::keymap::checkMapping(input, reader);
  zeq::keymap::checkLine(input.text(20, L"|||ab 1"), reader);
  zeq::keymap::checkMapping(input, reader);
  return 0;
}
