#pragma once
// Arithmetic and comparison of automation values: numeric texts count as numbers, null gives null, and a
// result that is too large for the type of its operands becomes a double.

#include "automation/Variant.h"

namespace zeq::utility {

// Each throws Error where automation has no result.
[[nodiscard]] automation::Variant sum(const automation::Variant& left, const automation::Variant& right);
[[nodiscard]] automation::Variant difference(const automation::Variant& left,
                                             const automation::Variant& right);
[[nodiscard]] automation::Variant product(const automation::Variant& left, const automation::Variant& right);
[[nodiscard]] automation::Variant quotient(const automation::Variant& left, const automation::Variant& right);

// Texts compare by character codes. A comparison with null is false.
[[nodiscard]] bool less(const VARIANT& left, const VARIANT& right);
[[nodiscard]] bool different(const VARIANT& left, const VARIANT& right);

}  // namespace zeq::utility
