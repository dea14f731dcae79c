#include "platform/TextFiles.h"

#include <windows.h>

#include "platform/CodePage.h"
#include "platform/Failure.h"
#include "platform/NativePath.h"

namespace zeq::platform {
namespace {

/// Opens the file as told, writes the text in one go and closes the file.
void write(const std::wstring& path, DWORD access, DWORD sharing, DWORD creation, std::wstring_view text) {
  const std::string bytes = toAnsi(text);
  const HANDLE file =
      CreateFileW(NativePath(path).get(), access, sharing, nullptr, creation, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    failLast();
  }
  DWORD written = 0;
  const bool done = WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != 0;
  const DWORD error = done ? ERROR_DISK_FULL : GetLastError();
  CloseHandle(file);
  if (!done || written != bytes.size()) {
    fail(error);
  }
}

}  // namespace

void appendText(const std::wstring& path, std::wstring_view text) {
  write(path, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_ALWAYS, text);
}

void overwriteText(const std::wstring& path, std::wstring_view text) {
  write(path, GENERIC_WRITE, FILE_SHARE_READ, CREATE_ALWAYS, text);
}

void deleteTextFile(const std::wstring& path) {
  if (DeleteFileW(NativePath(path).get()) == 0) {
    failLast();
  }
}

}  // namespace zeq::platform
