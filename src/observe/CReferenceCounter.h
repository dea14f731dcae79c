#pragma once
// A counter of nesting depth: how many callers are inside a guarded activity. Its events tell of every
// change, and separately of the first entry and the last exit.

#include "ZEQUtility2.h"
#include "automation/Object.h"

namespace zeq::observe {

class CReferenceCounter final : public automation::Object<CReferenceCounter, ::CReferenceCounter,
                                                          ::_CReferenceCounter, ::__CReferenceCounter> {
 public:
  explicit CReferenceCounter(long count = 0) noexcept : count_(count) {}

  STDMETHODIMP Increment(long* result) noexcept override;
  STDMETHODIMP Decrement(long* result) noexcept override;
  STDMETHODIMP get_CallDepth(long* result) noexcept override;
  STDMETHODIMP get_Zeroed(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP put_Zeroed(VARIANT_BOOL value) noexcept override;

 private:
  enum class Direction { up, down };
  void step(Direction direction);

  long count_;
};

}  // namespace zeq::observe
