#include "observe/CObservableClass.h"

#include "observe/PropertyValue.h"

namespace zeq::observe {

using automation::quietly;
using automation::Variant;

namespace {

constexpr DISPID propertyChange = 1;

/// The event that tells of a mode's start and end; DISPID_UNKNOWN if it has none.
DISPID eventOf(PropertyChangeMode mode) noexcept {
  switch (mode) {
    case pcmCreating:
      return 2;
    case pcmClearing:
      return 3;
    case pcmCloning:
      return 4;
    case pcmBatchUpdating:
      return 5;
    case pcmEnumerating:
      return 6;
    default:
      return DISPID_UNKNOWN;
  }
}

/// The client's variable. A null pointer, which only an early-bound client can pass, is an error.
VARIANT& variable(VARIANT* pointer) {
  if (pointer == nullptr) {
    throw automation::Error(E_POINTER);
  }
  return *pointer;
}

/// The value that a variable holds or refers to.
Comparison compareWith(const VARIANT& property, const VARIANT& value) {
  const VARIANT& stored = automation::dereferenced(property);
  return (stored.vt & VT_BYREF) != 0 ? compare(Variant(stored).get(), value) : compare(stored, value);
}

}  // namespace

STDMETHODIMP CObservableClass::SimplePropertyUpdate(VARIANT* PropertyA, BSTR PropertyNameA, VARIANT NewValueA,
                                                    VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] {
    const auto alive = keepAlive();
    VARIANT& property = variable(PropertyA);
    const Variant value(NewValueA);
    const bool stores = compareWith(property, value.get()) != Comparison::same;
    if (stores) {
      quietly([&] { automation::assign(property, value.get()); });
    }
    if (stores || outermostMode() == pcmEnumerating) {
      raisePropertyChange(PropertyNameA, value.get());
    }
    return stores;
  });
}

STDMETHODIMP CObservableClass::UpdateDirtyProperty(VARIANT* PropertyA, BSTR PropertyNameA, VARIANT NewValueA,
                                                   VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] {
    const auto alive = keepAlive();
    VARIANT& property = variable(PropertyA);
    const Variant value(NewValueA);
    const bool stores = compareWith(property, value.get()) == Comparison::different;
    if (stores) {
      quietly([&] { automation::assign(property, value.get()); });
      raisePropertyChange(PropertyNameA, value.get());
    }
    return stores;
  });
}

STDMETHODIMP CObservableClass::CheckDirtyProperty(VARIANT* PropertyA, BSTR PropertyNameA, VARIANT NewValueA,
                                                  VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] {
    const auto alive = keepAlive();
    const VARIANT& property = variable(PropertyA);
    const Variant value(NewValueA);
    if (outermostMode() == pcmEnumerating) {
      raisePropertyChange(PropertyNameA, value.get());
    }
    return compareWith(property, value.get()) == Comparison::different;
  });
}

STDMETHODIMP CObservableClass::RaisePropertyChange(BSTR PropertyNameA, VARIANT NewValueA) noexcept {
  return quietly([&] { raisePropertyChange(PropertyNameA, NewValueA); });
}

STDMETHODIMP CObservableClass::get_PropertyChangeMode(PropertyChangeMode* result) noexcept {
  return quietly(result, [&] { return outermostMode(); });
}

STDMETHODIMP CObservableClass::PushPropertyChangeMode(PropertyChangeMode ChangeModeA) noexcept {
  return quietly([&] {
    modes_.push_back(ChangeModeA);
    if (modes_.size() == 1 || !majorModeChangeOnly_) {
      raiseModeEvent(ChangeModeA, false);
    }
  });
}

STDMETHODIMP CObservableClass::PopPropertyChangeMode(PropertyChangeMode* result) noexcept {
  return quietly(result, [&] {
    if (modes_.empty()) {
      return pcmIndividual;
    }
    const PropertyChangeMode newest = modes_.back();
    modes_.pop_back();
    if (modes_.empty() || !majorModeChangeOnly_) {
      raiseModeEvent(newest, true);
    }
    return newest;
  });
}

STDMETHODIMP CObservableClass::get_MajorModeChangeOnly(VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] { return majorModeChangeOnly_; });
}

STDMETHODIMP CObservableClass::put_MajorModeChangeOnly(VARIANT_BOOL value) noexcept {
  return quietly([&] { majorModeChangeOnly_ = value != VARIANT_FALSE; });
}

PropertyChangeMode CObservableClass::outermostMode() const noexcept {
  return modes_.empty() ? pcmIndividual : modes_.front();
}

void CObservableClass::raisePropertyChange(BSTR name, const VARIANT& value) noexcept {
  raise(propertyChange, name, value);
}

void CObservableClass::raiseModeEvent(PropertyChangeMode mode, bool finished) noexcept {
  const DISPID event = eventOf(mode);
  if (event != DISPID_UNKNOWN) {
    raise(event, finished);
  }
}

}  // namespace zeq::observe
