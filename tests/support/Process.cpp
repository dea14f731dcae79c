#include "support/Process.h"

#include <stdexcept>

#include "support/TempFolder.h"

namespace zeq::test {

DWORD runProgram(std::wstring commandLine, const std::wstring& folder) {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr,
                     folder.empty() ? nullptr : folder.c_str(), &startup, &process) == FALSE) {
    throw std::runtime_error("a program cannot be started");
  }
  constexpr DWORD minute = 60000;
  const bool ended = WaitForSingleObject(process.hProcess, minute) == WAIT_OBJECT_0;
  DWORD code = 0;
  if (ended) {
    GetExitCodeProcess(process.hProcess, &code);
  } else {
    TerminateProcess(process.hProcess, 1);
  }
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  if (!ended) {
    throw std::runtime_error("a program does not end");
  }
  return code;
}

std::wstring systemFolder(int bits) {
  std::wstring windows(MAX_PATH, L'\0');
  windows.resize(GetWindowsDirectoryW(windows.data(), MAX_PATH));
  // Each bitness sees its own folder as system32, and the other one under another name.
  const wchar_t* other = bits == 64 ? L"\\sysnative" : L"\\syswow64";
  const std::wstring folder = windows + (bits == ownBits ? L"\\system32" : other);
  return exists(folder + L"\\regsvr32.exe") ? folder : std::wstring();
}

}  // namespace zeq::test
