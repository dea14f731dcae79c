#pragma once
// Operations on collections that tell of success instead of raising an error.

#include "ZEQUtility2.h"
#include "automation/Object.h"

namespace zeq::utility {

class CZEQUtilityCollections final
    : public automation::Object<CZEQUtilityCollections, ::CZEQUtilityCollections, ::_CZEQUtilityCollections> {
 public:
  STDMETHODIMP Collection_ContainsKey(IDispatch** col, VARIANT vntIndexKey,
                                      VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP Collection_Clear(IDispatch** col) noexcept override;
  STDMETHODIMP Collection_Remove(IDispatch** col, VARIANT vntIndexKey,
                                 VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP Collection_Add(IDispatch** col, IDispatch** Item, VARIANT vntIndexKey,
                              VARIANT_BOOL* result) noexcept override;
};

}  // namespace zeq::utility
