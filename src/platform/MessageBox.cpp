#include "platform/MessageBox.h"

#include <windows.h>

#include "platform/Failure.h"

namespace zeq::platform {

long showMessageBox(const std::wstring& text, const std::wstring& title, long style) {
  UINT flags = static_cast<UINT>(style);
  if ((flags & MB_MODEMASK) == 0) {
    flags |= MB_TASKMODAL;
  }
  const int button = MessageBoxW(nullptr, text.c_str(), title.c_str(), flags);
  if (button == 0) {
    failLast();
  }
  return button;
}

}  // namespace zeq::platform
