#include "support/TypeLibrary.h"

#include <string_view>
#include <utility>

#include "automation/Errors.h"
#include "automation/Text.h"
#include "automation/TypeInfo.h"
#include "automation/Variant.h"
#include "support/Component.h"

namespace zeq::test {
namespace {

using automation::check;

/// How a type is written, and whether it is a reference.
struct TypeText {
  std::wstring text;
  bool byReference = false;
};

std::wstring simpleTypeText(VARTYPE type) {
  switch (type) {
    case VT_BSTR:
      return L"String";
    case VT_BOOL:
      return L"Boolean";
    case VT_I2:
      return L"Integer";
    case VT_I4:
      return L"Long";
    case VT_R4:
      return L"Single";
    case VT_R8:
      return L"Double";
    case VT_CY:
      return L"Currency";
    case VT_DATE:
      return L"Date";
    case VT_VARIANT:
      return L"Variant";
    case VT_DISPATCH:
      return L"Object";
    case VT_UNKNOWN:
      return L"Unknown";
    default:
      return L"type " + std::to_wstring(type);
  }
}

/// A class's own interface is written as the class.
std::wstring userTypeText(const LibraryType& type) {
  const bool isHiddenInterface = type.kind == TKIND_DISPATCH && type.name.starts_with(L'_');
  return isHiddenInterface ? type.name.substr(1) : type.name;
}

TypeText typeText(ITypeInfo& info, const TYPEDESC& type) {
  if (type.vt == VT_PTR) {
    const TYPEDESC& target = *type.lptdesc;
    if (target.vt == VT_USERDEFINED) {
      const LibraryType described = describeType(automation::referredBy(info, target.hreftype));
      // An object is a pointer already.
      return {userTypeText(described), described.kind != TKIND_DISPATCH && described.kind != TKIND_INTERFACE};
    }
    TypeText inner = typeText(info, target);
    inner.byReference = true;
    return inner;
  }
  if (type.vt == VT_USERDEFINED) {
    return {userTypeText(describeType(automation::referredBy(info, type.hreftype)))};
  }
  return {simpleTypeText(type.vt)};
}

std::wstring valueText(VARIANT value) {
  if (value.vt == VT_BSTR) {
    return L"\"" + std::wstring(automation::text(value.bstrVal)) + L"\"";
  }
  if (automation::isObjectType(value.vt) && value.punkVal == nullptr) {
    return L"Nothing";
  }
  Variant text;
  check(VariantChangeTypeEx(text.out(), &value, LOCALE_INVARIANT, VARIANT_ALPHABOOL, VT_BSTR));
  return textIn(text);
}

std::wstring parameterText(ITypeInfo& info, std::wstring_view name, const ELEMDESC& parameter) {
  const USHORT flags = parameter.paramdesc.wParamFlags;
  const TypeText type = typeText(info, parameter.tdesc);
  std::wstring text;
  if ((flags & PARAMFLAG_FOPT) != 0) {
    text += L"Optional ";
  }
  if (type.byReference) {
    text += (flags & PARAMFLAG_FOUT) != 0 ? L"ByRef " : L"ByRef const ";
  }
  text.append(name).append(L" As ").append(type.text);
  if ((flags & PARAMFLAG_FHASDEFAULT) != 0) {
    text += L" = " + valueText(parameter.paramdesc.pparamdescex->varDefaultValue);
  }
  return text;
}

std::wstring kindText(const FUNCDESC& function) {
  const bool hasResult =
      function.elemdescFunc.tdesc.vt != VT_VOID && function.elemdescFunc.tdesc.vt != VT_HRESULT;
  switch (function.invkind) {
    case INVOKE_PROPERTYGET:
      return L"get ";
    case INVOKE_PROPERTYPUT:
      return L"let ";
    case INVOKE_PROPERTYPUTREF:
      return L"set ";
    default:
      return hasResult ? L"function " : L"sub ";
  }
}

LibraryMember describeMember(ITypeInfo& info, const FUNCDESC& function) {
  auto [name, help] = automation::documentationOf(info, function.memid);
  const std::vector<std::wstring> names = automation::namesOf(info, function);

  const bool isPut = (function.invkind & (INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF)) != 0;
  const auto parameters = static_cast<UINT>(isPut ? function.cParams - 1 : function.cParams);
  std::wstring text;
  if (function.memid == DISPID_VALUE) {
    text += L"default ";
  } else if (function.memid == DISPID_NEWENUM) {
    text += L"enumerator ";
  }
  text.append(kindText(function)).append(name);
  for (UINT i = 0; i < parameters; ++i) {
    const std::wstring_view parameter = i + 1 < names.size() ? std::wstring_view(names[i + 1]) : L"?";
    text.append(i == 0 ? L"(" : L", ").append(parameterText(info, parameter, function.lprgelemdescParam[i]));
  }
  text += parameters > 0 ? L")" : L"";
  const ELEMDESC& result = isPut ? function.lprgelemdescParam[parameters] : function.elemdescFunc;
  if (result.tdesc.vt != VT_VOID && result.tdesc.vt != VT_HRESULT) {
    const TypeText type = typeText(info, result.tdesc);
    text.append(isPut && type.byReference ? L" As ByRef const " : L" As ").append(type.text);
  }
  return {std::move(text),
          std::move(name),
          std::move(help),
          function.memid,
          static_cast<WORD>(function.invkind),
          static_cast<std::size_t>(function.cParams)};
}

}  // namespace

ComPtr<ITypeLib> builtTypeLibrary() {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetModuleFileNameW(component(), path.data(), static_cast<DWORD>(path.size())));
  return automation::loadTypeLibrary(path);
}

LibraryType describeType(const ComPtr<ITypeInfo>& info) {
  auto [name, help] = automation::documentationOf(*info);
  const auto attributes = automation::attributesOf(*info);
  return {info,
          std::move(name),
          std::move(help),
          attributes->guid,
          attributes->typekind,
          attributes->wTypeFlags,
          attributes->cFuncs,
          attributes->cVars,
          attributes->cImplTypes};
}

std::vector<LibraryType> libraryTypes(TYPEKIND kind) {
  const auto library = builtTypeLibrary();
  std::vector<LibraryType> types;
  for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
    LibraryType type = describeType(automation::typeAt(*library, i));
    if (type.kind == kind) {
      types.push_back(std::move(type));
    }
  }
  return types;
}

std::vector<Implemented> implementedBy(const LibraryType& coclass) {
  std::vector<Implemented> result;
  for (UINT i = 0; i < coclass.implemented; ++i) {
    int flags = 0;
    check(coclass.info->GetImplTypeFlags(i, &flags));
    result.push_back({describeType(automation::implementedAt(*coclass.info, i)), flags});
  }
  return result;
}

std::vector<LibraryMember> membersOf(const LibraryType& type) {
  std::vector<LibraryMember> members;
  for (UINT i = 0; i < type.functions; ++i) {
    const auto function = automation::functionAt(*type.info, i);
    if ((function->wFuncFlags & FUNCFLAG_FRESTRICTED) == 0) {
      members.push_back(describeMember(*type.info, *function));
    }
  }
  return members;
}

std::vector<std::wstring> enumeratorsOf(const LibraryType& type) {
  std::vector<std::wstring> members;
  for (UINT i = 0; i < type.variables; ++i) {
    const auto variable = automation::variableAt(*type.info, i);
    const std::wstring name = automation::documentationOf(*type.info, variable->memid).name;
    members.push_back(name + L" = " + valueText(*variable->lpvarValue));
  }
  return members;
}

}  // namespace zeq::test
