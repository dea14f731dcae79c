#include "utility/Format.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

namespace zeq::utility {
namespace {

TEST(FormatNumber, PadsAndRounds) {
  EXPECT_EQ(formatNumber(3725.25, 5, 2), L"03725.25");
  EXPECT_EQ(formatNumber(5, 2, 0), L"05");
  EXPECT_EQ(formatNumber(0, 1, 3), L"0.000");
  EXPECT_EQ(formatNumber(59.999, 2, 2), L"60.00");
  EXPECT_EQ(formatNumber(999.995, 1, 2), L"1000.00");
  EXPECT_EQ(formatNumber(1.005, 1, 2), L"1.01");
  EXPECT_EQ(formatNumber(0.5, 1, 0), L"1");
  EXPECT_EQ(formatNumber(0.05, 1, 1), L"0.1");
  EXPECT_EQ(formatNumber(0.04, 1, 1), L"0.0");
  EXPECT_EQ(formatNumber(0.004, 1, 1), L"0.0");
  EXPECT_EQ(formatNumber(1e18, 1, 1), L"1000000000000000000.0");
  EXPECT_EQ(formatNumber(1.5, 1, 1, L','), L"1,5");
}

TEST(FormatNumber, SignsWhatIsBelowZero) {
  EXPECT_EQ(formatNumber(-1.5, 1, 3), L"-1.500");
  EXPECT_EQ(formatNumber(-0.0001, 1, 3), L"-0.000");
  EXPECT_EQ(formatNumber(-0.0, 1, 0), L"0");
  EXPECT_EQ(formatNumber(-7, 2, 0), L"-07");
}

TEST(FormatNumber, RefusesWhatIsNotFinite) {
  EXPECT_THROW((void)formatNumber(std::numeric_limits<double>::infinity(), 1, 1), std::overflow_error);
  EXPECT_THROW((void)formatNumber(std::numeric_limits<double>::quiet_NaN(), 1, 1), std::overflow_error);
}

TEST(FormatInteger, Pads) {
  EXPECT_EQ(formatInteger(7, 3), L"007");
  EXPECT_EQ(formatInteger(1000, 3), L"1000");
  EXPECT_EQ(formatInteger(-7, 3), L"-007");
  EXPECT_EQ(formatInteger(0, 1), L"0");
}

}  // namespace
}  // namespace zeq::utility
