#include "utility/FieldSplitter.h"

#include <gmock/gmock.h>

#include <random>
#include <stdexcept>

#include "utility/TextModels.h"

namespace zeq::utility {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::wstring> fieldsOf(const FieldSplitter& splitter) {
  std::vector<std::wstring> fields;
  for (int position = 1; position <= splitter.count(); ++position) {
    fields.emplace_back(splitter.field(position));
  }
  return fields;
}

class FieldSplitterTest : public testing::Test {
 protected:
  std::vector<std::wstring> split(std::wstring_view record, std::wstring_view separator, bool trim = true,
                                  bool countEmpty = true) {
    splitter.split(record, separator, trim, countEmpty);
    return fieldsOf(splitter);
  }

  FieldSplitter splitter{&model::lowerCase};
};

TEST_F(FieldSplitterTest, StartsWithABlankAndWithoutEmptyFields) {
  EXPECT_EQ(splitter.separator(), L" ");
  EXPECT_TRUE(splitter.trimsFields());
  EXPECT_FALSE(splitter.countsEmptyFields());
  EXPECT_EQ(splitter.record(), L"");
  EXPECT_EQ(splitter.count(), 0);
  splitter.setRecord(L"alpha  beta");
  EXPECT_THAT(fieldsOf(splitter), ElementsAre(L"alpha", L"beta"));
  EXPECT_THAT(split(L"alpha  beta", L""), ElementsAre(L"alpha", L"", L"beta"));
}

TEST_F(FieldSplitterTest, CountsEmptyFieldsIfAsked) {
  EXPECT_THAT(split(L"a,,b", L",", true, true), ElementsAre(L"a", L"", L"b"));
  EXPECT_THAT(split(L"a,,b", L",", true, false), ElementsAre(L"a", L"b"));
  EXPECT_THAT(split(L"a,b,", L",", true, true), ElementsAre(L"a", L"b", L""));
  EXPECT_THAT(split(L"a,b,", L",", true, false), ElementsAre(L"a", L"b"));
  EXPECT_THAT(split(L",", L",", true, true), ElementsAre(L"", L""));
  EXPECT_THAT(split(L"", L",", true, true), IsEmpty());
}

TEST_F(FieldSplitterTest, TrimsBlanksOnly) {
  EXPECT_THAT(split(L" a ,\tb\t, ", L",", true, true), ElementsAre(L"a", L"\tb\t", L""));
  EXPECT_THAT(split(L" a ,   ", L",", true, false), ElementsAre(L"a"));
  EXPECT_THAT(split(L" a ,   ", L",", false, false), ElementsAre(L" a ", L"   "));
}

TEST_F(FieldSplitterTest, SplitsAgainAtEveryChange) {
  split(L"x; y,,z ", L";");
  splitter.setSeparator(L",");
  EXPECT_THAT(fieldsOf(splitter), ElementsAre(L"x; y", L"", L"z"));
  splitter.setCountsEmptyFields(false);
  EXPECT_THAT(fieldsOf(splitter), ElementsAre(L"x; y", L"z"));
  splitter.setTrimsFields(false);
  EXPECT_THAT(fieldsOf(splitter), ElementsAre(L"x; y", L"z "));
  splitter.setRecord(L"1,2");
  EXPECT_THAT(fieldsOf(splitter), ElementsAre(L"1", L"2"));
  splitter.setSeparator(L"");
  EXPECT_EQ(splitter.separator(), L",");
  EXPECT_THAT(fieldsOf(splitter), ElementsAre(L"1", L"2"));
}

TEST_F(FieldSplitterTest, IgnoresTheCaseOfSeparators) {
  EXPECT_THAT(split(L"salt AND pepper and Oil aNd vinegar", L"AND"),
              ElementsAre(L"salt", L"pepper", L"Oil", L"vinegar"));
  splitter.setSeparator(L"and");
  EXPECT_EQ(splitter.separator(), L"and");  // Another spelling is another separator.
  EXPECT_EQ(splitter.count(), 4);
}

TEST_F(FieldSplitterTest, CutsListsWithNulCharacters) {
  const std::wstring list(L"k1\0k2\0\0", 7);
  const std::wstring nul(1, L'\0');
  EXPECT_THAT(split(list, nul, true, false), ElementsAre(L"k1", L"k2"));
  EXPECT_THAT(split(list, nul, true, true), ElementsAre(L"k1", L"k2", L"", L""));
}

TEST_F(FieldSplitterTest, HasNothingOutsideItsFields) {
  split(L"a b", L" ");
  EXPECT_EQ(splitter.field(0), L"");
  EXPECT_EQ(splitter.field(-1), L"");
  EXPECT_EQ(splitter.field(3), L"");
  EXPECT_EQ(splitter.field(2), L"b");
}

TEST_F(FieldSplitterTest, OverflowsWhereASeparatorEndsTooFarToTheRight) {
  EXPECT_EQ(split(std::wstring(40000, L'x'), L",").size(), 1U);
  EXPECT_THAT(split(std::wstring(32765, L'x') + L",y", L","), testing::SizeIs(2));
  EXPECT_THROW(splitter.setRecord(std::wstring(32766, L'x') + L",y"), std::overflow_error);
  EXPECT_THAT(fieldsOf(splitter), ElementsAre(std::wstring(32766, L'x')));
  EXPECT_THROW(splitter.setRecord(L"first," + std::wstring(32766, L'x') + L",y"), std::overflow_error);
  EXPECT_THAT(fieldsOf(splitter), ElementsAre(L"first"));
  EXPECT_EQ(splitter.record().size(), 6U + 32766U + 2U);
  splitter.setRecord(L"1,2");
  EXPECT_EQ(splitter.count(), 2);
}

TEST_F(FieldSplitterTest, SplitsAgainOnlyWhereItMust) {
  const std::wstring tooLong = std::wstring(32766, L'x') + L",y";
  splitter.setSeparator(L",");
  EXPECT_THROW(splitter.setRecord(tooLong), std::overflow_error);
  splitter.setSeparator(L",");
  splitter.setTrimsFields(true);
  splitter.setCountsEmptyFields(false);
  EXPECT_THROW(splitter.setTrimsFields(false), std::overflow_error);
  EXPECT_THROW(splitter.setCountsEmptyFields(true), std::overflow_error);
  EXPECT_THROW(splitter.setRecord(tooLong), std::overflow_error);  // Even the same one.
}

TEST_F(FieldSplitterTest, HoldsAsManyFieldsAsItsCountCanTell) {
  EXPECT_EQ(split(std::wstring(32766, L','), L",").size(), 32767U);
  EXPECT_THROW(splitter.setRecord(std::wstring(32767, L',')), std::overflow_error);
}

TEST_F(FieldSplitterTest, AgreesWithTheStepByStepModel) {
  std::mt19937 random(1);
  const auto textOf = [&](std::size_t longest, std::wstring_view alphabet) {
    std::wstring text(random() % (longest + 1), L' ');
    for (wchar_t& each : text) {
      each = alphabet[random() % alphabet.size()];
    }
    return text;
  };
  for (int round = 0; round < 3000; ++round) {
    const std::wstring record = textOf(30, L"aAb ,\u00C4\u00E4");
    const std::wstring separator = textOf(3, L"a ,\u00C4") + L",";
    const std::wstring used = random() % 2 == 0 ? separator : separator.substr(0, 1);
    const bool trim = random() % 2 == 0;
    const bool countEmpty = random() % 2 == 0;
    model::Splitter model;
    model.split(record, used, trim, countEmpty);
    ASSERT_EQ(split(record, used, trim, countEmpty), model.fields());
  }
}

}  // namespace
}  // namespace zeq::utility
