#include "inifiles/ProfileList.h"

#include <gmock/gmock.h>

namespace zeq::inifiles {
namespace {

using namespace std::literals;
using testing::ElementsAre;

TEST(ProfileListTest, EntriesEndInNuls) {
  EXPECT_THAT(entriesOf(L"a=1\0b=2\0\0"sv), ElementsAre(L"a=1", L"b=2"));
  EXPECT_THAT(entriesOf(L"General\0Window\0\0"sv), ElementsAre(L"General", L"Window"));
}

TEST(ProfileListTest, AShortLastEntryIsLeftOut) {
  EXPECT_THAT(entriesOf(L"General\0x\0\0"sv), ElementsAre(L"General"));
  EXPECT_THAT(entriesOf(L"General\0xy\0\0"sv), ElementsAre(L"General", L"xy"));
  EXPECT_THAT(entriesOf(L"a=1\0x=\0"sv), ElementsAre(L"a=1"));
  EXPECT_THAT(entriesOf(L"a=1\0xy=\0"sv), ElementsAre(L"a=1", L"xy="));
}

TEST(ProfileListTest, WhatFollowsAShortEntryIsTakenAllTheSame) {
  EXPECT_THAT(entriesOf(L"a=1\0x=\0b=2\0"sv), ElementsAre(L"a=1", L"x=", L"b=2"));
}

TEST(ProfileListTest, TheFirstEntryIsAlwaysTaken) {
  EXPECT_THAT(entriesOf(L"x\0\0"sv), ElementsAre(L"x"));
  EXPECT_THAT(entriesOf(L"x=\0"sv), ElementsAre(L"x="));
  EXPECT_THAT(entriesOf(L"\0"sv), ElementsAre(L""));
  EXPECT_THAT(entriesOf(L""sv), ElementsAre(L""));
}

TEST(ProfileListTest, AListThatWasCutEndsWithoutANul) {
  EXPECT_THAT(entriesOf(L"a=1\0b=lon"sv), ElementsAre(L"a=1", L"b=lon"));
}

TEST(ProfileListTest, TheFirstSignPartsKeyAndValue) {
  EXPECT_EQ(keyIn(L"a=b=c"), L"a");
  EXPECT_EQ(valueIn(L"a=b=c"), L"b=c");
  EXPECT_EQ(keyIn(L"=c"), L"");
  EXPECT_EQ(valueIn(L"a="), L"");
  EXPECT_EQ(keyIn(L"lonely"), L"");
  EXPECT_EQ(valueIn(L"lonely"), L"");
}

}  // namespace
}  // namespace zeq::inifiles
