#include <gmock/gmock.h>

#include "support/ClientValue.h"
#include "support/Component.h"
#include "support/ImportHook.h"
#include "support/Leaks.h"
#include "support/TempFolder.h"

namespace zeq::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CKeyMappingsTest : public testing::Test {
 protected:
  ComPtr<_CKeyMapping> add(const wchar_t* name = L"", const wchar_t* description = L"", short keyCode = 0,
                           short shift = 0) {
    ComPtr<_CKeyMapping> mapping;
    EXPECT_EQ(mappings->Add(mapping.out()), S_OK);
    mapping->put_Name(Bstr(name).get());
    mapping->put_description(Bstr(description).get());
    mapping->put_KeyCode(keyCode);
    mapping->put_Shift(shift);
    return mapping;
  }
  long count() {
    long number = -1;
    EXPECT_EQ(mappings->get_count(&number), S_OK);
    return number;
  }
  ComPtr<_CKeyMapping> item(const Variant& index) {
    ComPtr<_CKeyMapping> mapping;
    EXPECT_EQ(mappings->get_Item(index.get(), mapping.out()), S_OK);
    return mapping;
  }
  ComPtr<_CKeyMapping> named(const wchar_t* name) {
    ComPtr<_CKeyMapping> mapping;
    EXPECT_EQ(mappings->get_ItemByName(Bstr(name).get(), mapping.out()), S_OK);
    return mapping;
  }
  ComPtr<_CKeyMapping> bound(short keyCode, short shift) {
    ComPtr<_CKeyMapping> mapping;
    EXPECT_EQ(mappings->get_ItemByKeycode(keyCode, shift, mapping.out()), S_OK);
    return mapping;
  }
  std::wstring asString(const wchar_t* indent = L"") {
    Bstr text;
    EXPECT_EQ(mappings->AsString(Bstr(indent).get(), text.out()), S_OK);
    return std::wstring(text.view());
  }
  bool read(const std::wstring& path, const wchar_t* section) {
    VARIANT_BOOL done = 1;
    EXPECT_EQ(mappings->ReadFromFile(Bstr(path).get(), Bstr(section).get(), &done), S_OK);
    return done == VARIANT_TRUE;
  }
  bool write(const std::wstring& path, const wchar_t* section) {
    VARIANT_BOOL done = 1;
    EXPECT_EQ(mappings->WriteToFile(Bstr(path).get(), Bstr(section).get(), &done), S_OK);
    return done == VARIANT_TRUE;
  }
  /// Every mapping as it stands in a file.
  std::vector<std::wstring> lines() {
    std::vector<std::wstring> all;
    for (long i = 1; i <= count(); ++i) {
      const Late late(item(Variant(i)));
      const auto number = [&](const wchar_t* name) { return std::to_wstring(late.get(name).get().iVal); };
      all.push_back(textIn(late.get(L"Name")) + L"|" + textIn(late.get(L"description")) + L"|" +
                    number(L"KeyCode") + L"|" + number(L"Shift"));
    }
    return all;
  }

  TempFolder folder;
  ComPtr<_CKeyMappings> mappings = create<CKeyMappings, _CKeyMappings>();
};

// The collection.

TEST_F(CKeyMappingsTest, StartsEmpty) {
  EXPECT_EQ(count(), 0);
  EXPECT_EQ(asString(), L"Keyboard mappings: ");
  EXPECT_EQ(asString(L"  "), L"  Keyboard mappings: ");
}

TEST_F(CKeyMappingsTest, HandsOutTheMappingsThemselves) {
  const auto first = add(L"A");
  const auto second = add(L"B");
  EXPECT_EQ(count(), 2);
  EXPECT_EQ(item(Variant(1L)).get(), first.get());
  EXPECT_EQ(item(Variant(2L)).get(), second.get());
  item(Variant(2L))->put_Name(Bstr(L"C").get());
  EXPECT_EQ(named(L"C").get(), second.get());
}

TEST_F(CKeyMappingsTest, AddsEmptyMappings) {
  ComPtr<_CKeyMapping> mapping;
  EXPECT_EQ(mappings->Add(mapping.out()), S_OK);
  EXPECT_THAT(lines(), ElementsAre(L"||0|0"));
}

TEST_F(CKeyMappingsTest, HasNothingWhereThereIsNoMapping) {
  add(L"A");
  for (const Variant& index : {Variant(0L), Variant(2L), Variant(-1L), Variant(L"A"), Variant(L"1"),
                               Variant(), Variant::null(), Variant(1e10), Variant(mappings.get())}) {
    EXPECT_FALSE(item(index)) << index.type();
  }
}

TEST_F(CKeyMappingsTest, TakesWholeNumbersOfAnyType) {
  const auto mapping = add(L"A");
  EXPECT_EQ(item(Variant(static_cast<short>(1))).get(), mapping.get());
  EXPECT_EQ(item(Variant(1.0)).get(), mapping.get());
}

TEST_F(CKeyMappingsTest, FindsTheFirstOfAName) {
  const auto first = add(L"Save", L"first");
  add(L"Save", L"second");
  EXPECT_EQ(named(L"Save").get(), first.get());
  EXPECT_FALSE(named(L"save"));
  EXPECT_FALSE(named(L"Save "));
  EXPECT_FALSE(named(L""));
}

TEST_F(CKeyMappingsTest, FindsTheFirstOfAKeystroke) {
  const auto first = add(L"A", L"", 65, 2);
  add(L"B", L"", 65, 2);
  const auto negative = add(L"C", L"", -65, -2);
  EXPECT_EQ(bound(65, 2).get(), first.get());
  EXPECT_EQ(bound(-65, -2).get(), negative.get());
  EXPECT_FALSE(bound(65, 0));
  EXPECT_FALSE(bound(66, 2));
  EXPECT_FALSE(bound(2, 65));
}

TEST_F(CKeyMappingsTest, FindsKeystrokesThatClientsChange) {
  const auto first = add(L"A", L"", 65, 0);
  const auto second = add(L"B", L"", 66, 0);
  EXPECT_EQ(bound(65, 0).get(), first.get());
  second->put_KeyCode(65);
  EXPECT_EQ(bound(65, 0).get(), first.get()) << "still the first";
  EXPECT_FALSE(bound(66, 0));
  first->put_Shift(1);
  EXPECT_EQ(bound(65, 0).get(), second.get());
  EXPECT_EQ(bound(65, 1).get(), first.get());
  first->put_Shift(0);
  EXPECT_EQ(bound(65, 0).get(), first.get());
}

TEST_F(CKeyMappingsTest, FindsNoMappingThatIsGone) {
  auto first = add(L"A", L"", 65, 0);
  const auto second = add(L"B", L"", 65, 0);
  EXPECT_EQ(bound(65, 0).get(), first.get());
  EXPECT_EQ(mappings->Remove(Variant(1L).get()), S_OK);
  EXPECT_EQ(bound(65, 0).get(), second.get());
  first->put_KeyCode(66);
  EXPECT_FALSE(bound(66, 0)) << "it belongs to the client alone";
  EXPECT_EQ(mappings->Clear(), S_OK);
  EXPECT_FALSE(bound(65, 0));
}

TEST_F(CKeyMappingsTest, MappingsOutliveTheCollection) {
  const auto mapping = add(L"A", L"", 65, 0);
  mappings.reset();
  mapping->put_KeyCode(66);
  short keyCode = 0;
  EXPECT_EQ(mapping->get_KeyCode(&keyCode), S_OK);
  EXPECT_EQ(keyCode, 66);
}

TEST_F(CKeyMappingsTest, RemovesByPosition) {
  add(L"A");
  add(L"B");
  add(L"C");
  EXPECT_EQ(mappings->Remove(Variant(2L).get()), S_OK);
  EXPECT_THAT(lines(), ElementsAre(L"A||0|0", L"C||0|0"));
  for (const Variant& index : {Variant(0L), Variant(3L), Variant(L"A"), Variant::null(), Variant(1e10)}) {
    EXPECT_EQ(mappings->Remove(index.get()), S_OK);
  }
  EXPECT_EQ(count(), 2);
  EXPECT_EQ(mappings->Clear(), S_OK);
  EXPECT_EQ(count(), 0);
}

TEST_F(CKeyMappingsTest, Enumerates) {
  const auto first = add(L"A");
  const auto second = add(L"B");
  ComPtr<IUnknown> unknown;
  EXPECT_EQ(mappings->get_NewEnum(unknown.out()), S_OK);
  const auto enumerator = unknown.query<IEnumVARIANT>(IID_IEnumVARIANT);
  ASSERT_TRUE(enumerator);
  std::vector<IDispatch*> seen;
  Variant each;
  while (enumerator->Next(1, each.out(), nullptr) == S_OK) {
    ASSERT_EQ(each.type(), VT_DISPATCH);
    seen.push_back(each.get().pdispVal);
  }
  EXPECT_THAT(seen, ElementsAre(first.get(), second.get()));
}

TEST_F(CKeyMappingsTest, DescribesItself) {
  add(L"Save", L"Save file", 83, 2);
  add(L"Quit", L"", 81, 6);
  EXPECT_EQ(asString(), L"Keyboard mappings: \r\n    [CTRL S] Save - Save file\r\n    [CTRL-ALT Q] Quit - ");
  EXPECT_EQ(asString(L"  "),
            L"  Keyboard mappings: \r\n      [CTRL S] Save - Save file\r\n      [CTRL-ALT Q] Quit - ");
}

// Files.

TEST_F(CKeyMappingsTest, WritesAFile) {
  add(L"Save", L"Save file", 83, 2);
  add(L"Quit", L"", 81, 2);
  const std::wstring path = folder.file(L"keys.ini", "[Other]\r\nlost=yes\r\n");
  EXPECT_TRUE(write(path, L"Keys"));
  EXPECT_EQ(contentOf(path),
            "[Keys]\r\nNMappings=2\r\nMapping_1=Save|Save file|83|2\r\nMapping_2=Quit||81|2\r\n");
}

TEST_F(CKeyMappingsTest, WritesAnEmptyCollectionAndNegativeNumbers) {
  EXPECT_TRUE(write(folder / L"keys.ini", L"Keys"));
  EXPECT_EQ(contentOf(folder / L"keys.ini"), "[Keys]\r\nNMappings=0\r\n");
  EXPECT_TRUE(read(folder / L"keys.ini", L"Keys"));
  add(L"A", L"B", -1, -32768);
  EXPECT_TRUE(write(folder / L"keys.ini", L"Keys"));
  EXPECT_EQ(contentOf(folder / L"keys.ini"), "[Keys]\r\nNMappings=1\r\nMapping_1=A|B|-1|-32768\r\n");
}

TEST_F(CKeyMappingsTest, ReadsWhatItWrote) {
  add(L"Save", L"Save file", 83, 2);
  add(L"Quit", L"", 81, 2);
  add(L"\u00e9", L"d", 3, 4);
  EXPECT_TRUE(write(folder / L"keys.ini", L"Keys"));
  mappings = create<CKeyMappings, _CKeyMappings>();
  add(L"replaced");
  EXPECT_TRUE(read(folder / L"keys.ini", L"Keys"));
  EXPECT_THAT(lines(), ElementsAre(L"Save|Save file|83|2", L"Quit||81|2", L"\u00e9|d|3|4"));
  EXPECT_TRUE(bound(81, 2));
}

TEST_F(CKeyMappingsTest, WritesNothingWhereItCannot) {
  add(L"A");
  EXPECT_FALSE(write(folder / L"missing\\keys.ini", L"Keys"));
  EXPECT_FALSE(write(folder.path(), L"Keys"));
  EXPECT_FALSE(write(L"", L"Keys"));
  const std::wstring locked = folder.file(L"locked.ini", "before");
  const HANDLE file =
      CreateFileW(locked.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_FALSE(write(locked, L"Keys"));
  CloseHandle(file);
  EXPECT_EQ(contentOf(locked), "before");
}

BOOL WINAPI writeHalf(HANDLE, const void*, DWORD size, DWORD* written, OVERLAPPED*) {
  *written = size / 2;
  return TRUE;
}

BOOL WINAPI refuseToWrite(HANDLE, const void*, DWORD, DWORD* written, OVERLAPPED*) {
  *written = 0;
  SetLastError(ERROR_DISK_FULL);
  return FALSE;
}

TEST_F(CKeyMappingsTest, AFullDiskIsReportedAndLeavesNoFileOpen) {
  add(L"A");
  for (const auto fault : {&refuseToWrite, &writeHalf}) {
    const ImportHook full(component(), "WriteFile", fault);
    EXPECT_FALSE(write(folder / L"keys.ini", L"Keys"));
  }
  EXPECT_NE(DeleteFileW((folder / L"keys.ini").c_str()), FALSE);
}

TEST_F(CKeyMappingsTest, LeavesNoFileOpen) {
  EXPECT_TRUE(write(folder / L"keys.ini", L"Keys"));
  const HANDLE file =
      CreateFileW((folder / L"keys.ini").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_NE(file, INVALID_HANDLE_VALUE);
  CloseHandle(file);
}

TEST_F(CKeyMappingsTest, WritesAsManyMappingsAsCanBeCounted) {
  ComPtr<_CKeyMapping> mapping;
  for (int i = 0; i < 32767; ++i) {
    ASSERT_EQ(mappings->Add(mapping.out()), S_OK);
  }
  EXPECT_TRUE(write(folder / L"keys.ini", L"Keys"));
  const std::string full = contentOf(folder / L"keys.ini");
  EXPECT_THAT(full, testing::EndsWith("\r\nMapping_32767=||0|0\r\n"));
  add();
  EXPECT_FALSE(write(folder / L"keys.ini", L"Keys"));
  EXPECT_EQ(contentOf(folder / L"keys.ini"), full);
}

TEST_F(CKeyMappingsTest, SkipsWhatIsNoMapping) {
  const std::wstring path = folder.file(L"keys.ini",
                                        "[Keys]\r\nNMappings=5\r\nMapping_1=Open|Open a file|79\r\n"
                                        "Mapping_3= A | B | 65 | 2 \r\nMapping_5=C|D|66|1|x|y\r\n"
                                        "Mapping_6=not counted|D|66|1\r\n");
  EXPECT_TRUE(read(path, L"Keys"));
  EXPECT_THAT(lines(), ElementsAre(L"A|B|65|2", L"C|D|66|1"));
}

TEST_F(CKeyMappingsTest, KeepsTheKeystrokeBeforeWhereThereIsNoNumber) {
  const std::wstring path =
      folder.file(L"keys.ini", "[Keys]\r\nNMappings=2\r\nMapping_1=A|B|65|0\r\nMapping_2=X|Y|abc|1\r\n");
  EXPECT_TRUE(read(path, L"Keys"));
  EXPECT_THAT(lines(), ElementsAre(L"A|B|65|0", L"X|Y|65|1"));
  EXPECT_TRUE(read(folder.file(L"other.ini", "[Keys]\r\nNMappings=1\r\nMapping_1=X|Y|abc|1\r\n"), L"Keys"));
  EXPECT_THAT(lines(), ElementsAre(L"X|Y|0|1")) << "but not from one file to the next";
}

TEST_F(CKeyMappingsTest, ReadsNothingWithoutACount) {
  for (const char* content :
       {"[Keys]\r\nNMappings=abc\r\nMapping_1=A|B|65|0\r\n", "[Keys]\r\nMapping_1=A|B|65|0\r\n",
        "[Other]\r\nNMappings=1\r\nMapping_1=A|B|65|0\r\n", ""}) {
    add(L"before");
    EXPECT_FALSE(read(folder.file(L"keys.ini", content), L"Keys")) << content;
    EXPECT_EQ(count(), 0) << content;
  }
}

TEST_F(CKeyMappingsTest, ReadsNothingWithoutAFileOrASection) {
  add(L"before");
  EXPECT_FALSE(read(folder / L"missing.ini", L"Keys"));
  EXPECT_EQ(count(), 0);
  add(L"before");
  EXPECT_FALSE(read(L"", L"Keys"));
  EXPECT_EQ(count(), 0);
  add(L"before");
  EXPECT_FALSE(read(folder.file(L"keys.ini", "[Keys]\r\nNMappings=1\r\nMapping_1=A|B|65|0\r\n"), L""));
  EXPECT_EQ(count(), 0);
}

TEST_F(CKeyMappingsTest, RoundsTheCount) {
  const auto withCount = [&](const std::string& number) {
    return read(
        folder.file(L"keys.ini", "[Keys]\r\nNMappings=" + number +
                                     "\r\nMapping_1=A|B|1|0\r\nMapping_2=C|D|2|0\r\nMapping_3=E|F|3|0\r\n"),
        L"Keys");
  };
  EXPECT_TRUE(withCount("2.5"));
  EXPECT_EQ(count(), 2);
  EXPECT_TRUE(withCount("1.5"));
  EXPECT_EQ(count(), 2);
  EXPECT_TRUE(withCount("3e0"));
  EXPECT_EQ(count(), 3);
  EXPECT_TRUE(withCount("-3"));
  EXPECT_EQ(count(), 0);
  add(L"before");
  EXPECT_FALSE(withCount("32768"));
  EXPECT_EQ(count(), 0);
}

TEST_F(CKeyMappingsTest, KeepsWhatItReadBeforeAnError) {
  const std::wstring path =
      folder.file(L"keys.ini",
                  "[Keys]\r\nNMappings=3\r\nMapping_1=A|B|65|0\r\nMapping_2=C|D|32768|0\r\n"
                  "Mapping_3=E|F|66|0\r\n");
  EXPECT_FALSE(read(path, L"Keys"));
  EXPECT_THAT(lines(), ElementsAre(L"A|B|65|0"));
}

TEST_F(CKeyMappingsTest, SplitsABarInsideAName) {
  add(L"A|B", L"C", 65, 1);
  EXPECT_TRUE(write(folder / L"keys.ini", L"Keys"));
  EXPECT_TRUE(read(folder / L"keys.ini", L"Keys"));
  EXPECT_THAT(lines(), ElementsAre(L"A|B|0|65"));
}

// By name.

TEST_F(CKeyMappingsTest, AnswersByName) {
  const Late late(mappings);
  const Late added(late.get(L"Add").get().pdispVal);
  EXPECT_EQ(added.put(L"Name", Variant(L"A")).code, S_OK);
  EXPECT_EQ(added.put(L"KeyCode", Variant(65L)).code, S_OK);
  EXPECT_EQ(late.get(L"Count").get().lVal, 1);
  EXPECT_EQ(late.get(L"Item", Variant(1L)).get().pdispVal, added.dispatch());
  EXPECT_EQ(late.get(L"ItemByName", Variant(L"A")).get().pdispVal, added.dispatch());
  EXPECT_EQ(late.get(L"ItemByKeycode", Variant(65L), Variant(0L)).get().pdispVal, added.dispatch());
  EXPECT_EQ(late.get(L"ItemByKeycode", Variant(66L), Variant(0L)).get().pdispVal, nullptr);
  EXPECT_EQ(textIn(late.get(L"AsString", Variant(L" "))), L" Keyboard mappings: \r\n     [A] A - ");
  EXPECT_EQ(late.get(L"WriteToFile", Variant(folder / L"keys.ini"), Variant(L"Keys")).get().boolVal,
            VARIANT_TRUE);
  EXPECT_EQ(late.call(L"Remove", Variant(1L)).code, S_OK);
  EXPECT_EQ(late.get(L"ReadFromFile", Variant(folder / L"keys.ini"), Variant(L"Keys")).get().boolVal,
            VARIANT_TRUE);
  EXPECT_EQ(late.get(L"count").get().lVal, 1);
  EXPECT_EQ(late.call(L"Clear").code, S_OK);
  EXPECT_EQ(late.get(L"count").get().lVal, 0);
}

TEST_F(CKeyMappingsTest, LeaksNothing) {
  expectNoLeak(100, [&] {
    add(L"Save", L"Save file", 83, 2);
    add(L"Quit", L"", 81, 2);
    write(folder / L"keys.ini", L"Keys");
    read(folder / L"keys.ini", L"Keys");
    bound(83, 2);
    named(L"Quit");
    item(Variant(1L));
    asString();
    mappings->Remove(Variant(1L).get());
    mappings->Clear();
  });
}

TEST_F(CKeyMappingsTest, APositionThatLooksForAKeystrokeWhileItIsTaken) {
  add(L"A", L"", 65);
  add(L"B", L"", 66);
  EXPECT_TRUE(bound(65, 0));
  const Variant first = ClientValue::make([&] {
    EXPECT_TRUE(bound(66, 0));
    return Variant(1L);
  });
  EXPECT_EQ(mappings->Remove(first.get()), S_OK);
  EXPECT_EQ(count(), 1);
  EXPECT_FALSE(bound(65, 0));
  EXPECT_TRUE(bound(66, 0));
}

}  // namespace
}  // namespace zeq::test
