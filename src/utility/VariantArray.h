#pragma once
// The elements of a client's one-dimensional array, where they stand.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "automation/Variant.h"

namespace zeq::utility {

/// Holds the array in its place while it lives.
class VariantArray {
 public:
  /// The array that a variant holds or refers to. Throws type mismatch if there is none, and subscript out of
  /// range if it has no elements yet or more than one dimension.
  explicit VariantArray(const VARIANT& holder);
  ~VariantArray();
  VariantArray(const VariantArray&) = delete;
  VariantArray& operator=(const VariantArray&) = delete;

  [[nodiscard]] bool has(std::int64_t index) const noexcept { return index >= lowest_ && index <= highest_; }
  /// Whether both are one array.
  [[nodiscard]] bool isSameAs(const VariantArray& other) const noexcept { return array_ == other.array_; }

  // An index outside throws subscript out of range.

  /// An element as a value that it still owns.
  [[nodiscard]] VARIANT borrowed(std::int64_t index) const;
  void exchange(std::int64_t one, std::int64_t other);

  /// Puts into each place from `first` on the element that `placeOf(n)`, counted from there too, says.
  template <class PlaceOf>
  void rearrange(std::int64_t first, std::size_t count, PlaceOf&& placeOf) {
    std::byte* const start = address(first);
    const std::vector<std::byte> before(start, start + count * size_);
    for (std::size_t n = 0; n < count; ++n) {
      std::memcpy(start + n * size_, &before[placeOf(n) * size_], size_);
    }
  }

 private:
  [[nodiscard]] std::byte* address(std::int64_t index) const;

  SAFEARRAY* array_;
  VARTYPE type_;
  std::size_t size_;
  std::int64_t lowest_;
  std::int64_t highest_;
};

}  // namespace zeq::utility
