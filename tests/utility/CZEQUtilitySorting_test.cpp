#include <gmock/gmock.h>

#include <numeric>
#include <random>

#include "support/Component.h"
#include "support/Leaks.h"
#include "support/Records.h"
#include "utility/SortModel.h"
#include "utility/Values.h"

namespace zeq::test {
namespace {

using testing::ElementsAre;

/// A one-dimensional array in a variant, as clients hold one.
class Array {
 public:
  explicit Array(VARTYPE type, std::size_t count, long lowest = 0) : lowest_(lowest) {
    SAFEARRAYBOUND bound{static_cast<ULONG>(count), lowest};
    holder_.get().parray = SafeArrayCreate(type, 1, &bound);
    holder_.get().vt = static_cast<VARTYPE>(VT_ARRAY | type);
  }
  explicit Array(const std::vector<Variant>& values, long lowest = 0)
      : Array(VT_VARIANT, values.size(), lowest) {
    for (std::size_t i = 0; i < values.size(); ++i) {
      set(lowest + static_cast<long>(i), const_cast<VARIANT*>(&values[i].get()));
    }
  }

  /// Copies an element in; `value` points at it, or is the text itself.
  void set(long index, void* value) { automation::check(SafeArrayPutElement(array(), &index, value)); }
  [[nodiscard]] Variant at(long index) const {
    const auto type = static_cast<VARTYPE>(holder_.type() & VT_TYPEMASK);
    Variant result;
    const bool isWhole = type == VT_VARIANT || type == VT_DECIMAL;
    void* target = isWhole ? static_cast<void*>(&result.get()) : &result.get().byref;
    automation::check(SafeArrayGetElement(holder_.get().parray, &index, target));
    if (type != VT_VARIANT) {
      result.get().vt = type;
    }
    return result;
  }
  [[nodiscard]] SAFEARRAY* array() { return holder_.get().parray; }
  [[nodiscard]] Variant& holder() { return holder_; }
  template <class Element>
  [[nodiscard]] Element* elements() {
    return static_cast<Element*>(array()->pvData);
  }
  [[nodiscard]] long size() const { return static_cast<long>(holder_.get().parray->rgsabound[0].cElements); }
  [[nodiscard]] std::vector<double> numbers() const {
    std::vector<double> result;
    for (long i = 0; i < size(); ++i) {
      result.push_back(inType(VT_R8, at(lowest_ + i)).get().dblVal);
    }
    return result;
  }
  [[nodiscard]] std::vector<std::wstring> texts() const {
    std::vector<std::wstring> result;
    for (long i = 0; i < size(); ++i) {
      result.push_back(textIn(inType(VT_BSTR, at(lowest_ + i))));
    }
    return result;
  }

 private:
  Variant holder_;
  long lowest_;
};

/// The numbers 0, 1, 2 … in which the swaps of a sort show.
Array places(std::size_t count, long lowest = 0) {
  Array result(VT_I4, count, lowest);
  std::iota(result.elements<long>(), result.elements<long>() + count, 0L);
  return result;
}

VARIANT byRefArray(Array& array) {
  VARIANT argument = array.holder().get();
  argument.pparray = &array.holder().get().parray;
  argument.vt |= VT_BYREF;
  return argument;
}

class CZEQUtilitySortingTest : public testing::Test {
 protected:
  HRESULT sort(VARIANT& rank, VARIANT& data, long low, long high) {
    return sorting->QuickSortVariants(&rank, &data, &low, &high);
  }
  HRESULT sort(Array& rank, Array& data, long low, long high) {
    return sort(rank.holder().get(), data.holder().get(), low, high);
  }

  ComPtr<_CZEQUtilitySorting> sorting = create<CZEQUtilitySorting, _CZEQUtilitySorting>();
  Late late{sorting};
};

TEST_F(CZEQUtilitySortingTest, CarriesTheDataAlong) {
  Array rank({value(3), value(1), value(2)});
  Array data({value(L"c"), value(L"a"), value(L"b")});
  EXPECT_EQ(sort(rank, data, 0, 2), S_OK);
  EXPECT_THAT(rank.numbers(), ElementsAre(1, 2, 3));
  EXPECT_THAT(data.texts(), ElementsAre(L"a", L"b", L"c"));
}

TEST_F(CZEQUtilitySortingTest, SortsInPlaceHoweverArraysArePassed) {
  const auto check = [&](auto&& pass) {
    Array rank({value(3), value(1), value(2)});
    Array data({value(L"c"), value(L"a"), value(L"b")});
    const SAFEARRAY* before = rank.array();
    pass(rank, data);
    EXPECT_EQ(rank.array(), before);
    EXPECT_THAT(rank.numbers(), ElementsAre(1, 2, 3));
    EXPECT_THAT(data.texts(), ElementsAre(L"a", L"b", L"c"));
  };
  const auto call = [&](const VARIANT& rank, const VARIANT& data) {
    EXPECT_EQ(late.call(L"QuickSortVariants", rank, data, value(0), value(2)).code, S_OK);
  };
  check([&](Array& rank, Array& data) { call(byRef(rank.holder()), byRef(data.holder())); });
  check([&](Array& rank, Array& data) { call(byRefArray(rank), byRefArray(data)); });
  check([&](Array& rank, Array& data) { call(rank.holder().get(), data.holder().get()); });
  check([&](Array& rank, Array& data) {
    Variant low = value(0);
    Variant high = value(L"2");
    EXPECT_EQ(
        late.call(L"QuickSortVariants", byRef(rank.holder()), byRefArray(data), byRef(low), byRef(high)).code,
        S_OK);
    EXPECT_EQ(textIn(high), L"2");
  });
  check([&](Array& rank, Array& data) {  // A variable that refers to an array itself.
    VARIANT rankReference = byRefArray(rank);
    VARIANT dataReference = byRefArray(data);
    EXPECT_EQ(sort(rankReference, dataReference, 0, 2), S_OK);
  });
}

TEST_F(CZEQUtilitySortingTest, SortsArraysOfEveryKindOfElement) {
  for (const VARTYPE type :
       {VT_UI1, VT_I2, VT_I4, VT_R4, VT_R8, VT_CY, VT_DATE, VT_DECIMAL, VT_BSTR, VT_BOOL}) {
    for (const long lowest : {0L, 1L, -5L}) {
      Array rank(type, 4, lowest);
      long index = lowest;
      for (const double number : {3.0, 0.0, 4.0, 1.0}) {
        Variant element = inType(type, value(number));
        rank.set(index++, type == VT_BSTR      ? static_cast<void*>(element.get().bstrVal)
                          : type == VT_DECIMAL ? static_cast<void*>(&element.get())
                                               : &element.get().byref);
      }
      Array data = places(4, lowest);
      EXPECT_EQ(sort(rank, data, lowest, lowest + 3), S_OK);
      if (type == VT_BOOL) {  // True is below False.
        EXPECT_EQ(data.numbers().back(), 1) << type;
      } else {
        EXPECT_THAT(data.numbers(), ElementsAre(1, 3, 0, 2)) << type;
      }
    }
  }
}

TEST_F(CZEQUtilitySortingTest, ComparesTextsByCharacterCodes) {
  Array rank(
      {value(L"b"), value(L"a"), value(L"B"), value(L"\u00E4"), value(L""), value(L"10"), value(L"9")});
  Array data = places(7);
  EXPECT_EQ(sort(rank, data, 0, 6), S_OK);
  EXPECT_THAT(rank.texts(), ElementsAre(L"", L"10", L"9", L"B", L"a", L"b", L"\u00E4"));
}

TEST_F(CZEQUtilitySortingTest, KeepsToItsRange) {
  Array rank({value(9), value(3), value(2), value(1), value(0)});
  Array data = places(5);
  EXPECT_EQ(sort(rank, data, 1, 3), S_OK);
  EXPECT_THAT(rank.numbers(), ElementsAre(9, 1, 2, 3, 0));
  EXPECT_THAT(data.numbers(), ElementsAre(0, 3, 2, 1, 4));
  EXPECT_EQ(sort(rank, data, 3, 1), S_OK);
  EXPECT_THAT(rank.numbers(), ElementsAre(9, 1, 2, 3, 0));
}

TEST_F(CZEQUtilitySortingTest, MakesTheSwapsOfTheDefinition) {
  std::mt19937 random(5);
  const auto anyValue = [&](VARTYPE type) -> Variant {
    switch (type) {
      case VT_NULL:
        return Variant::null();
      case VT_EMPTY:
        return {};
      case VT_BOOL:
        return value(random() % 2 == 0);
      case VT_BSTR:
        return value(std::wstring(random() % 2, static_cast<wchar_t>(L'0' + random() % 10)));
      default: {
        const bool isWhole = type == VT_UI1 || type == VT_I2 || type == VT_I4 || type == VT_I8;
        return inType(type, value(isWhole ? random() % 10 : random() % 20 / 2.0 - 5));
      }
    }
  };
  // Values of one type, those that compare as numbers or as texts, and all together.
  const std::vector<std::vector<VARTYPE>> mixtures{
      {VT_I4, VT_I2, VT_R8, VT_UI1, VT_BOOL, VT_EMPTY},
      {VT_BSTR, VT_EMPTY},
      {VT_R4},
      {VT_DATE},
      {VT_CY},
      {VT_I8},
      {VT_DECIMAL},
      {VT_I4, VT_I2, VT_R8, VT_BSTR, VT_NULL, VT_EMPTY, VT_BOOL, VT_CY}};
  const auto less = [](const Variant& one, const Variant& other) {
    return VarCmp(const_cast<VARIANT*>(&one.get()), const_cast<VARIANT*>(&other.get()), LOCALE_USER_DEFAULT,
                  0) == static_cast<HRESULT>(VARCMP_LT);
  };
  for (std::size_t round = 0; round < 1000; ++round) {
    const std::vector<VARTYPE>& types = mixtures[round % mixtures.size()];
    std::vector<Variant> values(random() % 40 + 1);
    for (Variant& each : values) {
      each = anyValue(types[random() % types.size()]);
    }
    const long last = static_cast<long>(values.size()) - 1;
    Array rank(values);
    Array data = places(values.size());
    ASSERT_EQ(sort(rank, data, 0, last), S_OK);
    std::vector<double> expected(values.size());
    std::iota(expected.begin(), expected.end(), 0.0);
    utility::model::quickSort(
        [&](long index) { return values[static_cast<std::size_t>(index)]; }, less,
        [&](long one, long other) {
          std::swap(values[static_cast<std::size_t>(one)], values[static_cast<std::size_t>(other)]);
          std::swap(expected[static_cast<std::size_t>(one)], expected[static_cast<std::size_t>(other)]);
        },
        0, last);
    ASSERT_EQ(data.numbers(), expected);
  }
}

TEST_F(CZEQUtilitySortingTest, SwapsTwiceWhereBothArraysAreOne) {
  Array rank({value(3), value(1), value(2)});
  EXPECT_EQ(sort(rank, rank, 0, 2), S_OK);
  EXPECT_THAT(rank.numbers(), ElementsAre(3, 1, 2));
}

TEST_F(CZEQUtilitySortingTest, RaisesForAnIndexOutside) {
  Array rank({value(3), value(1), value(2)});
  Array data = places(3);
  const auto raises = [&](long low, long high) {
    expectError(
        late.call(L"QuickSortVariants", byRef(rank.holder()), byRef(data.holder()), value(low), value(high)),
        9, L"Subscript out of range");
  };
  raises(0, 3);
  raises(-1, 2);
  raises(7, 7);
  raises(2147483647, 2147483647);
  raises(9, 5);
}

TEST_F(CZEQUtilitySortingTest, StopsAtTheFirstSwapThatTheDataCannotFollow) {
  Array rank({value(3), value(2), value(1)});
  Array data = places(2);
  EXPECT_EQ(sort(rank, data, 0, 2), errorCode(9));
  EXPECT_THAT(rank.numbers(), ElementsAre(1, 2, 3));
  EXPECT_THAT(data.numbers(), ElementsAre(0, 1));
}

TEST_F(CZEQUtilitySortingTest, RefusesWhatIsNoArray) {
  Array data = places(3);
  Variant text = value(L"abc");
  EXPECT_EQ(sort(text.get(), data.holder().get(), 0, 2), errorCode(13));
  EXPECT_EQ(sort(data.holder().get(), text.get(), 0, 2), errorCode(13));
  SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
  Variant square;
  square.get().parray = SafeArrayCreate(VT_I4, 2, bounds);
  square.get().vt = VT_ARRAY | VT_I4;
  EXPECT_EQ(sort(square.get(), data.holder().get(), 0, 1), errorCode(9));
  VARIANT none;
  VariantInit(&none);
  none.vt = VT_ARRAY | VT_VARIANT;
  EXPECT_EQ(sort(none, data.holder().get(), 0, 1), errorCode(9));
  EXPECT_EQ(sorting->QuickSortVariants(nullptr, &data.holder().get(), nullptr, nullptr), E_POINTER);
}

TEST_F(CZEQUtilitySortingTest, RefusesToCompareObjects) {
  const Variant object{static_cast<IDispatch*>(sorting.get())};
  Array rank({object, object});
  Array data = places(2);
  EXPECT_EQ(sort(rank, data, 0, 1), errorCode(13));
  Array numbers({value(2), value(1)});
  Array objects({object, Variant()});  // As data they are as good as anything.
  EXPECT_EQ(sort(numbers, objects, 0, 1), S_OK);
  EXPECT_EQ(objects.at(1).get().pdispVal, object.get().pdispVal);
}

TEST_F(CZEQUtilitySortingTest, LeavesArraysUnlocked) {
  Array rank({value(3), value(1), value(2)});
  Array data = places(2);
  EXPECT_EQ(sort(rank, data, 0, 2), errorCode(9));
  EXPECT_EQ(rank.array()->cLocks, 0U);
  EXPECT_EQ(data.array()->cLocks, 0U);
}

TEST_F(CZEQUtilitySortingTest, SortsAMillionElements) {
  constexpr std::size_t count = 1000000;
  Array rank(VT_R8, count);
  Array data = places(count);
  double* const keys = rank.elements<double>();
  const auto sorts = [&] {
    EXPECT_EQ(sort(rank, data, 0, static_cast<long>(count) - 1), S_OK);
    EXPECT_TRUE(std::is_sorted(keys, keys + count));
  };
  std::iota(keys, keys + count, 0.0);
  sorts();
  std::reverse(keys, keys + count);
  sorts();
  std::fill(keys, keys + count, 1.0);
  sorts();
  for (std::size_t i = 0; i < count; ++i) {  // Up and down again.
    keys[i] = static_cast<double>(std::min(i, count - i));
  }
  sorts();
}

TEST_F(CZEQUtilitySortingTest, SortsAMillionElementsInTheWorstOrder) {
  std::vector<std::size_t> order = utility::model::worstOrder(1000000);
  const auto sortsInto = [&](Array& rank) {
    Array data(VT_I4, order.size());
    std::copy(order.begin(), order.end(), data.elements<long>());
    EXPECT_EQ(sort(rank, data, 0, static_cast<long>(order.size()) - 1), S_OK);
    const long* const places = data.elements<long>();
    EXPECT_TRUE(std::is_sorted(places, places + order.size()));
  };
  Array numbers(VT_R8, order.size());
  std::copy(order.begin(), order.end(), numbers.elements<double>());
  sortsInto(numbers);
  Array amounts(VT_CY, order.size());
  std::copy(order.begin(), order.end(), amounts.elements<LONGLONG>());
  sortsInto(amounts);
  // Fewer texts: while task memory is counted, Wine looks for each block that is freed among all of them.
  order = utility::model::worstOrder(20000);
  Array texts(VT_BSTR, order.size());
  std::transform(order.begin(), order.end(), texts.elements<BSTR>(),
                 [](std::size_t key) { return Bstr(std::to_wstring(1000000 + key)).detach(); });
  sortsInto(texts);
}

TEST_F(CZEQUtilitySortingTest, LeaksNothing) {
  expectNoLeak(50, [] {
    const auto object = create<CZEQUtilitySorting, _CZEQUtilitySorting>();
    Array rank({value(L"c"), value(L"a"), value(L"b"), Variant::null()});
    Array data({value(L"c"), value(L"a"), value(L"b")});
    const Late byName(object);
    byName.call(L"QuickSortVariants", byRef(rank.holder()), byRef(data.holder()), value(0), value(2));
    byName.call(L"QuickSortVariants", rank.holder(), data.holder(), value(0), value(3));
  });
}

TEST_F(CZEQUtilitySortingTest, RecordsHaveNoOrder) {
  Records rank(3, 8);  // Small enough for the place of a number.
  Array data(VT_I4, 3);
  long low = 0;
  long high = 2;
  EXPECT_EQ(sorting->QuickSortVariants(&rank.holder(), &data.holder().get(), &low, &high),
            static_cast<HRESULT>(0x800A000D));
}

}  // namespace
}  // namespace zeq::test
