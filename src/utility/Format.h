#pragma once
// Numbers as text by digit patterns, for every class that writes numbers into texts.

#include <string>

namespace zeq::utility {

/// A number with at least `integerDigits` digits before the decimal separator (padded with zeros) and exactly
/// `decimals` after it, rounded to nearest with ties away from zero as digit patterns do: the pattern
/// "00000.00" is formatNumber(value, 5, 2). Every number below zero gets a leading minus sign, also where it
/// rounds to zero, as the platform's digit patterns do. Throws std::overflow_error for a value that is not
/// finite.
[[nodiscard]] std::wstring formatNumber(double value, int integerDigits, int decimals,
                                        wchar_t separator = L'.');

/// The same for whole numbers.
[[nodiscard]] std::wstring formatInteger(long long value, int digits);

/// The same at the end of a text; nothing is appended where they throw.
void appendNumber(std::wstring& text, double value, int integerDigits, int decimals,
                  wchar_t separator = L'.');
void appendInteger(std::wstring& text, long long value, int digits);

}  // namespace zeq::utility
