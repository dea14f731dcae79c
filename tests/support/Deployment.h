#pragma once
// Where the component's DLL stands, copies of it, and how it is registered.

#include <windows.h>

#include <string>

#include "support/Component.h"

namespace zeq::test {

/// The full path of the DLL that the tests use.
[[nodiscard]] std::wstring componentPath();

/// The DLL of the other bitness, where the build leaves it; empty if it is not built.
[[nodiscard]] std::wstring otherComponentPath();

/// A GUID as the registry has it, in braces.
[[nodiscard]] std::wstring guidText(REFGUID guid);

/// Calls DllInstall: for everybody with a null pointer, for the user with "user".
HRESULT install(bool installs, const wchar_t* commandLine);

/// Runs regsvr32 of a bitness; 0 for success.
DWORD regsvr32(int bits, const std::wstring& switches, const std::wstring& dll);

/// Takes every registration back: of both bitnesses, for everybody and for the user.
void unregisterAll();

/// A DLL of the component that is loaded by its path, beside the one that the tests use.
class LoadedComponent {
 public:
  explicit LoadedComponent(const std::wstring& path);
  ~LoadedComponent() { FreeLibrary(module_); }
  LoadedComponent(const LoadedComponent&) = delete;
  LoadedComponent& operator=(const LoadedComponent&) = delete;

  [[nodiscard]] ComPtr<IDispatch> create(REFCLSID clsid) const;
  /// DllRegisterServer, DllUnregisterServer or DllCanUnloadNow.
  [[nodiscard]] HRESULT call(const char* function) const;

 private:
  HMODULE module_;
};

}  // namespace zeq::test
