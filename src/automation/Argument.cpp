#include "automation/Argument.h"

#include <cstring>
#include <utility>

#include "automation/Adapter.h"

namespace zeq::automation {
namespace {

/// A type whose value is all in the VARIANT itself.
bool isPlain(VARTYPE type) noexcept {
  return type != VT_BSTR && !isObjectType(type);
}

/// What an argument stands for: a script's variable may itself hold a reference to a variable of the script's
/// caller. Null if there is no variable behind a reference.
VARIANT* behindVariable(VARIANT* given) noexcept {
  constexpr VARTYPE toVariable = VT_BYREF | VT_VARIANT;
  constexpr int mostHops = 8;  // A variable that refers to itself ends here, too.
  for (int hop = 0; (given->vt & VT_BYREF) != 0; ++hop) {
    if (given->byref == nullptr || hop == mostHops) {
      return nullptr;
    }
    if (given->vt != toVariable || (given->pvarVal->vt & VT_BYREF) == 0) {
      return given;
    }
    given = given->pvarVal;
  }
  return given;
}

}  // namespace

bool isPassable(VARTYPE type) noexcept {
  switch (type) {
    case VT_UI1:
    case VT_I2:
    case VT_I4:
    case VT_UI4:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_BSTR:
    case VT_BOOL:
    case VT_ERROR:
    case VT_VARIANT:
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return true;
    default:
      return false;
  }
}

Variant neutralValue(VARTYPE type) {
  if (type == VT_VARIANT) {
    return Variant::missing();
  }
  Variant zero;
  zero.get() = VARIANT{};  // Zero is a value of every other type.
  zero.get().vt = type;
  return zero;
}

std::size_t wordsOf(const Parameter& parameter) noexcept {
  if (parameter.byReference || sizeof(void*) == sizeof(double)) {
    return 1;
  }
  switch (parameter.type) {
    case VT_VARIANT:
      return sizeof(VARIANT) / sizeof(void*);
    case VT_R8:
    case VT_DATE:
    case VT_CY:
      return 2;
    default:
      return 1;
  }
}

bool asksAnObject(VARIANT& given) noexcept {
  const VARIANT* inner = behindVariable(&given);
  return inner != nullptr && objectIn(*inner) != nullptr;
}

HRESULT Argument::prepare(const Parameter& parameter, VARIANT* given, LCID locale) noexcept {
  parameter_ = &parameter;
  if (given == nullptr) {
    return useDefault();
  }
  given = behindVariable(given);
  if (given == nullptr) {
    return DISP_E_TYPEMISMATCH;
  }
  if (isMissing(*given) && (parameter.type != VT_VARIANT || parameter.optional)) {
    return useDefault();
  }
  if (!parameter.byReference) {
    return prepareValue(*given, locale);
  }
  return parameter.type == VT_VARIANT ? prepareVariantReference(*given) : prepareReference(*given, locale);
}

HRESULT Argument::useDefault() noexcept {
  if (!parameter_->optional) {
    return DISP_E_PARAMNOTOPTIONAL;
  }
  owned_ = true;
  address_ = parameter_->type == VT_VARIANT ? static_cast<void*>(&value_) : &value_.byref;
  return copy(value_, parameter_->defaultValue.get());
}

HRESULT Argument::prepareValue(const VARIANT& given, LCID locale) noexcept {
  // A value that the client's own argument list holds lasts as long as the call; a variable may change
  // meanwhile.
  const VARIANT& inner = dereferenced(given);
  const bool lasts = &inner == &given && (inner.vt & VT_BYREF) == 0;
  if (parameter_->type == VT_VARIANT) {
    if (lasts) {
      value_ = inner;
      return S_OK;
    }
    owned_ = true;
    return copyValue(value_, inner);
  }
  if (inner.vt == parameter_->type && (isPlain(inner.vt) || (lasts && !parameter_->typed))) {
    value_ = inner;
    return S_OK;
  }
  return convert(inner, locale);
}

HRESULT Argument::prepareReference(VARIANT& given, LCID locale) noexcept {
  if (given.vt == (VT_BYREF | parameter_->type) && !parameter_->typed) {
    address_ = given.byref;
    return S_OK;
  }
  // NOLINTNEXTLINE(clang-analyzer-core.NullDereference): a reference has an address.
  VARIANT& inner = given.vt == (VT_BYREF | VT_VARIANT) ? *given.pvarVal : given;
  if (inner.vt == parameter_->type && !parameter_->written && !parameter_->typed) {
    address_ = &inner.byref;  // Only read, so that the client's own value serves.
    return S_OK;
  }
  if (parameter_->written && (given.vt & VT_BYREF) != 0) {
    target_ = &given;
  }
  address_ = &value_.byref;
  return convert(inner, locale);
}

/// A member that takes any value by reference gets the client's variable itself, whatever its type.
HRESULT Argument::prepareVariantReference(VARIANT& given) noexcept {
  if (given.vt == (VT_BYREF | VT_VARIANT)) {
    address_ = given.pvarVal;
    return S_OK;
  }
  if (!parameter_->written) {
    address_ = &given;
    return S_OK;
  }
  address_ = &value_;
  owned_ = true;
  if ((given.vt & VT_BYREF) != 0) {
    value_ = given;  // The member may replace the reference by a value of its own.
    target_ = &given;
    return S_OK;
  }
  if ((given.vt & VT_ARRAY) != 0) {
    // What the member does to the elements happens to the client's array.
    value_.vt = static_cast<VARTYPE>(given.vt | VT_BYREF);
    value_.pparray = &given.parray;
    return S_OK;
  }
  return copy(value_, given);
}

HRESULT Argument::convert(const VARIANT& source, LCID locale) noexcept {
  owned_ = true;
  if (isObjectType(parameter_->type)) {
    return convertObject(source);
  }
  if ((source.vt & VT_ARRAY) != 0) {
    return DISP_E_TYPEMISMATCH;
  }
  const VARIANT read = (source.vt & VT_BYREF) != 0 ? readReference(source) : source;
  if (read.vt == parameter_->type) {
    return copy(value_, read);
  }
  return changeType(value_, read, parameter_->type, locale);
}

HRESULT Argument::convertObject(const VARIANT& source) noexcept {
  if (!isObjectType(referredType(source))) {
    return DISP_E_TYPEMISMATCH;
  }
  ComPtr<IUnknown> adapted;
  if (IUnknown* object = objectIn(source)) {
    adapted = adaptTo(parameter_->interfaceId, object);
    if (!adapted) {
      return DISP_E_TYPEMISMATCH;
    }
  }
  value_.vt = parameter_->type;
  value_.punkVal = adapted.detach();
  return S_OK;
}

HRESULT Argument::writeToTarget(LCID locale) noexcept {
  if (value_.vt == target_->vt) {
    return S_OK;  // A VARIANT argument that still refers to the client's own variable.
  }
  if (parameter_->typed && value_.punkVal != nullptr) {
    dropAdapter(value_.punkVal);
  }
  if (target_->vt == (VT_BYREF | VT_VARIANT)) {
    std::swap(*target_->pvarVal, value_);  // The old value is cleared with this argument.
    return S_OK;
  }
  const VARTYPE wanted = referredType(*target_);
  if (value_.vt != wanted) {
    const HRESULT result = changeType(value_, value_, wanted, locale);
    if (FAILED(result)) {
      return result;
    }
  }
  exchange(*target_, value_);
  return S_OK;
}

void Argument::push(SlotArguments& arguments) const noexcept {
  if (parameter_->byReference) {
    arguments.pushPointer(address_);
    return;
  }
  switch (parameter_->type) {
    case VT_VARIANT:
      arguments.pushVariant(value_);
      break;
    case VT_R4:
      arguments.pushFloat(value_.fltVal);
      break;
    case VT_R8:
    case VT_DATE:
      arguments.pushDouble(value_.dblVal);
      break;
    case VT_CY:
      arguments.pushCurrency(value_.cyVal);
      break;
    case VT_I2:
    case VT_BOOL:
      arguments.pushInteger(static_cast<std::uint32_t>(value_.iVal));
      break;
    case VT_UI1:
      arguments.pushInteger(value_.bVal);
      break;
    case VT_BSTR:
    case VT_DISPATCH:
    case VT_UNKNOWN:
      arguments.pushPointer(value_.byref);
      break;
    default:
      arguments.pushInteger(value_.ulVal);
      break;
  }
}

}  // namespace zeq::automation
