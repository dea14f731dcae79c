#include "fileops/DriveUsage.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

namespace zeq::fileops {
namespace {

constexpr double huge = std::numeric_limits<double>::max();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

DriveUsage driveOf(double capacity, double base, double margin) {
  DriveUsage usage;
  usage.setCapacity(capacity);
  usage.setBaseSpaceUsed(base);
  usage.setSafetyMargin(margin);
  return usage;
}

TEST(DriveUsage, StartsAtZero) {
  const DriveUsage usage;
  EXPECT_EQ(usage.capacity(), 0);
  EXPECT_EQ(usage.safetyMargin(), 0);
  EXPECT_EQ(usage.spaceUsed(), 0);
  EXPECT_EQ(usage.freeSpace(), 0);
  EXPECT_EQ(usage.delta(), 0);
  EXPECT_EQ(usage.lowTide(), 0);
  EXPECT_EQ(usage.highTide(), 0);
  EXPECT_FALSE(usage.tooFull());
}

TEST(DriveUsage, KeepsTheTides) {
  DriveUsage usage = driveOf(1000, 500, 0);
  usage.use(100);
  usage.free(300);
  EXPECT_EQ(usage.delta(), -200);
  EXPECT_EQ(usage.lowTideDelta(), -200);
  EXPECT_EQ(usage.highTideDelta(), 100);
  EXPECT_EQ(usage.spaceUsed(), 300);
  EXPECT_EQ(usage.freeSpace(), 700);
  EXPECT_EQ(usage.lowTide(), 300);
  EXPECT_EQ(usage.highTide(), 600);
  usage.use(250);
  EXPECT_EQ(usage.delta(), 50);
  EXPECT_EQ(usage.lowTideDelta(), -200);
  EXPECT_EQ(usage.highTideDelta(), 100);
}

TEST(DriveUsage, NegativeAmountsAreTheOppositeOperation) {
  DriveUsage usage;
  usage.use(-10);
  EXPECT_EQ(usage.lowTideDelta(), -10);
  usage.free(-30);
  EXPECT_EQ(usage.delta(), 20);
  EXPECT_EQ(usage.highTideDelta(), 20);
}

TEST(DriveUsage, IsTooFullOnlyBeyondTheMargin) {
  DriveUsage usage = driveOf(1000, 900, 50);
  usage.use(50);
  EXPECT_EQ(usage.highTide(), 950);
  EXPECT_FALSE(usage.tooFull());
  usage.use(1);
  EXPECT_TRUE(usage.tooFull());
  usage.free(500);
  EXPECT_TRUE(usage.tooFull());
  EXPECT_EQ(usage.highTide(), 951);
  usage.reset();
  EXPECT_FALSE(usage.tooFull());
}

TEST(DriveUsage, EveryDescriptionStartsANewMeasurement) {
  for (const auto set :
       {&DriveUsage::setCapacity, &DriveUsage::setBaseSpaceUsed, &DriveUsage::setSafetyMargin}) {
    DriveUsage usage;
    usage.use(7);
    usage.free(9);
    (usage.*set)(0);  // The old value.
    EXPECT_EQ(usage.delta(), 0);
    EXPECT_EQ(usage.lowTideDelta(), 0);
    EXPECT_EQ(usage.highTideDelta(), 0);
  }
}

TEST(DriveUsage, ResettingKeepsTheDescription) {
  DriveUsage usage = driveOf(1000, 900, 50);
  usage.use(10);
  usage.reset();
  EXPECT_EQ(usage.capacity(), 1000);
  EXPECT_EQ(usage.safetyMargin(), 50);
  EXPECT_EQ(usage.spaceUsed(), 900);
  EXPECT_EQ(usage.lowTide(), 900);
  EXPECT_EQ(usage.highTide(), 900);
}

TEST(DriveUsage, OverflowLeavesEverythingAsItWas) {
  DriveUsage usage;
  usage.use(huge);
  EXPECT_THROW(usage.use(huge), std::overflow_error);
  EXPECT_EQ(usage.delta(), huge);
  EXPECT_EQ(usage.highTideDelta(), huge);
  EXPECT_EQ(usage.lowTideDelta(), 0);
  usage.free(huge);
  usage.free(huge);
  EXPECT_THROW(usage.free(huge), std::overflow_error);
  EXPECT_EQ(usage.delta(), -huge);
}

TEST(DriveUsage, RefusesWhatIsNoFiniteNumber) {
  for (const double amount : {infinity, -infinity, notANumber}) {
    DriveUsage usage;
    usage.use(5);
    EXPECT_THROW(usage.use(amount), std::overflow_error);
    EXPECT_THROW(usage.free(amount), std::overflow_error);
    EXPECT_EQ(usage.delta(), 5);
    EXPECT_EQ(usage.highTideDelta(), 5);
    EXPECT_EQ(usage.lowTideDelta(), 0);
  }
}

TEST(DriveUsage, DerivedValuesReportOverflow) {
  DriveUsage usage = driveOf(-huge, huge, huge);
  EXPECT_THROW((void)usage.freeSpace(), std::overflow_error);
  EXPECT_THROW((void)usage.tooFull(), std::overflow_error);
  usage.use(huge);
  EXPECT_THROW((void)usage.spaceUsed(), std::overflow_error);
  EXPECT_THROW((void)usage.highTide(), std::overflow_error);
  EXPECT_EQ(usage.lowTide(), huge);
  usage.setBaseSpaceUsed(-huge);
  usage.free(huge);
  EXPECT_THROW((void)usage.lowTide(), std::overflow_error);
}

TEST(DriveUsage, HoldsLargeDrivesExactly) {
  DriveUsage usage = driveOf(18e15, 0, 0);
  usage.use(4503599627370497.0);
  usage.use(4503599627370497.0);
  EXPECT_EQ(usage.delta(), 9007199254740994.0);
  usage.free(4503599627370497.0);
  EXPECT_EQ(usage.delta(), 4503599627370497.0);
}

}  // namespace
}  // namespace zeq::fileops
