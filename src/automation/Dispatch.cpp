#include "automation/Dispatch.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "automation/Adapter.h"
#include "automation/Errors.h"
#include "automation/SlotCall.h"
#include "automation/Text.h"
#include "automation/TypeInfo.h"

namespace zeq::automation {
namespace {

constexpr std::uint32_t noFunction = UINT32_MAX;

/// Identifiers below this are found by their value, others by a search.
constexpr DISPID mostDirectIds = 1024;

constexpr wchar_t foldAscii(wchar_t character) noexcept {
  return character >= L'A' && character <= L'Z' ? static_cast<wchar_t>(character + (L'a' - L'A')) : character;
}

/// Names of members are plain ASCII, so that folding ASCII is all that comparing without regard to case
/// takes.
std::uint32_t hashOf(std::wstring_view name) noexcept {
  std::uint32_t hash = 2166136261U;  // FNV-1a
  for (const wchar_t character : name) {
    hash = (hash ^ foldAscii(character)) * 16777619U;
  }
  return hash;
}

bool sameName(std::wstring_view one, std::wstring_view other) noexcept {
  return one.size() == other.size() &&
         std::equal(one.begin(), one.end(), other.begin(),
                    [](wchar_t a, wchar_t b) { return foldAscii(a) == foldAscii(b); });
}

/// The standard type of colours: an unsigned integer that automation passes as a signed one, because the
/// system's own colours are negative there.
constexpr GUID colourType{0x66504301, 0xBE0F, 0x101A, {0x8B, 0xBB, 0x00, 0xAA, 0x00, 0x30, 0x0C, 0xAB}};

/// What a type description says once aliases, enumerations and pointers are looked through.
struct ResolvedType {
  VARTYPE type = VT_EMPTY;
  int pointers = 0;
  bool typed = false;
  IID interfaceId{};
};

ResolvedType resolve(ITypeInfo& info, const TYPEDESC& description);

ResolvedType resolveNamed(ITypeInfo& info, HREFTYPE reference) {
  const auto named = referredBy(info, reference);
  const auto attributes = attributesOf(*named);
  switch (attributes->typekind) {
    case TKIND_ALIAS:
      return IsEqualGUID(attributes->guid, colourType) ? ResolvedType{.type = VT_I4}
                                                       : resolve(*named, attributes->tdescAlias);
    case TKIND_ENUM:
      return {.type = VT_I4};
    case TKIND_INTERFACE:
    case TKIND_DISPATCH: {
      const bool any = IsEqualIID(attributes->guid, IID_IUnknown);
      return {.type = any ? VARTYPE{VT_UNKNOWN} : VARTYPE{VT_DISPATCH},
              .pointers = -1,  // An object is always handled by a pointer, which is not counted.
              .typed = !any && !IsEqualIID(attributes->guid, IID_IDispatch),
              .interfaceId = attributes->guid};
    }
    default:
      return {};  // Nothing that can be passed.
  }
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
    case VT_DISPATCH:
      return {.type = VT_DISPATCH, .interfaceId = IID_IDispatch};
    case VT_UNKNOWN:
      return {.type = VT_UNKNOWN, .interfaceId = IID_IUnknown};
    default:
      return {.type = description.vt};
  }
}

constexpr WORD anyPut = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;

/// True if a put assigns an object, be it Nothing. The new value is the first in the list.
bool assignsObject(const DISPPARAMS& arguments) noexcept {
  return arguments.cArgs > 0 && isObjectType(referredType(dereferenced(arguments.rgvarg[0])));
}

constexpr std::size_t maxParameters = 16;

/// Finds for each parameter what the client passed. `given` has one entry a parameter, null where nothing was
/// passed.
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

/// One call of a function by a client's list of arguments.
class Call {
 public:
  Call(const DispatchTable::Function& function, const DISPPARAMS& passed, LCID locale,
       UINT* argumentError) noexcept
      : function_(function), passed_(passed), locale_(locale), argumentError_(argumentError) {}

  /// Makes the arguments ready to be passed.
  HRESULT prepare(void* object, bool isPut) noexcept {
    HRESULT outcome = assignArguments(function_, passed_, isPut, given_, argumentError_);
    if (FAILED(outcome)) {
      return outcome;
    }
    for (std::size_t i = 0; i < function_.parameters.size(); ++i) {
      if (given_[i] != nullptr && asksAnObject(*given_[i])) {
        alive_ = ComPtr<IUnknown>(static_cast<IUnknown*>(object));
      }
      outcome = prepared_[i].prepare(function_.parameters[i], given_[i], locale_);
      if (FAILED(outcome)) {
        blame(i);
        return outcome;
      }
      prepared_[i].push(words_);
    }
    return S_OK;
  }

  /// Calls the function and hands what it wrote back to the client's variables. `returned` gets the result;
  /// it holds nothing before, and nothing after a failure.
  HRESULT run(void* object, VARIANT& returned, EXCEPINFO* exception) noexcept {
    const bool returnsVariant = function_.resultType == VT_VARIANT;
    if (function_.hasResult) {
      words_.pushPointer(returnsVariant ? static_cast<void*>(&returned) : &returned.byref);
    }
    const HRESULT outcome = words_.call(object, function_.slot);
    if (function_.hasResult && !returnsVariant) {
      returned.vt = function_.resultType;
    }
    for (std::size_t i = 0; i < function_.parameters.size(); ++i) {
      const HRESULT written = prepared_[i].writeBack(locale_);
      if (FAILED(written) && SUCCEEDED(outcome)) {
        blame(i);
        VariantClear(&returned);
        return written;
      }
    }
    if (FAILED(outcome)) {
      VariantClear(&returned);
      fillException(outcome, exception);
      return DISP_E_EXCEPTION;
    }
    return S_OK;
  }

 private:
  /// Tells the client which of its arguments is at fault.
  void blame(std::size_t parameter) noexcept {
    if (argumentError_ != nullptr && given_[parameter] != nullptr) {
      *argumentError_ = static_cast<UINT>(given_[parameter] - passed_.rgvarg);
    }
  }

  const DispatchTable::Function& function_;
  const DISPPARAMS& passed_;
  LCID locale_;
  UINT* argumentError_;
  ComPtr<IUnknown> alive_;  ///< The object, if what runs before the call may release it.
  std::array<VARIANT*, maxParameters> given_{};
  std::array<Argument, maxParameters> prepared_;
  SlotArguments words_;
};

/// `object.Property(arguments)` where the property itself takes none: the arguments go to the default member
/// of the object that the property returns.
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

Parameter parameterOf(const PARAMDESC& description, const ResolvedType& type) {
  Parameter parameter;
  parameter.type = type.type;
  parameter.byReference = type.pointers > 0;
  parameter.written = parameter.byReference && (description.wParamFlags & PARAMFLAG_FOUT) != 0;
  parameter.optional = (description.wParamFlags & PARAMFLAG_FOPT) != 0;
  parameter.typed = type.typed;
  parameter.interfaceId = type.interfaceId;
  if ((description.wParamFlags & PARAMFLAG_FHASDEFAULT) != 0) {
    parameter.optional = true;
    const VARIANT& given = description.pparamdescex->varDefaultValue;
    if (isObjectType(type.type)) {
      parameter.defaultValue = neutralValue(type.type);  // The description can only say Nothing.
    } else if (type.type == VT_VARIANT) {
      parameter.defaultValue = Variant(given);
    } else {
      check(changeType(parameter.defaultValue.get(), given, type.type, LOCALE_INVARIANT));
    }
  } else if (parameter.optional) {
    parameter.defaultValue = neutralValue(type.type);
  }
  return parameter;
}

}  // namespace

DispatchTable::DispatchTable(const ComPtr<ITypeInfo>& dual) {
  const auto info = vtableSideOf(*dual);
  const UINT count = attributesOf(*info)->cFuncs;
  functions_.reserve(count);
  for (UINT i = 0; i < count; ++i) {
    addFunction(*info, *functionAt(*info, i));
  }
  index();
}

void DispatchTable::addFunction(ITypeInfo& info, const FUNCDESC& description) {
  Function function;
  function.id = description.memid;
  function.kind = static_cast<WORD>(description.invkind);
  function.slot = static_cast<std::size_t>(description.oVft) / sizeof(void*);
  std::size_t words = 0;
  for (SHORT i = 0; i < description.cParams; ++i) {
    const ELEMDESC& element = description.lprgelemdescParam[i];
    const ResolvedType type = resolve(info, element.tdesc);
    if (!isPassable(type.type) || type.pointers > 1) {
      throw Error(ErrorNumber::internalError);  // A mistake in the interface description.
    }
    if ((element.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0) {
      function.hasResult = true;
      function.resultType = type.type;
      function.typedResult = type.typed;
      function.resultInterface = type.interfaceId;
      words += 1;
    } else {
      function.parameters.push_back(parameterOf(element.paramdesc, type));
      words += wordsOf(function.parameters.back());
    }
  }
  if (function.parameters.size() > maxParameters || words > SlotArguments::capacity) {
    throw Error(ErrorNumber::internalError);
  }
  addName(description.memid, namesOf(info, description));
  functions_.push_back(std::move(function));
}

void DispatchTable::addName(DISPID id, std::vector<std::wstring> names) {
  if (names.empty()) {
    return;
  }
  const auto known =
      std::find_if(names_.begin(), names_.end(), [&](const Name& each) { return each.id == id; });
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
    if (id >= 0 && id < mostDirectIds) {
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

std::size_t DispatchTable::firstFunction(DISPID id) const noexcept {
  if (id >= 0 && static_cast<std::size_t>(id) < firstOfId_.size()) {
    return firstOfId_[static_cast<std::size_t>(id)];
  }
  const auto at =
      std::lower_bound(functions_.begin(), functions_.end(), id,
                       [](const Function& function, DISPID wanted) { return function.id < wanted; });
  return static_cast<std::size_t>(at - functions_.begin());
}

const DispatchTable::Function* DispatchTable::findFunction(DISPID id, WORD flags,
                                                           bool objectAssigned) const noexcept {
  // Some clients ask for both kinds of put at once: an object is put by reference where that is possible.
  const WORD puts = flags & anyPut;
  const WORD wanted = puts != anyPut   ? flags
                      : objectAssigned ? DISPATCH_PROPERTYPUTREF
                                       : DISPATCH_PROPERTYPUT;
  const Function* other = nullptr;
  for (std::size_t i = firstFunction(id); i < functions_.size() && functions_[i].id == id; ++i) {
    const Function& function = functions_[i];
    if ((function.kind & wanted) != 0) {
      return &function;
    }
    // Where a property has one kind of put only, an object may be assigned with either.
    if (puts != 0 && (function.kind & anyPut) != 0 && (objectAssigned || (function.kind & flags) != 0)) {
      other = &function;
    }
  }
  return other;
}

HRESULT DispatchTable::invoke(void* object, DISPID id, REFIID reserved, LCID locale, WORD flags,
                              DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                              UINT* argumentError) const noexcept {
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
  const bool isPut = (flags & anyPut) != 0;
  const Function* function = findFunction(id, flags, isPut && assignsObject(*arguments));
  if (function == nullptr) {
    return DISP_E_MEMBERNOTFOUND;
  }

  DISPPARAMS none{};
  const bool forDefaultMember = !isPut && arguments->cArgs > 0 && function->parameters.empty() &&
                                function->kind == DISPATCH_PROPERTYGET && isObjectType(function->resultType);
  Call call(*function, forDefaultMember ? none : *arguments, locale, argumentError);
  VARIANT returned{};
  HRESULT outcome = call.prepare(object, isPut);
  if (SUCCEEDED(outcome)) {
    outcome = call.run(object, returned, exception);
  }
  if (FAILED(outcome)) {
    return outcome;
  }
  if (forDefaultMember) {
    outcome = invokeDefaultOf(returned, locale, flags, arguments, result, exception, argumentError);
    VariantClear(&returned);
    return outcome;
  }
  if (function->typedResult && returned.punkVal != nullptr && hasAdapter(function->resultInterface)) {
    dropAdapter(returned.punkVal);
  }
  if (result != nullptr) {
    *result = returned;
  } else {
    VariantClear(&returned);
  }
  return S_OK;
}

}  // namespace zeq::automation
