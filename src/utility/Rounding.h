#pragma once
// Numbers to integers as automation converts them: to nearest, ties to even.

#include <cmath>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <type_traits>

namespace zeq::utility {

/// Throws std::overflow_error where the rounded number does not fit, or is not a number.
template <class Integer>
[[nodiscard]] Integer toInteger(double value) {
  static_assert(std::is_integral_v<Integer> && sizeof(Integer) <= sizeof(std::int32_t));
  const double rounded = value - std::remainder(value, 1.0);
  if (!(rounded >= std::numeric_limits<Integer>::min() && rounded <= std::numeric_limits<Integer>::max())) {
    throw std::overflow_error("the number does not fit the integer");
  }
  return static_cast<Integer>(rounded);
}

[[nodiscard]] inline std::int32_t toInt32(double value) {
  return toInteger<std::int32_t>(value);
}
[[nodiscard]] inline std::int16_t toInt16(double value) {
  return toInteger<std::int16_t>(value);
}

}  // namespace zeq::utility
