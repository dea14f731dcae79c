#pragma once
// Number functions without state: limits, linear scaling, colours. Those that compute throw
// std::overflow_error where the result or a number on the way to it is not finite.

#include <cstdint>

namespace zeq::utility {

/// The value itself; throws as said above.
[[nodiscard]] double finite(double value);

/// The value within limits; the upper limit wins where the limits are crossed.
[[nodiscard]] double limited(double value, double lowest, double highest) noexcept;

/// Two points that belong together with two others.
struct Interval {
  double first;
  double second;
};

/// The value mapped linearly from a domain to a range, beyond their ends too.
[[nodiscard]] double scaled(double value, Interval domain, Interval range);

/// The larger and the smaller of two values.
[[nodiscard]] double larger(double one, double other) noexcept;
[[nodiscard]] double smaller(double one, double other) noexcept;

struct Colour {
  std::int16_t red;
  std::int16_t green;
  std::int16_t blue;
};

/// The components of a colour 0x00BBGGRR, and the colour that they make.
[[nodiscard]] Colour componentsOf(std::uint32_t colour) noexcept;
[[nodiscard]] std::uint32_t colourOf(const Colour& components) noexcept;

/// The colour with its components mapped from 0..255 to a range, which is limited to 0..255.
[[nodiscard]] std::uint32_t compressedColour(std::uint32_t colour, std::int16_t lowest, std::int16_t highest);

}  // namespace zeq::utility
