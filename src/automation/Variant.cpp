#include "automation/Variant.h"

namespace zeq::automation {
namespace {

/// An object's default member stands for its value.
HRESULT defaultMember(const VARIANT& source, VARIANT& value) noexcept {
  IDispatch* object = (source.vt & VT_BYREF) != 0 ? *source.ppdispVal : source.pdispVal;
  if (object == nullptr) {
    return DISP_E_TYPEMISMATCH;
  }
  DISPPARAMS none{};
  const HRESULT result =
      object->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET | DISPATCH_METHOD,
                     &none, &value, nullptr, nullptr);
  if (FAILED(result)) {
    return DISP_E_TYPEMISMATCH;
  }
  if (value.vt == VT_DISPATCH) {
    // A default member that is again an object is not followed: it may be the object itself.
    VariantClear(&value);
    return DISP_E_TYPEMISMATCH;
  }
  return S_OK;
}

}  // namespace

HRESULT changeType(VARIANT& target, const VARIANT& source, VARTYPE type, LCID locale) noexcept {
  const VARIANT& inner = dereferenced(source);
  VARIANT converted;
  VariantInit(&converted);
  HRESULT result = S_OK;
  if ((inner.vt & ~VT_BYREF) == VT_DISPATCH && type != VT_DISPATCH && type != VT_UNKNOWN) {
    VARIANT value;
    VariantInit(&value);
    result = defaultMember(inner, value);
    if (SUCCEEDED(result)) {
      result = VariantChangeTypeEx(&converted, &value, locale, VARIANT_ALPHABOOL, type);
      VariantClear(&value);
    }
  } else {
    result = VariantChangeTypeEx(&converted, const_cast<VARIANT*>(&inner), locale, VARIANT_ALPHABOOL, type);
  }
  if (FAILED(result)) {
    return result == DISP_E_BADVARTYPE ? DISP_E_TYPEMISMATCH : result;
  }
  VariantClear(&target);
  target = converted;
  return S_OK;
}

}  // namespace zeq::automation
