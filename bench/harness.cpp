#include "harness.h"

#include <windows.h>
#include <objbase.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <exception>
#include <utility>

namespace zeq::bench {
namespace {

constexpr int pairs = 15;
constexpr double secondsAMeasurement = 0.02;

std::vector<std::pair<const char*, AddRows>>& areas() {
  static std::vector<std::pair<const char*, AddRows>> all;
  return all;
}

double now() {
  LARGE_INTEGER count;
  LARGE_INTEGER frequency;
  QueryPerformanceCounter(&count);
  QueryPerformanceFrequency(&frequency);
  return static_cast<double>(count.QuadPart) / static_cast<double>(frequency.QuadPart);
}

double measure(const Work& work, int times) {
  const double start = now();
  const double counted = work(times);
  return counted >= 0 ? counted : now() - start;
}

/// How many times the work has to be done for one measurement.
int calibrate(const Work& work) {
  int times = 1;
  for (;;) {
    const double seconds = measure(work, times);
    if (seconds >= secondsAMeasurement / 2 || times >= 1 << 24) {
      return std::max(1, static_cast<int>(times * secondsAMeasurement / std::max(seconds, 1e-9)));
    }
    times *= 4;
  }
}

double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2),
                   values.end());
  return values[values.size() / 2];
}

std::string duration(double seconds) {
  char text[32];
  if (seconds < 1e-6) {
    std::snprintf(text, sizeof text, "%.0f ns", seconds * 1e9);
  } else if (seconds < 1e-3) {
    std::snprintf(text, sizeof text, "%.2f us", seconds * 1e6);
  } else {
    std::snprintf(text, sizeof text, "%.2f ms", seconds * 1e3);
  }
  return text;
}

/// Prints one line of the table and says whether the target was reached.
bool run(const Row& row) {
  const int ourTimes = row.times != 0 ? row.times : calibrate(row.ours);
  const int theirTimes = row.times != 0 ? row.times : calibrate(row.theirs);
  std::vector<double> ratios;
  std::vector<double> ours;
  std::vector<double> theirs;
  for (int i = 0; i < pairs; ++i) {
    double first = 0;
    double second = 0;
    if (i % 2 == 0) {
      first = measure(row.ours, ourTimes);
      second = measure(row.theirs, theirTimes);
    } else {
      second = measure(row.theirs, theirTimes);
      first = measure(row.ours, ourTimes);
    }
    ours.push_back(first / ourTimes);
    theirs.push_back(second / theirTimes);
    ratios.push_back(ours.back() / theirs.back());
  }
  const double ratio = median(ratios);
  const bool reached = ratio <= row.target;
  std::printf("| %s | %s | %s | %s | %.2f | %.2f | %s |\n", row.what.c_str(), row.peer.c_str(),
              duration(median(ours)).c_str(), duration(median(theirs)).c_str(), ratio, row.target,
              reached ? "yes" : "**no**");
  std::fflush(stdout);
  return reached;
}

}  // namespace

double timed(const std::function<void()>& work) {
  const double start = now();
  work();
  return now() - start;
}

Area::Area(const char* name, AddRows addRows) {
  areas().emplace_back(name, addRows);
}

}  // namespace zeq::bench

/// Runs all rows, or those of the areas that are named as arguments.
int main(int argc, char** argv) {
  using namespace zeq::bench;
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
    return 1;
  }
  std::printf("| what | peer | time | peer's time | ratio | target | reached |\n");
  std::printf("|---|---|---|---|---|---|---|\n");
  int reached = 0;
  int missed = 0;
  for (const auto& [name, addRows] : areas()) {
    const bool wanted =
        argc < 2 || std::any_of(argv + 1, argv + argc, [&, area = name](const char* argument) {
          return std::strcmp(argument, area) == 0;
        });
    if (!wanted) {
      continue;
    }
    try {
      std::vector<Row> rows;
      addRows(rows);
      for (const Row& row : rows) {
        ++(run(row) ? reached : missed);
      }
    } catch (const std::exception& error) {
      std::printf("%s: %s\n", name, error.what());
      return 1;
    }
  }
  std::printf("\n%d targets reached, %d missed\n", reached, missed);
  CoUninitialize();
  return 0;
}
