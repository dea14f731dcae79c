#pragma once
// An object of the registered library. The same scenarios are built twice: with EARLY_BOUND every call goes
// through the vtable that ZEQUtility2.h declares, without it every call goes by name, as a script's.

#include <array>
#include <concepts>
#include <cstddef>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "Value.h"
#include "ZEQUtility2.h"

namespace conformance {

/// What a call does with a member.
enum class Use {
  method = DISPATCH_METHOD,
  get = DISPATCH_PROPERTYGET,
  put = DISPATCH_PROPERTYPUT,
  set = DISPATCH_PROPERTYPUTREF
};

/// Remembers that a member was used, for the count at the end.
void noteUse(REFIID interfaceId, Use use, std::wstring_view name);

/// A new object of a registered class.
[[nodiscard]] Value createObject(const wchar_t* className);

/// The same object behind another of its interfaces, which has IDispatch as well.
[[nodiscard]] Value asInterface(const Value& object, REFIID iid);

/// Calls a member by name, as a script does: variables come as references to variants.
[[nodiscard]] Value callByName(IDispatch* object, Use use, const wchar_t* name,
                               std::vector<Argument> arguments);

/// One argument of a call through a vtable, as the parameter type wants it.
template <class Parameter>
struct Slot;

template <class Number>
requires std::is_arithmetic_v<Number> || std::is_enum_v<Number>
struct Slot<Number> {
  explicit Slot(Argument& argument) {
    const Value number = argument.value.as(VT_R8);
    value = static_cast<Number>(
        static_cast<std::conditional_t<std::is_enum_v<Number>, long, Number>>(number.get().dblVal));
  }
  Number pass() noexcept { return value; }
  static Value shown(Number number) {
    if constexpr (std::is_enum_v<Number>) {
      return Value(static_cast<long>(number));
    } else {
      return Value(number);
    }
  }
  Number value{};
};

template <>
struct Slot<BSTR> {
  explicit Slot(Argument& argument) : value(argument.value.as(VT_BSTR)) {}
  BSTR pass() noexcept { return value.get().bstrVal; }
  static Value shown(BSTR text) {
    Value result;
    result.raw()->vt = VT_BSTR;
    result.raw()->bstrVal = text;
    return result;
  }
  Value value;
};

template <>
struct Slot<VARIANT> {
  explicit Slot(Argument& argument) : value(argument.value) {}
  VARIANT pass() noexcept { return value.get(); }
  static Value shown(const VARIANT& variant) {
    Value result;
    *result.raw() = variant;
    return result;
  }
  Value value;
};

/// An object of any interface; null for Nothing.
template <class Interface>
requires std::derived_from<Interface, IUnknown>
struct Slot<Interface*> {
  explicit Slot(Argument& argument) {
    if (IDispatch* object = argument.value.object(); object != nullptr) {
      expectSuccess(object->QueryInterface(__uuidof(Interface), reinterpret_cast<void**>(&value)),
                    L"QueryInterface");
    }
  }
  Slot(const Slot&) = delete;
  Slot& operator=(const Slot&) = delete;
  ~Slot() {
    if (value != nullptr) {
      value->Release();
    }
  }
  Interface* pass() noexcept { return value; }
  static Value shown(Interface* object) {
    Value result;
    result.raw()->vt = std::derived_from<Interface, IDispatch> ? VT_DISPATCH : VT_UNKNOWN;
    result.raw()->punkVal = object;
    return result;
  }
  Interface* value = nullptr;
};

/// A by-reference argument: a typed variable, written back into the client's.
template <class Pointee>
requires(!std::derived_from<Pointee, IUnknown> && !std::same_as<Pointee*, BSTR>) struct Slot<Pointee*> {
  explicit Slot(Argument& argument) : variable(argument.variable), first(argument) {
    typed = first.pass();
    if constexpr (std::is_pointer_v<Pointee> && !std::same_as<Pointee, BSTR>) {
      if (typed != nullptr) {
        typed->AddRef();
      }
    } else if constexpr (std::same_as<Pointee, BSTR>) {
      typed = SysAllocStringLen(typed, SysStringLen(typed));
    } else if constexpr (std::same_as<Pointee, VARIANT>) {
      VARIANT copy;
      VariantInit(&copy);
      VariantCopy(&copy, &typed);
      typed = copy;
    }
  }
  Slot(const Slot&) = delete;
  Slot& operator=(const Slot&) = delete;
  ~Slot() {
    Value written = Slot<Pointee>::shown(typed);
    if (variable != nullptr) {
      *variable = std::move(written);
    }
  }
  Pointee* pass() noexcept { return &typed; }

  Value* variable;
  Slot<Pointee> first;
  Pointee typed{};
};

/// Calls a member through the vtable. A parameter more than there are arguments is the result.
template <class Interface, class... Parameters, std::size_t... Index>
Value callThroughVtable(Interface* object, HRESULT (STDMETHODCALLTYPE Interface::*member)(Parameters...),
                        const wchar_t* name, std::vector<Argument>& arguments,
                        std::index_sequence<Index...>) {
  using Types = std::tuple<Parameters...>;
  std::tuple<Slot<std::tuple_element_t<Index, Types>>...> slots{arguments[Index]...};
  if constexpr (sizeof...(Parameters) == sizeof...(Index)) {
    expectSuccess((object->*member)(std::get<Index>(slots).pass()...), name);
    return {};
  } else {
    using Result = std::remove_pointer_t<std::tuple_element_t<sizeof...(Index), Types>>;
    Result result{};
    expectSuccess((object->*member)(std::get<Index>(slots).pass()..., &result), name);
    return Slot<Result>::shown(result);
  }
}

template <class Interface>
class Object {
 public:
  using Type = Interface;

  /// A new object of a registered class.
  explicit Object(const wchar_t* className) : object_(createObject(className)) {}
  explicit Object(const Value& object) : object_(object.object()) { (void)object_.needObject(); }

  operator Value() const { return object_; }

#ifdef EARLY_BOUND
  template <class Member, class... Arguments>
  Value use(Use use, const wchar_t* name, Member member, Arguments&&... given) const {
    noteUse(__uuidof(Interface), use, name);
    std::vector<Argument> arguments{Argument(std::forward<Arguments>(given))...};
    const Value typed = asInterface(object_, __uuidof(Interface));
    return callThroughVtable(static_cast<Interface*>(&typed.needObject()), member, name, arguments,
                             std::index_sequence_for<Arguments...>());
  }
#else
  template <class... Arguments>
  Value use(Use use, const wchar_t* name, Arguments&&... given) const {
    noteUse(__uuidof(Interface), use, name);
    return callByName(object_.object(), use, name, {Argument(std::forward<Arguments>(given))...});
  }
#endif

 private:
  Value object_;
};

}  // namespace conformance

#ifdef EARLY_BOUND
#define USE(object, use_, name, slot, ...)        \
  (object).use(conformance::Use::use_, L## #name, \
               &std::remove_cvref_t<decltype(object)>::Type::slot __VA_OPT__(, ) __VA_ARGS__)
#else
#define USE(object, use_, name, slot, ...) \
  (object).use(conformance::Use::use_, L## #name __VA_OPT__(, ) __VA_ARGS__)
#endif
#define CALL(object, name, ...) USE(object, method, name, name __VA_OPT__(, ) __VA_ARGS__)
#define GET(object, name, ...) USE(object, get, name, get_##name __VA_OPT__(, ) __VA_ARGS__)
#define PUT(object, name, ...) USE(object, put, name, put_##name __VA_OPT__(, ) __VA_ARGS__)
#define SET(object, name, ...) USE(object, set, name, putref_##name __VA_OPT__(, ) __VA_ARGS__)
