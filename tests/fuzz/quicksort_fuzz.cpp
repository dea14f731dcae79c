// Quick sort against its definition by recursion, swap for swap.

#include <algorithm>
#include <functional>
#include <limits>
#include <utility>
#include <vector>

#include "fuzz/Input.h"
#include "utility/QuickSort.h"
#include "utility/SortModel.h"

namespace zeq::utility {
namespace {

using Places = KeyedPlaces<double>;

double anyKey(fuzz::Input& input) {
  const auto byte = input.any<std::uint8_t>();
  return byte == 255 ? std::numeric_limits<double>::quiet_NaN() : byte;
}

std::vector<std::uint32_t> placesOf(const std::vector<Places::Entry>& entries) {
  std::vector<std::uint32_t> places(entries.size());
  std::transform(entries.begin(), entries.end(), places.begin(),
                 [](const Places::Entry& each) { return each.place; });
  return places;
}

std::vector<std::uint32_t> sortedByModel(std::vector<Places::Entry> entries) {
  const auto entry = [&](std::int32_t index) -> Places::Entry& {
    return entries[static_cast<std::size_t>(index)];
  };
  model::quickSort([&](std::int32_t index) { return entry(index).key; }, std::less<>(),
                   [&](std::int32_t one, std::int32_t other) { std::swap(entry(one), entry(other)); }, 0,
                   static_cast<std::int32_t>(entries.size()) - 1);
  return placesOf(entries);
}

}  // namespace
}  // namespace zeq::utility

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zeq;
  fuzz::Input input(data, size);
  const bool byStretches = input.flag();
  utility::Places places(0);
  do {
    places.append(utility::anyKey(input));
  } while (input.hasMore());
  const std::vector<std::uint32_t> expected = utility::sortedByModel(places.entries());
  const utility::Part whole{.low = 0, .high = static_cast<std::int64_t>(places.entries().size()) - 1};
  if (byStretches) {
    utility::KeyedStretches<double> stretches(places, whole);
    utility::quickSort(stretches, whole);
  } else {
    utility::quickSortPlaces(places, whole);
  }
  fuzz::require(utility::placesOf(places.entries()) == expected, "the swaps are those of the model");
  return 0;
}
