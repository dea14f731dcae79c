#include "utility/CZEQUtilityStrings.h"

#include "platform/CodePage.h"
#include "platform/LetterCase.h"
#include "platform/Locale.h"
#include "utility/MZEQUtilityStrings.h"

namespace zeq::utility {
namespace {

using automation::Bstr;
using automation::quietly;
using automation::raising;
using automation::text;
using automation::Variant;

/// A bound on the length of what one character of a date/time pattern stands for.
std::size_t longestTextOf(wchar_t character) noexcept {
  constexpr std::wstring_view letters = L"dwmqyhnstapeDWMQYHNSTAPE#0@&%";
  constexpr std::wstring_view separators = L":/.,";
  if (character == L'c' || character == L'C') {
    return 32;  // Date and time.
  }
  if (letters.find(character) != std::wstring_view::npos) {
    return 6;  // The longest date takes six letters, the longest name of a day or a month four.
  }
  return separators.find(character) != std::wstring_view::npos ? 4 : 1;
}

/// A bound on the length of a text made by a date/time pattern.
std::size_t longestText(std::wstring_view pattern) noexcept {
  std::size_t length = 0;
  bool quoted = false;
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    const wchar_t character = pattern[at];
    if (character == L'"') {
      quoted = !quoted;
    } else if (quoted || character == L'\\') {
      length += 1;
      at += quoted ? 0 : 1;
    } else {
      length += longestTextOf(character);
    }
  }
  return length;
}

/// A duration as a time of day by a date/time pattern of the automation runtime; "0" where that fails.
Bstr timeOfDay(double seconds, std::wstring pattern) {
  constexpr double secondsPerDay = 86400;
  constexpr double firstDay = -657434;  // The dates of automation reach from the year 100 to 9999.
  constexpr double dayAfterLast = 2958466;
  // Wine's runtime writes longer texts beyond the end of its buffer.
  constexpr std::size_t runtimeLimit = 255;
  Variant fractionOfDay(seconds / secondsPerDay);
  const double days = fractionOfDay.get().dblVal;
  const bool isDate = days >= firstDay && days < dayAfterLast;
  const bool isTooLong = longestText(pattern) > runtimeLimit;
  // Wine's runtime passes over four characters after a "c", be it the pattern's end.
  pattern.append(8, L'\0');
  Bstr result;
  if (!isDate || isTooLong ||
      FAILED(VarFormat(&fractionOfDay.get(), pattern.data(), 0, 0, 0, result.out()))) {
    return Bstr(L"0");
  }
  return result;
}

}  // namespace

STDMETHODIMP CZEQUtilityStrings::Str_Plural(long n, BSTR singular, BSTR* result) noexcept {
  return quietly(result, [&] { return plural(n, text(singular)); });
}

STDMETHODIMP CZEQUtilityStrings::Str_Compare(BSTR s1, BSTR s2, VARIANT_BOOL caseSensitive,
                                             VARIANT_BOOL trimSpace, VARIANT_BOOL* result) noexcept {
  return quietly(result, [&] {
    return equalTexts(text(s1), text(s2), caseSensitive != VARIANT_FALSE, trimSpace != VARIANT_FALSE,
                      &platform::lowerCase);
  });
}

STDMETHODIMP CZEQUtilityStrings::Str_ReplaceSimpleKeyWord(BSTR* OrigA, BSTR* KeyWordA, BSTR* ReplacementA,
                                                          BSTR* result) noexcept {
  return raising(result, [&] { return replaceKeyword(text(OrigA), text(KeyWordA), text(ReplacementA)); });
}

STDMETHODIMP CZEQUtilityStrings::StrUtil_MakeTimeCodeString(double SecsTimeA,
                                                            enumVideoTimeStringFormat TStringFormatA,
                                                            double fpsA, BSTR* result) noexcept {
  return quietly(result, [&] {
    return videoTime(SecsTimeA, static_cast<VideoTimeFormat>(TStringFormatA), fpsA,
                     platform::decimalSeparator());
  });
}

STDMETHODIMP CZEQUtilityStrings::StrUtil_SecsToTimeCodeStr(double secs, BSTR* result) noexcept {
  return quietly(result, [&] { return timeCode(secs); });
}

STDMETHODIMP CZEQUtilityStrings::StrUtil_SecsToTimeStr(double secs, BSTR fmt, VARIANT_BOOL verbose,
                                                       BSTR* result) noexcept {
  return quietly(result, [&] {
    return verbose != VARIANT_FALSE ? Bstr(durationInWords(secs)) : timeOfDay(secs, std::wstring(text(fmt)));
  });
}

STDMETHODIMP CZEQUtilityStrings::StrUtil_KiloMegaGigaString(double sz, enumFileSizeUnits szUnits,
                                                            BSTR* result) noexcept {
  return quietly(result, [&] {
    return sizeInUnits(sz, static_cast<FileSizeUnit>(szUnits), platform::decimalSeparator());
  });
}

STDMETHODIMP CZEQUtilityStrings::StrUtil_KeyCodeToString(short KeyCode, short Shift,
                                                         VARIANT_BOOL addShiftString, BSTR* result) noexcept {
  return quietly(result, [&] { return keyName(KeyCode, Shift, addShiftString != VARIANT_FALSE); });
}

STDMETHODIMP CZEQUtilityStrings::StrUtil_KeyCodeToNumericString(short KeyCode, short Shift,
                                                                BSTR* result) noexcept {
  return quietly(result, [&] { return numericKeyName(KeyCode, Shift); });
}

STDMETHODIMP CZEQUtilityStrings::URLEncode(BSTR OrigA, BSTR* result) noexcept {
  return quietly(result, [&] {
    return urlEncoded(text(OrigA), [](wchar_t character) { return platform::toAnsi({&character, 1}); });
  });
}

}  // namespace zeq::utility
