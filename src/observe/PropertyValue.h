#pragma once
// When the value of a property counts as changed.

#include <windows.h>
#include <oaidl.h>

namespace zeq::observe {

/// What comparing two values tells. Null compared with Null is neither the same nor different.
enum class Comparison { same, different, null };

/// Objects are the same if they are one object. Other values are the same if their types are the same and
/// their values are; texts are compared character by character. Arrays, and an object and a value, are always
/// different.
[[nodiscard]] Comparison compare(const VARIANT& stored, const VARIANT& offered) noexcept;

}  // namespace zeq::observe
