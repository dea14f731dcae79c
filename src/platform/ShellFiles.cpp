#include "platform/ShellFiles.h"

#include <windows.h>
#include <shellapi.h>

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "platform/CodePage.h"

namespace zeq::platform {
namespace {

#ifndef _WIN64
static_assert(sizeof(SHFILEINFOA) == 352);
#endif

/// Starts one of the system's own programs in a normal window with the focus: neither the program's folder
/// nor the current one is searched for it.
void start(const std::wstring& program, const std::wstring& arguments) {
  std::wstring commandLine = program + L" " + arguments;
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetSystemDirectoryW(path.data(), static_cast<UINT>(path.size())));
  path.append(L"\\").append(program);
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = SW_SHOWNORMAL;
  PROCESS_INFORMATION process{};
  if (CreateProcessW(path.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                     &process) != FALSE) {
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
  }
}

}  // namespace

std::wstring fileTypeDescription(const std::wstring& path) {
  SHFILEINFOA info{};
  SHGetFileInfoA(toAnsi(path).c_str(), 0, &info, sizeof info,
                 SHGFI_DISPLAYNAME | SHGFI_TYPENAME | SHGFI_EXETYPE);
  const auto end = std::find(std::begin(info.szTypeName), std::end(info.szTypeName), '\0');
  return fromAnsi({std::begin(info.szTypeName), end});
}

void openFile(const std::wstring& path) {
  // Clients' programs have always been started with these two texts.
  constexpr const char* parameters = "0";
  constexpr const char* folder = "0";
  const HINSTANCE outcome =
      ShellExecuteA(GetDesktopWindow(), "Open", toAnsi(path).c_str(), parameters, folder, SW_SHOWNORMAL);
  if (reinterpret_cast<std::intptr_t>(outcome) == SE_ERR_NOASSOC) {
    start(L"rundll32.exe", L"shell32.dll,OpenAs_RunDLL " + path);
  }
}

}  // namespace zeq::platform
