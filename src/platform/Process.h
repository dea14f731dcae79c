#pragma once
// The process that the library runs in.

namespace zeq::platform {

/// Ends the process at once: no code of the caller runs any more, no destructor and no handler for the end.
[[noreturn]] void endProcess(unsigned exitCode) noexcept;

}  // namespace zeq::platform
