#pragma once
// The record of one step of a wizard. When its last reference goes, the step is told to free what it holds.

#include <string>
#include <string_view>

#include "ZEQUtility2.h"
#include "automation/Object.h"

namespace zeq::wizard {

class CWizardStepDetails final
    : public automation::Object<CWizardStepDetails, ::CWizardStepDetails, ::_CWizardStepDetails> {
 public:
  CWizardStepDetails() noexcept = default;
  CWizardStepDetails(IWizardStep* step, std::wstring_view key) : step_(step), key_(key) {}
  ~CWizardStepDetails() override;

  // For the wizard.
  [[nodiscard]] short index() const noexcept { return index_; }
  void setIndex(short index) noexcept { index_ = index; }

  // _CWizardStepDetails
  STDMETHODIMP get_Key(BSTR* result) noexcept override;
  STDMETHODIMP put_Key(BSTR value) noexcept override;
  STDMETHODIMP get_Index(short* result) noexcept override;
  STDMETHODIMP put_Index(short value) noexcept override;
  STDMETHODIMP get_TheStep(IWizardStep** result) noexcept override;
  STDMETHODIMP putref_TheStep(IWizardStep* value) noexcept override;
  STDMETHODIMP get_PermitBack(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP put_PermitBack(VARIANT_BOOL value) noexcept override;
  STDMETHODIMP get_PermitNext(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP put_PermitNext(VARIANT_BOOL value) noexcept override;
  STDMETHODIMP get_PermitFinish(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP put_PermitFinish(VARIANT_BOOL value) noexcept override;
  STDMETHODIMP get_NextStepKey(BSTR* result) noexcept override;
  STDMETHODIMP put_NextStepKey(BSTR value) noexcept override;
  STDMETHODIMP get_BackStepKey(BSTR* result) noexcept override;
  STDMETHODIMP put_BackStepKey(BSTR value) noexcept override;
  STDMETHODIMP Execute(BSTR CaptionA, BSTR* SubsequentStepKeyA, IHelpProvider* HelpProviderA,
                       WizardStepOutcome* result) noexcept override;

 private:
  [[nodiscard]] WizardStepOutcome runStep(BSTR caption, BSTR* subsequentKey,
                                          IHelpProvider* helpProvider) const;

  automation::ComPtr<IWizardStep> step_;
  std::wstring key_;
  std::wstring nextKey_;
  std::wstring backKey_;
  short index_ = 0;
  bool permitBack_ = true;
  bool permitNext_ = true;
  bool permitFinish_ = true;
};

}  // namespace zeq::wizard
