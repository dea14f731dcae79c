#include "automation/Dispatch.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "automation/Errors.h"
#include "automation/SlotCall.h"
#include "automation/Text.h"

namespace zeq::automation {
namespace {

constexpr std::uint32_t noFunction = UINT32_MAX;

constexpr wchar_t foldAscii(wchar_t character) noexcept {
  return character >= L'A' && character <= L'Z' ? static_cast<wchar_t>(character + (L'a' - L'A')) : character;
}

/// Names of members are plain ASCII, so that folding ASCII is all that comparing without regard to case takes.
std::uint32_t hashOf(std::wstring_view name) noexcept {
  std::uint32_t hash = 2166136261U;  // FNV-1a
  for (const wchar_t character : name) {
    hash = (hash ^ foldAscii(character)) * 16777619U;
  }
  return hash;
}

bool sameName(std::wstring_view one, std::wstring_view other) noexcept {
  return one.size() == other.size() && std::equal(one.begin(), one.end(), other.begin(), [](wchar_t a, wchar_t b) {
           return foldAscii(a) == foldAscii(b);
         });
}

/// What a type description says once aliases, enumerations and pointers are looked through.
struct ResolvedType {
  VARTYPE type = VT_EMPTY;
  int pointers = 0;
  bool typed = false;
  IID interfaceId{};
};

ResolvedType resolve(ITypeInfo& info, const TYPEDESC& description);

ResolvedType resolveNamed(ITypeInfo& info, HREFTYPE reference) {
  ComPtr<ITypeInfo> named;
  check(info.GetRefTypeInfo(reference, named.out()));
  TYPEATTR* attributes = nullptr;
  check(named->GetTypeAttr(&attributes));
  ResolvedType result;
  switch (attributes->typekind) {
    case TKIND_ALIAS:
      result = resolve(*named, attributes->tdescAlias);
      break;
    case TKIND_ENUM:
      result.type = VT_I4;
      break;
    case TKIND_INTERFACE:
    case TKIND_DISPATCH:
    case TKIND_COCLASS:
      result.type = IsEqualIID(attributes->guid, IID_IUnknown) ? VT_UNKNOWN : VT_DISPATCH;
      result.typed = result.type == VT_DISPATCH && !IsEqualIID(attributes->guid, IID_IDispatch);
      result.interfaceId = attributes->guid;
      result.pointers = -1;  // An object is always handled by a pointer, which is not counted.
      break;
    default:
      break;
  }
  named->ReleaseTypeAttr(attributes);
  return result;
}

ResolvedType resolve(ITypeInfo& info, const TYPEDESC& description) {
  switch (description.vt) {
    case VT_PTR: {
      ResolvedType result = resolve(info, *description.lptdesc);
      ++result.pointers;
      return result;
    }
    case VT_USERDEFINED:
      return resolveNamed(info, description.hreftype);
    case VT_INT:
    case VT_HRESULT:
      return {.type = VT_I4};
    case VT_UINT:
      return {.type = VT_UI4};
    default:
      return {.type = description.vt};
  }
}

Variant zeroOf(VARTYPE type) {
  Variant zero;
  if (type == VT_VARIANT) {
    return Variant::missing();
  }
  zero.get().vt = type;  // An empty VARIANT is all zeros, and zero is a value of every type here.
  zero.get().llVal = 0;
  return zero;
}

/// Copies what a reference of a type points at into a VARIANT of that type, without a reference of its own.
VARIANT readReference(const VARIANT& reference) noexcept {
  VARIANT value;
  VariantInit(&value);
  value.vt = static_cast<VARTYPE>(reference.vt & ~VT_BYREF);
  switch (value.vt) {
    case VT_I1:
    case VT_UI1:
      value.bVal = *reference.pbVal;
      break;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      value.iVal = *reference.piVal;
      break;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_DATE:
    case VT_CY:
      value.llVal = *reference.pllVal;
      break;
    case VT_BSTR:
    case VT_DISPATCH:
    case VT_UNKNOWN:
      value.byref = *static_cast<void**>(reference.byref);
      break;
    case VT_DECIMAL:
      value.decVal = *reference.pdecVal;
      value.vt = VT_DECIMAL;
      break;
    default:
      value.lVal = *reference.plVal;
      break;
  }
  return value;
}

/// Replaces what a reference of a scalar type points at by a value of that type, which it takes over.
void writeReference(const VARIANT& reference, const VARIANT& value) noexcept {
  switch (value.vt) {
    case VT_I1:
    case VT_UI1:
      *reference.pbVal = value.bVal;
      break;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      *reference.piVal = value.iVal;
      break;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_DATE:
    case VT_CY:
      *reference.pllVal = value.llVal;
      break;
    case VT_BSTR:
      SysFreeString(std::exchange(*reference.pbstrVal, value.bstrVal));
      break;
    case VT_DISPATCH:
    case VT_UNKNOWN:
      if (IUnknown* old = std::exchange(*reference.ppunkVal, value.punkVal)) {
        old->Release();
      }
      break;
    case VT_DECIMAL:
      *reference.pdecVal = value.decVal;
      break;
    default:
      *reference.plVal = value.lVal;
      break;
  }
}

bool isObjectType(VARTYPE type) noexcept { return type == VT_DISPATCH || type == VT_UNKNOWN; }

/// A type whose value is all in the VARIANT itself.
bool isPlain(VARTYPE type) noexcept { return type != VT_BSTR && !isObjectType(type); }

/// A by-reference argument without a variable behind it.
bool refersToNothing(const VARIANT& given) noexcept {
  if ((given.vt & VT_BYREF) == 0) {
    return false;
  }
  if (given.byref == nullptr) {
    return true;
  }
  const VARIANT& inner = dereferenced(given);
  return (inner.vt & VT_BYREF) != 0 && inner.byref == nullptr;
}

/// How many machine words a parameter takes in the argument list.
std::size_t wordsOf(const DispatchTable::Parameter& parameter) noexcept {
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

/// One argument of one call.
class Argument {
 public:
  Argument() noexcept { VariantInit(&value_); }
  Argument(const Argument&) = delete;
  Argument& operator=(const Argument&) = delete;
  ~Argument() {
    if (owned_) {
      VariantClear(&value_);
    }
  }

  using Parameter = DispatchTable::Parameter;

  /// Makes the argument ready to be passed. `given` is null if the client left it out.
  HRESULT prepare(const Parameter& parameter, VARIANT* given, LCID locale) noexcept {
    parameter_ = &parameter;
    if (given != nullptr && refersToNothing(*given)) {
      return DISP_E_TYPEMISMATCH;
    }
    if (given == nullptr || (parameter.type != VT_VARIANT && isMissing(*given))) {
      return useDefault();
    }
    if (!parameter.byReference) {
      return prepareValue(*given, locale);
    }
    return parameter.type == VT_VARIANT ? prepareVariantReference(*given) : prepareReference(*given, locale);
  }

  void push(SlotArguments& arguments) const noexcept {
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

  /// Hands what the member wrote back to the client's variable, if that is not what the member wrote to.
  HRESULT writeBack(LCID locale) noexcept {
    if (target_ == nullptr) {
      return S_OK;
    }
    VARIANT& target = *target_;
    if (target.vt == (VT_BYREF | VT_VARIANT)) {
      VariantClear(target.pvarVal);
      *target.pvarVal = value_;
      owned_ = false;
      return S_OK;
    }
    if (value_.vt == target.vt) {
      return S_OK;  // A VARIANT argument that still refers to the client's own variable.
    }
    VARIANT converted;
    VariantInit(&converted);
    const HRESULT result = changeType(converted, value_, static_cast<VARTYPE>(target.vt & ~VT_BYREF), locale);
    if (SUCCEEDED(result)) {
      writeReference(target, converted);
    }
    return result;
  }

 private:
  HRESULT useDefault() noexcept {
    if (!parameter_->optional) {
      return DISP_E_PARAMNOTOPTIONAL;
    }
    owned_ = true;
    address_ = parameter_->type == VT_VARIANT ? static_cast<void*>(&value_) : &value_.byref;
    return copy(value_, parameter_->defaultValue.get());
  }

  HRESULT prepareValue(const VARIANT& given, LCID locale) noexcept {
    const VARIANT& inner = dereferenced(given);
    if (parameter_->type == VT_VARIANT) {
      return prepareVariantValue(given, inner);
    }
    // A value that the client's own argument list holds lasts as long as the call; a variable may change meanwhile.
    if (inner.vt == parameter_->type && (isPlain(inner.vt) || (&inner == &given && !parameter_->typed))) {
      value_ = inner;
      return S_OK;
    }
    return convert(inner, locale);
  }

  HRESULT prepareVariantValue(const VARIANT& given, const VARIANT& inner) noexcept {
    if (&inner == &given && (inner.vt & VT_BYREF) == 0) {
      value_ = inner;
      return S_OK;
    }
    owned_ = true;
    return copyValue(value_, given);
  }

  HRESULT prepareReference(VARIANT& given, LCID locale) noexcept {
    if (given.vt == (VT_BYREF | parameter_->type) && !parameter_->typed) {
      address_ = given.byref;
      return given.byref != nullptr ? S_OK : DISP_E_TYPEMISMATCH;
    }
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
  HRESULT prepareVariantReference(VARIANT& given) noexcept {
    if (given.vt == (VT_BYREF | VT_VARIANT)) {
      address_ = given.pvarVal;
      return S_OK;
    }
    address_ = &value_;
    if ((given.vt & VT_BYREF) != 0) {
      value_ = given;
      owned_ = true;  // The member may replace the reference by a value of its own.
      target_ = parameter_->written ? &given : nullptr;
      return S_OK;
    }
    owned_ = true;
    return copy(value_, given);
  }

  HRESULT convert(const VARIANT& source, LCID locale) noexcept {
    owned_ = true;
    if (isObjectType(parameter_->type)) {
      return convertObject(source);
    }
    const VARIANT read = (source.vt & VT_BYREF) != 0 && (source.vt & VT_ARRAY) == 0 ? readReference(source) : source;
    if (read.vt == parameter_->type) {
      return copy(value_, read);
    }
    return changeType(value_, read, parameter_->type, locale);
  }

  HRESULT convertObject(const VARIANT& source) noexcept {
    const VARTYPE type = source.vt & static_cast<VARTYPE>(~VT_BYREF);
    if (!isObjectType(type)) {
      return DISP_E_TYPEMISMATCH;
    }
    IUnknown* object = objectIn(source);
    if (object == nullptr) {
      value_.vt = parameter_->type;
      value_.punkVal = nullptr;
      return S_OK;
    }
    const IID& wanted = parameter_->typed                   ? parameter_->interfaceId
                        : parameter_->type == VT_DISPATCH ? IID_IDispatch
                                                          : IID_IUnknown;
    ComPtr<IUnknown> adapted = adaptTo(wanted, object);
    if (!adapted) {
      return DISP_E_TYPEMISMATCH;
    }
    value_.vt = parameter_->type;
    value_.punkVal = adapted.detach();
    return S_OK;
  }

  const Parameter* parameter_ = nullptr;
  VARIANT value_;
  void* address_ = nullptr;     ///< By reference: what the member gets.
  VARIANT* target_ = nullptr;   ///< The client's argument that gets the value back after the call.
  bool owned_ = false;          ///< Whether value_ is to be cleared.
};

constexpr std::size_t maxParameters = 16;

/// Finds for each parameter what the client passed. `given` has one entry a parameter, null where nothing was passed.
HRESULT assignArguments(const DispatchTable::Function& function, const DISPPARAMS& passed, bool isPut,
                        std::array<VARIANT*, maxParameters>& given, UINT* argumentError) noexcept {
  const std::size_t count = function.parameters.size();
  if (passed.cNamedArgs > passed.cArgs || passed.cArgs > count) {
    return DISP_E_BADPARAMCOUNT;
  }
  // Named arguments come first in the list, then the positional ones from the last to the first.
  const UINT positional = passed.cArgs - passed.cNamedArgs;
  for (UINT i = 0; i < positional; ++i) {
    given[i] = &passed.rgvarg[passed.cArgs - 1 - i];
  }
  for (UINT i = 0; i < passed.cNamedArgs; ++i) {
    const DISPID name = passed.rgdispidNamedArgs[i];
    std::size_t index = 0;
    if (name == DISPID_PROPERTYPUT && isPut) {
      index = count - 1;  // The new value is the last parameter.
    } else if (name >= 0 && static_cast<std::size_t>(name) < count) {
      index = static_cast<std::size_t>(name);
    } else {
      if (argumentError != nullptr) {
        *argumentError = i;
      }
      return DISP_E_PARAMNOTFOUND;
    }
    if (given[index] != nullptr) {
      return DISP_E_BADPARAMCOUNT;
    }
    given[index] = &passed.rgvarg[i];
  }
  return S_OK;
}

/// Fills an EXCEPINFO from the thread's error object, as far as the member left one.
void fillException(HRESULT code, EXCEPINFO* exception) noexcept {
  ComPtr<IErrorInfo> info;
  GetErrorInfo(0, info.out());
  if (exception == nullptr) {
    return;
  }
  *exception = EXCEPINFO{};
  exception->scode = code;
  if (info) {
    info->GetSource(&exception->bstrSource);
    info->GetDescription(&exception->bstrDescription);
    info->GetHelpFile(&exception->bstrHelpFile);
    info->GetHelpContext(&exception->dwHelpContext);
  }
}

/// `object.Property(arguments)` where the property itself takes none: the arguments go to the default member of the
/// object that the property returns.
HRESULT invokeDefaultOf(VARIANT& holder, LCID locale, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                        EXCEPINFO* exception, UINT* argumentError) noexcept {
  IUnknown* object = objectIn(holder);
  if (object == nullptr) {
    return DISP_E_BADPARAMCOUNT;
  }
  const auto dispatch = ComPtr<IUnknown>(object).query<IDispatch>(IID_IDispatch);
  if (!dispatch) {
    return DISP_E_BADPARAMCOUNT;
  }
  return dispatch->Invoke(DISPID_VALUE, IID_NULL, locale, flags, arguments, result, exception, argumentError);
}

struct Adapter {
  IID interfaceId;
  AdapterFactory factory;
};

std::vector<Adapter>& adapters() {
  static std::vector<Adapter> all;
  return all;
}

}  // namespace

DispatchTable::DispatchTable(const ComPtr<ITypeInfo>& dual) {
  // The vtable side of a dual interface shows the slots and the results as they are.
  ComPtr<ITypeInfo> info = dual;
  HREFTYPE vtableSide = 0;
  if (SUCCEEDED(dual->GetRefTypeOfImplType(static_cast<UINT>(-1), &vtableSide))) {
    check(dual->GetRefTypeInfo(vtableSide, info.out()));
  }
  TYPEATTR* attributes = nullptr;
  check(info->GetTypeAttr(&attributes));
  const UINT count = attributes->cFuncs;
  info->ReleaseTypeAttr(attributes);
  functions_.reserve(count);
  for (UINT i = 0; i < count; ++i) {
    FUNCDESC* description = nullptr;
    check(info->GetFuncDesc(i, &description));
    const struct Releaser {
      ITypeInfo* info;
      FUNCDESC* description;
      ~Releaser() { info->ReleaseFuncDesc(description); }
    } releaser{info.get(), description};
    addFunction(*info, *description);
  }
  index();
}

void DispatchTable::addFunction(ITypeInfo& info, const FUNCDESC& description) {
  Function function;
  function.id = description.memid;
  function.kind = static_cast<WORD>(description.invkind);
  function.slot = static_cast<std::size_t>(description.oVft) / sizeof(void*);
  for (SHORT i = 0; i < description.cParams; ++i) {
    const ELEMDESC& element = description.lprgelemdescParam[i];
    const USHORT flags = element.paramdesc.wParamFlags;
    const ResolvedType type = resolve(info, element.tdesc);
    if ((flags & PARAMFLAG_FRETVAL) != 0) {
      function.hasResult = true;
      function.resultType = type.type;
      continue;
    }
    Parameter parameter;
    parameter.type = type.type;
    parameter.byReference = type.pointers > 0;
    parameter.written = parameter.byReference && (flags & PARAMFLAG_FOUT) != 0;
    parameter.optional = (flags & PARAMFLAG_FOPT) != 0;
    parameter.typed = type.typed;
    parameter.interfaceId = type.interfaceId;
    if (parameter.optional) {
      parameter.defaultValue = zeroOf(parameter.type);
      if ((flags & PARAMFLAG_FHASDEFAULT) != 0 && parameter.type != VT_VARIANT) {
        check(changeType(parameter.defaultValue.get(), element.paramdesc.pparamdescex->varDefaultValue,
                         parameter.type, LOCALE_INVARIANT));
      } else if ((flags & PARAMFLAG_FHASDEFAULT) != 0) {
        parameter.defaultValue = Variant(element.paramdesc.pparamdescex->varDefaultValue);
      }
    }
    function.parameters.push_back(std::move(parameter));
  }
  std::size_t words = function.hasResult ? 1 : 0;
  for (const Parameter& parameter : function.parameters) {
    words += wordsOf(parameter);
  }
  if (function.parameters.size() > maxParameters || words > SlotArguments::capacity) {
    throw Error(ErrorNumber::internalError);
  }

  std::vector<BSTR> raw(static_cast<std::size_t>(description.cParams) + 1);
  UINT count = 0;
  check(info.GetNames(description.memid, raw.data(), static_cast<UINT>(raw.size()), &count));
  std::vector<std::wstring> names;
  for (UINT i = 0; i < count; ++i) {
    Bstr name;
    *name.out() = raw[i];
    names.emplace_back(name.view());
  }
  addName(description.memid, std::move(names));
  functions_.push_back(std::move(function));
}

void DispatchTable::addName(DISPID id, std::vector<std::wstring> names) {
  if (names.empty()) {
    return;
  }
  const auto known = std::find_if(names_.begin(), names_.end(), [&](const Name& each) { return each.id == id; });
  Name& name = known != names_.end() ? *known : names_.emplace_back();
  name.id = id;
  name.text = names.front();
  name.hash = hashOf(name.text);
  names.erase(names.begin());
  if (names.size() > name.arguments.size()) {
    name.arguments = std::move(names);  // A property's put names one argument more than its get.
  }
}

void DispatchTable::index() {
  std::stable_sort(functions_.begin(), functions_.end(),
                   [](const Function& one, const Function& other) { return one.id < other.id; });
  for (std::size_t i = functions_.size(); i-- > 0;) {
    const DISPID id = functions_[i].id;
    if (id >= 0) {
      if (firstOfId_.size() <= static_cast<std::size_t>(id)) {
        firstOfId_.resize(static_cast<std::size_t>(id) + 1, noFunction);
      }
      firstOfId_[static_cast<std::size_t>(id)] = static_cast<std::uint32_t>(i);
    }
  }
  std::size_t size = 4;
  while (size < 2 * names_.size()) {
    size *= 2;
  }
  buckets_.assign(size, 0);
  for (std::size_t i = 0; i < names_.size(); ++i) {
    std::size_t place = names_[i].hash & (size - 1);
    while (buckets_[place] != 0) {
      place = (place + 1) & (size - 1);
    }
    buckets_[place] = static_cast<std::uint32_t>(i + 1);
  }
}

const DispatchTable::Name* DispatchTable::findName(std::wstring_view name) const noexcept {
  const std::uint32_t hash = hashOf(name);
  const std::size_t mask = buckets_.size() - 1;
  for (std::size_t place = hash & mask; buckets_[place] != 0; place = (place + 1) & mask) {
    const Name& candidate = names_[buckets_[place] - 1];
    if (candidate.hash == hash && sameName(candidate.text, name)) {
      return &candidate;
    }
  }
  return nullptr;
}

HRESULT DispatchTable::getIDsOfNames(wchar_t** names, UINT count, DISPID* ids) const noexcept {
  if (names == nullptr || ids == nullptr || count == 0) {
    return E_INVALIDARG;
  }
  const Name* member = names[0] != nullptr ? findName(names[0]) : nullptr;
  ids[0] = member != nullptr ? member->id : DISPID_UNKNOWN;
  HRESULT result = member != nullptr ? S_OK : DISP_E_UNKNOWNNAME;
  for (UINT i = 1; i < count; ++i) {
    ids[i] = DISPID_UNKNOWN;
    if (member != nullptr && names[i] != nullptr) {
      const auto found = std::find_if(member->arguments.begin(), member->arguments.end(),
                                      [&](const std::wstring& each) { return sameName(each, names[i]); });
      if (found != member->arguments.end()) {
        ids[i] = static_cast<DISPID>(found - member->arguments.begin());
        continue;
      }
    }
    result = DISP_E_UNKNOWNNAME;
  }
  return result;
}

const DispatchTable::Function* DispatchTable::findFunction(DISPID id, WORD flags, bool objectAssigned,
                                                           bool& known) const noexcept {
  std::size_t first = functions_.size();
  if (id >= 0) {
    if (static_cast<std::size_t>(id) < firstOfId_.size() && firstOfId_[static_cast<std::size_t>(id)] != noFunction) {
      first = firstOfId_[static_cast<std::size_t>(id)];
    }
  } else {
    const auto at = std::lower_bound(functions_.begin(), functions_.end(), id,
                                     [](const Function& function, DISPID wanted) { return function.id < wanted; });
    first = static_cast<std::size_t>(at - functions_.begin());
  }
  const auto isPut = [](WORD kinds) { return (kinds & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0; };
  const Function* other = nullptr;
  for (std::size_t i = first; i < functions_.size() && functions_[i].id == id; ++i) {
    known = true;
    const Function& function = functions_[i];
    if ((function.kind & flags) != 0) {
      // Some clients ask for both kinds of put at once: an object is put by reference where that is possible.
      const bool second = isPut(flags) && (flags & ~function.kind) != 0 &&
                          (function.kind == DISPATCH_PROPERTYPUTREF) != objectAssigned;
      if (!second) {
        return &function;
      }
      other = &function;
    } else if (isPut(flags) && isPut(function.kind) && objectAssigned && other == nullptr) {
      other = &function;  // A property has one kind of put: an object may be assigned with either.
    }
  }
  return other;
}

HRESULT DispatchTable::invoke(void* object, DISPID id, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* arguments,
                              VARIANT* result, EXCEPINFO* exception, UINT* argumentError) const noexcept {
  if (!IsEqualIID(reserved, IID_NULL)) {
    return DISP_E_UNKNOWNINTERFACE;
  }
  if (arguments == nullptr || (arguments->cArgs != 0 && arguments->rgvarg == nullptr) ||
      (arguments->cNamedArgs != 0 && arguments->rgdispidNamedArgs == nullptr)) {
    return E_INVALIDARG;
  }
  if (id == DISPID_NEWENUM && flags == DISPATCH_METHOD) {
    flags = DISPATCH_METHOD | DISPATCH_PROPERTYGET;  // Script engines do not agree on what an enumerator is.
  }
  const bool isPut = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  const bool objectAssigned = isPut && arguments->cArgs > 0 && objectIn(arguments->rgvarg[0]) != nullptr;
  bool known = false;
  const Function* function = findFunction(id, flags, objectAssigned, known);
  if (function == nullptr) {
    return DISP_E_MEMBERNOTFOUND;
  }

  DISPPARAMS none{};
  const bool forDefaultMember = !isPut && arguments->cArgs > 0 && function->parameters.empty() &&
                                function->kind == DISPATCH_PROPERTYGET && isObjectType(function->resultType);
  const DISPPARAMS& passed = forDefaultMember ? none : *arguments;

  std::array<VARIANT*, maxParameters> given{};
  HRESULT outcome = assignArguments(*function, passed, isPut, given, argumentError);
  if (FAILED(outcome)) {
    return outcome;
  }

  const std::size_t count = function->parameters.size();
  Argument prepared[maxParameters];
  SlotArguments words;
  for (std::size_t i = 0; i < count; ++i) {
    outcome = prepared[i].prepare(function->parameters[i], given[i], locale);
    if (FAILED(outcome)) {
      if (argumentError != nullptr && given[i] != nullptr) {
        *argumentError = static_cast<UINT>(given[i] - passed.rgvarg);
      }
      return outcome;
    }
    prepared[i].push(words);
  }

  VARIANT returned;
  VariantInit(&returned);
  const bool returnsVariant = function->resultType == VT_VARIANT;
  if (function->hasResult) {
    words.pushPointer(returnsVariant ? static_cast<void*>(&returned) : &returned.byref);
  }
  outcome = words.call(object, function->slot);
  if (function->hasResult && !returnsVariant) {
    returned.vt = function->resultType;
  }
  for (std::size_t i = 0; i < count; ++i) {
    const HRESULT written = prepared[i].writeBack(locale);
    if (FAILED(written) && SUCCEEDED(outcome)) {
      if (argumentError != nullptr) {
        *argumentError = static_cast<UINT>(given[i] - passed.rgvarg);
      }
      VariantClear(&returned);
      return written;
    }
  }
  if (FAILED(outcome)) {
    VariantClear(&returned);
    fillException(outcome, exception);
    return DISP_E_EXCEPTION;
  }
  if (forDefaultMember) {
    outcome = invokeDefaultOf(returned, locale, flags, arguments, result, exception, argumentError);
    VariantClear(&returned);
    return outcome;
  }
  if (result != nullptr) {
    *result = returned;
  } else {
    VariantClear(&returned);
  }
  return S_OK;
}

void registerAdapter(REFIID interfaceId, AdapterFactory factory) { adapters().push_back({interfaceId, factory}); }

ComPtr<IUnknown> adaptTo(REFIID interfaceId, IUnknown* object) noexcept {
  ComPtr<IUnknown> result;
  if (SUCCEEDED(object->QueryInterface(interfaceId, result.outVoid()))) {
    return result;
  }
  result = nullptr;
  for (const Adapter& adapter : adapters()) {
    if (IsEqualIID(adapter.interfaceId, interfaceId)) {
      if (const auto target = ComPtr<IUnknown>(object).query<IDispatch>(IID_IDispatch)) {
        return ComPtr<IUnknown>::attach(adapter.factory(target.get()));
      }
    }
  }
  return nullptr;
}

}  // namespace zeq::automation
