#include "utility/VariantArithmetic.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace zeq::utility {
namespace {

using automation::check;
using automation::Error;
using automation::ErrorNumber;
using automation::Variant;

// The platform's declarations lack the const that its documentation promises.
VARIANT* operand(const VARIANT& value) noexcept {
  return const_cast<VARIANT*>(&value);
}

/// One operation on values and, for what is too large for their types, on numbers.
struct Operation {
  HRESULT(WINAPI* onValues)(VARIANT*, VARIANT*, VARIANT*);
  double (*onNumbers)(double, double);
};

double number(const Variant& value) {
  return value.to(VT_R8).get().dblVal;
}

/// Types whose overflow gives a double; currency and decimals overflow for good.
bool growsToDouble(VARTYPE type) noexcept {
  constexpr std::array types{VT_EMPTY, VT_BOOL, VT_UI1, VT_I2, VT_I4, VT_R4, VT_DATE, VT_BSTR};
  return std::find(types.begin(), types.end(), type) != types.end();
}

/// Whether a result of the platform, which does not see every overflow, is the number that it should be.
bool holds(const Variant& result, double exact) {
  switch (result.type()) {
    case VT_UI1:
    case VT_I2:
    case VT_I4:
      return number(result) == exact;
    case VT_R4:
    case VT_R8:
    case VT_DATE:
      return std::isfinite(number(result)) || !std::isfinite(exact);
    default:
      return true;
  }
}

/// A number that the types of its operands do not hold: a 32-bit integer if that does, else a double.
Variant grown(double exact, bool isInteger) {
  if (!std::isfinite(exact)) {
    throw Error(ErrorNumber::overflow);
  }
  constexpr double largest = std::numeric_limits<long>::max();
  return isInteger && std::fabs(exact) <= largest ? Variant(static_cast<long>(exact)) : Variant(exact);
}

Variant compute(const Operation& operation, const Variant& left, const Variant& right) {
  Variant result;
  const HRESULT outcome = operation.onValues(operand(left.get()), operand(right.get()), result.out());
  const bool canGrow = growsToDouble(left.type()) && growsToDouble(right.type());
  if (outcome != DISP_E_OVERFLOW || !canGrow) {
    check(outcome);
  }
  if (canGrow) {
    const double exact = operation.onNumbers(number(left), number(right));
    if (FAILED(outcome) || !holds(result, exact)) {
      return grown(exact, result.type() != VT_R4 && exact == std::trunc(exact));
    }
  }
  return result;
}

HRESULT compare(const VARIANT& left, const VARIANT& right) {
  if (left.vt == VT_BSTR && right.vt == VT_BSTR) {
    const int order = automation::text(left.bstrVal).compare(automation::text(right.bstrVal));
    return order < 0 ? VARCMP_LT : order > 0 ? VARCMP_GT : VARCMP_EQ;
  }
  const HRESULT outcome = VarCmp(operand(left), operand(right), LOCALE_USER_DEFAULT, 0);
  check(outcome);
  return outcome;
}

}  // namespace

Variant sum(const Variant& left, const Variant& right) {
  return compute({&VarAdd, [](double one, double other) { return one + other; }}, left, right);
}

Variant difference(const Variant& left, const Variant& right) {
  return compute({&VarSub, [](double one, double other) { return one - other; }}, left, right);
}

Variant product(const Variant& left, const Variant& right) {
  return compute({&VarMul, [](double one, double other) { return one * other; }}, left, right);
}

Variant quotient(const Variant& left, const Variant& right) {
  return compute({&VarDiv, [](double one, double other) { return one / other; }}, left, right);
}

bool less(const VARIANT& left, const VARIANT& right) {
  return compare(left, right) == VARCMP_LT;
}

bool different(const VARIANT& left, const VARIANT& right) {
  const HRESULT outcome = compare(left, right);
  return outcome == VARCMP_LT || outcome == VARCMP_GT;
}

}  // namespace zeq::utility
