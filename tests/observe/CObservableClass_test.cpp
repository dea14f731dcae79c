#include <gmock/gmock.h>

#include <limits>

#include "support/ClientValue.h"
#include "support/Component.h"
#include "support/EventLog.h"
#include "support/Leaks.h"

namespace zeq::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const EventLog::Names eventNames{{1, L"PropertyChange"}, {2, L"Creating"},      {3, L"Clearing"},
                                 {4, L"Cloning"},        {5, L"BatchUpdating"}, {6, L"Enumerating"}};

using PropertyCall = HRESULT (STDMETHODCALLTYPE _CObservableClass::*)(VARIANT*, BSTR, VARIANT, VARIANT_BOOL*);
constexpr PropertyCall simple = &_CObservableClass::SimplePropertyUpdate;
constexpr PropertyCall update = &_CObservableClass::UpdateDirtyProperty;
constexpr PropertyCall check = &_CObservableClass::CheckDirtyProperty;

Variant ofType(VARTYPE type, long long bits = 0) {
  Variant value;
  value.get().vt = type;
  value.get().llVal = bits;
  return value;
}

Variant decimal(double number) {
  Variant value;
  VarDecFromR8(number, &value.get().decVal);
  value.get().vt = VT_DECIMAL;
  return value;
}

Variant array(long element) {
  SAFEARRAY* elements = SafeArrayCreateVector(VT_I4, 0, 1);
  LONG at = 0;
  SafeArrayPutElement(elements, &at, &element);
  Variant value;
  value.get().vt = VT_ARRAY | VT_I4;
  value.get().parray = elements;
  return value;
}

class CObservableClassTest : public testing::Test {
 protected:
  bool call(PropertyCall member, VARIANT& property, const VARIANT& value) {
    const Bstr name(L"Size");
    VARIANT_BOOL result = 1;
    EXPECT_EQ((observable.get()->*member)(&property, name.get(), value, &result), S_OK);
    return result == VARIANT_TRUE;
  }
  bool call(PropertyCall member, Variant& property, const Variant& value) {
    return call(member, property.get(), value.get());
  }
  /// Whether two values count as different.
  bool differs(const Variant& stored, const Variant& value) {
    Variant property(stored);
    const bool answer = call(check, property, value);
    EXPECT_EQ(property.type(), stored.type());
    Variant updated(stored);
    EXPECT_EQ(call(update, updated, value), answer);
    return answer;
  }
  void push(PropertyChangeMode mode) { EXPECT_EQ(observable->PushPropertyChangeMode(mode), S_OK); }
  PropertyChangeMode pop() {
    PropertyChangeMode mode{};
    EXPECT_EQ(observable->PopPropertyChangeMode(&mode), S_OK);
    return mode;
  }
  PropertyChangeMode mode() {
    PropertyChangeMode current{};
    EXPECT_EQ(observable->get_PropertyChangeMode(&current), S_OK);
    return current;
  }

  ComPtr<_CObservableClass> observable = create<CObservableClass, _CObservableClass>();
  EventLog log{observable, __uuidof(__CObservableClass), eventNames};
};

// The three property calls.

TEST_F(CObservableClassTest, SimpleUpdateStoresAndAnnouncesWhatDiffers) {
  Variant property(5L);
  EXPECT_TRUE(call(simple, property, Variant(6L)));
  EXPECT_EQ(property.get().lVal, 6);
  EXPECT_THAT(log.take(), ElementsAre(L"PropertyChange Size 6"));
}

TEST_F(CObservableClassTest, SimpleUpdateLeavesWhatIsEqual) {
  Variant property(5L);
  EXPECT_FALSE(call(simple, property, Variant(5L)));
  EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(CObservableClassTest, SimpleUpdateAnnouncesWhatIsEqualWhileEnumerating) {
  Variant property(5L);
  push(pcmEnumerating);
  log.take();
  EXPECT_FALSE(call(simple, property, Variant(5L)));
  EXPECT_THAT(log.take(), ElementsAre(L"PropertyChange Size 5"));
  EXPECT_TRUE(call(simple, property, Variant(6L)));
  EXPECT_THAT(log.take(), ElementsAre(L"PropertyChange Size 6")) << "once, not twice";
}

TEST_F(CObservableClassTest, SimpleUpdateAnnouncesAfterStoring) {
  Variant property(5L);
  long seen = 0;
  const EventLog reader(observable, __uuidof(__CObservableClass), eventNames,
                        [&](DISPID, const std::vector<VARIANT*>&) { seen = property.get().lVal; });
  call(simple, property, Variant(6L));
  EXPECT_EQ(seen, 6);
}

TEST_F(CObservableClassTest, UpdateDirtyAnnouncesOnlyWhatItStores) {
  Variant property(5L);
  EXPECT_TRUE(call(update, property, Variant(6L)));
  EXPECT_EQ(property.get().lVal, 6);
  EXPECT_THAT(log.take(), ElementsAre(L"PropertyChange Size 6"));
  EXPECT_FALSE(call(update, property, Variant(6L)));
  EXPECT_THAT(log.take(), IsEmpty());
  push(pcmEnumerating);
  log.take();
  EXPECT_FALSE(call(update, property, Variant(6L)));
  EXPECT_THAT(log.take(), IsEmpty()) << "not even while enumerating";
}

TEST_F(CObservableClassTest, CheckDirtyNeverStoresAndAnnouncesOnlyWhileEnumerating) {
  Variant property(5L);
  EXPECT_TRUE(call(check, property, Variant(6L)));
  EXPECT_FALSE(call(check, property, Variant(5L)));
  EXPECT_THAT(log.take(), IsEmpty());
  push(pcmEnumerating);
  log.take();
  EXPECT_TRUE(call(check, property, Variant(6L)));
  EXPECT_THAT(log.take(), ElementsAre(L"PropertyChange Size 6")) << "the new value, never the old one";
  EXPECT_FALSE(call(check, property, Variant(5L)));
  EXPECT_THAT(log.take(), ElementsAre(L"PropertyChange Size 5"));
  EXPECT_EQ(property.get().lVal, 5);
}

TEST_F(CObservableClassTest, CheckDirtyComparesAfterItsEvent) {
  Variant property(5L);
  push(pcmEnumerating);
  const EventLog writer(observable, __uuidof(__CObservableClass), eventNames,
                        [&](DISPID, const std::vector<VARIANT*>&) { property = Variant(6L); });
  EXPECT_FALSE(call(check, property, Variant(6L)));
}

TEST_F(CObservableClassTest, AnnouncesOnRequestWhateverTheMode) {
  const Bstr name(L"Colour");
  EXPECT_EQ(observable->RaisePropertyChange(name.get(), Variant(L"red").get()), S_OK);
  push(pcmClearing);
  EXPECT_EQ(observable->RaisePropertyChange(name.get(), Variant::null().get()), S_OK);
  EXPECT_THAT(log.take(),
              ElementsAre(L"PropertyChange Colour red", L"Clearing False", L"PropertyChange Colour Null"));
}

TEST_F(CObservableClassTest, EnumeratingUnderAnotherModeDoesNotCount) {
  Variant property(5L);
  push(pcmBatchUpdating);
  push(pcmEnumerating);
  log.take();
  EXPECT_FALSE(call(simple, property, Variant(5L)));
  EXPECT_FALSE(call(check, property, Variant(5L)));
  EXPECT_THAT(log.take(), IsEmpty());
}

// When values count as different.

TEST_F(CObservableClassTest, ComparesTextsCharacterByCharacter) {
  EXPECT_FALSE(differs(Variant(L"a"), Variant(L"a")));
  EXPECT_TRUE(differs(Variant(L"a"), Variant(L"A")));
  EXPECT_TRUE(differs(Variant(L"a"), Variant(L"a ")));
  EXPECT_TRUE(differs(Variant(L"\u00e9"), Variant(L"e\u0301"))) << "alike to the eye only";
  EXPECT_TRUE(differs(Variant(std::wstring_view(L"a\0b", 3)), Variant(std::wstring_view(L"a\0c", 3))));
  EXPECT_FALSE(differs(ofType(VT_BSTR), Variant(L""))) << "no text is the empty text";
}

TEST_F(CObservableClassTest, ComparesTypes) {
  EXPECT_TRUE(differs(Variant(static_cast<short>(5)), Variant(5L)));
  EXPECT_TRUE(differs(Variant(5L), Variant(5.0)));
  EXPECT_TRUE(differs(Variant(5L), Variant(L"5")));
  EXPECT_TRUE(differs(Variant(), Variant(L"")));
  EXPECT_TRUE(differs(Variant(), Variant(0L)));
  EXPECT_TRUE(differs(Variant(true), Variant(static_cast<short>(-1))));
}

TEST_F(CObservableClassTest, TakesTheNewType) {
  Variant property(static_cast<short>(5));
  EXPECT_TRUE(call(simple, property, Variant(5L)));
  EXPECT_EQ(property.type(), VT_I4);
}

TEST_F(CObservableClassTest, ComparesValuesOfEveryType) {
  for (const VARTYPE type :
       {VT_I1, VT_UI1, VT_I2, VT_UI2, VT_I4, VT_UI4, VT_I8, VT_UI8, VT_INT, VT_UINT, VT_CY, VT_ERROR}) {
    EXPECT_FALSE(differs(ofType(type, 7), ofType(type, 7))) << type;
    EXPECT_TRUE(differs(ofType(type, 7), ofType(type, 8))) << type;
  }
  EXPECT_FALSE(differs(Variant(), Variant()));
  EXPECT_FALSE(differs(Variant(true), Variant(true)));
  EXPECT_TRUE(differs(Variant(true), Variant(false)));
  EXPECT_FALSE(differs(Variant(0.1), Variant(0.1)));
  EXPECT_TRUE(differs(Variant(0.1), Variant(0.1 + 1e-17 + 1e-16)));
  Variant date(36526.5);
  date.get().vt = VT_DATE;
  EXPECT_FALSE(differs(date, date));
  EXPECT_FALSE(differs(decimal(1.5), decimal(1.5)));
  EXPECT_TRUE(differs(decimal(1.5), decimal(2.5)));
  Variant single;
  single.get().vt = VT_R4;
  single.get().fltVal = 0.5F;
  EXPECT_FALSE(differs(single, single));
}

TEST_F(CObservableClassTest, SimpleUpdateTakesNullForDifferentFromNull) {
  Variant property = Variant::null();
  EXPECT_TRUE(call(simple, property, Variant::null()));
  EXPECT_TRUE(call(simple, property, Variant::null()));
  EXPECT_THAT(log.take(), ElementsAre(L"PropertyChange Size Null", L"PropertyChange Size Null"));
  EXPECT_EQ(property.type(), VT_NULL);
}

TEST_F(CObservableClassTest, TheOthersLeaveNullAgainstNullAlone) {
  EXPECT_FALSE(differs(Variant::null(), Variant::null()));
  EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(CObservableClassTest, NullDiffersFromEverythingElse) {
  EXPECT_TRUE(differs(Variant::null(), Variant(5L)));
  EXPECT_TRUE(differs(Variant(5L), Variant::null()));
  EXPECT_TRUE(differs(Variant(), Variant::null()));
  Variant property(5L);
  EXPECT_TRUE(call(simple, property, Variant::null()));
  EXPECT_EQ(property.type(), VT_NULL);
  EXPECT_TRUE(call(simple, property, Variant(5L)));
  EXPECT_EQ(property.get().lVal, 5);
}

TEST_F(CObservableClassTest, ComparesObjectsByIdentity) {
  const auto one = create<CFakeDrive, _CFakeDrive>();
  const auto other = create<CFakeDrive, _CFakeDrive>();
  EXPECT_FALSE(differs(Variant(one.get()), Variant(one.get())));
  EXPECT_TRUE(differs(Variant(one.get()), Variant(other.get()))) << "alike is not the same";
  EXPECT_TRUE(differs(Variant(one.get()), ofType(VT_DISPATCH)));
  EXPECT_TRUE(differs(ofType(VT_DISPATCH), Variant(one.get())));
  EXPECT_FALSE(differs(ofType(VT_DISPATCH), ofType(VT_DISPATCH))) << "Nothing is Nothing";

  Variant property(one.get());
  EXPECT_TRUE(call(simple, property, Variant(other.get())));
  EXPECT_EQ(property.get().pdispVal, other.get());
  EXPECT_THAT(log.take(), testing::Contains(L"PropertyChange Size object"));
}

TEST_F(CObservableClassTest, TellsAnObjectByAnyOfItsInterfaces) {
  const auto one = create<CFakeDrive, _CFakeDrive>();
  Variant throughOther;
  throughOther.get().vt = VT_UNKNOWN;
  throughOther.get().punkVal =
      ComPtr<_CFakeDrive>(one).query<ISupportErrorInfo>(IID_ISupportErrorInfo).detach();
  ASSERT_NE(throughOther.get().punkVal, static_cast<IUnknown*>(one.get()));
  EXPECT_FALSE(differs(Variant(one.get()), throughOther));
}

TEST_F(CObservableClassTest, AnObjectAndAValueAlwaysDiffer) {
  const auto object = create<CFakeDrive, _CFakeDrive>();
  Variant property(object.get());
  EXPECT_TRUE(call(simple, property, Variant(5L)));
  EXPECT_EQ(property.get().lVal, 5);
  EXPECT_TRUE(call(simple, property, Variant(object.get())));
  EXPECT_EQ(property.get().pdispVal, object.get());
  EXPECT_TRUE(differs(Variant(object.get()), Variant()));
  EXPECT_TRUE(differs(ofType(VT_DISPATCH), Variant()));
}

TEST_F(CObservableClassTest, ArraysAlwaysDifferAndAreKept) {
  Variant property = array(1);
  EXPECT_TRUE(call(check, property, property));
  EXPECT_TRUE(call(simple, property, array(2)));
  ASSERT_EQ(property.type(), VT_ARRAY | VT_I4);
  long element = 0;
  LONG at = 0;
  EXPECT_EQ(SafeArrayGetElement(property.get().parray, &at, &element), S_OK);
  EXPECT_EQ(element, 2);
  EXPECT_TRUE(call(update, property, Variant(5L)));
  EXPECT_THAT(log.take(), ElementsAre(L"PropertyChange Size array", L"PropertyChange Size 5"));
}

// What the stored value may be.

TEST_F(CObservableClassTest, TheStoredValueMayBeTheNewValueItself) {
  Variant property(L"text");
  EXPECT_FALSE(call(simple, property.get(), property.get()));
  Variant objectProperty = array(1);
  EXPECT_TRUE(call(simple, objectProperty.get(), objectProperty.get()));
  EXPECT_EQ(objectProperty.type(), VT_ARRAY | VT_I4);
}

TEST_F(CObservableClassTest, WritesThroughAReference) {
  long number = 5;
  VARIANT property;
  property.vt = VT_BYREF | VT_I4;
  property.plVal = &number;
  EXPECT_FALSE(call(simple, property, Variant(5L).get()));
  EXPECT_TRUE(call(simple, property, Variant(6L).get()));
  EXPECT_EQ(property.vt, VT_BYREF | VT_I4);
  EXPECT_EQ(number, 6);
  EXPECT_TRUE(call(update, property, Variant(L"7").get())) << "a text differs from a number";
  EXPECT_EQ(number, 7) << "and is stored as the number that it is";

  BSTR text = SysAllocString(L"a");
  property.vt = VT_BYREF | VT_BSTR;
  property.pbstrVal = &text;
  EXPECT_FALSE(call(simple, property, Variant(L"a").get()));
  EXPECT_TRUE(call(simple, property, Variant(L"b").get()));
  EXPECT_EQ(automation::text(text), L"b");
  SysFreeString(text);

  Variant inner(5L);
  VARIANT reference = byRef(inner);
  EXPECT_TRUE(call(simple, reference, Variant(L"c").get()));
  EXPECT_EQ(textIn(inner), L"c");
}

TEST_F(CObservableClassTest, GoesOnWhereTheNewValueCannotBeStored) {
  long number = 5;
  VARIANT property;
  property.vt = VT_BYREF | VT_I4;
  property.plVal = &number;
  EXPECT_TRUE(call(simple, property, Variant(L"no number").get()));
  EXPECT_EQ(number, 5);
  EXPECT_THAT(log.take(), ElementsAre(L"PropertyChange Size no number"));
}

TEST_F(CObservableClassTest, ReadsANewValueThatIsAReference) {
  long number = 6;
  VARIANT value;
  value.vt = VT_BYREF | VT_I4;
  value.plVal = &number;
  Variant property(5L);
  EXPECT_TRUE(call(simple, property.get(), value));
  EXPECT_EQ(property.type(), VT_I4);
  EXPECT_EQ(property.get().lVal, 6);
  EXPECT_FALSE(call(check, property.get(), value));
}

// The stack of modes.

TEST_F(CObservableClassTest, EachModeHasItsEvent) {
  for (const auto mode : {pcmClearing, pcmCloning, pcmBatchUpdating, pcmCreating, pcmEnumerating}) {
    push(mode);
    EXPECT_EQ(this->mode(), mode);
    EXPECT_EQ(pop(), mode);
  }
  EXPECT_THAT(log.take(), ElementsAre(L"Clearing False", L"Clearing True", L"Cloning False", L"Cloning True",
                                      L"BatchUpdating False", L"BatchUpdating True", L"Creating False",
                                      L"Creating True", L"Enumerating False", L"Enumerating True"));
}

TEST_F(CObservableClassTest, IndividualAndUnknownModesHaveNoEvent) {
  for (const long number : {1L, 0L, 7L, -1L, 100L}) {
    const auto mode = static_cast<PropertyChangeMode>(number);
    push(mode);
    EXPECT_EQ(this->mode(), mode);
    push(pcmClearing);
    EXPECT_EQ(this->mode(), mode) << "the outermost shows";
    EXPECT_THAT(log.take(), ElementsAre(L"Clearing False"));
    EXPECT_EQ(pop(), pcmClearing);
    log.take();
    EXPECT_EQ(pop(), mode);
    EXPECT_THAT(log.take(), IsEmpty());
  }
}

TEST_F(CObservableClassTest, NestsModes) {
  push(pcmCreating);
  push(pcmCloning);
  EXPECT_THAT(log.take(), ElementsAre(L"Creating False", L"Cloning False"));
  EXPECT_EQ(mode(), pcmCreating);
  EXPECT_EQ(pop(), pcmCloning);
  EXPECT_THAT(log.take(), ElementsAre(L"Cloning True"));
  EXPECT_EQ(mode(), pcmCreating);
  EXPECT_EQ(pop(), pcmCreating);
  EXPECT_THAT(log.take(), ElementsAre(L"Creating True"));
  EXPECT_EQ(mode(), pcmIndividual);
  EXPECT_EQ(pop(), pcmIndividual);
  EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(CObservableClassTest, IsSilentAboutInnerModesOnRequest) {
  VARIANT_BOOL majorOnly = 1;
  EXPECT_EQ(observable->get_MajorModeChangeOnly(&majorOnly), S_OK);
  EXPECT_EQ(majorOnly, VARIANT_FALSE);
  EXPECT_EQ(observable->put_MajorModeChangeOnly(VARIANT_TRUE), S_OK);
  EXPECT_EQ(observable->get_MajorModeChangeOnly(&majorOnly), S_OK);
  EXPECT_EQ(majorOnly, VARIANT_TRUE);
  push(pcmBatchUpdating);
  push(pcmClearing);
  EXPECT_THAT(log.take(), ElementsAre(L"BatchUpdating False"));
  EXPECT_EQ(pop(), pcmClearing);
  EXPECT_THAT(log.take(), IsEmpty());
  EXPECT_EQ(pop(), pcmBatchUpdating);
  EXPECT_THAT(log.take(), ElementsAre(L"BatchUpdating True"));
}

TEST_F(CObservableClassTest, HasNoLimitOfModes) {
  observable->put_MajorModeChangeOnly(VARIANT_TRUE);
  constexpr int many = 100000;
  for (int i = 0; i < many; ++i) {
    push(i == 0 ? pcmCloning : pcmClearing);
  }
  EXPECT_EQ(mode(), pcmCloning);
  for (int i = many; i > 1; --i) {
    ASSERT_EQ(pop(), pcmClearing);
  }
  EXPECT_EQ(pop(), pcmCloning);
  EXPECT_THAT(log.take(), ElementsAre(L"Cloning False", L"Cloning True"));
}

TEST_F(CObservableClassTest, HandlersMayPushAndPop) {
  const EventLog nester(observable, __uuidof(__CObservableClass), eventNames,
                        [&](DISPID event, const std::vector<VARIANT*>& arguments) {
                          const bool finished = arguments[0]->boolVal != VARIANT_FALSE;
                          if (event == 2 && !finished) {
                            push(pcmCloning);
                          } else if (event == 4 && !finished) {
                            EXPECT_EQ(pop(), pcmCloning);
                          }
                        });
  push(pcmCreating);
  EXPECT_EQ(mode(), pcmCreating);
  EXPECT_THAT(log.take(), ElementsAre(L"Creating False", L"Cloning False", L"Cloning True"));
  EXPECT_EQ(pop(), pcmCreating);
}

TEST_F(CObservableClassTest, HandlersMayReleaseIt) {
  auto other = create<CObservableClass, _CObservableClass>();
  _CObservableClass* bare = other.get();
  const auto sink =
      std::make_unique<Sink>(other.get(), __uuidof(__CObservableClass), [&](DISPID, std::vector<VARIANT*>) {
        other.reset();
        return S_OK;
      });
  Variant property(5L);
  const Bstr name(L"Size");
  VARIANT_BOOL stored = VARIANT_FALSE;
  EXPECT_EQ(bare->SimplePropertyUpdate(&property.get(), name.get(), Variant(6L).get(), &stored), S_OK);
  EXPECT_EQ(stored, VARIANT_TRUE);
}

// Without its arguments, and by name.

TEST_F(CObservableClassTest, ToleratesNullPointers) {
  const Bstr name(L"Size");
  VARIANT_BOOL result = VARIANT_TRUE;
  EXPECT_EQ(observable->SimplePropertyUpdate(nullptr, name.get(), Variant(6L).get(), &result), S_OK);
  EXPECT_EQ(result, VARIANT_FALSE);
  EXPECT_EQ(observable->PopPropertyChangeMode(nullptr), E_POINTER);
}

TEST_F(CObservableClassTest, WritesAScriptsVariable) {
  const Late late(observable);
  Variant property(5L);
  EXPECT_EQ(late.get(L"SimplePropertyUpdate", byRef(property), Variant(L"Size"), Variant(L"x")).get().boolVal,
            VARIANT_TRUE);
  EXPECT_EQ(textIn(property), L"x");
  EXPECT_EQ(late.get(L"UpdateDirtyProperty", byRef(property), Variant(L"Size"), Variant(L"x")).get().boolVal,
            VARIANT_FALSE);
  EXPECT_EQ(late.get(L"CheckDirtyProperty", byRef(property), Variant(L"Size"), Variant(L"y")).get().boolVal,
            VARIANT_TRUE);
  EXPECT_EQ(late.call(L"RaisePropertyChange", Variant(L"Size"), Variant(7L)).code, S_OK);
  EXPECT_THAT(log.take(), ElementsAre(L"PropertyChange Size x", L"PropertyChange Size 7"));
}

TEST_F(CObservableClassTest, KeepsModesByName) {
  const Late late(observable);
  EXPECT_EQ(late.get(L"PropertyChangeMode").get().lVal, pcmIndividual);
  EXPECT_EQ(late.put(L"MajorModeChangeOnly", Variant(true)).code, S_OK);
  EXPECT_EQ(late.get(L"MajorModeChangeOnly").get().boolVal, VARIANT_TRUE);
  EXPECT_EQ(late.call(L"PushPropertyChangeMode", Variant(3L)).code, S_OK);
  EXPECT_EQ(late.get(L"PropertyChangeMode").get().lVal, pcmCloning);
  EXPECT_EQ(late.get(L"PopPropertyChangeMode").get().lVal, pcmCloning);
}

TEST_F(CObservableClassTest, LeaksNothing) {
  const auto object = create<CFakeDrive, _CFakeDrive>();
  expectNoLeak(500, [&] {
    Variant property(L"a text");
    for (const PropertyCall member : {simple, update, check}) {
      call(member, property, Variant(L"another text"));
      call(member, property, Variant(object.get()));
      call(member, property, array(3));
    }
    push(pcmCloning);
    pop();
    log.take();
  });
}

TEST_F(CObservableClassTest, LivesUntilTheEndOfTheCallThatReleasesIt) {
  for (const PropertyCall member : {simple, update}) {
    auto last = create<CObservableClass, _CObservableClass>();
    _CObservableClass* const borrowed = last.get();
    Variant property = ClientValue::make([] { return Variant(1L); }, [&] { last.reset(); });
    VARIANT_BOOL result = VARIANT_FALSE;
    EXPECT_EQ((borrowed->*member)(&property.get(), nullptr, Variant(2L).get(), &result), S_OK);
    EXPECT_EQ(result, VARIANT_TRUE);
    EXPECT_FALSE(last);
  }
}

}  // namespace
}  // namespace zeq::test
