#pragma once
// Short ways to write values in tests, and to look at the results of calls by name.

#include <gmock/gmock.h>

#include <string>
#include <string_view>

#include "support/Component.h"

namespace zeq::test {

inline Variant value(std::wstring_view text) {
  return Variant(text);
}
inline Variant value(const wchar_t* text) {
  return Variant(std::wstring_view(text));
}
inline Variant value(int number) {
  return Variant(static_cast<long>(number));
}
inline Variant value(long number) {
  return Variant(number);
}
inline Variant value(short number) {
  return Variant(number);
}
inline Variant value(double number) {
  return Variant(number);
}
inline Variant value(bool flag) {
  return Variant(flag);
}
inline Variant value(const Variant& variant) {
  return variant;
}

/// A value in another type, by the platform's own conversion.
inline Variant inType(VARTYPE type, const Variant& variant) {
  Variant result;
  automation::check(
      VariantChangeType(&result.get(), const_cast<VARIANT*>(&variant.get()), VARIANT_ALPHABOOL, type));
  return result;
}

/// The code of an automation error number.
constexpr HRESULT errorCode(int number) {
  return static_cast<HRESULT>(0x800A0000U) + number;
}

/// The text that a call by name gives.
template <class... Arguments>
std::wstring lateText(const Late& object, const wchar_t* name, const Arguments&... arguments) {
  return textIn(object.get(name, value(arguments)...));
}

/// Expects that a call by name fails with an automation error and its usual text.
inline void expectError(const Outcome& outcome, int number, std::wstring_view text) {
  EXPECT_EQ(outcome.code, DISP_E_EXCEPTION);
  EXPECT_EQ(outcome.scode, errorCode(number));
  EXPECT_EQ(outcome.description, text);
}

}  // namespace zeq::test
