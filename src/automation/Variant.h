#pragma once
// VARIANT as a value, and the automation conversions between its types.

#include <windows.h>
#include <oleauto.h>

#include <concepts>
#include <string>
#include <string_view>

#include "automation/ComPtr.h"
#include "automation/Errors.h"
#include "automation/Text.h"

namespace zeq::automation {

/// The variant that a VT_BYREF|VT_VARIANT refers to; any other variant itself.
[[nodiscard]] inline const VARIANT& dereferenced(const VARIANT& value) noexcept {
  return value.vt == (VT_BYREF | VT_VARIANT) && value.pvarVal != nullptr ? *value.pvarVal : value;
}

[[nodiscard]] constexpr bool isObjectType(VARTYPE type) noexcept {
  return type == VT_DISPATCH || type == VT_UNKNOWN;
}

/// Copies a variant, a reference as a reference. The target holds nothing before.
inline HRESULT copy(VARIANT& target, const VARIANT& source) noexcept {
  // The platform's declaration lacks the const that its documentation promises.
  return VariantCopy(&target, const_cast<VARIANT*>(&source));
}

/// True for a reference that has no variable behind it.
[[nodiscard]] inline bool refersToNothing(const VARIANT& value) noexcept {
  const VARIANT& inner = dereferenced(value);
  return (inner.vt & VT_BYREF) != 0 && inner.byref == nullptr;
}

/// Copies a variant; a reference is read. The target holds nothing before.
inline HRESULT copyValue(VARIANT& target, const VARIANT& source) noexcept {
  return refersToNothing(source) ? DISP_E_TYPEMISMATCH
                                 : VariantCopyInd(&target, const_cast<VARIANT*>(&source));
}

/// True for an optional argument that the client left out.
[[nodiscard]] inline bool isMissing(const VARIANT& value) noexcept {
  const VARIANT& inner = dereferenced(value);
  return inner.vt == VT_ERROR && inner.scode == DISP_E_PARAMNOTFOUND;
}

/// Converts as automation does: booleans become "True" and "False", objects give the value of their default
/// member. The target may be the source. On failure the target is left as it was.
HRESULT changeType(VARIANT& target, const VARIANT& source, VARTYPE type,
                   LCID locale = LOCALE_USER_DEFAULT) noexcept;

/// The type of the variable that a reference refers to; of any other value its own.
[[nodiscard]] inline VARTYPE referredType(const VARIANT& reference) noexcept {
  return static_cast<VARTYPE>(reference.vt & ~VT_BYREF);
}

/// What a reference refers to, as a VARIANT of that type without a reference of its own.
[[nodiscard]] VARIANT readReference(const VARIANT& reference) noexcept;

/// Puts a value of the same type where a reference refers to, and what was there into the value.
void exchange(const VARIANT& reference, VARIANT& value) noexcept;

/// Replaces what a variable holds by a copy of a value. A variable that is a reference is written through,
/// with the value in the type of what it refers to. Throws, and the variable keeps what it holds, if that is
/// not possible.
void assign(VARIANT& variable, const VARIANT& value);

/// Owns one VARIANT.
class Variant {
 public:
  Variant() noexcept { VariantInit(&value_); }
  /// Copies; a by-reference variant is read.
  explicit Variant(const VARIANT& value) : Variant() { check(copyValue(value_, value)); }
  explicit Variant(std::wstring_view text) : Variant() {
    value_.bstrVal = newBstr(text);
    value_.vt = VT_BSTR;
  }
  explicit Variant(IDispatch* object) noexcept : Variant() {
    value_.vt = VT_DISPATCH;
    value_.pdispVal = object;
    if (object != nullptr) {
      object->AddRef();
    }
  }
  template <std::same_as<bool> Bool>  // A pointer is not silently a boolean.
  explicit Variant(Bool value) noexcept : Variant() {
    value_.vt = VT_BOOL;
    value_.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  }
  explicit Variant(short value) noexcept : Variant() {
    value_.vt = VT_I2;
    value_.iVal = value;
  }
  explicit Variant(long value) noexcept : Variant() {
    value_.vt = VT_I4;
    value_.lVal = value;
  }
  explicit Variant(double value) noexcept : Variant() {
    value_.vt = VT_R8;
    value_.dblVal = value;
  }
  Variant(const Variant& other) : Variant(other.value_) {}
  Variant(Variant&& other) noexcept : value_(other.value_) { other.value_.vt = VT_EMPTY; }
  Variant& operator=(Variant other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~Variant() { VariantClear(&value_); }

  [[nodiscard]] static Variant null() noexcept {
    Variant result;
    result.value_.vt = VT_NULL;
    return result;
  }
  /// The value of an optional argument that is left out.
  [[nodiscard]] static Variant missing() noexcept {
    Variant result;
    result.value_.vt = VT_ERROR;
    result.value_.scode = DISP_E_PARAMNOTFOUND;
    return result;
  }

  [[nodiscard]] VARTYPE type() const noexcept { return value_.vt; }
  [[nodiscard]] const VARIANT& get() const noexcept { return value_; }
  [[nodiscard]] VARIANT& get() noexcept { return value_; }
  /// The address for a function that returns a VARIANT through an out argument.
  [[nodiscard]] VARIANT* out() noexcept {
    VariantClear(&value_);
    return &value_;
  }
  /// Gives the value away; the caller clears it.
  [[nodiscard]] VARIANT detach() noexcept {
    const VARIANT result = value_;
    value_.vt = VT_EMPTY;
    return result;
  }

  /// The value in another type; throws if there is no automation conversion.
  [[nodiscard]] Variant to(VARTYPE type) const {
    Variant result;
    check(changeType(result.value_, value_, type));
    return result;
  }

 private:
  VARIANT value_;
};

/// The automation text of a value.
[[nodiscard]] inline std::wstring textOf(const VARIANT& value) {
  Variant converted;
  check(changeType(converted.get(), value, VT_BSTR));
  return std::wstring(text(converted.get().bstrVal));
}

/// The object that a variant holds, without a reference of its own; null for Nothing and for a value that is
/// no object.
[[nodiscard]] inline IUnknown* objectIn(const VARIANT& value) noexcept {
  const VARIANT& inner = dereferenced(value);
  switch (inner.vt) {
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return inner.punkVal;
    case VT_BYREF | VT_DISPATCH:
    case VT_BYREF | VT_UNKNOWN:
      return inner.ppunkVal != nullptr ? *inner.ppunkVal : nullptr;
    default:
      return nullptr;
  }
}

}  // namespace zeq::automation
