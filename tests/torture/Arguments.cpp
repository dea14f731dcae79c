#include "torture/Arguments.h"

#include <limits>
#include <string>

#include "torture/Record.h"

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

Variant decimal(Random& random) {
  Variant result;
  DECIMAL& value = result.get().decVal;
  value.Hi32 = oddNumber<unsigned>(random);
  value.Lo64 = random.bits();
  value.scale = static_cast<BYTE>(random.below(29));
  value.sign = random.chance(50) ? DECIMAL_NEG : 0;
  result.get().vt = VT_DECIMAL;
  return result;
}

Variant randomNumber(Random& random) {
  switch (random.below(17)) {
    case 0:
      return raw(VT_I1, oddNumber<signed char>(random));
    case 1:
      return raw(VT_UI1, oddNumber<unsigned char>(random));
    case 2:
      return raw(VT_UI2, oddNumber<unsigned short>(random));
    case 3:
      return raw(VT_UI4, oddNumber<unsigned>(random));
    case 4:
      return raw(VT_I8, oddNumber<LONGLONG>(random));
    case 5:
      return raw(VT_UI8, oddNumber<LONGLONG>(random));
    case 6:
      return raw(random.chance(50) ? VT_INT : VT_UINT, oddNumber<int>(random));
    case 7: {
      Variant result = raw(VT_R4, 0);
      result.get().fltVal = oddNumber<float>(random);
      return result;
    }
    case 8:
      return raw(VT_CY, oddNumber<LONGLONG>(random));
    case 9: {
      Variant result(oddNumber<double>(random));
      result.get().vt = VT_DATE;
      return result;
    }
    case 10:
      return decimal(random);
    case 11:
      return Variant(oddNumber<double>(random));
    case 12:
      return Variant(random.chance(50) ? std::numeric_limits<double>::quiet_NaN()
                                       : std::numeric_limits<double>::infinity());
    case 13:
      return Variant(oddNumber<short>(random));
    default:
      return Variant(oddNumber<long>(random));
  }
}

/// No value that automation knows, or one without what it should hold.
Variant oddValue(Random& random) {
  static const std::vector<VARTYPE> types{VT_VOID,
                                          VT_RECORD,
                                          VT_PTR,
                                          VT_LPSTR,
                                          VT_CLSID,
                                          VT_HRESULT,
                                          VT_BSTR,
                                          VT_UNKNOWN,
                                          VT_DISPATCH,
                                          VT_ARRAY | VT_I2,
                                          VT_ARRAY | VT_VARIANT,
                                          0x0FFF};
  return raw(random.pick(types), 0);
}

/// Where the value of a variable stands, for a reference to it.
void* placeOf(VARIANT& variable) {
  switch (variable.vt) {
    case VT_DECIMAL:
      return &variable;
    case VT_RECORD:
      return V_RECORD(&variable);
    default:
      return &variable.byref;
  }
}

}  // namespace

Variant randomValue(Random& random) {
  switch (random.below(11)) {
    case 0:
      return Variant();
    case 1:
      return Variant::null();
    case 2:
      return Variant::missing();
    case 3:
      return Variant(random.chance(50));
    case 4:
    case 5:
    case 6:
      return Variant(std::wstring_view(randomText(random)));
    case 7:
      if (random.chance(15)) {
        return Record::make();
      }
      return random.chance(50) ? raw(VT_ERROR, E_FAIL) : oddValue(random);
    default:
      return randomNumber(random);
  }
}

void Arguments::add() {
  if (random_.chance(40)) {
    list_.push_back(reference());
    return;
  }
  variables_.push_back(value());
  list_.push_back(variables_.back().get());
}

Variant Arguments::value() {
  switch (random_.below(14)) {
    case 0:
    case 1: {
      Variant result(objects_().get());
      if (random_.chance(20)) {
        result.get().vt = VT_UNKNOWN;
      }
      return result;
    }
    case 2:
      return array();
    default:
      return randomValue(random_);
  }
}

Variant Arguments::element(VARTYPE type) {
  if (type == VT_VARIANT) {
    return random_.chance(10) ? Variant(objects_().get()) : randomValue(random_);
  }
  return Variant(std::wstring_view(randomText(random_)));
}

Variant Arguments::array() {
  static const std::vector<VARTYPE> types{VT_VARIANT, VT_BSTR, VT_R8, VT_I4,       VT_I2,    VT_UI1,
                                          VT_BOOL,    VT_DATE, VT_CY, VT_DISPATCH, VT_RECORD};
  const VARTYPE type = random_.pick(types);
  SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(random_.below(6)), static_cast<LONG>(random_.below(3)) - 1},
                              {2, 0}};
  const UINT dimensions = random_.chance(90) ? 1 : 2;
  SAFEARRAY* array =
      type == VT_RECORD ? Record::makeArray(dimensions, bounds) : SafeArrayCreate(type, dimensions, bounds);
  Variant result;
  if (array == nullptr) {
    return result;
  }
  result.get().parray = array;
  result.get().vt = static_cast<VARTYPE>(VT_ARRAY | type);
  if (SafeArrayGetDim(array) != 1 || (type != VT_VARIANT && type != VT_BSTR)) {
    return result;
  }
  for (ULONG i = 0; i < bounds[0].cElements; ++i) {
    LONG index = bounds[0].lLbound + static_cast<LONG>(i);
    Variant content = element(type);
    SafeArrayPutElement(array, &index, type == VT_VARIANT ? &content.get() : content.get().byref);
  }
  return result;
}

VARIANT Arguments::reference() {
  VARIANT argument;
  VariantInit(&argument);
  VARIANT& variable = variables_.emplace_back(value()).get();
  const bool isNull = random_.chance(3);
  const bool hasNoReference = variable.vt == VT_EMPTY || variable.vt == VT_NULL;
  if (hasNoReference || random_.chance(60)) {
    argument.vt = VT_BYREF | VT_VARIANT;
    argument.pvarVal = isNull ? nullptr : &variable;
    if (!isNull && random_.chance(10)) {  // A variable that is itself a reference, as a script passes on.
      VARIANT& outer = variables_.emplace_back().get();
      outer = argument;
      argument.pvarVal = &outer;
    }
    return argument;
  }
  argument = variable;  // For the type of a record, which stands beside the reference.
  argument.vt = static_cast<VARTYPE>(VT_BYREF | variable.vt);
  argument.byref = isNull ? nullptr : placeOf(variable);
  return argument;
}

}  // namespace zeq::torture
