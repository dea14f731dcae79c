#include "help/HelpProviderAdapter.h"

#include "automation/Policy.h"

namespace zeq::help {

using automation::raising;

STDMETHODIMP HelpProviderAdapter::ShowHelp(BSTR TopicNameA, BSTR FormNameA, BSTR ContextNameA) noexcept {
  return raising([&] { caller().call(L"ShowHelp", TopicNameA, FormNameA, ContextNameA); });
}

STDMETHODIMP HelpProviderAdapter::ShowContents() noexcept {
  return raising([&] { caller().call(L"ShowContents"); });
}

STDMETHODIMP HelpProviderAdapter::ShowIndex() noexcept {
  return raising([&] { caller().call(L"ShowIndex"); });
}

STDMETHODIMP HelpProviderAdapter::ShowFind() noexcept {
  return raising([&] { caller().call(L"ShowFind"); });
}

STDMETHODIMP HelpProviderAdapter::ShowTopicID(long TopicIDA) noexcept {
  return raising([&] { caller().call(L"ShowTopicID", TopicIDA); });
}

STDMETHODIMP HelpProviderAdapter::ShowKeyword(BSTR KeyWordA) noexcept {
  return raising([&] { caller().call(L"ShowKeyword", KeyWordA); });
}

}  // namespace zeq::help
