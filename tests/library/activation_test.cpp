// Use without registration: through the manifest that is delivered beside the DLL, for programs that name it
// as a dependency, or by the path of a copy of the DLL.

#include <windows.h>
#include <gmock/gmock.h>
#include <tlhelp32.h>

#include <string>

#include "support/Component.h"
#include "support/Deployment.h"
#include "support/Leaks.h"
#include "support/Process.h"
#include "support/TempFolder.h"
#include "support/TypeLibrary.h"

namespace zeq::test {
namespace {

constexpr const wchar_t* driveProgId = L"ZEQUtility2.CFakeDrive";

/// The manifest of a program that uses the component.
constexpr const char* clientManifest =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n"
    "<assembly xmlns=\"urn:schemas-microsoft-com:asm.v1\" manifestVersion=\"1.0\">\r\n"
    "  <assemblyIdentity type=\"win32\" name=\"Client\" version=\"1.0.0.0\"/>\r\n"
    "  <dependency><dependentAssembly>\r\n"
    "    <assemblyIdentity type=\"win32\" name=\"ZEQUtility2\" version=\"1.0.0.0\" "
    "processorArchitecture=\"*\"/>\r\n"
    "  </dependentAssembly></dependency>\r\n"
    "</assembly>\r\n";

/// A folder as an unregistered client has it: the component, its manifest and that of the client.
class ClientFolder {
 public:
  ClientFolder() {
    for (const wchar_t* name : {L"ZEQUtility2.dll", L"ZEQUtility2.manifest"}) {
      const std::wstring source = componentPath().substr(0, componentPath().rfind(L'\\') + 1) + name;
      EXPECT_TRUE(CopyFileW(source.c_str(), (folder_ / name).c_str(), TRUE));
    }
  }
  /// Writes the manifest of a program that stands in the folder.
  std::wstring manifestOf(const std::wstring& program) {
    return folder_.file(program + L".manifest", clientManifest);
  }
  [[nodiscard]] const TempFolder& folder() const noexcept { return folder_; }

 private:
  TempFolder folder_;
};

class ActivationContext {
 public:
  explicit ActivationContext(const std::wstring& manifest) {
    ACTCTXW context{};
    context.cbSize = sizeof context;
    context.lpSource = manifest.c_str();
    handle_ = CreateActCtxW(&context);
    EXPECT_NE(handle_, INVALID_HANDLE_VALUE) << GetLastError();
    EXPECT_TRUE(ActivateActCtx(handle_, &cookie_));
  }
  ~ActivationContext() {
    DeactivateActCtx(0, cookie_);
    ReleaseActCtx(handle_);
  }
  ActivationContext(const ActivationContext&) = delete;
  ActivationContext& operator=(const ActivationContext&) = delete;

 private:
  HANDLE handle_;
  ULONG_PTR cookie_ = 0;
};

class ActivationTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(install(false, nullptr), S_OK);
    ASSERT_EQ(install(false, L"user"), S_OK);
    CLSID clsid{};
    ASSERT_NE(CLSIDFromProgID(driveProgId, &clsid), S_OK) << "still registered";
  }
};

TEST_F(ActivationTest, FindsEveryClassThroughTheManifest) {
  ClientFolder client;
  {
    const ActivationContext context(client.manifestOf(L"client.exe"));
    for (const LibraryType& type : libraryTypes(TKIND_COCLASS)) {
      // What stands for the name here is an identifier of the context's own, good for creating the object.
      CLSID clsid{};
      ComPtr<IProvideClassInfo> object;
      ComPtr<ITypeInfo> info;
      EXPECT_EQ(CLSIDFromProgID((L"ZEQUtility2." + type.name).c_str(), &clsid), S_OK);
      ASSERT_EQ(
          CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IProvideClassInfo, object.outVoid()),
          S_OK);
      ASSERT_EQ(object->GetClassInfo(info.out()), S_OK);
      EXPECT_TRUE(IsEqualGUID(describeType(info).guid, type.guid));
    }
    ComPtr<_CFakeDrive> drive;
    ASSERT_EQ(CoCreateInstance(__uuidof(CFakeDrive), nullptr, CLSCTX_INPROC_SERVER, __uuidof(_CFakeDrive),
                               drive.outVoid()),
              S_OK);
    EXPECT_EQ(drive->UseBytes(7), S_OK);
    EXPECT_EQ(Late(drive).get(L"Delta").get().dblVal, 7);
    wchar_t* progId = nullptr;
    ASSERT_EQ(ProgIDFromCLSID(__uuidof(CFakeDrive), &progId), S_OK);
    EXPECT_EQ(std::wstring(progId), driveProgId);
    CoTaskMemFree(progId);
  }
  CoFreeUnusedLibrariesEx(0, 0);
}

TEST_F(ActivationTest, ServesAScriptHostWithAManifestBesideIt) {
  ClientFolder client;
  const std::wstring host = client.folder() / L"host.exe";
  ASSERT_TRUE(CopyFileW((systemFolder(ownBits) + L"\\cscript.exe").c_str(), host.c_str(), TRUE));
  const std::wstring script = client.folder().file(
      L"find.vbs", "WScript.Quit CreateObject(\"ZEQUtility2.CFakeDrive\").Capacity + 42\r\n");
  EXPECT_NE(runProgram(quoted(host) + L" //nologo " + quoted(script)), 42U) << "found without a manifest";
  client.manifestOf(L"host.exe");
  EXPECT_EQ(runProgram(quoted(host) + L" //nologo " + quoted(script)), 42U);
}

/// A copy of the DLL under another name.
std::wstring copyTo(const TempFolder& folder, std::wstring_view name) {
  const std::wstring copy = folder / name;
  EXPECT_TRUE(CopyFileW(componentPath().c_str(), copy.c_str(), TRUE));
  return copy;
}

TEST(CopiesTest, LiveSideBySide) {
  const TempFolder folder;
  const std::wstring path = copyTo(folder, L"second.dll");
  {
    const LoadedComponent first(copyTo(folder, L"first.dll"));
    const Late functions(first.create(__uuidof(CZEQUtilityCollections)));
    const Late drive(first.create(__uuidof(CFakeDrive)));
    {
      const LoadedComponent second(path);
      const Late collection(second.create(__uuidof(Collection)));
      EXPECT_EQ(second.call("DllCanUnloadNow"), S_FALSE);
      EXPECT_EQ(functions.get(L"Collection_Add", asVariant(collection), asVariant(drive), asVariant(L"key"))
                    .get()
                    .boolVal,
                VARIANT_TRUE);
      EXPECT_EQ(collection.get(L"Item", asVariant(L"KEY")).get().pdispVal, drive.dispatch());
    }
    EXPECT_TRUE(DeleteFileW(path.c_str())) << "the other copy holds it";
    EXPECT_EQ(drive.get(L"Capacity").get().dblVal, 0);
  }
  EXPECT_TRUE(canUnload()) << "a third copy is not concerned";
}

/// The threads of this process.
int threadCount() {
  const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
  THREADENTRY32 entry{};
  entry.dwSize = sizeof entry;
  int count = 0;
  for (BOOL more = Thread32First(snapshot, &entry); more != FALSE; more = Thread32Next(snapshot, &entry)) {
    count += entry.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
  }
  CloseHandle(snapshot);
  return count;
}

TEST(CopiesTest, TenThousandLoadsLeaveNothingBehind) {
  const TempFolder folder;
  const std::wstring copy = copyTo(folder, L"copy.dll");
  int loads = 0;
  const auto use = [&] {
    const LoadedComponent loaded(copy);
    const auto collection = loaded.create(__uuidof(Collection)).query<_Collection>();
    long count = -1;
    EXPECT_EQ(collection->get_Count(&count), S_OK);
    EXPECT_EQ(count, 0);
    if (++loads % 20 == 0) {  // A call by name loads the type library, an error throws.
      EXPECT_EQ(Late(collection).call(L"Item", asVariant(1)).code, DISP_E_EXCEPTION);
      SetErrorInfo(0, nullptr);
    }
  };
  const int threads = threadCount();
  for (int i = 0; i < 9000; ++i) {
    use();
  }
  expectNoLeak(1000, use);
  EXPECT_LE(threadCount(), threads);
  const DWORD slot = TlsAlloc();
  EXPECT_LT(slot, 100U) << "slots for threads' own values are used up";
  TlsFree(slot);
}

}  // namespace
}  // namespace zeq::test
