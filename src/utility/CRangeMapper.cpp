#include "utility/CRangeMapper.h"

#include "utility/VariantArithmetic.h"

namespace zeq::utility {
namespace {

using automation::quietly;
using automation::raising;
using automation::Variant;

// An end point may be a client's object, whose value is asked for and whose release is told: what its code
// may change meanwhile is worked on as a copy, and the object kept.

bool isEndPoint(short index) noexcept {
  return index == 0 || index == 1;
}

Variant slope(const Variant& from0, const Variant& from1, const Variant& to0, const Variant& to1) {
  return quotient(difference(to1, to0), difference(from1, from0));
}

Variant mapped(const VARIANT& value, const Variant& from0, const Variant& slope, const Variant& to0) {
  return sum(product(difference(Variant(value), from0), slope), to0);
}

}  // namespace

Variant CRangeMapper::endPoint(const EndPoints& points, short index) {
  return isEndPoint(index) ? points[static_cast<std::size_t>(index)] : Variant(short{0});
}

void CRangeMapper::setEndPoint(EndPoints& points, short index, const VARIANT& value) {
  if (isEndPoint(index)) {
    slopesValid_ = false;
    points[static_cast<std::size_t>(index)] = Variant(value);
  }
}

void CRangeMapper::updateSlopes() {
  if (slopesValid_) {
    return;
  }
  const EndPoints domain = domain_;
  const EndPoints range = range_;
  if (different(domain[0].get(), domain[1].get())) {
    slopeToRange_ = slope(domain[0], domain[1], range[0], range[1]);
  }
  if (different(range[0].get(), range[1].get())) {
    slopeToDomain_ = slope(range[0], range[1], domain[0], domain[1]);
  }
  slopesValid_ = true;
}

STDMETHODIMP CRangeMapper::get_Domain(short idx, VARIANT* result) noexcept {
  return raising(result, [&] { return endPoint(domain_, idx); });
}

STDMETHODIMP CRangeMapper::put_Domain(short idx, VARIANT value) noexcept {
  return raising([&] {
    const auto alive = keepAlive();
    setEndPoint(domain_, idx, value);
  });
}

STDMETHODIMP CRangeMapper::get_Range(short idx, VARIANT* result) noexcept {
  return raising(result, [&] { return endPoint(range_, idx); });
}

STDMETHODIMP CRangeMapper::put_Range(short idx, VARIANT value) noexcept {
  return raising([&] {
    const auto alive = keepAlive();
    setEndPoint(range_, idx, value);
  });
}

STDMETHODIMP CRangeMapper::SetDomain(VARIANT d0, VARIANT d1) noexcept {
  return raising([&] {
    const auto alive = keepAlive();
    setEndPoint(domain_, 0, d0);
    setEndPoint(domain_, 1, d1);
  });
}

STDMETHODIMP CRangeMapper::SetRange(VARIANT r0, VARIANT r1) noexcept {
  return raising([&] {
    const auto alive = keepAlive();
    setEndPoint(range_, 0, r0);
    setEndPoint(range_, 1, r1);
  });
}

STDMETHODIMP CRangeMapper::ToRange(VARIANT dx, VARIANT* result) noexcept {
  return quietly(result, [&] {
    const auto alive = keepAlive();
    updateSlopes();
    return mapped(dx, Variant(domain_[0]), Variant(slopeToRange_), Variant(range_[0]));
  });
}

STDMETHODIMP CRangeMapper::ToDomain(VARIANT rx, VARIANT* result) noexcept {
  return quietly(result, [&] {
    const auto alive = keepAlive();
    updateSlopes();
    return mapped(rx, Variant(range_[0]), Variant(slopeToDomain_), Variant(domain_[0]));
  });
}

}  // namespace zeq::utility
