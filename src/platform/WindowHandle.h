#pragma once
// Windows that clients name by a number.

#include <windows.h>

namespace zeq::platform {

/// The window with that handle. Window handles have 32 significant bits; 64-bit Windows sign-extends them.
[[nodiscard]] inline HWND windowWithHandle(long handle) noexcept {
  return reinterpret_cast<HWND>(static_cast<INT_PTR>(handle));  // NOLINT(performance-no-int-to-ptr)
}

}  // namespace zeq::platform
