#include "support/Deployment.h"

#include <stdexcept>

#include "support/EntryPoint.h"
#include "support/Process.h"
#include "support/TempFolder.h"

namespace zeq::test {

std::wstring componentPath() {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetModuleFileNameW(component(), path.data(), static_cast<DWORD>(path.size())));
  return path;
}

std::wstring otherComponentPath() {
  const std::wstring own = ownBits == 64 ? L"\\win64\\" : L"\\win32\\";
  const std::wstring other = ownBits == 64 ? L"\\win32\\" : L"\\win64\\";
  std::wstring path = componentPath();
  const std::size_t at = path.rfind(own);
  if (at == std::wstring::npos) {
    return {};
  }
  path.replace(at, own.size(), other);
  return exists(path) ? path : std::wstring();
}

std::wstring guidText(REFGUID guid) {
  std::wstring text(39, L'\0');
  StringFromGUID2(guid, text.data(), static_cast<int>(text.size()));
  text.pop_back();
  return text;
}

HRESULT install(bool installs, const wchar_t* commandLine) {
  using Function = HRESULT(STDAPICALLTYPE*)(BOOL, PCWSTR);
  return entryPoint<Function>(component(), "DllInstall")(installs ? TRUE : FALSE, commandLine);
}

DWORD regsvr32(int bits, const std::wstring& switches, const std::wstring& dll) {
  return runProgram(quoted(systemFolder(bits) + L"\\regsvr32.exe") + L" /s " + switches + L" " + quoted(dll));
}

void unregisterAll() {
  install(false, L"user");
  install(false, nullptr);
  const int otherBits = 96 - ownBits;
  const std::wstring other = otherComponentPath();
  if (!other.empty() && !systemFolder(otherBits).empty()) {
    regsvr32(otherBits, L"/u", other);
  }
}

LoadedComponent::LoadedComponent(const std::wstring& path) : module_(LoadLibraryW(path.c_str())) {
  if (module_ == nullptr) {
    throw std::runtime_error("a copy of the component cannot be loaded");
  }
}

ComPtr<IDispatch> LoadedComponent::create(REFCLSID clsid) const {
  using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
  ComPtr<IClassFactory> factory;
  automation::check(
      entryPoint<GetClassObject>(module_, "DllGetClassObject")(clsid, IID_IClassFactory, factory.outVoid()));
  ComPtr<IDispatch> object;
  automation::check(factory->CreateInstance(nullptr, IID_IDispatch, object.outVoid()));
  return object;
}

HRESULT LoadedComponent::call(const char* function) const {
  return entryPoint<HRESULT(STDAPICALLTYPE*)()>(module_, function)();
}

}  // namespace zeq::test
