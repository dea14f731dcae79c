// Use from another process: where the registry allows it, the system's own surrogate process loads the 32-bit
// DLL, so that 64-bit programs reach it as well.

#include <windows.h>
#include <gmock/gmock.h>
#include <tlhelp32.h>

#include <set>
#include <string>
#include <vector>

#include "support/Component.h"
#include "support/Deployment.h"
#include "support/EventLog.h"
#include "support/Process.h"

namespace zeq::test {
namespace {

using testing::ElementsAre;

constexpr const wchar_t* applicationId = L"{5B0C7A53-9C0E-4E0B-8A53-6E5B7C4C1D11}";

/// What an administrator adds to the registration of the 32-bit DLL to allow the surrogate.
class SurrogateSettings {
 public:
  explicit SurrogateSettings(const std::vector<CLSID>& classes) {
    set(std::wstring(L"AppID\\") + applicationId, L"DllSurrogate", L"");
    for (const CLSID& clsid : classes) {
      set(L"CLSID\\" + guidText(clsid), L"AppID", applicationId);
    }
  }
  /// The settings of the classes go with their registration.
  ~SurrogateSettings() {
    RegDeleteKeyExW(HKEY_LOCAL_MACHINE, (std::wstring(L"Software\\Classes\\AppID\\") + applicationId).c_str(),
                    KEY_WOW64_32KEY, 0);
  }
  SurrogateSettings(const SurrogateSettings&) = delete;
  SurrogateSettings& operator=(const SurrogateSettings&) = delete;

 private:
  static void set(const std::wstring& path, const wchar_t* name, const std::wstring& text) {
    HKEY key = nullptr;
    EXPECT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, (L"Software\\Classes\\" + path).c_str(), 0, nullptr, 0,
                              KEY_WRITE | KEY_WOW64_32KEY, nullptr, &key, nullptr),
              ERROR_SUCCESS);
    EXPECT_EQ(RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                             static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))),
              ERROR_SUCCESS);
    RegCloseKey(key);
  }
};

/// The surrogate processes that run now.
std::set<DWORD> surrogates() {
  std::set<DWORD> found;
  const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
  PROCESSENTRY32W entry{};
  entry.dwSize = sizeof entry;
  for (BOOL more = Process32FirstW(snapshot, &entry); more != FALSE;
       more = Process32NextW(snapshot, &entry)) {
    if (_wcsicmp(entry.szExeFile, L"dllhost.exe") == 0) {
      found.insert(entry.th32ProcessID);
    }
  }
  CloseHandle(snapshot);
  return found;
}

void endProcess(DWORD id) {
  const HANDLE process = OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, id);
  TerminateProcess(process, 0);
  WaitForSingleObject(process, INFINITE);
  CloseHandle(process);
}

class SurrogateTest : public testing::Test {
 protected:
  SurrogateTest() {
    unregisterAll();
    EXPECT_EQ(install(true, nullptr), S_OK);
  }
  ~SurrogateTest() override {
    for (const DWORD process : surrogates()) {
      if (!surrogatesBefore_.contains(process)) {
        endProcess(process);  // It would wait for further clients.
      }
    }
    unregisterAll();
  }

 private:
  std::set<DWORD> surrogatesBefore_ = surrogates();
};

TEST_F(SurrogateTest, ServesCallsAndEventsToProgramsOfBothBitnesses) {
  if (ownBits != 32) {
    if (otherComponentPath().empty() || systemFolder(32).empty()) {
      GTEST_SKIP() << "the 32-bit library is not built";
    }
    ASSERT_EQ(regsvr32(32, L"", otherComponentPath()), 0U);
  }
  const SurrogateSettings settings({__uuidof(CFakeDrive), __uuidof(CReferenceCounter)});
  constexpr DWORD context = DWORD{CLSCTX_LOCAL_SERVER} | DWORD{CLSCTX_ACTIVATE_32_BIT_SERVER};
  ComPtr<_CFakeDrive> drive;
  ASSERT_EQ(CoCreateInstance(__uuidof(CFakeDrive), nullptr, context, __uuidof(_CFakeDrive), drive.outVoid()),
            S_OK);
  EXPECT_TRUE(drive.query<IUnknown>(IID_IMultiQI)) << "not a proxy";
  EXPECT_EQ(drive->put_Name(Bstr(L"Z:").get()), S_OK);
  EXPECT_EQ(drive->UseBytes(7), S_OK);
  EXPECT_EQ(Late(drive).get(L"Delta").get().dblVal, 7);
  EXPECT_EQ(textIn(Late(drive).get(L"Name")), L"Z:");

  ComPtr<_CReferenceCounter> counter;
  ASSERT_EQ(CoCreateInstance(__uuidof(CReferenceCounter), nullptr, context, __uuidof(_CReferenceCounter),
                             counter.outVoid()),
            S_OK);
  EventLog log(counter, __uuidof(__CReferenceCounter), {{1, L"Triggered"}, {2, L"TriggeredRoundZero"}});
  long count = 0;
  EXPECT_EQ(counter->Increment(&count), S_OK);
  EXPECT_EQ(count, 1);
  EXPECT_THAT(log.take(), ElementsAre(L"TriggeredRoundZero 1 0", L"Triggered 1 0"));
}

}  // namespace
}  // namespace zeq::test
