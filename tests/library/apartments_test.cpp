// Objects in other apartments than their client: in threads of their own, side by side, and called through
// the proxies that the standard marshaller makes from the registered type library.

#include <windows.h>
#include <gmock/gmock.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "support/Apartment.h"
#include "support/Component.h"
#include "support/Deployment.h"
#include "support/EventLog.h"
#include "support/Printable.h"
#include "support/TempFolder.h"
#include "support/TypeLibrary.h"
#include "wizard/Step.h"

namespace zeq::test {
namespace {

using testing::ElementsAre;

/// What a thread does with objects of its own. Throws if anything comes out wrong.
void useEveryKindOfCall(const LoadedComponent& loaded) {
  const auto expect = [](bool condition, const char* what) {
    if (!condition) {
      throw std::runtime_error(what);
    }
  };
  for (const LibraryType& type : libraryTypes(TKIND_COCLASS)) {
    const auto info = loaded.create(type.guid).query<IProvideClassInfo>(IID_IProvideClassInfo);
    ComPtr<ITypeInfo> description;
    expect(info && SUCCEEDED(info->GetClassInfo(description.out())), "class information");
  }
  const Late splitter(loaded.create(__uuidof(CStringSplitter)));
  expect(splitter.get(L"Split", asVariant(L"a;b;c"), asVariant(L";")).get().iVal == 3, "Split");
  const Late counter(loaded.create(__uuidof(CReferenceCounter)));
  long events = 0;
  const Sink sink(counter.dispatch(), __uuidof(__CReferenceCounter),
                  [&](DISPID, const std::vector<VARIANT*>&) {
                    ++events;
                    return S_OK;
                  });
  const Late collection(loaded.create(__uuidof(Collection)));
  for (long i = 1; i <= 50; ++i) {
    collection.call(L"Add", asVariant(i), asVariant(std::to_wstring(i) + L" key"));
    counter.call(L"Increment");
    expect(collection.get(L"Item", asVariant(std::to_wstring(i) + L" KEY")).get().lVal == i, "Item");
    const Outcome missing = collection.call(L"Item", asVariant(i + 1));
    expect(missing.code == DISP_E_EXCEPTION && missing.description == L"Subscript out of range", "error");
  }
  expect(events == 51, "events");
}

TEST(ThreadsTest, UseObjectsOfTheirOwnAtTheSameTime) {
  const TempFolder folder;
  const std::wstring copy = folder / L"copy.dll";
  ASSERT_TRUE(CopyFileW(componentPath().c_str(), copy.c_str(), TRUE));
  for (int round = 0; round < 5; ++round) {
    const LoadedComponent loaded(copy);  // Fresh each time: all threads meet what is made on first use.
    std::array<Apartment, 4> apartments;
    for (Apartment& apartment : apartments) {
      apartment.start([&] { useEveryKindOfCall(loaded); });
    }
    for (Apartment& apartment : apartments) {
      EXPECT_NO_THROW(apartment.finish());
    }
    EXPECT_EQ(loaded.call("DllCanUnloadNow"), S_OK);
  }
}

/// Objects live in another apartment than the test, which has proxies of them.
class ApartmentsTest : public testing::Test {
 protected:
  ApartmentsTest() {
    unregisterAll();
    EXPECT_EQ(install(true, nullptr), S_OK);
  }
  ~ApartmentsTest() override {
    EXPECT_TRUE(canUnload()) << "something is still held";
    unregisterAll();
  }

  /// A new object in the other apartment, packed for whichever apartment unpacks it.
  IStream* packThere(REFCLSID clsid, REFIID iid) {
    IStream* stream = nullptr;
    there.run([&] {
      ComPtr<IUnknown> object;
      automation::check(classFactory(clsid)->CreateInstance(nullptr, iid, object.outVoid()));
      automation::check(CoMarshalInterThreadInterfaceInStream(iid, object.get(), &stream));
    });
    return stream;
  }
  /// The proxy of such an object.
  static ComPtr<IUnknown> unpack(IStream* stream, REFIID iid) {
    ComPtr<IUnknown> proxy;
    automation::check(CoGetInterfaceAndReleaseStream(stream, iid, proxy.outVoid()));
    return proxy;
  }
  ComPtr<IUnknown> createThere(REFCLSID clsid, REFIID iid) { return unpack(packThere(clsid, iid), iid); }
  template <class Coclass, class Interface>
  ComPtr<Interface> createThere() {
    return createThere(__uuidof(Coclass), __uuidof(Interface)).template query<Interface>();
  }

  Apartment there;
};

TEST_F(ApartmentsTest, ReachEveryClassThroughItsInterfaceAndByName) {
  for (const LibraryType& type : libraryTypes(TKIND_COCLASS)) {
    SCOPED_TRACE(printable(type.name));
    const LibraryType description = implementedBy(type).front().type;
    const auto proxy = createThere(type.guid, description.guid);
    const auto dispatch = proxy.query<IDispatch>(IID_IDispatch);
    ASSERT_TRUE(dispatch);
    for (const LibraryMember& member : membersOf(description)) {
      Bstr name(member.name);
      wchar_t* names = name.get();
      DISPID id = DISPID_UNKNOWN;
      EXPECT_EQ(dispatch->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_NEUTRAL, &id), S_OK);
      EXPECT_EQ(id, member.id);
    }
  }
}

TEST_F(ApartmentsTest, CarryEveryKindOfArgument) {
  const auto drive = createThere<CFakeDrive, _CFakeDrive>();
  EXPECT_EQ(drive->put_Name(Bstr(L"Z:").get()), S_OK);
  EXPECT_EQ(drive->put_Capacity(1048576), S_OK);
  EXPECT_EQ(drive->UseBytes(12), S_OK);
  double used = 0;
  EXPECT_EQ(drive->get_SpaceUsed(&used), S_OK);
  EXPECT_EQ(used, 12);
  Bstr name;
  EXPECT_EQ(drive->get_Name(name.out()), S_OK);
  EXPECT_EQ(name.view(), L"Z:");
  EXPECT_EQ(Late(drive).get(L"SpaceUsed").get().dblVal, 12);

  const auto numbers = createThere<CZEQUtilityNumerical, _CZEQUtilityNumerical>();
  short red = 0;
  short green = 0;
  short blue = 0;
  EXPECT_EQ(numbers->Color_GetRGBComponents(0x00030201, &red, &green, &blue), S_OK);
  EXPECT_EQ(red, 1);
  EXPECT_EQ(green, 2);
  EXPECT_EQ(blue, 3);

  const auto files = createThere<CZEQFileSystemObject, _CZEQFileSystemObject>();
  Variant folder = asVariant(L"");
  Variant base = asVariant(L"");
  Variant extension = asVariant(L"");
  const Outcome outcome = Late(files).call(L"FSO_SplitFullFilePath", asVariant(L"C:\\folder\\file.txt"),
                                           byRef(folder), byRef(base), byRef(extension));
  EXPECT_EQ(outcome.code, S_OK);
  EXPECT_EQ(textIn(base), L"file");
  EXPECT_EQ(textIn(extension), L"txt");
}

TEST_F(ApartmentsTest, PassObjectsBothWays) {
  const auto collection = createThere<Collection, _Collection>();
  const auto own = create<CFakeDrive, _CFakeDrive>();
  EXPECT_EQ(collection->Add(Variant(own.get()).get(), asVariant(L"drive").get(), Variant::missing().get(),
                            Variant::missing().get()),
            S_OK);
  Variant back;
  EXPECT_EQ(collection->get_Item(asVariant(L"DRIVE").get(), back.out()), S_OK);
  EXPECT_EQ(back.get().pdispVal, own.get()) << "comes back as itself";
  EXPECT_EQ(collection->Remove(Variant(1L).get()), S_OK);
  EXPECT_EQ(collection->Remove(Variant(1L).get()), static_cast<HRESULT>(0x800A0009));

  const auto batch = createThere<CFileOperationBatch, _CFileOperationBatch>();
  ComPtr<_CFileOperation> operation;
  ASSERT_EQ(batch->Add(operation.out()), S_OK);
  EXPECT_EQ(operation->put_StatusHWnd(5), S_OK);
  ComPtr<_Collection> tasks;
  ASSERT_EQ(batch->get_Tasks(tasks.out()), S_OK);
  Variant task;
  ASSERT_EQ(tasks->get_Item(Variant(1L).get(), task.out()), S_OK);
  EXPECT_EQ(Late(task.get().pdispVal).get(L"StatusHWnd").get().lVal, 5);

  const auto splitter = createThere<CStringSplitter, _CStringSplitter>();
  EXPECT_EQ(splitter->put_Record(Bstr(L"a b").get()), S_OK);
  ComPtr<IUnknown> unknown;
  ASSERT_EQ(splitter->get_NewEnum(unknown.out()), S_OK);
  const auto enumerator = unknown.query<IEnumVARIANT>(IID_IEnumVARIANT);
  ASSERT_TRUE(enumerator);
  std::array<VARIANT, 3> items{};
  ULONG fetched = 0;
  EXPECT_EQ(enumerator->Next(3, items.data(), &fetched), S_FALSE);
  ASSERT_EQ(fetched, 2U);
  EXPECT_EQ(shown(items[1]), L"b");
  VariantClear(&items[0]);
  VariantClear(&items[1]);
}

TEST_F(ApartmentsTest, CarryEventsBackInOrder) {
  const auto counter = createThere<CReferenceCounter, _CReferenceCounter>();
  const DWORD thread = GetCurrentThreadId();
  bool isOwnThread = true;
  EventLog log(counter, __uuidof(__CReferenceCounter), {{1, L"Triggered"}, {2, L"TriggeredRoundZero"}},
               [&](DISPID, const std::vector<VARIANT*>&) {
                 isOwnThread = isOwnThread && GetCurrentThreadId() == thread;
                 long depth = 0;
                 EXPECT_EQ(counter->get_CallDepth(&depth), S_OK) << "from inside the event";
                 EXPECT_GE(depth, 0);
               });
  long count = 0;
  EXPECT_EQ(counter->Increment(&count), S_OK);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(counter->Increment(&count), S_OK);
  EXPECT_THAT(log.take(), ElementsAre(L"TriggeredRoundZero 1 0", L"Triggered 1 0", L"Triggered 2 1"));
  EXPECT_TRUE(isOwnThread);
}

TEST_F(ApartmentsTest, CarryTheAnswerToAnEventBack) {
  const auto filter = createThere<CKeymapFilter, _CKeymapFilter>();
  VARIANT_BOOL added = VARIANT_FALSE;
  ASSERT_EQ(filter->AddMapping(Bstr(L"Save").get(), Bstr(L"Save the file").get(), 83, 2, &added), S_OK);
  std::wstring name;
  const Sink sink(filter.get(), __uuidof(__CKeymapFilter), [&](DISPID, std::vector<VARIANT*> arguments) {
    name = textIn(Late(*arguments[0]->ppdispVal).get(L"Name"));
    *arguments[1]->pboolVal = VARIANT_TRUE;
    return S_OK;
  });
  VARIANT_BOOL processed = VARIANT_FALSE;
  VARIANT_BOOL bound = VARIANT_FALSE;
  EXPECT_EQ(filter->Process(83, 2, &processed, &bound), S_OK);
  EXPECT_EQ(bound, VARIANT_TRUE);
  EXPECT_EQ(processed, VARIANT_TRUE);
  EXPECT_EQ(name, L"Save");
}

TEST_F(ApartmentsTest, AskTheClientBeforeDeletingAFolder) {
  const TempFolder folder;
  const std::wstring full = folder.folder(L"full");
  folder.file(L"full\\file.txt");
  const auto operation = createThere<CFileOperation, _CFileOperation>();
  VARIANT_BOOL done = VARIANT_FALSE;
  ASSERT_EQ(operation->SetDelete(Bstr(full).get(), ptypFolder, &done), S_OK);
  ASSERT_EQ(operation->put_DeleteNonEmptyFolder(ovrtAsk), S_OK);
  const Late late(operation);
  EXPECT_EQ(late.get(L"Execute", Variant(true)).get().boolVal, VARIANT_FALSE);
  EXPECT_TRUE(exists(full));
  const Sink sink(operation.get(), __uuidof(__CFileOperation),
                  [](DISPID, const std::vector<VARIANT*>& arguments) {
                    for (VARIANT* argument : arguments) {
                      if (argument->vt == (VT_BYREF | VT_BOOL)) {
                        *argument->pboolVal = VARIANT_TRUE;
                      }
                    }
                    return S_OK;
                  });
  EXPECT_EQ(late.get(L"Execute", Variant(true)).get().boolVal, VARIANT_TRUE);
  EXPECT_FALSE(exists(full));
}

TEST_F(ApartmentsTest, RunTheClientsWizardStep) {
  const auto wizard = createThere<CWizard, _CWizard>();
  EXPECT_EQ(wizard->put_Caption(Bstr(L"caption").get()), S_OK);
  std::vector<std::wstring> pages;
  ComPtr<_CWizardStepDetails> details;
  for (const wchar_t* key : {L"first", L"second"}) {
    const auto step = Step::make([&pages, key](Page& page) {
      pages.push_back(page.caption + L": " + key);
      return pages.size() < 2 ? wzsoNext : wzsoFinish;
    });
    ASSERT_EQ(wizard->AddStep(step.get(), Bstr(key).get(), details.out()), S_OK);
  }
  EXPECT_EQ(Late(wizard).get(L"DoWizard").get().lVal, wizoFinished);
  EXPECT_THAT(pages, ElementsAre(L"caption - Step 1 of 2: first", L"caption - Step 2 of 2: second"));
  EXPECT_EQ(wizard->Clear(), S_OK);
}

TEST_F(ApartmentsTest, ServeAMultithreadedClient) {
  IStream* packed = packThere(__uuidof(CReferenceCounter), __uuidof(_CReferenceCounter));
  Apartment client(Apartment::Kind::multiThreaded);
  std::wstring events;
  long depth = 0;
  client.run([&] {
    const auto counter = unpack(packed, __uuidof(_CReferenceCounter)).query<_CReferenceCounter>();
    const Sink sink(counter.get(), __uuidof(__CReferenceCounter),
                    [&](DISPID, const std::vector<VARIANT*>& arguments) {
                      events += shown(*arguments[0]);
                      return S_OK;
                    });
    long count = 0;
    automation::check(counter->Increment(&count));
    automation::check(counter->get_CallDepth(&depth));
  });
  EXPECT_EQ(depth, 1);
  EXPECT_EQ(events, L"11");
}

}  // namespace
}  // namespace zeq::test
