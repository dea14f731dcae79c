#include "utility/QuickSort.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <numeric>
#include <random>
#include <string_view>

#include "utility/SortModel.h"

namespace zeq::utility {
namespace {

using Entry = KeyedPlaces<double>::Entry;

std::vector<std::uint32_t> placesOf(const std::vector<Entry>& entries) {
  std::vector<std::uint32_t> places;
  for (const Entry& each : entries) {
    places.push_back(each.place);
  }
  return places;
}

KeyedPlaces<double> sorted(const std::vector<double>& keys) {
  KeyedPlaces<double> places(0);
  for (const double key : keys) {
    places.append(key);
  }
  quickSortPlaces(places, {.low = 0, .high = static_cast<std::int64_t>(keys.size()) - 1});
  return places;
}

std::vector<std::uint32_t> sortedByModel(const std::vector<double>& keys) {
  std::vector<Entry> entries;
  for (const double key : keys) {
    entries.push_back({key, static_cast<std::uint32_t>(entries.size())});
  }
  const auto entry = [&](std::int32_t index) -> Entry& { return entries[static_cast<std::size_t>(index)]; };
  model::quickSort([&](std::int32_t index) { return entry(index).key; }, std::less<>(),
                   [&](std::int32_t one, std::int32_t other) { std::swap(entry(one), entry(other)); }, 0,
                   static_cast<std::int32_t>(keys.size()) - 1);
  return placesOf(entries);
}

bool isSorted(const KeyedPlaces<double>& places) {
  return std::is_sorted(places.entries().begin(), places.entries().end(),
                        [](const Entry& one, const Entry& other) { return one.key < other.key; });
}

std::vector<double> worstCase(std::size_t count) {
  const std::vector<std::size_t> order = model::worstOrder(count);
  return {order.begin(), order.end()};
}

TEST(QuickSort, MakesTheSwapsOfTheModel) {
  std::mt19937 random(3);
  for (int round = 0; round < 2000; ++round) {
    std::vector<double> keys(random() % 60 + 1);
    const auto different = static_cast<int>(random() % 30 + 1);
    for (double& each : keys) {
      each = static_cast<int>(random()) % different;
    }
    ASSERT_EQ(placesOf(sorted(keys).entries()), sortedByModel(keys));
  }
}

TEST(QuickSort, MakesTheSwapsOfTheModelWithUnorderedKeys) {
  std::mt19937 random(4);
  for (int round = 0; round < 500; ++round) {
    std::vector<double> keys(random() % 40 + 1);
    for (double& each : keys) {
      each = random() % 3 == 0 ? std::numeric_limits<double>::quiet_NaN() : static_cast<int>(random() % 9);
    }
    ASSERT_EQ(placesOf(sorted(keys).entries()), sortedByModel(keys));
  }
}

TEST(QuickSort, MakesTheSwapsOfTheModelInItsWorstCase) {
  std::vector<double> keys = worstCase(3000);
  EXPECT_EQ(placesOf(sorted(keys).entries()), sortedByModel(keys));
  keys.insert(keys.end(), {1, 2999, 2999, 5});
  EXPECT_EQ(placesOf(sorted(keys).entries()), sortedByModel(keys));
  keys.push_back(std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(placesOf(sorted(keys).entries()), sortedByModel(keys));
}

TEST(QuickSort, MakesTheSwapsOfTheModelByStretches) {
  std::mt19937 random(6);
  for (int round = 0; round < 1000; ++round) {
    KeyedPlaces<double> places(0);
    std::vector<double> keys(random() % 50 + 1);
    const auto different = static_cast<int>(random() % 30 + 1);
    for (double& each : keys) {
      const bool isNone = random() % 50 == 0;
      each = isNone ? std::numeric_limits<double>::quiet_NaN() : static_cast<int>(random()) % different;
      places.append(each);
    }
    const Part part{.low = 0, .high = static_cast<std::int64_t>(keys.size()) - 1};
    KeyedStretches<double> stretches(places, part);
    quickSort(stretches, part);
    ASSERT_EQ(placesOf(places.entries()), sortedByModel(keys));
  }
}

TEST(QuickSort, MakesTheSwapsOfTheModelUpAndDownAgain) {
  std::vector<double> keys(5000);
  for (std::size_t i = 0; i < keys.size(); ++i) {
    keys[i] = static_cast<double>(std::min(i, keys.size() - i));
  }
  EXPECT_EQ(placesOf(sorted(keys).entries()), sortedByModel(keys));
}

TEST(QuickSort, SortsManyInAnyOrder) {
  constexpr std::size_t count = 200000;  // The component's tests sort a million, without sanitizers.
  std::vector<double> keys(count);
  std::iota(keys.begin(), keys.end(), 0.0);
  EXPECT_TRUE(isSorted(sorted(keys)));
  std::reverse(keys.begin(), keys.end());
  EXPECT_TRUE(isSorted(sorted(keys)));
  EXPECT_TRUE(isSorted(sorted(worstCase(count))));
  EXPECT_TRUE(isSorted(sorted(std::vector<double>(count, 7.0))));
  for (std::size_t i = 0; i < count; ++i) {  // Up and down again.
    keys[i] = static_cast<double>(std::min(i, count - i));
  }
  EXPECT_TRUE(isSorted(sorted(keys)));
}

TEST(QuickSort, KeepsToItsRange) {
  KeyedPlaces<std::wstring_view> places(-2);
  for (const wchar_t* key : {L"z", L"c", L"a", L"B", L"a"}) {
    places.append(key);
  }
  quickSortPlaces(places, {.low = -1, .high = 1});
  std::vector<std::wstring_view> keys;
  for (const auto& each : places.entries()) {
    keys.push_back(each.key);
  }
  EXPECT_EQ(keys, (std::vector<std::wstring_view>{L"z", L"B", L"a", L"c", L"a"}));
}

}  // namespace
}  // namespace zeq::utility
