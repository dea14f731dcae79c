#include <gmock/gmock.h>

#include "support/Component.h"
#include "support/EventLog.h"
#include "support/Leaks.h"

namespace zeq::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const EventLog::Names eventNames{{1, L"Triggered"}, {2, L"TriggeredRoundZero"}};

class CReferenceCounterTest : public testing::Test {
 protected:
  long increment() {
    long count = -1;
    EXPECT_EQ(counter->Increment(&count), S_OK);
    return count;
  }
  long decrement() {
    long count = -1;
    EXPECT_EQ(counter->Decrement(&count), S_OK);
    return count;
  }
  long depth() {
    long count = -1;
    EXPECT_EQ(counter->get_CallDepth(&count), S_OK);
    return count;
  }
  bool zeroed() {
    VARIANT_BOOL value = 1;
    EXPECT_EQ(counter->get_Zeroed(&value), S_OK);
    return value == VARIANT_TRUE;
  }

  ComPtr<_CReferenceCounter> counter = create<CReferenceCounter, _CReferenceCounter>();
  EventLog log{counter, __uuidof(__CReferenceCounter), eventNames};
};

TEST_F(CReferenceCounterTest, StartsAtZero) {
  EXPECT_EQ(depth(), 0);
  EXPECT_TRUE(zeroed());
  EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(CReferenceCounterTest, TellsOfTheFirstEntry) {
  EXPECT_EQ(increment(), 1);
  EXPECT_THAT(log.take(), ElementsAre(L"TriggeredRoundZero 1 0", L"Triggered 1 0"));
  EXPECT_FALSE(zeroed());
  EXPECT_EQ(depth(), 1);
}

TEST_F(CReferenceCounterTest, TellsOfFurtherEntriesOnce) {
  increment();
  log.take();
  EXPECT_EQ(increment(), 2);
  EXPECT_THAT(log.take(), ElementsAre(L"Triggered 2 1"));
  EXPECT_EQ(decrement(), 1);
  EXPECT_THAT(log.take(), ElementsAre(L"Triggered 1 2"));
  EXPECT_FALSE(zeroed());
}

TEST_F(CReferenceCounterTest, TellsOfTheLastExit) {
  increment();
  log.take();
  EXPECT_EQ(decrement(), 0);
  EXPECT_THAT(log.take(), ElementsAre(L"TriggeredRoundZero 0 1", L"Triggered 0 1"));
  EXPECT_TRUE(zeroed());
}

TEST_F(CReferenceCounterTest, NeverGoesBelowZero) {
  EXPECT_EQ(decrement(), 0);
  EXPECT_THAT(log.take(), IsEmpty());
  EXPECT_TRUE(zeroed());
}

TEST_F(CReferenceCounterTest, StepsWhenZeroedIsSet) {
  EXPECT_EQ(counter->put_Zeroed(VARIANT_FALSE), S_OK);
  EXPECT_THAT(log.take(), ElementsAre(L"TriggeredRoundZero 1 0", L"Triggered 1 0"));
  EXPECT_EQ(counter->put_Zeroed(VARIANT_FALSE), S_OK);
  EXPECT_THAT(log.take(), ElementsAre(L"Triggered 2 1"));
  EXPECT_EQ(counter->put_Zeroed(VARIANT_TRUE), S_OK);
  EXPECT_EQ(depth(), 1) << "one step down, not the flag";
  EXPECT_FALSE(zeroed());
  EXPECT_EQ(counter->put_Zeroed(VARIANT_TRUE), S_OK);
  EXPECT_EQ(counter->put_Zeroed(VARIANT_TRUE), S_OK);
  EXPECT_EQ(depth(), 0);
}

TEST_F(CReferenceCounterTest, ShowsHandlersTheNewCount) {
  std::vector<long> seen;
  const EventLog reader(counter, __uuidof(__CReferenceCounter), eventNames,
                        [&](DISPID, const std::vector<VARIANT*>&) { seen.push_back(depth()); });
  increment();
  EXPECT_THAT(seen, ElementsAre(1, 1));
}

TEST_F(CReferenceCounterTest, LetsHandlersStep) {
  bool stepped = false;
  const EventLog stepper(counter, __uuidof(__CReferenceCounter), eventNames,
                         [&](DISPID event, const std::vector<VARIANT*>&) {
                           if (event == 2 && !std::exchange(stepped, true)) {
                             increment();
                           }
                         });
  EXPECT_EQ(increment(), 2);
  EXPECT_THAT(log.take(), ElementsAre(L"TriggeredRoundZero 1 0", L"Triggered 2 1", L"Triggered 1 0"));
}

TEST_F(CReferenceCounterTest, OutlivesItsLastReferenceWhileItRaisesEvents) {
  auto other = create<CReferenceCounter, _CReferenceCounter>();
  _CReferenceCounter* bare = other.get();
  int events = 0;
  const auto sink =
      std::make_unique<Sink>(other.get(), __uuidof(__CReferenceCounter), [&](DISPID, std::vector<VARIANT*>) {
        ++events;
        other.reset();
        return S_OK;
      });
  long count = 0;
  EXPECT_EQ(bare->Increment(&count), S_OK);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(events, 2);
}

TEST_F(CReferenceCounterTest, AnswersByName) {
  const Late late(counter);
  EXPECT_EQ(late.get(L"Increment").get().lVal, 1);
  EXPECT_EQ(late.get(L"Increment").get().lVal, 2);
  EXPECT_EQ(late.get(L"Decrement").get().lVal, 1);
  EXPECT_EQ(late.get(L"CallDepth").type(), VT_I4);
  EXPECT_EQ(late.get(L"CallDepth").get().lVal, 1);
  EXPECT_EQ(late.get(L"Zeroed").get().boolVal, VARIANT_FALSE);
  EXPECT_EQ(late.put(L"Zeroed", Variant(true)).code, S_OK);
  EXPECT_EQ(late.get(L"CallDepth").get().lVal, 0);
}

TEST_F(CReferenceCounterTest, LeaksNothing) {
  expectNoLeak(1000, [&] {
    increment();
    decrement();
    counter->put_Zeroed(VARIANT_FALSE);
    counter->put_Zeroed(VARIANT_TRUE);
    log.take();
  });
}

}  // namespace
}  // namespace zeq::test
