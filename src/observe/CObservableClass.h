#pragma once
// The companion of an observable object: it compares and stores the values of properties, announces their
// changes, and keeps the stack of modes that tell listeners what kind of activity is going on.

#include <vector>

#include "ZEQUtility2.h"
#include "automation/Object.h"

namespace zeq::observe {

class CObservableClass final : public automation::Object<CObservableClass, ::CObservableClass,
                                                         ::_CObservableClass, ::__CObservableClass> {
 public:
  STDMETHODIMP SimplePropertyUpdate(VARIANT* PropertyA, BSTR PropertyNameA, VARIANT NewValueA,
                                    VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP UpdateDirtyProperty(VARIANT* PropertyA, BSTR PropertyNameA, VARIANT NewValueA,
                                   VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP CheckDirtyProperty(VARIANT* PropertyA, BSTR PropertyNameA, VARIANT NewValueA,
                                  VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP RaisePropertyChange(BSTR PropertyNameA, VARIANT NewValueA) noexcept override;
  STDMETHODIMP get_PropertyChangeMode(PropertyChangeMode* result) noexcept override;
  STDMETHODIMP PushPropertyChangeMode(PropertyChangeMode ChangeModeA) noexcept override;
  STDMETHODIMP PopPropertyChangeMode(PropertyChangeMode* result) noexcept override;
  STDMETHODIMP get_MajorModeChangeOnly(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP put_MajorModeChangeOnly(VARIANT_BOOL value) noexcept override;

 private:
  [[nodiscard]] PropertyChangeMode outermostMode() const noexcept;
  void raisePropertyChange(BSTR name, const VARIANT& value) noexcept;
  void raiseModeEvent(PropertyChangeMode mode, bool finished) noexcept;

  std::vector<PropertyChangeMode> modes_;  ///< The outermost mode first.
  bool majorModeChangeOnly_ = false;
};

}  // namespace zeq::observe
