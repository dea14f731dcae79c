#pragma once
// Benchmarks as ratios. A row runs the library's work and its peer's work in turn, in one process and one
// run, and reports the median of the ratios of neighbouring pairs: what slows one side of a pair slows the
// other as well.

#include <functional>
#include <string>
#include <vector>

namespace zeq::bench {

/// One side of a row: does its work `times` times. It may set up before and clean up after the work that
/// counts by returning the time that counts in seconds itself (see timed); a negative result means: count the
/// whole call.
using Work = std::function<double(int times)>;

/// Wraps a function that does the work once.
template <class Once>
[[nodiscard]] Work each(Once once) {
  return [once](int times) mutable {
    for (int i = 0; i < times; ++i) {
      once();
    }
    return -1.0;
  };
}

/// The seconds that a function takes, for a Work that sets up before or cleans up after.
[[nodiscard]] double timed(const std::function<void()>& work);

struct Row {
  std::string what;  ///< What the library does.
  std::string peer;  ///< What it is measured against.
  double target;     ///< The ratio that is to be reached at the most.
  Work ours;
  Work theirs;
  /// How many times a side works in one measurement; 0 finds a number that takes about 20 ms.
  int times = 0;
};

/// Collects the rows of one area.
using AddRows = void (*)(std::vector<Row>& rows);

/// Makes an area known to the program: `const Area area("filesystem", [](std::vector<Row>& rows) { … });`
class Area {
 public:
  Area(const char* name, AddRows addRows);
};

}  // namespace zeq::bench
