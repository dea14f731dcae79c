// The DLL as the operating system and COM see it: what it exports and imports, its version, its class
// factories, the standard interfaces of every class, and when it may be unloaded.

#include <windows.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "support/Component.h"
#include "support/Deployment.h"
#include "support/EntryPoint.h"
#include "support/Printable.h"
#include "support/TempFolder.h"
#include "support/TypeLibrary.h"

namespace zeq::test {
namespace {

using testing::Contains;

/// The names of the DLLs in the import table of a loaded module, in lower case.
std::vector<std::string> importedModules(HMODULE module) {
  const auto* image = reinterpret_cast<const char*>(module);
  const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(
      image + reinterpret_cast<const IMAGE_DOS_HEADER*>(image)->e_lfanew);
  const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  std::vector<std::string> names;
  for (auto entry = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(image + directory.VirtualAddress);
       entry->Name != 0; ++entry) {
    std::string name(image + entry->Name);
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    names.push_back(std::move(name));
  }
  return names;
}

HRESULT getClassObject(REFCLSID clsid, REFIID iid, void** object) {
  using Function = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
  return entryPoint<Function>(component(), "DllGetClassObject")(clsid, iid, object);
}

/// A new object of a class that is known by its CLSID only.
ComPtr<IDispatch> createObject(REFCLSID clsid) {
  ComPtr<IDispatch> object;
  automation::check(classFactory(clsid)->CreateInstance(nullptr, IID_IDispatch, object.outVoid()));
  return object;
}

bool isEventSource(const LibraryType& coclass, GUID& events) {
  for (const Implemented& implemented : implementedBy(coclass)) {
    if ((implemented.flags & IMPLTYPEFLAG_FSOURCE) != 0) {
      events = implemented.type.guid;
      return true;
    }
  }
  return false;
}

TEST(ComponentTest, ExportsTheEntryPoints) {
  for (const char* name :
       {"DllCanUnloadNow", "DllGetClassObject", "DllInstall", "DllRegisterServer", "DllUnregisterServer"}) {
    EXPECT_NE(GetProcAddress(component(), name), nullptr) << name;
  }
}

TEST(ComponentTest, NeedsNothingButTheOperatingSystem) {
  const std::set<std::string> system{"kernel32.dll", "user32.dll",  "advapi32.dll", "ole32.dll",
                                     "oleaut32.dll", "shell32.dll", "msvcrt.dll",   "ntdll.dll",
                                     "shlwapi.dll",  "version.dll"};
  const auto imported = importedModules(component());
  ASSERT_THAT(imported, Contains("kernel32.dll"));
  for (const std::string& name : imported) {
    EXPECT_TRUE(system.contains(name)) << name;
  }
}

TEST(ComponentTest, TellsItsVersion) {
  const std::wstring path = componentPath();
  DWORD ignored = 0;
  std::vector<char> block(GetFileVersionInfoSizeW(path.c_str(), &ignored));
  ASSERT_FALSE(block.empty());
  ASSERT_TRUE(GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()));
  VS_FIXEDFILEINFO* fixed = nullptr;
  UINT length = 0;
  ASSERT_TRUE(VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&fixed), &length));
  EXPECT_EQ(fixed->dwFileVersionMS, DWORD{0x00010000});
  EXPECT_EQ(fixed->dwFileType, DWORD{VFT_DLL});
  const auto text = [&](const wchar_t* name) {
    wchar_t* value = nullptr;
    const std::wstring query = std::wstring(L"\\StringFileInfo\\040904B0\\") + name;
    return VerQueryValueW(block.data(), query.c_str(), reinterpret_cast<void**>(&value), &length) != FALSE
               ? std::wstring(value)
               : std::wstring(L"(none)");
  };
  EXPECT_EQ(text(L"FileDescription"), L"ZEQ General Purpose Utility Classes");
  EXPECT_EQ(text(L"OriginalFilename"), L"ZEQUtility2.dll");
  EXPECT_EQ(text(L"FileVersion"), L"1.0.0.0");
}

TEST(ClassFactoryTest, RefusesAnUnknownClass) {
  void* object = &object;
  EXPECT_EQ(getClassObject(IID_IUnknown, IID_IClassFactory, &object), CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(object, nullptr);
}

TEST(ClassFactoryTest, RefusesAnUnknownInterface) {
  void* object = &object;
  EXPECT_EQ(getClassObject(__uuidof(CFakeDrive), IID_IDispatch, &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  const auto factory = classFactory(__uuidof(CFakeDrive));
  object = &object;
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IClassFactory, &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  object = &object;
  EXPECT_EQ(factory->QueryInterface(IID_IDispatch, &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
}

TEST(ClassFactoryTest, RefusesAggregation) {
  const auto factory = classFactory(__uuidof(CFakeDrive));
  void* object = &object;
  EXPECT_EQ(factory->CreateInstance(factory.get(), IID_IUnknown, &object), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(object, nullptr);
}

TEST(ClassFactoryTest, RefusesNullPointers) {
  EXPECT_EQ(getClassObject(__uuidof(CFakeDrive), IID_IClassFactory, nullptr), E_POINTER);
  const auto factory = classFactory(__uuidof(CFakeDrive));
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
  EXPECT_EQ(factory->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST(ClassFactoryTest, IsOneObjectWithItsIdentity) {
  const auto factory = classFactory(__uuidof(CFakeDrive));
  const auto unknown = factory.query<IUnknown>(IID_IUnknown);
  EXPECT_EQ(unknown.query<IClassFactory>(IID_IClassFactory).get(), factory.get());
}

TEST(UnloadTest, WaitsForEveryObject) {
  ASSERT_TRUE(canUnload());
  auto factory = classFactory(__uuidof(CFakeDrive));
  EXPECT_FALSE(canUnload()) << "a class factory is held";
  factory.reset();
  EXPECT_TRUE(canUnload());

  auto object = create<CFakeDrive, _CFakeDrive>();
  EXPECT_FALSE(canUnload()) << "an object is held";
  auto other = object;
  object.reset();
  EXPECT_FALSE(canUnload()) << "another reference is held";
  other.reset();
  EXPECT_TRUE(canUnload());
}

TEST(UnloadTest, WaitsForAnEnumerator) {
  auto collection = create<Collection, _Collection>();
  ComPtr<IUnknown> enumerator;
  ASSERT_EQ(collection->get_NewEnum(enumerator.out()), S_OK);
  collection.reset();
  EXPECT_FALSE(canUnload());
  enumerator.reset();
  EXPECT_TRUE(canUnload());
}

TEST(UnloadTest, WaitsForTheServerLock) {
  auto factory = classFactory(__uuidof(CFakeDrive));
  EXPECT_EQ(factory->LockServer(TRUE), S_OK);
  EXPECT_EQ(factory->LockServer(TRUE), S_OK);
  EXPECT_EQ(factory->LockServer(FALSE), S_OK);
  factory.reset();
  EXPECT_FALSE(canUnload());
  factory = classFactory(__uuidof(CFakeDrive));
  EXPECT_EQ(factory->LockServer(FALSE), S_OK);
  factory.reset();
  EXPECT_TRUE(canUnload());
}

TEST(UnloadTest, LeavesNothingBehindWhenItIsLoadedOnceMore) {
  const TempFolder folder;
  const std::wstring copy = folder / L"copy.dll";
  ASSERT_TRUE(CopyFileW(componentPath().c_str(), copy.c_str(), TRUE));
  for (int round = 0; round < 3; ++round) {
    const LoadedComponent loaded(copy);
    EXPECT_EQ(Late(loaded.create(__uuidof(CFakeDrive))).get(L"Capacity").get().dblVal, 0);
  }
  EXPECT_TRUE(DeleteFileW(copy.c_str())) << "the DLL is still in use";
}

TEST(EveryClassTest, IsMadeByItsFactory) {
  for (const LibraryType& type : libraryTypes(TKIND_COCLASS)) {
    ComPtr<IClassFactory> factory;
    EXPECT_EQ(getClassObject(type.guid, IID_IClassFactory, factory.outVoid()), S_OK) << printable(type.name);
    if (!factory) {
      continue;
    }
    ComPtr<IUnknown> object;
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, object.outVoid()), S_OK) << printable(type.name);
    object.reset();
    EXPECT_EQ(factory->CreateInstance(factory.get(), IID_IUnknown, object.outVoid()), CLASS_E_NOAGGREGATION)
        << printable(type.name);
  }
  EXPECT_TRUE(canUnload());
}

TEST(EveryClassTest, DescribesItself) {
  for (const LibraryType& type : libraryTypes(TKIND_COCLASS)) {
    SCOPED_TRACE(printable(type.name));
    const auto object = createObject(type.guid);
    UINT count = 0;
    ComPtr<ITypeInfo> own;
    ASSERT_EQ(object->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1U);
    ASSERT_EQ(object->GetTypeInfo(0, LOCALE_NEUTRAL, own.out()), S_OK);
    EXPECT_EQ(printable(describeType(own).name), "_" + printable(type.name));
    ComPtr<ITypeInfo> none;
    EXPECT_EQ(object->GetTypeInfo(1, LOCALE_NEUTRAL, none.out()), DISP_E_BADINDEX);

    const auto classInfo = object.query<IProvideClassInfo2>(IID_IProvideClassInfo2);
    ASSERT_TRUE(classInfo);
    ComPtr<ITypeInfo> coclass;
    ASSERT_EQ(classInfo->GetClassInfo(coclass.out()), S_OK);
    EXPECT_TRUE(IsEqualGUID(describeType(coclass).guid, type.guid));
    GUID expected{};
    GUID events{};
    if (isEventSource(type, expected)) {
      EXPECT_EQ(classInfo->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events), S_OK);
      EXPECT_TRUE(IsEqualGUID(events, expected));
      EXPECT_TRUE(object.query<IConnectionPointContainer>(IID_IConnectionPointContainer));
    } else {
      EXPECT_EQ(classInfo->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events), E_INVALIDARG);
      EXPECT_FALSE(object.query<IConnectionPointContainer>(IID_IConnectionPointContainer));
    }

    const auto errors = object.query<ISupportErrorInfo>(IID_ISupportErrorInfo);
    ASSERT_TRUE(errors);
    EXPECT_EQ(errors->InterfaceSupportsErrorInfo(describeType(own).guid), S_OK);
    EXPECT_EQ(errors->InterfaceSupportsErrorInfo(IID_IPersist), S_FALSE);
  }
  EXPECT_TRUE(canUnload());
}

TEST(EveryClassTest, IsOneObjectThroughAllItsInterfaces) {
  for (const LibraryType& type : libraryTypes(TKIND_COCLASS)) {
    SCOPED_TRACE(printable(type.name));
    const auto object = createObject(type.guid);
    const auto identity = object.query<IUnknown>(IID_IUnknown);
    for (const IID& iid :
         {IID_IDispatch, IID_IProvideClassInfo, IID_IProvideClassInfo2, IID_ISupportErrorInfo}) {
      const auto other = object.query<IUnknown>(iid);
      ASSERT_TRUE(other);
      EXPECT_EQ(other.query<IUnknown>(IID_IUnknown).get(), identity.get());
    }
    void* none = &none;
    EXPECT_EQ(object->QueryInterface(IID_IPersist, &none), E_NOINTERFACE);
    EXPECT_EQ(none, nullptr);
  }
}

}  // namespace
}  // namespace zeq::test
