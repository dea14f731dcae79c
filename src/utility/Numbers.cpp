#include "utility/Numbers.h"

#include <cmath>
#include <stdexcept>

#include "utility/Rounding.h"

namespace zeq::utility {
namespace {

constexpr double brightest = 255;

}  // namespace

double finite(double value) {
  if (!std::isfinite(value)) {
    throw std::overflow_error("not a finite number");
  }
  return value;
}

double limited(double value, double lowest, double highest) noexcept {
  const double raised = value >= lowest ? value : lowest;
  return raised > highest ? highest : raised;
}

double scaled(double value, Interval domain, Interval range) {
  const double slope = finite(finite(range.second - range.first) / finite(domain.second - domain.first));
  return finite(finite(finite(value - domain.first) * slope) + range.first);
}

double larger(double one, double other) noexcept {
  return one <= other ? other : one;
}

double smaller(double one, double other) noexcept {
  return one >= other ? other : one;
}

Colour componentsOf(std::uint32_t colour) noexcept {
  const auto byteAt = [&](unsigned shift) { return static_cast<std::int16_t>((colour >> shift) & 0xFFU); };
  return {.red = byteAt(0), .green = byteAt(8), .blue = byteAt(16)};
}

std::uint32_t colourOf(const Colour& components) noexcept {
  const auto at = [](std::int16_t component, unsigned shift) {
    return static_cast<std::uint32_t>(component) << shift;
  };
  return at(components.red, 0) | at(components.green, 8) | at(components.blue, 16);
}

std::uint32_t compressedColour(std::uint32_t colour, std::int16_t lowest, std::int16_t highest) {
  const double darkest = limited(lowest, 0, brightest);
  const Interval range{darkest, limited(highest, darkest, brightest)};
  const auto mapped = [&](std::int16_t component) {
    return toInt16(scaled(component, {0, brightest}, range));
  };
  const Colour components = componentsOf(colour);
  return colourOf({mapped(components.red), mapped(components.green), mapped(components.blue)});
}

}  // namespace zeq::utility
