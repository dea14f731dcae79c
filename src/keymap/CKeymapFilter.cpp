#include "keymap/CKeymapFilter.h"

namespace zeq::keymap {

using automation::ComPtr;
using automation::quietly;
using automation::text;

namespace {

constexpr DISPID keyboardEvent = 1;

}  // namespace

STDMETHODIMP CKeymapFilter::get_KeyMappings(::_CKeyMappings** result) noexcept {
  return quietly(result, [&] { return mappings_; });
}

STDMETHODIMP CKeymapFilter::Process(short KeyCode, short Shift, VARIANT_BOOL* processed,
                                    VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] {
    if (processed == nullptr) {
      throw automation::Error(E_POINTER);
    }
    const ComPtr<CKeyMapping> found = mappings_->find({KeyCode, Shift});
    if (!found) {
      return false;
    }
    IDispatch* keyStroke = found.get();
    raise(keyboardEvent, &keyStroke, processed);
    return true;
  });
}

STDMETHODIMP CKeymapFilter::AddMapping(BSTR Name, BSTR description, short KeyCode, short Shift,
                                       VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] {
    const Mapping mapping{std::wstring(text(Name)), std::wstring(text(description)), {KeyCode, Shift}};
    return static_cast<bool>(mappings_->add(mapping));
  });
}

STDMETHODIMP CKeymapFilter::AsString(BSTR IndentA, BSTR* result) noexcept {
  return quietly(result, [&] { return mappings_->asText(text(IndentA)); });
}

}  // namespace zeq::keymap
