// Calls through a vtable against functions that the compiler calls itself: every kind of argument in every
// position.

#include "automation/SlotCall.h"

#include <gmock/gmock.h>

#include <limits>
#include <string>
#include <utility>

namespace zeq::automation {
namespace {

constexpr std::size_t positions = 5;

std::string shown(std::uint32_t value) {
  return "i" + std::to_string(value);
}
std::string shown(double value) {
  return "d" + std::to_string(value);
}
std::string shown(float value) {
  return "f" + std::to_string(value);
}

std::string seen;

template <std::size_t Mask, std::size_t Position, class Real>
using At = std::conditional_t<((Mask >> Position) & 1U) != 0, Real, std::uint32_t>;

template <class... Arguments>
struct Method {
  static HRESULT STDMETHODCALLTYPE called(void* /*object*/, Arguments... arguments) {
    seen.clear();
    ((seen += shown(arguments) + " "), ...);
    return static_cast<HRESULT>(sizeof...(arguments));
  }
};

/// An object whose vtable has one method.
struct Object {
  void** vtable;
};

void push(SlotArguments& words, std::uint32_t value) {
  words.pushInteger(value);
}
void push(SlotArguments& words, double value) {
  words.pushDouble(value);
}
void push(SlotArguments& words, float value) {
  words.pushFloat(value);
}

template <class... Arguments>
void expectCall(Arguments... arguments) {
  void* vtable[] = {nullptr, nullptr, reinterpret_cast<void*>(&Method<Arguments...>::called)};
  Object object{vtable};
  SlotArguments words;
  std::string expected;
  ((push(words, arguments), expected += shown(arguments) + " "), ...);
  seen = "not called";
  EXPECT_EQ(words.call(&object, 2), static_cast<HRESULT>(sizeof...(arguments)));
  EXPECT_EQ(seen, expected);
}

template <std::size_t Mask, class Real, std::size_t... Position>
void expectMask(std::index_sequence<Position...> /*positions*/) {
  expectCall(static_cast<At<Mask, Position, Real>>(100 + 10 * Position + 1)...);
}

template <class Real, std::size_t... Mask>
void expectMasks(std::index_sequence<Mask...> /*masks*/) {
  (expectMask<Mask, Real>(std::make_index_sequence<positions>()), ...);
}

TEST(SlotCall, DoublesAndIntegersInEveryPosition) {
  expectMasks<double>(std::make_index_sequence<1U << positions>());
}

TEST(SlotCall, FloatsAndIntegersInEveryPosition) {
  expectMasks<float>(std::make_index_sequence<1U << positions>());
}

template <std::size_t... Index>
void expectCount(std::index_sequence<Index...> /*arguments*/) {
  expectCall(static_cast<std::uint32_t>(1000 + Index)...);
}

template <std::size_t... Count>
void expectCounts(std::index_sequence<Count...> /*counts*/) {
  (expectCount(std::make_index_sequence<Count>()), ...);
}

TEST(SlotCall, EveryNumberOfArguments) {
  expectCounts(std::make_index_sequence<SlotArguments::capacity + 1>());
}

TEST(SlotCall, ExtremeValues) {
  expectCall(std::numeric_limits<std::uint32_t>::max(), std::numeric_limits<double>::max(), 0U,
             -std::numeric_limits<float>::max());
}

std::string variantsSeen;

HRESULT STDMETHODCALLTYPE takeVariants(void* /*object*/, VARIANT a, short b, VARIANT c, CY d, VARIANT e,
                                       VARIANT f, VARIANT_BOOL* g) {
  variantsSeen = std::to_string(a.lVal) + "," + std::to_string(b) + "," + std::to_string(c.dblVal) + "," +
                 std::to_string(d.int64) + "," + std::to_string(e.vt) + "," + std::to_string(f.lVal);
  *g = VARIANT_TRUE;
  return S_FALSE;
}

TEST(SlotCall, VariantsByValue) {
  VARIANT integer{};
  integer.vt = VT_I4;
  integer.lVal = -7;
  VARIANT real{};
  real.vt = VT_R8;
  real.dblVal = 2.5;
  VARIANT null{};
  null.vt = VT_NULL;
  CY currency{};
  currency.int64 = -123456789012;
  VARIANT_BOOL answer = VARIANT_FALSE;
  void* vtable[] = {reinterpret_cast<void*>(&takeVariants)};
  Object object{vtable};
  SlotArguments words;
  words.pushVariant(integer);
  words.pushInteger(static_cast<std::uint32_t>(short{-3}));
  words.pushVariant(real);
  words.pushCurrency(currency);
  words.pushVariant(null);
  words.pushVariant(integer);
  words.pushPointer(&answer);
  EXPECT_EQ(words.call(&object, 0), S_FALSE);
  EXPECT_EQ(variantsSeen, "-7,-3,2.500000,-123456789012,1,-7");
  EXPECT_EQ(answer, VARIANT_TRUE);
}

}  // namespace
}  // namespace zeq::automation
