#include "utility/Format.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

#include "utility/Numbers.h"

namespace zeq::utility {
namespace {

/// Patterns see a number as the automation runtime does: fifteen significant decimal digits.
constexpr int significantDigits = 15;

/// The size of a finite number as 0.d1d2d3… times a power of ten.
struct Decimal {
  int exponent = 0;  ///< Position of the decimal separator, counted from the first digit.
  std::string digits;
};

Decimal decimalOf(double value) {
  Decimal result;
  std::array<char, 40> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(value),
                                 std::chars_format::scientific, significantDigits - 1);
  const std::string_view text(buffer.data(), static_cast<std::size_t>(end.ptr - buffer.data()));
  const std::size_t mark = text.find('e');
  for (const char character : text.substr(0, mark)) {
    if (character != '.') {
      result.digits += character;
    }
  }
  const std::string_view exponent = text.substr(mark + 2);
  std::from_chars(exponent.data(), exponent.data() + exponent.size(), result.exponent);
  result.exponent = (text[mark + 1] == '-' ? -result.exponent : result.exponent) + 1;
  return result;
}

/// Keeps `decimals` digits after the separator, rounding to nearest with ties away from zero.
void roundTo(Decimal& number, int decimals) {
  const int kept = number.exponent + decimals;
  if (kept >= static_cast<int>(number.digits.size())) {
    return;
  }
  const bool up = kept >= 0 && number.digits[static_cast<std::size_t>(kept)] >= '5';
  number.digits.resize(static_cast<std::size_t>(kept > 0 ? kept : 0));
  if (!up) {
    return;
  }
  std::size_t at = number.digits.size();
  while (at > 0 && number.digits[at - 1] == '9') {
    number.digits[--at] = '0';
  }
  if (at > 0) {
    ++number.digits[at - 1];
  } else {
    number.digits.insert(number.digits.begin(), '1');
    ++number.exponent;
  }
}

/// The digit at a position counted from the decimal separator: 0 is the first one after it, -1 the last
/// before it.
char digitAt(const Decimal& number, int position) {
  const int index = number.exponent + position;
  const bool inside = index >= 0 && index < static_cast<int>(number.digits.size());
  return inside ? number.digits[static_cast<std::size_t>(index)] : '0';
}

}  // namespace

void appendNumber(std::wstring& text, double value, int integerDigits, int decimals, wchar_t separator) {
  if (finite(value) < 0) {
    text += L'-';
  }
  Decimal number = decimalOf(value);
  roundTo(number, decimals);
  for (int position = -std::max(number.exponent, integerDigits); position < decimals; ++position) {
    if (position == 0 && decimals > 0) {
      text += separator;
    }
    text += static_cast<wchar_t>(digitAt(number, position));
  }
}

void appendInteger(std::wstring& text, long long value, int digits) {
  std::array<char, 20> buffer{};  // A sign and nineteen digits.
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  std::string_view number(buffer.data(), static_cast<std::size_t>(end.ptr - buffer.data()));
  if (value < 0) {
    text += L'-';
    number.remove_prefix(1);
  }
  const auto wanted = static_cast<std::size_t>(digits);
  text.append(wanted > number.size() ? wanted - number.size() : 0, L'0');
  text.append(number.begin(), number.end());
}

std::wstring formatNumber(double value, int integerDigits, int decimals, wchar_t separator) {
  std::wstring result;
  appendNumber(result, value, integerDigits, decimals, separator);
  return result;
}

std::wstring formatInteger(long long value, int digits) {
  std::wstring result;
  appendInteger(result, value, digits);
  return result;
}

}  // namespace zeq::utility
