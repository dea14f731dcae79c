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
constexpr long valuesInIniFile = 10;
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

void write(_CAppSettings& group, std::wstring_view name, long value) {
  group.WriteSetting(Bstr(name).get(), Variant(value).get());
}

// Not tests of their own: what the two processes do.

void writeToRegistry(const std::wstring& prefix) {
  const auto group = sharedGroup();
  for (long i = 0; i < writes; ++i) {
    write(*group.get(), prefix + std::to_wstring(i), i);
  }
}
TEST(TwoProcessesTest, DISABLED_FirstToRegistry) {
  writeToRegistry(L"first ");
}
TEST(TwoProcessesTest, DISABLED_SecondToRegistry) {
  writeToRegistry(L"second ");
}

/// Writes few values in turn, so that the file stays small. What a value's last write left must still be
/// there.
void writeToIniFile(const std::wstring& prefix) {
  const std::string file = narrow(environment(hiveVariable));
  const auto group = sharedGroup();
  for (long i = 0; i < writes; ++i) {
    const std::wstring name = prefix + std::to_wstring(i % valuesInIniFile);
    const Turn turn;
    if (i >= valuesInIniFile) {
      ASSERT_EQ(
          static_cast<long>(GetPrivateProfileIntA("Tools\\Shared", narrow(name).c_str(), -1, file.c_str())),
          i - valuesInIniFile);
    }
    write(*group.get(), name, i);
  }
}
TEST(TwoProcessesTest, DISABLED_FirstToIniFile) {
  writeToIniFile(L"first ");
}
TEST(TwoProcessesTest, DISABLED_SecondToIniFile) {
  writeToIniFile(L"second ");
}

void runWriters(const std::wstring& store, const std::wstring& hive, const std::wstring& root) {
  SetEnvironmentVariableW(hiveVariable, hive.c_str());
  SetEnvironmentVariableW(rootVariable, root.c_str());
  const auto run = [&](const std::wstring& writer) {
    return runProgram(partOfATest(L"TwoProcessesTest.DISABLED_" + writer + L"To" + store));
  };
  DWORD first = 1;
  std::thread other([&] { first = run(L"First"); });
  EXPECT_EQ(run(L"Second"), 0U);
  other.join();
  EXPECT_EQ(first, 0U);
}

TEST(TwoProcessesTest, NoWriteToOneRegistryKeyIsLost) {
  const TestKey key;
  runWriters(L"Registry", L"HKCU", key.path());
  for (long i = 0; i < writes; ++i) {
    ASSERT_EQ(key.text(L"Shared", L"first " + std::to_wstring(i)), std::to_wstring(i));
    ASSERT_EQ(key.text(L"Shared", L"second " + std::to_wstring(i)), std::to_wstring(i));
  }
}

TEST(TwoProcessesTest, NoWriteToOneIniFileIsLostWhenTheWritersTakeTurns) {
  const IniText ini;
  runWriters(L"IniFile", ini.path(), L"Tools");
  for (long i = 0; i < valuesInIniFile; ++i) {
    const std::string number = std::to_string(i);
    const std::string last = std::to_string(writes - valuesInIniFile + i);
    EXPECT_EQ(ini.platformValue("Tools\\Shared", ("first " + number).c_str()), last);
    EXPECT_EQ(ini.platformValue("Tools\\Shared", ("second " + number).c_str()), last);
  }
}

}  // namespace
}  // namespace zeq::test
