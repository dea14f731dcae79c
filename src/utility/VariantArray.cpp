#include "utility/VariantArray.h"

#include <algorithm>

#include "automation/Array.h"

namespace zeq::utility {
namespace {

using automation::check;
using automation::Error;
using automation::ErrorNumber;

SAFEARRAY* sortableArrayIn(const VARIANT& holder) {
  const auto array = automation::arrayIn(holder);
  if (!array) {
    throw Error(ErrorNumber::typeMismatch);
  }
  if (*array == nullptr || SafeArrayGetDim(*array) != 1) {
    throw Error(ErrorNumber::subscriptOutOfRange);
  }
  return *array;
}

VARTYPE elementType(const VARIANT& holder) noexcept {
  return static_cast<VARTYPE>(automation::dereferenced(holder).vt & VT_TYPEMASK);
}

}  // namespace

VariantArray::VariantArray(const VARIANT& holder)
    : array_(sortableArrayIn(holder)), type_(elementType(holder)), size_(SafeArrayGetElemsize(array_)) {
  const SAFEARRAYBOUND& bound = array_->rgsabound[0];
  lowest_ = bound.lLbound;
  highest_ = lowest_ + bound.cElements - 1;
  check(SafeArrayLock(array_));
}

VariantArray::~VariantArray() {
  SafeArrayUnlock(array_);
}

VARIANT VariantArray::borrowed(std::int64_t index) const {
  if (type_ == VT_RECORD) {
    throw Error(ErrorNumber::typeMismatch);  // Records have no order.
  }
  const std::byte* element = address(index);
  VARIANT value;
  VariantInit(&value);
  if (type_ == VT_VARIANT || type_ == VT_DECIMAL) {
    std::memcpy(&value, element, size_);
  } else {
    std::memcpy(&value.llVal, element, size_);
  }
  if (type_ != VT_VARIANT) {
    value.vt = type_;
  }
  return value;
}

void VariantArray::exchange(std::int64_t one, std::int64_t other) {
  std::byte* const first = address(one);
  std::byte* const second = address(other);
  if (first != second) {
    std::swap_ranges(first, first + size_, second);
  }
}

std::byte* VariantArray::address(std::int64_t index) const {
  if (!has(index)) {
    throw Error(ErrorNumber::subscriptOutOfRange);
  }
  return static_cast<std::byte*>(array_->pvData) + static_cast<std::size_t>(index - lowest_) * size_;
}

}  // namespace zeq::utility
