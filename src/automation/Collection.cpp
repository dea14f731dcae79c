#include "automation/Collection.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace zeq::automation {
namespace {

/// The text that an index or a key is, valid as long as the variant; nothing if it is a value of another
/// type.
std::optional<std::wstring_view> textOfKey(const VARIANT& index) noexcept {
  const VARIANT& inner = dereferenced(index);
  if (inner.vt == VT_BSTR) {
    return text(inner.bstrVal);
  }
  if (inner.vt == (VT_BYREF | VT_BSTR) && inner.pbstrVal != nullptr) {
    return text(*inner.pbstrVal);
  }
  return std::nullopt;
}

long positionOf(const VARIANT& index) {
  Variant converted;
  check(changeType(converted.get(), index, VT_I4));
  return converted.get().lVal;
}

}  // namespace

const Variant& Collection::at(long position) const {
  if (position < 1 || position > size()) {
    throw Error(ErrorNumber::subscriptOutOfRange);
  }
  return entries_[static_cast<std::size_t>(position - 1)]->value;
}

const Variant* Collection::find(std::wstring_view key) const {
  const auto found = byKey_.find(foldCase(key));
  return found != byKey_.end() ? &found->second->value : nullptr;
}

const Variant& Collection::item(const VARIANT& index) const {
  const auto key = textOfKey(index);
  if (!key) {
    return at(positionOf(index));
  }
  const Variant* found = find(*key);
  if (found == nullptr) {
    throw Error(ErrorNumber::invalidProcedureCall);
  }
  return *found;
}

void Collection::append(Variant item, std::optional<std::wstring_view> key) {
  insert(entries_.end(), std::move(item), key);
}

void Collection::removeAt(long position) {
  erase(locatePosition(position));
}

void Collection::clear() {
  while (!entries_.empty()) {
    erase(entries_.begin());
  }
}

STDMETHODIMP Collection::get_Item(VARIANT Index, VARIANT* result) noexcept {
  return raising(result, [&] { return item(Index); });
}

STDMETHODIMP Collection::Add(VARIANT Item, VARIANT Key, VARIANT Before, VARIANT After) noexcept {
  return raising([&] {
    // Made first: nothing that runs client code may come between finding the place and using it.
    Variant item(Item);
    const auto key = textOfKey(Key);
    if (!key && !isMissing(Key)) {
      throw Error(ErrorNumber::typeMismatch);
    }
    auto place = entries_.end();
    if (!isMissing(Before) && !isMissing(After)) {
      throw Error(ErrorNumber::invalidProcedureCall);
    }
    if (!isMissing(Before)) {
      place = locate(Before);
    } else if (!isMissing(After)) {
      place = std::next(locate(After));
    }
    insert(place, std::move(item), key);
  });
}

STDMETHODIMP Collection::get_Count(long* result) noexcept {
  return raising(result, [&] { return size(); });
}

STDMETHODIMP Collection::Remove(VARIANT Index) noexcept {
  return raising([&] { erase(locate(Index)); });
}

STDMETHODIMP Collection::get_NewEnum(IUnknown** result) noexcept {
  return raising(result, [&] {
    using EntryEnumerator = Enumerator<IEnumVARIANT, VARIANT, SharedElement<Entry>>;
    return EntryEnumerator::make({entries_.begin(), entries_.end()});
  });
}

Collection::Entries::iterator Collection::locate(const VARIANT& index) {
  const auto key = textOfKey(index);
  return key ? locateKey(*key) : locatePosition(positionOf(index));
}

Collection::Entries::iterator Collection::locatePosition(long position) {
  if (position < 1 || position > size()) {
    throw Error(ErrorNumber::subscriptOutOfRange);
  }
  return entries_.begin() + (position - 1);
}

Collection::Entries::iterator Collection::locateKey(std::wstring_view key) {
  const auto found = byKey_.find(foldCase(key));
  if (found == byKey_.end()) {
    throw Error(ErrorNumber::invalidProcedureCall);
  }
  // From both ends at once, as removing from the middle shifts the shorter side.
  auto front = entries_.begin();
  auto back = entries_.end();
  while (true) {
    if (front->get() == found->second) {
      return front;
    }
    ++front;
    --back;
    if (back->get() == found->second) {
      return back;
    }
  }
}

void Collection::insert(Entries::iterator before, Variant item, std::optional<std::wstring_view> key) {
  auto entry = std::make_shared<Entry>();
  entry->value = std::move(item);
  if (!key) {
    entries_.insert(before, std::move(entry));
    return;
  }
  entry->foldedKey = foldCase(*key);
  const auto [position, isNew] = byKey_.try_emplace(*entry->foldedKey, entry.get());
  if (!isNew) {
    throw Error(ErrorNumber::keyInUse);
  }
  try {
    entries_.insert(before, entry);
  } catch (...) {
    byKey_.erase(position);
    throw;
  }
}

void Collection::erase(Entries::iterator entry) {
  // The item goes last: releasing it may run client code that uses this collection.
  const std::shared_ptr<const Entry> removed = std::move(*entry);
  entries_.erase(entry);
  if (removed->foldedKey) {
    byKey_.erase(*removed->foldedKey);
  }
}

}  // namespace zeq::automation
