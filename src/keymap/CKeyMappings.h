#pragma once
// An ordered collection of key mappings, searched by name or keystroke, saved to a file and loaded from one.

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "ZEQUtility2.h"
#include "automation/Collection.h"
#include "automation/Object.h"
#include "keymap/CKeyMapping.h"

namespace zeq::keymap {

class CKeyMappings final : public automation::Object<CKeyMappings, ::CKeyMappings, ::_CKeyMappings> {
 public:
  // For the library's own classes.
  void clear();
  [[nodiscard]] automation::ComPtr<CKeyMapping> add(Mapping mapping = {});
  /// The first mapping of a keystroke; empty if there is none.
  [[nodiscard]] automation::ComPtr<CKeyMapping> find(Keystroke keystroke);
  [[nodiscard]] std::wstring asText(std::wstring_view indent) const;

  // _CKeyMappings
  STDMETHODIMP Clear() noexcept override;
  STDMETHODIMP get_count(long* result) noexcept override;
  STDMETHODIMP get_Item(VARIANT vntIndexKey, ::_CKeyMapping** result) noexcept override;
  STDMETHODIMP get_ItemByName(BSTR nm, ::_CKeyMapping** result) noexcept override;
  STDMETHODIMP get_ItemByKeycode(short KeyCode, short Shift, ::_CKeyMapping** result) noexcept override;
  STDMETHODIMP Remove(VARIANT vntIndexKey) noexcept override;
  STDMETHODIMP get_NewEnum(IUnknown** result) noexcept override;
  STDMETHODIMP Add(::_CKeyMapping** result) noexcept override;
  STDMETHODIMP AsString(BSTR IndentA, BSTR* result) noexcept override;
  STDMETHODIMP ReadFromFile(BSTR fName, BSTR sectName, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP WriteToFile(BSTR fName, BSTR sectName, VARIANT_BOOL* result) noexcept override;

 private:
  [[nodiscard]] CKeyMapping& at(long position) const;
  void indexKeystrokes();

  automation::ComPtr<automation::Collection> mappings_ = automation::Collection::make();
  /// The first mapping of every keystroke, and whether that has to be found out anew: clients change the
  /// keystrokes of mappings that they hold, and may hold a mapping longer than this object lives.
  std::unordered_map<std::uint32_t, CKeyMapping*> firstByKeystroke_;
  CKeyMapping::ChangeFlag indexIsOld_ = std::make_shared<bool>();
};

}  // namespace zeq::keymap
