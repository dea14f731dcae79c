#include "utility/CRangeMapper.h"

#include "utility/VariantArithmetic.h"

namespace zeq::utility {
namespace {

using automation::quietly;
using automation::raising;
using automation::Variant;

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
    points[static_cast<std::size_t>(index)] = Variant(value);
    slopesValid_ = false;
  }
}

void CRangeMapper::updateSlopes() {
  if (slopesValid_) {
    return;
  }
  if (different(domain_[0].get(), domain_[1].get())) {
    slopeToRange_ = slope(domain_[0], domain_[1], range_[0], range_[1]);
  }
  if (different(range_[0].get(), range_[1].get())) {
    slopeToDomain_ = slope(range_[0], range_[1], domain_[0], domain_[1]);
  }
  slopesValid_ = true;
}

STDMETHODIMP CRangeMapper::get_Domain(short idx, VARIANT* result) noexcept {
  return raising(result, [&] { return endPoint(domain_, idx); });
}

STDMETHODIMP CRangeMapper::put_Domain(short idx, VARIANT value) noexcept {
  return raising([&] { setEndPoint(domain_, idx, value); });
}

STDMETHODIMP CRangeMapper::get_Range(short idx, VARIANT* result) noexcept {
  return raising(result, [&] { return endPoint(range_, idx); });
}

STDMETHODIMP CRangeMapper::put_Range(short idx, VARIANT value) noexcept {
  return raising([&] { setEndPoint(range_, idx, value); });
}

STDMETHODIMP CRangeMapper::SetDomain(VARIANT d0, VARIANT d1) noexcept {
  return raising([&] {
    setEndPoint(domain_, 0, d0);
    setEndPoint(domain_, 1, d1);
  });
}

STDMETHODIMP CRangeMapper::SetRange(VARIANT r0, VARIANT r1) noexcept {
  return raising([&] {
    setEndPoint(range_, 0, r0);
    setEndPoint(range_, 1, r1);
  });
}

STDMETHODIMP CRangeMapper::ToRange(VARIANT dx, VARIANT* result) noexcept {
  return quietly(result, [&] {
    updateSlopes();
    return mapped(dx, domain_[0], slopeToRange_, range_[0]);
  });
}

STDMETHODIMP CRangeMapper::ToDomain(VARIANT rx, VARIANT* result) noexcept {
  return quietly(result, [&] {
    updateSlopes();
    return mapped(rx, range_[0], slopeToDomain_, domain_[0]);
  });
}

}  // namespace zeq::utility
