#include "wizard/CWizard.h"

#include <limits>
#include <stdexcept>

namespace zeq::wizard {

using automation::Bstr;
using automation::ComPtr;
using automation::quietly;
using automation::text;
using automation::Variant;

CWizard::~CWizard() {
  Clear();
}

STDMETHODIMP CWizard::AddStep(IWizardStep* StepA, BSTR KeyA, _CWizardStepDetails** result) noexcept {
  return quietly(result, [&]() -> Step {
    if (steps_->find(text(KeyA)) != nullptr) {
      return nullptr;
    }
    auto details = CWizardStepDetails::make(StepA, text(KeyA));
    steps_->append(Variant(static_cast<IDispatch*>(details.get())), text(KeyA));
    return details;
  });
}

CWizard::Step CWizard::step(const VARIANT& keyOrPosition) const {
  return Step(static_cast<CWizardStepDetails*>(steps_->item(keyOrPosition).get().pdispVal));
}

STDMETHODIMP CWizard::get_Item(VARIANT KeyIndexA, _CWizardStepDetails** result) noexcept {
  return quietly(result, [&] { return step(KeyIndexA); });
}

STDMETHODIMP CWizard::Clear() noexcept {
  return quietly([&] {
    const auto alive = keepAlive();
    // Each record goes after it has left the collection: a step that is freed may come back to the wizard,
    // and what it adds then stays.
    for (long left = steps_->size(); left > 0 && steps_->size() > 0; --left) {
      const Step first = stepAt(1);
      steps_->removeAt(1);
    }
  });
}

STDMETHODIMP CWizard::get_Caption(BSTR* result) noexcept {
  return quietly(result, [&] { return std::wstring_view(caption_); });
}

STDMETHODIMP CWizard::put_Caption(BSTR value) noexcept {
  return quietly([&] { caption_ = text(value); });
}

void CWizard::numberSteps() {
  for (long position = 1; position <= steps_->size(); ++position) {
    if (position > std::numeric_limits<short>::max()) {
      throw std::overflow_error("more steps than positions");
    }
    stepAt(position)->setIndex(static_cast<short>(position));
  }
}

Bstr CWizard::pageCaption(const CWizardStepDetails& current) const {
  const std::wstring title = caption_.empty() ? L"" : caption_ + L" - ";
  return Bstr(title + L"Step " + std::to_wstring(current.index()) + L" of " +
              std::to_wstring(steps_->size()));
}

CWizard::Step CWizard::stepAfterFinish(const CWizardStepDetails& current, const VARIANT& finishStep) const {
  if (!automation::isMissing(finishStep)) {
    return step(finishStep);
  }
  return current.index() == steps_->size() ? Step() : stepAt(steps_->size());
}

WizardOutcome CWizard::run(const VARIANT& firstStep, const VARIANT& finishStep, IHelpProvider* helpProvider) {
  numberSteps();
  Step current = automation::isMissing(firstStep) ? stepAt(1) : step(firstStep);
  for (;;) {
    Bstr nextKey;
    WizardStepOutcome outcome = wzsoError;
    current->Execute(pageCaption(*current).get(), nextKey.out(), helpProvider, &outcome);
    const bool leaves = outcome == wzsoBack || outcome == wzsoNext || outcome == wzsoFinish;
    if (leaves && !nextKey.view().empty()) {
      current = step(Variant(nextKey.view()).get());
      continue;
    }
    switch (outcome) {
      case wzsoError:
        return wizoError;
      case wzsoCancel:
        return wizoCancelled;
      case wzsoBack:
        current = stepAt(current->index() - 1);
        break;
      case wzsoNext:
        current = stepAt(current->index() + 1);
        break;
      case wzsoFinish:
        current = stepAfterFinish(*current, finishStep);
        if (!current) {
          return wizoFinished;
        }
        break;
      case wzsoFinished:
        return wizoFinished;
      default:
        break;
    }
  }
}

STDMETHODIMP CWizard::DoWizard(VARIANT FirstStepA, VARIANT FinishStepA, IHelpProvider* HelpProviderA,
                               WizardOutcome* result) noexcept {
  const auto alive = keepAlive();
  const ComPtr<IHelpProvider> helpProvider(HelpProviderA);
  return quietly(result, [&] {
    // Copies, because the steps may change the client's variables.
    return run(Variant(FirstStepA).get(), Variant(FinishStepA).get(), helpProvider.get());
  });
}

}  // namespace zeq::wizard
