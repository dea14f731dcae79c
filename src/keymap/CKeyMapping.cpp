#include "keymap/CKeyMapping.h"

#include "utility/MZEQUtilityStrings.h"

namespace zeq::keymap {

using automation::quietly;
using automation::text;

void CKeyMapping::setMapping(Mapping mapping) noexcept {
  mapping_ = std::move(mapping);
  *keystrokeChanged_ = true;
}

std::wstring CKeyMapping::line(std::wstring_view indent) const {
  std::wstring line(indent);
  line.append(L"[").append(utility::keyName(mapping_.keystroke.keyCode, mapping_.keystroke.shift, true));
  return line.append(L"] ").append(mapping_.name).append(L" - ").append(mapping_.description);
}

STDMETHODIMP CKeyMapping::get_KeyCode(short* result) noexcept {
  return quietly(result, [&] { return mapping_.keystroke.keyCode; });
}

STDMETHODIMP CKeyMapping::put_KeyCode(short value) noexcept {
  return quietly([&] {
    mapping_.keystroke.keyCode = value;
    *keystrokeChanged_ = true;
  });
}

STDMETHODIMP CKeyMapping::get_Shift(short* result) noexcept {
  return quietly(result, [&] { return mapping_.keystroke.shift; });
}

STDMETHODIMP CKeyMapping::put_Shift(short value) noexcept {
  return quietly([&] {
    mapping_.keystroke.shift = value;
    *keystrokeChanged_ = true;
  });
}

STDMETHODIMP CKeyMapping::get_Name(BSTR* result) noexcept {
  return quietly(result, [&] { return std::wstring_view(mapping_.name); });
}

STDMETHODIMP CKeyMapping::put_Name(BSTR value) noexcept {
  return quietly([&] { mapping_.name = text(value); });
}

STDMETHODIMP CKeyMapping::get_description(BSTR* result) noexcept {
  return quietly(result, [&] { return std::wstring_view(mapping_.description); });
}

STDMETHODIMP CKeyMapping::put_description(BSTR value) noexcept {
  return quietly([&] { mapping_.description = text(value); });
}

STDMETHODIMP CKeyMapping::AsString(BSTR IndentA, BSTR* result) noexcept {
  return quietly(result, [&] { return line(text(IndentA)); });
}

}  // namespace zeq::keymap
