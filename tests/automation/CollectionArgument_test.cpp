#include "automation/CollectionArgument.h"

#include <gtest/gtest.h>

#include "automation/Collection.h"
#include "support/ClientObject.h"

namespace zeq::automation {
namespace {

Variant string(std::wstring_view text) {
  return Variant(text);
}

/// The code of the error that a call throws.
template <class Call>
HRESULT errorOf(Call&& call) {
  try {
    call();
    return S_OK;
  } catch (const Error& error) {
    return error.code();
  }
}

/// The library's collection, known by name only.
class ByName final : public test::ClientObject<> {
 public:
  explicit ByName(bool namesArguments) : namesArguments_(namesArguments) {}

  STDMETHODIMP GetIDsOfNames(REFIID, wchar_t** names, UINT count, LCID, DISPID* ids) noexcept override {
    const std::wstring_view member = names[0];
    ids[0] = member == L"Add"      ? 1
             : member == L"Count"  ? 2
             : member == L"Item"   ? 3
             : member == L"Remove" ? 4
                                   : 0;
    if (count == 3 && namesArguments_) {
      ids[1] = 11;
      ids[2] = 12;
      return S_OK;
    }
    return count == 1 && ids[0] != 0 ? S_OK : DISP_E_UNKNOWNNAME;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT* result, EXCEPINFO*,
                      UINT*) noexcept override {
    wasNamed = parameters->cNamedArgs != 0;
    const Variant missing = Variant::missing();
    const auto argument = [&](UINT position, DISPID name) {
      for (UINT i = 0; i < parameters->cNamedArgs; ++i) {
        if (parameters->rgdispidNamedArgs[i] == name) {
          return parameters->rgvarg[i];
        }
      }
      return position < parameters->cArgs ? parameters->rgvarg[parameters->cArgs - 1 - position]
                                          : missing.get();
    };
    switch (id) {
      case 1:
        return collection->Add(argument(0, 11), argument(1, 12), missing.get(), missing.get());
      case 2:
        result->vt = VT_I4;
        return collection->get_Count(&result->lVal);
      case 3:
        return collection->get_Item(argument(0, 0), result);
      default:
        return collection->Remove(argument(0, 0));
    }
  }

  ComPtr<Collection> collection = Collection::make();
  bool wasNamed = false;

 private:
  bool namesArguments_;
};

void useAsCollection(IDispatch* object) {
  CollectionArgument collection(object);
  EXPECT_EQ(collection.count(), 0);
  collection.add(string(L"a"));
  collection.add(string(L"b"), string(L"key"));
  EXPECT_EQ(collection.count(), 2);
  EXPECT_EQ(textOf(collection.item(1).get()), L"a");
  EXPECT_EQ(textOf(collection.item(2).get()), L"b");
  EXPECT_EQ(errorOf([&] { collection.add(string(L"c"), string(L"KEY")); }), codeOf(ErrorNumber::keyInUse));
  EXPECT_EQ(errorOf([&] { (void)collection.item(3); }), codeOf(ErrorNumber::subscriptOutOfRange));
  EXPECT_EQ(errorOf([&] { collection.remove(3); }), codeOf(ErrorNumber::subscriptOutOfRange));
  collection.remove(1);
  EXPECT_EQ(collection.count(), 1);
}

TEST(CollectionArgument, MayBeTheLibrarysOwn) {
  const auto collection = Collection::make();
  useAsCollection(collection.get());
  EXPECT_NE(collection->find(L"key"), nullptr);
}

TEST(CollectionArgument, MayBeKnownByNameOnly) {
  ByName positional(false);
  useAsCollection(&positional);
  EXPECT_NE(positional.collection->find(L"key"), nullptr);
}

TEST(CollectionArgument, GetsNamedArgumentsIfItNamesThem) {
  ByName named(true);
  CollectionArgument(&named).add(string(L"a"), string(L"key"));
  EXPECT_TRUE(named.wasNamed);
  EXPECT_EQ(textOf(named.collection->find(L"key")->get()), L"a");
  EXPECT_EQ(errorOf([&] { CollectionArgument(&named).add(string(L"a"), string(L"key")); }),
            codeOf(ErrorNumber::keyInUse));
}

TEST(CollectionArgument, MustBeThere) {
  EXPECT_EQ(errorOf([] { CollectionArgument(static_cast<IDispatch*>(nullptr)); }),
            codeOf(ErrorNumber::objectNotSet));
  EXPECT_EQ(errorOf([] { CollectionArgument(static_cast<IDispatch**>(nullptr)); }),
            codeOf(ErrorNumber::objectNotSet));
}

}  // namespace
}  // namespace zeq::automation
