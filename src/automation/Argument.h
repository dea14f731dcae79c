#pragma once
// How one argument of a late-bound call reaches a parameter of a member, and how what the member writes comes
// back.

#include <windows.h>
#include <oleauto.h>

#include "automation/SlotCall.h"
#include "automation/Variant.h"

namespace zeq::automation {

/// One parameter of a member, as the type library describes it.
struct Parameter {
  VARTYPE type = VT_EMPTY;  ///< Without VT_BYREF; VT_DISPATCH for every automation interface.
  bool byReference = false;
  bool written = false;   ///< By reference and not read only.
  bool optional = false;  ///< May be left out.
  bool typed = false;     ///< An object of the interface `interfaceId` instead of any.
  IID interfaceId{};      ///< For objects: the interface that the member expects.
  Variant defaultValue;   ///< What stands for an optional argument that is left out.
};

/// True if arguments of a type can be passed: these are the types of automation that the library's members
/// use.
[[nodiscard]] bool isPassable(VARTYPE type) noexcept;

/// The value of an optional argument without a default: zero, or "missing" for a VARIANT.
[[nodiscard]] Variant neutralValue(VARTYPE type);

/// How many machine words a parameter takes in the argument list.
[[nodiscard]] std::size_t wordsOf(const Parameter& parameter) noexcept;

/// True if a value is taken from an object of the client's, or the object itself looked at: its code runs
/// then.
[[nodiscard]] bool asksAnObject(VARIANT& given) noexcept;

/// One argument of one call.
class Argument {
 public:
  Argument() noexcept { value_.vt = VT_EMPTY; }
  Argument(const Argument&) = delete;
  Argument& operator=(const Argument&) = delete;
  ~Argument() {
    if (owned_) {
      VariantClear(&value_);
    }
  }

  /// Makes the argument ready to be passed. `given` is null if the client left it out.
  HRESULT prepare(const Parameter& parameter, VARIANT* given, LCID locale) noexcept;

  /// Appends it to the argument list.
  void push(SlotArguments& arguments) const noexcept;

  /// Hands what the member wrote back to the client's variable, if that is not what the member wrote to.
  HRESULT writeBack(LCID locale) noexcept { return target_ == nullptr ? S_OK : writeToTarget(locale); }

 private:
  HRESULT useDefault() noexcept;
  HRESULT prepareValue(const VARIANT& given, LCID locale) noexcept;
  HRESULT prepareReference(VARIANT& given, LCID locale) noexcept;
  HRESULT prepareVariantReference(VARIANT& given) noexcept;
  HRESULT convert(const VARIANT& source, LCID locale) noexcept;
  HRESULT convertObject(const VARIANT& source) noexcept;
  HRESULT writeToTarget(LCID locale) noexcept;

  const Parameter* parameter_ = nullptr;
  VARIANT value_;
  void* address_ = nullptr;    ///< By reference: what the member gets.
  VARIANT* target_ = nullptr;  ///< The client's argument that gets the value back after the call.
  bool owned_ = false;         ///< Whether value_ is to be cleared.
};

}  // namespace zeq::automation
