#include "keymap/CKeyMappings.h"

#include <limits>

#include "inifiles/CIniFile.h"
#include "platform/TextFiles.h"
#include "utility/Format.h"

namespace zeq::keymap {

using automation::ComPtr;
using automation::quietly;
using automation::text;
using automation::Variant;

namespace {

constexpr std::wstring_view lineEnd = L"\r\n";

std::uint32_t indexOf(Keystroke keystroke) noexcept {
  return static_cast<std::uint32_t>(static_cast<std::uint16_t>(keystroke.keyCode)) << 16U |
         static_cast<std::uint16_t>(keystroke.shift);
}

/// The mapping in an item of the collection, which holds nothing else.
CKeyMapping& mappingIn(const Variant& item) noexcept {
  return static_cast<CKeyMapping&>(*item.get().pdispVal);
}

}  // namespace

void CKeyMappings::clear() {
  *indexIsOld_ = true;
  mappings_->clear();
}

ComPtr<CKeyMapping> CKeyMappings::add(Mapping mapping) {
  auto added = CKeyMapping::make(indexIsOld_);
  added->setMapping(std::move(mapping));
  mappings_->append(Variant(added.get()));
  return added;
}

ComPtr<CKeyMapping> CKeyMappings::find(Keystroke keystroke) {
  if (*indexIsOld_) {
    indexKeystrokes();
  }
  const auto found = firstByKeystroke_.find(indexOf(keystroke));
  return ComPtr<CKeyMapping>(found != firstByKeystroke_.end() ? found->second : nullptr);
}

void CKeyMappings::indexKeystrokes() {
  firstByKeystroke_.clear();
  for (long i = 1; i <= mappings_->size(); ++i) {
    CKeyMapping& mapping = at(i);
    firstByKeystroke_.try_emplace(indexOf(mapping.mapping().keystroke), &mapping);
  }
  *indexIsOld_ = false;
}

std::wstring CKeyMappings::asText(std::wstring_view indent) const {
  std::wstring result(indent);
  const std::wstring inner = result + L"    ";
  result += L"Keyboard mappings: ";
  for (long i = 1; i <= mappings_->size(); ++i) {
    result.append(lineEnd).append(at(i).line(inner));
  }
  return result;
}

CKeyMapping& CKeyMappings::at(long position) const {
  return mappingIn(mappings_->at(position));
}

STDMETHODIMP CKeyMappings::Clear() noexcept {
  return quietly([&] { clear(); });
}

STDMETHODIMP CKeyMappings::get_count(long* result) noexcept {
  return quietly(result, [&] { return mappings_->size(); });
}

STDMETHODIMP CKeyMappings::get_Item(VARIANT vntIndexKey, ::_CKeyMapping** result) noexcept {
  return quietly(result, [&] { return ComPtr<CKeyMapping>(&mappingIn(mappings_->item(vntIndexKey))); });
}

STDMETHODIMP CKeyMappings::get_ItemByName(BSTR nm, ::_CKeyMapping** result) noexcept {
  return quietly(result, [&] {
    for (long i = 1; i <= mappings_->size(); ++i) {
      if (at(i).mapping().name == text(nm)) {
        return ComPtr<CKeyMapping>(&at(i));
      }
    }
    return ComPtr<CKeyMapping>();
  });
}

STDMETHODIMP CKeyMappings::get_ItemByKeycode(short KeyCode, short Shift, ::_CKeyMapping** result) noexcept {
  return quietly(result, [&] { return find({KeyCode, Shift}); });
}

STDMETHODIMP CKeyMappings::Remove(VARIANT vntIndexKey) noexcept {
  return quietly([&] {
    const auto alive = keepAlive();
    mappings_->Remove(vntIndexKey);
    *indexIsOld_ = true;  // Not before: taking the place from a client's object may build the index anew.
  });
}

STDMETHODIMP CKeyMappings::get_NewEnum(IUnknown** result) noexcept {
  return mappings_->get_NewEnum(result);
}

STDMETHODIMP CKeyMappings::Add(::_CKeyMapping** result) noexcept {
  return quietly(result, [&] { return add(); });
}

STDMETHODIMP CKeyMappings::AsString(BSTR IndentA, BSTR* result) noexcept {
  return quietly(result, [&] { return asText(text(IndentA)); });
}

STDMETHODIMP CKeyMappings::ReadFromFile(BSTR fName, BSTR sectName, VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] {
    const auto file = inifiles::CIniFile::make();
    file->setFileName(text(fName));
    clear();
    file->setSection(text(sectName));
    const auto entries = integerIn(file->getString(countKey));
    MappingReader reader;
    for (int i = 1; i <= entries.value_or(0); ++i) {
      if (auto mapping = reader.read(file->getString(mappingKey(i)))) {
        static_cast<void>(add(std::move(*mapping)));
      }
    }
    return entries.has_value();
  });
}

STDMETHODIMP CKeyMappings::WriteToFile(BSTR fName, BSTR sectName, VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] {
    const long entries = mappings_->size();
    if (entries > std::numeric_limits<short>::max()) {
      return false;  // More than can be read back.
    }
    std::wstring content = L"[";
    content.append(text(sectName)).append(L"]").append(lineEnd);
    content.append(countKey).append(L"=").append(utility::formatInteger(entries, 1)).append(lineEnd);
    for (int i = 1; i <= entries; ++i) {
      content.append(mappingKey(i)).append(L"=").append(mappingValue(at(i).mapping())).append(lineEnd);
    }
    platform::overwriteText(std::wstring(text(fName)), content);
    return true;
  });
}

}  // namespace zeq::keymap
