#include "utility/MZEQUtilityStrings.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <stdexcept>

#include "utility/Format.h"
#include "utility/Rounding.h"
#include "utility/SpliceBuffer.h"

namespace zeq::utility {
namespace {

constexpr double kilo = 1024;

/// What a computation gives, or 0 where it fails.
template <class Computation>
auto orZero(Computation&& compute) -> decltype(compute()) {
  try {
    return compute();
  } catch (const std::overflow_error&) {
    return {};
  }
}

struct VideoTime {
  std::int32_t hours;
  std::int32_t minutes;
  std::int32_t seconds;
  double fraction;
  double frames;
};

VideoTime videoTimeOf(double duration, double framesPerSecond) {
  const std::int32_t whole = orZero([&] { return toInt32(std::floor(duration)); });
  const std::int32_t totalMinutes = whole / 60;
  const double fraction = duration - whole;
  const double frames = std::floor(fraction * framesPerSecond);
  return {.hours = totalMinutes / 60,
          .minutes = totalMinutes % 60,
          .seconds = whole % 60,
          .fraction = fraction,
          .frames = std::isfinite(frames) ? frames : 0};
}

/// An empty text with room for the usual times.
std::wstring roomForTime() {
  std::wstring text;
  text.reserve(24);
  return text;
}

/// The hours and minutes in front of the formats that have them, each with a colon.
void appendMinutes(std::wstring& text, const VideoTime& time, VideoTimeFormat format) {
  const auto append = [&](std::int32_t number) {
    appendInteger(text, number, 2);
    text += L':';
  };
  switch (format) {
    case VideoTimeFormat::minutesSeconds:
    case VideoTimeFormat::minutesSecondsHundredths:
    case VideoTimeFormat::minutesSecondsFrames:
      append(time.hours * 60 + time.minutes);
      break;
    case VideoTimeFormat::hoursMinutesSeconds:
    case VideoTimeFormat::hoursMinutesSecondsHundredths:
    case VideoTimeFormat::hoursMinutesSecondsFrames:
      append(time.hours);
      append(time.minutes);
      break;
    default:
      break;
  }
}

void appendVideoTime(std::wstring& text, double duration, VideoTimeFormat format, double framesPerSecond,
                     wchar_t decimalSeparator) {
  const VideoTime time = videoTimeOf(duration, framesPerSecond);
  appendMinutes(text, time, format);
  switch (format) {
    case VideoTimeFormat::minutesSeconds:
    case VideoTimeFormat::hoursMinutesSeconds:
      appendInteger(text, time.seconds, 2);
      break;
    case VideoTimeFormat::minutesSecondsHundredths:
    case VideoTimeFormat::hoursMinutesSecondsHundredths:
      appendNumber(text, time.seconds + time.fraction, 2, 2, decimalSeparator);
      break;
    case VideoTimeFormat::minutesSecondsFrames:
    case VideoTimeFormat::hoursMinutesSecondsFrames:
      appendInteger(text, time.seconds, 2);
      text += L':';
      appendNumber(text, time.frames, 2, 0);
      break;
    case VideoTimeFormat::paddedSecondsHundredths:
      appendNumber(text, duration, 5, 2, decimalSeparator);
      break;
    case VideoTimeFormat::seconds:
      appendNumber(text, duration, 1, 0);
      break;
    case VideoTimeFormat::secondsHundredths:
      appendNumber(text, duration, 1, 2, decimalSeparator);
      break;
    case VideoTimeFormat::none:
      break;
  }
}

struct Modifier {
  int bit;
  std::wstring_view word;
};

/// In the order in which the words are put in front of each other.
constexpr std::array modifiers{Modifier{1, L"SHIFT"}, Modifier{4, L"ALT"}, Modifier{2, L"CTRL"}};

struct KeyName {
  int code;
  std::wstring_view name;
};

constexpr std::array keyNames{
    KeyName{1, L"KeyLButton"},    KeyName{2, L"KeyRButton"},  KeyName{3, L"CANCEL"},
    KeyName{4, L"KeyMButton"},    KeyName{8, L"BACKSPACE"},   KeyName{9, L"TAB"},
    KeyName{12, L"CLEAR"},        KeyName{13, L"ENTER"},      KeyName{16, L"SHIFT"},
    KeyName{17, L"CTRL"},         KeyName{18, L"MENU"},       KeyName{19, L"PAUSE"},
    KeyName{20, L"CAPS LOCK"},    KeyName{27, L"ESC"},        KeyName{32, L"SPACEBAR"},
    KeyName{33, L"PAGE UP"},      KeyName{34, L"PAGE DOWN"},  KeyName{35, L"END"},
    KeyName{36, L"HOME"},         KeyName{37, L"LEFT ARROW"}, KeyName{38, L"UP ARROW"},
    KeyName{39, L"RIGHT ARROW"},  KeyName{40, L"DOWN ARROW"}, KeyName{41, L"SELECT"},
    KeyName{42, L"PRINT SCREEN"}, KeyName{43, L"EXECUTE"},    KeyName{44, L"SNAPSHOT"},
    KeyName{45, L"INS"},          KeyName{46, L"DEL"},        KeyName{47, L"HELP"},
    KeyName{106, L"KP *"},        KeyName{107, L"KP +"},      KeyName{108, L"KP ENTER"},
    KeyName{109, L"KP -"},        KeyName{110, L"KP ."},      KeyName{111, L"KP /"},
    KeyName{144, L"NUM LOCK"},
};

std::wstring bareKeyName(int code) {
  if ((code >= L'0' && code <= L'9') || (code >= L'A' && code <= L'Z')) {
    return {static_cast<wchar_t>(code)};
  }
  if (code >= 96 && code <= 105) {  // The digits of the numeric keypad.
    return {static_cast<wchar_t>(code - 48)};
  }
  if (code >= 112 && code <= 127) {
    return L"F" + formatInteger(code - 111, 1);
  }
  const auto* found =
      std::find_if(keyNames.begin(), keyNames.end(), [&](const KeyName& each) { return each.code == code; });
  return found != keyNames.end() ? std::wstring(found->name) : L"[" + formatInteger(code, 1) + L"]";
}

bool staysInUrl(wchar_t character) noexcept {
  constexpr std::wstring_view marks = L"$-_.+!*'(),";
  return (character >= L'a' && character <= L'z') || (character >= L'A' && character <= L'Z') ||
         (character >= L'0' && character <= L'9') || marks.find(character) != std::wstring_view::npos;
}

}  // namespace

std::wstring plural(long long number, std::wstring_view singular) {
  std::wstring result(singular);
  if (number != 1) {
    result += L's';
  }
  return result;
}

std::wstring_view trimmed(std::wstring_view text) noexcept {
  const std::size_t first = text.find_first_not_of(L' ');
  return first == std::wstring_view::npos ? std::wstring_view()
                                          : text.substr(first, text.find_last_not_of(L' ') - first + 1);
}

bool equalTexts(std::wstring_view one, std::wstring_view other, bool caseSensitive, bool trimSpace,
                LowerCase lowerCase) {
  if (trimSpace) {
    one = trimmed(one);
    other = trimmed(other);
  }
  if (one.size() != other.size()) {
    return false;
  }
  return one == other || (!caseSensitive && lowerCase(one) == lowerCase(other));
}

std::wstring replaceKeyword(std::wstring_view text, std::wstring_view keyword,
                            std::wstring_view replacement) {
  constexpr std::size_t lastPosition = std::numeric_limits<std::int16_t>::max();
  constexpr std::size_t largestGrowth = std::size_t{1} << 26U;
  constexpr auto contains = [](std::wstring_view whole, std::wstring_view part) {
    return whole.find(part) != std::wstring_view::npos;
  };
  if (keyword.empty() || !contains(text, keyword) || contains(replacement, keyword)) {
    return std::wstring(text);
  }
  // The buffer's left side is done with: no occurrence begins there. After a replacement an occurrence may
  // begin in the last characters before it, so these are gone through again; nothing farther to the left can
  // have changed.
  SpliceBuffer buffer(text, text.size() + largestGrowth);
  for (;;) {
    const std::size_t distance = buffer.right().find(keyword);
    if (distance == std::wstring_view::npos) {
      return buffer.take();
    }
    buffer.passOver(distance);
    if (buffer.passed() + 1 > lastPosition) {
      throw std::overflow_error("an occurrence lies too far to the right");
    }
    buffer.replace(keyword.size(), replacement);
    buffer.stepBack(std::min(keyword.size() - 1, buffer.passed()));
  }
}

std::wstring videoTime(double seconds, VideoTimeFormat format, double framesPerSecond,
                       wchar_t decimalSeparator) {
  const std::wstring_view sign = seconds < 0 ? L"- " : L"";
  std::wstring text = roomForTime();
  text += sign;
  try {
    appendVideoTime(text, std::fabs(seconds), format, framesPerSecond, decimalSeparator);
  } catch (const std::overflow_error&) {
    text = sign;
  }
  return text;
}

std::wstring timeCode(double seconds) {
  constexpr double framesPerSecond = 25;
  const std::int32_t whole = orZero([&] { return toInt32(std::floor(seconds)); });
  const std::int32_t frames = orZero([&] { return toInt32((seconds - whole) * framesPerSecond); });
  const std::int32_t minutes = whole / 60;
  std::wstring text = roomForTime();
  for (const std::int32_t part : {minutes / 60, minutes % 60, whole % 60}) {
    appendInteger(text, part, 2);
    text += L':';
  }
  appendInteger(text, frames, 2);
  return text;
}

std::wstring durationInWords(double seconds) {
  std::wstring result;
  const auto add = [&](std::int32_t number, std::wstring_view unit) {
    if (number > 0) {
      result += (result.empty() ? L"" : L", ") + formatInteger(number, 1) + L" " + plural(number, unit);
    }
  };
  const std::int32_t total = toInt32(seconds);
  add(total / 3600, L"hour");
  add(total / 60 % 60, L"minute");
  add(total % 60, L"second");
  return result.empty() ? L"0 seconds" : result;
}

std::wstring sizeInUnits(double size, FileSizeUnit unit, wchar_t decimalSeparator) {
  const double megaBytes = [&] {
    switch (unit) {
      case FileSizeUnit::bytes:
        return size / (kilo * kilo);
      case FileSizeUnit::kiloBytes:
        return size / kilo;
      case FileSizeUnit::megaBytes:
        return size;
      case FileSizeUnit::gigaBytes:
        return size * kilo;
    }
    return 0.0;
  }();
  const auto oneDecimal = [&](double value) { return formatNumber(value, 1, 1, decimalSeparator); };
  if (megaBytes * kilo < 1) {
    return formatNumber(megaBytes * kilo * kilo, 1, 0) + L" bytes";
  }
  if (megaBytes < 1) {
    return oneDecimal(megaBytes * kilo) + L" KB";
  }
  return megaBytes < kilo ? oneDecimal(megaBytes) + L" MB" : oneDecimal(megaBytes / kilo) + L" GB";
}

std::wstring keyName(int keyCode, int shift, bool withModifiers) {
  std::wstring prefix;
  for (const Modifier& modifier : modifiers) {
    if (withModifiers && (shift & modifier.bit) != 0) {
      prefix.insert(0, prefix.empty() ? L"" : L"-").insert(0, modifier.word);
    }
  }
  return prefix.empty() ? bareKeyName(keyCode) : prefix + L" " + bareKeyName(keyCode);
}

std::wstring numericKeyName(int keyCode, int shift) {
  return L"Key-" + formatInteger(keyCode, 1) + L"-" + formatInteger(shift, 1);
}

std::wstring urlEncoded(std::wstring_view text, EncodeCharacter encode) {
  constexpr std::wstring_view digits = L"0123456789ABCDEF";
  std::wstring result;
  result.reserve(text.size());
  for (const wchar_t character : text) {
    if (staysInUrl(character)) {
      result += character;
      continue;
    }
    for (const char byte : encode(character)) {
      const auto code = static_cast<unsigned char>(byte);
      result += {L'%', digits[code / 16], digits[code % 16]};
    }
  }
  return result;
}

}  // namespace zeq::utility
