#include <gmock/gmock.h>

#include "support/ClientValue.h"
#include "support/Component.h"
#include "support/Leaks.h"
#include "utility/Values.h"

namespace zeq::test {
namespace {

using testing::ElementsAre;

class CZEQUtilityCollectionsTest : public testing::Test {
 protected:
  bool containsKey(const Variant& index) {
    return succeeded(&_CZEQUtilityCollections::Collection_ContainsKey, index);
  }
  bool remove(const Variant& index) { return succeeded(&_CZEQUtilityCollections::Collection_Remove, index); }
  bool add(const Variant& index) {
    VARIANT_BOOL result = VARIANT_FALSE;
    EXPECT_EQ(collections->Collection_Add(&argument, &item, index.get(), &result), S_OK);
    return result == VARIANT_TRUE;
  }
  long count() {
    long result = -1;
    EXPECT_EQ(collection->get_Count(&result), S_OK);
    return result;
  }

  ComPtr<_CZEQUtilityCollections> collections = create<CZEQUtilityCollections, _CZEQUtilityCollections>();
  ComPtr<_Collection> collection = create<Collection, _Collection>();
  ComPtr<_CFakeDrive> drive = create<CFakeDrive, _CFakeDrive>();
  IDispatch* argument = collection.get();
  IDispatch* item = drive.get();
  Late late{collections};

 private:
  template <class Member>
  bool succeeded(Member member, const Variant& index) {
    VARIANT_BOOL result = VARIANT_FALSE;
    EXPECT_EQ((collections.get()->*member)(&argument, index.get(), &result), S_OK);
    return result == VARIANT_TRUE;
  }
};

TEST_F(CZEQUtilityCollectionsTest, AddsUnlessTheKeyIsTaken) {
  EXPECT_TRUE(add(value(L"key")));
  EXPECT_FALSE(add(value(L"key")));
  EXPECT_FALSE(add(value(L"KEY")));
  EXPECT_TRUE(add(Variant::missing()));
  EXPECT_TRUE(add(Variant::missing()));
  EXPECT_FALSE(add(value(5)));  // A key is a text.
  EXPECT_FALSE(add(Variant::null()));
  EXPECT_EQ(count(), 3);
  Variant first;
  EXPECT_EQ(collection->get_Item(value(1).get(), first.out()), S_OK);
  EXPECT_EQ(first.get().pdispVal, item);
}

TEST_F(CZEQUtilityCollectionsTest, AddsNothing) {
  item = nullptr;
  EXPECT_TRUE(add(value(L"none")));
  EXPECT_TRUE(containsKey(value(L"none")));
}

TEST_F(CZEQUtilityCollectionsTest, FindsKeysAndPositions) {
  add(value(L"key"));
  EXPECT_TRUE(containsKey(value(L"key")));
  EXPECT_TRUE(containsKey(value(L"Key")));
  EXPECT_FALSE(containsKey(value(L"other")));
  EXPECT_FALSE(containsKey(value(0)));
  EXPECT_TRUE(containsKey(value(1)));
  EXPECT_FALSE(containsKey(value(2)));
  EXPECT_FALSE(containsKey(value(-1)));
  EXPECT_FALSE(containsKey(Variant::null()));
  EXPECT_FALSE(containsKey(Variant::missing()));
}

TEST_F(CZEQUtilityCollectionsTest, Removes) {
  add(value(L"one"));
  add(value(L"two"));
  EXPECT_TRUE(remove(value(L"one")));
  EXPECT_FALSE(remove(value(L"one")));
  EXPECT_FALSE(remove(value(2)));
  EXPECT_TRUE(remove(value(1)));
  EXPECT_EQ(count(), 0);
}

TEST_F(CZEQUtilityCollectionsTest, Clears) {
  for (int i = 0; i < 5; ++i) {
    add(Variant::missing());
  }
  EXPECT_EQ(collections->Collection_Clear(&argument), S_OK);
  EXPECT_EQ(count(), 0);
  EXPECT_EQ(collections->Collection_Clear(&argument), S_OK);
}

TEST_F(CZEQUtilityCollectionsTest, ClearsFromTheEnd) {
  std::vector<long> left;
  for (long number = 1; number <= 3; ++number) {
    Variant told = ClientValue::make([] { return Variant(0L); }, [&, number] { left.push_back(number); });
    EXPECT_EQ(Late(collection).call(L"Add", told).code, S_OK);
  }
  EXPECT_EQ(collections->Collection_Clear(&argument), S_OK);
  EXPECT_THAT(left, ElementsAre(3, 2, 1));
}

TEST_F(CZEQUtilityCollectionsTest, AnswersFalseWithoutACollection) {
  argument = nullptr;
  EXPECT_FALSE(add(Variant::missing()));
  EXPECT_FALSE(remove(value(1)));
  EXPECT_FALSE(containsKey(value(1)));
  EXPECT_EQ(collections->Collection_Clear(&argument), S_OK);
  VARIANT_BOOL result = VARIANT_TRUE;
  EXPECT_EQ(collections->Collection_Add(nullptr, nullptr, Variant::missing().get(), &result), S_OK);
  EXPECT_EQ(result, VARIANT_FALSE);
  argument = drive.get();  // An object that is no collection.
  EXPECT_FALSE(add(Variant::missing()));
  EXPECT_FALSE(containsKey(value(1)));
}

TEST_F(CZEQUtilityCollectionsTest, IsCalledByName) {
  Variant variable{static_cast<IDispatch*>(collection.get())};
  Variant object{item};
  EXPECT_EQ(late.get(L"Collection_Add", byRef(variable), byRef(object)).get().boolVal, VARIANT_TRUE);
  EXPECT_EQ(late.get(L"Collection_Add", variable, object, value(L"key")).get().boolVal, VARIANT_TRUE);
  EXPECT_EQ(late.get(L"Collection_ContainsKey", byRef(variable), value(L"key")).get().boolVal, VARIANT_TRUE);
  EXPECT_EQ(late.get(L"Collection_Remove", byRef(variable), value(L"key")).get().boolVal, VARIANT_TRUE);
  EXPECT_EQ(count(), 1);
  EXPECT_EQ(late.call(L"Collection_Clear", byRef(variable)).code, S_OK);
  EXPECT_EQ(count(), 0);
  EXPECT_EQ(late.call(L"Collection_Clear", value(L"no object")).code, DISP_E_TYPEMISMATCH);
}

TEST_F(CZEQUtilityCollectionsTest, TakesACollectionOfTheHost) {
  CLSID clsid{};
  ASSERT_EQ(CLSIDFromProgID(L"Scripting.Dictionary", &clsid), S_OK);
  ComPtr<IDispatch> dictionary;
  ASSERT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, dictionary.outVoid()),
            S_OK);
  ASSERT_EQ(Late(dictionary).call(L"Add", value(L"key"), Variant(item)).code, S_OK);
  argument = dictionary.get();
  EXPECT_TRUE(containsKey(value(L"key")));
  EXPECT_FALSE(remove(value(L"other")));
  EXPECT_TRUE(remove(value(L"key")));
  EXPECT_EQ(Late(dictionary).get(L"Count").get().lVal, 0);
  // It has no positions, so that clearing fails and leaves it as it is.
  ASSERT_EQ(Late(dictionary).call(L"Add", value(L"key"), Variant(item)).code, S_OK);
  EXPECT_EQ(collections->Collection_Clear(&argument), S_OK);
  EXPECT_EQ(Late(dictionary).get(L"Count").get().lVal, 1);
}

TEST_F(CZEQUtilityCollectionsTest, LeaksNothing) {
  expectNoLeak(50, [&] {
    add(value(L"key"));
    add(value(L"key"));
    add(Variant::missing());
    containsKey(value(L"key"));
    remove(value(L"key"));
    collections->Collection_Clear(&argument);
  });
}

}  // namespace
}  // namespace zeq::test
