#include "keymap/KeyMapText.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace zeq::keymap {
namespace {

using testing::Eq;
using testing::Optional;

TEST(KeyMapNumbers, ReadsNumbers) {
  EXPECT_THAT(integerIn(L"65"), Optional(65));
  EXPECT_THAT(integerIn(L"0"), Optional(0));
  EXPECT_THAT(integerIn(L"-5"), Optional(-5));
  EXPECT_THAT(integerIn(L"+5"), Optional(5));
  EXPECT_THAT(integerIn(L"  7  "), Optional(7));
  EXPECT_THAT(integerIn(L" - 7"), Optional(-7));
  EXPECT_THAT(integerIn(L"007"), Optional(7));
  EXPECT_THAT(integerIn(L"12."), Optional(12));
  EXPECT_THAT(integerIn(L".6"), Optional(1));
  EXPECT_THAT(integerIn(L"1e2"), Optional(100));
  EXPECT_THAT(integerIn(L"1E+2"), Optional(100));
  EXPECT_THAT(integerIn(L"1234e-2"), Optional(12));
  EXPECT_THAT(integerIn(L"0.0012345e6"), Optional(1234));
}

TEST(KeyMapNumbers, RoundsToNearestWithTiesToEven) {
  EXPECT_THAT(integerIn(L"0.5"), Optional(0));
  EXPECT_THAT(integerIn(L"1.5"), Optional(2));
  EXPECT_THAT(integerIn(L"2.5"), Optional(2));
  EXPECT_THAT(integerIn(L"2.500"), Optional(2));
  EXPECT_THAT(integerIn(L"2.5001"), Optional(3));
  EXPECT_THAT(integerIn(L"2.4999"), Optional(2));
  EXPECT_THAT(integerIn(L"-0.5"), Optional(0));
  EXPECT_THAT(integerIn(L"-1.5"), Optional(-2));
  EXPECT_THAT(integerIn(L"0.05"), Optional(0));
  EXPECT_THAT(integerIn(L"0.51"), Optional(1));
  EXPECT_THAT(integerIn(L"9.5"), Optional(10));
  EXPECT_THAT(integerIn(L"5e-1"), Optional(0));
}

TEST(KeyMapNumbers, HoldsSixteenBits) {
  EXPECT_THAT(integerIn(L"32767"), Optional(32767));
  EXPECT_THAT(integerIn(L"32767.4"), Optional(32767));
  EXPECT_THAT(integerIn(L"-32768.5"), Optional(-32768)) << "the even one";
  EXPECT_THAT(integerIn(L"0000000000000000000000000032767"), Optional(32767));
  EXPECT_THAT(integerIn(L"0e99999999999999999999"), Optional(0));
  EXPECT_THAT(integerIn(L"1e-99999999999999999999"), Optional(0));
  EXPECT_THAT(integerIn(L"0.00000000000000000000001e27"), Optional(10000));
  for (const wchar_t* text : {L"32768", L"32767.5", L"-32769", L"-32768.6", L"1e5", L"99999", L"1e400",
                              L"1e99999999999999999999", L"100000000000000000000000"}) {
    EXPECT_THROW(static_cast<void>(integerIn(text)), std::overflow_error) << text;
  }
}

TEST(KeyMapNumbers, TellsTextsThatAreNoNumbers) {
  for (const wchar_t* text :
       {L"",   L" ",  L"abc", L"5x",    L"x5",  L"-",    L"+-5", L"5 5", L".",     L"-.",
        L"e5", L"5e", L"5e+", L"1.2.3", L"1,5", L"0x10", L"\t5", L"5-",  L"5e1.5", L"\u0665"}) {
    EXPECT_EQ(integerIn(text), std::nullopt) << text;
  }
}

TEST(KeyMapLines, AreBuilt) {
  EXPECT_EQ(mappingKey(1), L"Mapping_1");
  EXPECT_EQ(mappingKey(32767), L"Mapping_32767");
  EXPECT_EQ(mappingValue({L"Save", L"Save file", {83, 2}}), L"Save|Save file|83|2");
  EXPECT_EQ(mappingValue({L"Quit", L"", {81, 2}}), L"Quit||81|2");
  EXPECT_EQ(mappingValue({L"", L"", {-1, -32768}}), L"||-1|-32768");
}

struct Expected {
  std::wstring name;
  std::wstring description;
  int keyCode;
  int shift;
};

void expectMapping(const std::optional<Mapping>& mapping, const Expected& expected) {
  ASSERT_TRUE(mapping.has_value());
  EXPECT_EQ(mapping->name, expected.name);
  EXPECT_EQ(mapping->description, expected.description);
  EXPECT_EQ(mapping->keystroke.keyCode, expected.keyCode);
  EXPECT_EQ(mapping->keystroke.shift, expected.shift);
}

TEST(KeyMapLines, AreRead) {
  MappingReader reader;
  expectMapping(reader.read(L"Save|Save file|83|2"), {L"Save", L"Save file", 83, 2});
  expectMapping(reader.read(L" A | B | 65 | 2 "), {L"A", L"B", 65, 2});
  expectMapping(reader.read(L"||1|2"), {L"", L"", 1, 2});
  expectMapping(reader.read(L"A|B|65|2|more|fields"), {L"A", L"B", 65, 2});
  expectMapping(reader.read(L"A|B|2.5|1e1"), {L"A", L"B", 2, 10});
}

TEST(KeyMapLines, NeedFourFields) {
  MappingReader reader;
  for (const wchar_t* text : {L"", L"Open", L"Open|Open a file|79", L"||"}) {
    EXPECT_FALSE(reader.read(text).has_value()) << text;
  }
  EXPECT_TRUE(reader.read(L"|||").has_value());
}

TEST(KeyMapLines, KeepTheKeystrokeBeforeWhereThereIsNoNumber) {
  MappingReader reader;
  expectMapping(reader.read(L"A|B|abc|"), {L"A", L"B", 0, 0});
  expectMapping(reader.read(L"A|B|65|4"), {L"A", L"B", 65, 4});
  expectMapping(reader.read(L"X|Y|abc|1"), {L"X", L"Y", 65, 1});
  expectMapping(reader.read(L"X|Y|66|"), {L"X", L"Y", 66, 1});
  EXPECT_FALSE(reader.read(L"skipped|Y|70").has_value());
  expectMapping(reader.read(L"X|Y||"), {L"X", L"Y", 66, 1});
}

TEST(KeyMapLines, RefuseNumbersOfMoreThanSixteenBits) {
  MappingReader reader;
  EXPECT_THROW(static_cast<void>(reader.read(L"A|B|32768|0")), std::overflow_error);
  EXPECT_THROW(static_cast<void>(reader.read(L"A|B|0|-40000")), std::overflow_error);
}

}  // namespace
}  // namespace zeq::keymap
