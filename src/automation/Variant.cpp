#include "automation/Variant.h"

#include <cstring>
#include <utility>

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

/// How many bytes the variable behind a reference has that a VARIANT of its type holds beside the type.
std::size_t sizeOf(VARTYPE type) noexcept {
  if ((type & VT_ARRAY) != 0) {
    return sizeof(SAFEARRAY*);
  }
  switch (type) {
    case VT_I1:
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return 2;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_DATE:
    case VT_CY:
      return 8;
    case VT_BSTR:
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return sizeof(void*);
    default:
      return 4;
  }
}

}  // namespace

HRESULT changeType(VARIANT& target, const VARIANT& source, VARTYPE type, LCID locale) noexcept {
  const VARIANT& inner = dereferenced(source);
  if (refersToNothing(inner)) {
    return DISP_E_TYPEMISMATCH;
  }
  VARIANT converted;
  VariantInit(&converted);
  HRESULT result = S_OK;
  if (referredType(inner) == VT_DISPATCH && !isObjectType(type)) {
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

VARIANT readReference(const VARIANT& reference) noexcept {
  VARIANT value{};
  if (referredType(reference) == VT_RECORD) {
    value = reference;  // It names the record and its type in the same way.
  } else if (referredType(reference) == VT_DECIMAL) {
    value.decVal = *reference.pdecVal;  // Its bytes surround those of the type.
  } else {
    std::memcpy(&value.byref, reference.byref, sizeOf(referredType(reference)));
  }
  value.vt = referredType(reference);
  return value;
}

void exchange(const VARIANT& reference, VARIANT& value) noexcept {
  const VARIANT old = readReference(reference);
  if (value.vt == VT_DECIMAL) {
    *reference.pdecVal = value.decVal;
  } else {
    std::memcpy(reference.byref, &value.byref, sizeOf(value.vt));
  }
  value = old;
}

void assign(VARIANT& variable, const VARIANT& value) {
  if (variable.vt == (VT_BYREF | VT_VARIANT)) {
    assign(*variable.pvarVal, value);
  } else if ((variable.vt & VT_BYREF) != 0) {
    const VARTYPE type = referredType(variable);
    if (type == VT_RECORD) {
      throw Error(ErrorNumber::typeMismatch);  // Only its own type could fill a client's record.
    }
    Variant replacement(value);
    if (replacement.type() != type) {
      replacement = replacement.to(type);
    }
    exchange(variable, replacement.get());
  } else {
    Variant replacement(value);
    std::swap(variable, replacement.get());
  }
}

}  // namespace zeq::automation
