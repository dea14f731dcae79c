// The entry points of the component, and its class factory.

#include <windows.h>
#include <objbase.h>
#include <unknwn.h>

#include <algorithm>
#include <cwchar>
#include <new>
#include <optional>

#include "automation/Module.h"
#include "automation/Unknown.h"
#include "library/class_table.h"
#include "library/registration.h"
#include "library/runtime.h"

namespace zeq::library {
namespace {

class ClassFactory final : public automation::SingleInterface<IClassFactory> {
 public:
  explicit ClassFactory(const ClassEntry& entry) noexcept : entry_(entry) {}

  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) noexcept override {
    if (object == nullptr) {
      return E_POINTER;
    }
    *object = nullptr;
    return outer != nullptr ? CLASS_E_NOAGGREGATION : entry_.create(iid, object);
  }
  STDMETHODIMP LockServer(BOOL lock) noexcept override {
    if (lock != FALSE) {
      automation::ModuleLock::add();
    } else {
      automation::ModuleLock::remove();
    }
    return S_OK;
  }

 private:
  const ClassEntry& entry_;
};

}  // namespace
}  // namespace zeq::library

using namespace zeq;

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
  if (object == nullptr) {
    return E_POINTER;
  }
  *object = nullptr;
  const auto table = library::classTable();
  const auto found = std::find_if(table.begin(), table.end(),
                                  [&](const auto& entry) { return IsEqualCLSID(entry.clsid, clsid); });
  if (found == table.end()) {
    return CLASS_E_CLASSNOTAVAILABLE;
  }
  auto* factory = new (std::nothrow) library::ClassFactory(*found);
  if (factory == nullptr) {
    return E_OUTOFMEMORY;
  }
  const HRESULT result = factory->QueryInterface(iid, object);
  factory->Release();
  return result;
}

STDAPI DllCanUnloadNow() {
  return automation::ModuleLock::count() == 0 ? S_OK : S_FALSE;
}

STDAPI DllRegisterServer() {
  return library::registerComponent(library::Scope::machine);
}

STDAPI DllUnregisterServer() {
  return library::unregisterComponent(library::Scope::machine);
}

/// regsvr32 /n /i[:user] ZEQUtility2.dll; with /u to unregister. Without "user" it registers for everybody.
STDAPI DllInstall(BOOL install, PCWSTR commandLine) {
  auto scope = library::Scope::machine;
  if (commandLine != nullptr && *commandLine != L'\0') {
    if (_wcsicmp(commandLine, L"user") != 0) {
      return E_INVALIDARG;
    }
    scope = library::Scope::user;
  }
  return install != FALSE ? library::registerComponent(scope) : library::unregisterComponent(scope);
}

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void* processEnds) {
  if (reason == DLL_PROCESS_ATTACH) {
    DisableThreadLibraryCalls(module);
    try {
      library::registerAdapters();
    } catch (...) {
      return FALSE;  // Out of memory.
    }
  } else if (reason == DLL_PROCESS_DETACH && processEnds == nullptr) {
    automation::releaseTypeLibrary();
    library::releaseRuntime();
  }
  return TRUE;
}
