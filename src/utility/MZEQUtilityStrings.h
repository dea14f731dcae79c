#pragma once
// Text functions without state: plurals, comparison, keyword replacement, durations, sizes, key names, URL
// encoding.
//
// What depends on the machine comes in from outside: the decimal separator, how to lower-case a text and how
// to encode a character in the code page. Functions that cannot compute a result throw std::overflow_error.

#include <string>
#include <string_view>

namespace zeq::utility {

/// A text in lower case, with as many characters as before.
using LowerCase = std::wstring (*)(std::wstring_view);

/// The bytes of one character in a code page.
using EncodeCharacter = std::string (*)(wchar_t);

enum class VideoTimeFormat : int {
  none = 0,
  minutesSeconds = 1,
  minutesSecondsHundredths = 2,
  hoursMinutesSeconds = 3,
  hoursMinutesSecondsHundredths = 4,
  minutesSecondsFrames = 5,
  hoursMinutesSecondsFrames = 6,
  paddedSecondsHundredths = 7,
  seconds = 8,
  secondsHundredths = 9,
};

enum class FileSizeUnit : int { bytes = 1, kiloBytes = 2, megaBytes = 3, gigaBytes = 4 };

/// The word with an "s" behind it unless the number is 1.
[[nodiscard]] std::wstring plural(long long number, std::wstring_view singular);

/// Whether two texts are equal; case and outer blanks may be left out of account.
[[nodiscard]] bool equalTexts(std::wstring_view one, std::wstring_view other, bool caseSensitive,
                              bool trimSpace, LowerCase lowerCase);

/// The text without its leading and trailing blanks (the space character only).
[[nodiscard]] std::wstring_view trimmed(std::wstring_view text) noexcept;

/// Replaces the first occurrence of a keyword until none is left, so that an occurrence that a replacement
/// makes together with its neighbours is replaced too. An empty keyword, or a replacement that contains the
/// keyword, leaves the text as it is. Throws std::overflow_error when an occurrence lies beyond character
/// 32767, and std::bad_alloc when replacements have made it 64 Mi characters longer.
[[nodiscard]] std::wstring replaceKeyword(std::wstring_view text, std::wstring_view keyword,
                                          std::wstring_view replacement);

/// A duration as video time. A part that cannot be computed counts as 0; a text that cannot be built is
/// empty.
[[nodiscard]] std::wstring videoTime(double seconds, VideoTimeFormat format, double framesPerSecond,
                                     wchar_t decimalSeparator);

/// A duration as HH:MM:SS:FF at 25 frames a second. A part that cannot be computed counts as 0.
[[nodiscard]] std::wstring timeCode(double seconds);

/// A duration in hours, minutes and seconds as words; at most what a 32-bit integer holds.
[[nodiscard]] std::wstring durationInWords(double seconds);

/// A size in bytes, KB, MB or GB, whichever is the largest that it reaches.
[[nodiscard]] std::wstring sizeInUnits(double size, FileSizeUnit unit, wchar_t decimalSeparator);

/// The name of a key; `shift` holds the modifier keys (1 Shift, 2 Ctrl, 4 Alt), named in front if asked for.
[[nodiscard]] std::wstring keyName(int keyCode, int shift, bool withModifiers);

/// A key and its modifiers as numbers: "Key-112-2".
[[nodiscard]] std::wstring numericKeyName(int keyCode, int shift);

/// The text with every character but letters, digits and $-_.+!*'(), as percent signs and hexadecimal codes.
[[nodiscard]] std::wstring urlEncoded(std::wstring_view text, EncodeCharacter encode);

}  // namespace zeq::utility
