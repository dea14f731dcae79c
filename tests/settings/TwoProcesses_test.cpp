// Two processes write to one store at the same time, a thousand values each.

#include <gmock/gmock.h>

#include <string>
#include <thread>

#include "support/Component.h"
#include "support/IniText.h"
#include "support/Process.h"
#include "support/TestKey.h"

namespace zeq::test {
namespace {

constexpr long writes = 1000;
constexpr const wchar_t* hiveVariable = L"ZEQ_TEST_HIVE";
constexpr const wchar_t* rootVariable = L"ZEQ_TEST_ROOT";

std::wstring environment(const wchar_t* name) {
  std::wstring value(32767, L'\0');
  value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
  return value;
}

/// The group that the writers share.
ComPtr<_CAppSettings> sharedGroup() {
  auto group = create<CAppSettings, _CAppSettings>();
  group->put_Hive(Bstr(environment(hiveVariable)).get());
  group->put_RootKey(Bstr(environment(rootVariable)).get());
  group->put_SubKey(Bstr(L"Shared").get());
  return group;
}

/// The profile functions read and write a file as a whole, so that writers of an ini file must take turns.
class Turn {
 public:
  Turn() : mutex_(CreateMutexW(nullptr, FALSE, L"ZEQUtility2 test: two writers")) {
    WaitForSingleObject(mutex_, INFINITE);
  }
  ~Turn() {
    ReleaseMutex(mutex_);
    CloseHandle(mutex_);
  }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

 private:
  HANDLE mutex_;
};

void writeValues(const std::wstring& prefix) {
  const auto group = sharedGroup();
  const bool takesTurns = environment(hiveVariable) != L"HKCU";
  for (long i = 0; i < writes; ++i) {
    const Bstr name(prefix + std::to_wstring(i));
    if (takesTurns) {
      const Turn turn;
      group->WriteSetting(name.get(), Variant(i).get());
    } else {
      group->WriteSetting(name.get(), Variant(i).get());
    }
  }
}

// Not tests of their own: what the two processes do.
TEST(TwoProcessesTest, DISABLED_First) {
  writeValues(L"first ");
}
TEST(TwoProcessesTest, DISABLED_Second) {
  writeValues(L"second ");
}

void runWriters(const std::wstring& hive, const std::wstring& root) {
  SetEnvironmentVariableW(hiveVariable, hive.c_str());
  SetEnvironmentVariableW(rootVariable, root.c_str());
  std::wstring self(MAX_PATH, L'\0');
  self.resize(GetModuleFileNameW(nullptr, self.data(), static_cast<DWORD>(self.size())));
  const auto run = [&](const wchar_t* writer) {
    return runProgram(test::quoted(self) +
                      L" --gtest_also_run_disabled_tests --gtest_filter=TwoProcessesTest.DISABLED_" + writer);
  };
  DWORD first = 1;
  std::thread other([&] { first = run(L"First"); });
  EXPECT_EQ(run(L"Second"), 0U);
  other.join();
  EXPECT_EQ(first, 0U);
}

TEST(TwoProcessesTest, NoWriteToOneRegistryKeyIsLost) {
  const TestKey key;
  runWriters(L"HKCU", key.path());
  for (long i = 0; i < writes; ++i) {
    ASSERT_EQ(key.text(L"Shared", L"first " + std::to_wstring(i)), std::to_wstring(i));
    ASSERT_EQ(key.text(L"Shared", L"second " + std::to_wstring(i)), std::to_wstring(i));
  }
}

TEST(TwoProcessesTest, NoWriteToOneIniFileIsLostWhenTheWritersTakeTurns) {
  const IniText ini;
  runWriters(ini.path(), L"Tools");
  for (long i = 0; i < writes; ++i) {
    const std::string number = std::to_string(i);
    ASSERT_EQ(ini.platformValue("Tools\\Shared", ("first " + number).c_str()), number);
    ASSERT_EQ(ini.platformValue("Tools\\Shared", ("second " + number).c_str()), number);
  }
}

}  // namespace
}  // namespace zeq::test
