#pragma once
// Stands in for one function of the system in one module, to see the arguments that arrive there or to inject
// a fault. Only calls from that module are caught.

#include <windows.h>

#include <string>

namespace zeq::test {

/// While it lives, the module's imported function is the replacement. Throws if the module imports no such
/// function.
class ImportHook {
 public:
  template <class Function>
  ImportHook(HMODULE module, const char* function, Function* replacement)
      : ImportHook(module, function, reinterpret_cast<void*>(replacement)) {}
  ~ImportHook();
  ImportHook(const ImportHook&) = delete;
  ImportHook& operator=(const ImportHook&) = delete;

 private:
  ImportHook(HMODULE module, const char* function, void* replacement);

  void** place_;
  void* original_;
};

}  // namespace zeq::test
