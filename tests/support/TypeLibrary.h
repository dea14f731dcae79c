#pragma once
// The built component's type library as an object browser shows it.

#include <windows.h>
#include <oleauto.h>

#include <string>
#include <vector>

#include "automation/ComPtr.h"

namespace zeq::test {

/// One type of the library: a class, an interface or an enumeration.
struct LibraryType {
  automation::ComPtr<ITypeInfo> info;
  std::wstring name;
  std::wstring help;
  GUID guid;
  TYPEKIND kind;
  WORD flags;  ///< TYPEFLAG_…
  WORD functions;
  WORD variables;
  WORD implemented;
};

/// One member of an interface, written as in "function SetMove(src As String, Optional ByRef n As Long = 1)
/// As Boolean". By-reference arguments that the member only reads are "ByRef const"; the value of a property
/// put is written like a result.
struct LibraryMember {
  std::wstring text;
  std::wstring name;
  std::wstring help;
  MEMBERID id;
  WORD kind;  ///< One of INVOKE_FUNC, _PROPERTYGET, _PROPERTYPUT, _PROPERTYPUTREF.
  std::size_t parameters;
};

/// What a class implements.
struct Implemented {
  LibraryType type;
  int flags;  ///< IMPLTYPEFLAG_…
};

/// The type library that the component's DLL carries.
[[nodiscard]] automation::ComPtr<ITypeLib> builtTypeLibrary();

/// All its types of a kind, in order. Dual interfaces are of the kind TKIND_DISPATCH.
[[nodiscard]] std::vector<LibraryType> libraryTypes(TYPEKIND kind);

[[nodiscard]] LibraryType describeType(const automation::ComPtr<ITypeInfo>& info);

/// The interfaces of a class, its events among them.
[[nodiscard]] std::vector<Implemented> implementedBy(const LibraryType& coclass);

/// The members of an interface or dispinterface, without those of IDispatch.
[[nodiscard]] std::vector<LibraryMember> membersOf(const LibraryType& type);

/// The members of an enumeration, each written as "name = value".
[[nodiscard]] std::vector<std::wstring> enumeratorsOf(const LibraryType& type);

}  // namespace zeq::test
