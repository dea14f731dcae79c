#pragma once
// What the conformance clients pass to members and get from them.

#include <windows.h>
#include <oleauto.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace conformance {

/// Ends a scenario: a call failed that should not.
struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

void expectSuccess(HRESULT result, std::wstring_view what);

/// A variant that owns what it holds.
class Value {
 public:
  Value() noexcept { VariantInit(&variant_); }
  Value(bool value) noexcept : Value(VT_BOOL) { variant_.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE; }
  Value(short value) noexcept : Value(VT_I2) { variant_.iVal = value; }
  Value(int value) noexcept : Value(VT_I4) { variant_.lVal = value; }
  Value(long value) noexcept : Value(VT_I4) { variant_.lVal = value; }
  Value(unsigned long value) noexcept : Value(VT_UI4) { variant_.ulVal = value; }
  Value(float value) noexcept : Value(VT_R4) { variant_.fltVal = value; }
  Value(double value) noexcept : Value(VT_R8) { variant_.dblVal = value; }
  Value(std::wstring_view text) : Value(VT_BSTR) {
    variant_.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  }
  Value(const wchar_t* text) : Value(std::wstring_view(text)) {}
  Value(const std::wstring& text) : Value(std::wstring_view(text)) {}
  /// Shares an object; null is Nothing.
  Value(IDispatch* object) noexcept : Value(VT_DISPATCH) {
    variant_.pdispVal = object;
    if (object != nullptr) {
      object->AddRef();
    }
  }
  Value(const Value& other) : Value() { VariantCopy(&variant_, const_cast<VARIANT*>(&other.variant_)); }
  Value(Value&& other) noexcept : variant_(other.variant_) { VariantInit(&other.variant_); }
  Value& operator=(Value other) noexcept {
    std::swap(variant_, other.variant_);
    return *this;
  }
  ~Value() { VariantClear(&variant_); }

  /// A new object, whose maker's reference the value takes over.
  [[nodiscard]] static Value owning(IDispatch* made) noexcept {
    Value value(VT_DISPATCH);
    value.variant_.pdispVal = made;
    return value;
  }
  /// An optional argument that is left out.
  [[nodiscard]] static Value missing() noexcept {
    Value value(VT_ERROR);
    value.variant_.scode = DISP_E_PARAMNOTFOUND;
    return value;
  }

  [[nodiscard]] VARIANT* raw() noexcept { return &variant_; }
  [[nodiscard]] const VARIANT& get() const noexcept { return variant_; }

  /// The value as another type, as automation converts it.
  [[nodiscard]] Value as(VARTYPE type) const;
  [[nodiscard]] std::wstring text() const;
  /// The object that it holds, or null. It stays this value's.
  [[nodiscard]] IDispatch* object() const noexcept {
    return variant_.vt == VT_DISPATCH ? variant_.pdispVal : nullptr;
  }
  /// The object that it holds, which stays this value's; without one the scenario ends.
  [[nodiscard]] IDispatch& needObject() const;

 private:
  explicit Value(VARENUM type) noexcept : Value() { variant_.vt = static_cast<VARTYPE>(type); }

  VARIANT variant_;
};

/// An argument of a call: a value or, as ref(variable), a client's variable that the member may write to.
struct Argument {
  Argument(Value given) : value(std::move(given)) {}

  Value value;
  Value* variable = nullptr;
};

[[nodiscard]] inline Argument ref(Value& variable) {
  Argument argument(variable);
  argument.variable = &variable;
  return argument;
}

}  // namespace conformance
