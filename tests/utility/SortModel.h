#pragma once
// Quick sort about the middle element as it is defined: by recursion, on any arrays that can be indexed; and
// what it likes least.

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <utility>
#include <vector>

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

/// The order of 0..count-1 that makes the middle key of every partition its smallest.
inline std::vector<std::size_t> worstOrder(std::size_t count) {
  // Play the sort backwards: each partition takes the middle element to its front.
  std::vector<std::size_t> keys(count);
  std::vector<std::size_t> positions(count);
  std::iota(positions.begin(), positions.end(), std::size_t{0});
  for (std::size_t low = 0; low < count; ++low) {
    const std::size_t middle = (low + count - 1) / 2;
    keys[positions[middle]] = low;
    std::swap(positions[low], positions[middle]);
  }
  return keys;
}

}  // namespace zeq::utility::model
