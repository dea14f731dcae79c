#include "automation/CollectionArgument.h"

#include <array>

#include "automation/Errors.h"

namespace zeq::automation {

CollectionArgument::CollectionArgument(IDispatch* object) : object_(object) {
  if (object == nullptr) {
    throw Error(ErrorNumber::objectNotSet);
  }
  own_ = ComPtr<IDispatch>(object).query<::_Collection>();
}

void CollectionArgument::add(const Variant& item, const Variant& key) {
  if (own_) {
    const Variant missing = Variant::missing();
    check(own_->Add(item.get(), key.get(), missing.get(), missing.get()));
  } else if (isMissing(key.get())) {
    object_.call(L"Add", item.get());
  } else {
    addToForeign(item, key);
  }
}

long CollectionArgument::count() const {
  if (own_) {
    long result = 0;
    check(own_->get_Count(&result));
    return result;
  }
  return object_.get(L"Count").to(VT_I4).get().lVal;
}

Variant CollectionArgument::item(const Variant& index) const {
  if (own_) {
    Variant result;
    check(own_->get_Item(index.get(), result.out()));
    return result;
  }
  return object_.get(L"Item", index.get());
}

void CollectionArgument::remove(const Variant& index) {
  if (own_) {
    check(own_->Remove(index.get()));
  } else {
    object_.call(L"Remove", index.get());
  }
}

void CollectionArgument::addToForeign(const Variant& item, const Variant& key) {
  // By the arguments' names where the object knows them: a dictionary takes the key first.
  std::array names{const_cast<wchar_t*>(L"Add"), const_cast<wchar_t*>(L"Item"), const_cast<wchar_t*>(L"Key")};
  std::array<DISPID, names.size()> ids{};
  if (FAILED(object_.target()->GetIDsOfNames(IID_NULL, names.data(), names.size(), LOCALE_USER_DEFAULT,
                                             ids.data()))) {
    object_.call(L"Add", item.get(), key.get());
    return;
  }
  std::array arguments{item.get(), key.get()};
  DISPPARAMS parameters{arguments.data(), &ids[1], arguments.size(), arguments.size()};
  Variant result;
  CallException exception;
  const HRESULT outcome = object_.target()->Invoke(ids[0], IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                                   &parameters, result.out(), exception.out(), nullptr);
  if (FAILED(outcome)) {
    throw exception.error(outcome);
  }
}

}  // namespace zeq::automation
