#pragma once
// Sorting of arrays for clients.

#include "ZEQUtility2.h"
#include "automation/Object.h"

namespace zeq::utility {

class CZEQUtilitySorting final
    : public automation::Object<CZEQUtilitySorting, ::CZEQUtilitySorting, ::_CZEQUtilitySorting> {
 public:
  STDMETHODIMP QuickSortVariants(VARIANT* vArrayRank, VARIANT* vArrayData, long* inLow,
                                 long* inHi) noexcept override;
};

}  // namespace zeq::utility
