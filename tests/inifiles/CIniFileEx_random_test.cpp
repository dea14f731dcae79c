// Hundreds of random calls of CIniFileEx beside the system's own calls on a second file: both files stay the
// same, and every answer is what a plain reading of the system's answer makes of it.

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "support/Component.h"
#include "support/IniText.h"

namespace zeq::test {
namespace {

using Texts = std::vector<std::wstring>;

const std::vector<std::wstring> names{L"a",   L"A",     L"bb",   L"Key three", L" a ",
                                      L"k=v", L"[x]",   L"; no", L"\x00E9",    L"\x4E2D",
                                      L"x",   L"\"q\"", L"y z;", L"]odd[",     L""};
const std::vector<std::wstring> texts{L"",
                                      L"1",
                                      L"two words",
                                      L"  blanks  ",
                                      L"\"quoted\"",
                                      L"'single'",
                                      L"x;y",
                                      L"=",
                                      L"\x00FC",
                                      L"\x4E2D",
                                      L"[General]",
                                      L"\"half",
                                      std::wstring(253, L'v'),
                                      std::wstring(254, L'v'),
                                      std::wstring(255, L'v'),
                                      std::wstring(700, L'v')};

/// One enumeration as its description has it, step by step: from the text that is kept of the system's list.
/// No result if nothing was listed.
struct Walk {
  short count = -1;
  std::vector<Texts> columns;
};

enum class Column { whole, key, value };

Walk walk(std::string list, const std::vector<Column>& columns) {
  Walk result;
  result.columns.resize(columns.size());
  while (!list.empty()) {
    const std::string entry = list.substr(0, list.find('\0'));
    list.erase(0, entry.size() + 1);
    result.count = std::max(result.count, short{0});
    const std::size_t sign = entry.find('=');
    for (std::size_t i = 0; i < columns.size(); ++i) {
      Texts& column = result.columns[i];
      column.resize(static_cast<std::size_t>(result.count) + 1);
      if (columns[i] == Column::whole) {
        column.back() = wide(entry);
      } else if (sign != std::string::npos) {
        column.back() = wide(columns[i] == Column::key ? entry.substr(0, sign) : entry.substr(sign + 1));
      }
    }
    result.count = static_cast<short>(result.count + (entry.empty() ? 0 : 1));
    if (list.size() <= 3) {
      break;
    }
  }
  return result;
}

Texts textsIn(const VARIANT& array) {
  LONG upper = -1;
  EXPECT_EQ(array.vt, VT_ARRAY | VT_BSTR);
  EXPECT_EQ(SafeArrayGetUBound(array.parray, 1, &upper), S_OK);
  Texts result;
  for (LONG index = 0; index <= upper; ++index) {
    Bstr element;
    EXPECT_EQ(SafeArrayGetElement(array.parray, &index, element.out()), S_OK);
    result.emplace_back(element.view());
  }
  return result;
}

class CIniFileExRandom : public testing::Test {
 protected:
  CIniFileExRandom() {
    EXPECT_EQ(file->put_file(Bstr(ours.path()).get()), S_OK);
    chooseSection();
  }

  std::size_t number(std::size_t below) { return generator() % below; }
  const std::wstring& oneOf(const std::vector<std::wstring>& all) { return all[number(all.size())]; }
  void chooseSection() {
    section = oneOf(names);
    EXPECT_EQ(file->put_section(Bstr(section).get()), S_OK);
  }

  // Each call of ours and the system's on its own file.

  void writeValue() {
    const std::wstring key = oneOf(names);
    const std::wstring value = oneOf(texts);
    EXPECT_EQ(file->put_values(Bstr(key).get(), Variant(std::wstring_view(value)).get()), S_OK);
    write(narrow(section).c_str(), narrow(key).c_str(), narrow(value).c_str());
  }
  void deleteKey() {
    const std::wstring key = oneOf(names);
    EXPECT_EQ(file->deleteKey(Bstr(key).get()), S_OK);
    write(narrow(section).c_str(), narrow(key).c_str(), nullptr);
  }
  void deleteSection() {
    const std::wstring name = oneOf(names);
    EXPECT_EQ(file->deleteSection(Bstr(name).get()), S_OK);
    write(narrow(name).c_str(), nullptr, nullptr);
  }
  void addSection() {
    const std::wstring name = oneOf(names);
    EXPECT_EQ(file->addSection(Bstr(name).get(), nullptr), S_OK);
    write(narrow(name).c_str(), "Dummy", "Val");
    write(narrow(name).c_str(), "Dummy", nullptr);
  }
  void writeSection() {
    const auto count = static_cast<ULONG>(number(5));
    Variant lines;
    lines.get().parray = SafeArrayCreateVector(VT_BSTR, 0, count);
    lines.get().vt = VT_ARRAY | VT_BSTR;
    std::string list;
    for (LONG index = 0; index < static_cast<LONG>(count); ++index) {
      const std::wstring line = oneOf(names) + L"=" + oneOf(texts);
      EXPECT_EQ(SafeArrayPutElement(lines.get().parray, &index, Bstr(line).get()), S_OK);
      list += narrow(line) + '\0';
    }
    EXPECT_EQ(file->writeSection(lines.get()), S_OK);
    WritePrivateProfileSectionA(narrow(section).c_str(), list.c_str(), theirs.narrowPath().c_str());
  }
  void flush() {
    EXPECT_EQ(file->flush(), S_OK);
    write(nullptr, nullptr, nullptr);
  }
  void write(const char* sectionName, const char* key, const char* value) {
    WritePrivateProfileStringA(sectionName, key, value, theirs.narrowPath().c_str());
  }

  // Each answer of ours against the system's.

  void checkValue() {
    const std::wstring key = oneOf(names);
    const std::wstring fallback = oneOf(texts);
    const auto systemValue = [&](const std::wstring& otherwise) {
      return wide(
          theirs.platformValue(narrow(section).c_str(), narrow(key).c_str(), narrow(otherwise).c_str(), 255));
    };
    Variant value;
    VARIANT_BOOL failed = 7;
    EXPECT_EQ(file->getValue(Bstr(key).get(), Bstr(fallback).get(), &failed, value.out()), S_OK);
    const std::wstring expected = systemValue(fallback);
    EXPECT_EQ(textIn(value), expected.empty() ? fallback : expected);
    EXPECT_EQ(failed, expected.empty() ? VARIANT_TRUE : VARIANT_FALSE);
    EXPECT_EQ(file->get_values(Bstr(key).get(), value.out()), S_OK);
    EXPECT_EQ(textIn(value), systemValue(L""));
  }
  void checkEnumerations() {
    std::array<char, 16383> buffer{};
    const std::size_t length = GetPrivateProfileSectionA(narrow(section).c_str(), buffer.data(),
                                                         buffer.size(), theirs.narrowPath().c_str());
    ASSERT_LT(length, 16000U);
    const std::string two(buffer.data(), length + 1);
    const std::string one = length > 0 ? std::string(buffer.data(), length - 1) + '\0' : "";
    check(&_CIniFileEx::enumSectionKeys, walk(two, {Column::key}));
    check(&_CIniFileEx::enumSectionValues, walk(one, {Column::value}));
    check(&_CIniFileEx::enumSectionValuePairs, walk(one, {Column::key, Column::value}));
    buffer.fill('\0');
    const std::size_t all =
        GetPrivateProfileSectionNamesA(buffer.data(), buffer.size(), theirs.narrowPath().c_str());
    check(&_CIniFileEx::enumSections,
          walk(all > 0 ? std::string(buffer.data(), all + 1) : "", {Column::whole}));
  }
  void check(HRESULT (STDMETHODCALLTYPE _CIniFileEx::*enumeration)(VARIANT*, short*), const Walk& expected) {
    Variant array;
    short count = 77;
    EXPECT_EQ((file.get()->*enumeration)(&array.get(), &count), S_OK);
    ASSERT_EQ(count, expected.count);
    if (count < 0) {
      EXPECT_EQ(array.type(), VT_NULL);
    } else if (expected.columns.size() == 1) {
      EXPECT_EQ(textsIn(array.get()), expected.columns.front());
    } else {
      ASSERT_EQ(array.type(), VT_ARRAY | VT_VARIANT);
      for (LONG index = 0; index < 2; ++index) {
        Variant column;
        EXPECT_EQ(SafeArrayGetElement(array.get().parray, &index, column.out()), S_OK);
        EXPECT_EQ(textsIn(column.get()), expected.columns[static_cast<std::size_t>(index)]);
      }
    }
  }

  void takeStep() {
    switch (number(14)) {
      case 0:
        return deleteKey();
      case 1:
        return deleteSection();
      case 2:
        return addSection();
      case 3:
        return writeSection();
      case 4:
        return flush();
      case 5:
      case 6:
        return chooseSection();
      case 7:
      case 8:
        return checkValue();
      case 9:
        return checkEnumerations();
      default:
        longest = std::max(longest, ours.content().size());
        return writeValue();
    }
  }

  std::mt19937 generator{20};
  std::size_t longest = 0;
  IniText ours{"[General]\r\nfirst=1\r\n; a comment\r\nlonely\r\n[x]\r\n"};
  IniText theirs{ours.content()};
  ComPtr<_CIniFileEx> file = create<CIniFileEx, _CIniFileEx>();
  std::wstring section;
};

TEST_F(CIniFileExRandom, DoesWhatTheSystemDoes) {
  for (int i = 0; i < 300 && !HasFailure(); ++i) {
    SCOPED_TRACE(i);
    takeStep();
    ASSERT_EQ(ours.content(), theirs.content());
  }
  EXPECT_GT(longest, 1000U) << "something must have been written";
}

}  // namespace
}  // namespace zeq::test
