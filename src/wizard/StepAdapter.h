#pragma once
// A client's object that has the members of IWizardStep by name, such as a script's class, taken for one that
// implements it.

#include "ZEQUtility2.h"
#include "automation/Adapter.h"

namespace zeq::wizard {

class StepAdapter final : public automation::Adapter<StepAdapter, ::IWizardStep> {
 public:
  using Adapter::Adapter;

  STDMETHODIMP Free() noexcept override;
  STDMETHODIMP Execute(BSTR CaptionA, VARIANT_BOOL PermitBackA, VARIANT_BOOL PermitNextA,
                       VARIANT_BOOL PermitFinishA, BSTR* SubsequentStepKeyA, IHelpProvider* HelpProviderA,
                       WizardStepOutcome* result) noexcept override;
};

}  // namespace zeq::wizard
