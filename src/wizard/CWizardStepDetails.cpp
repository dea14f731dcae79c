#include "wizard/CWizardStepDetails.h"

#include "utility/MZEQUtilityStrings.h"

namespace zeq::wizard {

using automation::ComPtr;
using automation::quietly;
using automation::text;
using utility::trimmed;

CWizardStepDetails::~CWizardStepDetails() {
  if (step_) {
    step_->Free();  // A step that fails here goes all the same.
  }
}

STDMETHODIMP CWizardStepDetails::get_Key(BSTR* result) noexcept {
  return quietly(result, [&] { return std::wstring_view(key_); });
}

STDMETHODIMP CWizardStepDetails::put_Key(BSTR value) noexcept {
  return quietly([&] { key_ = text(value); });
}

STDMETHODIMP CWizardStepDetails::get_Index(short* result) noexcept {
  return quietly(result, [&] { return index_; });
}

STDMETHODIMP CWizardStepDetails::put_Index(short value) noexcept {
  return quietly([&] { index_ = value; });
}

STDMETHODIMP CWizardStepDetails::get_TheStep(IWizardStep** result) noexcept {
  return quietly(result, [&] { return ComPtr<IWizardStep>(step_); });
}

STDMETHODIMP CWizardStepDetails::putref_TheStep(IWizardStep* value) noexcept {
  return quietly([&] { step_ = ComPtr<IWizardStep>(value); });
}

STDMETHODIMP CWizardStepDetails::get_PermitBack(VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] { return permitBack_; });
}

STDMETHODIMP CWizardStepDetails::put_PermitBack(VARIANT_BOOL value) noexcept {
  return quietly([&] { permitBack_ = value != VARIANT_FALSE; });
}

STDMETHODIMP CWizardStepDetails::get_PermitNext(VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] { return permitNext_; });
}

STDMETHODIMP CWizardStepDetails::put_PermitNext(VARIANT_BOOL value) noexcept {
  return quietly([&] { permitNext_ = value != VARIANT_FALSE; });
}

STDMETHODIMP CWizardStepDetails::get_PermitFinish(VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] { return permitFinish_; });
}

STDMETHODIMP CWizardStepDetails::put_PermitFinish(VARIANT_BOOL value) noexcept {
  return quietly([&] { permitFinish_ = value != VARIANT_FALSE; });
}

STDMETHODIMP CWizardStepDetails::get_NextStepKey(BSTR* result) noexcept {
  return quietly(result, [&] { return std::wstring_view(nextKey_); });
}

STDMETHODIMP CWizardStepDetails::put_NextStepKey(BSTR value) noexcept {
  return quietly([&] { nextKey_ = text(value); });
}

STDMETHODIMP CWizardStepDetails::get_BackStepKey(BSTR* result) noexcept {
  return quietly(result, [&] { return std::wstring_view(backKey_); });
}

STDMETHODIMP CWizardStepDetails::put_BackStepKey(BSTR value) noexcept {
  return quietly([&] { backKey_ = text(value); });
}

WizardStepOutcome CWizardStepDetails::runStep(BSTR caption, BSTR* subsequentKey,
                                              IHelpProvider* helpProvider) const {
  const auto automationBool = [](bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; };
  const ComPtr<IWizardStep> step = step_;  // The step may be replaced while it runs.
  WizardStepOutcome outcome = wzsoError;
  if (step) {
    automation::check(step->Execute(caption, automationBool(permitBack_), automationBool(permitNext_),
                                    automationBool(permitFinish_), subsequentKey, helpProvider, &outcome));
  }
  return outcome;
}

STDMETHODIMP CWizardStepDetails::Execute(BSTR CaptionA, BSTR* SubsequentStepKeyA,
                                         IHelpProvider* HelpProviderA, WizardStepOutcome* result) noexcept {
  if (result == nullptr || SubsequentStepKeyA == nullptr) {
    return E_POINTER;
  }
  *result = wzsoError;
  const auto alive = keepAlive();
  return quietly([&] {
    *result = runStep(CaptionA, SubsequentStepKeyA, HelpProviderA);
    const std::wstring& defaultKey = *result == wzsoBack   ? backKey_
                                     : *result == wzsoNext ? nextKey_
                                                           : std::wstring();
    if (trimmed(text(SubsequentStepKeyA)).empty() && !trimmed(defaultKey).empty()) {
      automation::assign(SubsequentStepKeyA, defaultKey);
    }
  });
}

}  // namespace zeq::wizard
