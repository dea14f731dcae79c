#pragma once
// The ordered collection: values or objects counted from 1, each with an optional text key that is compared
// without regard to case. Adding, looking up by position or key and removing at either end take constant
// time.

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "ZEQUtility2.h"
#include "automation/Enumerator.h"
#include "automation/Object.h"

namespace zeq::automation {

class Collection final : public Object<Collection, ::Collection, ::_Collection> {
 public:
  // For the library's own classes. Positions count from 1. All but find throw Error as the members below
  // report it.
  [[nodiscard]] long size() const noexcept { return static_cast<long>(entries_.size()); }
  [[nodiscard]] const Variant& at(long position) const;
  /// The item at a position or, for a text, under a key.
  [[nodiscard]] const Variant& item(const VARIANT& index) const;
  void append(Variant item, std::optional<std::wstring_view> key = std::nullopt);
  void removeAt(long position);
  /// Removes one item after the other from the front, those too that a released object adds meanwhile. The
  /// caller keeps the collection alive.
  void clear();
  /// The item under a key; null if there is none.
  [[nodiscard]] const Variant* find(std::wstring_view key) const;

  // _Collection
  STDMETHODIMP get_Item(VARIANT Index, VARIANT* result) noexcept override;
  STDMETHODIMP Add(VARIANT Item, VARIANT Key, VARIANT Before, VARIANT After) noexcept override;
  STDMETHODIMP get_Count(long* result) noexcept override;
  STDMETHODIMP Remove(VARIANT Index) noexcept override;
  STDMETHODIMP get_NewEnum(IUnknown** result) noexcept override;

 private:
  struct Entry : VariantElement {
    std::optional<std::wstring> foldedKey;
  };
  /// Enumerators share the entries.
  using Entries = std::deque<std::shared_ptr<const Entry>>;

  [[nodiscard]] Entries::iterator locate(const VARIANT& index);
  [[nodiscard]] Entries::iterator locatePosition(long position);
  [[nodiscard]] Entries::iterator locateKey(std::wstring_view key);
  void insert(Entries::iterator before, Variant item, std::optional<std::wstring_view> key);
  void erase(Entries::iterator entry);

  Entries entries_;
  std::unordered_map<std::wstring_view, const Entry*> byKey_;  ///< The keys are the entries' own texts.
};

}  // namespace zeq::automation
