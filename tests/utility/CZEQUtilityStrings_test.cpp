#include <gmock/gmock.h>

#include <array>
#include <limits>

#include "support/Component.h"
#include "support/Leaks.h"
#include "utility/TextModels.h"
#include "utility/Values.h"

namespace zeq::test {
namespace {

class CZEQUtilityStringsTest : public testing::Test {
 protected:
  template <class Call>
  static std::wstring textOf(Call&& call) {
    Bstr result;
    EXPECT_EQ(call(result.out()), S_OK);
    return std::wstring(result.view());
  }
  bool equal(const wchar_t* s1, const wchar_t* s2, VARIANT_BOOL caseSensitive, VARIANT_BOOL trimSpace) {
    VARIANT_BOOL result = VARIANT_FALSE;
    EXPECT_EQ(strings->Str_Compare(Bstr(s1).get(), Bstr(s2).get(), caseSensitive, trimSpace, &result), S_OK);
    return result == VARIANT_TRUE;
  }
  std::wstring replace(std::wstring_view text, std::wstring_view keyword, std::wstring_view replacement) {
    const Bstr original(text);
    const Bstr word(keyword);
    const Bstr by(replacement);
    std::array<BSTR, 3> arguments{original.get(), word.get(), by.get()};
    std::wstring result = textOf([&](BSTR* out) {
      return strings->Str_ReplaceSimpleKeyWord(&arguments[0], &arguments[1], &arguments[2], out);
    });
    EXPECT_EQ(arguments, (std::array<BSTR, 3>{original.get(), word.get(), by.get()}));
    EXPECT_EQ(original.view(), text);
    return result;
  }
  std::wstring timeOfDay(double seconds, std::wstring_view pattern) {
    return textOf([&](BSTR* out) {
      return strings->StrUtil_SecsToTimeStr(seconds, Bstr(pattern).get(), VARIANT_FALSE, out);
    });
  }
  std::wstring urlEncode(std::wstring_view text) {
    return textOf([&](BSTR* out) { return strings->URLEncode(Bstr(text).get(), out); });
  }

  ComPtr<_CZEQUtilityStrings> strings = create<CZEQUtilityStrings, _CZEQUtilityStrings>();
  Late late{strings};
};

TEST_F(CZEQUtilityStringsTest, MakesPlurals) {
  const auto plural = [&](long n) {
    return textOf([&](BSTR* out) { return strings->Str_Plural(n, Bstr(L"file").get(), out); });
  };
  EXPECT_EQ(plural(1), L"file");
  EXPECT_EQ(plural(0), L"files");
  EXPECT_EQ(plural(-1), L"files");
  EXPECT_EQ(lateText(late, L"Str_Plural", 2, L"day"), L"days");
  EXPECT_EQ(lateText(late, L"str_plural", L"1", L"day"), L"day");
}

TEST_F(CZEQUtilityStringsTest, ComparesTexts) {
  EXPECT_TRUE(equal(L" Abc ", L"abc", VARIANT_FALSE, VARIANT_TRUE));
  EXPECT_FALSE(equal(L" Abc ", L"abc", VARIANT_FALSE, VARIANT_FALSE));
  EXPECT_FALSE(equal(L" Abc ", L"abc", VARIANT_TRUE, VARIANT_TRUE));
  EXPECT_TRUE(equal(L" Abc ", L"Abc", VARIANT_TRUE, VARIANT_TRUE));
  EXPECT_TRUE(equal(L"\u00C4b", L"\u00E4B", VARIANT_FALSE, VARIANT_TRUE));
  EXPECT_TRUE(equal(L"", L"", VARIANT_TRUE, VARIANT_FALSE));
  // By name with the defaults: case is ignored, blanks are trimmed.
  EXPECT_EQ(late.get(L"Str_Compare", value(L" Abc "), value(L"abc")).get().boolVal, VARIANT_TRUE);
  EXPECT_EQ(late.get(L"Str_Compare", value(L" Abc "), value(L"abc"), value(true)).get().boolVal,
            VARIANT_FALSE);
  EXPECT_EQ(late.get(L"Str_Compare", value(L" Abc "), value(L"abc"), Variant::missing(), value(false))
                .get()
                .boolVal,
            VARIANT_FALSE);
}

TEST_F(CZEQUtilityStringsTest, ReplacesKeywords) {
  EXPECT_EQ(replace(L"a%N%b%N%", L"%N%", L"x"), L"axbx");
  EXPECT_EQ(replace(L"a%n%", L"%N%", L"x"), L"a%n%");
  EXPECT_EQ(replace(L"a", L"", L"x"), L"a");
  EXPECT_EQ(replace(L"%N%", L"%N%", L"%N%s"), L"%N%");
  EXPECT_EQ(replace(L"", L"%N%", L"x"), L"");
  EXPECT_EQ(lateText(late, L"Str_ReplaceSimpleKeyWord", L"<<>>!", L"<>", L""), L"!");
  Variant variable = value(L"a-b");
  EXPECT_EQ(textIn(late.get(L"Str_ReplaceSimpleKeyWord", byRef(variable), value(L"-"), value(L"+"))), L"a+b");
  EXPECT_EQ(textIn(variable), L"a-b");
}

TEST_F(CZEQUtilityStringsTest, RaisesOverflowForAKeywordTooFarToTheRight) {
  const std::wstring filler(32767, L'a');
  EXPECT_EQ(replace(filler.substr(1) + L"b", L"b", L"c").back(), L'c');
  expectError(late.call(L"Str_ReplaceSimpleKeyWord", value(filler + L"b"), value(L"b"), value(L"c")), 6,
              L"Overflow");
}

TEST_F(CZEQUtilityStringsTest, WritesVideoTime) {
  const auto text = [&](double seconds, int format) {
    return textOf([&](BSTR* out) {
      return strings->StrUtil_MakeTimeCodeString(seconds, static_cast<enumVideoTimeStringFormat>(format), 25,
                                                 out);
    });
  };
  EXPECT_EQ(text(3725.25, vtsfDefault), L"");
  EXPECT_EQ(text(3725.25, vtsfMMSS), L"62:05");
  EXPECT_EQ(text(3725.25, vtsfMMSSSS), L"62:05.25");
  EXPECT_EQ(text(3725.25, vtsfHHMMSS), L"01:02:05");
  EXPECT_EQ(text(3725.25, vtsfHHMMSSSS), L"01:02:05.25");
  EXPECT_EQ(text(3725.25, vtsfMMSSFF), L"62:05:06");
  EXPECT_EQ(text(3725.25, vtsfHHMMSSFF), L"01:02:05:06");
  EXPECT_EQ(text(3725.25, vtsfSSSSSSS), L"03725.25");
  EXPECT_EQ(text(3725.25, vtsfS), L"3725");
  EXPECT_EQ(text(3725.25, vtsfSSS), L"3725.25");
  EXPECT_EQ(text(-3725.25, vtsfHHMMSS), L"- 01:02:05");
  EXPECT_EQ(text(-3725.25, vtsfDefault), L"- ");
  EXPECT_EQ(text(59.999, vtsfMMSSSS), L"00:60.00");
  EXPECT_EQ(text(3725.25, 10), L"");
  EXPECT_EQ(text(3725.25, -1), L"");
  EXPECT_EQ(text(-1, 1000), L"- ");
  EXPECT_EQ(text(std::numeric_limits<double>::infinity(), vtsfS), L"");
  EXPECT_EQ(lateText(late, L"StrUtil_MakeTimeCodeString", 3725.25, 6, 25), L"01:02:05:06");
}

TEST_F(CZEQUtilityStringsTest, WritesTimeCodes) {
  const auto text = [&](double seconds) {
    return textOf([&](BSTR* out) { return strings->StrUtil_SecsToTimeCodeStr(seconds, out); });
  };
  EXPECT_EQ(text(3725.25), L"01:02:05:06");
  EXPECT_EQ(text(0.99), L"00:00:00:25");
  EXPECT_EQ(text(-1.5), L"00:00:-02:12");
  EXPECT_EQ(text(1e300), L"00:00:00:00");
  EXPECT_EQ(lateText(late, L"StrUtil_SecsToTimeCodeStr", L"3725.25"), L"01:02:05:06");
}

TEST_F(CZEQUtilityStringsTest, WritesTimesByPattern) {
  EXPECT_EQ(timeOfDay(3661, L"hh:nn:ss"), L"01:01:01");
  EXPECT_EQ(timeOfDay(3661, L"h:n:s"), L"1:1:1");
  EXPECT_EQ(timeOfDay(86400 + 60, L"hh:nn"), L"00:01");
  EXPECT_EQ(timeOfDay(43200, L"0.00"), L"0.50");
  EXPECT_EQ(timeOfDay(3661, L"\"after \"h\" hours, \"n\" minutes and \"s\" seconds of the day\""),
            L"after 1 hours, 1 minutes and 1 seconds of the day");
  EXPECT_EQ(timeOfDay(-86400, L"yyyy-mm-dd"), L"1899-12-29");
  EXPECT_EQ(timeOfDay(3661, L"Short Time"), L"01:01");
  EXPECT_EQ(timeOfDay(3661, L"yyyy-mm-dd, dddd, d mmmm yyyy, hh:nn:ss"),
            L"1899-12-30, Saturday, 30 December 1899, 01:01:01");
  EXPECT_EQ(timeOfDay(3661, L"hh:nn" + std::wstring(100, L' ')), L"01:01" + std::wstring(100, L' '));
  EXPECT_EQ(lateText(late, L"StrUtil_SecsToTimeStr", 3661, L"hh:nn:ss"), L"01:01:01");
}

TEST_F(CZEQUtilityStringsTest, WritesZeroWhereAPatternFails) {
  for (const double seconds : {1e300, -1e300, 2958466 * 86400.0, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(timeOfDay(seconds, L"hh:nn:ss"), L"0");
    EXPECT_EQ(timeOfDay(seconds, L"0.00"), L"0");
  }
  EXPECT_EQ(timeOfDay(3661, std::wstring(300, L'c')), L"0");
  EXPECT_EQ(timeOfDay(3661, L"hh\"" + std::wstring(250, L'x') + L"\"\"" + std::wstring(250, L'y') + L"\""),
            L"0");
}

TEST_F(CZEQUtilityStringsTest, AgreesWithTheRuntimeOnPatterns) {
  for (const wchar_t* pattern :
       {L"h", L"hh:mm:ss", L"dddd, d mmmm yyyy", L"Long Date", L"Medium Time", L"ttttt", L"c\0\0\0\0\0\0",
        L"q", L"y", L"ww", L"0.000", L"\\h\"h\"h", L"General Number", L""}) {
    for (const double seconds : {0.0, 3661.0, 45296.7, 3e9, -5e8}) {
      Variant days = value(seconds / 86400);
      Bstr expected;
      ASSERT_EQ(VarFormat(&days.get(), const_cast<wchar_t*>(pattern), 0, 0, 0, expected.out()), S_OK);
      EXPECT_EQ(timeOfDay(seconds, pattern), expected.view());
    }
  }
}

TEST_F(CZEQUtilityStringsTest, WritesDurationsInWords) {
  const auto text = [&](double seconds) {
    return lateText(late, L"StrUtil_SecsToTimeStr", seconds, L"hh", true);
  };
  EXPECT_EQ(text(3725), L"1 hour, 2 minutes, 5 seconds");
  EXPECT_EQ(text(60), L"1 minute");
  EXPECT_EQ(text(3601), L"1 hour, 1 second");
  EXPECT_EQ(text(7200), L"2 hours");
  EXPECT_EQ(text(0.4), L"0 seconds");
  EXPECT_EQ(text(-5), L"0 seconds");
  EXPECT_EQ(text(3e9), L"");
}

TEST_F(CZEQUtilityStringsTest, WritesSizes) {
  EXPECT_EQ(lateText(late, L"StrUtil_KiloMegaGigaString", 1), L"1.0 MB");
  EXPECT_EQ(lateText(late, L"StrUtil_KiloMegaGigaString", 1023, 1), L"1023 bytes");
  EXPECT_EQ(lateText(late, L"StrUtil_KiloMegaGigaString", 1024, 1), L"1.0 KB");
  EXPECT_EQ(lateText(late, L"StrUtil_KiloMegaGigaString", 1.5, 2), L"1.5 KB");
  EXPECT_EQ(lateText(late, L"StrUtil_KiloMegaGigaString", 2048, 3), L"2.0 GB");
  EXPECT_EQ(lateText(late, L"StrUtil_KiloMegaGigaString", 5000000, 3), L"4882.8 GB");
  EXPECT_EQ(lateText(late, L"StrUtil_KiloMegaGigaString", 3, 4), L"3.0 GB");
  EXPECT_EQ(lateText(late, L"StrUtil_KiloMegaGigaString", 7, 0), L"0 bytes");
  EXPECT_EQ(lateText(late, L"StrUtil_KiloMegaGigaString", 7, 5), L"0 bytes");
  EXPECT_EQ(textOf([&](BSTR* out) { return strings->StrUtil_KiloMegaGigaString(1, fsuIsBytes, out); }),
            L"1 bytes");
  EXPECT_EQ(lateText(late, L"StrUtil_KiloMegaGigaString", std::numeric_limits<double>::infinity()), L"");
}

TEST_F(CZEQUtilityStringsTest, NamesKeys) {
  EXPECT_EQ(lateText(late, L"StrUtil_KeyCodeToString", 112, 6, true), L"CTRL-ALT F1");
  EXPECT_EQ(lateText(late, L"StrUtil_KeyCodeToString", 112, 7, true), L"CTRL-ALT-SHIFT F1");
  EXPECT_EQ(lateText(late, L"StrUtil_KeyCodeToString", 65, 1), L"A");
  EXPECT_EQ(lateText(late, L"StrUtil_KeyCodeToString", 0, 0), L"[0]");
  EXPECT_EQ(lateText(late, L"StrUtil_KeyCodeToString", 186, 0), L"[186]");
  EXPECT_EQ(lateText(late, L"StrUtil_KeyCodeToString", -1, 0), L"[-1]");
  EXPECT_EQ(lateText(late, L"StrUtil_KeyCodeToNumericString", 112, 2), L"Key-112-2");
  EXPECT_EQ(textOf([&](BSTR* out) { return strings->StrUtil_KeyCodeToString(42, 3, VARIANT_TRUE, out); }),
            L"CTRL-SHIFT PRINT SCREEN");
  EXPECT_EQ(textOf([&](BSTR* out) { return strings->StrUtil_KeyCodeToNumericString(-5, 0, out); }),
            L"Key--5-0");
  EXPECT_EQ(late.call(L"StrUtil_KeyCodeToString", value(40000), value(0)).code, DISP_E_OVERFLOW);
}

TEST_F(CZEQUtilityStringsTest, NamesEveryKeyOfTheTable) {
  for (int code = -3; code <= 300; ++code) {
    const auto key = static_cast<short>(code);
    const std::wstring expected = utility::model::keyName(code);
    EXPECT_EQ(textOf([&](BSTR* out) { return strings->StrUtil_KeyCodeToString(key, 7, VARIANT_FALSE, out); }),
              expected);
    EXPECT_EQ(lateText(late, L"StrUtil_KeyCodeToString", key, 7, true), L"CTRL-ALT-SHIFT " + expected);
  }
}

TEST_F(CZEQUtilityStringsTest, EncodesForUrls) {
  EXPECT_EQ(urlEncode(L"a b/c"), L"a%20b%2Fc");
  EXPECT_EQ(urlEncode(L"it's (ok), fine!"), L"it's%20(ok),%20fine!");
  EXPECT_EQ(urlEncode(std::wstring_view(L"\0\n", 2)), L"%00%0A");
  EXPECT_EQ(lateText(late, L"URLEncode", L"100%"), L"100%25");
}

TEST_F(CZEQUtilityStringsTest, EncodesTheBytesOfTheCodePage) {
  for (const wchar_t character : {L'\u00E9', L'\u20AC', L'\u3042', L'\uFF41'}) {
    std::array<char, 8> bytes{};
    const int count = WideCharToMultiByte(CP_ACP, 0, &character, 1, bytes.data(),
                                          static_cast<int>(bytes.size()), nullptr, nullptr);
    std::wstring expected;
    for (int i = 0; i < count; ++i) {
      std::array<wchar_t, 4> code{};
      swprintf(code.data(), code.size(), L"%%%02X",
               static_cast<unsigned char>(bytes[static_cast<std::size_t>(i)]));
      expected += code.data();
    }
    EXPECT_EQ(urlEncode(std::wstring(1, character)), expected);
  }
}

TEST_F(CZEQUtilityStringsTest, LeaksNothing) {
  expectNoLeak(50, [] {
    const Late object{create<CZEQUtilityStrings, _CZEQUtilityStrings>()};
    lateText(object, L"Str_ReplaceSimpleKeyWord", L"a%N%b%N%", L"%N%", L"x");
    lateText(object, L"StrUtil_SecsToTimeStr", 3661, L"hh:nn:ss");
    lateText(object, L"StrUtil_SecsToTimeStr", 1e300, L"hh:nn:ss");
  });
}

}  // namespace
}  // namespace zeq::test
