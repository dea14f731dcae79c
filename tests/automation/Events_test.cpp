// Connection points and events, against the test interface's class.

#include "automation/Events.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>

#include "automation/ProbeObject.h"
#include "automation/TypeInfo.h"
#include "support/ClientObject.h"
#include "support/Component.h"
#include "support/Leaks.h"

namespace zeq::test {
namespace {

using testing::ElementsAre;

/// A sink that answers to no interface but the one given; events it ignores.
class PickySink final : public ClientObject<> {
 public:
  [[nodiscard]] static ComPtr<IUnknown> make(REFIID only) {
    return ComPtr<IUnknown>::attach(new PickySink(only));
  }

  STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override {
    if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, only_)) {
      *object = reinterpret_cast<void*>(std::uintptr_t{0xBAD});  // What nobody may use or release.
      return E_NOINTERFACE;
    }
    return ClientObject::QueryInterface(IID_IDispatch, object);
  }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO* exception,
                      UINT*) noexcept override {
    // A failure with everything that the caller has to free.
    exception->bstrSource = SysAllocString(L"the sink");
    exception->bstrDescription = SysAllocString(L"will not");
    exception->bstrHelpFile = SysAllocString(L"help");
    return DISP_E_EXCEPTION;
  }

 private:
  explicit PickySink(REFIID only) : only_(only) {}
  IID only_;
};

/// A sink that holds no reference to its source.
class Free final : public ClientObject<> {
 public:
  explicit Free(std::function<void()> call) : call_(std::move(call)) {}
  STDMETHODIMP QueryInterface(REFIID, void** object) noexcept override {
    return ClientObject::QueryInterface(IID_IDispatch, object);
  }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                      UINT*) noexcept override {
    call_();
    return S_OK;
  }

 private:
  std::function<void()> call_;
};

class EventsTest : public testing::Test {
 protected:
  using Arguments = std::vector<VARIANT*>;

  EventsTest() {
    container = ComPtr<_Probe>(object.get()).query<IConnectionPointContainer>();
    automation::check(container->FindConnectionPoint(__uuidof(__Probe), point.out()));
  }

  [[nodiscard]] std::unique_ptr<Sink> connect(Sink::Handler handler) const {
    return std::make_unique<Sink>(container.get(), __uuidof(__Probe), std::move(handler));
  }
  [[nodiscard]] std::unique_ptr<Sink> logging(std::wstring name) {
    return connect([this, name](DISPID, const Arguments&) {
      log.push_back(name);
      return S_OK;
    });
  }
  /// Raises an event without arguments.
  void raiseOne() const {
    Bstr text;
    BSTR raw = nullptr;
    Variant any;
    EXPECT_EQ(object->CallOut(&raw, &any.get(), text.out()), S_OK);
  }

  ComPtr<ProbeObject> object = ProbeObject::make();
  ComPtr<IConnectionPointContainer> container;
  ComPtr<IConnectionPoint> point;
  std::vector<std::wstring> log;
};

TEST_F(EventsTest, AnswersComeBackAndAreOneVariableForAllSinks) {
  const auto handler = [this](DISPID event, const Arguments& arguments) {
    EXPECT_EQ(event, 1);
    EXPECT_EQ(arguments.size(), 4U);
    EXPECT_EQ(arguments[0]->vt, VT_BYREF | VT_BOOL);
    EXPECT_EQ(arguments[1]->vt, VT_BYREF | VT_I4);
    EXPECT_EQ(arguments[2]->vt, VT_BYREF | VT_BSTR);
    EXPECT_EQ(arguments[3]->vt, VT_DISPATCH);
    EXPECT_EQ(arguments[3]->pdispVal, static_cast<_Probe*>(object.get()));
    *arguments[0]->pboolVal = VARIANT_TRUE;
    ++*arguments[1]->plVal;
    automation::assign(arguments[2]->pbstrVal,
                       std::wstring(automation::text(*arguments[2]->pbstrVal)) + L"+");
    return S_OK;
  };
  const auto one = connect(handler);
  const auto two = connect(handler);
  VARIANT_BOOL answer = VARIANT_FALSE;
  long count = 5;
  BSTR text = SysAllocString(L"t");
  EXPECT_EQ(object->Ask(&answer, &count, &text), S_OK);
  EXPECT_EQ(answer, VARIANT_TRUE);
  EXPECT_EQ(count, 7);
  EXPECT_EQ(automation::text(text), L"t++");
  SysFreeString(text);
}

TEST_F(EventsTest, WithoutSinksNothingHappens) {
  VARIANT_BOOL answer = VARIANT_FALSE;
  long count = 5;
  BSTR text = nullptr;
  EXPECT_EQ(object->Ask(&answer, &count, &text), S_OK);
  EXPECT_EQ(answer, VARIANT_FALSE);
}

TEST_F(EventsTest, AFailingSinkHarmsNobody) {
  const auto failing = PickySink::make(IID_IDispatch);
  DWORD cookie = 0;
  ASSERT_EQ(point->Advise(failing.get(), &cookie), S_OK);
  const auto plainFailure = connect([](DISPID, const Arguments&) { return E_FAIL; });
  const auto last = logging(L"last");
  raiseOne();
  EXPECT_THAT(log, ElementsAre(L"last"));
  expectNoLeak(200, [this] {
    log.clear();
    raiseOne();
  });
  EXPECT_EQ(point->Unadvise(cookie), S_OK);
}

TEST_F(EventsTest, ASinkMayDisconnectItself) {
  std::unique_ptr<Sink> one;
  one = connect([&](DISPID, const Arguments&) {
    log.emplace_back(L"one");
    one->disconnect();
    return S_OK;
  });
  const auto two = logging(L"two");
  raiseOne();
  raiseOne();
  EXPECT_THAT(log, ElementsAre(L"one", L"two", L"two"));
}

TEST_F(EventsTest, ASinkMayDisconnectAnother) {
  std::unique_ptr<Sink> second;
  const auto first = connect([&](DISPID, const Arguments&) {
    log.emplace_back(L"first");
    second->disconnect();
    return S_OK;
  });
  second = logging(L"second");
  const auto third = logging(L"third");
  raiseOne();
  EXPECT_THAT(log, ElementsAre(L"first", L"third"));
}

TEST_F(EventsTest, ASinkMayConnectAnother) {
  std::unique_ptr<Sink> added;
  const auto first = connect([&](DISPID, const Arguments&) {
    log.emplace_back(L"first");
    if (!added) {
      added = logging(L"added");
    }
    return S_OK;
  });
  raiseOne();
  EXPECT_THAT(log, ElementsAre(L"first"));  // It hears the next event.
  raiseOne();
  EXPECT_THAT(log, ElementsAre(L"first", L"first", L"added"));
}

TEST_F(EventsTest, ASinkMayRaiseTheEventAgain) {
  int depth = 0;
  const auto first = connect([&](DISPID, const Arguments&) {
    log.emplace_back(L"first");
    if (++depth == 1) {
      raiseOne();
    }
    return S_OK;
  });
  const auto second = logging(L"second");
  raiseOne();
  EXPECT_THAT(log, ElementsAre(L"first", L"first", L"second", L"second"));
}

TEST_F(EventsTest, TheLastReferenceMayGoDuringAnEvent) {
  const long before = automation::ModuleLock::count();
  _Probe* source = ComPtr<_Probe>(ProbeObject::make().get()).detach();
  const auto handler = [&] {
    log.emplace_back(L"called");
    if (_Probe* const last = std::exchange(source, nullptr)) {
      last->Release();
    }
  };
  Free one(handler);
  Free two(handler);
  {
    const auto itsContainer = ComPtr<_Probe>(source).query<IConnectionPointContainer>();
    ComPtr<IConnectionPoint> itsPoint;
    automation::check(itsContainer->FindConnectionPoint(__uuidof(__Probe), itsPoint.out()));
    DWORD cookie = 0;
    ASSERT_EQ(itsPoint->Advise(&one, &cookie), S_OK);
    ASSERT_EQ(itsPoint->Advise(&two, &cookie), S_OK);
  }
  EXPECT_EQ(one.references(), 2U);
  // Called by name, with no reference but the one that the handler releases.
  constexpr DISPID callOut = 92;
  VARIANT arguments[2]{};
  DISPPARAMS parameters{arguments, nullptr, 2, 0};
  Variant result;
  EXPECT_EQ(source->Invoke(callOut, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, result.out(),
                           nullptr, nullptr),
            S_OK);
  EXPECT_EQ(textIn(result), L",");
  EXPECT_THAT(log, ElementsAre(L"called", L"called"));
  EXPECT_EQ(one.references(), 1U);  // The object is gone, and its sinks with it.
  EXPECT_EQ(two.references(), 1U);
  EXPECT_EQ(automation::ModuleLock::count(), before);
}

TEST_F(EventsTest, Advise) {
  DWORD cookie = 7;
  EXPECT_EQ(point->Advise(nullptr, &cookie), E_POINTER);
  const auto byName = PickySink::make(IID_IDispatch);
  EXPECT_EQ(point->Advise(byName.get(), nullptr), E_POINTER);
  const auto byInterface = PickySink::make(__uuidof(__Probe));
  const auto neither = PickySink::make(IID_IPersist);
  DWORD first = 0;
  DWORD second = 0;
  EXPECT_EQ(point->Advise(byName.get(), &first), S_OK);
  EXPECT_EQ(point->Advise(byInterface.get(), &second), S_OK);
  EXPECT_NE(first, 0U);
  EXPECT_NE(second, 0U);
  EXPECT_NE(first, second);
  EXPECT_EQ(point->Advise(neither.get(), &cookie), CONNECT_E_CANNOTCONNECT);
  EXPECT_EQ(cookie, 0U);
  EXPECT_EQ(point->Unadvise(first), S_OK);
  EXPECT_EQ(point->Unadvise(first), CONNECT_E_NOCONNECTION);
  EXPECT_EQ(point->Unadvise(0), CONNECT_E_NOCONNECTION);
  EXPECT_EQ(point->Unadvise(12345), CONNECT_E_NOCONNECTION);
  DWORD third = 0;
  EXPECT_EQ(point->Advise(byName.get(), &third), S_OK);
  EXPECT_NE(third, first);
  EXPECT_NE(third, second);
  EXPECT_EQ(point->Unadvise(second), S_OK);
  EXPECT_EQ(point->Unadvise(third), S_OK);
}

TEST_F(EventsTest, Connections) {
  ComPtr<IEnumConnections> connections;
  ASSERT_EQ(point->EnumConnections(connections.out()), S_OK);
  CONNECTDATA data[3]{};
  ULONG fetched = 9;
  EXPECT_EQ(connections->Next(1, data, &fetched), S_FALSE);
  EXPECT_EQ(fetched, 0U);
  const auto one = PickySink::make(IID_IDispatch);
  const auto two = PickySink::make(IID_IDispatch);
  DWORD cookies[2]{};
  point->Advise(one.get(), &cookies[0]);
  point->Advise(two.get(), &cookies[1]);
  ASSERT_EQ(point->EnumConnections(connections.out()), S_OK);
  point->Unadvise(cookies[0]);  // The enumerator shows the connections as they were.
  EXPECT_EQ(connections->Next(3, data, &fetched), S_FALSE);
  ASSERT_EQ(fetched, 2U);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(data[i].dwCookie, cookies[i]);
    data[i].pUnk->Release();
  }
  point->Unadvise(cookies[1]);
  EXPECT_EQ(point->EnumConnections(nullptr), E_POINTER);
}

TEST_F(EventsTest, ConnectionPoints) {
  ComPtr<IEnumConnectionPoints> points;
  ASSERT_EQ(container->EnumConnectionPoints(points.out()), S_OK);
  IConnectionPoint* found[2]{};
  ULONG fetched = 0;
  EXPECT_EQ(points->Next(2, found, &fetched), S_FALSE);
  ASSERT_EQ(fetched, 1U);
  EXPECT_EQ(found[0], point.get());
  found[0]->Release();
  EXPECT_EQ(container->EnumConnectionPoints(nullptr), E_POINTER);
  ComPtr<IConnectionPoint> other;
  EXPECT_EQ(container->FindConnectionPoint(IID_IDispatch, other.out()), CONNECT_E_NOCONNECTION);
  EXPECT_FALSE(other);
  EXPECT_EQ(container->FindConnectionPoint(__uuidof(__Probe), nullptr), E_POINTER);
  IID events{};
  EXPECT_EQ(point->GetConnectionInterface(&events), S_OK);
  EXPECT_TRUE(IsEqualIID(events, __uuidof(__Probe)));
  EXPECT_EQ(point->GetConnectionInterface(nullptr), E_POINTER);
  ComPtr<IConnectionPointContainer> owner;
  EXPECT_EQ(point->GetConnectionPointContainer(owner.out()), S_OK);
  EXPECT_EQ(owner.get(), container.get());
  EXPECT_EQ(point->GetConnectionPointContainer(nullptr), E_POINTER);
}

TEST_F(EventsTest, AConnectionPointIsAnObjectOfItsOwn) {
  EXPECT_FALSE(point.query<IConnectionPointContainer>());
  EXPECT_FALSE(point.query<IDispatch>(IID_IDispatch));
  EXPECT_EQ(point.query<IUnknown>(IID_IUnknown).get(), static_cast<IUnknown*>(point.get()));
  EXPECT_NE(point.query<IUnknown>(IID_IUnknown).get(), container.query<IUnknown>(IID_IUnknown).get());
  EXPECT_EQ(point->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(EventsTest, ClassInformationNamesTheEvents) {
  const auto info = container.query<IProvideClassInfo2>(IID_IProvideClassInfo2);
  ASSERT_TRUE(info);
  GUID events{};
  EXPECT_EQ(info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events), S_OK);
  EXPECT_TRUE(IsEqualGUID(events, __uuidof(__Probe)));
  EXPECT_EQ(info->GetGUID(17, &events), E_INVALIDARG);
  EXPECT_EQ(info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, nullptr), E_POINTER);
  ComPtr<ITypeInfo> type;
  EXPECT_EQ(info->GetClassInfo(type.out()), S_OK);
  EXPECT_TRUE(IsEqualGUID(automation::attributesOf(*type)->guid, __uuidof(Probe)));
}

TEST_F(EventsTest, NothingLeaks) {
  const auto sink = PickySink::make(IID_IDispatch);
  expectNoLeak(500, [&] {
    DWORD cookie = 0;
    point->Advise(sink.get(), &cookie);
    ComPtr<IEnumConnections> connections;
    point->EnumConnections(connections.out());
    raiseOne();
    point->Unadvise(cookie);
    ComPtr<IEnumConnectionPoints> points;
    container->EnumConnectionPoints(points.out());
  });
}

}  // namespace
}  // namespace zeq::test
