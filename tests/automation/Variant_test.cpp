#include "automation/Variant.h"

#include <gmock/gmock.h>

#include "automation/ProbeObject.h"
#include "automation/Text.h"
#include "support/Leaks.h"

namespace zeq::automation {
namespace {

VARIANT reference(VARTYPE type, void* variable) {
  VARIANT value{};
  value.vt = static_cast<VARTYPE>(VT_BYREF | type);
  value.byref = variable;
  return value;
}

TEST(Text, IsCounted) {
  const Bstr withNul(std::wstring_view(L"a\0b", 3));
  EXPECT_EQ(withNul.view(), std::wstring_view(L"a\0b", 3));
  EXPECT_EQ(text(BSTR{nullptr}), L"");
  EXPECT_EQ(Bstr().view(), L"");
  const BSTR empty = newBstr(std::wstring_view());
  EXPECT_NE(empty, nullptr);
  SysFreeString(empty);
  EXPECT_THROW(static_cast<void>(text(static_cast<const BSTR*>(nullptr))), Error);
}

TEST(Text, AssignReplaces) {
  test::expectNoLeak(50, [] {
    BSTR target = nullptr;
    assign(&target, L"one");
    assign(&target, std::wstring(text(target)) + L" two");
    EXPECT_EQ(text(target), L"one two");
    SysFreeString(target);
  });
  EXPECT_THROW(assign(nullptr, L""), Error);
}

TEST(Text, FoldCase) {
  EXPECT_EQ(foldCase(L""), L"");
  EXPECT_EQ(foldCase(L"aZ09\u00e4\u0448\u03c9"), L"AZ09\u00c4\u0428\u03a9");
  EXPECT_EQ(foldCase(std::wstring_view(L"a\0b", 3)), std::wstring_view(L"A\0B", 3));
}

TEST(Variant, CopiesAreIndependent) {
  const Variant original(std::wstring_view(L"text"));
  Variant copied(original);
  EXPECT_NE(copied.get().bstrVal, original.get().bstrVal);
  const Variant moved(std::move(copied));
  EXPECT_EQ(text(moved.get().bstrVal), L"text");
  Variant assigned;
  assigned = moved;
  assigned = Variant(5L);
  EXPECT_EQ(assigned.get().lVal, 5);
  const VARIANT given = assigned.detach();
  EXPECT_EQ(given.vt, VT_I4);
  EXPECT_EQ(assigned.type(), VT_EMPTY);
}

TEST(Variant, ACopyOfAReferenceIsItsValue) {
  long number = 5;
  const Variant read(reference(VT_I4, &number));
  number = 6;
  EXPECT_EQ(read.type(), VT_I4);
  EXPECT_EQ(read.get().lVal, 5);
  const Variant inner(std::wstring_view(L"text"));
  const Variant copied(reference(VT_VARIANT, const_cast<VARIANT*>(&inner.get())));
  EXPECT_EQ(text(copied.get().bstrVal), L"text");
  for (const VARTYPE type : {VT_VARIANT, VT_BSTR, VT_I4, VT_DISPATCH}) {
    const VARIANT nowhere = reference(type, nullptr);
    EXPECT_THROW(Variant{nowhere}, Error);
    EXPECT_THROW(static_cast<void>(textOf(nowhere)), Error);
    EXPECT_THROW(Variant{reference(VT_VARIANT, const_cast<VARIANT*>(&nowhere))}, Error);
  }
}

TEST(Variant, Missing) {
  const Variant missing = Variant::missing();
  EXPECT_TRUE(isMissing(missing.get()));
  EXPECT_TRUE(isMissing(reference(VT_VARIANT, const_cast<VARIANT*>(&missing.get()))));
  EXPECT_FALSE(isMissing(Variant().get()));
  EXPECT_FALSE(isMissing(reference(VT_VARIANT, nullptr)));
  VARIANT otherError{};
  otherError.vt = VT_ERROR;
  otherError.scode = E_FAIL;
  EXPECT_FALSE(isMissing(otherError));
}

TEST(Variant, Conversions) {
  EXPECT_EQ(textOf(Variant(true).get()), L"True");
  EXPECT_EQ(textOf(Variant(false).get()), L"False");
  EXPECT_EQ(textOf(Variant().get()), L"");
  EXPECT_EQ(Variant(2.5).to(VT_I4).get().lVal, 2);
  EXPECT_EQ(Variant(-3.5).to(VT_I2).get().iVal, -4);
  EXPECT_EQ(Variant().to(VT_I4).get().lVal, 0);
  EXPECT_THROW(static_cast<void>(Variant::null().to(VT_I4)), Error);
  EXPECT_THROW(static_cast<void>(Variant(70000L).to(VT_I2)), Error);
  Variant same(std::wstring_view(L"12"));
  EXPECT_EQ(changeType(same.get(), same.get(), VT_I4), S_OK);
  EXPECT_EQ(same.get().lVal, 12);
  Variant kept(std::wstring_view(L"no number"));
  EXPECT_EQ(changeType(kept.get(), kept.get(), VT_I4), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(text(kept.get().bstrVal), L"no number");
  long number = 5;
  EXPECT_EQ(textOf(reference(VT_I4, &number)), L"5");
}

TEST(Variant, ObjectsInIt) {
  const auto object = test::ProbeObject::make();
  auto* const dispatch = static_cast<IDispatch*>(static_cast<_Probe*>(object.get()));
  Variant holder(dispatch);
  EXPECT_EQ(objectIn(holder.get()), dispatch);
  EXPECT_EQ(objectIn(reference(VT_VARIANT, &holder.get())), dispatch);
  EXPECT_EQ(objectIn(reference(VT_DISPATCH, &holder.get().pdispVal)), dispatch);
  EXPECT_EQ(objectIn(reference(VT_DISPATCH, nullptr)), nullptr);
  EXPECT_EQ(objectIn(reference(VT_VARIANT, nullptr)), nullptr);
  EXPECT_EQ(objectIn(Variant(5L).get()), nullptr);
  EXPECT_EQ(objectIn(Variant(static_cast<IDispatch*>(nullptr)).get()), nullptr);
  // Its default member wants an index, so that it has no value.
  EXPECT_EQ(changeType(holder.get(), holder.get(), VT_I4), DISP_E_TYPEMISMATCH);
  IDispatch* none = nullptr;
  EXPECT_THROW(static_cast<void>(textOf(Variant(none).get())), Error);
}

}  // namespace
}  // namespace zeq::automation
