#pragma once
// A wizard: runs keyed steps, back and forth, until one of them finishes or cancels it.

#include <string>

#include "ZEQUtility2.h"
#include "automation/Collection.h"
#include "automation/Object.h"
#include "wizard/CWizardStepDetails.h"

namespace zeq::wizard {

class CWizard final : public automation::Object<CWizard, ::CWizard, ::_CWizard> {
 public:
  ~CWizard() override;

  STDMETHODIMP AddStep(IWizardStep* StepA, BSTR KeyA, _CWizardStepDetails** result) noexcept override;
  STDMETHODIMP get_Item(VARIANT KeyIndexA, _CWizardStepDetails** result) noexcept override;
  STDMETHODIMP Clear() noexcept override;
  STDMETHODIMP get_Caption(BSTR* result) noexcept override;
  STDMETHODIMP put_Caption(BSTR value) noexcept override;
  STDMETHODIMP DoWizard(VARIANT FirstStepA, VARIANT FinishStepA, IHelpProvider* HelpProviderA,
                        WizardOutcome* result) noexcept override;

 private:
  using Step = automation::ComPtr<CWizardStepDetails>;

  // All throw if there is no such step.
  [[nodiscard]] Step step(const VARIANT& keyOrPosition) const;
  [[nodiscard]] Step stepAt(long position) const { return step(automation::Variant(position).get()); }
  [[nodiscard]] Step stepAfterFinish(const CWizardStepDetails& current, const VARIANT& finishStep) const;

  void numberSteps();
  [[nodiscard]] automation::Bstr pageCaption(const CWizardStepDetails& current) const;
  [[nodiscard]] WizardOutcome run(const VARIANT& firstStep, const VARIANT& finishStep,
                                  IHelpProvider* helpProvider);

  /// Holds the records and nothing else.
  const automation::ComPtr<automation::Collection> steps_ = automation::Collection::make();
  std::wstring caption_;
};

}  // namespace zeq::wizard
