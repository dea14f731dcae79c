#pragma once
// The arithmetic of a simulated drive: a base, a running balance and its low and high tides. All quantities
// are bytes.

namespace zeq::fileops {

class DriveUsage {
 public:
  // Each throws std::overflow_error, with nothing changed, where the result is not a finite number.
  void use(double bytes);
  void free(double bytes);
  [[nodiscard]] double spaceUsed() const;
  [[nodiscard]] double freeSpace() const;
  [[nodiscard]] double lowTide() const;
  [[nodiscard]] double highTide() const;
  /// True if the high tide left less than the safety margin free; exactly the margin is enough.
  [[nodiscard]] bool tooFull() const;

  [[nodiscard]] double capacity() const noexcept { return capacity_; }
  [[nodiscard]] double safetyMargin() const noexcept { return safetyMargin_; }
  [[nodiscard]] double delta() const noexcept { return delta_; }
  [[nodiscard]] double lowTideDelta() const noexcept { return lowTideDelta_; }
  [[nodiscard]] double highTideDelta() const noexcept { return highTideDelta_; }

  // Each starts a new measurement, even if the value is the old one.
  void setCapacity(double bytes) noexcept;
  void setBaseSpaceUsed(double bytes) noexcept;
  void setSafetyMargin(double bytes) noexcept;

  /// The running balance and both tides become 0.
  void reset() noexcept;

 private:
  void moveTo(double delta) noexcept;

  double capacity_ = 0;
  double baseSpaceUsed_ = 0;
  double safetyMargin_ = 0;
  double delta_ = 0;
  double lowTideDelta_ = 0;
  double highTideDelta_ = 0;
};

}  // namespace zeq::fileops
