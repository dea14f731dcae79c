#include "observe/PropertyValue.h"

#include "automation/ComPtr.h"
#include "automation/Text.h"
#include "automation/Variant.h"

namespace zeq::observe {
namespace {

/// An object has many interfaces, but only one IUnknown.
bool isSameObject(IUnknown* one, IUnknown* other) noexcept {
  if (one == other || one == nullptr || other == nullptr) {
    return one == other;
  }
  const auto identity = [](IUnknown* object) {
    return automation::ComPtr<IUnknown>(object).query<IUnknown>(IID_IUnknown);
  };
  return identity(one).get() == identity(other).get();
}

/// Two values of one type.
bool isSameValue(const VARIANT& one, const VARIANT& other) noexcept {
  switch (one.vt) {
    case VT_EMPTY:
      return true;
    case VT_I1:
    case VT_UI1:
      return one.bVal == other.bVal;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return one.iVal == other.iVal;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_ERROR:
      return one.lVal == other.lVal;
    case VT_I8:
    case VT_UI8:
    case VT_CY:
      return one.llVal == other.llVal;
    case VT_R4:
      return one.fltVal == other.fltVal;
    case VT_R8:
    case VT_DATE:
      return one.dblVal == other.dblVal;
    case VT_DECIMAL:
      return VarDecCmp(const_cast<DECIMAL*>(&one.decVal), const_cast<DECIMAL*>(&other.decVal)) ==
             static_cast<HRESULT>(VARCMP_EQ);
    case VT_BSTR:
      return automation::text(one.bstrVal) == automation::text(other.bstrVal);
    default:
      return false;
  }
}

}  // namespace

Comparison compare(const VARIANT& stored, const VARIANT& offered) noexcept {
  bool same = stored.vt == offered.vt;
  if (automation::isObjectType(stored.vt)) {
    same = automation::isObjectType(offered.vt) && isSameObject(stored.punkVal, offered.punkVal);
  } else if (same && stored.vt == VT_NULL) {
    return Comparison::null;
  } else {
    same = same && isSameValue(stored, offered);
  }
  return same ? Comparison::same : Comparison::different;
}

}  // namespace zeq::observe
