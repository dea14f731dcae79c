#pragma once
// Reading a type library.

#include <windows.h>
#include <oleauto.h>

#include <string>
#include <vector>

#include "automation/ComPtr.h"
#include "automation/Errors.h"
#include "automation/Text.h"

namespace zeq::automation {

/// A description that its owner, a type or a type library, lends for the time that it is needed.
template <class Owner, class Description, auto giveBack>
class Lent {
 public:
  Lent(Owner& owner, Description* description) noexcept : owner_(owner), description_(description) {}
  ~Lent() { (owner_.*giveBack)(description_); }
  Lent(const Lent&) = delete;
  Lent& operator=(const Lent&) = delete;

  const Description& operator*() const noexcept { return *description_; }
  const Description* operator->() const noexcept { return description_; }

 private:
  Owner& owner_;
  Description* description_;
};

using LibraryAttributes = Lent<ITypeLib, TLIBATTR, &ITypeLib::ReleaseTLibAttr>;
using TypeAttributes = Lent<ITypeInfo, TYPEATTR, &ITypeInfo::ReleaseTypeAttr>;
using FunctionDescription = Lent<ITypeInfo, FUNCDESC, &ITypeInfo::ReleaseFuncDesc>;
using VariableDescription = Lent<ITypeInfo, VARDESC, &ITypeInfo::ReleaseVarDesc>;

[[nodiscard]] inline LibraryAttributes attributesOf(ITypeLib& library) {
  TLIBATTR* attributes = nullptr;
  check(library.GetLibAttr(&attributes));
  return {library, attributes};
}

[[nodiscard]] inline TypeAttributes attributesOf(ITypeInfo& type) {
  TYPEATTR* attributes = nullptr;
  check(type.GetTypeAttr(&attributes));
  return {type, attributes};
}

[[nodiscard]] inline FunctionDescription functionAt(ITypeInfo& type, UINT index) {
  FUNCDESC* description = nullptr;
  check(type.GetFuncDesc(index, &description));
  return {type, description};
}

[[nodiscard]] inline VariableDescription variableAt(ITypeInfo& type, UINT index) {
  VARDESC* description = nullptr;
  check(type.GetVarDesc(index, &description));
  return {type, description};
}

[[nodiscard]] inline ComPtr<ITypeLib> loadTypeLibrary(const std::wstring& path) {
  ComPtr<ITypeLib> library;
  check(LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.out()));
  return library;
}

[[nodiscard]] inline ComPtr<ITypeInfo> typeAt(ITypeLib& library, UINT index) {
  ComPtr<ITypeInfo> type;
  check(library.GetTypeInfo(index, type.out()));
  return type;
}

/// The type that another one refers to.
[[nodiscard]] inline ComPtr<ITypeInfo> referredBy(ITypeInfo& type, HREFTYPE reference) {
  ComPtr<ITypeInfo> referred;
  check(type.GetRefTypeInfo(reference, referred.out()));
  return referred;
}

/// One of the interfaces that a class implements, or of those that an interface inherits.
[[nodiscard]] inline ComPtr<ITypeInfo> implementedAt(ITypeInfo& type, UINT index) {
  HREFTYPE reference = 0;
  check(type.GetRefTypeOfImplType(index, &reference));
  return referredBy(type, reference);
}

/// The side of a dual interface that shows the slots and the results as they are; of any other interface
/// itself.
[[nodiscard]] inline ComPtr<ITypeInfo> vtableSideOf(ITypeInfo& type) {
  HREFTYPE reference = 0;
  const bool isDual = SUCCEEDED(type.GetRefTypeOfImplType(static_cast<UINT>(-1), &reference));
  return isDual ? referredBy(type, reference) : ComPtr<ITypeInfo>(&type);
}

struct Documentation {
  std::wstring name;
  std::wstring help;
};

/// The name and the helpstring of a type library, of a type or of a type's member.
template <class Described>
[[nodiscard]] Documentation documentationOf(Described& described, MEMBERID member = MEMBERID_NIL) {
  Bstr name;
  Bstr help;
  check(described.GetDocumentation(member, name.out(), help.out(), nullptr, nullptr));
  return {std::wstring(name.view()), std::wstring(help.view())};
}

/// The name of a function and those of its parameters. The new value of a property has none.
[[nodiscard]] inline std::vector<std::wstring> namesOf(ITypeInfo& type, const FUNCDESC& function) {
  std::vector<BSTR> raw(static_cast<std::size_t>(function.cParams) + 1);
  UINT count = 0;
  check(type.GetNames(function.memid, raw.data(), static_cast<UINT>(raw.size()), &count));
  std::vector<std::wstring> names;
  for (UINT i = 0; i < count; ++i) {
    Bstr name;
    *name.out() = raw[i];
    names.emplace_back(name.view());
  }
  return names;
}

}  // namespace zeq::automation
