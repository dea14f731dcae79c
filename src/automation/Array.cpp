#include "automation/Array.h"

namespace zeq::automation {
namespace {

/// A variant with a new array of one dimension, whose elements are zeros for now.
Variant newArray(VARTYPE type, std::size_t size) {
  Variant result;
  result.get().parray = SafeArrayCreateVector(type, 0, static_cast<ULONG>(size));
  if (result.get().parray == nullptr) {
    throw std::bad_alloc();
  }
  result.get().vt = static_cast<VARTYPE>(VT_ARRAY | type);
  return result;
}

/// The elements of a new array, which nobody else can lock.
template <class Element>
Element* elementsIn(const Variant& array) noexcept {
  return static_cast<Element*>(array.get().parray->pvData);
}

Variant elementAt(SAFEARRAY* array, VARTYPE type, LONG index) {
  Variant result;
  VARIANT& value = result.get();
  if (type == VT_VARIANT) {
    check(SafeArrayGetElement(array, &index, &value));
    return Variant(value);  // What the element refers to is read.
  }
  // A decimal fills the whole variant, all others its value; the type is set over it.
  void* place = type == VT_DECIMAL ? static_cast<void*>(&value.decVal) : static_cast<void*>(&value.llVal);
  check(SafeArrayGetElement(array, &index, place));
  value.vt = type;
  return result;
}

}  // namespace

Variant textArray(const std::vector<std::wstring_view>& texts) {
  Variant result = newArray(VT_BSTR, texts.size());
  auto* element = elementsIn<BSTR>(result);
  for (const std::wstring_view each : texts) {
    *element++ = newBstr(each);
  }
  return result;
}

Variant variantArray(std::vector<Variant> items) {
  Variant result = newArray(VT_VARIANT, items.size());
  auto* element = elementsIn<VARIANT>(result);
  for (Variant& each : items) {
    *element++ = each.detach();
  }
  return result;
}

std::optional<SAFEARRAY*> arrayIn(const VARIANT& value) noexcept {
  const VARIANT& inner = dereferenced(value);
  if ((inner.vt & VT_ARRAY) == 0) {
    return std::nullopt;
  }
  if ((inner.vt & VT_BYREF) == 0) {
    return inner.parray;
  }
  return inner.pparray != nullptr ? *inner.pparray : nullptr;
}

std::vector<Variant> elementsOf(SAFEARRAY* array) {
  if (array == nullptr || SafeArrayGetDim(array) != 1) {
    throw Error(ErrorNumber::subscriptOutOfRange);
  }
  VARTYPE type = VT_EMPTY;
  LONG lower = 0;
  LONG upper = 0;
  check(SafeArrayGetVartype(array, &type));
  if (type == VT_RECORD) {
    throw Error(ErrorNumber::typeMismatch);  // A record of any size has no place in a variant.
  }
  check(SafeArrayGetLBound(array, 1, &lower));
  check(SafeArrayGetUBound(array, 1, &upper));
  std::vector<Variant> elements;
  for (long long index = lower; index <= upper; ++index) {
    elements.push_back(elementAt(array, type, static_cast<LONG>(index)));
  }
  return elements;
}

}  // namespace zeq::automation
