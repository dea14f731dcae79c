// Time codes, durations in words and sizes: what they say, read back, is the number that went in.

#include <cmath>
#include <cwchar>
#include <limits>
#include <stdexcept>
#include <vector>

#include "fuzz/Input.h"
#include "utility/MZEQUtilityStrings.h"

namespace zeq::utility {
namespace {

constexpr double beyondInt32 = 2147483648.0;

bool near(double one, double other, double tolerance) {
  // A text holds fifteen digits of a number.
  return std::fabs(one - other) <= tolerance + 1e-14 * std::fabs(other);
}

/// The number that a text begins with. Rounded to fifteen digits, the largest doubles would become infinite.
double numberIn(const wchar_t* text, wchar_t** end = nullptr) {
  return std::fmin(std::wcstod(text, end), std::numeric_limits<double>::max());
}

/// The numbers between the colons of a text, each of two digits at least.
std::vector<double> partsOf(const std::wstring& text) {
  std::vector<double> parts;
  const wchar_t* at = text.c_str();
  for (;;) {
    wchar_t* end = nullptr;
    parts.push_back(numberIn(at, &end));
    fuzz::require(end - at >= 2, "a part has two digits");
    if (*end == L'\0') {
      return parts;
    }
    fuzz::require(*end == L':', "colons are between the parts");
    at = end + 1;
  }
}

/// Seconds of the leading parts: minutes and seconds, or hours, minutes and seconds.
double secondsIn(const std::vector<double>& parts, std::size_t count) {
  double seconds = 0;
  for (std::size_t i = 0; i < count; ++i) {
    seconds = seconds * 60 + parts[i];
    fuzz::require(i == 0 || std::fabs(parts[i]) <= 60 || i + 1 == count, "minutes are less than an hour");
  }
  return seconds;
}

/// The text of a format that consists of parts; a part of the seconds or the frames may be a fraction.
void checkParts(const std::wstring& text, VideoTimeFormat format, double duration, double framesPerSecond) {
  const bool hasHours = format == VideoTimeFormat::hoursMinutesSeconds ||
                        format == VideoTimeFormat::hoursMinutesSecondsHundredths ||
                        format == VideoTimeFormat::hoursMinutesSecondsFrames;
  const bool hasFrames =
      format == VideoTimeFormat::minutesSecondsFrames || format == VideoTimeFormat::hoursMinutesSecondsFrames;
  const bool hasHundredths = format == VideoTimeFormat::minutesSecondsHundredths ||
                             format == VideoTimeFormat::hoursMinutesSecondsHundredths;
  const std::vector<double> parts = partsOf(text);
  const std::size_t times = hasHours ? 3 : 2;
  fuzz::require(parts.size() == times + (hasFrames ? 1 : 0), "each part is there");
  const double whole = duration < beyondInt32 ? std::floor(duration) : 0;
  if (hasHundredths) {
    fuzz::require(near(secondsIn(parts, times), duration, 0.00501), "the parts make the duration");
  } else {
    fuzz::require(secondsIn(parts, times) == whole, "the parts make the whole seconds");
  }
  const double frames = std::floor((duration - whole) * framesPerSecond);
  if (hasFrames) {
    fuzz::require(near(parts.back(), std::isfinite(frames) ? frames : 0, 0), "frames are the fraction's");
  }
}

void checkVideoTime(fuzz::Input& input) {
  const double seconds = input.real();
  const auto format = static_cast<VideoTimeFormat>(input.number(-1, 11));
  const double framesPerSecond = input.flag() ? 25 : input.real();
  std::wstring text = videoTime(seconds, format, framesPerSecond, L'.');
  if (seconds < 0) {
    fuzz::require(text.substr(0, 2) == L"- ", "a negative duration begins with a minus");
    text.erase(0, 2);
  }
  const double duration = std::fabs(seconds);
  if (format <= VideoTimeFormat::none || format > VideoTimeFormat::secondsHundredths) {
    fuzz::require(text.empty(), "no format, no text");
  } else if (!std::isfinite(duration)) {
    fuzz::require(text.find_first_not_of(L"0:") == std::wstring::npos, "what cannot be computed is 0");
  } else if (format >= VideoTimeFormat::paddedSecondsHundredths) {
    const double step = format == VideoTimeFormat::seconds ? 1 : 0.01;
    fuzz::require(near(numberIn(text.c_str()), duration, step * 0.501), "the seconds are the duration");
  } else {
    checkParts(text, format, duration, framesPerSecond);
  }
}

void checkTimeCode(double seconds) {
  const std::vector<double> parts = partsOf(timeCode(seconds));
  fuzz::require(parts.size() == 4, "a time code has four parts");
  if (!(seconds >= -beyondInt32 && seconds < beyondInt32)) {
    fuzz::require(secondsIn(parts, 3) == 0, "a duration that is too long has no whole seconds");
    return;
  }
  fuzz::require(secondsIn(parts, 3) == std::floor(seconds), "the parts make the whole seconds");
  fuzz::require(near(parts[3], (seconds - std::floor(seconds)) * 25, 0.5), "frames are the nearest");
}

void checkWords(double seconds) {
  std::wstring text;
  try {
    text = durationInWords(seconds);
  } catch (const std::overflow_error&) {
    fuzz::require(!(std::nearbyint(seconds) >= -beyondInt32 && std::nearbyint(seconds) < beyondInt32),
                  "32 bits have words");
    return;
  }
  double total = 0;
  for (const auto& [unit, length] : {std::pair{L"hour", 3600.0}, {L"minute", 60.0}, {L"second", 1.0}}) {
    const std::size_t at = text.find(unit);
    if (at == std::wstring::npos) {
      continue;
    }
    const std::size_t comma = at < 2 ? std::wstring::npos : text.rfind(L", ", at);
    const double number = numberIn(text.c_str() + (comma == std::wstring::npos ? 0 : comma + 2));
    const std::size_t behind = at + std::wcslen(unit);
    fuzz::require((behind < text.size() && text[behind] == L's') == (number != 1), "one is singular");
    total += number * length;
  }
  fuzz::require(total == std::fmax(std::nearbyint(seconds), 0), "the words make the duration");
}

void checkSize(fuzz::Input& input) {
  const double size = input.real();
  const int unit = input.number(0, 5);
  constexpr double bytesOf[] = {0, 1, 0x1p10, 0x1p20, 0x1p30, 0};
  const double bytes = size * bytesOf[unit];
  std::wstring text;
  try {
    text = sizeInUnits(size, static_cast<FileSizeUnit>(unit), L'.');
  } catch (const std::overflow_error&) {
    fuzz::require(!(std::fabs(bytes) < 1e300), "an ordinary size has a text");
    return;
  }
  if (!(std::fabs(bytes) < 1e300)) {
    return;
  }
  const std::size_t blank = text.find(L' ');
  const std::wstring name = text.substr(blank + 1);
  const double scale = name == L"bytes" ? 1 : name == L"KB" ? 0x1p10 : name == L"MB" ? 0x1p20 : 0x1p30;
  fuzz::require(name == L"bytes" || name == L"KB" || name == L"MB" || name == L"GB", "the unit is known");
  fuzz::require(scale == 1 || bytes >= scale, "the size reaches its unit");
  fuzz::require(scale == 0x1p30 || bytes < scale * 0x1p10, "and no larger one");
  fuzz::require(near(numberIn(text.c_str()) * scale, bytes, scale * (scale == 1 ? 0.501 : 0.0501)),
                "the number is the size");
}

}  // namespace
}  // namespace zeq::utility

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zeq::fuzz::Input input(data, size);
  zeq::utility::checkVideoTime(input);
  const double seconds = input.real();
  zeq::utility::checkTimeCode(seconds);
  zeq::utility::checkWords(seconds);
  zeq::utility::checkSize(input);
  return 0;
}
