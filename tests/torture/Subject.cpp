#include "torture/Subject.h"

#include <cstdio>
#include <cwctype>

#include "support/Printable.h"
#include "torture/Report.h"

namespace zeq::torture {
namespace {

using test::printable;
using test::Variant;

test::Late newObject(REFCLSID clsid) {
  automation::ComPtr<IDispatch> object;
  automation::check(test::classFactory(clsid)->CreateInstance(nullptr, IID_IDispatch, object.outVoid()));
  return test::Late(object);
}

/// An argument in one of its forms; the variable stays where it is.
VARIANT dressed(Random& random, Variant& variable) {
  const VARTYPE type = variable.type();
  const bool hasReference = type != VT_EMPTY && type != VT_NULL && type != VT_ERROR;
  switch (random.below(hasReference ? 3 : 1)) {
    case 1:
      return test::byRef(variable);
    case 2: {
      VARIANT argument;
      VariantInit(&argument);
      argument.vt = static_cast<VARTYPE>(VT_BYREF | type);
      argument.byref = &variable.get().byref;
      return argument;
    }
    default:
      return variable.get();
  }
}

}  // namespace

std::wstring lowerCase(std::wstring text) {
  for (wchar_t& character : text) {
    character = static_cast<wchar_t>(std::towlower(character));
  }
  return text;
}

Subject::Subject(Random& random, std::string name, REFCLSID clsid)
    : random_(random), name_(std::move(name)), object_(newObject(clsid)) {}

test::Outcome Subject::invoke(const wchar_t* member, WORD flags, std::vector<Variant> variables) const {
  setCurrent("model of " + name_ + ", " + printable(member));
  std::vector<VARIANT> arguments;
  for (Variant& variable : variables) {
    arguments.push_back(dressed(random_, variable));
  }
  return object_.invoke(member, flags, std::move(arguments));
}

Variant Subject::succeeded(const wchar_t* member, test::Outcome outcome) const {
  if (FAILED(outcome.code)) {
    char code[40];
    std::snprintf(code, sizeof code, "returned 0x%08lX (error 0x%08lX)",
                  static_cast<unsigned long>(outcome.code), static_cast<unsigned long>(outcome.scode));
    fail(member, std::wstring(code, code + std::char_traits<char>::length(code)));
  }
  return std::move(outcome.value);
}

void Subject::expectSame(const wchar_t* what, const Variant& got, const Variant& wanted) const {
  const std::wstring gotText = test::shown(got.get());
  const std::wstring wantedText = test::shown(wanted.get());
  if (gotText != wantedText) {
    fail(what, L"is \"" + gotText + L"\" and should be \"" + wantedText + L"\"");
  }
}

std::vector<std::wstring> Subject::items() const {
  const Variant unknown = call(L"NewEnum");
  const auto enumerator =
      automation::ComPtr<IUnknown>(unknown.get().punkVal).query<IEnumVARIANT>(IID_IEnumVARIANT);
  std::vector<std::wstring> found;
  Variant item;
  while (enumerator && enumerator->Next(1, item.out(), nullptr) == S_OK) {
    found.push_back(test::shown(item.get()));
  }
  return found;
}

void Subject::fail(const wchar_t* member, const std::wstring& what) const {
  throw Violation(name_ + "." + printable(member) + " " + printable(what));
}

}  // namespace zeq::torture
