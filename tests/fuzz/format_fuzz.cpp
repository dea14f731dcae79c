// Numbers by digit patterns against schoolbook rounding of the number written out in full.

#include <algorithm>
#include <cmath>
#include <cstring>
#include <stdexcept>

#include "fuzz/Input.h"
#include "utility/Format.h"

namespace zeq::utility {
namespace {

/// The fifteen digits that count, written out in full: as many digits before the point as after it.
std::string writtenOut(double value, std::size_t half) {
  char text[32];
  std::snprintf(text, sizeof text, "%.14e", std::fabs(value));
  const int exponent = std::atoi(std::strchr(text, 'e') + 1);
  const std::string digits = text[0] + std::string(text + 2, 14);
  std::string result(2 * half, '0');
  const int first = static_cast<int>(half) - 1 - exponent;
  result.replace(static_cast<std::size_t>(first), digits.size(), digits);
  return result;
}

std::wstring expected(double value, int integerDigits, int decimals, wchar_t separator) {
  constexpr std::size_t half = 400;  // More than a double has, on either side.
  std::string digits = writtenOut(value, half);
  const std::size_t end = half + static_cast<std::size_t>(decimals);
  const bool up = digits[end] >= '5';
  digits.resize(end);
  for (std::size_t at = end; up; digits[at] = '0') {
    if (digits[--at] != '9') {
      ++digits[at];
      break;
    }
  }
  const std::size_t first =
      std::min(digits.find_first_not_of('0'), half - static_cast<std::size_t>(integerDigits));
  std::wstring result = value < 0 ? L"-" : L"";
  for (std::size_t at = first; at < end; ++at) {
    if (at == half) {
      result += separator;
    }
    result += static_cast<wchar_t>(digits[at]);
  }
  return result;
}

void checkNumber(fuzz::Input& input) {
  const double value = input.real();
  const int integerDigits = input.number(1, 8);
  const int decimals = input.number(0, 6);
  const wchar_t separator = input.flag() ? L'.' : L',';
  try {
    const std::wstring text = formatNumber(value, integerDigits, decimals, separator);
    fuzz::require(std::isfinite(value), "only a finite number has a text");
    fuzz::require(text == expected(value, integerDigits, decimals, separator),
                  "the digits are those of the model");
  } catch (const std::overflow_error&) {
    fuzz::require(!std::isfinite(value), "every finite number has a text");
  }
}

void checkInteger(fuzz::Input& input) {
  const auto value = input.any<std::int64_t>();
  const int digits = input.number(1, 30);
  char text[64];
  // The width of the platform's function counts the sign.
  std::snprintf(text, sizeof text, "%0*lld", digits + (value < 0 ? 1 : 0), static_cast<long long>(value));
  const std::string_view model(text);
  fuzz::require(formatInteger(value, digits) == std::wstring(model.begin(), model.end()),
                "the integer is written as the platform writes it");
}

}  // namespace
}  // namespace zeq::utility

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zeq::fuzz::Input input(data, size);
  zeq::utility::checkNumber(input);
  zeq::utility::checkInteger(input);
  return 0;
}
