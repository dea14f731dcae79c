#pragma once
// Late binding: one engine for every dual interface of the library, driven by the type library's own
// description.
//
// It follows IDispatch as the automation documentation describes it, and accepts a by-reference argument in
// every form in which clients pass one: as a reference to the exact type, as a reference to a VARIANT (a
// script's variable; what the member writes arrives there with the parameter's type), as a reference to
// another type (converted both ways), or as a plain value.

#include <windows.h>
#include <oleauto.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "automation/Argument.h"
#include "automation/ComPtr.h"

namespace zeq::automation {

/// The members of one dual interface, ready to be called by name.
class DispatchTable {
 public:
  /// Reads the description of a dual interface. Throws Error if the type library has none.
  explicit DispatchTable(const ComPtr<ITypeInfo>& dual);
  DispatchTable(const DispatchTable&) = delete;
  DispatchTable& operator=(const DispatchTable&) = delete;

  /// IDispatch::GetIDsOfNames: names[0] is a member, the others are its arguments.
  HRESULT getIDsOfNames(wchar_t** names, UINT count, DISPID* ids) const noexcept;

  /// IDispatch::Invoke on an object whose vtable is that of the interface.
  HRESULT invoke(void* object, DISPID id, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* arguments,
                 VARIANT* result, EXCEPINFO* exception, UINT* argumentError) const noexcept;

  /// One function of the vtable: a method, or one direction of a property.
  struct Function {
    DISPID id = DISPID_UNKNOWN;
    WORD kind = 0;         ///< One of DISPATCH_METHOD, _PROPERTYGET, _PROPERTYPUT, _PROPERTYPUTREF.
    std::size_t slot = 0;  ///< Position in the vtable.
    std::vector<Parameter> parameters;  ///< Without the result.
    bool hasResult = false;
    VARTYPE resultType = VT_EMPTY;
    bool typedResult = false;  ///< The result is an object of the interface `resultInterface` instead of any.
    IID resultInterface{};
  };

 private:
  struct Name {
    std::uint32_t hash = 0;
    DISPID id = DISPID_UNKNOWN;
    std::wstring text;
    std::vector<std::wstring> arguments;
  };

  void addFunction(ITypeInfo& info, const FUNCDESC& description);
  void addName(DISPID id, std::vector<std::wstring> names);
  void index();
  [[nodiscard]] const Name* findName(std::wstring_view name) const noexcept;
  [[nodiscard]] std::size_t firstFunction(DISPID id) const noexcept;
  [[nodiscard]] const Function* findFunction(DISPID id, WORD flags, bool objectAssigned) const noexcept;

  std::vector<Function> functions_;       ///< Sorted by identifier.
  std::vector<std::uint32_t> firstOfId_;  ///< For the identifiers 0, 1, 2 …: the first function that has it.
  std::vector<Name> names_;
  std::vector<std::uint32_t> buckets_;  ///< Open addressing: 1 + position in names_, 0 for a free place.
};

}  // namespace zeq::automation
