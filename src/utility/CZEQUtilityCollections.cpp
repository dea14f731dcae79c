#include "utility/CZEQUtilityCollections.h"

#include "automation/CollectionArgument.h"

namespace zeq::utility {

using automation::CollectionArgument;
using automation::Error;
using automation::quietly;
using automation::Variant;

STDMETHODIMP CZEQUtilityCollections::Collection_ContainsKey(IDispatch** col, VARIANT vntIndexKey,
                                                            VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] {
    [[maybe_unused]] const Variant found = CollectionArgument(col).item(Variant(vntIndexKey));
    return true;
  });
}

STDMETHODIMP CZEQUtilityCollections::Collection_Clear(IDispatch** col) noexcept {
  return quietly([&] {
    CollectionArgument collection(col);
    for (long count = collection.count(); count >= 1;) {
      collection.remove(count);
      const long left = collection.count();
      if (left >= count) {
        return;  // A collection that keeps its items is left alone.
      }
      count = left;
    }
  });
}

STDMETHODIMP CZEQUtilityCollections::Collection_Remove(IDispatch** col, VARIANT vntIndexKey,
                                                       VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] {
    CollectionArgument(col).remove(Variant(vntIndexKey));
    return true;
  });
}

STDMETHODIMP CZEQUtilityCollections::Collection_Add(IDispatch** col, IDispatch** Item, VARIANT vntIndexKey,
                                                    VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] {
    if (Item == nullptr) {
      throw Error(E_POINTER);
    }
    CollectionArgument(col).add(Variant(*Item), Variant(vntIndexKey));
    return true;
  });
}

}  // namespace zeq::utility
