#include "keymap/KeyMapText.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "utility/FieldSplitter.h"
#include "utility/Format.h"
#include "utility/MZEQUtilityStrings.h"

namespace zeq::keymap {
namespace {

constexpr std::wstring_view separator = L"|";

/// A number as 0.d1d2d3… times a power of ten; d1 is not zero.
struct Decimal {
  bool negative = false;
  std::wstring digits;
  long exponent = 0;
};

bool isDigit(wchar_t character) noexcept {
  return character >= L'0' && character <= L'9';
}

/// Takes the digits at the start of a text off it.
std::wstring_view takeDigits(std::wstring_view& text) noexcept {
  const auto end = std::find_if_not(text.begin(), text.end(), isDigit);
  const auto digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
  text.remove_prefix(digits.size());
  return digits;
}

/// Takes a character of a set off the start of a text; a NUL if there is none.
wchar_t takeOneOf(std::wstring_view set, std::wstring_view& text) noexcept {
  if (text.empty() || set.find(text.front()) == std::wstring_view::npos) {
    return L'\0';
  }
  const wchar_t taken = text.front();
  text.remove_prefix(1);
  return taken;
}

/// The number that digits make, or one that is too large for any use.
long saturated(std::wstring_view digits) noexcept {
  constexpr long most = 100000000;
  long value = 0;
  for (const wchar_t digit : digits) {
    value = std::min(most, value * 10 + (digit - L'0'));
  }
  return value;
}

std::optional<Decimal> decimalIn(std::wstring_view text) {
  Decimal number;
  text = utility::trimmed(text);
  number.negative = takeOneOf(L"+-", text) == L'-';
  text = utility::trimmed(text);
  number.digits = takeDigits(text);
  number.exponent = static_cast<long>(number.digits.size());
  if (takeOneOf(L".", text) != L'\0') {
    number.digits += takeDigits(text);
  }
  if (number.digits.empty()) {
    return std::nullopt;
  }
  if (takeOneOf(L"eE", text) != L'\0') {
    const bool negative = takeOneOf(L"+-", text) == L'-';
    const std::wstring_view digits = takeDigits(text);
    if (digits.empty()) {
      return std::nullopt;
    }
    number.exponent += negative ? -saturated(digits) : saturated(digits);
  }
  if (!text.empty()) {
    return std::nullopt;
  }
  const std::size_t zeros = std::min(number.digits.find_first_not_of(L'0'), number.digits.size());
  number.digits.erase(0, zeros);
  number.exponent -= static_cast<long>(zeros);
  return number;
}

/// Whether what follows the first `whole` digits rounds away from zero, ties to even.
bool roundsUp(const std::wstring& digits, std::size_t whole, bool isOdd) noexcept {
  if (whole >= digits.size() || digits[whole] != L'5') {
    return whole < digits.size() && digits[whole] > L'5';
  }
  return isOdd || digits.find_first_not_of(L'0', whole + 1) != std::wstring::npos;
}

std::int16_t rounded(const Decimal& number) {
  constexpr long mostDigits = std::numeric_limits<std::int16_t>::digits10 + 1;
  if (number.digits.empty() || number.exponent < 0) {
    return 0;
  }
  if (number.exponent > mostDigits) {
    throw std::overflow_error("the number has more than 16 bits");
  }
  const auto whole = static_cast<std::size_t>(number.exponent);
  int value = 0;
  for (std::size_t i = 0; i < whole; ++i) {
    value = value * 10 + (i < number.digits.size() ? number.digits[i] - L'0' : 0);
  }
  value += roundsUp(number.digits, whole, value % 2 != 0) ? 1 : 0;
  value = number.negative ? -value : value;
  if (value < std::numeric_limits<std::int16_t>::min() || value > std::numeric_limits<std::int16_t>::max()) {
    throw std::overflow_error("the number has more than 16 bits");
  }
  return static_cast<std::int16_t>(value);
}

}  // namespace

std::optional<std::int16_t> integerIn(std::wstring_view text) {
  const std::optional<Decimal> number = decimalIn(text);
  return number ? std::optional(rounded(*number)) : std::nullopt;
}

std::wstring mappingKey(int position) {
  return L"Mapping_" + utility::formatInteger(position, 1);
}

std::wstring mappingValue(const Mapping& mapping) {
  std::wstring value = mapping.name;
  value.append(separator).append(mapping.description);
  value.append(separator).append(utility::formatInteger(mapping.keystroke.keyCode, 1));
  return value.append(separator).append(utility::formatInteger(mapping.keystroke.shift, 1));
}

std::optional<Mapping> MappingReader::read(std::wstring_view value) {
  constexpr int neededFields = 4;
  // The separator is no letter, so that letter case does not matter.
  utility::FieldSplitter fields([](std::wstring_view text) { return std::wstring(text); });
  fields.split(value, separator, true, true);
  if (fields.count() < neededFields) {
    return std::nullopt;
  }
  last_.keyCode = integerIn(fields.field(3)).value_or(last_.keyCode);
  last_.shift = integerIn(fields.field(4)).value_or(last_.shift);
  return Mapping{std::wstring(fields.field(1)), std::wstring(fields.field(2)), last_};
}

}  // namespace zeq::keymap
