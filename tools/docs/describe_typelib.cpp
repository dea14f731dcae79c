// Prints what a type library says, as JSON in UTF-8: the classes with their interfaces and events, the
// interfaces with their members, the enumerations with their values. The documentation is built from it.

#include <windows.h>
#include <oleauto.h>

#include <concepts>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "automation/Errors.h"
#include "automation/TypeInfo.h"
#include "automation/Variant.h"

namespace {

using namespace zeq::automation;

std::string utf8(std::wstring_view text) {
  std::string result(text.size() * 3, '\0');
  const int length = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                         result.data(), static_cast<int>(result.size()), nullptr, nullptr);
  result.resize(static_cast<std::size_t>(length));
  return result;
}

/// Writes JSON: values and containers in the order of the calls.
class Json {
 public:
  Json& key(std::string_view name) {
    separate();
    quote(name);
    out_ += ':';
    fresh_ = true;
    return *this;
  }
  Json& value(std::wstring_view text) {
    separate();
    quote(utf8(text));
    return *this;
  }
  Json& value(long number) {
    separate();
    out_ += std::to_string(number);
    return *this;
  }
  template <std::same_as<bool> Bool>
  Json& value(Bool flag) {
    separate();
    out_ += flag ? "true" : "false";
    return *this;
  }
  Json& open(char bracket) {
    separate();
    out_ += bracket;
    fresh_ = true;
    return *this;
  }
  Json& close(char bracket) {
    out_ += bracket;
    fresh_ = false;
    return *this;
  }
  [[nodiscard]] const std::string& text() const noexcept { return out_; }

 private:
  void separate() {
    if (!fresh_) {
      out_ += ',';
    }
    fresh_ = false;
  }
  void quote(std::string_view text) {
    out_ += '"';
    for (const char character : text) {
      if (character == '"' || character == '\\') {
        out_ += '\\';
      }
      out_ += character;
    }
    out_ += '"';
  }

  std::string out_;
  bool fresh_ = true;
};

const wchar_t* simpleTypeName(VARTYPE type) {
  switch (type) {
    case VT_I2:
      return L"Integer (16-bit)";
    case VT_I4:
    case VT_INT:
      return L"Long (32-bit)";
    case VT_R4:
      return L"Single";
    case VT_R8:
      return L"Double";
    case VT_BOOL:
      return L"Boolean";
    case VT_BSTR:
      return L"String";
    case VT_DATE:
      return L"Date";
    case VT_VARIANT:
      return L"Variant";
    case VT_DISPATCH:
      return L"Object";
    case VT_UNKNOWN:
      return L"Enumerator";
    case VT_UI4:
    case VT_UINT:
      return L"OLE_COLOR";
    default:
      return L"";
  }
}

/// The name of a type without its pointers; `depth` counts these.
std::wstring typeName(ITypeInfo& info, const TYPEDESC& type, int& depth) {
  if (type.vt == VT_PTR) {
    ++depth;
    return typeName(info, *type.lptdesc, depth);
  }
  if (type.vt != VT_USERDEFINED) {
    return simpleTypeName(type.vt);
  }
  const auto named = referredBy(info, type.hreftype);
  const TYPEKIND kind = attributesOf(*named)->typekind;
  if (kind == TKIND_INTERFACE || kind == TKIND_DISPATCH) {
    --depth;  // An object is a pointer already.
  }
  std::wstring name = documentationOf(*named).name;
  if (name == L"IDispatch") {
    return L"Object";
  }
  if (name == L"IUnknown") {
    return L"Enumerator";
  }
  return name.starts_with(L"_C") ? name.substr(1) : name;
}

void writeParameter(Json& json, ITypeInfo& info, const ELEMDESC& element, std::wstring_view name) {
  int depth = 0;
  const std::wstring type = typeName(info, element.tdesc, depth);
  const USHORT flags = element.paramdesc.wParamFlags;
  json.open('{').key("name").value(name).key("type").value(type);
  json.key("byRef").value(depth > 0).key("written").value(depth > 0 && (flags & PARAMFLAG_FOUT) != 0);
  json.key("optional").value((flags & PARAMFLAG_FOPT) != 0);
  if ((flags & PARAMFLAG_FHASDEFAULT) != 0) {
    const VARIANT& value = element.paramdesc.pparamdescex->varDefaultValue;
    const bool isNothing = isObjectType(value.vt);
    json.key("default").value(std::wstring_view(isNothing ? std::wstring(L"Nothing") : textOf(value)));
    json.key("defaultIsText").value(value.vt == VT_BSTR);
  }
  json.close('}');
}

void writeFunction(Json& json, ITypeInfo& info, const FUNCDESC& function) {
  const auto [name, help] = documentationOf(info, function.memid);
  const std::vector<std::wstring> names = namesOf(info, function);
  const wchar_t* kind = L"method";
  if (function.invkind == INVOKE_PROPERTYGET) {
    kind = L"get";
  } else if (function.invkind == INVOKE_PROPERTYPUT) {
    kind = L"put";
  } else if (function.invkind == INVOKE_PROPERTYPUTREF) {
    kind = L"set";
  }
  json.open('{').key("name").value(name).key("help").value(help).key("kind").value(std::wstring_view(kind));
  json.key("id").value(static_cast<long>(function.memid)).key("parameters").open('[');
  std::wstring result;
  for (SHORT i = 0; i < function.cParams; ++i) {
    const ELEMDESC& element = function.lprgelemdescParam[i];
    if ((element.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0) {
      int depth = 0;
      result = typeName(info, element.tdesc, depth);
      continue;
    }
    const auto index = static_cast<std::size_t>(i) + 1;
    writeParameter(json, info, element, index < names.size() ? names[index] : std::wstring(L"value"));
  }
  json.close(']').key("result").value(result).close('}');
}

void writeMembers(Json& json, ITypeInfo& described) {
  const auto info = vtableSideOf(described);
  const UINT count = attributesOf(*info)->cFuncs;
  json.key("members").open('[');
  for (UINT i = 0; i < count; ++i) {
    writeFunction(json, *info, *functionAt(*info, i));
  }
  json.close(']');
}

void writeEnumeration(Json& json, ITypeInfo& info, UINT count) {
  json.key("values").open('[');
  for (UINT i = 0; i < count; ++i) {
    const auto variable = variableAt(info, i);
    json.open('{').key("name").value(documentationOf(info, variable->memid).name);
    json.key("value").value(variable->lpvarValue->lVal).close('}');
  }
  json.close(']');
}

void writeImplemented(Json& json, ITypeInfo& info, UINT count) {
  json.key("implements").open('[');
  for (UINT i = 0; i < count; ++i) {
    INT flags = 0;
    check(info.GetImplTypeFlags(i, &flags));
    json.open('{').key("name").value(documentationOf(*implementedAt(info, i)).name);
    json.key("source").value((flags & IMPLTYPEFLAG_FSOURCE) != 0);
    json.key("default").value((flags & IMPLTYPEFLAG_FDEFAULT) != 0).close('}');
  }
  json.close(']');
}

void writeType(Json& json, ITypeInfo& info) {
  const auto [name, help] = documentationOf(info);
  const auto attributes = attributesOf(info);
  json.open('{').key("name").value(name).key("help").value(help);
  json.key("flags").value(static_cast<long>(attributes->wTypeFlags));
  switch (attributes->typekind) {
    case TKIND_ENUM:
      json.key("kind").value(std::wstring_view(L"enumeration"));
      writeEnumeration(json, info, attributes->cVars);
      break;
    case TKIND_COCLASS:
      json.key("kind").value(std::wstring_view(L"class"));
      writeImplemented(json, info, attributes->cImplTypes);
      break;
    case TKIND_ALIAS:
      json.key("kind").value(std::wstring_view(L"alias"));
      break;
    default:
      json.key("kind").value(std::wstring_view(L"interface"));
      writeMembers(json, info);
      break;
  }
  json.close('}');
}

void writeLibrary(Json& json, ITypeLib& library) {
  const auto [name, help] = documentationOf(library);
  json.open('{').key("name").value(name).key("help").value(help).key("types").open('[');
  for (UINT i = 0; i < library.GetTypeInfoCount(); ++i) {
    writeType(json, *typeAt(library, i));
  }
  json.close(']').close('}');
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc != 2) {
    std::fputs("usage: describe_typelib <type library or DLL>\n", stderr);
    return 2;
  }
  try {
    Json json;
    writeLibrary(json, *loadTypeLibrary(argv[1]));
    std::puts(json.text().c_str());
    return 0;
  } catch (const Error& error) {
    std::fprintf(stderr, "error 0x%08lX\n", static_cast<unsigned long>(error.code()));
    return 1;
  }
}
