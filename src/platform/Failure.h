#pragma once
// How the operating system's failures are thrown.

#include <windows.h>

#include <system_error>

namespace zeq::platform {

/// Throws std::system_error for a Win32 error code.
[[noreturn]] inline void fail(DWORD error) {
  throw std::system_error(static_cast<int>(error), std::system_category());
}

/// The same for the code that the last call left.
[[noreturn]] inline void failLast() {
  fail(GetLastError());
}

}  // namespace zeq::platform
