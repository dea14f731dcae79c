#pragma once
// A client's array of records: values of a type of its own, which no VARIANT holds.

#include <windows.h>
#include <oleauto.h>

#include <cstring>

#include "support/Component.h"

namespace zeq::test {

class Records {
 public:
  Records(ULONG count, ULONG size) {
    automation::check(SafeArrayAllocDescriptorEx(VT_RECORD, 1, &array_));
    array_->cbElements = size;
    array_->rgsabound[0] = {count, 0};
    automation::check(SafeArrayAllocData(array_));
    std::memset(array_->pvData, 'A', std::size_t{count} * size);
    holder_.vt = VT_ARRAY | VT_RECORD;
    holder_.parray = array_;
  }
  Records(const Records&) = delete;
  Records& operator=(const Records&) = delete;
  ~Records() {
    array_->fFeatures &= static_cast<USHORT>(~FADF_RECORD);  // There is no description that could clear them.
    SafeArrayDestroy(array_);
  }

  [[nodiscard]] VARIANT& holder() noexcept { return holder_; }

 private:
  SAFEARRAY* array_ = nullptr;
  VARIANT holder_{};
};

}  // namespace zeq::test
