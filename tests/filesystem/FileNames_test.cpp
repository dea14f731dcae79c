#include "filesystem/FileNames.h"

#include <gtest/gtest.h>

#include <vector>

namespace zeq::filesystem {
namespace {

TEST(FileNames, AreSensibleWithoutSeparatorsWildcardsAndDots) {
  for (const wchar_t* name : {L"report", L" report ", L"CON", L"a b", L"\t", L"a(1)", L"a'b", L"a+b"}) {
    EXPECT_TRUE(isSensibleBaseName(name));
  }
  EXPECT_TRUE(isSensibleBaseName(std::wstring(32000, L'x')));
  EXPECT_TRUE(isSensibleBaseName(std::wstring(L"a\0b", 3)));
  for (const wchar_t* name : {L"", L"   ", L"report.txt", L"a/b", L"x?"}) {
    EXPECT_FALSE(isSensibleBaseName(name));
  }
  for (const wchar_t refused : std::wstring(L".\\/[]:;|=,*?<>\"\n\r")) {
    EXPECT_FALSE(isSensibleBaseName(std::wstring(L"a") + refused + L"b")) << static_cast<int>(refused);
  }
}

/// Answers with a list of what is taken, and keeps what it was asked.
struct Asked {
  std::vector<bool> answers;
  std::vector<std::wstring> names;

  IsTaken ask() {
    return [this](const std::wstring& name) {
      names.push_back(name);
      return names.size() <= answers.size() ? answers[names.size() - 1] : true;
    };
  }
};

TEST(FileNames, AreSuggestedFromNumberOne) {
  Asked asked{{true, true, false}, {}};
  EXPECT_EQ(suggestName(L"Report_", L".txt", 3, asked.ask()), L"Report_002.txt");
  EXPECT_EQ(asked.names,
            (std::vector<std::wstring>{L"Report_001.txt", L"Report_001.txt", L"Report_002.txt"}));
}

TEST(FileNames, AreNotSuggestedAfterOneThatVanished) {
  Asked asked{{true, false}, {}};
  EXPECT_EQ(suggestName(L"a", L"", 5, asked.ask()), L"");
  EXPECT_EQ(asked.names.size(), 2U);
}

TEST(FileNames, AreSuggestedUpToTheLastNumber) {
  Asked asked;
  EXPECT_EQ(suggestName(L"a", L"", 3, asked.ask()), L"");
  EXPECT_EQ(asked.names.size(), 6U);
  Asked none;
  EXPECT_EQ(suggestName(L"a", L"", 0, none.ask()), L"");
  EXPECT_EQ(suggestName(L"a", L"", -1, none.ask()), L"");
  EXPECT_TRUE(none.names.empty());
}

TEST(FileNames, HaveThreeDigitsOrMore) {
  const std::wstring lastTaken = L"a_999";
  EXPECT_EQ(suggestName(L"a_", L"", 32767,
                        [&](const std::wstring& name) { return name.size() == lastTaken.size(); }),
            L"a_1000");
  EXPECT_EQ(suggestName(L"a_", L"", 32767, [](const std::wstring&) { return true; }), L"");
}

TEST(FileNames, OfArchivesAreNumberedFromZeroTo999) {
  EXPECT_EQ(archivePath(L"x_ini", [](const std::wstring&) { return false; }), L"x_ini.000");
  EXPECT_EQ(archivePath(L"x_ini", [](const std::wstring& path) { return path < L"x_ini.042"; }),
            L"x_ini.042");
  EXPECT_EQ(archivePath(L"x_ini", [](const std::wstring& path) { return path < L"x_ini.999"; }),
            L"x_ini.999");
  int asked = 0;
  EXPECT_EQ(archivePath(L"x_ini", [&](const std::wstring&) { return ++asked > 0; }), L"");
  EXPECT_EQ(asked, 1000);
}

TEST(FileNames, AreTriedOnceMoreThanAsked) {
  for (const int tries : {-2, -1, 0, 1, 5, 32767}) {
    int made = 0;
    const auto make = [&] { return std::to_wstring(++made); };
    EXPECT_EQ(freePath(tries, make, [](const std::wstring&) { return true; }), L"");
    EXPECT_EQ(made, tries < 0 ? 0 : tries + 1);
  }
  int made = 0;
  const auto make = [&] { return std::to_wstring(++made); };
  EXPECT_EQ(freePath(9, make, [](const std::wstring& path) { return path < L"3"; }), L"3");
  EXPECT_EQ(made, 3);
}

}  // namespace
}  // namespace zeq::filesystem
