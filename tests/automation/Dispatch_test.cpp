// Late binding through the test interface, whose members tell what reached them.

#include <gmock/gmock.h>

#include "automation/ProbeObject.h"
#include "support/ClientValue.h"
#include "support/Component.h"
#include "support/Leaks.h"

namespace zeq::test {
namespace {

VARIANT reference(VARTYPE type, void* variable) {
  VARIANT argument{};
  argument.vt = static_cast<VARTYPE>(VT_BYREF | type);
  argument.byref = variable;
  return argument;
}

VARIANT currency(LONGLONG tenThousandths) {
  VARIANT value{};
  value.vt = VT_CY;
  value.cyVal.int64 = tenThousandths;
  return value;
}

VARIANT date(double days) {
  VARIANT value{};
  value.vt = VT_DATE;
  value.date = days;
  return value;
}

VARIANT single(float number) {
  VARIANT value{};
  value.vt = VT_R4;
  value.fltVal = number;
  return value;
}

VARIANT byte(unsigned char number) {
  VARIANT value{};
  value.vt = VT_UI1;
  value.bVal = number;
  return value;
}

Variant string(std::wstring_view text) {
  return Variant(text);
}

class DispatchTest : public testing::Test {
 protected:
  ComPtr<ProbeObject> object = ProbeObject::make();
  ComPtr<IDispatch> dispatch{static_cast<_Probe*>(object.get())};
  Late probe{dispatch};

  [[nodiscard]] DISPID id(const wchar_t* name) const {
    auto* writable = const_cast<wchar_t*>(name);
    DISPID found = DISPID_UNKNOWN;
    EXPECT_EQ(dispatch->GetIDsOfNames(IID_NULL, &writable, 1, LOCALE_USER_DEFAULT, &found), S_OK) << name;
    return found;
  }

  /// Invoke itself, for what Late does not do.
  HRESULT invoke(const wchar_t* name, WORD flags, std::vector<VARIANT> listed, std::vector<DISPID> named = {},
                 VARIANT* result = nullptr, UINT* argumentError = nullptr) const {
    DISPPARAMS parameters{listed.data(), named.data(), static_cast<UINT>(listed.size()),
                          static_cast<UINT>(named.size())};
    return dispatch->Invoke(id(name), IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, result, nullptr,
                            argumentError);
  }

  void expectEcho(const wchar_t* name, const VARIANT& value) {
    const Outcome outcome = probe.call(name, value);
    ASSERT_EQ(outcome.code, S_OK) << name;
    EXPECT_EQ(outcome.value.type(), value.vt) << name;
    EXPECT_EQ(VarCmp(const_cast<VARIANT*>(&value), const_cast<VARIANT*>(&outcome.value.get()),
                     LOCALE_USER_DEFAULT, 0),
              static_cast<HRESULT>(VARCMP_EQ))
        << name;
    // The same as a script's variable.
    Variant variable(value);
    const Outcome again = probe.call(name, byRef(variable));
    ASSERT_EQ(again.code, S_OK) << name;
    EXPECT_EQ(again.value.type(), value.vt) << name;
  }

  /// Calls a Change member with a variable of exactly its type, with a script's variable, and with a plain
  /// value.
  void expectChange(const wchar_t* name, const VARIANT& before, const VARIANT& after) {
    const auto equals = [&](const VARIANT& seen) {
      return seen.vt == after.vt && VarCmp(const_cast<VARIANT*>(&seen), const_cast<VARIANT*>(&after),
                                           LOCALE_USER_DEFAULT, 0) == static_cast<HRESULT>(VARCMP_EQ);
    };
    Variant exact(before);
    EXPECT_EQ(probe.call(name, reference(before.vt, &exact.get().byref)).code, S_OK) << name;
    EXPECT_TRUE(equals(exact.get())) << name << " by exact reference";
    Variant variable(before);
    EXPECT_EQ(probe.call(name, byRef(variable)).code, S_OK) << name;
    EXPECT_TRUE(equals(variable.get())) << name << " by a script's variable";
    const Variant expression(before);
    const VARIANT passed = expression.get();
    EXPECT_EQ(probe.call(name, passed).code, S_OK) << name;
    EXPECT_EQ(VarCmp(const_cast<VARIANT*>(&passed), const_cast<VARIANT*>(&before), LOCALE_USER_DEFAULT, 0),
              static_cast<HRESULT>(VARCMP_EQ))
        << name << " leaves an expression alone";
  }
};

TEST_F(DispatchTest, EveryTypeByValue) {
  expectEcho(L"EchoByte", byte(200));
  expectEcho(L"EchoShort", Variant(short{-3}).get());
  expectEcho(L"EchoLong", Variant(-70000L).get());
  expectEcho(L"EchoSingle", single(1.5F));
  expectEcho(L"EchoDouble", Variant(-2.25).get());
  expectEcho(L"EchoBoolean", Variant(true).get());
  expectEcho(L"EchoText", string(L"text").get());
  expectEcho(L"EchoDate", date(40000.5));
  expectEcho(L"EchoCurrency", currency(-123456789012));
  expectEcho(L"EchoVariant", Variant(7L).get());
  expectEcho(L"EchoVariant", string(L"any").get());
  expectEcho(L"EchoEnum", Variant(2L).get());
}

TEST_F(DispatchTest, EveryTypeByReference) {
  expectChange(L"ChangeByte", byte(7), byte(8));
  expectChange(L"ChangeShort", Variant(short{7}).get(), Variant(short{8}).get());
  expectChange(L"ChangeLong", Variant(7L).get(), Variant(8L).get());
  expectChange(L"ChangeSingle", single(1.5F), single(2.5F));
  expectChange(L"ChangeDouble", Variant(1.5).get(), Variant(2.5).get());
  expectChange(L"ChangeBoolean", Variant(false).get(), Variant(true).get());
  expectChange(L"ChangeText", string(L"a").get(), string(L"a!").get());
  expectChange(L"ChangeDate", date(40000.5), date(40001.5));
  expectChange(L"ChangeCurrency", currency(5000), currency(15000));
  expectChange(L"ChangeEnum", Variant(1L).get(), Variant(2L).get());
}

TEST_F(DispatchTest, ObjectsByValue) {
  for (const wchar_t* name : {L"EchoObject", L"EchoProbe"}) {
    const Outcome outcome = probe.call(name, Variant(dispatch.get()));
    ASSERT_EQ(outcome.code, S_OK) << name;
    EXPECT_EQ(outcome.value.type(), VT_DISPATCH);
    EXPECT_EQ(outcome.value.get().pdispVal, dispatch.get());
    const Outcome nothing = probe.call(name, Variant(static_cast<IDispatch*>(nullptr)));
    ASSERT_EQ(nothing.code, S_OK) << name;
    EXPECT_EQ(nothing.value.type(), VT_DISPATCH);
    EXPECT_EQ(nothing.value.get().pdispVal, nullptr);
    VARIANT unknown{};
    unknown.vt = VT_UNKNOWN;
    unknown.punkVal = dispatch.get();
    EXPECT_EQ(probe.call(name, unknown).value.get().pdispVal, dispatch.get()) << name;
  }
  const Outcome outcome = probe.call(L"EchoUnknown", Variant(dispatch.get()));
  EXPECT_EQ(outcome.value.type(), VT_UNKNOWN);
}

TEST_F(DispatchTest, ObjectsByReference) {
  for (const wchar_t* name : {L"ChangeObject", L"ChangeProbe"}) {
    IDispatch* exact = nullptr;
    EXPECT_EQ(probe.call(name, reference(VT_DISPATCH, &exact)).code, S_OK) << name;
    EXPECT_EQ(exact, dispatch.get()) << name;
    EXPECT_EQ(probe.call(name, reference(VT_DISPATCH, &exact)).code, S_OK)
        << name;  // Releases what was there.
    exact->Release();
    Variant variable(static_cast<IDispatch*>(nullptr));
    EXPECT_EQ(probe.call(name, byRef(variable)).code, S_OK) << name;
    EXPECT_EQ(variable.type(), VT_DISPATCH);
    EXPECT_EQ(variable.get().pdispVal, dispatch.get()) << name;
    EXPECT_EQ(probe.call(name, Variant(dispatch.get())).code, S_OK) << name;
    IUnknown* other = nullptr;
    EXPECT_EQ(probe.call(name, reference(VT_UNKNOWN, &other)).code, S_OK) << name;
    EXPECT_EQ(other, dispatch.get()) << name;
    other->Release();
  }
  IUnknown* exact = nullptr;
  EXPECT_EQ(probe.call(L"ChangeUnknown", reference(VT_UNKNOWN, &exact)).code, S_OK);
  EXPECT_EQ(exact, dispatch.get());
  exact->Release();
}

TEST_F(DispatchTest, AReferenceOfAnotherTypeIsConvertedBothWays) {
  short small = 7;
  EXPECT_EQ(probe.call(L"ChangeLong", reference(VT_I2, &small)).code, S_OK);
  EXPECT_EQ(small, 8);
  double real = 1.0;
  EXPECT_EQ(probe.call(L"ChangeLong", reference(VT_R8, &real)).code, S_OK);
  EXPECT_EQ(real, 2.0);
  Bstr number(L"41");
  EXPECT_EQ(probe.call(L"ChangeLong", reference(VT_BSTR, number.out())).code,
            DISP_E_TYPEMISMATCH);  // Now empty.
  number = Bstr(L"41");
  BSTR raw = number.detach();
  EXPECT_EQ(probe.call(L"ChangeLong", reference(VT_BSTR, &raw)).code, S_OK);
  EXPECT_EQ(automation::text(raw), L"42");
  SysFreeString(raw);
  long whole = 5;
  const Outcome outcome = probe.call(L"ChangeText", reference(VT_I4, &whole));
  EXPECT_EQ(outcome.code, DISP_E_TYPEMISMATCH);  // "5!" is no number.
  EXPECT_EQ(outcome.argumentError, 0U);
  EXPECT_EQ(whole, 5);
  small = 32767;
  EXPECT_EQ(probe.call(L"ChangeLong", reference(VT_I2, &small)).code, DISP_E_OVERFLOW);
  EXPECT_EQ(small, 32767);
}

TEST_F(DispatchTest, AScriptsVariableGetsTheParametersType) {
  Variant variable(std::wstring_view(L"41"));
  EXPECT_EQ(probe.call(L"ChangeLong", byRef(variable)).code, S_OK);
  EXPECT_EQ(variable.type(), VT_I4);
  EXPECT_EQ(variable.get().lVal, 42);
  Variant empty;
  EXPECT_EQ(probe.call(L"ChangeText", byRef(empty)).code, S_OK);
  EXPECT_EQ(textIn(empty), L"!");
}

TEST_F(DispatchTest, AVariableThatRefersToAnotherStandsForIt) {
  VARIANT_BOOL answer = VARIANT_FALSE;
  Variant inner;  // As a script's event handler holds the argument of its caller.
  inner.get() = reference(VT_BOOL, &answer);
  EXPECT_EQ(probe.call(L"ChangeBoolean", byRef(inner)).code, S_OK);
  EXPECT_EQ(answer, VARIANT_TRUE);
  EXPECT_EQ(inner.type(), VT_BYREF | VT_BOOL);
  BSTR text = nullptr;
  Variant holder;
  holder.get() = reference(VT_BSTR, &text);
  EXPECT_EQ(probe.call(L"ChangeVariant", byRef(holder)).code, S_OK);
  EXPECT_EQ(automation::text(text), L"!");
  SysFreeString(text);
  Variant target(1L);
  Variant middle;
  middle.get() = byRef(target);
  EXPECT_EQ(probe.call(L"ChangeLong", byRef(middle)).code, S_OK);
  EXPECT_EQ(target.get().lVal, 2);
  EXPECT_EQ(textIn(probe.get(L"EchoText", byRef(middle))), L"2");
  Variant itself;
  itself.get() = byRef(itself);
  EXPECT_EQ(probe.call(L"ChangeLong", byRef(itself)).code, DISP_E_TYPEMISMATCH);
}

TEST_F(DispatchTest, ReadOnlyReferencesAreNeverWritten) {
  Variant text(std::wstring_view(L"12"));
  EXPECT_EQ(probe.get(L"ReadLong", byRef(text)).get().lVal, 12);
  EXPECT_EQ(textIn(text), L"12");
  Variant number(3L);
  EXPECT_EQ(textIn(probe.get(L"ReadText", byRef(number))), L"3");
  EXPECT_EQ(number.type(), VT_I4);
  const Variant plain(4L);
  EXPECT_EQ(textIn(probe.get(L"ReadText", plain)), L"4");
  BSTR exact = SysAllocString(L"exact");
  EXPECT_EQ(textIn(probe.get(L"ReadText", reference(VT_BSTR, &exact))), L"exact");
  SysFreeString(exact);
  Variant holder(dispatch.get());
  EXPECT_EQ(probe.get(L"ReadObject", byRef(holder)).get().pdispVal, dispatch.get());
  EXPECT_EQ(probe.get(L"ReadObject", holder).get().pdispVal, dispatch.get());
  EXPECT_EQ(probe.call(L"ReadObject", number).code, DISP_E_TYPEMISMATCH);
}

TEST_F(DispatchTest, AVariantByReferenceIsTheClientsOwn) {
  Variant variable(5L);
  EXPECT_EQ(probe.call(L"ChangeVariant", byRef(variable)).code, S_OK);
  EXPECT_EQ(textIn(variable), L"5!");
  EXPECT_EQ(textIn(probe.get(L"ReadVariant", byRef(variable))), std::to_wstring(VT_BSTR) + L":5!");
  EXPECT_EQ(textIn(probe.get(L"ReadVariant", Variant(5L))), std::to_wstring(VT_I4) + L":5");
  BSTR text = SysAllocString(L"typed");
  EXPECT_EQ(textIn(probe.get(L"ReadVariant", reference(VT_BSTR, &text))),
            std::to_wstring(VT_BSTR | VT_BYREF) + L":typed");
  EXPECT_EQ(probe.call(L"ChangeVariant", reference(VT_BSTR, &text)).code,
            S_OK);  // The type of the variable stays.
  EXPECT_EQ(automation::text(text), L"typed!");
  SysFreeString(text);
  long number = 5;
  EXPECT_EQ(probe.call(L"ChangeVariant", reference(VT_I4, &number)).code, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(number, 5);
}

TEST_F(DispatchTest, ArraysByReferenceAreWorkedOnInPlace) {
  SAFEARRAY* array = SafeArrayCreateVector(VT_VARIANT, 0, 2);
  LONG index = 0;
  Variant first(10L);
  SafeArrayPutElement(array, &index, &first.get());
  EXPECT_EQ(probe.call(L"ChangeVariant", reference(VT_ARRAY | VT_VARIANT, &array)).code, S_OK);
  Variant variable;
  variable.get().vt = VT_ARRAY | VT_VARIANT;
  variable.get().parray = array;
  EXPECT_EQ(probe.call(L"ChangeVariant", byRef(variable)).code, S_OK);
  EXPECT_EQ(variable.get().parray, array);
  Variant holder;  // A variable that refers to an array.
  holder.get() = reference(VT_ARRAY | VT_VARIANT, &array);
  EXPECT_EQ(probe.call(L"ChangeVariant", byRef(holder)).code, S_OK);
  Variant element;
  SafeArrayGetElement(array, &index, element.out());
  EXPECT_EQ(element.get().lVal, 13);
  EXPECT_EQ(probe.call(L"EchoText", byRef(variable)).code, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(probe.call(L"EchoText", reference(VT_ARRAY | VT_VARIANT, &array)).code, DISP_E_TYPEMISMATCH);
  const Outcome copied = probe.call(L"EchoVariant", reference(VT_ARRAY | VT_VARIANT, &array));
  EXPECT_EQ(copied.value.type(), VT_ARRAY | VT_VARIANT);
  EXPECT_NE(copied.value.get().parray, array);
}

TEST_F(DispatchTest, OptionalArgumentsGetTheirDefaults) {
  EXPECT_EQ(textIn(probe.get(L"Defaults")), L"7|True|dflt|2||0");
  const Variant missing = Variant::missing();
  EXPECT_EQ(textIn(probe.get(L"Defaults", missing, missing, missing, missing, missing, missing)),
            L"7|True|dflt|2||0");
  Variant missingVariable = Variant::missing();
  EXPECT_EQ(textIn(probe.get(L"Defaults", byRef(missingVariable), Variant(false))), L"7|False|dflt|2||0");
  EXPECT_EQ(
      textIn(probe.get(L"Defaults", Variant(1L), missing, string(L""), missing, string(L"t"), Variant(3L))),
      L"1|True||2|t|3");
  EXPECT_EQ(textIn(probe.get(L"Zeros")), L"0||nothing|missing|missing|0|");
  EXPECT_EQ(textIn(probe.get(L"Zeros", Variant(0.5), string(L"t"), Variant(dispatch.get()), Variant(1L),
                             Variant(2L), Variant(3L), string(L"w"))),
            L"0.5|t|object|1|2|3|w");
  Variant number(1L);
  Variant written;
  EXPECT_EQ(
      textIn(probe.get(L"Zeros", missing, missing, missing, missing, missing, byRef(number), byRef(written))),
      L"0||nothing|missing|missing|1|");
  EXPECT_EQ(number.get().lVal, 5);
  EXPECT_EQ(textIn(written), L"written");
  const Outcome outcome =
      probe.call(L"EchoVariant", missing);  // A required one of any type takes what comes.
  EXPECT_EQ(outcome.code, S_OK);
  EXPECT_TRUE(automation::isMissing(outcome.value.get()));
}

TEST_F(DispatchTest, NamedArguments) {
  Variant result;
  const Variant a(std::wstring_view(L"a"));
  const Variant b(std::wstring_view(L"b"));
  const Variant c(std::wstring_view(L"c"));
  EXPECT_EQ(invoke(L"Join", DISPATCH_METHOD, {c.get(), a.get(), b.get()}, {2, 0, 1}, result.out()), S_OK);
  EXPECT_EQ(textIn(result), L"a|b|c");
  EXPECT_EQ(invoke(L"Join", DISPATCH_METHOD, {b.get(), a.get()}, {1}, result.out()),
            S_OK);  // The second by name.
  EXPECT_EQ(textIn(result), L"a|b|");
  EXPECT_EQ(invoke(L"Join", DISPATCH_METHOD, {c.get(), b.get(), a.get()}, {2}, result.out()), S_OK);
  EXPECT_EQ(textIn(result), L"a|b|c");
  EXPECT_EQ(invoke(L"Defaults", DISPATCH_METHOD, {a.get()}, {2}, result.out()), S_OK);
  EXPECT_EQ(textIn(result), L"7|True|a|2||0");
  UINT argumentError = 99;
  EXPECT_EQ(invoke(L"Join", DISPATCH_METHOD, {a.get(), b.get()}, {0, 17}, nullptr, &argumentError),
            DISP_E_PARAMNOTFOUND);
  EXPECT_EQ(argumentError, 1U);
  EXPECT_EQ(invoke(L"Join", DISPATCH_METHOD, {a.get()}, {DISPID_PROPERTYPUT}, nullptr, &argumentError),
            DISP_E_PARAMNOTFOUND);
  EXPECT_EQ(argumentError, 0U);
  EXPECT_EQ(invoke(L"Join", DISPATCH_METHOD, {a.get(), b.get()}, {0, 0}), DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(invoke(L"Join", DISPATCH_METHOD, {a.get(), b.get()}, {0}), DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(invoke(L"Join", DISPATCH_METHOD, {c.get(), a.get()}, {2, 0}), DISP_E_PARAMNOTOPTIONAL);
}

TEST_F(DispatchTest, NamesOfMembersAndArguments) {
  wchar_t member[] = L"jOiN";
  wchar_t third[] = L"THIRD";
  wchar_t unknown[] = L"fourth";
  wchar_t* names[] = {member, third, unknown};
  DISPID ids[3] = {};
  EXPECT_EQ(dispatch->GetIDsOfNames(IID_NULL, names, 2, LOCALE_USER_DEFAULT, ids), S_OK);
  EXPECT_EQ(ids[0], 53);
  EXPECT_EQ(ids[1], 2);
  EXPECT_EQ(dispatch->GetIDsOfNames(IID_NULL, names, 3, LOCALE_USER_DEFAULT, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[0], 53);
  EXPECT_EQ(ids[1], 2);
  EXPECT_EQ(ids[2], DISPID_UNKNOWN);
  names[0] = unknown;
  EXPECT_EQ(dispatch->GetIDsOfNames(IID_NULL, names, 2, LOCALE_USER_DEFAULT, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[0], DISPID_UNKNOWN);
  EXPECT_EQ(ids[1], DISPID_UNKNOWN);
  EXPECT_EQ(dispatch->GetIDsOfNames(IID_IUnknown, names, 1, LOCALE_USER_DEFAULT, ids),
            DISP_E_UNKNOWNINTERFACE);
  names[0] = nullptr;
  EXPECT_EQ(dispatch->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(dispatch->GetIDsOfNames(IID_NULL, nullptr, 1, LOCALE_USER_DEFAULT, ids), E_INVALIDARG);
  EXPECT_EQ(dispatch->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, nullptr), E_INVALIDARG);
  wchar_t value[] = L"number";  // An argument of an indexed property, which its put names too.
  wchar_t slot[] = L"Slot";
  names[0] = slot;
  names[1] = value;
  EXPECT_EQ(dispatch->GetIDsOfNames(IID_NULL, names, 2, LOCALE_USER_DEFAULT, ids), S_OK);
  EXPECT_EQ(ids[1], 1);
}

/// Every name of the interface is found, and by the identifier that the platform's own lookup gives.
TEST_F(DispatchTest, NamesAgreeWithThePlatformsLookup) {
  ComPtr<ITypeInfo> info;
  ASSERT_EQ(dispatch->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.out()), S_OK);
  for (const wchar_t* name :
       {L"Item", L"NewEnum", L"EchoByte", L"zeros", L"SLOT", L"LastAssignment", L"RaiseLevel"}) {
    auto* writable = const_cast<wchar_t*>(name);
    DISPID theirs = DISPID_UNKNOWN;
    ASSERT_EQ(info->GetIDsOfNames(&writable, 1, &theirs), S_OK) << name;
    EXPECT_EQ(id(name), theirs) << name;
  }
}

TEST_F(DispatchTest, Properties) {
  EXPECT_EQ(probe.put(L"Text", string(L"new")).code, S_OK);
  EXPECT_EQ(textIn(probe.get(L"Text")), L"new");
  EXPECT_EQ(probe.put(L"Text", Variant(12L)).code, S_OK);
  EXPECT_EQ(textIn(probe.get(L"Text")), L"12");
  Variant variable(std::wstring_view(L"variable"));
  EXPECT_EQ(probe.put(L"Text", byRef(variable)).code, S_OK);
  EXPECT_EQ(textIn(probe.get(L"Text")), L"variable");
  EXPECT_EQ(probe.put(L"ReadOnly", Variant(1L)).code, DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(probe.invoke(L"Text", DISPATCH_METHOD).code, DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(probe.invoke(L"Join", DISPATCH_PROPERTYGET).code, DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(probe.invoke(L"Text", DISPATCH_PROPERTYPUTREF, {Variant(1L).get()}).code, DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(invoke(L"Text", DISPATCH_PROPERTYPUT, {}), DISP_E_PARAMNOTOPTIONAL);
}

TEST_F(DispatchTest, ObjectsAreAssignedEitherWay) {
  constexpr WORD both = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;
  const Variant other(dispatch.get());
  const Variant nothing(static_cast<IDispatch*>(nullptr));
  for (const wchar_t* name : {L"Companion", L"Other"}) {  // One has a putref only, the other a put only.
    for (const WORD flags : {WORD{DISPATCH_PROPERTYPUT}, WORD{DISPATCH_PROPERTYPUTREF}, both}) {
      EXPECT_EQ(probe.invoke(name, flags, {other.get()}).code, S_OK) << name << flags;
      EXPECT_EQ(probe.get(name).get().pdispVal, dispatch.get()) << name << flags;
      EXPECT_EQ(probe.invoke(name, flags, {nothing.get()}).code, S_OK) << name << flags;
      EXPECT_EQ(probe.get(name).get().pdispVal, nullptr) << name << flags;
      Variant variable(dispatch.get());
      EXPECT_EQ(probe.invoke(name, flags, {byRef(variable)}).code, S_OK) << name << flags;
      EXPECT_EQ(probe.invoke(name, flags, {nothing.get()}).code, S_OK) << name << flags;
    }
    EXPECT_EQ(probe.invoke(name, both, {Variant(1L).get()}).code, DISP_E_TYPEMISMATCH) << name;
  }
  const auto lastAssignment = [&] { return textIn(probe.get(L"LastAssignment")); };
  EXPECT_EQ(probe.invoke(L"Any", DISPATCH_PROPERTYPUT, {other.get()}).code, S_OK);
  EXPECT_EQ(lastAssignment(), L"put");
  EXPECT_EQ(probe.invoke(L"Any", DISPATCH_PROPERTYPUTREF, {other.get()}).code, S_OK);
  EXPECT_EQ(lastAssignment(), L"putref");
  EXPECT_EQ(probe.invoke(L"Any", both, {Variant(1L).get()}).code, S_OK);
  EXPECT_EQ(lastAssignment(), L"put");
  EXPECT_EQ(probe.invoke(L"Any", both, {nothing.get()}).code, S_OK);
  EXPECT_EQ(lastAssignment(), L"putref");
}

TEST_F(DispatchTest, IndexedProperties) {
  EXPECT_EQ(probe.put(L"Slot", string(L"s"), Variant(2L), string(L"two")).code, S_OK);
  EXPECT_EQ(probe.put(L"Slot", string(L"s"), string(L"one")).code, S_OK);  // The optional index left out.
  EXPECT_EQ(textIn(probe.get(L"Slot", string(L"s"), Variant(2L))), L"two");
  EXPECT_EQ(textIn(probe.get(L"Slot", string(L"s"))), L"one");
  const Variant three(std::wstring_view(L"three"));
  const Variant number(3L);
  const Variant section(std::wstring_view(L"s"));
  EXPECT_EQ(invoke(L"Slot", DISPATCH_PROPERTYPUT, {three.get(), number.get(), section.get()},
                   {DISPID_PROPERTYPUT, 1, 0}),
            S_OK);
  EXPECT_EQ(textIn(probe.get(L"Slot", section, number)), L"three");
  EXPECT_EQ(probe.put(L"Slot", string(L"only the value")).code, DISP_E_PARAMNOTOPTIONAL);
}

TEST_F(DispatchTest, TheDefaultMember) {
  std::vector<VARIANT> listed{Variant(30L).get(), Variant(3L).get()};
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{listed.data(), &put, 2, 1};
  EXPECT_EQ(dispatch->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &parameters,
                             nullptr, nullptr, nullptr),
            S_OK);
  EXPECT_EQ(probe.get(L"Item", Variant(3L)).get().lVal, 30);
  // The arguments of a property that takes none go to the default member of the object that it returns.
  const ComPtr<ProbeObject> other = ProbeObject::make();
  ASSERT_EQ(other->put_Item(4, 44), S_OK);
  ASSERT_EQ(object->putref_Companion(other.get()), S_OK);
  EXPECT_EQ(probe.get(L"Companion", Variant(4L)).get().lVal, 44);
  UINT argumentError = 99;
  EXPECT_EQ(invoke(L"Companion", DISPATCH_PROPERTYGET, {string(L"x").get()}, {}, nullptr, &argumentError),
            DISP_E_TYPEMISMATCH);
  EXPECT_EQ(argumentError, 0U);
  EXPECT_EQ(probe.call(L"Companion", Variant(4L), Variant(5L)).code, DISP_E_BADPARAMCOUNT);
  ASSERT_EQ(object->putref_Companion(nullptr), S_OK);
  EXPECT_EQ(probe.call(L"Companion", Variant(4L)).code, DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(probe.call(L"ReadOnly", Variant(4L)).code, DISP_E_BADPARAMCOUNT);
}

TEST_F(DispatchTest, TheEnumerator) {
  for (const WORD flags :
       {WORD{DISPATCH_PROPERTYGET}, WORD{DISPATCH_METHOD}, WORD{DISPATCH_METHOD | DISPATCH_PROPERTYGET}}) {
    DISPPARAMS none{};
    Variant result;
    ASSERT_EQ(dispatch->Invoke(DISPID_NEWENUM, IID_NULL, LOCALE_USER_DEFAULT, flags, &none, result.out(),
                               nullptr, nullptr),
              S_OK);
    ASSERT_EQ(result.type(), VT_UNKNOWN);
    EXPECT_TRUE(ComPtr<IUnknown>(result.get().punkVal).query<IEnumVARIANT>(IID_IEnumVARIANT));
  }
}

TEST_F(DispatchTest, Coercions) {
  EXPECT_EQ(probe.get(L"EchoLong", string(L" 12 ")).get().lVal, 12);
  EXPECT_EQ(probe.get(L"EchoLong", Variant(2.5)).get().lVal, 2);
  EXPECT_EQ(probe.get(L"EchoLong", Variant(3.5)).get().lVal, 4);
  EXPECT_EQ(probe.get(L"EchoLong", Variant(true)).get().lVal, -1);
  EXPECT_EQ(probe.get(L"EchoLong", Variant()).get().lVal, 0);
  EXPECT_EQ(textIn(probe.get(L"EchoText", Variant(true))), L"True");
  EXPECT_EQ(textIn(probe.get(L"EchoText", Variant(false))), L"False");
  EXPECT_EQ(textIn(probe.get(L"EchoText", Variant(-12L))), L"-12");
  EXPECT_EQ(textIn(probe.get(L"EchoText", Variant())), L"");
  EXPECT_EQ(probe.get(L"EchoBoolean", string(L"True")).get().boolVal, VARIANT_TRUE);
  EXPECT_EQ(probe.get(L"EchoBoolean", Variant(2L)).get().boolVal, VARIANT_TRUE);
  EXPECT_EQ(probe.get(L"EchoEnum", Variant(short{1})).get().lVal, 1);
  EXPECT_EQ(probe.get(L"EchoShort", string(L"-7")).get().iVal, -7);
  // An object stands for the value of its default member; this one's wants an index.
  EXPECT_EQ(probe.call(L"EchoLong", Variant(dispatch.get())).code, DISP_E_TYPEMISMATCH);
}

TEST_F(DispatchTest, CoercionsFollowTheLocale) {
  const auto asDouble = [&](const wchar_t* text, LCID locale) {
    Variant argument{std::wstring_view(text)};
    DISPPARAMS parameters{&argument.get(), nullptr, 1, 0};
    Variant result;
    EXPECT_EQ(dispatch->Invoke(id(L"EchoDouble"), IID_NULL, locale, DISPATCH_METHOD, &parameters,
                               result.out(), nullptr, nullptr),
              S_OK);
    return result.get().dblVal;
  };
  EXPECT_EQ(asDouble(L"1.5", MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT)), 1.5);
  EXPECT_EQ(asDouble(L"1,5", MAKELCID(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), SORT_DEFAULT)), 1.5);
}

TEST_F(DispatchTest, WrongArguments) {
  Outcome outcome = probe.call(L"Join", string(L"a"), Variant::null());
  EXPECT_EQ(outcome.code, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(outcome.argumentError, 0U);  // The index in the list, which is in reverse order.
  outcome = probe.call(L"Join", Variant::null(), string(L"b"));
  EXPECT_EQ(outcome.code, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(outcome.argumentError, 1U);
  outcome = probe.call(L"EchoLong", string(L"no number"));
  EXPECT_EQ(outcome.code, DISP_E_TYPEMISMATCH);
  outcome = probe.call(L"EchoShort", Variant(40000L));
  EXPECT_EQ(outcome.code, DISP_E_OVERFLOW);
  EXPECT_EQ(outcome.argumentError, 0U);
  outcome = probe.call(L"EchoLong", Variant(3e9));
  EXPECT_EQ(outcome.code, DISP_E_OVERFLOW);
  EXPECT_EQ(probe.call(L"EchoObject", Variant(5L)).code, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(probe.call(L"EchoObject", Variant()).code, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(probe.call(L"EchoObject", Variant::null()).code, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(probe.call(L"Join", string(L"a")).code, DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(probe.call(L"Join", string(L"a"), Variant::missing()).code, DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(probe.call(L"Join").code, DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(probe.call(L"Join", string(L"a"), string(L"b"), string(L"c"), string(L"d")).code,
            DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(probe.call(L"NoSuchMember").code, DISP_E_UNKNOWNNAME);
  ComPtr<IDispatch> collectionless(dispatch);
  EXPECT_EQ(probe.call(L"RunStep", Variant(dispatch.get()), string(L"")).code, DISP_E_TYPEMISMATCH);
}

TEST_F(DispatchTest, WrongCalls) {
  DISPPARAMS none{};
  const auto call = [&](DISPID member, REFIID reserved, DISPPARAMS* parameters) {
    return dispatch->Invoke(member, reserved, LOCALE_USER_DEFAULT, DISPATCH_METHOD, parameters, nullptr,
                            nullptr, nullptr);
  };
  EXPECT_EQ(call(12345, IID_NULL, &none), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(call(-12345, IID_NULL, &none), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(call(DISPID_UNKNOWN, IID_NULL, &none), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(call(15, IID_NULL, &none), DISP_E_MEMBERNOTFOUND);  // A gap between identifiers.
  EXPECT_EQ(call(0x60020000, IID_NULL, &none), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(call(53, IID_IDispatch, &none), DISP_E_UNKNOWNINTERFACE);
  EXPECT_EQ(call(53, IID_NULL, nullptr), E_INVALIDARG);
  DISPPARAMS noList{nullptr, nullptr, 2, 0};
  EXPECT_EQ(call(53, IID_NULL, &noList), E_INVALIDARG);
  Variant argument(1L);
  DISPPARAMS noNames{&argument.get(), nullptr, 1, 1};
  EXPECT_EQ(call(53, IID_NULL, &noNames), E_INVALIDARG);
  DISPID name = 0;
  DISPPARAMS moreNamesThanArguments{&argument.get(), &name, 0, 1};
  EXPECT_EQ(call(53, IID_NULL, &moreNamesThanArguments), DISP_E_BADPARAMCOUNT);
}

TEST_F(DispatchTest, NullReferencesAreMismatches) {
  for (const VARTYPE type : {VT_I4, VT_BSTR, VT_VARIANT, VT_DISPATCH, VT_BOOL}) {
    const VARIANT null = reference(type, nullptr);
    for (const wchar_t* name : {L"EchoLong", L"EchoVariant", L"ChangeLong", L"ChangeVariant", L"ChangeText",
                                L"ReadText", L"ReadObject", L"ReadVariant", L"EchoObject"}) {
      const Outcome outcome = probe.call(name, null);
      EXPECT_EQ(outcome.code, DISP_E_TYPEMISMATCH) << name << type;
      EXPECT_EQ(outcome.argumentError, 0U) << name << type;
    }
    EXPECT_EQ(probe.put(L"Text", null).code, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(probe.put(L"Companion", null).code,
              type == VT_DISPATCH ? DISP_E_TYPEMISMATCH : DISP_E_MEMBERNOTFOUND);
    Variant variable;
    variable.get() = null;
    EXPECT_EQ(probe.call(L"ChangeLong", byRef(variable)).code, DISP_E_TYPEMISMATCH);
  }
}

TEST_F(DispatchTest, NoRoomForAnswersIsNoError) {
  const Variant text(std::wstring_view(L"text"));
  EXPECT_EQ(invoke(L"EchoText", DISPATCH_METHOD, {text.get()}), S_OK);
  EXPECT_EQ(invoke(L"EchoVariant", DISPATCH_METHOD, {text.get()}), S_OK);
  EXPECT_EQ(invoke(L"EchoLong", DISPATCH_METHOD, {text.get()}), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(invoke(L"Fail", DISPATCH_METHOD, {Variant(5L).get()}), S_OK);  // A code of success is none.
  EXPECT_EQ(invoke(L"Fail", DISPATCH_METHOD, {Variant(static_cast<long>(E_FAIL)).get()}), DISP_E_EXCEPTION);
  EXPECT_EQ(invoke(L"Join", DISPATCH_METHOD, {text.get()}, {9}), DISP_E_PARAMNOTFOUND);
}

TEST_F(DispatchTest, TextsAreCounted) {
  const std::wstring_view withNul(L"a\0b\0", 4);
  EXPECT_EQ(textIn(probe.get(L"EchoText", Variant(withNul))), withNul);
  EXPECT_EQ(textIn(probe.get(L"ReadText", Variant(withNul))), withNul);
  Variant variable(withNul);
  EXPECT_EQ(probe.call(L"ChangeText", byRef(variable)).code, S_OK);
  EXPECT_EQ(textIn(variable), std::wstring(withNul) + L"!");
  const std::wstring huge(10'000'000, L'x');
  EXPECT_EQ(textIn(probe.get(L"EchoText", Variant(huge))), huge);
  BSTR none = nullptr;  // A null string is the empty text.
  EXPECT_EQ(textIn(probe.get(L"ReadText", reference(VT_BSTR, &none))), L"");
  VARIANT empty{};
  empty.vt = VT_BSTR;
  EXPECT_EQ(textIn(probe.get(L"EchoText", empty)), L"");
}

TEST_F(DispatchTest, FailuresReachTheClient) {
  const Outcome outcome = probe.call(L"Fail", Variant(static_cast<long>(0x800A0035)));
  EXPECT_EQ(outcome.code, DISP_E_EXCEPTION);
  EXPECT_EQ(outcome.scode, static_cast<HRESULT>(0x800A0035));
  EXPECT_EQ(outcome.description, L"File not found");
  const Outcome own =
      probe.call(L"FailWithText", Variant(static_cast<long>(0x80040123)), string(L"my own text"));
  EXPECT_EQ(own.code, DISP_E_EXCEPTION);
  EXPECT_EQ(own.scode, static_cast<HRESULT>(0x80040123));
  EXPECT_EQ(own.description, L"my own text");
  const struct {
    long kind;
    DWORD scode;
    const wchar_t* description;
  } thrown[] = {{1, 0x800A0046, L"Permission denied"},
                {2, 0x800A0006, L"Overflow"},
                {3, 0x800A0007, L"Out of memory"},
                {4, 0x800A0033, L"Internal error"},
                {5, 0x800A0033, L"Internal error"}};
  for (const auto& each : thrown) {
    const Outcome failed = probe.call(L"Throw", Variant(each.kind));
    EXPECT_EQ(failed.code, DISP_E_EXCEPTION) << each.kind;
    EXPECT_EQ(failed.scode, static_cast<HRESULT>(each.scode)) << each.kind;
    EXPECT_EQ(failed.description, each.description) << each.kind;
  }
}

TEST_F(DispatchTest, ExceptionsNameTheirSource) {
  Variant code(static_cast<long>(0x800A0035));
  DISPPARAMS parameters{&code.get(), nullptr, 1, 0};
  EXCEPINFO exception{};
  EXPECT_EQ(dispatch->Invoke(id(L"Fail"), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                             nullptr, &exception, nullptr),
            DISP_E_EXCEPTION);
  EXPECT_EQ(automation::text(exception.bstrSource), L"ZEQUtility2");
  EXPECT_EQ(exception.wCode, 0);
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  ComPtr<IErrorInfo> left;
  EXPECT_EQ(GetErrorInfo(0, left.out()), S_FALSE);  // The engine took it.
}

TEST_F(DispatchTest, AMemberWithoutErrorInformationFailsWithItsCode) {
  const Outcome outcome = probe.call(L"FailSilently", Variant(static_cast<long>(E_ACCESSDENIED)));
  EXPECT_EQ(outcome.code, DISP_E_EXCEPTION);
  EXPECT_EQ(outcome.scode, E_ACCESSDENIED);
  EXPECT_EQ(outcome.value.type(), VT_EMPTY);
}

TEST_F(DispatchTest, LongArgumentLists) {
  std::vector<VARIANT> sixteen;
  for (long i = 1; i <= 16; ++i) {
    sixteen.push_back(Variant(i).get());
  }
  Outcome outcome = probe.invoke(L"Sixteen", DISPATCH_METHOD, sixteen);
  ASSERT_EQ(outcome.code, S_OK);
  EXPECT_EQ(textIn(outcome.value), L"1|2|3|4|5|6|7|8|9|10|11|12|13|14|15|16");
  sixteen.push_back(Variant(17L).get());
  EXPECT_EQ(probe.invoke(L"Sixteen", DISPATCH_METHOD, sixteen).code, DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(
      textIn(probe.get(L"FourVariants", Variant(1L), string(L"two"), Variant(2.5), Variant(dispatch.get()))),
      L"1|two|2.5|object");
  outcome = probe.call(L"Mixed", single(1.5F), Variant(-2L), Variant(3.25), Variant(true), currency(40000),
                       Variant(5L), string(L"six"), single(-7.5F), Variant(short{-8}), Variant(9.0));
  ASSERT_EQ(outcome.code, S_OK);
  EXPECT_EQ(textIn(outcome.value), L"1.5|-2|3.25|True|40000|5|six|-7.5|-8|9");
}

/// Where arguments have the very types of the parameters, the platform's own Invoke does the same.
TEST_F(DispatchTest, AgreesWithThePlatformsInvoke) {
  ComPtr<ITypeInfo> info;
  ASSERT_EQ(dispatch->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.out()), S_OK);
  const struct {
    const wchar_t* name;
    std::vector<Variant> arguments;
  } calls[] = {
      {L"EchoShort", {Variant(short{5})}},
      {L"EchoLong", {Variant(5L)}},
      {L"EchoLong", {string(L"5")}},
      {L"EchoLong", {string(L"five")}},
      {L"EchoShort", {Variant(70000L)}},
      {L"EchoDouble", {Variant(2.5)}},
      {L"EchoBoolean", {Variant(true)}},
      {L"EchoText", {string(L"text")}},
      {L"EchoText", {Variant(2.5)}},
      {L"EchoVariant", {Variant(2.5)}},
      {L"EchoVariant", {string(L"text")}},
      {L"EchoEnum", {Variant(2L)}},
      {L"Join", {string(L"a"), string(L"b"), string(L"c")}},
      {L"Join", {string(L"a"), string(L"b"), string(L"c"), string(L"d")}},
      {L"FourVariants", {Variant(1L), string(L"b"), Variant(2.5), Variant()}},
      {L"Mixed",
       {Variant(single(1.5F)), Variant(2L), Variant(3.5), Variant(true), Variant(currency(5)), Variant(6L),
        string(L"7"), Variant(single(8.5F)), Variant(short{9}), Variant(date(10.5))}},
      {L"Fail", {Variant(static_cast<long>(0x800A0035))}},
      {L"FailSilently", {Variant(static_cast<long>(E_FAIL))}},
  };
  for (const auto& [name, arguments] : calls) {
    std::vector<VARIANT> listed;
    for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument) {
      listed.push_back(argument->get());
    }
    DISPPARAMS parameters{listed.data(), nullptr, static_cast<UINT>(listed.size()), 0};
    Variant ours;
    Variant theirs;
    EXCEPINFO ourException{};
    EXCEPINFO theirException{};
    const HRESULT ourOutcome = dispatch->Invoke(id(name), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                                &parameters, ours.out(), &ourException, nullptr);
    const HRESULT theirOutcome = info->Invoke(object.get(), id(name), DISPATCH_METHOD, &parameters,
                                              theirs.out(), &theirException, nullptr);
    EXPECT_EQ(ourOutcome, theirOutcome) << name;
    EXPECT_EQ(ourException.scode, theirException.scode) << name;
    EXPECT_EQ(automation::text(ourException.bstrDescription),
              automation::text(theirException.bstrDescription))
        << name;
    for (EXCEPINFO* exception : {&ourException, &theirException}) {
      SysFreeString(exception->bstrSource);
      SysFreeString(exception->bstrDescription);
      SysFreeString(exception->bstrHelpFile);
    }
    if (ourOutcome == S_OK && theirOutcome == S_OK) {
      EXPECT_EQ(ours.type(), theirs.type()) << name;
      EXPECT_EQ(automation::textOf(ours.get()), automation::textOf(theirs.get())) << name;
    }
  }
}

TEST_F(DispatchTest, InterfacesThatCannotBeCalledAreRefused) {
  const auto infoOf = [](REFGUID id) { return automation::typeInfo(id); };
  EXPECT_THROW(automation::DispatchTable{infoOf(__uuidof(ITooManyParameters))}, automation::Error);
  EXPECT_THROW(automation::DispatchTable{infoOf(__uuidof(INotPassable))}, automation::Error);
}

TEST_F(DispatchTest, AVariableMayChangeWhileItsMemberRuns) {
  Variant text(std::wstring_view(L"before"));
  Variant any(std::wstring_view(L"any"));
  const Sink sink(dispatch.get(), __uuidof(__Probe), [&](DISPID, const std::vector<VARIANT*>&) {
    text = Variant(std::wstring_view(L"changed"));
    any = Variant(1L);
    return S_OK;
  });
  EXPECT_EQ(textIn(probe.get(L"CallOut", byRef(text), byRef(any))), L"before,any");
  EXPECT_EQ(textIn(text), L"changed");
  EXPECT_EQ(any.get().lVal, 1);
}

TEST_F(DispatchTest, AWrittenVariableMayBeClearedWhileItsMemberRuns) {
  Variant answer(false);
  Variant count(1L);
  Variant text(std::wstring_view(L"text"));
  const Sink sink(dispatch.get(), __uuidof(__Probe), [&](DISPID, const std::vector<VARIANT*>& arguments) {
    text = Variant();
    *arguments[1]->plVal = 9;
    return S_OK;
  });
  EXPECT_EQ(probe.call(L"Ask", byRef(answer), byRef(count), byRef(text)).code, S_OK);
  EXPECT_EQ(count.get().lVal, 9);
  EXPECT_EQ(textIn(text), L"text");
}

TEST_F(DispatchTest, AnArgumentsObjectMayReleaseTheObjectThatIsCalled) {
  bool isGone = false;
  auto only = ComPtr<IDispatch>::attach(static_cast<_Probe*>(ProbeObject::make().detach()));
  EXPECT_EQ(
      Late(only).put(L"Other", ClientValue::make([] { return Variant(); }, [&] { isGone = true; })).code,
      S_OK);
  Variant text = ClientValue::make([&] {
    only.reset();
    EXPECT_FALSE(isGone) << "while it is called";
    return Variant(L"text");
  });
  DISPPARAMS parameters{&text.get(), nullptr, 1, 0};
  Variant result;
  EXPECT_EQ(only->Invoke(id(L"EchoText"), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                         result.out(), nullptr, nullptr),
            S_OK);
  EXPECT_EQ(textIn(result), L"text");
  EXPECT_TRUE(isGone);
}

TEST_F(DispatchTest, NothingLeaks) {
  expectNoLeak(500, [this] {
    Variant text(std::wstring_view(L"text"));
    Variant number(1L);
    Variant array;
    array.get().vt = VT_ARRAY | VT_VARIANT;
    array.get().parray = SafeArrayCreateVector(VT_VARIANT, 0, 1);
    Variant nothing(static_cast<IDispatch*>(nullptr));
    BSTR exact = SysAllocString(L"5");
    probe.call(L"ChangeText", byRef(text));
    probe.call(L"ChangeText", byRef(number));
    probe.call(L"ChangeText", text);
    probe.call(L"ChangeLong", reference(VT_BSTR, &exact));
    probe.call(L"ChangeVariant", reference(VT_BSTR, &exact));
    probe.call(L"ChangeVariant", byRef(array));
    probe.call(L"ChangeVariant", array);
    probe.call(L"ChangeObject", byRef(nothing));
    probe.call(L"ChangeProbe", byRef(nothing));
    probe.call(L"EchoVariant", byRef(array));
    probe.call(L"EchoText", Variant(12L));
    probe.call(L"EchoObject", byRef(nothing));
    probe.call(L"Defaults", Variant(1L), Variant::null());
    probe.call(L"Zeros");
    probe.call(L"Join", string(L"a"), Variant::null());
    probe.call(L"Fail", Variant(static_cast<long>(E_FAIL)));
    probe.call(L"FailSilently", Variant(static_cast<long>(E_FAIL)));
    probe.call(L"Throw", Variant(5L));
    invoke(L"EchoVariant", DISPATCH_METHOD, {text.get()});
    SysFreeString(exact);
  });
}

}  // namespace
}  // namespace zeq::test
