#pragma once
// Functions that are found in a module by name.

#include <windows.h>

#include <stdexcept>

namespace zeq::test {

/// A function that a module exports, by the type of a pointer to it. Throws if the module exports no such
/// function.
template <class Function>
[[nodiscard]] Function entryPoint(HMODULE module, const char* name) {
  const FARPROC address = GetProcAddress(module, name);
  if (address == nullptr) {
    throw std::runtime_error(name);
  }
  return reinterpret_cast<Function>(reinterpret_cast<void*>(address));
}

}  // namespace zeq::test
