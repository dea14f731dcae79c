#pragma once
// The built component as a client has it: its objects come from the DLL's class factories.

#include <windows.h>
#include <oleauto.h>
#include <olectl.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "ZEQUtility2.h"
#include "automation/ComPtr.h"
#include "automation/Text.h"
#include "automation/Variant.h"

namespace zeq::test {

using automation::Bstr;
using automation::ComPtr;
using automation::Variant;

/// The DLL that stands beside the test program, loaded once.
[[nodiscard]] HMODULE component();

/// The class object of a class, straight from the DLL.
[[nodiscard]] ComPtr<IClassFactory> classFactory(REFCLSID clsid);

/// True if the DLL says that nothing keeps it loaded.
[[nodiscard]] bool canUnload();

/// A new object. The test ends with an exception if there is none.
template <class Coclass, class Interface>
[[nodiscard]] ComPtr<Interface> create() {
  ComPtr<Interface> object;
  automation::check(
      classFactory(__uuidof(Coclass))->CreateInstance(nullptr, __uuidof(Interface), object.outVoid()));
  return object;
}

/// The outcome of a call by name.
struct Outcome {
  HRESULT code = S_OK;
  Variant value;
  HRESULT scode = S_OK;  ///< With DISP_E_EXCEPTION: the error itself.
  std::wstring description;
  UINT argumentError = 0xFFFF;
};

/// An object as a script has it: known by name only.
class Late {
 public:
  explicit Late(IDispatch* object) : object_(object) {}
  template <class Interface>
  explicit Late(const ComPtr<Interface>& object) : object_(object.get()) {}

  /// Calls a member with arguments in declaration order. The variants are passed as they are.
  Outcome invoke(const wchar_t* name, WORD flags, std::vector<VARIANT> arguments = {}) const;

  template <class... Arguments>
  Outcome call(const wchar_t* name, const Arguments&... arguments) const {
    return invoke(name, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {asArgument(arguments)...});
  }
  template <class... Arguments>
  Variant get(const wchar_t* name, const Arguments&... arguments) const {
    Outcome outcome = call(name, arguments...);
    automation::check(outcome.code);
    return std::move(outcome.value);
  }
  template <class... Arguments>
  Outcome put(const wchar_t* name, const Arguments&... arguments) const {
    return invoke(name, DISPATCH_PROPERTYPUT, {asArgument(arguments)...});
  }

  [[nodiscard]] IDispatch* dispatch() const noexcept { return object_.get(); }

 private:
  static VARIANT asArgument(const Variant& value) noexcept { return value.get(); }
  static VARIANT asArgument(const VARIANT& value) noexcept { return value; }

  ComPtr<IDispatch> object_;
};

/// A C++ value as a script has it.
template <class Value>
[[nodiscard]] Variant asVariant(const Value& value) {
  if constexpr (std::is_convertible_v<const Value&, std::wstring_view>) {
    return Variant(std::wstring_view(value));
  } else if constexpr (std::is_same_v<Value, int>) {
    return Variant(long{value});
  } else if constexpr (std::is_same_v<Value, Late>) {
    return Variant(value.dispatch());
  } else {
    return Variant(value);
  }
}

/// A script's variable passed as an argument: VT_BYREF|VT_VARIANT.
[[nodiscard]] inline VARIANT byRef(Variant& variable) noexcept {
  VARIANT argument;
  VariantInit(&argument);
  argument.vt = VT_BYREF | VT_VARIANT;
  argument.pvarVal = &variable.get();
  return argument;
}

/// A text for a by-reference argument of an early-bound call.
class TextArgument {
 public:
  explicit TextArgument(std::wstring_view text) : string_(automation::newBstr(text)) {}
  ~TextArgument() { SysFreeString(string_); }
  TextArgument(const TextArgument&) = delete;
  TextArgument& operator=(const TextArgument&) = delete;
  operator BSTR*() noexcept { return &string_; }

 private:
  BSTR string_;
};

/// Takes over a string that a call returned.
[[nodiscard]] inline Bstr owned(BSTR string) noexcept {
  Bstr result;
  *result.out() = string;
  return result;
}

/// The arguments of a call as they are declared; the call brings them in reverse.
[[nodiscard]] std::vector<VARIANT*> inDeclarationOrder(const DISPPARAMS& parameters);

/// The text of a variant that holds one.
[[nodiscard]] std::wstring textIn(const Variant& value);

/// A sink that hands every event to a function and stays connected while it lives.
class Sink {
 public:
  /// `arguments` are those of the event in declaration order.
  using Handler = std::function<HRESULT(DISPID event, std::vector<VARIANT*> arguments)>;

  Sink(IUnknown* source, REFIID events, Handler handler);
  ~Sink();
  Sink(const Sink&) = delete;
  Sink& operator=(const Sink&) = delete;

  /// From now on the sink holds nothing of the source.
  void disconnect();

 private:
  ComPtr<IConnectionPoint> point_;
  DWORD cookie_ = 0;
};

}  // namespace zeq::test
