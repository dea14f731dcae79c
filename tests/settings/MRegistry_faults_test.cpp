// Stores that fail at one step after the other: what is reported, and what is left of what they held.

#include <gmock/gmock.h>

#include <string>

#include "settings/MRegistry.h"
#include "support/EntryPoint.h"
#include "support/ImportHook.h"
#include "support/IniText.h"
#include "support/TestKey.h"

namespace zeq::settings {
namespace {

using automation::Variant;
using test::ImportHook;
using test::IniText;
using test::TestKey;

/// The system's own function, of the type of the one that stands in for it here.
template <class Function>
Function* systemFunction(const char* name, Function*) {
  return test::entryPoint<Function*>(GetModuleHandleW(L"advapi32.dll"), name);
}

/// What stands in for the system's functions.
struct Faults {
  static inline int queriesBefore = 0;  ///< How many queries succeed before one fails.

  static LSTATUS WINAPI refuseOpen(HKEY, const char*, DWORD, REGSAM, HKEY*) { return ERROR_BADDB; }
  static LSTATUS WINAPI refuseCreate(HKEY, const char*, DWORD, char*, DWORD, REGSAM, SECURITY_ATTRIBUTES*,
                                     HKEY*, DWORD*) {
    return ERROR_BADDB;
  }
  static LSTATUS WINAPI refuseWrite(HKEY, const char*, DWORD, DWORD, const BYTE*, DWORD) {
    return ERROR_DISK_FULL;
  }
  static LSTATUS WINAPI query(HKEY key, const char* name, DWORD* reserved, DWORD* type, BYTE* data,
                              DWORD* size) {
    if (queriesBefore-- == 0) {
      return ERROR_REGISTRY_IO_FAILED;
    }
    return systemFunction("RegQueryValueExA", &query)(key, name, reserved, type, data, size);
  }
  static BOOL WINAPI refuseIniWrite(const char*, const char*, const char*, const char*) {
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
  }
};

/// Counts keys: every one that the library opens while this lives must be closed by the time that it goes.
class KeyCount {
 public:
  KeyCount() { open_ = 0; }
  ~KeyCount() { EXPECT_EQ(open_, 0) << "keys that nobody closed"; }
  KeyCount(const KeyCount&) = delete;
  KeyCount& operator=(const KeyCount&) = delete;

 private:
  static LSTATUS WINAPI openKey(HKEY root, const char* path, DWORD options, REGSAM access, HKEY* key) {
    const LSTATUS status = systemFunction("RegOpenKeyExA", &openKey)(root, path, options, access, key);
    open_ += status == ERROR_SUCCESS ? 1 : 0;
    return status;
  }
  static LSTATUS WINAPI createKey(HKEY root, const char* path, DWORD reserved, char* type, DWORD options,
                                  REGSAM access, SECURITY_ATTRIBUTES* security, HKEY* key, DWORD* outcome) {
    const LSTATUS status = systemFunction("RegCreateKeyExA", &createKey)(root, path, reserved, type, options,
                                                                         access, security, key, outcome);
    open_ += status == ERROR_SUCCESS ? 1 : 0;
    return status;
  }
  static LSTATUS WINAPI closeKey(HKEY key) {
    open_ -= key != nullptr ? 1 : 0;
    return systemFunction("RegCloseKey", &closeKey)(key);
  }

  static inline int open_ = 0;
  HMODULE self_ = GetModuleHandleW(nullptr);
  ImportHook opens_{self_, "RegOpenKeyExA", &openKey};
  ImportHook creates_{self_, "RegCreateKeyExA", &createKey};
  ImportHook closes_{self_, "RegCloseKey", &closeKey};
};

class MRegistryFaults : public testing::Test {
 protected:
  MRegistryFaults() { key.setValue(L"Editor", L"Font", TestKey::textValue(L"Arial")); }

  StoredValue get(wchar_t type = L'S') const {
    return Reg_GetValue(L"HKCU", key.path(L"Editor"), L"Font", type, Variant(L"default"));
  }
  long set(wchar_t type = L'S') const {
    return Reg_SetValue(L"HKCU", key.path(L"Editor"), L"Font", type, Variant(L"1").get());
  }
  void expectKept() const { EXPECT_EQ(key.text(L"Editor", L"Font"), L"Arial"); }
  static void expectFailed(const StoredValue& read, long status) {
    EXPECT_EQ(read.status, status);
    EXPECT_EQ(read.value.type(), VT_BSTR);
    EXPECT_EQ(automation::textOf(read.value.get()), L"default");
    EXPECT_FALSE(read.isStoredText);
  }

  HMODULE self = GetModuleHandleW(nullptr);
  TestKey key;
};

TEST_F(MRegistryFaults, AKeyThatMayNotBeRead) {
  const auto denied = key.deny(L"Editor", KEY_QUERY_VALUE);
  for (const wchar_t type : {L'S', L'B', L'D', L'X'}) {
    expectFailed(get(type), ERROR_ACCESS_DENIED);
  }
}

TEST_F(MRegistryFaults, AKeyThatMayNotBeWritten) {
  const auto denied = key.deny(L"Editor", KEY_SET_VALUE);
  for (const wchar_t type : {L'S', L'B', L'D', L'X'}) {
    EXPECT_EQ(set(type), ERROR_ACCESS_DENIED);
  }
  expectKept();
  EXPECT_EQ(automation::textOf(get().value.get()), L"Arial");
}

TEST_F(MRegistryFaults, AKeyThatCannotBeOpened) {
  const ImportHook fault(self, "RegOpenKeyExA", &Faults::refuseOpen);
  expectFailed(get(), ERROR_BADDB);
}

TEST_F(MRegistryFaults, AKeyThatCannotBeCreated) {
  const ImportHook fault(self, "RegCreateKeyExA", &Faults::refuseCreate);
  EXPECT_EQ(set(), ERROR_BADDB);
  EXPECT_EQ(set(L'X'), ERROR_BADDB);
}

TEST_F(MRegistryFaults, EveryQueryOfAText) {
  for (const int before : {0, 1}) {
    const KeyCount count;
    const ImportHook fault(self, "RegQueryValueExA", &Faults::query);
    Faults::queriesBefore = before;
    expectFailed(get(), ERROR_REGISTRY_IO_FAILED);
  }
  expectKept();
}

TEST_F(MRegistryFaults, TheQueryOfANumber) {
  for (const wchar_t type : {L'B', L'D'}) {
    const KeyCount count;
    const ImportHook fault(self, "RegQueryValueExA", &Faults::query);
    Faults::queriesBefore = 0;
    expectFailed(get(type), ERROR_REGISTRY_IO_FAILED);
  }
}

TEST_F(MRegistryFaults, AWriteThatFailsIsNotReported) {
  for (const wchar_t type : {L'S', L'B', L'D'}) {
    const KeyCount count;
    const ImportHook fault(self, "RegSetValueExA", &Faults::refuseWrite);
    EXPECT_EQ(set(type), ERROR_SUCCESS);
  }
  expectKept();
}

TEST_F(MRegistryFaults, EveryKeyIsClosed) {
  const KeyCount count;
  for (const wchar_t type : {L'S', L'B', L'D', L'X'}) {
    EXPECT_EQ(set(type), ERROR_SUCCESS);
    EXPECT_EQ(get(type).status, ERROR_SUCCESS);
    static_cast<void>(Reg_GetValue(L"HKCU", key.path(L"Editor"), L"Missing", type, Variant()));
  }
  EXPECT_EQ(Reg_SetValue(L"HKCU", key.path(L"Editor"), L"Font", L'D', Variant(L"abc").get()), nothingDone);
}

TEST_F(MRegistryFaults, AnIniFileThatCannotBeWritten) {
  const std::string content = "[S]\r\nFont=Arial\r\n";
  const IniText ini(content);
  const ImportHook fault(self, "WritePrivateProfileStringA", &Faults::refuseIniWrite);
  EXPECT_EQ(Reg_SetValue(ini.path(), L"S", L"Font", L'S', Variant(L"x").get()), ERROR_SUCCESS);
  EXPECT_EQ(ini.content(), content);
}

}  // namespace
}  // namespace zeq::settings
