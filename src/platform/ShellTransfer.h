#pragma once
// Moving or copying one file through the shell, with its progress and confirmation dialogs.

#include <windows.h>

#include <string>

namespace zeq::platform {

enum class TransferResult { succeeded, failed, aborted };

struct Transfer {
  bool moves = false;  ///< Otherwise it copies.
  std::wstring source;
  std::wstring destination;
  std::wstring progressTitle;
  HWND owner = nullptr;  ///< Owns the shell's dialogs; null for none.
};

/// SHFileOperationA on one file (FOF_FILESONLY), confirmations left to the shell. Blocks until its dialogs
/// close.
[[nodiscard]] TransferResult transferFile(const Transfer& transfer);

}  // namespace zeq::platform
