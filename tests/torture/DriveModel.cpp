// A simulated drive against its arithmetic.

#include <algorithm>

#include "torture/Models.h"
#include "torture/Subject.h"

namespace zeq::torture {
namespace {

class DriveModel final : public Model {
 public:
  explicit DriveModel(Random& random) : random_(random), drive_(random, "CFakeDrive", __uuidof(CFakeDrive)) {}

 private:
  void act() override {
    const double bytes = static_cast<double>(random_.below(4000)) - 1000;
    switch (random_.below(7)) {
      case 0:
        setAndReset(L"Capacity", capacity_, bytes);
        break;
      case 1:
        setAndReset(L"SpaceUsed", base_, bytes);
        break;
      case 2:
        setAndReset(L"SafetyMargin", margin_, bytes);
        break;
      case 3:
        drive_.call(L"ResetLimits");
        reset();
        break;
      case 4:
        drive_.call(L"FreeBytes", bytes);
        move(-bytes);
        break;
      default:
        drive_.call(L"UseBytes", bytes);
        move(bytes);
    }
  }

  void compare() override {
    drive_.expect(capacity_, L"Capacity");
    drive_.expect(margin_, L"SafetyMargin");
    drive_.expect(base_ + delta_, L"SpaceUsed");
    drive_.expect(capacity_ - base_ - delta_, L"FreeSpace");
    drive_.expect(delta_, L"Delta");
    drive_.expect(low_, L"LowTideDelta");
    drive_.expect(high_, L"HighTideDelta");
    drive_.expect(base_ + low_, L"LowTide");
    drive_.expect(base_ + high_, L"HighTide");
    drive_.expect(capacity_ - margin_ < base_ + high_, L"TooFull");
  }

  void setAndReset(const wchar_t* property, double& field, double value) {
    drive_.put(property, value);
    field = value;
    reset();
  }
  void reset() { delta_ = low_ = high_ = 0; }
  void move(double bytes) {
    delta_ += bytes;
    low_ = std::min(low_, delta_);
    high_ = std::max(high_, delta_);
  }

  Random& random_;
  Subject drive_;
  double capacity_ = 0;
  double base_ = 0;
  double margin_ = 0;
  double delta_ = 0;
  double low_ = 0;
  double high_ = 0;
};

}  // namespace

std::unique_ptr<Model> makeDriveModel(Random& random) {
  return std::make_unique<DriveModel>(random);
}

}  // namespace zeq::torture
