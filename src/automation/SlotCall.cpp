#include "automation/SlotCall.h"

#include <type_traits>
#include <utility>

namespace zeq::automation {
namespace {

using Words = const std::uintptr_t*;
using Caller = HRESULT (*)(void* method, void* object, Words words);

#ifdef _WIN64

// The first three arguments travel in registers, whose kind depends on the argument's type. The caller owns
// the stack, so passing more words than the method takes does no harm, and a few lengths serve all.

template <class Argument>
Argument inRegister(std::uintptr_t word) noexcept {
  Argument result;
  static_assert(sizeof result == sizeof word);
  std::memcpy(&result, &word, sizeof result);
  return result;
}

template <std::size_t Position, unsigned Floating>
using Register = std::conditional_t<((Floating >> Position) & 1U) != 0, double, std::uintptr_t>;

template <unsigned Floating, std::size_t... Index>
HRESULT callWith(void* method, void* object, Words words, std::index_sequence<Index...> /*onStack*/) {
  using First = Register<0, Floating>;
  using Second = Register<1, Floating>;
  using Third = Register<2, Floating>;
  using Method = HRESULT(STDMETHODCALLTYPE*)(void*, First, Second, Third,
                                             std::remove_cvref_t<decltype(words[Index])>...);
  return reinterpret_cast<Method>(method)(object, inRegister<First>(words[0]), inRegister<Second>(words[1]),
                                          inRegister<Third>(words[2]), words[3 + Index]...);
}

template <unsigned Floating, std::size_t OnStack>
HRESULT callFor(void* method, void* object, Words words) {
  return callWith<Floating>(method, object, words, std::make_index_sequence<OnStack>());
}

template <std::size_t OnStack>
Caller callerFor(unsigned floating) noexcept {
  static constexpr Caller callers[] = {callFor<0, OnStack>, callFor<1, OnStack>, callFor<2, OnStack>,
                                       callFor<3, OnStack>, callFor<4, OnStack>, callFor<5, OnStack>,
                                       callFor<6, OnStack>, callFor<7, OnStack>};
  return callers[floating];
}

Caller callerFor(std::size_t count, unsigned floating) noexcept {
  constexpr std::size_t inRegisters = 3;
  if (count <= inRegisters) {
    return callerFor<0>(floating);
  }
  if (count <= 8) {
    return callerFor<8 - inRegisters>(floating);
  }
  return callerFor<SlotArguments::capacity - inRegisters>(floating);
}

#else

// Every argument is on the stack in words of 32 bits, and the method removes them: the count must be exact.

template <std::size_t... Index>
HRESULT callWith(void* method, void* object, Words words, std::index_sequence<Index...> /*arguments*/) {
  using Method = HRESULT(STDMETHODCALLTYPE*)(void*, std::remove_cvref_t<decltype(words[Index])>...);
  return reinterpret_cast<Method>(method)(object, words[Index]...);
}

template <std::size_t Count>
HRESULT callFor(void* method, void* object, Words words) {
  return callWith(method, object, words, std::make_index_sequence<Count>());
}

template <std::size_t... Count>
Caller callerAt(std::size_t count, std::index_sequence<Count...> /*counts*/) noexcept {
  static constexpr Caller callers[] = {callFor<Count>...};
  return callers[count];
}

Caller callerFor(std::size_t count, unsigned /*floating*/) noexcept {
  return callerAt(count, std::make_index_sequence<SlotArguments::capacity + 1>());
}

#endif

}  // namespace

HRESULT SlotArguments::call(void* object, std::size_t slot) const noexcept {
  void* const* vtable = *static_cast<void***>(object);
  return callerFor(count_, floating_)(vtable[slot], object, words_.data());
}

}  // namespace zeq::automation
