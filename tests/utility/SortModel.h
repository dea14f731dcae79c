#pragma once
// Quick sort about the middle element as it is defined: by recursion, on any arrays that can be indexed.

#include <cstdint>

namespace zeq::utility::model {

/// `at(index)` gives a key, `less` compares two keys, `swap` exchanges two elements.
template <class At, class Less, class Swap>
void quickSort(const At& at, const Less& less, const Swap& swap, std::int32_t low, std::int32_t high) {
  const auto pivot = at((low + high) / 2);
  std::int32_t i = low;
  std::int32_t j = high;
  while (i <= j) {
    while (less(at(i), pivot) && i < high) {
      ++i;
    }
    while (less(pivot, at(j)) && j > low) {
      --j;
    }
    if (i <= j) {
      swap(i, j);
      ++i;
      --j;
    }
  }
  if (low < j) {
    quickSort(at, less, swap, low, j);
  }
  if (i < high) {
    quickSort(at, less, swap, i, high);
  }
}

}  // namespace zeq::utility::model
