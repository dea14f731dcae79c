// Objects that answer only by name: called by name, and taken for objects that implement an interface.

#include "automation/Adapter.h"

#include <dispex.h>
#include <gmock/gmock.h>

#include <array>
#include <functional>
#include <map>

#include "automation/ProbeObject.h"
#include "support/ClientObject.h"
#include "support/Component.h"
#include "support/Leaks.h"

namespace zeq::test {
namespace {

using automation::Error;
using automation::NamedCaller;
using automation::raising;

/// An object as a script makes it: no interface but IDispatch, no type information.
class ScriptObject final : public ClientObject<> {
 public:
  struct Call {
    WORD flags;
    DISPPARAMS* parameters;
    VARIANT* result;
    EXCEPINFO* exception;
    /// An argument in declaration order.
    [[nodiscard]] VARIANT& argument(UINT position) const {
      return parameters->rgvarg[parameters->cArgs - 1 - position];
    }
  };
  using Member = std::function<HRESULT(const Call&)>;

  [[nodiscard]] static ComPtr<ScriptObject> make() { return ComPtr<ScriptObject>::attach(new ScriptObject); }

  void add(const wchar_t* name, Member member) {
    names_[name] = static_cast<DISPID>(members_.size());
    members_.push_back(std::move(member));
  }

  STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override {
    const HRESULT result = ClientObject::QueryInterface(iid, object);
    if (FAILED(result)) {
      *object = reinterpret_cast<void*>(std::uintptr_t{0xBAD});  // What nobody may use or release.
    }
    return result;
  }
  STDMETHODIMP GetIDsOfNames(REFIID, wchar_t** names, UINT, LCID, DISPID* ids) noexcept override {
    const auto found = names_.find(names[0]);
    if (found == names_.end()) {
      return DISP_E_UNKNOWNNAME;
    }
    ids[0] = found->second;
    return S_OK;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* exception, UINT*) noexcept override {
    return members_.at(static_cast<std::size_t>(id))({flags, parameters, result, exception});
  }

 private:
  std::map<std::wstring, DISPID> names_;
  std::vector<Member> members_;
};

/// The same object as script hosts make it whose class instances leave the questions of IDispatch itself
/// unanswered: its members are found and called through IDispatchEx only.
class ExtendedObject final : public ClientObject<IDispatchEx> {
 public:
  [[nodiscard]] static ComPtr<IDispatch> of(const ComPtr<ScriptObject>& members) {
    return ComPtr<IDispatch>::attach(new ExtendedObject(members));
  }

  STDMETHODIMP GetIDsOfNames(REFIID, wchar_t**, UINT, LCID, DISPID*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                      UINT*) noexcept override {
    return E_NOTIMPL;
  }
  STDMETHODIMP GetDispID(BSTR name, DWORD flags, DISPID* id) noexcept override {
    EXPECT_EQ(flags, static_cast<DWORD>(fdexNameCaseInsensitive));
    return members_->GetIDsOfNames(IID_NULL, &name, 1, 0, id);
  }
  STDMETHODIMP InvokeEx(DISPID id, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                        EXCEPINFO* exception, IServiceProvider*) noexcept override {
    return members_->Invoke(id, IID_NULL, 0, flags, parameters, result, exception, nullptr);
  }
  STDMETHODIMP DeleteMemberByName(BSTR, DWORD) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP DeleteMemberByDispID(DISPID) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetMemberProperties(DISPID, DWORD, DWORD*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetMemberName(DISPID, BSTR*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetNextDispID(DWORD, DISPID, DISPID*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetNameSpaceParent(IUnknown**) noexcept override { return E_NOTIMPL; }

 private:
  explicit ExtendedObject(ComPtr<ScriptObject> members) noexcept : members_(std::move(members)) {}
  ComPtr<ScriptObject> members_;
};

HRESULT answer(const ScriptObject::Call& call, Variant value) {
  if (call.result != nullptr) {
    *call.result = value.detach();
  }
  return S_OK;
}

HRESULT failing(const ScriptObject::Call& call, HRESULT code, const wchar_t* description) {
  call.exception->scode = code;
  call.exception->bstrDescription = SysAllocString(description);
  return DISP_E_EXCEPTION;
}

HRESULT STDAPICALLTYPE fillInLater(EXCEPINFO* exception) {
  exception->scode = E_ABORT;
  exception->bstrDescription = SysAllocString(L"later");
  return S_OK;
}

class StepAdapter final : public automation::Adapter<StepAdapter, IProbeStep> {
 public:
  using Adapter::Adapter;
  STDMETHODIMP get_Caption(BSTR* result) noexcept override {
    return raising(result, [&] { return automation::textOf(caller().get(L"Caption").get()); });
  }
  STDMETHODIMP get_Level(long* result) noexcept override {
    return raising(result, [&] { return caller().get(L"Level").to(VT_I4).get().lVal; });
  }
  STDMETHODIMP put_Level(long value) noexcept override {
    return raising([&] { caller().put(L"Level", value); });
  }
  STDMETHODIMP Run(BSTR caption, VARIANT_BOOL permit, BSTR* next, IDispatch* helper,
                   enumProbe* result) noexcept override {
    return raising(result, [&] {
      const Variant outcome = caller().call(L"Run", caption, permit != VARIANT_FALSE, next, helper);
      return static_cast<enumProbe>(outcome.to(VT_I4).get().lVal);
    });
  }
};

/// An object that implements the interface itself.
class EarlyStep final : public automation::Object<EarlyStep, ::Probe, ::IProbeStep> {
 public:
  STDMETHODIMP get_Caption(BSTR* result) noexcept override {
    return raising(result, [] { return std::wstring_view(L"early"); });
  }
  STDMETHODIMP get_Level(long* result) noexcept override {
    return raising(result, [&] { return level_; });
  }
  STDMETHODIMP put_Level(long value) noexcept override {
    return raising([&] { level_ = value; });
  }
  STDMETHODIMP Run(BSTR, VARIANT_BOOL, BSTR*, IDispatch*, enumProbe* result) noexcept override {
    return raising(result, [] { return prbOne; });
  }

 private:
  long level_ = 10;
};

class AdapterTest : public testing::Test {
 protected:
  AdapterTest() {
    automation::registerAdapter<StepAdapter>();
    step->add(L"Level", [this](const ScriptObject::Call& call) {
      if ((call.flags & DISPATCH_PROPERTYPUT) != 0) {
        EXPECT_EQ(call.parameters->cNamedArgs, 1U);
        EXPECT_EQ(call.parameters->rgdispidNamedArgs[0], DISPID_PROPERTYPUT);
        level = call.argument(0).lVal;
        return S_OK;
      }
      EXPECT_EQ(call.flags, DISPATCH_PROPERTYGET);
      return answer(call,
                    Variant(std::wstring_view(std::to_wstring(level))));  // Scripts are loose about types.
    });
    step->add(L"Run", [this](const ScriptObject::Call& call) {
      EXPECT_EQ(call.flags, DISPATCH_METHOD);
      EXPECT_EQ(call.parameters->cArgs, 4U);
      EXPECT_EQ(automation::text(call.argument(0).bstrVal), L"the caption");
      EXPECT_EQ(call.argument(1).vt, VT_BOOL);
      EXPECT_EQ(call.argument(1).boolVal, VARIANT_TRUE);
      EXPECT_EQ(call.argument(2).vt, VT_BYREF | VT_BSTR);
      EXPECT_EQ(call.argument(3).pdispVal, dispatch.get());
      return onRun(call);
    });
  }

  long level = 1;
  std::function<HRESULT(const ScriptObject::Call&)> onRun = [](const ScriptObject::Call& call) {
    automation::assign(call.argument(2).pbstrVal,
                       std::wstring(automation::text(*call.argument(2).pbstrVal)) + L" next");
    return answer(call, Variant(2L));
  };
  ComPtr<ScriptObject> step = ScriptObject::make();
  Variant stepArgument{step.get()};
  ComPtr<ProbeObject> object = ProbeObject::make();
  ComPtr<IDispatch> dispatch{static_cast<_Probe*>(object.get())};
  Late probe{dispatch};
};

TEST_F(AdapterTest, AnObjectThatAnswersByNameServes) {
  Variant next(std::wstring_view(L"the"));
  const Outcome outcome = probe.call(L"RunStep", stepArgument, byRef(next));
  ASSERT_EQ(outcome.code, S_OK);
  EXPECT_EQ(outcome.value.get().lVal, 2);
  EXPECT_EQ(textIn(next), L"the next");
  EXPECT_EQ(probe.get(L"RaiseLevel", stepArgument).get().lVal, 2);
  EXPECT_EQ(level, 2);
  Variant variable(stepArgument);
  EXPECT_EQ(probe.get(L"RaiseLevel", byRef(variable)).get().lVal, 3);
  EXPECT_EQ(level, 3);
}

TEST_F(AdapterTest, AnObjectThatAnswersThroughTheExtendedInterfaceOnlyServes) {
  Variant extended(ExtendedObject::of(step).get());
  Variant next(std::wstring_view(L"the"));
  const Outcome outcome = probe.call(L"RunStep", extended, byRef(next));
  ASSERT_EQ(outcome.code, S_OK);
  EXPECT_EQ(outcome.value.get().lVal, 2);
  EXPECT_EQ(textIn(next), L"the next");
  EXPECT_EQ(probe.get(L"RaiseLevel", extended).get().lVal, 2);
  EXPECT_EQ(level, 2);
  const NamedCaller caller(extended.get().pdispVal);
  EXPECT_THROW(static_cast<void>(caller.get(L"Missing")), Error);
  // Clients that know IDispatch only reach its members through the adapter.
  const auto adapted = automation::adaptTo(__uuidof(IProbeStep), extended.get().pdispVal);
  const auto asDispatch = adapted.query<IDispatch>(IID_IDispatch);
  EXPECT_EQ(textIn(Late(asDispatch).invoke(L"Level", DISPATCH_PROPERTYGET, {}).value), L"2");
  std::array names{const_cast<wchar_t*>(L"Run"), const_cast<wchar_t*>(L"Caption")};
  std::array<DISPID, names.size()> ids{};
  EXPECT_EQ(asDispatch->GetIDsOfNames(IID_NULL, names.data(), 2, LOCALE_USER_DEFAULT, ids.data()),
            DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[1], DISPID_UNKNOWN);
}

TEST_F(AdapterTest, AnObjectThatImplementsTheInterfaceIsUsedDirectly) {
  const ComPtr<EarlyStep> early = EarlyStep::make();
  const Variant argument(static_cast<IDispatch*>(static_cast<IProbeStep*>(early.get())));
  EXPECT_EQ(probe.get(L"RaiseLevel", argument).get().lVal, 11);
  auto* const asStep = static_cast<IProbeStep*>(early.get());
  EXPECT_EQ(automation::adaptTo(__uuidof(IProbeStep), asStep).get(), asStep);
}

TEST_F(AdapterTest, ClientsGetTheirOwnObjectBack) {
  ASSERT_EQ(probe.invoke(L"Step", DISPATCH_PROPERTYPUTREF, {stepArgument.get()}).code, S_OK);
  EXPECT_EQ(probe.get(L"Step").get().pdispVal, step.get());
  Variant exchanged(static_cast<IDispatch*>(nullptr));
  ASSERT_EQ(probe.call(L"ExchangeStep", byRef(exchanged)).code, S_OK);
  EXPECT_EQ(exchanged.get().pdispVal, step.get());
  ASSERT_EQ(probe.call(L"ExchangeStep", byRef(exchanged)).code, S_OK);
  EXPECT_EQ(exchanged.get().pdispVal, nullptr);
  EXPECT_EQ(probe.get(L"Step").get().pdispVal, step.get());
  IDispatch* exact = nullptr;
  VARIANT reference{};
  reference.vt = VT_BYREF | VT_DISPATCH;
  reference.ppdispVal = &exact;
  ASSERT_EQ(probe.call(L"ExchangeStep", reference).code, S_OK);
  EXPECT_EQ(exact, step.get());
  exact->Release();
}

TEST_F(AdapterTest, FailuresOfTheObjectReachTheCaller) {
  onRun = [](const ScriptObject::Call& call) {
    return failing(call, static_cast<HRESULT>(0x800A0035), L"gone");
  };
  const Outcome outcome = probe.call(L"RunStep", stepArgument, Variant(std::wstring_view(L"")));
  EXPECT_EQ(outcome.code, DISP_E_EXCEPTION);
  EXPECT_EQ(outcome.scode, static_cast<HRESULT>(0x800A0035));
  onRun = [](const ScriptObject::Call&) { return E_NOTIMPL; };
  EXPECT_EQ(probe.call(L"RunStep", stepArgument, Variant(std::wstring_view(L""))).scode, E_NOTIMPL);
  onRun = [](const ScriptObject::Call& call) {
    return answer(call, Variant(std::wstring_view(L"no number")));
  };
  EXPECT_EQ(probe.call(L"RunStep", stepArgument, Variant(std::wstring_view(L""))).scode,
            static_cast<HRESULT>(0x800A000D));
  onRun = [](const ScriptObject::Call&) { return S_OK; };  // A procedure without a result.
  EXPECT_EQ(probe.get(L"RunStep", stepArgument, Variant(std::wstring_view(L""))).get().lVal, 0);
  const ComPtr<ScriptObject> bare = ScriptObject::make();
  EXPECT_EQ(probe.call(L"RaiseLevel", Variant(bare.get())).scode, static_cast<HRESULT>(0x800A01B6));
}

TEST_F(AdapterTest, TheAdapterIsAnObjectOfItsOwn) {
  const auto adapted = automation::adaptTo(__uuidof(IProbeStep), step.get());
  ASSERT_TRUE(adapted);
  const auto asStep = adapted.query<IProbeStep>();
  const auto asDispatch = adapted.query<IDispatch>(IID_IDispatch);
  const auto asUnknown = adapted.query<IUnknown>(IID_IUnknown);
  ASSERT_TRUE(asStep && asDispatch && asUnknown);
  EXPECT_EQ(asStep.query<IUnknown>(IID_IUnknown).get(), asUnknown.get());
  EXPECT_EQ(asDispatch.query<IUnknown>(IID_IUnknown).get(), asUnknown.get());
  EXPECT_EQ(asDispatch.query<IProbeStep>().get(), asStep.get());
  EXPECT_FALSE(adapted.query<IConnectionPoint>());
  EXPECT_EQ(adapted->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
  // Its members are those of the object that it stands for.
  level = 5;
  EXPECT_EQ(NamedCaller(asDispatch.get()).get(L"Level").to(VT_I4).get().lVal, 5);
  UINT count = 9;
  EXPECT_EQ(asDispatch->GetTypeInfoCount(&count), S_OK);
  EXPECT_EQ(count, 0U);
  EXPECT_EQ(automation::withoutAdapter(adapted.get()).get(), static_cast<IUnknown*>(step.get()));
  EXPECT_EQ(automation::withoutAdapter(step.get()).get(), static_cast<IUnknown*>(step.get()));
  EXPECT_EQ(automation::withoutAdapter(nullptr).get(), nullptr);
}

TEST_F(AdapterTest, OnlyInterfacesWithAnAdapterAreAdapted) {
  EXPECT_TRUE(automation::hasAdapter(__uuidof(IProbeStep)));
  EXPECT_FALSE(automation::hasAdapter(__uuidof(_Probe)));
  EXPECT_FALSE(automation::adaptTo(__uuidof(_Probe), step.get()));
  EXPECT_EQ(probe.call(L"EchoProbe", stepArgument).code, DISP_E_TYPEMISMATCH);
}

TEST_F(AdapterTest, NamedCallerReportsWhatTheObjectReports) {
  const auto codeOf = [](auto&& call) {
    try {
      call();
    } catch (const Error& error) {
      return std::make_pair(error.code(), error.description());
    }
    return std::make_pair(S_OK, std::wstring());
  };
  const auto script = ScriptObject::make();
  script->add(L"Raise",
              [](const ScriptObject::Call& call) { return failing(call, E_ACCESSDENIED, L"not you"); });
  script->add(L"OldStyle", [](const ScriptObject::Call& call) {
    call.exception->wCode = 9;
    return DISP_E_EXCEPTION;
  });
  script->add(L"Deferred", [](const ScriptObject::Call& call) {
    call.exception->pfnDeferredFillIn = &fillInLater;
    return DISP_E_EXCEPTION;
  });
  script->add(L"NotThatWay", [](const ScriptObject::Call&) { return DISP_E_MEMBERNOTFOUND; });
  script->add(L"Mismatch", [](const ScriptObject::Call&) { return DISP_E_TYPEMISMATCH; });
  const NamedCaller caller(script.get());
  EXPECT_EQ(codeOf([&] { caller.call(L"Raise"); }),
            std::make_pair(HRESULT{E_ACCESSDENIED}, std::wstring(L"not you")));
  EXPECT_EQ(codeOf([&] { caller.call(L"OldStyle"); }).first, static_cast<HRESULT>(0x800A0009));
  EXPECT_EQ(codeOf([&] { caller.call(L"Deferred"); }),
            std::make_pair(HRESULT{E_ABORT}, std::wstring(L"later")));
  EXPECT_EQ(codeOf([&] { caller.call(L"NotThatWay"); }).first, static_cast<HRESULT>(0x800A01B6));
  EXPECT_EQ(codeOf([&] { caller.call(L"Mismatch"); }).first, HRESULT{DISP_E_TYPEMISMATCH});
  EXPECT_EQ(codeOf([&] { caller.call(L"Absent"); }).first, static_cast<HRESULT>(0x800A01B6));
  EXPECT_EQ(codeOf([&] { NamedCaller(nullptr).call(L"Any"); }).first, static_cast<HRESULT>(0x800A005B));
}

/// Against the library's own late binding: every kind of argument there and, by reference, back.
TEST_F(AdapterTest, NamedCallerPassesEveryKindOfArgument) {
  const NamedCaller caller(dispatch.get());
  EXPECT_EQ(caller.call(L"EchoBoolean", true).get().boolVal, VARIANT_TRUE);
  EXPECT_EQ(caller.call(L"EchoShort", short{5}).get().iVal, 5);
  EXPECT_EQ(caller.call(L"EchoLong", 5L).get().lVal, 5);
  EXPECT_EQ(caller.call(L"EchoDouble", 2.5).get().dblVal, 2.5);
  EXPECT_EQ(textIn(caller.call(L"EchoText", Bstr(L"text"))), L"text");
  EXPECT_EQ(caller.call(L"EchoVariant", Variant(3L).get()).get().lVal, 3);
  EXPECT_EQ(caller.call(L"EchoObject", dispatch.get()).get().pdispVal, dispatch.get());
  VARIANT_BOOL flag = VARIANT_FALSE;
  caller.call(L"ChangeBoolean", &flag);
  EXPECT_EQ(flag, VARIANT_TRUE);
  long number = 4;
  caller.call(L"ChangeLong", &number);
  EXPECT_EQ(number, 5);
  double real = 1.5;
  caller.call(L"ChangeDouble", &real);
  EXPECT_EQ(real, 2.5);
  BSTR text = SysAllocString(L"a");
  caller.call(L"ChangeText", &text);
  EXPECT_EQ(automation::text(text), L"a!");
  SysFreeString(text);
  Variant any(std::wstring_view(L"b"));
  caller.call(L"ChangeVariant", &any.get());
  EXPECT_EQ(textIn(any), L"b!");
  IDispatch* other = nullptr;
  caller.call(L"ChangeObject", &other);
  EXPECT_EQ(other, dispatch.get());
  other->Release();
  caller.put(L"Text", Bstr(L"put"));
  EXPECT_EQ(textIn(caller.get(L"Text")), L"put");
  caller.put(L"Slot", Bstr(L"section"), 2L, Bstr(L"indexed"));
  EXPECT_EQ(textIn(caller.get(L"Slot", Bstr(L"section"), 2L)), L"indexed");
}

TEST_F(AdapterTest, NothingLeaks) {
  expectNoLeak(500, [this] {
    Variant next(std::wstring_view(L"the"));
    probe.call(L"RunStep", stepArgument, byRef(next));
    probe.call(L"RaiseLevel", stepArgument);
    probe.invoke(L"Step", DISPATCH_PROPERTYPUTREF, {stepArgument.get()});
    probe.call(L"Step");
    Variant exchanged(stepArgument);
    probe.call(L"ExchangeStep", byRef(exchanged));
    probe.invoke(L"Step", DISPATCH_PROPERTYPUTREF, {Variant(static_cast<IDispatch*>(nullptr)).get()});
    try {
      NamedCaller(step.get()).call(L"Absent");
    } catch (const Error&) {
    }
  });
}

}  // namespace
}  // namespace zeq::test
