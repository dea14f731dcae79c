#pragma once
// What the fuzzers share: values made of the fuzzer's bytes, and a check that ends the run.

#include <fuzzer/FuzzedDataProvider.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace zeq::fuzz {

/// Ends the program, which the fuzzer takes for a crash, unless the condition holds.
inline void require(bool condition, const char* what) {
  if (!condition) {
    std::fprintf(stderr, "not so: %s\n", what);
    std::abort();
  }
}

/// Values made of the fuzzer's bytes. When these are used up, what is asked for is 0, false or empty.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : bytes_(data, size) {}

  [[nodiscard]] bool hasMore() { return bytes_.remaining_bytes() > 0; }
  [[nodiscard]] bool flag() { return bytes_.ConsumeBool(); }
  [[nodiscard]] int number(int lowest, int highest) { return bytes_.ConsumeIntegralInRange(lowest, highest); }
  template <class Integer>
  [[nodiscard]] Integer any() {
    return bytes_.ConsumeIntegral<Integer>();
  }

  /// Thousandths as they occur every day, or any bits that a double can have.
  [[nodiscard]] double real() {
    return flag() ? any<std::int32_t>() / 1000.0 : std::bit_cast<double>(any<std::uint64_t>());
  }

  /// Characters of an alphabet.
  [[nodiscard]] std::wstring text(std::size_t longest, std::wstring_view alphabet) {
    std::wstring result(static_cast<std::size_t>(number(0, static_cast<int>(longest))), L' ');
    for (wchar_t& each : result) {
      each = alphabet[static_cast<std::size_t>(number(0, static_cast<int>(alphabet.size()) - 1))];
    }
    return result;
  }

 private:
  FuzzedDataProvider bytes_;
};

}  // namespace zeq::fuzz
