#include "support/Leaks.h"

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>
#include <oleauto.h>

#include <memory>
#include <vector>

namespace zeq::test {
namespace {

TEST(Leaks, AreFoundByKind) {
  const Holdings before = holdings();
  const BSTR text = SysAllocString(L"text");
  const auto block = std::make_unique<int>(1);
  const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  const Holdings during = holdings();
  EXPECT_EQ(during.taskMemory, before.taskMemory + 1);
  EXPECT_GE(during.heapBlocks, before.heapBlocks + 2);
  EXPECT_EQ(during.handles, before.handles + 1);
  SysFreeString(text);
  CloseHandle(event);
  const Holdings after = holdings();
  EXPECT_EQ(after.taskMemory, before.taskMemory);
  EXPECT_EQ(after.handles, before.handles);
}

TEST(Leaks, BalancedUseIsNoLeak) {
  expectNoLeak(100, [] {
    SysFreeString(SysAllocString(L"text"));
    CloseHandle(CreateEventW(nullptr, FALSE, FALSE, nullptr));
    const auto block = std::make_unique<int>(1);
  });
}

TEST(Leaks, OneOfManyRunsThatLeaksIsReported) {
  static std::vector<std::unique_ptr<int>> kept;
  static int runs;
  EXPECT_NONFATAL_FAILURE(expectNoLeak(100,
                                       [] {
                                         if (++runs % 64 == 0) {
                                           kept.push_back(std::make_unique<int>(1));
                                         }
                                       }),
                          "after 100 repetitions");
  kept.clear();
}

}  // namespace
}  // namespace zeq::test
