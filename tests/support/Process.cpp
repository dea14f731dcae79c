#include "support/Process.h"

#include <stdexcept>
#include <utility>

#include "support/TempFolder.h"

namespace zeq::test {

Program::Program(std::wstring commandLine, const std::wstring& folder) {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, DETACHED_PROCESS, nullptr,
                     folder.empty() ? nullptr : folder.c_str(), &startup, &process) == FALSE) {
    throw std::runtime_error("a program cannot be started");
  }
  CloseHandle(process.hThread);
  process_ = process.hProcess;
}

Program::~Program() {
  kill();
  CloseHandle(process_);
}

void Program::kill() {
  TerminateProcess(process_, 1);
  WaitForSingleObject(process_, INFINITE);
}

DWORD Program::exitCode() {
  constexpr DWORD minute = 60000;
  if (WaitForSingleObject(process_, minute) != WAIT_OBJECT_0) {
    throw std::runtime_error("a program does not end");
  }
  DWORD code = 0;
  GetExitCodeProcess(process_, &code);
  return code;
}

DWORD runProgram(std::wstring commandLine, const std::wstring& folder) {
  return Program(std::move(commandLine), folder).exitCode();
}

std::wstring partOfATest(const std::wstring& name) {
  std::wstring self(MAX_PATH, L'\0');
  self.resize(GetModuleFileNameW(nullptr, self.data(), static_cast<DWORD>(self.size())));
  return quoted(self) + L" --gtest_also_run_disabled_tests --gtest_filter=" + name;
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
