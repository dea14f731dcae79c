#include "observe/CReferenceCounter.h"

#include <limits>

namespace zeq::observe {

using automation::raising;

namespace {

// Dispatch identifiers of the events.
constexpr DISPID triggered = 1;
constexpr DISPID triggeredRoundZero = 2;

}  // namespace

STDMETHODIMP CReferenceCounter::Increment(long* result) noexcept {
  return raising(result, [&] {
    const auto alive = keepAlive();
    step(Direction::up);
    return count_;
  });
}

STDMETHODIMP CReferenceCounter::Decrement(long* result) noexcept {
  return raising(result, [&] {
    const auto alive = keepAlive();
    step(Direction::down);
    return count_;
  });
}

STDMETHODIMP CReferenceCounter::get_CallDepth(long* result) noexcept {
  return raising(result, [&] { return count_; });
}

STDMETHODIMP CReferenceCounter::get_Zeroed(VARIANT_BOOL* result) noexcept {
  return raising(result, [&] { return count_ == 0; });
}

STDMETHODIMP CReferenceCounter::put_Zeroed(VARIANT_BOOL value) noexcept {
  return raising([&] {
    const auto alive = keepAlive();
    step(value != VARIANT_FALSE ? Direction::down : Direction::up);
  });
}

void CReferenceCounter::step(Direction direction) {
  const long previous = count_;
  if (direction == Direction::up) {
    if (count_ == std::numeric_limits<long>::max()) {
      throw automation::Error(automation::ErrorNumber::overflow);
    }
    ++count_;
  } else if (count_ >= 1) {
    --count_;
  } else {
    return;
  }
  // Both events tell of this step, even if a handler of the first takes further steps.
  const long current = count_;
  if (current == 0 || previous == 0) {
    raise(triggeredRoundZero, current, previous);
  }
  raise(triggered, current, previous);
}

}  // namespace zeq::observe
