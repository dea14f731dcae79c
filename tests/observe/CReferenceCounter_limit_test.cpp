#include <gmock/gmock.h>

#include <limits>

#include "observe/CReferenceCounter.h"

namespace zeq::observe {
namespace {

constexpr long most = std::numeric_limits<long>::max();

TEST(CReferenceCounterLimit, CountsUpToTheLargestInteger) {
  const auto counter = CReferenceCounter::make(most - 1);
  long count = 0;
  EXPECT_EQ(counter->Increment(&count), S_OK);
  EXPECT_EQ(count, most);
}

TEST(CReferenceCounterLimit, RaisesOverflowAndKeepsTheCount) {
  const auto counter = CReferenceCounter::make(most);
  long count = 0;
  EXPECT_EQ(counter->Increment(&count), automation::codeOf(automation::ErrorNumber::overflow));
  EXPECT_EQ(counter->put_Zeroed(VARIANT_FALSE), automation::codeOf(automation::ErrorNumber::overflow));
  EXPECT_EQ(counter->get_CallDepth(&count), S_OK);
  EXPECT_EQ(count, most);
  VARIANT_BOOL zeroed = VARIANT_TRUE;
  EXPECT_EQ(counter->get_Zeroed(&zeroed), S_OK);
  EXPECT_EQ(zeroed, VARIANT_FALSE);
}

}  // namespace
}  // namespace zeq::observe
