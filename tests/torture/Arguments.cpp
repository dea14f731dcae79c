#include "torture/Arguments.h"

#include <limits>
#include <string>

namespace zeq::torture {

using automation::Variant;

namespace {

template <class Number>
Number oddNumber(Random& random) {
  static const std::vector<Number> odd{0,
                                       1,
                                       2,
                                       3,
                                       5,
                                       10,
                                       100,
                                       static_cast<Number>(-1),
                                       std::numeric_limits<Number>::max(),
                                       std::numeric_limits<Number>::lowest()};
  return random.chance(80) ? random.pick(odd) : static_cast<Number>(random.bits() % 70000);
}

Variant raw(VARTYPE type, LONGLONG bits) {
  Variant result;
  result.get().llVal = bits;
  result.get().vt = type;
  return result;
}

}  // namespace

void Arguments::add() {
  if (random_.chance(40)) {
    list_.push_back(reference());
    return;
  }
  variables_.push_back(value());
  list_.push_back(variables_.back().get());
}

Variant Arguments::number() {
  switch (random_.below(12)) {
    case 0:
      return raw(VT_I1, static_cast<LONGLONG>(random_.below(256)));
    case 1:
      return raw(VT_UI1, static_cast<LONGLONG>(random_.below(256)));
    case 2:
      return raw(VT_UI4, static_cast<LONGLONG>(oddNumber<std::uint32_t>(random_)));
    case 3:
      return raw(VT_I8, oddNumber<LONGLONG>(random_));
    case 4: {
      Variant result = raw(VT_R4, 0);
      result.get().fltVal = oddNumber<float>(random_);
      return result;
    }
    case 5:
      return raw(VT_CY, oddNumber<LONGLONG>(random_));
    case 6: {
      Variant result(static_cast<double>(random_.below(80000)));
      result.get().vt = VT_DATE;
      return result;
    }
    case 7:
      return Variant(oddNumber<double>(random_));
    case 8:
      return Variant(std::numeric_limits<double>::quiet_NaN());
    case 9:
      return Variant(oddNumber<short>(random_));
    default:
      return Variant(oddNumber<long>(random_));
  }
}

Variant Arguments::value() {
  switch (random_.below(14)) {
    case 0:
      return Variant();
    case 1:
      return Variant::null();
    case 2:
      return Variant::missing();
    case 3:
      return Variant(random_.chance(50));
    case 4:
    case 5:
    case 6:
      return Variant(std::wstring_view(randomText(random_)));
    case 7:
    case 8:
      return Variant(objects_());
    case 9:
      return array();
    case 10: {
      Variant result;
      result.get().scode = E_FAIL;
      result.get().vt = VT_ERROR;
      return result;
    }
    default:
      return number();
  }
}

Variant Arguments::array() {
  static const std::vector<VARTYPE> types{VT_VARIANT, VT_BSTR, VT_R8, VT_I4, VT_I2};
  const VARTYPE type = random_.pick(types);
  SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(random_.below(6)), static_cast<LONG>(random_.below(3)) - 1},
                              {2, 0}};
  SAFEARRAY* array = SafeArrayCreate(type, random_.chance(90) ? 1 : 2, bounds);
  Variant result;
  if (array == nullptr) {
    return result;
  }
  result.get().parray = array;
  result.get().vt = static_cast<VARTYPE>(VT_ARRAY | type);
  if (SafeArrayGetDim(array) == 1 && type == VT_VARIANT) {
    for (ULONG i = 0; i < bounds[0].cElements; ++i) {
      LONG index = bounds[0].lLbound + static_cast<LONG>(i);
      Variant element = random_.chance(50) ? number() : Variant(std::wstring_view(randomText(random_)));
      SafeArrayPutElement(array, &index, &element.get());
    }
  }
  return result;
}

VARIANT Arguments::reference() {
  VARIANT argument;
  VariantInit(&argument);
  Variant& variable = variables_.emplace_back(value());
  const bool isNull = random_.chance(3);
  if (random_.chance(60) || variable.type() == VT_EMPTY || variable.type() == VT_NULL) {
    argument.vt = VT_BYREF | VT_VARIANT;
    argument.pvarVal = isNull ? nullptr : &variable.get();
    return argument;
  }
  argument.vt = static_cast<VARTYPE>(VT_BYREF | variable.type());
  argument.byref =
      isNull ? nullptr : &variable.get().byref;  // Every member of the union starts at the same place.
  return argument;
}

}  // namespace zeq::torture
