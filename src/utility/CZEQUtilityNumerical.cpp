#include "utility/CZEQUtilityNumerical.h"

#include "utility/Numbers.h"

namespace zeq::utility {

using automation::quietly;

STDMETHODIMP CZEQUtilityNumerical::NumVal_Limit(double ValueA, double MinA, double MaxA,
                                                double* result) noexcept {
  return quietly(result, [&] { return limited(ValueA, MinA, MaxA); });
}

STDMETHODIMP CZEQUtilityNumerical::NumVal_Scale(double DomainX, double Domain0, double Domain1, double Range0,
                                                double Range1, double* result) noexcept {
  return quietly(result, [&] { return scaled(DomainX, {Domain0, Domain1}, {Range0, Range1}); });
}

STDMETHODIMP CZEQUtilityNumerical::NumVal_MaxOf(double V1A, double V2A, double* result) noexcept {
  return quietly(result, [&] { return larger(V1A, V2A); });
}

STDMETHODIMP CZEQUtilityNumerical::NumVal_MinOf(double V1A, double V2A, double* result) noexcept {
  return quietly(result, [&] { return smaller(V1A, V2A); });
}

STDMETHODIMP CZEQUtilityNumerical::Color_CompressRange(OLE_COLOR OriginalA, short MinA, short MaxA,
                                                       OLE_COLOR* result) noexcept {
  return quietly(result, [&]() -> OLE_COLOR { return compressedColour(OriginalA, MinA, MaxA); });
}

STDMETHODIMP CZEQUtilityNumerical::Color_GetRGBComponents(OLE_COLOR ColorA, short* RedA, short* GreenA,
                                                          short* BlueA) noexcept {
  if (RedA == nullptr || GreenA == nullptr || BlueA == nullptr) {
    return E_POINTER;
  }
  const Colour components = componentsOf(ColorA);
  *RedA = components.red;
  *GreenA = components.green;
  *BlueA = components.blue;
  return S_OK;
}

}  // namespace zeq::utility
