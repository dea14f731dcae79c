#include "wizard/StepAdapter.h"

#include "automation/Policy.h"

namespace zeq::wizard {

using automation::raising;
using automation::Variant;

STDMETHODIMP StepAdapter::Free() noexcept {
  return raising([&] { caller().call(L"Free"); });
}

STDMETHODIMP StepAdapter::Execute(BSTR CaptionA, VARIANT_BOOL PermitBackA, VARIANT_BOOL PermitNextA,
                                  VARIANT_BOOL PermitFinishA, BSTR* SubsequentStepKeyA,
                                  IHelpProvider* HelpProviderA, WizardStepOutcome* result) noexcept {
  return raising(result, [&] {
    const auto helpProvider = automation::withoutAdapter(HelpProviderA);
    const auto execute = [&](auto* subsequentKey) {
      return caller().call(L"Execute", CaptionA, PermitBackA != VARIANT_FALSE, PermitNextA != VARIANT_FALSE,
                           PermitFinishA != VARIANT_FALSE, subsequentKey,
                           static_cast<IDispatch*>(helpProvider.get()));
    };
    // Scripts hand back only what they get as a variable of any type; an object with typed arguments refuses
    // that before it does anything.
    Variant outcome;
    Variant subsequentKey(automation::text(SubsequentStepKeyA));
    try {
      outcome = execute(&subsequentKey.get());
    } catch (const automation::ArgumentRefused&) {
      outcome = execute(SubsequentStepKeyA);
      subsequentKey = Variant(automation::text(SubsequentStepKeyA));
    }
    automation::assign(SubsequentStepKeyA, automation::textOf(subsequentKey.get()));
    return static_cast<WizardStepOutcome>(outcome.to(VT_I4).get().lVal);
  });
}

}  // namespace zeq::wizard
