#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "support/Component.h"
#include "support/ImportHook.h"
#include "support/IniText.h"
#include "support/Records.h"

namespace zeq::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Texts = std::vector<std::wstring>;

/// The strings of an array of strings, which must count from 0.
Texts textsIn(const VARIANT& value) {
  EXPECT_EQ(value.vt, VT_ARRAY | VT_BSTR);
  LONG lower = -1;
  EXPECT_EQ(SafeArrayGetLBound(value.parray, 1, &lower), S_OK);
  EXPECT_EQ(lower, 0);
  LONG upper = -1;
  EXPECT_EQ(SafeArrayGetUBound(value.parray, 1, &upper), S_OK);
  Texts result;
  for (LONG index = 0; index <= upper; ++index) {
    Bstr element;
    EXPECT_EQ(SafeArrayGetElement(value.parray, &index, element.out()), S_OK);
    result.emplace_back(element.view());
  }
  return result;
}

Variant newArray(VARTYPE type, ULONG size) {
  Variant result;
  result.get().parray = SafeArrayCreateVector(type, 0, size);
  result.get().vt = static_cast<VARTYPE>(VT_ARRAY | type);
  return result;
}

Variant textArray(std::initializer_list<std::wstring_view> texts) {
  Variant result = newArray(VT_BSTR, static_cast<ULONG>(texts.size()));
  LONG index = 0;
  for (const auto text : texts) {
    EXPECT_EQ(SafeArrayPutElement(result.get().parray, &index, Bstr(text).get()), S_OK);
    ++index;
  }
  return result;
}

Variant arrayHolding(Variant item) {
  Variant result = newArray(VT_VARIANT, 1);
  LONG index = 0;
  EXPECT_EQ(SafeArrayPutElement(result.get().parray, &index, &item.get()), S_OK);
  return result;
}

class CIniFileExTest : public testing::Test {
 protected:
  void open(std::string_view content, std::wstring_view section = L"General") {
    ini.write(content);
    EXPECT_EQ(file->put_file(Bstr(ini.path()).get()), S_OK);
    setSection(section);
  }
  void setSection(std::wstring_view name) { EXPECT_EQ(file->put_section(Bstr(name).get()), S_OK); }
  std::wstring section() {
    Bstr result;
    EXPECT_EQ(file->get_section(result.out()), S_OK);
    return std::wstring(result.view());
  }
  std::wstring value(std::wstring_view name) {
    Variant result;
    EXPECT_EQ(file->get_values(Bstr(name).get(), result.out()), S_OK);
    return textIn(result);
  }
  HRESULT setValue(std::wstring_view name, const Variant& written) {
    return file->put_values(Bstr(name).get(), written.get());
  }
  std::wstring getValue(std::wstring_view name, std::wstring_view fallback = {}) {
    Variant result;
    failed = 7;
    EXPECT_EQ(file->getValue(Bstr(name).get(), Bstr(fallback).get(), &failed, result.out()), S_OK);
    return textIn(result);
  }
  using Enumeration = HRESULT (STDMETHODCALLTYPE _CIniFileEx::*)(VARIANT*, short*);
  short enumerate(Enumeration what) {
    short count = 77;
    EXPECT_EQ((file.get()->*what)(&array.get(), &count), S_OK);
    return count;
  }

  IniText ini;
  ComPtr<_CIniFileEx> file = create<CIniFileEx, _CIniFileEx>();
  VARIANT_BOOL failed = VARIANT_FALSE;
  Variant array;
};

TEST_F(CIniFileExTest, StartsEmpty) {
  Bstr name;
  EXPECT_EQ(file->get_file(name.out()), S_OK);
  EXPECT_EQ(name.view(), L"");
  EXPECT_EQ(section(), L"");
}

TEST_F(CIniFileExTest, AFileNameClearsTheSection) {
  open("[General]\r\nName=x\r\n");
  EXPECT_EQ(section(), L"General");
  EXPECT_EQ(file->put_file(Bstr(ini.path()).get()), S_OK);
  EXPECT_EQ(section(), L"");
  Bstr name;
  EXPECT_EQ(file->get_file(name.out()), S_OK);
  EXPECT_EQ(name.view(), ini.path());
}

TEST_F(CIniFileExTest, ReadsValues) {
  open("[General]\r\nName = Alpha \r\nEmpty=\r\n[Other]\r\nName=Beta\r\n");
  EXPECT_EQ(value(L"name"), L"Alpha");
  EXPECT_EQ(value(L"Empty"), L"");
  EXPECT_EQ(value(L"Missing"), L"");
  setSection(L"Other");
  EXPECT_EQ(value(L"Name"), L"Beta");
}

TEST_F(CIniFileExTest, GetValueTellsWhetherThereWasOne) {
  open("[General]\r\nName=Alpha\r\nEmpty=\r\n");
  EXPECT_EQ(getValue(L"Name", L"d"), L"Alpha");
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(getValue(L"k", L"d"), L"d");
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(getValue(L"k"), L"");
  EXPECT_EQ(failed, VARIANT_TRUE);
  EXPECT_EQ(getValue(L"Empty", L"d"), L"d");
  EXPECT_EQ(failed, VARIANT_TRUE);
  EXPECT_EQ(getValue(L"Empty"), L"");
  EXPECT_EQ(failed, VARIANT_TRUE);
}

TEST_F(CIniFileExTest, ADefaultIsCutAndConvertedAsAValueIs) {
  open("[General]\r\n");
  EXPECT_EQ(getValue(L"k", std::wstring(300, L'd')), std::wstring(254, L'd'));
  EXPECT_EQ(getValue(L"k", L"\x4E2D"), wide(narrow(L"\x4E2D")));
}

TEST_F(CIniFileExTest, ValuesHave254Characters) {
  for (const unsigned length : {253U, 254U, 255U, 300U, 16384U}) {
    const std::string text(length, 'v');
    open("[General]\r\nName=" + text + "\r\n");
    EXPECT_EQ(value(L"Name"), wide(text.substr(0, 254))) << length;
    EXPECT_EQ(getValue(L"Name"), wide(text.substr(0, 254))) << length;
  }
}

TEST_F(CIniFileExTest, WritesValuesAsText) {
  open("[General]\r\nOld=kept\r\n");
  EXPECT_EQ(setValue(L"Text", Variant(L"Alpha")), S_OK);
  EXPECT_EQ(setValue(L"Number", Variant(80L)), S_OK);
  EXPECT_EQ(setValue(L"Flag", Variant(true)), S_OK);
  EXPECT_EQ(setValue(L"Nothing", Variant()), S_OK);
  EXPECT_EQ(setValue(L"Accent", Variant(wide("Caf\xE9"))), S_OK);
  EXPECT_EQ(ini.platformValue("General", "Text"), "Alpha");
  EXPECT_EQ(ini.platformValue("General", "Number"), "80");
  EXPECT_EQ(ini.platformValue("General", "Flag"), "True");
  EXPECT_EQ(ini.platformValue("General", "Nothing", "none"), "");
  EXPECT_EQ(ini.platformValue("General", "Accent"), "Caf\xE9");
  EXPECT_EQ(ini.platformValue("General", "Old"), "kept");
}

TEST_F(CIniFileExTest, WritesValuesOfAnyLength) {
  open("");
  for (const unsigned length : {254U, 255U, 16383U, 16384U, 60000U}) {
    const std::wstring text(length, L'v');
    EXPECT_EQ(setValue(L"Name", Variant(std::wstring_view(text))), S_OK);
    EXPECT_TRUE(ini.content() == "[General]\r\nName=" + std::string(length, 'v') + "\r\n") << length;
    EXPECT_EQ(value(L"Name").size(), 254U) << length;
  }
}

TEST_F(CIniFileExTest, WritesInTheCodePageUpToTheFirstNul) {
  using namespace std::literals;
  open("");
  EXPECT_EQ(setValue(L"Word", Variant(L"a\x4E2Dz")), S_OK);
  EXPECT_EQ(ini.platformValue("General", "Word"), narrow(L"a\x4E2Dz"));
  EXPECT_EQ(value(L"Word"), wide(narrow(L"a\x4E2Dz")));
  EXPECT_EQ(setValue(L"Cut\0key"sv, Variant(L"cut\0value"sv)), S_OK);
  EXPECT_EQ(ini.platformValue("General", "Cut"), "cut");
  EXPECT_EQ(getValue(L"Missing\0key"sv, L"cut\0default"sv), L"cut");
}

TEST_F(CIniFileExTest, OnlySingleValuesLoseTheirQuotes) {
  open("[General]\r\nDouble=\"  kept  \"\r\nSingle='x y'\r\nHalf=\"x y\r\n");
  for (const char* key : {"Double", "Single", "Half"}) {
    EXPECT_EQ(value(wide(key)), wide(ini.platformValue("General", key))) << key;
  }
  EXPECT_EQ(value(L"Double"), L"  kept  ");
  EXPECT_EQ(enumerate(&_CIniFileEx::enumSectionValues), 3);
  EXPECT_THAT(textsIn(array.get()), ElementsAre(L"\"  kept  \"", L"'x y'", L"\"x y"));
}

TEST_F(CIniFileExTest, ListsKeysAndSectionsAsOftenAsTheyStandThere) {
  open("[General]\r\nkey=1\r\nother=2\r\nKEY=3\r\n[Other]\r\nb=2\r\n[general]\r\nlast=4\r\n");
  std::string names(2047, '\0');
  names.resize(GetPrivateProfileSectionNamesA(names.data(), 2047, ini.narrowPath().c_str()));
  EXPECT_EQ(enumerate(&_CIniFileEx::enumSections),
            static_cast<short>(std::count(names.begin(), names.end(), '\0')));
  EXPECT_EQ(enumerate(&_CIniFileEx::enumSectionKeys), 3);
  EXPECT_THAT(textsIn(array.get()), ElementsAre(L"key", L"other", L"KEY"));
  EXPECT_EQ(value(L"key"), L"1");
  EXPECT_EQ(value(L"last"), wide(ini.platformValue("General", "last")));
}

TEST_F(CIniFileExTest, AReadOnlyFileIsReadAndWrittenWhereTheSystemWrites) {
  open("[General]\r\nName=x\r\n");
  ini.setReadOnly();
  const bool isProtected =
      WritePrivateProfileStringA("General", "Name", "x", ini.narrowPath().c_str()) == FALSE;
  EXPECT_EQ(setValue(L"Name", Variant(L"y")), S_OK);
  EXPECT_EQ(value(L"Name"), isProtected ? L"x" : L"y");
}

TEST_F(CIniFileExTest, WhatHasNoTextIsNotWritten) {
  open("[General]\r\nName=kept\r\n");
  EXPECT_EQ(setValue(L"Name", Variant::null()), S_OK);
  EXPECT_EQ(setValue(L"Name", Variant(file.get())), S_OK);
  EXPECT_EQ(ini.content(), "[General]\r\nName=kept\r\n");
}

TEST_F(CIniFileExTest, WritesCreateTheFile) {
  open("");
  DeleteFileW(ini.path().c_str());
  EXPECT_EQ(setValue(L"Name", Variant(L"x")), S_OK);
  EXPECT_EQ(ini.platformValue("General", "Name"), "x");
}

TEST_F(CIniFileExTest, AFileThatCannotBeWrittenStaysAsItIs) {
  const std::string content = "[General]\r\nName=kept\r\n";
  open(content);
  const auto lock = ini.denyWriting();
  ASSERT_EQ(WritePrivateProfileStringA("General", "Name", "x", ini.narrowPath().c_str()), FALSE);
  EXPECT_EQ(setValue(L"Name", Variant(L"x")), S_OK);
  EXPECT_EQ(file->deleteKey(Bstr(L"Name").get()), S_OK);
  EXPECT_EQ(file->deleteSection(Bstr(L"General").get()), S_OK);
  EXPECT_EQ(file->addSection(Bstr(L"New").get(), nullptr), S_OK);
  EXPECT_EQ(file->writeSection(textArray({L"a=1"}).get()), S_OK);
  EXPECT_EQ(file->flush(), S_OK);
  EXPECT_EQ(ini.content(), content);

  EXPECT_EQ(file->put_file(Bstr(L"C:\\no such folder\\x.ini").get()), S_OK);
  setSection(L"General");
  EXPECT_EQ(setValue(L"Name", Variant(L"x")), S_OK);
  EXPECT_EQ(value(L"Name"), L"");
  EXPECT_EQ(GetFileAttributesW(L"C:\\no such folder"), INVALID_FILE_ATTRIBUTES);
}

BOOL WINAPI refuseLine(const char*, const char*, const char*, const char*) {
  SetLastError(ERROR_DISK_FULL);
  return FALSE;
}

BOOL WINAPI refuseSection(const char*, const char*, const char*) {
  SetLastError(ERROR_DISK_FULL);
  return FALSE;
}

TEST_F(CIniFileExTest, AFullDiskIsNotReported) {
  const std::string content = "[General]\r\nName=kept\r\n";
  open(content);
  const ImportHook noLine(component(), "WritePrivateProfileStringA", &refuseLine);
  const ImportHook noSection(component(), "WritePrivateProfileSectionA", &refuseSection);
  EXPECT_EQ(setValue(L"Name", Variant(L"x")), S_OK);
  EXPECT_EQ(file->deleteKey(Bstr(L"Name").get()), S_OK);
  EXPECT_EQ(file->deleteSection(Bstr(L"General").get()), S_OK);
  EXPECT_EQ(file->writeSection(textArray({L"a=1"}).get()), S_OK);
  EXPECT_EQ(file->flush(), S_OK);
  VARIANT_BOOL setAsCurrent = VARIANT_TRUE;
  EXPECT_EQ(file->addSection(Bstr(L"New").get(), &setAsCurrent), S_OK);
  EXPECT_EQ(section(), L"New");
  EXPECT_EQ(ini.content(), content);
}

TEST_F(CIniFileExTest, AddsAnEmptySection) {
  open("[General]\r\nName=x\r\n");
  VARIANT_BOOL setAsCurrent = VARIANT_FALSE;
  EXPECT_EQ(file->addSection(Bstr(L"First").get(), &setAsCurrent), S_OK);
  EXPECT_EQ(section(), L"General");
  setAsCurrent = VARIANT_TRUE;
  EXPECT_EQ(file->addSection(Bstr(L"New").get(), &setAsCurrent), S_OK);
  EXPECT_EQ(section(), L"New");
  EXPECT_EQ(enumerate(&_CIniFileEx::enumSections), 3);
  EXPECT_THAT(textsIn(array.get()), ElementsAre(L"General", L"First", L"New"));
  EXPECT_EQ(ini.platformValue("New", nullptr), "");
  EXPECT_EQ(ini.platformValue("General", "Name"), "x");
}

TEST_F(CIniFileExTest, AddingASectionThatExistsKeepsItsKeys) {
  open("[General]\r\nName=x\r\nDummy=lost\r\n");
  EXPECT_EQ(file->addSection(Bstr(L"General").get(), nullptr), S_OK);
  EXPECT_EQ(ini.platformValue("General", "Name"), "x");
  EXPECT_EQ(ini.platformValue("General", "Dummy", "none"), "none");
}

TEST_F(CIniFileExTest, DeletesAnySection) {
  open("[General]\r\na=1\r\n[Other]\r\nb=2\r\n");
  EXPECT_EQ(file->deleteSection(Bstr(L"other").get()), S_OK);
  EXPECT_EQ(section(), L"General");
  EXPECT_EQ(enumerate(&_CIniFileEx::enumSections), 1);
  EXPECT_THAT(textsIn(array.get()), ElementsAre(L"General"));
  EXPECT_EQ(ini.platformValue("Other", "b", "none"), "none");
  EXPECT_EQ(value(L"a"), L"1");
}

TEST_F(CIniFileExTest, DeletesAKeyOfTheCurrentSection) {
  open("[General]\r\na=1\r\nb=2\r\n[Other]\r\na=3\r\n");
  EXPECT_EQ(file->deleteKey(Bstr(L"A").get()), S_OK);
  EXPECT_EQ(ini.platformValue("General", "a", "none"), "none");
  EXPECT_EQ(ini.platformValue("General", "b"), "2");
  EXPECT_EQ(ini.platformValue("Other", "a"), "3");
}

TEST_F(CIniFileExTest, AfterAFlushTheFileHoldsWhatWasWritten) {
  open("");
  EXPECT_EQ(setValue(L"Name", Variant(L"x")), S_OK);
  EXPECT_EQ(file->flush(), S_OK);
  EXPECT_THAT(ini.content(), testing::HasSubstr("Name=x"));
}

TEST_F(CIniFileExTest, WriteSectionReplacesTheContent) {
  open("[General]\r\nold=1\r\n[Other]\r\nb=2\r\n");
  EXPECT_EQ(file->writeSection(textArray({L"a=1", L"b=two", L"c="}).get()), S_OK);
  EXPECT_EQ(ini.platformValue("General", nullptr), std::string("a\0b\0c\0", 6));
  EXPECT_EQ(value(L"b"), L"two");
  EXPECT_EQ(ini.platformValue("Other", "b"), "2");
}

TEST_F(CIniFileExTest, WriteSectionTakesEveryKindOfArray) {
  open("");
  EXPECT_EQ(file->writeSection(arrayHolding(Variant(L"b=2")).get()), S_OK);
  EXPECT_EQ(value(L"b"), L"2");

  VARIANT reference;
  VariantInit(&reference);
  Variant texts = textArray({L"c=3"});
  reference.vt = VT_BYREF | VT_ARRAY | VT_BSTR;
  reference.pparray = &texts.get().parray;
  EXPECT_EQ(file->writeSection(reference), S_OK);
  EXPECT_EQ(value(L"c"), L"3");

  SAFEARRAYBOUND bound{2, 5};
  Variant numbers;
  numbers.get().parray = SafeArrayCreate(VT_I4, 1, &bound);
  numbers.get().vt = VT_ARRAY | VT_I4;
  EXPECT_EQ(file->writeSection(numbers.get()), S_OK);
  EXPECT_EQ(value(L"c"), L"");
}

TEST_F(CIniFileExTest, WriteSectionTakesANulForTheEndOfALine) {
  using namespace std::literals;
  open("[General]\r\nold=1\r\n");
  EXPECT_EQ(file->writeSection(textArray({L"a=1\0b=2"sv, L"c=\x4E2D"}).get()), S_OK);
  EXPECT_EQ(ini.platformValue("General", nullptr), std::string("a\0b\0c\0", 6));
  EXPECT_EQ(ini.platformValue("General", "c"), narrow(L"\x4E2D"));
}

TEST_F(CIniFileExTest, WriteSectionIgnoresWhatIsNoArray) {
  const std::string content = "[General]\r\na=1\r\n";
  open(content);
  EXPECT_EQ(file->writeSection(Variant(L"b=2").get()), S_OK);
  EXPECT_EQ(file->writeSection(Variant().get()), S_OK);
  // Nor is anything written for an array that has no texts, or more than one dimension, or no size.
  EXPECT_EQ(file->writeSection(arrayHolding(Variant::null()).get()), S_OK);
  std::array<SAFEARRAYBOUND, 2> bounds{SAFEARRAYBOUND{1, 0}, SAFEARRAYBOUND{1, 0}};
  Variant table;
  table.get().parray = SafeArrayCreate(VT_BSTR, 2, bounds.data());
  table.get().vt = VT_ARRAY | VT_BSTR;
  EXPECT_EQ(file->writeSection(table.get()), S_OK);
  Variant unsized;
  unsized.get().vt = VT_ARRAY | VT_BSTR;
  unsized.get().parray = nullptr;
  EXPECT_EQ(file->writeSection(unsized.get()), S_OK);
  EXPECT_EQ(ini.content(), content);
}

TEST_F(CIniFileExTest, WriteSectionOfAnEmptyArrayEmptiesTheSection) {
  open("[General]\r\na=1\r\n");
  EXPECT_EQ(file->writeSection(textArray({}).get()), S_OK);
  EXPECT_EQ(ini.platformValue("General", nullptr), "");
}

TEST_F(CIniFileExTest, ListsASection) {
  open("[General]\r\na=1\r\nb=2\r\n");
  EXPECT_EQ(enumerate(&_CIniFileEx::enumSectionKeys), 2);
  EXPECT_THAT(textsIn(array.get()), ElementsAre(L"a", L"b"));
  EXPECT_EQ(enumerate(&_CIniFileEx::enumSectionValues), 2);
  EXPECT_THAT(textsIn(array.get()), ElementsAre(L"1", L"2"));
  EXPECT_EQ(enumerate(&_CIniFileEx::enumSectionValuePairs), 2);
  ASSERT_EQ(array.type(), VT_ARRAY | VT_VARIANT);
  ASSERT_EQ(array.get().parray->rgsabound[0].cElements, 2U);
  LONG index = 0;
  Variant keys;
  ASSERT_EQ(SafeArrayGetElement(array.get().parray, &index, keys.out()), S_OK);
  EXPECT_THAT(textsIn(keys.get()), ElementsAre(L"a", L"b"));
  index = 1;
  Variant values;
  ASSERT_EQ(SafeArrayGetElement(array.get().parray, &index, values.out()), S_OK);
  EXPECT_THAT(textsIn(values.get()), ElementsAre(L"1", L"2"));
}

TEST_F(CIniFileExTest, EmptyCasesDiffer) {
  open("[General]\r\n[Other]\r\na=1\r\n");
  for (const wchar_t* name : {L"General", L"No such section"}) {
    setSection(name);
    EXPECT_EQ(enumerate(&_CIniFileEx::enumSectionKeys), 0) << name;
    EXPECT_THAT(textsIn(array.get()), ElementsAre(L""));
    EXPECT_EQ(enumerate(&_CIniFileEx::enumSectionValues), -1) << name;
    EXPECT_EQ(array.type(), VT_NULL);
    array = Variant(1L);
    EXPECT_EQ(enumerate(&_CIniFileEx::enumSectionValuePairs), -1) << name;
    EXPECT_EQ(array.type(), VT_NULL);
  }
  ini.write("");
  EXPECT_EQ(enumerate(&_CIniFileEx::enumSections), -1);
  EXPECT_EQ(array.type(), VT_NULL);
}

TEST_F(CIniFileExTest, AShortLastEntryIsNotReported) {
  open("[General]\r\na=1\r\nx=\r\n[Z]\r\nb=2\r\n");
  EXPECT_EQ(enumerate(&_CIniFileEx::enumSectionKeys), 2);
  EXPECT_THAT(textsIn(array.get()), ElementsAre(L"a", L"x"));
  EXPECT_EQ(enumerate(&_CIniFileEx::enumSectionValues), 1);
  EXPECT_THAT(textsIn(array.get()), ElementsAre(L"1"));
  EXPECT_EQ(enumerate(&_CIniFileEx::enumSectionValuePairs), 1);
  EXPECT_EQ(enumerate(&_CIniFileEx::enumSections), 1);
  EXPECT_THAT(textsIn(array.get()), ElementsAre(L"General"));
}

TEST_F(CIniFileExTest, LinesWithoutASignAreCountedAsTheSystemListsThem) {
  open("[General]\r\na=1\r\nlonely line\r\n; a comment\r\nb=2\r\nc==x\r\n");
  std::string lines(2047, '\0');
  lines.resize(GetPrivateProfileSectionA("General", lines.data(), 2047, ini.narrowPath().c_str()));
  Texts keys;
  Texts values;
  for (std::size_t at = 0; at < lines.size(); at = lines.find('\0', at) + 1) {
    const std::string line = lines.c_str() + at;
    const std::size_t sign = line.find('=');
    keys.push_back(sign == std::string::npos ? L"" : wide(line.substr(0, sign)));
    values.push_back(sign == std::string::npos ? L"" : wide(line.substr(sign + 1)));
  }
  EXPECT_THAT(keys, testing::Contains(L"b"));
  EXPECT_EQ(enumerate(&_CIniFileEx::enumSectionKeys), static_cast<short>(keys.size()));
  EXPECT_EQ(textsIn(array.get()), keys);
  EXPECT_EQ(enumerate(&_CIniFileEx::enumSectionValues), static_cast<short>(values.size()));
  EXPECT_EQ(textsIn(array.get()), values);
}

/// A section whose list has exactly that many characters, the NUL of each line included.
std::string sectionOf(std::size_t length) {
  std::string content = "[General]\r\n";
  std::size_t left = length;
  for (int i = 0; left > 0; ++i) {
    std::string line = "key" + std::to_string(100 + i) + "=";
    const std::size_t size = left < 200 ? left : 100;
    line.append(size - 1 - line.size(), 'v');
    content += line + "\r\n";
    left -= size;
  }
  return content;
}

TEST_F(CIniFileExTest, GrowsTheBufferUpTo16383Characters) {
  for (const unsigned length : {2044U, 2045U, 2046U, 4094U, 8190U, 16380U}) {
    open(sectionOf(length));
    const short count = enumerate(&_CIniFileEx::enumSectionKeys);
    EXPECT_EQ(count, static_cast<short>(length / 100)) << length;
    EXPECT_EQ(textsIn(array.get()).front(), L"key100");
    EXPECT_EQ(enumerate(&_CIniFileEx::enumSectionValuePairs), count) << length;
  }
}

TEST_F(CIniFileExTest, ASectionTooLargeReadsAsNothing) {
  for (const unsigned length : {16381U, 16382U, 30000U}) {
    open(sectionOf(length));
    EXPECT_EQ(enumerate(&_CIniFileEx::enumSectionKeys), -1) << length;
    EXPECT_EQ(array.type(), VT_NULL);
    EXPECT_EQ(enumerate(&_CIniFileEx::enumSectionValues), -1) << length;
    EXPECT_EQ(enumerate(&_CIniFileEx::enumSectionValuePairs), -1) << length;
    EXPECT_EQ(value(L"key100").size(), 92U);
  }
}

TEST_F(CIniFileExTest, MoreSectionsThanTheBufferHoldsReadAsNone) {
  std::string content;
  for (int i = 0; i < 1638; ++i) {  // Ten characters each, with the NUL.
    content += "[num" + std::to_string(100000 + i) + "]\r\n";
  }
  open(content.substr(0, content.size() - 13));
  EXPECT_EQ(enumerate(&_CIniFileEx::enumSections), 1637);
  open(content);
  EXPECT_EQ(enumerate(&_CIniFileEx::enumSections), 1638);
  open(content + "[xy]\r\n");
  EXPECT_EQ(enumerate(&_CIniFileEx::enumSections), -1);
  EXPECT_EQ(array.type(), VT_NULL);
}

TEST_F(CIniFileExTest, ListsTheSectionsOfAFileOf60000Bytes) {
  std::string content;
  Texts names;
  for (int i = 0; i < 500; ++i) {
    names.push_back(L"Section " + std::to_wstring(i));
    content += "[" + narrow(names.back()) + "]\r\nName=" + std::string(100, 'v') + "\r\n";
  }
  ASSERT_GT(content.size(), 60000U);
  open(content);
  EXPECT_EQ(enumerate(&_CIniFileEx::enumSections), 500);
  EXPECT_EQ(textsIn(array.get()), names);
}

TEST_F(CIniFileExTest, ANullPointerForTheArrayIsSurvived) {
  open("[General]\r\na=1\r\n");
  short count = 77;
  EXPECT_EQ(file->enumSectionKeys(nullptr, &count), S_OK);
  EXPECT_EQ(count, 0);
}

TEST_F(CIniFileExTest, ANameWithoutAFolderMeansTheWindowsFolder) {
  EXPECT_EQ(file->put_file(Bstr(L"zequtility2 test ex.ini").get()), S_OK);
  setSection(L"General");
  EXPECT_EQ(setValue(L"Name", Variant(L"x")), S_OK);
  std::array<wchar_t, MAX_PATH> folder{};
  GetWindowsDirectoryW(folder.data(), MAX_PATH);
  const std::wstring path = std::wstring(folder.data()) + L"\\zequtility2 test ex.ini";
  EXPECT_NE(GetFileAttributesW(path.c_str()), INVALID_FILE_ATTRIBUTES);
  EXPECT_EQ(value(L"Name"), L"x");
  DeleteFileW(path.c_str());
}

TEST_F(CIniFileExTest, ScriptsUseItByName) {
  open("[General]\r\nName=Alpha\r\n");
  const Late late(file);
  EXPECT_EQ(textIn(late.get(L"values", Variant(L"Name"))), L"Alpha");
  EXPECT_EQ(late.put(L"values", Variant(L"Size"), Variant(80L)).code, S_OK);
  EXPECT_EQ(textIn(late.get(L"getValue", Variant(L"Size"))), L"80");
  Variant flag(false);
  EXPECT_EQ(textIn(late.get(L"getValue", Variant(L"Missing"), Variant::missing(), byRef(flag))), L"");
  EXPECT_EQ(flag.get().boolVal, VARIANT_TRUE);
  EXPECT_EQ(late.call(L"addSection", Variant(L"New"), Variant(true)).code, S_OK);
  EXPECT_EQ(section(), L"New");
  EXPECT_EQ(late.put(L"section", Variant(L"General")).code, S_OK);
  Variant list;
  EXPECT_EQ(late.get(L"enumSectionKeys", byRef(list)).get().iVal, 2);
  EXPECT_THAT(textsIn(list.get()), ElementsAre(L"Name", L"Size"));
  EXPECT_EQ(late.get(L"enumSections", byRef(list)).get().iVal, 2);
  EXPECT_EQ(late.call(L"deleteKey", Variant(L"Name")).code, S_OK);
  EXPECT_EQ(late.call(L"deleteSection", Variant(L"New")).code, S_OK);
  EXPECT_EQ(late.call(L"flush").code, S_OK);
  EXPECT_EQ(late.get(L"enumSections", byRef(list)).get().iVal, 1);
}

TEST_F(CIniFileExTest, RecordsAreNoTexts) {
  open("[General]\r\na=1\r\n");
  Records records(2, 64);
  EXPECT_EQ(file->writeSection(records.holder()), S_OK);
  EXPECT_EQ(value(L"a"), L"1");
}

TEST_F(CIniFileExTest, ArraysGoWhereTheVariableRefersTo) {
  open("[General]\r\na=1\r\nb=2\r\n");
  Variant old = textArray({L"x"});
  VARIANT reference{};
  reference.vt = VT_BYREF | VT_ARRAY | VT_BSTR;
  reference.pparray = &old.get().parray;
  short count = 0;
  EXPECT_EQ(file->enumSectionKeys(&reference, &count), S_OK);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(reference.vt, VT_BYREF | VT_ARRAY | VT_BSTR);
  EXPECT_THAT(textsIn(old.get()), ElementsAre(L"a", L"b"));

  Variant variable;
  reference.vt = VT_BYREF | VT_VARIANT;
  reference.pvarVal = &variable.get();
  EXPECT_EQ(file->enumSectionKeys(&reference, &count), S_OK);
  EXPECT_THAT(textsIn(variable.get()), ElementsAre(L"a", L"b"));
}

}  // namespace
}  // namespace zeq::test
