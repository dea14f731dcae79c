#pragma once
// The two failure policies of members, visible where the member is written:
//
//   quietly(result, body)   any failure leaves the neutral value (False, 0, "", Nothing, Empty) in the result
//   raising(result, body)   a failure reaches the client as HRESULT and IErrorInfo
//
// Both run the body, store what it returns in the member's result argument and let no exception across the
// boundary. Without a result argument the body returns nothing. A null result pointer is answered with
// E_POINTER.

#include <windows.h>

#include <concepts>
#include <string>
#include <string_view>
#include <type_traits>

#include "automation/ComPtr.h"
#include "automation/Errors.h"
#include "automation/Text.h"
#include "automation/Variant.h"

namespace zeq::automation {

/// The source that errors are reported under.
inline constexpr const wchar_t* errorSource = L"ZEQUtility2";

namespace policy {

inline void clear(BSTR& result) noexcept {
  result = nullptr;
}
inline void clear(VARIANT& result) noexcept {
  VariantInit(&result);
}
template <class Value>
requires std::is_arithmetic_v<Value> || std::is_enum_v<Value> || std::is_pointer_v<Value>
void clear(Value& result) noexcept {
  result = Value{};
}

inline void store(BSTR& result, std::wstring_view value) {
  result = newBstr(value);
}
inline void store(BSTR& result, Bstr&& value) noexcept {
  result = value.detach();
}
template <std::same_as<bool> Bool>
void store(VARIANT_BOOL& result, Bool value) noexcept {
  result = value ? VARIANT_TRUE : VARIANT_FALSE;
}
inline void store(VARIANT& result, Variant&& value) noexcept {
  result = value.detach();
}
template <class Interface, class Object>
requires std::convertible_to<Object*, Interface*>
void store(Interface*& result, ComPtr<Object>&& value) noexcept {
  result = value.detach();
}
template <class Value>
requires(std::is_arithmetic_v<Value> && !std::same_as<Value, VARIANT_BOOL>) ||
    std::is_enum_v<Value> void store(Value& result, Value value) noexcept {
  result = value;
}
/// VARIANT_BOOL and the 16-bit integer are one type: this takes the integers.
inline void store(short& result, short value) noexcept {
  result = value;
}

}  // namespace policy

/// Reports the exception being handled to the client and returns its code.
inline HRESULT reportCurrent() noexcept {
  return report(currentFailure(), errorSource);
}

/// Answers a client that gives no room for the result.
inline HRESULT reportNullResult() noexcept {
  return report({E_POINTER, {}}, errorSource);
}

template <class Result, std::invocable Body>
HRESULT raising(Result* result, Body&& body) noexcept {
  if (result == nullptr) {
    return reportNullResult();
  }
  policy::clear(*result);
  try {
    policy::store(*result, body());
    return S_OK;
  } catch (...) {
    return reportCurrent();
  }
}

template <std::invocable Body>
HRESULT raising(Body&& body) noexcept {
  try {
    body();
    return S_OK;
  } catch (...) {
    return reportCurrent();
  }
}

template <class Result, std::invocable Body>
HRESULT quietly(Result* result, Body&& body) noexcept {
  if (result == nullptr) {
    return reportNullResult();
  }
  policy::clear(*result);
  try {
    policy::store(*result, body());
  } catch (...) {  // NOLINT(bugprone-empty-catch): the neutral value is the answer.
    return S_OK;
  }
  return S_OK;
}

template <std::invocable Body>
HRESULT quietly(Body&& body) noexcept {
  try {
    body();
  } catch (...) {  // NOLINT(bugprone-empty-catch): the call ends here.
    return S_OK;
  }
  return S_OK;
}

}  // namespace zeq::automation
