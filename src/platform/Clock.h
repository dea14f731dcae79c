#pragma once
// The time of day.

namespace zeq::platform {

struct TimeOfDay {
  int hour = 0;  ///< 0 to 23
  int minute = 0;
  int second = 0;
};

/// The time by the machine's clock, in its time zone.
[[nodiscard]] TimeOfDay localTime() noexcept;

}  // namespace zeq::platform
