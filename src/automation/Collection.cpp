#include "automation/Collection.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "automation/Enumerator.h"

namespace zeq::automation {
namespace {

bool isText(const VARIANT& index) noexcept {
  const VARTYPE type = dereferenced(index).vt;
  return type == VT_BSTR || type == (VT_BYREF | VT_BSTR);
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
  if (!isText(index)) {
    return at(positionOf(index));
  }
  const Variant key(index);
  const Variant* found = find(text(key.get().bstrVal));
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

STDMETHODIMP Collection::get_Item(VARIANT Index, VARIANT* result) noexcept {
  return raising(result, [&] { return item(Index); });
}

STDMETHODIMP Collection::Add(VARIANT Item, VARIANT Key, VARIANT Before, VARIANT After) noexcept {
  return raising([&] {
    auto place = entries_.end();
    if (!isMissing(Before) && !isMissing(After)) {
      throw Error(ErrorNumber::invalidProcedureCall);
    }
    if (!isMissing(Before)) {
      place = locate(Before);
    } else if (!isMissing(After)) {
      place = std::next(locate(After));
    }
    if (isMissing(Key)) {
      insert(place, Variant(Item), std::nullopt);
    } else if (isText(Key)) {
      const Variant key(Key);
      insert(place, Variant(Item), text(key.get().bstrVal));
    } else {
      throw Error(ErrorNumber::typeMismatch);
    }
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
    std::vector<VariantElement> items;
    items.reserve(entries_.size());
    for (const auto& entry : entries_) {
      items.push_back({entry->value});
    }
    return VariantEnumerator::make(std::move(items));
  });
}

Collection::Entries::iterator Collection::locate(const VARIANT& index) {
  if (isText(index)) {
    const Variant key(index);
    return locateKey(text(key.get().bstrVal));
  }
  return locatePosition(positionOf(index));
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
  return std::find_if(entries_.begin(), entries_.end(),
                      [&](const auto& entry) { return entry.get() == found->second; });
}

void Collection::insert(Entries::iterator before, Variant item, std::optional<std::wstring_view> key) {
  auto entry = std::make_unique<Entry>();
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
    entries_.insert(before, std::move(entry));
  } catch (...) {
    byKey_.erase(position);
    throw;
  }
}

void Collection::erase(Entries::iterator entry) {
  // The item goes last: releasing it may run client code that uses this collection.
  const std::unique_ptr<Entry> removed = std::move(*entry);
  entries_.erase(entry);
  if (removed->foldedKey) {
    byKey_.erase(*removed->foldedKey);
  }
}

}  // namespace zeq::automation
