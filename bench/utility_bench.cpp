// Texts and values against the plain C++ loops and the platform calls that do the same work.

#include <algorithm>
#include <array>
#include <cwchar>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "harness.h"
#include "support/Component.h"

namespace zeq::bench {
namespace {

using automation::check;
using automation::ComPtr;
using automation::Variant;
using test::Bstr;
using test::create;

void addTimeCodeRow(std::vector<Row>& rows) {
  constexpr double seconds = 3725.25;
  const auto strings = create<CZEQUtilityStrings, _CZEQUtilityStrings>();
  rows.push_back({.what = "a duration as *HH:MM:SS:FF* (`StrUtil_MakeTimeCodeString`)",
                  .peer = "one `VarFormat` of the same time as \"hh:nn:ss\"",
                  .target = 1.0,
                  .ours = each([strings] {
                    Bstr text;
                    check(strings->StrUtil_MakeTimeCodeString(seconds, vtsfHHMMSSFF, 25, text.out()));
                  }),
                  .theirs = each([pattern = std::wstring(L"hh:nn:ss")]() mutable {
                    Variant time(seconds / 86400);
                    Bstr text;
                    check(VarFormat(&time.get(), pattern.data(), 0, 0, 0, text.out()));
                  })});
}

/// 30,000 characters in which a mark stands at the end of every 15.
std::wstring markedText(std::wstring_view mark) {
  std::wstring text;
  while (text.size() < 30000) {
    text.append(15 - mark.size(), L'x').append(mark);
  }
  return text;
}

void addSplitRow(std::vector<Row>& rows) {
  const auto splitter = create<CStringSplitter, _CStringSplitter>();
  const std::wstring text = markedText(L",");
  rows.push_back(
      {.what = "30,000 characters split into 2,001 fields (`CStringSplitter.Split`)",
       .peer = "a `wmemchr` loop that builds a `std::vector<std::wstring>`",
       .target = 1.5,
       .ours = each([splitter, record = std::make_shared<Bstr>(text), comma = std::make_shared<Bstr>(L",")] {
         short count = 0;
         check(splitter->Split(record->get(), comma->get(), VARIANT_TRUE, VARIANT_TRUE, &count));
       }),
       .theirs = each([text] {
         std::vector<std::wstring> fields;
         const wchar_t* at = text.data();
         const wchar_t* const end = at + text.size();
         while (const wchar_t* found = std::wmemchr(at, L',', static_cast<std::size_t>(end - at))) {
           fields.emplace_back(at, found);
           at = found + 1;
         }
         fields.emplace_back(at, end);
       })});
}

/// Replaces in one pass, without looking at what a replacement makes together with its neighbours.
std::wstring replacedOnce(std::wstring_view text, std::wstring_view keyword, std::wstring_view replacement) {
  std::wstring result;
  for (;;) {
    const std::size_t found = text.find(keyword);
    result.append(text.substr(0, found));
    if (found == std::wstring_view::npos) {
      return result;
    }
    result.append(replacement);
    text.remove_prefix(found + keyword.size());
  }
}

void addReplaceRow(std::vector<Row>& rows) {
  struct Texts {
    Bstr text{markedText(L"%N%")};
    Bstr keyword{L"%N%"};
    Bstr replacement{L"name"};
  };
  const auto strings = create<CZEQUtilityStrings, _CZEQUtilityStrings>();
  const auto texts = std::make_shared<Texts>();
  rows.push_back(
      {.what = "2,000 keywords replaced in 30,000 characters (`Str_ReplaceSimpleKeyWord`)",
       .peer = "a single pass in C++ that looks at no character twice",
       .target = 2,
       .ours = each([strings, texts] {
         std::array arguments{texts->text.get(), texts->keyword.get(), texts->replacement.get()};
         Bstr result;
         check(strings->Str_ReplaceSimpleKeyWord(&arguments[0], &arguments[1], &arguments[2], result.out()));
       }),
       .theirs = each([texts] {
         const Bstr result(
             replacedOnce(texts->text.view(), texts->keyword.view(), texts->replacement.view()));
       })});
}

/// A variant with an array of variants.
template <class Value>
Variant arrayOf(const std::vector<Value>& values) {
  Variant result;
  result.get().parray = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(values.size()));
  result.get().vt = VT_ARRAY | VT_VARIANT;
  for (LONG i = 0; i < static_cast<LONG>(values.size()); ++i) {
    Variant element(values[static_cast<std::size_t>(i)]);
    check(SafeArrayPutElement(result.get().parray, &i, &element.get()));
  }
  return result;
}

/// Sorts an array of variants with an array of numbers, against the pairs of both in C++. What is sorted is
/// made anew each time, which does not count.
template <class Key>
Row sortRow(const char* what, const char* peer, double target, const std::vector<Key>& keys) {
  using Pair = std::pair<Key, long>;
  std::vector<Pair> pairs;
  std::vector<long> places;
  for (const Key& key : keys) {
    places.push_back(static_cast<long>(places.size()));
    pairs.emplace_back(key, places.back());
  }
  const auto repeat = [](int times, const std::function<double()>& once) {
    double total = 0;
    for (int i = 0; i < times; ++i) {
      total += once();
    }
    return total;
  };
  const auto sorting = create<CZEQUtilitySorting, _CZEQUtilitySorting>();
  return {
      .what = what,
      .peer = peer,
      .target = target,
      .ours =
          [=](int times) {
            return repeat(times, [&] {
              Variant rank = arrayOf(keys);
              Variant data = arrayOf(places);
              long low = 0;
              long high = static_cast<long>(keys.size()) - 1;
              return timed([&] { check(sorting->QuickSortVariants(&rank.get(), &data.get(), &low, &high)); });
            });
          },
      .theirs =
          [=](int times) {
            return repeat(times, [&] {
              std::vector<Pair> sorted = pairs;
              return timed([&] {
                std::sort(sorted.begin(), sorted.end(),
                          [](const Pair& one, const Pair& other) { return one.first < other.first; });
              });
            });
          },
      .times = 2};
}

void addSortRows(std::vector<Row>& rows) {
  constexpr std::size_t count = 100000;
  std::mt19937 random(1);
  std::vector<double> numbers(count);
  static std::vector<std::wstring> texts(count);
  for (std::size_t i = 0; i < count; ++i) {
    numbers[i] = random() / 1000.0;
    texts[i] = L"name " + std::to_wstring(random());
  }
  rows.push_back(sortRow("100,000 doubles sorted with their data (`QuickSortVariants`)",
                         "`std::sort` of the same pairs by their doubles", 4, numbers));
  rows.push_back(sortRow("100,000 texts sorted with their data",
                         "`std::sort` of the same pairs by their texts", 3,
                         std::vector<std::wstring_view>(texts.begin(), texts.end())));
}

const Area area("utility", [](std::vector<Row>& rows) {
  addTimeCodeRow(rows);
  addSplitRow(rows);
  addReplaceRow(rows);
  addSortRows(rows);
});

}  // namespace
}  // namespace zeq::bench
