#pragma once
// Turns keystrokes into events: a bound keystroke raises one that carries its key mapping.

#include "ZEQUtility2.h"
#include "automation/Object.h"
#include "keymap/CKeyMappings.h"

namespace zeq::keymap {

class CKeymapFilter final
    : public automation::Object<CKeymapFilter, ::CKeymapFilter, ::_CKeymapFilter, ::__CKeymapFilter> {
 public:
  CKeymapFilter() = default;
  /// A client may hold the mappings longer than the filter, but finds them empty.
  ~CKeymapFilter() override { mappings_->Clear(); }

  STDMETHODIMP get_KeyMappings(::_CKeyMappings** result) noexcept override;
  STDMETHODIMP Process(short KeyCode, short Shift, VARIANT_BOOL* processed,
                       VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP AddMapping(BSTR Name, BSTR description, short KeyCode, short Shift,
                          VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP AsString(BSTR IndentA, BSTR* result) noexcept override;

 private:
  automation::ComPtr<CKeyMappings> mappings_ = CKeyMappings::make();
};

}  // namespace zeq::keymap
