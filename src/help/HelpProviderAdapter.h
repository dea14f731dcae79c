#pragma once
// A client's object that has the members of IHelpProvider by name, taken for one that implements it.

#include "ZEQUtility2.h"
#include "automation/Adapter.h"

namespace zeq::help {

class HelpProviderAdapter final : public automation::Adapter<HelpProviderAdapter, ::IHelpProvider> {
 public:
  using Adapter::Adapter;

  STDMETHODIMP ShowHelp(BSTR TopicNameA, BSTR FormNameA, BSTR ContextNameA) noexcept override;
  STDMETHODIMP ShowContents() noexcept override;
  STDMETHODIMP ShowIndex() noexcept override;
  STDMETHODIMP ShowFind() noexcept override;
  STDMETHODIMP ShowTopicID(long TopicIDA) noexcept override;
  STDMETHODIMP ShowKeyword(BSTR KeyWordA) noexcept override;
};

}  // namespace zeq::help
