#pragma once
// One key mapping: a named command bound to one keystroke.

#include <memory>
#include <string>
#include <string_view>

#include "ZEQUtility2.h"
#include "automation/Object.h"
#include "keymap/KeyMapText.h"

namespace zeq::keymap {

class CKeyMapping final : public automation::Object<CKeyMapping, ::CKeyMapping, ::_CKeyMapping> {
 public:
  /// A flag that becomes true whenever the keystroke changes; it may be shared with other mappings.
  using ChangeFlag = std::shared_ptr<bool>;

  explicit CKeyMapping(ChangeFlag keystrokeChanged = std::make_shared<bool>()) noexcept
      : keystrokeChanged_(std::move(keystrokeChanged)) {}

  // For the library's own classes.
  [[nodiscard]] const Mapping& mapping() const noexcept { return mapping_; }
  void setMapping(Mapping mapping) noexcept;
  [[nodiscard]] std::wstring line(std::wstring_view indent) const;

  // _CKeyMapping
  STDMETHODIMP get_KeyCode(short* result) noexcept override;
  STDMETHODIMP put_KeyCode(short value) noexcept override;
  STDMETHODIMP get_Shift(short* result) noexcept override;
  STDMETHODIMP put_Shift(short value) noexcept override;
  STDMETHODIMP get_Name(BSTR* result) noexcept override;
  STDMETHODIMP put_Name(BSTR value) noexcept override;
  STDMETHODIMP get_description(BSTR* result) noexcept override;
  STDMETHODIMP put_description(BSTR value) noexcept override;
  STDMETHODIMP AsString(BSTR IndentA, BSTR* result) noexcept override;

 private:
  Mapping mapping_;
  ChangeFlag keystrokeChanged_;
};

}  // namespace zeq::keymap
