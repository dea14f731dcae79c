#include "utility/Numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>

#include "utility/Rounding.h"

namespace zeq::utility {
namespace {

TEST(Numbers, AreFinite) {
  constexpr double infinite = std::numeric_limits<double>::infinity();
  EXPECT_EQ(finite(-1e308), -1e308);
  EXPECT_THROW((void)finite(infinite), std::overflow_error);
  EXPECT_THROW((void)finite(-infinite), std::overflow_error);
  EXPECT_THROW((void)finite(std::numeric_limits<double>::quiet_NaN()), std::overflow_error);
}

TEST(Numbers, Limits) {
  EXPECT_EQ(limited(5, 10, 0), 0);
  EXPECT_EQ(limited(-1, 0, 255), 0);
  EXPECT_EQ(limited(300, 0, 255), 255);
  EXPECT_EQ(limited(7, 0, 255), 7);
  EXPECT_EQ(limited(std::numeric_limits<double>::quiet_NaN(), 3, 255), 3);
}

TEST(Numbers, Scales) {
  EXPECT_EQ(scaled(5, {0, 10}, {100, 200}), 150);
  EXPECT_EQ(scaled(20, {0, 10}, {100, 200}), 300);
  EXPECT_EQ(scaled(-10, {0, 10}, {200, 100}), 300);
  EXPECT_THROW((void)scaled(5, {3, 3}, {100, 200}), std::overflow_error);
  EXPECT_THROW((void)scaled(1e308, {-1e308, 1}, {0, 1}), std::overflow_error);
  // The extent of the domain is too large, although the result would not be.
  EXPECT_THROW((void)scaled(0, {-1e308, 1e308}, {0, 1}), std::overflow_error);
}

TEST(Numbers, ChoosesTheSecondOfEqualValues) {
  EXPECT_EQ(larger(1, 2), 2);
  EXPECT_EQ(larger(2, 1), 2);
  EXPECT_EQ(smaller(1, 2), 1);
  EXPECT_EQ(smaller(2, 1), 1);
  EXPECT_TRUE(std::signbit(larger(0.0, -0.0)));
  EXPECT_TRUE(std::signbit(smaller(0.0, -0.0)));
}

TEST(Numbers, TakesColoursApart) {
  const Colour components = componentsOf(0x80112233);
  EXPECT_EQ(components.red, 0x33);
  EXPECT_EQ(components.green, 0x22);
  EXPECT_EQ(components.blue, 0x11);
  EXPECT_EQ(colourOf(components), 0x00112233U);
}

TEST(Numbers, CompressesColours) {
  EXPECT_EQ(compressedColour(0x00FFFFFF, 64, 191), 0x00BFBFBFU);
  EXPECT_EQ(compressedColour(0, 64, 191), 0x00404040U);
  EXPECT_EQ(compressedColour(0x00112233, 0, 255), 0x00112233U);
  EXPECT_EQ(compressedColour(0x00112233, -5, 300), 0x00112233U);
  EXPECT_EQ(compressedColour(0x00FF00FF, 200, 100), 0x00C8C8C8U);
  EXPECT_EQ(compressedColour(0x00030201, 0, 128), 0x00020101U);
}

TEST(Rounding, GoesToTheNearestAndFromTheMiddleToEven) {
  EXPECT_EQ(toInt32(0.5), 0);
  EXPECT_EQ(toInt32(1.5), 2);
  EXPECT_EQ(toInt32(2.5), 2);
  EXPECT_EQ(toInt32(-2.5), -2);
  EXPECT_EQ(toInt32(-1.51), -2);
  EXPECT_EQ(toInt32(2147483647.5 - 0.25), 2147483647);
  EXPECT_THROW((void)toInt32(2147483647.5), std::overflow_error);
  EXPECT_EQ(toInt32(-2147483648.5), -2147483648LL);
  EXPECT_EQ(toInt16(32767.4), 32767);
  EXPECT_THROW((void)toInt16(32767.5), std::overflow_error);
  EXPECT_THROW((void)toInt32(std::numeric_limits<double>::quiet_NaN()), std::overflow_error);
}

}  // namespace
}  // namespace zeq::utility
