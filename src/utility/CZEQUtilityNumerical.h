#pragma once
// Number functions for clients.

#include "ZEQUtility2.h"
#include "automation/Object.h"

namespace zeq::utility {

class CZEQUtilityNumerical final
    : public automation::Object<CZEQUtilityNumerical, ::CZEQUtilityNumerical, ::_CZEQUtilityNumerical> {
 public:
  STDMETHODIMP NumVal_Limit(double ValueA, double MinA, double MaxA, double* result) noexcept override;
  STDMETHODIMP NumVal_Scale(double DomainX, double Domain0, double Domain1, double Range0, double Range1,
                            double* result) noexcept override;
  STDMETHODIMP NumVal_MaxOf(double V1A, double V2A, double* result) noexcept override;
  STDMETHODIMP NumVal_MinOf(double V1A, double V2A, double* result) noexcept override;
  STDMETHODIMP Color_CompressRange(OLE_COLOR OriginalA, short MinA, short MaxA,
                                   OLE_COLOR* result) noexcept override;
  STDMETHODIMP Color_GetRGBComponents(OLE_COLOR ColorA, short* RedA, short* GreenA,
                                      short* BlueA) noexcept override;
};

}  // namespace zeq::utility
