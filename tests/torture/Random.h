#pragma once
// The torture run's only source of chance: equal seeds give equal runs.

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace zeq::torture {

class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}

  /// A number from 0 to count - 1.
  [[nodiscard]] std::size_t below(std::size_t count) { return static_cast<std::size_t>(engine_() % count); }
  [[nodiscard]] bool chance(unsigned percent) { return below(100) < percent; }
  [[nodiscard]] std::uint64_t bits() { return engine_(); }
  template <class Value>
  [[nodiscard]] const Value& pick(const std::vector<Value>& values) {
    return values[below(values.size())];
  }

 private:
  std::mt19937_64 engine_;
};

/// A text: empty, short, a number, a file name, long, with NULs, beyond the code page … It never leaves the
/// current folder when taken for a path: no drive, no separator at its start, no "..".
[[nodiscard]] std::wstring randomText(Random& random);

}  // namespace zeq::torture
