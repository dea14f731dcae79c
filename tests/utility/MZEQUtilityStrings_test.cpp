#include "utility/MZEQUtilityStrings.h"

#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <random>
#include <stdexcept>

#include "utility/TextModels.h"

namespace zeq::utility {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

TEST(Plural, AddsAnSUnlessThereIsOne) {
  EXPECT_EQ(plural(1, L"file"), L"file");
  EXPECT_EQ(plural(0, L"file"), L"files");
  EXPECT_EQ(plural(-1, L"file"), L"files");
  EXPECT_EQ(plural(2, L""), L"s");
}

TEST(EqualTexts, LeavesCaseAndBlanksOutOfAccount) {
  const auto equal = [](std::wstring_view one, std::wstring_view other, bool caseSensitive, bool trimSpace) {
    return equalTexts(one, other, caseSensitive, trimSpace, &model::lowerCase);
  };
  EXPECT_TRUE(equal(L" Abc ", L"abc", false, true));
  EXPECT_FALSE(equal(L" Abc ", L"abc", false, false));
  EXPECT_FALSE(equal(L" Abc ", L"abc", true, true));
  EXPECT_TRUE(equal(L" Abc ", L"Abc", true, true));
  EXPECT_TRUE(equal(L"ABC", L"abc", false, false));
  EXPECT_TRUE(equal(L"Abc", L"Abc", true, false));
  EXPECT_FALSE(equal(L"Abc ", L"Abc", true, false));
  EXPECT_FALSE(equal(L"\tabc", L"abc", false, true));
  EXPECT_TRUE(equal(L"   ", L"", false, true));
  EXPECT_FALSE(equal(std::wstring_view(L"a\0b", 3), std::wstring_view(L"a\0c", 3), false, true));
}

TEST(Trimmed, TakesSpacesOffBothEnds) {
  EXPECT_EQ(trimmed(L"  a b "), L"a b");
  EXPECT_EQ(trimmed(L"a"), L"a");
  EXPECT_EQ(trimmed(L"   "), L"");
  EXPECT_EQ(trimmed(L""), L"");
  EXPECT_EQ(trimmed(L"\ta\t"), L"\ta\t");
}

TEST(ReplaceKeyword, ReplacesEveryOccurrence) {
  EXPECT_EQ(replaceKeyword(L"a%N%b%N%", L"%N%", L"x"), L"axbx");
  EXPECT_EQ(replaceKeyword(L"a%n%b", L"%N%", L"x"), L"a%n%b");
  EXPECT_EQ(replaceKeyword(L"%N%", L"%N%", L"something longer"), L"something longer");
  EXPECT_EQ(replaceKeyword(L"%N%%N%", L"%N%", L""), L"");
  EXPECT_EQ(replaceKeyword(L"", L"%N%", L"x"), L"");
  const std::wstring nul(1, L'\0');
  EXPECT_EQ(replaceKeyword(L"a" + nul + L"b", nul, L"-"), L"a-b");
}

TEST(ReplaceKeyword, ReplacesWhatReplacementsMake) {
  EXPECT_EQ(replaceKeyword(L"aabb", L"ab", L""), L"");
  EXPECT_EQ(replaceKeyword(L"aab", L"ab", L"ba"), L"baa");
  EXPECT_EQ(replaceKeyword(L"<<>>", L"<>", L""), L"");
  EXPECT_EQ(replaceKeyword(L"   a    b", L"  ", L" "), L" a b");
}

TEST(ReplaceKeyword, LeavesTheTextWhereItCouldNotEnd) {
  EXPECT_EQ(replaceKeyword(L"abc", L"", L"x"), L"abc");
  EXPECT_EQ(replaceKeyword(L"abc", L"b", L"b"), L"abc");
  EXPECT_EQ(replaceKeyword(L"abc", L"b", L"xbx"), L"abc");
  EXPECT_EQ(replaceKeyword(std::wstring(40000, L'a') + L"b", L"b", L"xbx").size(), 40001U);
}

TEST(ReplaceKeyword, OverflowsBeyondCharacter32767) {
  EXPECT_EQ(replaceKeyword(std::wstring(32766, L'a') + L"b", L"b", L"c"), std::wstring(32766, L'a') + L"c");
  EXPECT_THROW((void)replaceKeyword(std::wstring(32767, L'a') + L"b", L"b", L"c"), std::overflow_error);
  EXPECT_EQ(replaceKeyword(std::wstring(40000, L'a'), L"b", L"c").size(), 40000U);
  // Growing in front moves a match out of reach; shrinking brings one into it.
  EXPECT_THROW((void)replaceKeyword(L"b" + std::wstring(32766, L'a') + L"b", L"b", L"cc"),
               std::overflow_error);
  EXPECT_EQ(replaceKeyword(L"bb" + std::wstring(32766, L'a') + L"b", L"b", L"").size(), 32766U);
  // The first replacement moves the next occurrence to the right, for ever.
  EXPECT_THROW((void)replaceKeyword(L"aab", L"ab", L"bbaa"), std::overflow_error);
}

TEST(ReplaceKeyword, AgreesWithSearchingFromTheStart) {
  std::mt19937 random(2);
  const auto textOf = [&](std::size_t longest) {
    std::wstring text(random() % (longest + 1), L'a');
    for (wchar_t& each : text) {
      each = random() % 2 == 0 ? L'a' : L'b';
    }
    return text;
  };
  for (int round = 0; round < 5000; ++round) {
    const std::wstring text = textOf(40);
    const std::wstring keyword = textOf(4) + L"a";
    const std::wstring replacement = textOf(keyword.size());  // Never longer, so that it always ends.
    if (replacement.find(keyword) == std::wstring::npos) {
      ASSERT_EQ(replaceKeyword(text, keyword, replacement),
                model::replaceKeyword(text, keyword, replacement));
    }
  }
}

TEST(VideoTime, FollowsTheFormat) {
  const auto text = [](double seconds, int format) {
    return videoTime(seconds, static_cast<VideoTimeFormat>(format), 25, L'.');
  };
  const std::wstring expected[] = {L"",         L"62:05",       L"62:05.25", L"01:02:05", L"01:02:05.25",
                                   L"62:05:06", L"01:02:05:06", L"03725.25", L"3725",     L"3725.25"};
  for (int format = 0; format <= 9; ++format) {
    EXPECT_EQ(text(3725.25, format), expected[format]);
    EXPECT_EQ(text(-3725.25, format), L"- " + expected[format]);
  }
  EXPECT_EQ(text(3725.25, -1), L"");
  EXPECT_EQ(text(3725.25, 10), L"");
  EXPECT_EQ(text(-3725.25, 99), L"- ");
  EXPECT_EQ(text(59.999, 2), L"00:60.00");
  EXPECT_EQ(text(0, 4), L"00:00:00.00");
  EXPECT_EQ(text(100 * 3600, 3), L"100:00:00");
  EXPECT_EQ(text(0.5, 8), L"1");
  EXPECT_EQ(text(1.5, 9), L"1.50");
  EXPECT_EQ(videoTime(1.5, VideoTimeFormat::secondsHundredths, 25, L','), L"1,50");
}

TEST(VideoTime, CountsFramesDown) {
  const auto frames = [](double seconds, double framesPerSecond) {
    return videoTime(seconds, VideoTimeFormat::minutesSecondsFrames, framesPerSecond, L'.');
  };
  EXPECT_EQ(frames(0.99, 25), L"00:00:24");
  EXPECT_EQ(frames(0.5, 29.97), L"00:00:14");
  EXPECT_EQ(frames(0.5, 1000), L"00:00:500");
  EXPECT_EQ(frames(0.5, -25), L"00:00:-13");
  EXPECT_EQ(frames(0.5, infinity), L"00:00:00");
}

TEST(VideoTime, GoesOnWhereAPartFails) {
  const auto text = [](double seconds, VideoTimeFormat format) {
    return videoTime(seconds, format, 25, L'.');
  };
  // The whole seconds do not fit and count as 0, so that all of the number is the fraction.
  EXPECT_EQ(text(3e9, VideoTimeFormat::hoursMinutesSeconds), L"00:00:00");
  EXPECT_EQ(text(3e9, VideoTimeFormat::minutesSecondsHundredths), L"00:3000000000.00");
  EXPECT_EQ(text(3e9, VideoTimeFormat::seconds), L"3000000000");
  EXPECT_EQ(text(-infinity, VideoTimeFormat::seconds), L"- ");
  EXPECT_EQ(text(notANumber, VideoTimeFormat::hoursMinutesSeconds), L"00:00:00");
}

TEST(TimeCode, RoundsFrames) {
  EXPECT_EQ(timeCode(3725.25), L"01:02:05:06");
  EXPECT_EQ(timeCode(0.99), L"00:00:00:25");
  EXPECT_EQ(timeCode(0), L"00:00:00:00");
  EXPECT_EQ(timeCode(0.5), L"00:00:00:12");
  EXPECT_EQ(timeCode(400 * 3600.0), L"400:00:00:00");
}

TEST(TimeCode, KeepsTheSignsOfIntegerArithmetic) {
  EXPECT_EQ(timeCode(-1.5), L"00:00:-02:12");
  EXPECT_EQ(timeCode(-3725), L"-01:-02:-05:00");
}

TEST(TimeCode, CountsWhatFailsAsZero) {
  EXPECT_EQ(timeCode(3e9), L"00:00:00:00");
  EXPECT_EQ(timeCode(notANumber), L"00:00:00:00");
  EXPECT_EQ(timeCode(-infinity), L"00:00:00:00");
  EXPECT_EQ(timeCode(2147483647.5), L"596523:14:07:12");
}

TEST(DurationInWords, NamesHoursMinutesAndSeconds) {
  EXPECT_EQ(durationInWords(3725), L"1 hour, 2 minutes, 5 seconds");
  EXPECT_EQ(durationInWords(60), L"1 minute");
  EXPECT_EQ(durationInWords(3601), L"1 hour, 1 second");
  EXPECT_EQ(durationInWords(7200), L"2 hours");
  EXPECT_EQ(durationInWords(0.4), L"0 seconds");
  EXPECT_EQ(durationInWords(0.5), L"0 seconds");
  EXPECT_EQ(durationInWords(1.5), L"2 seconds");
  EXPECT_EQ(durationInWords(0), L"0 seconds");
  EXPECT_EQ(durationInWords(-3725), L"0 seconds");
  EXPECT_EQ(durationInWords(2147483647), L"596523 hours, 14 minutes, 7 seconds");
  EXPECT_THROW((void)durationInWords(2147483648.0), std::overflow_error);
}

TEST(SizeInUnits, ChoosesTheUnit) {
  const auto text = [](double size, int unit) {
    return sizeInUnits(size, static_cast<FileSizeUnit>(unit), L'.');
  };
  EXPECT_EQ(text(512, 1), L"512 bytes");
  EXPECT_EQ(text(1, 1), L"1 bytes");
  EXPECT_EQ(text(1023, 1), L"1023 bytes");
  EXPECT_EQ(text(1024, 1), L"1.0 KB");
  EXPECT_EQ(text(1536, 1), L"1.5 KB");
  EXPECT_EQ(text(0.5, 2), L"512 bytes");
  EXPECT_EQ(text(1, 3), L"1.0 MB");
  EXPECT_EQ(text(3, 3), L"3.0 MB");
  EXPECT_EQ(text(1023.99, 2), L"1024.0 KB");
  EXPECT_EQ(text(2048, 3), L"2.0 GB");
  EXPECT_EQ(text(5000000, 3), L"4882.8 GB");
  EXPECT_EQ(text(2, 4), L"2.0 GB");
  EXPECT_EQ(text(0.5, 4), L"512.0 MB");
  EXPECT_EQ(text(77, 0), L"0 bytes");
  EXPECT_EQ(text(77, 5), L"0 bytes");
  EXPECT_EQ(text(0, 3), L"0 bytes");
  EXPECT_EQ(text(-2048, 1), L"-2048 bytes");
  EXPECT_EQ(sizeInUnits(1536, FileSizeUnit::bytes, L','), L"1,5 KB");
}

TEST(KeyName, NamesEveryKeyOfTheTable) {
  for (int code = -3; code <= 300; ++code) {
    EXPECT_EQ(keyName(code, 7, false), model::keyName(code));
  }
  EXPECT_EQ(keyName(127, 0, false), L"F16");
  EXPECT_EQ(keyName(-32768, 0, false), L"[-32768]");
}

TEST(KeyName, PutsModifiersInFront) {
  const std::wstring expected[] = {L"F1",     L"SHIFT F1",     L"CTRL F1",     L"CTRL-SHIFT F1",
                                   L"ALT F1", L"ALT-SHIFT F1", L"CTRL-ALT F1", L"CTRL-ALT-SHIFT F1"};
  for (int shift = 0; shift < 8; ++shift) {
    EXPECT_EQ(keyName(112, shift, true), expected[shift]);
    EXPECT_EQ(keyName(112, shift + 8, true), expected[shift]);
    EXPECT_EQ(keyName(112, shift, false), L"F1");
  }
  EXPECT_EQ(keyName(0, 1, true), L"SHIFT [0]");
}

TEST(NumericKeyName, TagsKeyAndModifiers) {
  EXPECT_EQ(numericKeyName(112, 2), L"Key-112-2");
  EXPECT_EQ(numericKeyName(0, -1), L"Key-0--1");
}

TEST(UrlEncoded, KeepsWhatIsAllowed) {
  const auto encode = [](std::wstring_view text) {
    return urlEncoded(text, [](wchar_t character) { return std::string(1, static_cast<char>(character)); });
  };
  EXPECT_EQ(encode(L"a b/c"), L"a%20b%2Fc");
  EXPECT_EQ(encode(L"it's (ok), fine!"), L"it's%20(ok),%20fine!");
  EXPECT_EQ(encode(L"azAZ09$-_.+!*'(),"), L"azAZ09$-_.+!*'(),");
  EXPECT_EQ(encode(L"\n"), L"%0A");
  EXPECT_EQ(encode(std::wstring_view(L"\0", 1)), L"%00");
  EXPECT_EQ(encode(L"\u00E9"), L"%E9");
  EXPECT_EQ(encode(L"%\"#&/:;<=>?@[\\]^`{|}~"),
            L"%25%22%23%26%2F%3A%3B%3C%3D%3E%3F%40%5B%5C%5D%5E%60%7B%7C%7D%7E");
  EXPECT_EQ(encode(L""), L"");
}

TEST(UrlEncoded, EncodesEveryByteOfACharacter) {
  EXPECT_EQ(urlEncoded(L"a\u3042b", [](wchar_t) { return std::string("\x82\xA0"); }), L"a%82%A0b");
}

}  // namespace
}  // namespace zeq::utility
