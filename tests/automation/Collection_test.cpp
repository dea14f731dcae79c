// The Collection class through the component, late-bound as scripts use it and early-bound.

#include <gmock/gmock.h>

#include <functional>

#include "support/ClientObject.h"
#include "support/Component.h"
#include "support/Leaks.h"

namespace zeq::test {
namespace {

using testing::ElementsAre;

/// An item that tells when it is released for the last time.
class Item final : public ClientObject<> {
 public:
  [[nodiscard]] static Variant make(std::function<void()> released) {
    const auto item = ComPtr<IDispatch>::attach(new Item(std::move(released)));
    return Variant(item.get());
  }

 private:
  explicit Item(std::function<void()> released) : released_(std::move(released)) {}
  ~Item() override { released_(); }

  std::function<void()> released_;
};

Variant string(std::wstring_view text) {
  return Variant(text);
}

class CollectionTest : public testing::Test {
 protected:
  static constexpr HRESULT invalidCall = static_cast<HRESULT>(0x800A0005);
  static constexpr HRESULT subscriptOutOfRange = static_cast<HRESULT>(0x800A0009);
  static constexpr HRESULT typeMismatch = static_cast<HRESULT>(0x800A000D);
  static constexpr HRESULT keyInUse = static_cast<HRESULT>(0x800A01C9);

  ComPtr<_Collection> collection = create<Collection, _Collection>();
  Late late{collection};
  const Variant missing = Variant::missing();

  void add(std::initializer_list<const wchar_t*> texts) {
    for (const wchar_t* text : texts) {
      ASSERT_EQ(late.call(L"Add", string(text)).code, S_OK);
    }
  }
  [[nodiscard]] long count() const { return late.get(L"Count").get().lVal; }
  [[nodiscard]] ComPtr<IEnumVARIANT> enumerator() const {
    ComPtr<IUnknown> unknown;
    automation::check(collection->get_NewEnum(unknown.out()));
    return unknown.query<IEnumVARIANT>(IID_IEnumVARIANT);
  }
  [[nodiscard]] static std::vector<std::wstring> rest(IEnumVARIANT& items) {
    std::vector<std::wstring> texts;
    Variant item;
    ULONG fetched = 0;
    while (items.Next(1, item.out(), &fetched) == S_OK) {
      automation::check(VariantChangeType(&item.get(), &item.get(), 0, VT_BSTR));
      texts.push_back(textIn(item));
    }
    return texts;
  }
  [[nodiscard]] std::vector<std::wstring> texts() const { return rest(*enumerator()); }

  static void expectError(const Outcome& outcome, HRESULT code, const wchar_t* description) {
    EXPECT_EQ(outcome.code, DISP_E_EXCEPTION);
    EXPECT_EQ(outcome.scode, code);
    EXPECT_EQ(outcome.description, description);
  }
};

TEST_F(CollectionTest, StartsEmpty) {
  EXPECT_EQ(count(), 0);
  EXPECT_THAT(texts(), ElementsAre());
  expectError(late.call(L"Item", Variant(1L)), subscriptOutOfRange, L"Subscript out of range");
  expectError(late.call(L"Remove", Variant(1L)), subscriptOutOfRange, L"Subscript out of range");
  expectError(late.call(L"Item", string(L"k")), invalidCall, L"Invalid procedure call or argument");
  expectError(late.call(L"Remove", string(L"k")), invalidCall, L"Invalid procedure call or argument");
}

TEST_F(CollectionTest, KeepsItemsInOrder) {
  add({L"a", L"b", L"c"});
  EXPECT_EQ(count(), 3);
  EXPECT_THAT(texts(), ElementsAre(L"a", L"b", L"c"));
  EXPECT_EQ(textIn(late.get(L"Item", Variant(1L))), L"a");
  EXPECT_EQ(textIn(late.get(L"Item", Variant(3L))), L"c");
  EXPECT_EQ(late.call(L"Remove", Variant(2L)).code, S_OK);
  EXPECT_THAT(texts(), ElementsAre(L"a", L"c"));
}

TEST_F(CollectionTest, PositionsAreConverted) {
  add({L"a", L"b", L"c", L"d"});
  EXPECT_EQ(textIn(late.get(L"Item", Variant(2.5))), L"b");  // To the nearest, ties to even.
  EXPECT_EQ(textIn(late.get(L"Item", Variant(3.5))), L"d");
  EXPECT_EQ(textIn(late.get(L"Item", Variant(short{2}))), L"b");
  for (const long position : {0L, -1L, 5L, 2147483647L}) {
    expectError(late.call(L"Item", Variant(position)), subscriptOutOfRange, L"Subscript out of range");
  }
  expectError(late.call(L"Item", Variant()), subscriptOutOfRange,
              L"Subscript out of range");  // Empty acts as 0.
  expectError(late.call(L"Item", Variant(3e9)), static_cast<HRESULT>(0x800A0006), L"Overflow");
  expectError(late.call(L"Item", Variant::null()), typeMismatch, L"Type mismatch");
  expectError(late.call(L"Item", Variant(static_cast<IDispatch*>(nullptr))), typeMismatch, L"Type mismatch");
  // A text is a key, whatever it says.
  expectError(late.call(L"Item", string(L"1")), invalidCall, L"Invalid procedure call or argument");
}

TEST_F(CollectionTest, KeysIgnoreCase) {
  ASSERT_EQ(late.call(L"Add", Variant(1L), string(L"Key")).code, S_OK);
  ASSERT_EQ(late.call(L"Add", Variant(2L), string(L"Straße Ärger Ωμέγα Дом")).code, S_OK);
  ASSERT_EQ(late.call(L"Add", Variant(3L), string(L"")).code, S_OK);
  ASSERT_EQ(late.call(L"Add", Variant(4L), Variant(std::wstring_view(L"a\0b", 3))).code, S_OK);
  ASSERT_EQ(late.call(L"Add", Variant(5L), Variant(std::wstring_view(L"a\0c", 3))).code, S_OK);
  EXPECT_EQ(late.get(L"Item", string(L"kEY")).get().lVal, 1);
  EXPECT_EQ(late.get(L"Item", string(L"STRAßE äRGER ΩΜΈΓΑ дОМ")).get().lVal, 2);
  EXPECT_EQ(late.get(L"Item", string(L"")).get().lVal, 3);
  EXPECT_EQ(late.get(L"Item", Variant(std::wstring_view(L"A\0C", 3))).get().lVal, 5);
  Variant key(std::wstring_view(L"KEY"));
  EXPECT_EQ(late.get(L"Item", byRef(key)).get().lVal, 1);
  expectError(late.call(L"Add", Variant(9L), string(L"KEY")), keyInUse,
              L"This key is already associated with an element of this collection");
  EXPECT_EQ(count(), 5);
  ASSERT_EQ(late.call(L"Remove", string(L"kEy")).code, S_OK);
  EXPECT_EQ(late.call(L"Item", string(L"Key")).scode, invalidCall);
  EXPECT_EQ(late.call(L"Add", Variant(9L), string(L"KEY")).code, S_OK);  // The key is free again.
}

TEST_F(CollectionTest, OnlyTextsAreKeys) {
  for (const Variant& key : {Variant(1L), Variant(), Variant::null(), Variant(true)}) {
    expectError(late.call(L"Add", Variant(1L), key), typeMismatch, L"Type mismatch");
  }
  EXPECT_EQ(count(), 0);
}

TEST_F(CollectionTest, ItemsGoBeforeAndAfterOthers) {
  ASSERT_EQ(late.call(L"Add", string(L"m"), string(L"M")).code, S_OK);
  EXPECT_EQ(late.call(L"Add", string(L"a"), missing, Variant(1L)).code, S_OK);
  EXPECT_EQ(late.call(L"Add", string(L"l"), missing, string(L"m")).code, S_OK);
  EXPECT_EQ(late.call(L"Add", string(L"z"), missing, missing, Variant(3L)).code, S_OK);
  EXPECT_EQ(late.call(L"Add", string(L"n"), string(L"N"), missing, string(L"M")).code, S_OK);
  EXPECT_THAT(texts(), ElementsAre(L"a", L"l", L"m", L"n", L"z"));
  EXPECT_EQ(late.call(L"Add", string(L"x"), missing, Variant(0L)).scode, subscriptOutOfRange);
  EXPECT_EQ(late.call(L"Add", string(L"x"), missing, Variant(6L)).scode, subscriptOutOfRange);
  EXPECT_EQ(late.call(L"Add", string(L"x"), missing, missing, Variant(6L)).scode, subscriptOutOfRange);
  EXPECT_EQ(late.call(L"Add", string(L"x"), missing, string(L"none")).scode, invalidCall);
  EXPECT_EQ(late.call(L"Add", string(L"x"), missing, missing, string(L"none")).scode, invalidCall);
  EXPECT_EQ(late.call(L"Add", string(L"x"), missing, Variant(1L), Variant(1L)).scode, invalidCall);
  EXPECT_EQ(late.call(L"Add", string(L"x"), missing, Variant::null()).scode, typeMismatch);
  EXPECT_EQ(count(), 5);
}

TEST_F(CollectionTest, ItemsAreOfAnyType) {
  VARIANT date{};
  date.vt = VT_DATE;
  date.date = 40000.5;
  VARIANT currency{};
  currency.vt = VT_CY;
  currency.cyVal.int64 = 12345;
  Variant array;
  array.get().vt = VT_ARRAY | VT_I4;
  array.get().parray = SafeArrayCreateVector(VT_I4, 0, 3);
  const std::vector<Variant> items{
      Variant(),    Variant::null(), Variant(short{1}), Variant(2L), Variant(2.5), Variant(true),
      string(L"t"), Variant(date),   Variant(currency), missing,     array,        Variant(late.dispatch())};
  for (const Variant& item : items) {
    ASSERT_EQ(late.call(L"Add", item).code, S_OK);
  }
  for (std::size_t i = 0; i < items.size(); ++i) {
    EXPECT_EQ(late.get(L"Item", Variant(static_cast<long>(i + 1))).type(), items[i].type()) << i;
  }
  EXPECT_EQ(late.get(L"Item", Variant(7L)).get().bstrVal == items[6].get().bstrVal,
            false);  // A copy of its own.
  EXPECT_EQ(late.get(L"Item", Variant(12L)).get().pdispVal, late.dispatch());
  EXPECT_EQ(late.call(L"Remove", Variant(12L)).code, S_OK);  // It held itself.
  Variant variable(std::wstring_view(L"variable"));
  ASSERT_EQ(late.call(L"Add", byRef(variable)).code, S_OK);  // The value of the variable, not the variable.
  variable = Variant(1L);
  EXPECT_EQ(textIn(late.get(L"Item", Variant(12L))), L"variable");
}

TEST_F(CollectionTest, TheDefaultMemberIsItem) {
  add({L"a"});
  Variant index(1L);
  DISPPARAMS parameters{&index.get(), nullptr, 1, 0};
  Variant result;
  EXPECT_EQ(late.dispatch()->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET,
                                    &parameters, result.out(), nullptr, nullptr),
            S_OK);
  EXPECT_EQ(textIn(result), L"a");
}

TEST_F(CollectionTest, Enumerators) {
  add({L"a", L"b", L"c", L"d", L"e"});
  const auto items = enumerator();
  VARIANT some[3]{};
  ULONG fetched = 9;
  EXPECT_EQ(items->Next(0, some, &fetched), S_OK);
  EXPECT_EQ(fetched, 0U);
  EXPECT_EQ(items->Next(2, some, &fetched), S_OK);
  EXPECT_EQ(fetched, 2U);
  EXPECT_EQ(automation::text(some[0].bstrVal), L"a");
  EXPECT_EQ(automation::text(some[1].bstrVal), L"b");
  VariantClear(&some[0]);
  VariantClear(&some[1]);
  ComPtr<IEnumVARIANT> clone;
  EXPECT_EQ(items->Clone(clone.out()), S_OK);
  EXPECT_EQ(items->Skip(1), S_OK);
  EXPECT_THAT(rest(*items), ElementsAre(L"d", L"e"));
  EXPECT_THAT(rest(*clone), ElementsAre(L"c", L"d", L"e"));  // It went on from where it was made.
  EXPECT_EQ(items->Next(1, some, &fetched), S_FALSE);
  EXPECT_EQ(fetched, 0U);
  EXPECT_EQ(items->Skip(1), S_FALSE);
  EXPECT_EQ(items->Skip(0), S_OK);
  EXPECT_EQ(items->Reset(), S_OK);
  EXPECT_EQ(items->Skip(9), S_FALSE);
  EXPECT_EQ(items->Reset(), S_OK);
  EXPECT_EQ(items->Skip(3), S_OK);
  EXPECT_EQ(items->Next(3, some, &fetched), S_FALSE);
  EXPECT_EQ(fetched, 2U);
  VariantClear(&some[0]);
  VariantClear(&some[1]);
  EXPECT_EQ(items->Reset(), S_OK);
  EXPECT_EQ(items->Next(1, some, nullptr), S_OK);
  VariantClear(&some[0]);
  EXPECT_EQ(items->Next(1, nullptr, &fetched), E_POINTER);
  EXPECT_EQ(items->Clone(nullptr), E_POINTER);
  EXPECT_EQ(items->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
  EXPECT_FALSE(items.query<IDispatch>(IID_IDispatch));
}

TEST_F(CollectionTest, AnEnumeratorShowsTheItemsAsTheyWere) {
  add({L"a", L"b", L"c"});
  const auto items = enumerator();
  ASSERT_EQ(late.call(L"Remove", Variant(2L)).code, S_OK);
  add({L"d"});
  EXPECT_THAT(rest(*items), ElementsAre(L"a", L"b", L"c"));
  EXPECT_THAT(texts(), ElementsAre(L"a", L"c", L"d"));
}

TEST_F(CollectionTest, RemovingWhileEnumerating) {
  add({L"a", L"b", L"c"});
  const auto items = enumerator();
  Variant item;
  int seen = 0;
  while (items->Next(1, item.out(), nullptr) == S_OK) {
    ++seen;
    ASSERT_EQ(late.call(L"Remove", Variant(1L)).code, S_OK);
  }
  EXPECT_EQ(seen, 3);
  EXPECT_EQ(count(), 0);
}

TEST_F(CollectionTest, AnEnumeratorOutlivesItsCollection) {
  add({L"a", L"b"});
  const auto items = enumerator();
  late = Late(ComPtr<IDispatch>());
  collection = nullptr;
  EXPECT_THAT(rest(*items), ElementsAre(L"a", L"b"));
}

TEST_F(CollectionTest, ObjectsAreReleased) {
  int released = 0;
  const auto counting = [&] { ++released; };
  ASSERT_EQ(late.call(L"Add", Item::make(counting), string(L"k")).code, S_OK);
  ASSERT_EQ(late.call(L"Add", Item::make(counting)).code, S_OK);
  EXPECT_EQ(late.call(L"Add", Item::make(counting), string(L"K")).scode, keyInUse);
  EXPECT_EQ(released, 1);
  ASSERT_EQ(late.call(L"Remove", string(L"k")).code, S_OK);
  EXPECT_EQ(released, 2);
  auto items = enumerator();
  late = Late(ComPtr<IDispatch>());
  collection = nullptr;
  EXPECT_EQ(released, 2);  // The enumerator has the last one.
  items = nullptr;
  EXPECT_EQ(released, 3);
}

TEST_F(CollectionTest, AnItemsReleaseMayComeBack) {
  ASSERT_EQ(late.call(L"Add", Item::make([&] {
                        EXPECT_EQ(count(), 1);
                        EXPECT_EQ(late.call(L"Item", string(L"k")).scode, invalidCall);
                        EXPECT_EQ(late.call(L"Add", string(L"again"), string(L"k")).code, S_OK);
                        EXPECT_EQ(late.call(L"Remove", Variant(1L)).code, S_OK);
                      }),
                      string(L"k"))
                .code,
            S_OK);
  add({L"other"});
  ASSERT_EQ(late.call(L"Remove", Variant(1L)).code, S_OK);
  EXPECT_THAT(texts(), ElementsAre(L"again"));
}

TEST_F(CollectionTest, ManyItems) {
  constexpr long many = 100'000;
  for (long i = 1; i <= many; ++i) {
    const Bstr key(std::to_wstring(i));
    VARIANT item{};
    item.vt = VT_I4;
    item.lVal = i;
    VARIANT keyed{};
    keyed.vt = VT_BSTR;
    keyed.bstrVal = key.get();
    ASSERT_EQ(collection->Add(item, keyed, missing.get(), missing.get()), S_OK);
  }
  const auto removeKey = [&](long number) {
    const Bstr key(std::to_wstring(number));
    VARIANT keyed{};
    keyed.vt = VT_BSTR;
    keyed.bstrVal = key.get();
    return collection->Remove(keyed);
  };
  // By position from the front, by key from the front and by key from the back: none looks at what stays.
  for (long i = 1; i <= many / 2; ++i) {
    ASSERT_EQ(collection->Remove(Variant(1L).get()), S_OK);
  }
  for (long i = 0; i < many / 4; ++i) {
    ASSERT_EQ(removeKey(many / 2 + 1 + i), S_OK);
    ASSERT_EQ(removeKey(many - i), S_OK);
  }
  EXPECT_EQ(count(), 0);
}

TEST_F(CollectionTest, NullResultsAreRefused) {
  add({L"a"});
  EXPECT_EQ(collection->get_Count(nullptr), E_POINTER);
  EXPECT_EQ(collection->get_NewEnum(nullptr), E_POINTER);
  EXPECT_EQ(collection->get_Item(Variant(1L).get(), nullptr), E_POINTER);
}

TEST_F(CollectionTest, NothingLeaks) {
  expectNoLeak(300, [this] {
    late.call(L"Add", string(L"item"), string(L"key"));
    late.call(L"Add", string(L"item"), string(L"key"));
    late.call(L"Add", Variant(late.dispatch()), missing, Variant(1L));
    late.call(L"Item", string(L"key"));
    late.call(L"Item", string(L"none"));
    late.call(L"Add", string(L"x"), missing, missing, Variant(99L));
    const auto items = enumerator();
    Variant item;
    while (items->Next(1, item.out(), nullptr) == S_OK) {
    }
    late.call(L"Remove", Variant(1L));
    late.call(L"Remove", string(L"KEY"));
  });
  collection = nullptr;
  late = Late(ComPtr<IDispatch>());
  EXPECT_TRUE(canUnload());
}

}  // namespace
}  // namespace zeq::test
