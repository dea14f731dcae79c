// The person at the screen: runs a command, presses OK in its message boxes, and is the help viewer that is
// running already, so that none is started. Usage: attend <command and its arguments>

#include <windows.h>

#include <cstdio>
#include <cwchar>

namespace {

constexpr UINT lookInterval = 20;  // Milliseconds.

void pressOk(DWORD process) {
  HWND box = nullptr;
  while ((box = FindWindowExW(nullptr, box, L"#32770", nullptr)) != nullptr) {
    DWORD owner = 0;
    GetWindowThreadProcessId(box, &owner);
    if (owner == process && IsWindowVisible(box) != FALSE && GetDlgItem(box, IDOK) != nullptr) {
      PostMessageW(box, WM_COMMAND, IDOK, 0);
    }
  }
}

/// The window that programs look for when they show WinHelp; it takes whatever they send.
bool becomeHelpViewer() {
  WNDCLASSW type{};
  type.lpfnWndProc = DefWindowProcW;
  type.lpszClassName = L"MS_WINHELP";
  return RegisterClassW(&type) != 0 &&
         CreateWindowW(type.lpszClassName, L"", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr) != nullptr;
}

/// What stands behind the first word of this program's command line.
wchar_t* commandToRun() {
  wchar_t* rest = GetCommandLineW();
  rest = *rest == L'"' ? std::wcschr(rest + 1, L'"') : rest;
  rest = rest != nullptr ? std::wcschr(rest, L' ') : nullptr;
  return rest != nullptr ? rest + std::wcsspn(rest, L" ") : nullptr;
}

DWORD attend(const PROCESS_INFORMATION& started) {
  SetTimer(nullptr, 0, lookInterval, nullptr);
  while (MsgWaitForMultipleObjects(1, &started.hProcess, FALSE, INFINITE, QS_ALLINPUT) != WAIT_OBJECT_0) {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
      if (message.message == WM_TIMER) {
        pressOk(started.dwProcessId);
      }
      DispatchMessageW(&message);
    }
  }
  DWORD status = 1;
  GetExitCodeProcess(started.hProcess, &status);
  return status;
}

}  // namespace

int wmain(int count, wchar_t** /*arguments*/) {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION started{};
  if (count < 2 || !becomeHelpViewer() ||
      CreateProcessW(nullptr, commandToRun(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                     &started) == FALSE) {
    std::fputs("usage: attend <command and its arguments>\n", stderr);
    return 2;
  }
  return static_cast<int>(attend(started));
}
