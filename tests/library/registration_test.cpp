// Registration in the real registry, and what it is for: clients that find the classes by name.

#include <windows.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "support/Component.h"
#include "support/Deployment.h"
#include "support/EntryPoint.h"
#include "support/Process.h"
#include "support/RegistrySnapshot.h"
#include "support/TempFolder.h"
#include "support/TypeLibrary.h"

namespace zeq::test {
namespace {

using testing::IsEmpty;

constexpr const wchar_t* classesPath = L"Software\\Classes";
constexpr const wchar_t* driveProgId = L"ZEQUtility2.CFakeDrive";
#ifdef _WIN64
constexpr const wchar_t* platformKey = L"win64";
#else
constexpr const wchar_t* platformKey = L"win32";
#endif

HRESULT callServer(const char* name) {
  return entryPoint<HRESULT(STDAPICALLTYPE*)()>(component(), name)();
}

/// The GUID of the type library, which never changes.
GUID libraryId() {
  return {0x79CB1D87, 0xE218, 0x4007, {0x81, 0xC7, 0x70, 0xD3, 0x61, 0x40, 0x60, 0xF9}};
}

/// A text value of the classes of a root as this process sees them; no value if there is none.
std::optional<std::wstring> value(HKEY root, const std::wstring& key, const wchar_t* name = nullptr) {
  std::wstring data(1024, L'\0');
  auto size = static_cast<DWORD>(data.size() * sizeof(wchar_t));
  if (RegGetValueW(root, (classesPath + (L"\\" + key)).c_str(), name, RRF_RT_REG_SZ, nullptr, data.data(),
                   &size) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  data.resize(size / sizeof(wchar_t) - 1);
  return data;
}

/// The names of the keys directly below the classes of a root that begin with the component's name.
std::set<std::wstring> registeredNames(HKEY root) {
  std::set<std::wstring> names;
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, classesPath, 0, KEY_READ, &key) != ERROR_SUCCESS) {
    return names;
  }
  std::wstring name(256, L'\0');
  auto length = static_cast<DWORD>(name.size());
  for (DWORD i = 0;
       RegEnumKeyExW(key, i, name.data(), &length, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
       ++i, length = static_cast<DWORD>(name.size())) {
    if (name.starts_with(L"ZEQUtility2.")) {
      names.insert(name.substr(0, length));
    }
  }
  RegCloseKey(key);
  return names;
}

/// The parts of the registry that a registration may touch, as they were.
class Registry {
 public:
  explicit Registry(const std::vector<HKEY>& roots) {
    for (HKEY root : roots) {
      before_.push_back({root, registrySnapshot(root, classesPath)});
    }
  }

  [[nodiscard]] std::vector<std::string> changes() const {
    std::vector<std::string> all;
    for (const auto& [root, before] : before_) {
      const auto changes = differences(before, registrySnapshot(root, classesPath));
      all.insert(all.end(), changes.begin(), changes.end());
    }
    return all;
  }

 private:
  struct Part {
    HKEY root;
    std::vector<std::wstring> lines;
  };
  std::vector<Part> before_;
};

/// True if the system looks for a user's own classes. Windows does, Wine 8 does not.
bool systemKnowsUsersClasses() {
  const std::wstring probe = L"ZEQUtility2.probe";
  const std::wstring path = classesPath + (L"\\" + probe);
  HKEY key = nullptr;
  EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_READ,
                            nullptr, &key, nullptr),
            ERROR_SUCCESS);
  RegCloseKey(key);
  const bool found = RegOpenKeyExW(HKEY_CLASSES_ROOT, probe.c_str(), 0, KEY_READ, &key) == ERROR_SUCCESS;
  if (found) {
    RegCloseKey(key);
  }
  RegDeleteKeyW(HKEY_CURRENT_USER, path.c_str());
  return found;
}

/// True if a script of that bitness can create a drive by its name and use it.
bool scriptFindsTheDrive(int bits) {
  const TempFolder folder;
  const std::wstring script =
      folder.file(L"find.vbs", "WScript.Quit CreateObject(\"ZEQUtility2.CFakeDrive\").Capacity + 42\r\n");
  return runProgram(quoted(systemFolder(bits) + L"\\cscript.exe") + L" //nologo " + quoted(script)) == 42;
}

class RegistrationTest : public testing::Test {
 protected:
  RegistrationTest() {
    unregisterAll();
    // Every user of a Windows machine has this key; in a fresh prefix nobody has made it yet.
    HKEY usersClasses = nullptr;
    RegCreateKeyW(HKEY_CURRENT_USER, classesPath, &usersClasses);
    RegCloseKey(usersClasses);
  }
  ~RegistrationTest() override { unregisterAll(); }

  static void expectRegistered(HKEY root) {
    std::set<std::wstring> names;
    const std::wstring library = guidText(libraryId());
    for (const std::wstring& progId : registeredNames(root)) {
      const std::wstring clsid = value(root, progId + L"\\CLSID").value_or(L"");
      const std::wstring key = L"CLSID\\" + clsid;
      EXPECT_EQ(value(root, key + L"\\InprocServer32"), componentPath());
      EXPECT_EQ(value(root, key + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
      EXPECT_EQ(value(root, key + L"\\ProgID"), progId);
      EXPECT_EQ(value(root, key + L"\\TypeLib"), library);
      EXPECT_EQ(value(root, key + L"\\Version"), L"1.0");
      EXPECT_EQ(value(root, key + L"\\Programmable"), L"");
      EXPECT_FALSE(value(root, key).value_or(L"").empty());
      EXPECT_EQ(value(root, progId), value(root, key));
      names.insert(progId.substr(progId.find(L'.') + 1));
    }
    std::set<std::wstring> wanted;
    for (const LibraryType& type : libraryTypes(TKIND_COCLASS)) {
      wanted.insert(type.name);
    }
    EXPECT_EQ(names, wanted);

    for (const LibraryType& type : libraryTypes(TKIND_DISPATCH)) {
      const bool isDual = (type.flags & TYPEFLAG_FDUAL) != 0;
      const std::wstring key = L"Interface\\" + guidText(type.guid);
      EXPECT_EQ(value(root, key), type.name);
      EXPECT_EQ(value(root, key + L"\\ProxyStubClsid32"), isDual ? L"{00020424-0000-0000-C000-000000000046}"
                                                                 : L"{00020420-0000-0000-C000-000000000046}");
      EXPECT_EQ(value(root, key + L"\\TypeLib"), library);
      EXPECT_EQ(value(root, key + L"\\TypeLib", L"Version"), L"1.0");
    }

    const std::wstring version = L"TypeLib\\" + library + L"\\1.0";
    EXPECT_EQ(value(root, version), L"ZEQ General Purpose Utility Classes");
    EXPECT_EQ(value(root, version + L"\\0\\" + platformKey), componentPath());
    EXPECT_EQ(value(root, version + L"\\FLAGS"), L"0");
    EXPECT_EQ(value(root, version + L"\\HELPDIR"), componentPath().substr(0, componentPath().rfind(L'\\')));
  }

  /// What the registration is for: the system finds the classes and the type library.
  static void expectFound(HKEY root) {
    for (const std::wstring& progId : registeredNames(root)) {
      CLSID id{};
      EXPECT_EQ(CLSIDFromProgID(progId.c_str(), &id), S_OK);
      EXPECT_EQ(guidText(id), value(root, progId + L"\\CLSID"));
      ComPtr<IDispatch> object;
      EXPECT_EQ(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.outVoid()), S_OK);
    }
    ComPtr<ITypeLib> loaded;
    EXPECT_EQ(LoadRegTypeLib(libraryId(), 1, 0, LOCALE_NEUTRAL, loaded.out()), S_OK);
  }
};

TEST_F(RegistrationTest, ForEverybodyComesAndGoes) {
  const Registry before({HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER});
  ASSERT_EQ(callServer("DllRegisterServer"), S_OK);
  expectRegistered(HKEY_LOCAL_MACHINE);
  expectFound(HKEY_LOCAL_MACHINE);
  EXPECT_THAT(registeredNames(HKEY_CURRENT_USER), IsEmpty());
  ASSERT_EQ(callServer("DllUnregisterServer"), S_OK);
  EXPECT_THAT(before.changes(), IsEmpty());
}

TEST_F(RegistrationTest, ForTheUserComesAndGoes) {
  const Registry before({HKEY_CURRENT_USER});
  ASSERT_EQ(install(true, L"user"), S_OK);
  expectRegistered(HKEY_CURRENT_USER);
  if (systemKnowsUsersClasses()) {
    expectFound(HKEY_CURRENT_USER);
  }
  EXPECT_THAT(registeredNames(HKEY_LOCAL_MACHINE), IsEmpty());
  ASSERT_EQ(install(false, L"USER"), S_OK);
  EXPECT_THAT(before.changes(), IsEmpty());
}

TEST_F(RegistrationTest, InstallsForEverybodyUnlessToldOtherwise) {
  ASSERT_EQ(install(true, L""), S_OK);
  EXPECT_TRUE(registeredNames(HKEY_LOCAL_MACHINE).contains(driveProgId));
  ASSERT_EQ(install(false, nullptr), S_OK);
  EXPECT_EQ(install(true, L"nonsense"), E_INVALIDARG);
  EXPECT_THAT(registeredNames(HKEY_LOCAL_MACHINE), IsEmpty());
}

TEST_F(RegistrationTest, UnregistersWhatIsNotThere) {
  const Registry before({HKEY_CURRENT_USER});
  EXPECT_EQ(callServer("DllUnregisterServer"), S_OK);
  EXPECT_EQ(install(false, L"user"), S_OK);
  EXPECT_THAT(before.changes(), IsEmpty());
}

TEST_F(RegistrationTest, RegistersTwiceAsOnce) {
  const Registry before({HKEY_CURRENT_USER});
  ASSERT_EQ(install(true, L"user"), S_OK);
  const Registry once({HKEY_CURRENT_USER});
  ASSERT_EQ(install(true, L"user"), S_OK);
  EXPECT_THAT(once.changes(), IsEmpty());
  ASSERT_EQ(install(false, L"user"), S_OK);
  EXPECT_THAT(before.changes(), IsEmpty());
}

/// A key that can hold no lasting key below it: a registration that comes to it fails.
class Obstacle {
 public:
  Obstacle() {
    EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, path_.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_WRITE,
                              nullptr, &key_, nullptr),
              ERROR_SUCCESS);
  }
  ~Obstacle() {
    RegCloseKey(key_);
    RegDeleteTreeW(HKEY_CURRENT_USER, path_.c_str());
  }
  Obstacle(const Obstacle&) = delete;
  Obstacle& operator=(const Obstacle&) = delete;

 private:
  std::wstring path_ = std::wstring(classesPath) + L"\\" + driveProgId;
  HKEY key_ = nullptr;
};

TEST_F(RegistrationTest, LeavesNothingIfItCannotWriteAll) {
  const Registry untouched({HKEY_CURRENT_USER});
  {
    const Obstacle obstacle;
    const Registry before({HKEY_CURRENT_USER});
    EXPECT_EQ(install(true, L"user"), HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE));
    EXPECT_THAT(before.changes(), IsEmpty());
  }
  EXPECT_THAT(untouched.changes(), IsEmpty());
}

TEST_F(RegistrationTest, KeepsAnEarlierRegistrationIfItCannotWriteAll) {
  ASSERT_EQ(install(true, L"user"), S_OK);
  const std::wstring drive = std::wstring(classesPath) + L"\\" + driveProgId;
  const std::wstring help = std::wstring(classesPath) + L"\\TypeLib\\" + guidText(libraryId()) + L"\\1.0";
  ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, help.c_str(), nullptr, REG_EXPAND_SZ, L"an earlier text", 32),
            ERROR_SUCCESS);
  ASSERT_EQ(RegDeleteTreeW(HKEY_CURRENT_USER, drive.c_str()), ERROR_SUCCESS);
  {
    const Obstacle obstacle;
    const Registry before({HKEY_CURRENT_USER});
    EXPECT_EQ(install(true, L"user"), HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE));
    EXPECT_THAT(before.changes(), IsEmpty());
  }
  EXPECT_EQ(install(false, L"user"), S_OK);
}

TEST_F(RegistrationTest, ServesOneBitnessWithoutTheOther) {
  const int otherBits = 96 - ownBits;
  const std::wstring own = componentPath();
  const std::wstring other = otherComponentPath();
  if (other.empty() || systemFolder(otherBits).empty()) {
    GTEST_SKIP() << "the other bitness is not built";
  }
  // A script host registers its own type library when it first runs.
  EXPECT_FALSE(scriptFindsTheDrive(ownBits));
  EXPECT_FALSE(scriptFindsTheDrive(otherBits));
  const Registry before({HKEY_LOCAL_MACHINE});
  ASSERT_EQ(regsvr32(ownBits, L"", own), 0U);
  ASSERT_EQ(regsvr32(otherBits, L"", other), 0U);
  EXPECT_TRUE(scriptFindsTheDrive(ownBits));
  EXPECT_TRUE(scriptFindsTheDrive(otherBits));
  ASSERT_EQ(regsvr32(ownBits, L"/u", own), 0U);
  EXPECT_FALSE(scriptFindsTheDrive(ownBits));
  EXPECT_TRUE(scriptFindsTheDrive(otherBits));
  ASSERT_EQ(regsvr32(otherBits, L"/u", other), 0U);
  EXPECT_FALSE(scriptFindsTheDrive(otherBits));
  EXPECT_THAT(before.changes(), IsEmpty());
}

TEST_F(RegistrationTest, WorksForTheUserThroughRegsvr32) {
  const Registry before({HKEY_CURRENT_USER});
  ASSERT_EQ(regsvr32(ownBits, L"/n /i:user", componentPath()), 0U);
  EXPECT_TRUE(registeredNames(HKEY_CURRENT_USER).contains(driveProgId));
  EXPECT_EQ(scriptFindsTheDrive(ownBits), systemKnowsUsersClasses());
  ASSERT_EQ(regsvr32(ownBits, L"/u /n /i:user", componentPath()), 0U);
  EXPECT_THAT(before.changes(), IsEmpty());
}

TEST_F(RegistrationTest, TakesOverAnOlderRegistration) {
  const Registry before({HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER});
  const TempFolder folder;
  const std::wstring older = folder / L"older.dll";
  ASSERT_TRUE(CopyFileW(componentPath().c_str(), older.c_str(), TRUE));
  ASSERT_EQ(LoadedComponent(older).call("DllRegisterServer"), S_OK);
  const std::wstring clsid = value(HKEY_LOCAL_MACHINE, std::wstring(driveProgId) + L"\\CLSID").value_or(L"");
  const std::wstring key = L"CLSID\\" + clsid;
  ASSERT_EQ(value(HKEY_LOCAL_MACHINE, key + L"\\InprocServer32"), older);
  const std::wstring more = classesPath + (L"\\" + key) + L"\\Insertable";  // What it has no more.
  ASSERT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, more.c_str(), nullptr, REG_SZ, L"", sizeof(wchar_t)),
            ERROR_SUCCESS);

  ASSERT_EQ(callServer("DllRegisterServer"), S_OK);
  expectRegistered(HKEY_LOCAL_MACHINE);
  expectFound(HKEY_LOCAL_MACHINE);
  ASSERT_EQ(callServer("DllUnregisterServer"), S_OK);
  EXPECT_THAT(before.changes(), IsEmpty());
}

TEST_F(RegistrationTest, WorksFromAPathWithBlanksAndLettersOfAllScripts) {
  EXPECT_FALSE(scriptFindsTheDrive(ownBits));  // A script host registers its own type library first.
  const Registry before({HKEY_LOCAL_MACHINE});
  const TempFolder folder;
  const std::wstring path = folder.folder(L"a folder \u00E4\u0416\u4E2D") + L"\\copy \u03A9.dll";
  ASSERT_TRUE(CopyFileW(componentPath().c_str(), path.c_str(), TRUE));
  ASSERT_EQ(regsvr32(ownBits, L"", path), 0U);
  EXPECT_TRUE(scriptFindsTheDrive(ownBits));
  {
    ComPtr<IDispatch> drive;
    ASSERT_EQ(
        CoCreateInstance(__uuidof(CFakeDrive), nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, drive.outVoid()),
        S_OK);
    EXPECT_NE(GetModuleHandleW(path.c_str()), nullptr);
    EXPECT_EQ(Late(drive).get(L"Capacity").get().dblVal, 0);
    ComPtr<ITypeLib> library;
    EXPECT_EQ(LoadRegTypeLib(libraryId(), 1, 0, LOCALE_NEUTRAL, library.out()), S_OK);
  }
  CoFreeUnusedLibrariesEx(0, 0);
  ASSERT_EQ(regsvr32(ownBits, L"/u", path), 0U);
  EXPECT_THAT(before.changes(), IsEmpty());
}

}  // namespace
}  // namespace zeq::test
