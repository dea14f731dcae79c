#pragma once
// Modal message boxes.

#include <string>

namespace zeq::platform {

/// Shows a message box and waits until the user presses a button; returns that button (IDOK …). `style` holds
/// the flags of the platform's message box. Unless it says otherwise, the box is modal for all windows of the
/// thread. Throws std::system_error with the Win32 code if no box can be shown.
[[nodiscard]] long showMessageBox(const std::wstring& text, const std::wstring& title, long style);

}  // namespace zeq::platform
