// Stands in for the program that the shell starts: it leaves its command line and its current folder, each on
// a line of its own, in a file beside itself (recorder.exe.txt).

#include <windows.h>

#include <string>

namespace {

std::wstring ownPath() {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
  return path;
}

std::wstring currentFolder() {
  std::wstring folder(MAX_PATH, L'\0');
  folder.resize(GetCurrentDirectoryW(MAX_PATH, folder.data()));
  return folder;
}

}  // namespace

int main() {
  const std::wstring record = std::wstring(GetCommandLineW()) + L"\n" + currentFolder() + L"\n";
  const std::wstring unfinished = ownPath() + L".part";
  const HANDLE file = CreateFileW(unfinished.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  DWORD written = 0;
  WriteFile(file, record.data(), static_cast<DWORD>(record.size() * sizeof(wchar_t)), &written, nullptr);
  CloseHandle(file);
  // Whoever waits for the file finds it whole.
  MoveFileW(unfinished.c_str(), (ownPath() + L".txt").c_str());
}
