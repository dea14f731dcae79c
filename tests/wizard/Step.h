#pragma once
// A client's page of a wizard, in C++ through the interface.

#include <windows.h>

#include <functional>
#include <string>
#include <utility>

#include "support/ClientObject.h"
#include "support/Component.h"

namespace zeq::test {

/// What a step is run with.
struct Page {
  std::wstring caption;
  bool permitBack, permitNext, permitFinish;
  std::wstring key;  ///< As it arrives; what the page leaves here goes back to the wizard.
  IHelpProvider* helpProvider;
};

using PageAction = std::function<WizardStepOutcome(Page&)>;

/// It counts itself and its calls.
class Step final : public ClientObject<IWizardStep> {
 public:
  static ComPtr<IWizardStep> make(PageAction execute) {
    return ComPtr<IWizardStep>::attach(new Step(std::move(execute)));
  }

  static inline int alive = 0;
  static inline int freed = 0;
  static inline std::function<void()> whenFreed;

  STDMETHODIMP Free() noexcept override {
    ++freed;
    if (whenFreed) {
      whenFreed();
    }
    return S_OK;
  }
  STDMETHODIMP Execute(BSTR caption, VARIANT_BOOL back, VARIANT_BOOL next, VARIANT_BOOL finish, BSTR* key,
                       IHelpProvider* helpProvider, WizardStepOutcome* result) noexcept override {
    Page page{std::wstring(automation::text(caption)),
              back == VARIANT_TRUE,
              next == VARIANT_TRUE,
              finish == VARIANT_TRUE,
              std::wstring(automation::text(*key)),
              helpProvider};
    *result = execute_(page);
    automation::assign(key, page.key);
    return static_cast<int>(*result) == failing ? E_FAIL : S_OK;
  }

  /// The outcome with which a step fails.
  static constexpr int failing = -99;

 private:
  explicit Step(PageAction execute) : execute_(std::move(execute)) { ++alive; }
  ~Step() override { --alive; }

  PageAction execute_;
};

}  // namespace zeq::test
