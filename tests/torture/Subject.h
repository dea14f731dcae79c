#pragma once
// An object that a model foretells, called by name as scripts do.

#include <windows.h>

#include <string>
#include <utility>
#include <vector>

#include "support/Component.h"
#include "support/EventLog.h"
#include "torture/Random.h"

namespace zeq::torture {

/// For texts that are compared without regard to case.
[[nodiscard]] std::wstring lowerCase(std::wstring text);

class Subject {
 public:
  /// A new object of a class of the component.
  Subject(Random& random, std::string name, REFCLSID clsid);
  /// An object that another one handed out.
  Subject(Random& random, std::string name, IDispatch* object)
      : random_(random), name_(std::move(name)), object_(object) {}

  [[nodiscard]] IDispatch* dispatch() const noexcept { return object_.dispatch(); }
  [[nodiscard]] const test::Late& late() const noexcept { return object_; }

  /// Calls a member or gets a property. Each argument is passed in one of the forms that a client may choose:
  /// as a value, or by reference to a variable of its type or of any. Throws Violation if the call fails.
  template <class... Arguments>
  test::Variant call(const wchar_t* member, const Arguments&... arguments) const {
    return succeeded(member,
                     invoke(member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {test::asVariant(arguments)...}));
  }
  template <class... Arguments>
  void put(const wchar_t* member, const Arguments&... arguments) const {
    succeeded(member, invoke(member, DISPATCH_PROPERTYPUT, {test::asVariant(arguments)...}));
  }
  /// Calls a member that may refuse; the error, or S_OK.
  template <class... Arguments>
  HRESULT attempt(const wchar_t* member, const Arguments&... arguments) const {
    const test::Outcome outcome =
        invoke(member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {test::asVariant(arguments)...});
    return outcome.code == DISP_E_EXCEPTION ? outcome.scode : outcome.code;
  }

  /// Throws Violation unless the member gives that value.
  template <class Value, class... Arguments>
  void expect(const Value& wanted, const wchar_t* member, const Arguments&... arguments) const {
    expectSame(member, call(member, arguments...), test::asVariant(wanted));
  }
  /// Throws Violation unless both values have the same text.
  void expectSame(const wchar_t* what, const test::Variant& got, const test::Variant& wanted) const;

  /// All that the object's enumerator gives, as texts.
  [[nodiscard]] std::vector<std::wstring> items() const;

  /// Throws Violation.
  [[noreturn]] void fail(const wchar_t* member, const std::wstring& what) const;

 private:
  [[nodiscard]] test::Outcome invoke(const wchar_t* member, WORD flags,
                                     std::vector<test::Variant> variables) const;
  test::Variant succeeded(const wchar_t* member, test::Outcome outcome) const;

  Random& random_;
  std::string name_;
  test::Late object_;
};

}  // namespace zeq::torture
