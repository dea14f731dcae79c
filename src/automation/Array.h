#pragma once
// Arrays of automation (SAFEARRAY) against the standard library's sequences.

#include <windows.h>
#include <oleauto.h>

#include <optional>
#include <string_view>
#include <vector>

#include "automation/Variant.h"

namespace zeq::automation {

/// A variant that holds an array of strings, counted from 0.
[[nodiscard]] Variant textArray(const std::vector<std::wstring_view>& texts);

/// A variant that holds an array of variants, counted from 0.
[[nodiscard]] Variant variantArray(std::vector<Variant> items);

/// The array in a variant, without a reference of its own; nothing if the variant holds no array. An array
/// that was never given a size is a null pointer.
[[nodiscard]] std::optional<SAFEARRAY*> arrayIn(const VARIANT& value) noexcept;

/// The elements of an array with one dimension, from its lower to its upper bound. Any other is an error, and
/// so is one of records.
[[nodiscard]] std::vector<Variant> elementsOf(SAFEARRAY* array);

}  // namespace zeq::automation
