// A reference counter against a number, and its events against what the number does.

#include <algorithm>
#include <utility>

#include "torture/Models.h"
#include "torture/Subject.h"

namespace zeq::torture {
namespace {

class CounterModel final : public Model {
 public:
  explicit CounterModel(Random& random)
      : random_(random),
        counter_(random, "CReferenceCounter", __uuidof(CReferenceCounter)),
        log_(automation::ComPtr<IDispatch>(counter_.dispatch()), __uuidof(__CReferenceCounter),
             {{1, L"Triggered"}, {2, L"TriggeredRoundZero"}}) {}

 private:
  void act() override {
    const bool up = random_.chance(50);
    const long before = count_;
    count_ = up ? count_ + 1 : std::max(count_ - 1, 0L);
    if (random_.chance(30)) {
      counter_.put(L"Zeroed", !up);
    } else {
      counter_.expect(count_, up ? L"Increment" : L"Decrement");
    }
    if (count_ == before) {
      return;
    }
    const std::wstring values = L" " + std::to_wstring(count_) + L" " + std::to_wstring(before);
    if (count_ == 0 || before == 0) {
      expected_.push_back(L"TriggeredRoundZero" + values);
    }
    expected_.push_back(L"Triggered" + values);
  }

  void compare() override {
    counter_.expect(count_, L"CallDepth");
    counter_.expect(count_ == 0, L"Zeroed");
    if (log_.take() != std::exchange(expected_, {})) {
      counter_.fail(L"events", L"are not those that belong to the step");
    }
  }

  Random& random_;
  Subject counter_;
  test::EventLog log_;
  long count_ = 0;
  std::vector<std::wstring> expected_;
};

}  // namespace

std::unique_ptr<Model> makeCounterModel(Random& random) {
  return std::make_unique<CounterModel>(random);
}

}  // namespace zeq::torture
