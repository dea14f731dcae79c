#pragma once
// What calls to client code through IDispatch::Invoke need: events of the library and calls by name are made
// of it.

#include <windows.h>
#include <oleauto.h>

#include <array>
#include <concepts>
#include <cstddef>
#include <utility>

#include "automation/Errors.h"
#include "automation/Text.h"

namespace zeq::automation {

/// One argument of a call to client code. Texts and objects passed by value are borrowed for the time of the
/// call; a pointer to a variable passes the variable by reference.
class CallArgument {
 public:
  template <std::same_as<bool> Value>  // Nothing else turns into a boolean by accident.
  explicit CallArgument(Value value) noexcept {
    set(VT_BOOL).boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  }
  explicit CallArgument(short value) noexcept { set(VT_I2).iVal = value; }
  explicit CallArgument(long value) noexcept { set(VT_I4).lVal = value; }
  explicit CallArgument(double value) noexcept { set(VT_R8).dblVal = value; }
  explicit CallArgument(BSTR value) noexcept { set(VT_BSTR).bstrVal = value; }
  explicit CallArgument(const Bstr& value) noexcept { set(VT_BSTR).bstrVal = value.get(); }
  explicit CallArgument(IDispatch* value) noexcept { set(VT_DISPATCH).pdispVal = value; }
  explicit CallArgument(const VARIANT& value) noexcept : value_(value) {}

  explicit CallArgument(VARIANT_BOOL* variable) noexcept { set(VT_BYREF | VT_BOOL).pboolVal = variable; }
  explicit CallArgument(long* variable) noexcept { set(VT_BYREF | VT_I4).plVal = variable; }
  explicit CallArgument(double* variable) noexcept { set(VT_BYREF | VT_R8).pdblVal = variable; }
  explicit CallArgument(BSTR* variable) noexcept { set(VT_BYREF | VT_BSTR).pbstrVal = variable; }
  explicit CallArgument(VARIANT* variable) noexcept { set(VT_BYREF | VT_VARIANT).pvarVal = variable; }
  explicit CallArgument(IDispatch** variable) noexcept { set(VT_BYREF | VT_DISPATCH).ppdispVal = variable; }

  [[nodiscard]] const VARIANTARG& get() const noexcept { return value_; }

 private:
  VARIANTARG& set(VARTYPE type) noexcept {
    value_.vt = type;
    return value_;
  }
  VARIANTARG value_{};
};

/// The argument list of a call: the arguments are given in declaration order and listed from the last to the
/// first.
template <std::size_t Count>
class CallArguments {
 public:
  template <class... Arguments>
  requires(sizeof...(Arguments) == Count) explicit CallArguments(Arguments&&... arguments) noexcept {
    std::size_t at = Count;
    ((list_[--at] = CallArgument(std::forward<Arguments>(arguments)).get()), ...);
  }

  [[nodiscard]] VARIANTARG* data() noexcept { return list_.data(); }
  [[nodiscard]] static constexpr UINT size() noexcept { return static_cast<UINT>(Count); }

 private:
  std::array<VARIANTARG, Count> list_{};
};
template <class... Arguments>
CallArguments(Arguments&&...) -> CallArguments<sizeof...(Arguments)>;

/// The EXCEPINFO of one call, freed in the destructor.
class CallException {
 public:
  CallException() noexcept = default;
  CallException(const CallException&) = delete;
  CallException& operator=(const CallException&) = delete;
  ~CallException();

  [[nodiscard]] EXCEPINFO* out() noexcept { return &info_; }

  /// The error that a call failed with.
  [[nodiscard]] Error error(HRESULT outcome);

 private:
  EXCEPINFO info_{};
};

}  // namespace zeq::automation
