#include "utility/CZEQUtilitySorting.h"

#include <optional>
#include <string_view>

#include "utility/QuickSort.h"
#include "utility/VariantArithmetic.h"
#include "utility/VariantArray.h"

namespace zeq::utility {
namespace {

using automation::Error;
using automation::raising;
using automation::Variant;

/// Two arrays that are sorted together, by the automation order of the elements of the first.
class Arrays {
 public:
  Arrays(VariantArray& rank, VariantArray& data) noexcept : rank_(rank), data_(data) {}

  [[nodiscard]] Variant key(std::int64_t index) const { return Variant(rank_.borrowed(index)); }
  [[nodiscard]] std::int64_t passBelow(std::int64_t index, std::int64_t high, const Variant& key) const {
    while (less(rank_.borrowed(index), key.get()) && index < high) {
      ++index;
    }
    return index;
  }
  [[nodiscard]] std::int64_t passAbove(std::int64_t index, std::int64_t low, const Variant& key) const {
    while (less(key.get(), rank_.borrowed(index)) && index > low) {
      --index;
    }
    return index;
  }
  void swap(std::int64_t one, std::int64_t other) {
    rank_.exchange(one, other);
    data_.exchange(one, other);
  }

 private:
  VariantArray& rank_;
  VariantArray& data_;
};

// Keys that compare as the elements do which they are taken from, as long as all elements have one.

/// An integer, a double or what acts as one.
std::optional<double> asNumber(const VARIANT& value) noexcept {
  switch (value.vt) {
    case VT_EMPTY:
      return 0;
    case VT_BOOL:
      return value.boolVal;
    case VT_UI1:
      return value.bVal;
    case VT_I2:
      return value.iVal;
    case VT_I4:
      return value.lVal;
    case VT_R8:
      return value.dblVal;
    default:
      return std::nullopt;
  }
}

std::optional<double> asSingle(const VARIANT& value) noexcept {
  return value.vt == VT_R4 ? std::optional<double>(value.fltVal) : std::nullopt;
}

std::optional<double> asDate(const VARIANT& value) noexcept {
  return value.vt == VT_DATE ? std::optional(value.date) : std::nullopt;
}

std::optional<std::int64_t> asCurrency(const VARIANT& value) noexcept {
  return value.vt == VT_CY ? std::optional<std::int64_t>(value.cyVal.int64) : std::nullopt;
}

std::optional<std::int64_t> asLongInteger(const VARIANT& value) noexcept {
  return value.vt == VT_I8 ? std::optional<std::int64_t>(value.llVal) : std::nullopt;
}

struct Decimal {
  DECIMAL value;
  bool operator<(const Decimal& other) const noexcept {
    return VarDecCmp(const_cast<DECIMAL*>(&value), const_cast<DECIMAL*>(&other.value)) ==
           static_cast<HRESULT>(VARCMP_LT);
  }
};

std::optional<Decimal> asDecimal(const VARIANT& value) noexcept {
  return value.vt == VT_DECIMAL ? std::optional(Decimal{value.decVal}) : std::nullopt;
}

/// A text; an empty value acts as an empty one.
std::optional<std::wstring_view> asText(const VARIANT& value) noexcept {
  switch (value.vt) {
    case VT_EMPTY:
      return L"";
    case VT_BSTR:
      return automation::text(value.bstrVal);
    default:
      return std::nullopt;
  }
}

/// Sorts by keys and then moves each element once. False, and nothing is done, if an element has no such key.
template <class Key>
bool sortByKeys(VariantArray& rank, VariantArray& data, const Part& part,
                std::optional<Key> (*keyOf)(const VARIANT&) noexcept) {
  KeyedPlaces<Key> places(part.low, static_cast<std::size_t>(part.high - part.low + 1));
  for (std::int64_t index = part.low; index <= part.high; ++index) {
    const std::optional<Key> key = keyOf(rank.borrowed(index));
    if (!key) {
      return false;
    }
    places.append(*key);
  }
  quickSortPlaces(places, part);
  const auto placeOf = [&](std::size_t n) { return places.entries()[n].place; };
  rank.rearrange(part.low, places.entries().size(), placeOf);
  data.rearrange(part.low, places.entries().size(), placeOf);
  return true;
}

void sortTogether(VariantArray& rank, VariantArray& data, const Part& part) {
  const auto sortBy = [&](auto keyOf) { return sortByKeys(rank, data, part, keyOf); };
  const bool isInside = part.low <= part.high && rank.has(part.low) && rank.has(part.high) &&
                        data.has(part.low) && data.has(part.high) && !rank.isSameAs(data);
  if (isInside && (sortBy(&asNumber) || sortBy(&asText) || sortBy(&asSingle) || sortBy(&asDate) ||
                   sortBy(&asCurrency) || sortBy(&asLongInteger) || sortBy(&asDecimal))) {
    return;
  }
  Arrays arrays(rank, data);
  quickSort(arrays, part);
}

}  // namespace

STDMETHODIMP CZEQUtilitySorting::QuickSortVariants(VARIANT* vArrayRank, VARIANT* vArrayData, long* inLow,
                                                   long* inHi) noexcept {
  return raising([&] {
    if (vArrayRank == nullptr || vArrayData == nullptr || inLow == nullptr || inHi == nullptr) {
      throw Error(E_POINTER);
    }
    VariantArray rank(*vArrayRank);
    VariantArray data(*vArrayData);
    sortTogether(rank, data, {.low = *inLow, .high = *inHi});
  });
}

}  // namespace zeq::utility
