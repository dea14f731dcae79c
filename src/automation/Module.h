#pragma once
// What the component knows of itself: its module handle, how many reasons keep it loaded, its type library.

#include <windows.h>
#include <oleauto.h>

#include <string>

#include "automation/ComPtr.h"

namespace zeq::automation {

/// The module that this code is linked into.
[[nodiscard]] HINSTANCE moduleHandle() noexcept;

/// The full path of that module, however long.
[[nodiscard]] std::wstring modulePath();

/// Keeps the module loaded while it lives: every object and every lock of a class factory has one.
class ModuleLock {
 public:
  ModuleLock() noexcept { add(); }
  ModuleLock(const ModuleLock&) noexcept : ModuleLock() {}
  ModuleLock& operator=(const ModuleLock&) noexcept = default;
  ~ModuleLock() { remove(); }

  static void add() noexcept { InterlockedIncrement(&count_); }
  static void remove() noexcept { InterlockedDecrement(&count_); }

  [[nodiscard]] static long count() noexcept { return InterlockedCompareExchange(&count_, 0, 0); }

 private:
  static inline LONG count_ = 0;
};

/// The type library that the module carries as resource 1, loaded on first use.
/// Throws Error if it cannot be loaded.
[[nodiscard]] ComPtr<ITypeLib> typeLibrary();

/// The description of an interface or a class of that library. Throws Error if there is none.
[[nodiscard]] ComPtr<ITypeInfo> typeInfo(REFGUID id);

/// Lets the type library go. Called when the module is unloaded from a process that goes on.
void releaseTypeLibrary() noexcept;

}  // namespace zeq::automation
