#include "fileops/DriveUsage.h"

#include "utility/Numbers.h"

namespace zeq::fileops {

using utility::finite;

void DriveUsage::use(double bytes) {
  moveTo(finite(delta_ + bytes));
}

void DriveUsage::free(double bytes) {
  moveTo(finite(delta_ - bytes));
}

double DriveUsage::spaceUsed() const {
  return finite(baseSpaceUsed_ + delta_);
}

double DriveUsage::freeSpace() const {
  return finite(capacity_ - spaceUsed());
}

double DriveUsage::lowTide() const {
  return finite(baseSpaceUsed_ + lowTideDelta_);
}

double DriveUsage::highTide() const {
  return finite(baseSpaceUsed_ + highTideDelta_);
}

bool DriveUsage::tooFull() const {
  return finite(capacity_ - safetyMargin_) < highTide();
}

void DriveUsage::setCapacity(double bytes) noexcept {
  capacity_ = bytes;
  reset();
}

void DriveUsage::setBaseSpaceUsed(double bytes) noexcept {
  baseSpaceUsed_ = bytes;
  reset();
}

void DriveUsage::setSafetyMargin(double bytes) noexcept {
  safetyMargin_ = bytes;
  reset();
}

void DriveUsage::reset() noexcept {
  delta_ = 0;
  lowTideDelta_ = 0;
  highTideDelta_ = 0;
}

void DriveUsage::moveTo(double delta) noexcept {
  delta_ = delta;
  if (delta_ < lowTideDelta_) {
    lowTideDelta_ = delta_;
  }
  if (delta_ > highTideDelta_) {
    highTideDelta_ = delta_;
  }
}

}  // namespace zeq::fileops
