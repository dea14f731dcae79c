#include "utility/SpliceBuffer.h"

#include <gtest/gtest.h>

#include <new>

namespace zeq::utility {
namespace {

TEST(SpliceBuffer, ReplacesAtThePlaceReached) {
  SpliceBuffer buffer(L"one two three", 100);
  buffer.passOver(4);
  buffer.replace(3, L"2");
  EXPECT_EQ(buffer.right(), L"2 three");
  buffer.stepBack(4);
  buffer.replace(3, L"a longer one");
  EXPECT_EQ(buffer.right(), L"a longer one 2 three");
  buffer.passOver(buffer.right().size());
  EXPECT_EQ(buffer.passed(), 20U);
  EXPECT_EQ(buffer.right(), L"");
  buffer.replace(0, L"!");
  EXPECT_EQ(buffer.take(), L"a longer one 2 three!");
  EXPECT_EQ(buffer.take(), L"");
}

TEST(SpliceBuffer, StopsGrowingBeyondItsLimit) {
  SpliceBuffer buffer(L"x", 10);
  const auto growForEver = [&] {
    for (;;) {
      buffer.replace(1, L"xx");
    }
  };
  EXPECT_THROW(growForEver(), std::bad_alloc);
  const std::size_t length = buffer.take().size();
  EXPECT_LE(length, 20U);
  EXPECT_GE(length, 10U);
}

}  // namespace
}  // namespace zeq::utility
