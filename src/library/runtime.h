#pragma once
// The C++ runtime of the DLL, as far as it must give back what it took.

namespace zeq::library {

/// Gives back what the runtime keeps for the threads of the process. Called last of all when the DLL is
/// unloaded from a process that goes on.
void releaseRuntime() noexcept;

}  // namespace zeq::library
