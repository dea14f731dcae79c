#include "automation/Module.h"

#include <atomic>

#include "automation/Errors.h"
#include "automation/TypeInfo.h"

// The linker's name for the start of the module's image.
extern "C" IMAGE_DOS_HEADER __ImageBase;  // NOLINT(bugprone-reserved-identifier)

namespace zeq::automation {
namespace {

// Several apartments may ask at once: the first to finish loading wins, and the pointer never changes after
// that.
std::atomic<ITypeLib*> loadedLibrary{nullptr};

}  // namespace

HINSTANCE moduleHandle() noexcept {
  return reinterpret_cast<HINSTANCE>(&__ImageBase);
}

std::wstring modulePath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(moduleHandle(), path.data(), static_cast<DWORD>(path.size()));
    if (length == 0) {
      throw Error(HRESULT_FROM_WIN32(GetLastError()));
    }
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

ComPtr<ITypeLib> typeLibrary() {
  if (ITypeLib* library = loadedLibrary.load(std::memory_order_acquire)) {
    return ComPtr<ITypeLib>(library);
  }
  ComPtr<ITypeLib> library = loadTypeLibrary(modulePath());
  ITypeLib* none = nullptr;
  if (loadedLibrary.compare_exchange_strong(none, library.get())) {
    library->AddRef();
  }
  return library;
}

ComPtr<ITypeInfo> typeInfo(REFGUID id) {
  ComPtr<ITypeInfo> info;
  check(typeLibrary()->GetTypeInfoOfGuid(id, info.out()));
  return info;
}

void releaseTypeLibrary() noexcept {
  if (ITypeLib* library = loadedLibrary.exchange(nullptr)) {
    library->Release();
  }
}

}  // namespace zeq::automation
