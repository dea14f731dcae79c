#pragma once
// Quick sort about the middle element, swap for swap: where keys are equal, the order of what goes with them
// is the one that these swaps make.

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace zeq::utility {

/// A part of an array between two indices, inclusive. `depth` tells how often it was cut out of a larger one.
struct Part {
  std::int64_t low;
  std::int64_t high;
  unsigned depth = 0;
};

/// Moves what is below the key in the middle to the left and what is above it to the right. Returns where the
/// right side begins and where the left side ends.
template <class Elements>
std::pair<std::int64_t, std::int64_t> partition(Elements& elements, const Part& part) {
  const auto pivot = elements.key((part.low + part.high) / 2);
  std::int64_t i = part.low;
  std::int64_t j = part.high;
  while (i <= j) {
    i = elements.passBelow(i, part.high, pivot);
    j = elements.passAbove(j, part.low, pivot);
    if (i <= j) {
      elements.swap(i, j);
      ++i;
      --j;
    }
  }
  return {i, j};
}

/// Sorts the elements of a part. Elements have these members:
/// - key(index): the key at an index;
/// - passBelow(index, high, key): the first index from `index` on whose key is not below `key`, at most
/// `high`;
/// - passAbove(index, low, key): the same to the left for keys above `key`, at least `low`;
/// - swap(index, index).
/// `sortOtherwise` is asked before each step; it may sort the part itself and return true.
template <class Elements, class SortOtherwise>
void quickSort(Elements& elements, const Part& whole, SortOtherwise&& sortOtherwise) {
  std::vector<Part> pending{whole};
  while (!pending.empty()) {
    const Part part = pending.back();
    pending.pop_back();
    if (sortOtherwise(part)) {
      continue;
    }
    const auto [right, left] = partition(elements, part);
    if (right < part.high) {
      pending.push_back({right, part.high, part.depth + 1});
    }
    if (part.low < left) {  // On top: the left side comes first.
      pending.push_back({part.low, left, part.depth + 1});
    }
  }
}

template <class Elements>
void quickSort(Elements& elements, const Part& whole) {
  quickSort(elements, whole, [](const Part& /*part*/) { return false; });
}

/// Keys with the places that they had at first. `first` is the index of the first one.
template <class Key>
class KeyedPlaces {
 public:
  struct Entry {
    Key key;
    std::uint32_t place;
  };

  explicit KeyedPlaces(std::int64_t first, std::size_t expected = 0) : first_(first) {
    entries_.reserve(expected);
  }

  void append(Key key) { entries_.push_back({key, static_cast<std::uint32_t>(entries_.size())}); }

  [[nodiscard]] const std::vector<Entry>& entries() const noexcept { return entries_; }

  [[nodiscard]] Key key(std::int64_t index) const noexcept { return at(index).key; }
  [[nodiscard]] std::int64_t passBelow(std::int64_t index, std::int64_t high, const Key& key) const noexcept {
    while (at(index).key < key && index < high) {
      ++index;
    }
    return index;
  }
  [[nodiscard]] std::int64_t passAbove(std::int64_t index, std::int64_t low, const Key& key) const noexcept {
    while (key < at(index).key && index > low) {
      --index;
    }
    return index;
  }
  void swap(std::int64_t one, std::int64_t other) noexcept { std::swap(at(one), at(other)); }

 private:
  [[nodiscard]] const Entry& at(std::int64_t index) const noexcept {
    return entries_[static_cast<std::size_t>(index - first_)];
  }
  [[nodiscard]] Entry& at(std::int64_t index) noexcept {
    return entries_[static_cast<std::size_t>(index - first_)];
  }

  std::int64_t first_;
  std::vector<Entry> entries_;
};

/// Whether a key is neither below nor above any other.
template <class Key>
bool isUnordered(const Key& /*key*/) noexcept {
  return false;
}
inline bool isUnordered(double key) noexcept {
  return std::isnan(key);
}

/// A part of keyed places that knows the highest and the lowest key of every stretch of them, so that passing
/// over keys takes logarithmic time. Where partitions are uneven they swap little but pass over much.
template <class Key>
class KeyedStretches {
 public:
  KeyedStretches(KeyedPlaces<Key>& places, const Part& part)
      : places_(places),
        first_(part.low),
        leaves_(std::bit_ceil(static_cast<std::size_t>(part.high - part.low + 1))),
        highest_(2 * leaves_),
        lowest_(2 * leaves_) {
    for (std::size_t leaf = 0; leaf < leaves_; ++leaf) {
      setLeaf(leaf, places.key(std::min(first_ + static_cast<std::int64_t>(leaf), part.high)));
    }
    for (std::size_t node = leaves_ - 1; node > 0; --node) {
      update(node);
    }
  }

  [[nodiscard]] Key key(std::int64_t index) const noexcept { return places_.key(index); }

  [[nodiscard]] std::int64_t passBelow(std::int64_t index, std::int64_t high, const Key& key) const noexcept {
    const auto allBelow = [&](std::size_t node) { return highest_[node] < key; };
    std::size_t node = leafOf(index);
    while (allBelow(node)) {
      while (node % 2 == 1) {  // A right child: what follows it follows its parent.
        node /= 2;
      }
      if (node == 0) {
        return high;
      }
      ++node;
    }
    while (node < leaves_) {
      node *= 2;
      node += allBelow(node) ? 1U : 0U;
    }
    return std::min(indexOf(node), high);
  }

  [[nodiscard]] std::int64_t passAbove(std::int64_t index, std::int64_t low, const Key& key) const noexcept {
    const auto allAbove = [&](std::size_t node) { return key < lowest_[node]; };
    std::size_t node = leafOf(index);
    while (allAbove(node)) {
      while (node % 2 == 0) {  // A left child: what precedes it precedes its parent.
        node /= 2;
      }
      if (node == 1) {
        return low;
      }
      --node;
    }
    while (node < leaves_) {
      node = 2 * node + 1;
      node -= allAbove(node) ? 1U : 0U;
    }
    return std::max(indexOf(node), low);
  }

  void swap(std::int64_t one, std::int64_t other) noexcept {
    places_.swap(one, other);
    for (const std::int64_t index : {one, other}) {
      std::size_t node = leafOf(index);
      setLeaf(node - leaves_, places_.key(index));
      while (node > 1) {
        node /= 2;
        update(node);
      }
    }
  }

 private:
  [[nodiscard]] std::size_t leafOf(std::int64_t index) const noexcept {
    return leaves_ + static_cast<std::size_t>(index - first_);
  }
  [[nodiscard]] std::int64_t indexOf(std::size_t node) const noexcept {
    return first_ + static_cast<std::int64_t>(node - leaves_);
  }
  void setLeaf(std::size_t leaf, const Key& key) noexcept {
    highest_[leaves_ + leaf] = lowest_[leaves_ + leaf] = key;
  }

  /// An unordered key stays on top of both, as passing over keys stops at it.
  void update(std::size_t node) noexcept {
    const std::size_t left = 2 * node;
    const std::size_t right = left + 1;
    highest_[node] =
        highest_[left] < highest_[right] || isUnordered(highest_[right]) ? highest_[right] : highest_[left];
    lowest_[node] =
        lowest_[right] < lowest_[left] || isUnordered(lowest_[right]) ? lowest_[right] : lowest_[left];
  }

  KeyedPlaces<Key>& places_;
  std::int64_t first_;
  std::size_t leaves_;
  // Binary trees in arrays: the children of node n are 2n and 2n + 1, the leaves come last.
  std::vector<Key> highest_;
  std::vector<Key> lowest_;
};

/// Sorts keyed places in n log n steps, if need be with the help of stretches: the swaps of uneven partitions
/// are few.
template <class Key>
void quickSortPlaces(KeyedPlaces<Key>& places, const Part& whole) {
  const auto size = static_cast<std::uint64_t>(std::max<std::int64_t>(whole.high - whole.low, 1));
  const auto usualDepth = static_cast<unsigned>(4 * std::bit_width(size));
  quickSort(places, whole, [&](const Part& part) {
    if (part.depth <= usualDepth) {
      return false;
    }
    KeyedStretches<Key> stretches(places, part);
    quickSort(stretches, part);
    return true;
  });
}

}  // namespace zeq::utility
