#include "support/ImportHook.h"

#include <cstring>
#include <stdexcept>

namespace zeq::test {
namespace {

/// The place in the module's import table that holds the address of a function; null if it does not import
/// it.
void** findImport(HMODULE module, const char* function) {
  auto* const image = reinterpret_cast<BYTE*>(module);
  const auto& dos = *reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
  const auto& headers = *reinterpret_cast<const IMAGE_NT_HEADERS*>(image + dos.e_lfanew);
  const auto& directory = headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  for (auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(image + directory.VirtualAddress);
       library->Name != 0; ++library) {
    auto* name = reinterpret_cast<const IMAGE_THUNK_DATA*>(image + library->OriginalFirstThunk);
    auto* address = reinterpret_cast<void**>(image + library->FirstThunk);
    for (; name->u1.AddressOfData != 0; ++name, ++address) {
      if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) {
        continue;
      }
      const auto* import = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(image + name->u1.AddressOfData);
      if (std::strcmp(reinterpret_cast<const char*>(import->Name), function) == 0) {
        return address;
      }
    }
  }
  return nullptr;
}

void* exchange(void** place, void* value) {
  DWORD protection = 0;
  if (VirtualProtect(place, sizeof *place, PAGE_READWRITE, &protection) == FALSE) {
    throw std::runtime_error("the import table cannot be changed");
  }
  void* const before = InterlockedExchangePointer(place, value);
  VirtualProtect(place, sizeof *place, protection, &protection);
  return before;
}

}  // namespace

ImportHook::ImportHook(HMODULE module, const char* function, void* replacement)
    : place_(findImport(module, function)), original_(nullptr) {
  if (place_ == nullptr) {
    throw std::runtime_error(std::string("not imported: ") + function);
  }
  original_ = exchange(place_, replacement);
}

ImportHook::~ImportHook() {
  exchange(place_, original_);
}

}  // namespace zeq::test
