#pragma once
// Converts values linearly between a domain and a range, in automation arithmetic.

#include <array>

#include "ZEQUtility2.h"
#include "automation/Object.h"

namespace zeq::utility {

class CRangeMapper final : public automation::Object<CRangeMapper, ::CRangeMapper, ::_CRangeMapper> {
 public:
  STDMETHODIMP get_Domain(short idx, VARIANT* result) noexcept override;
  STDMETHODIMP put_Domain(short idx, VARIANT value) noexcept override;
  STDMETHODIMP get_Range(short idx, VARIANT* result) noexcept override;
  STDMETHODIMP put_Range(short idx, VARIANT value) noexcept override;
  STDMETHODIMP SetDomain(VARIANT d0, VARIANT d1) noexcept override;
  STDMETHODIMP SetRange(VARIANT r0, VARIANT r1) noexcept override;
  STDMETHODIMP ToRange(VARIANT dx, VARIANT* result) noexcept override;
  STDMETHODIMP ToDomain(VARIANT rx, VARIANT* result) noexcept override;

 private:
  using Variant = automation::Variant;
  using EndPoints = std::array<Variant, 2>;

  [[nodiscard]] static EndPoints unit() { return {Variant(short{0}), Variant(short{1})}; }
  [[nodiscard]] static Variant endPoint(const EndPoints& points, short index);
  void setEndPoint(EndPoints& points, short index, const VARIANT& value);
  void updateSlopes();

  EndPoints domain_ = unit();
  EndPoints range_ = unit();
  // A slope over equal end points stays what it was; empty acts as 0.
  Variant slopeToRange_;
  Variant slopeToDomain_;
  bool slopesValid_ = false;
};

}  // namespace zeq::utility
