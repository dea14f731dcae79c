#include "support/TempFolder.h"

#include <array>
#include <cstdio>
#include <memory>
#include <stdexcept>

namespace zeq::test {
namespace {

std::wstring extended(const std::wstring& path) {
  return path.starts_with(L"\\\\") ? path : L"\\\\?\\" + path;
}

using File = std::unique_ptr<void, decltype(&CloseHandle)>;

File open(const std::wstring& path, DWORD access, DWORD disposition) {
  File file(CreateFileW(extended(path).c_str(), access, FILE_SHARE_READ, nullptr, disposition, 0, nullptr),
            &CloseHandle);
  if (file.get() == INVALID_HANDLE_VALUE) {
    (void)file.release();
    throw std::runtime_error("cannot open a file of the test");
  }
  return file;
}

void run(std::wstring command) {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr,
                     &startup, &process) != FALSE) {
    WaitForSingleObject(process.hProcess, 10000);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
  }
}

bool isLink(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

/// Wine makes no links, but shows those of the system below it: its name of a path there, quoted; else "".
std::wstring systemName(const std::wstring& path) {
  using Translate = char*(CDECL*)(const wchar_t*);
  const FARPROC address = GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name");
  if (address == nullptr) {
    return {};
  }
  char* name = reinterpret_cast<Translate>(reinterpret_cast<void*>(address))(path.c_str());
  if (name == nullptr) {
    return {};
  }
  const std::string text = name;
  HeapFree(GetProcessHeap(), 0, name);
  return L"\"" + std::wstring(text.begin(), text.end()) + L"\"";
}

/// Wine's drives are links beside that of C: the name of one of them.
std::wstring systemNameOfDrive(const wchar_t* drive) {
  std::wstring name = systemName(L"C:\\");
  const std::size_t end = name.rfind(L"c:/");
  return end == std::wstring::npos ? std::wstring() : name.substr(0, end) + wchar_t(drive[0] | 0x20) + L":\"";
}

/// Waits for what a program does that cannot be waited for itself.
template <class Condition>
bool comesTrue(Condition condition) {
  for (int i = 0; i < 500 && !condition(); ++i) {
    Sleep(10);
  }
  return condition();
}

void removeLink(const std::wstring& path) {
  if (const std::wstring name = systemName(path); !name.empty()) {
    run(L"Z:\\bin\\rm " + name);
  } else {
    RemoveDirectoryW(path.c_str());
  }
}

void remove(const std::wstring& folder) {
  WIN32_FIND_DATAW entry{};
  const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &entry);
  if (search == INVALID_HANDLE_VALUE) {
    return;
  }
  do {
    const std::wstring name = entry.cFileName;
    if (name == L"." || name == L"..") {
      continue;
    }
    const std::wstring path = folder + L"\\" + name;
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
      DeleteFileW(path.c_str());
    } else if ((entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
      removeLink(path);
    } else {
      remove(path);
    }
  } while (FindNextFileW(search, &entry) != FALSE);
  FindClose(search);
  for (int i = 0; i < 500 && RemoveDirectoryW(folder.c_str()) == FALSE; ++i) {
    Sleep(10);  // Until the last link is gone.
  }
}

std::wstring temporaryFolder() {
  std::array<wchar_t, MAX_PATH + 1> buffer{};
  GetTempPathW(static_cast<DWORD>(buffer.size()), buffer.data());
  std::array<wchar_t, MAX_PATH + 1> longForm{};
  const DWORD length = GetLongPathNameW(buffer.data(), longForm.data(), static_cast<DWORD>(longForm.size()));
  return {longForm.data(), length - 1};  // Without the separator at the end.
}

}  // namespace

TempFolder::TempFolder() : TempFolder(temporaryFolder()) {}

TempFolder::TempFolder(const std::wstring& parent) {
  static LONG count = 0;
  do {
    path_ = parent + L"\\zeq" + std::to_wstring(GetCurrentProcessId()) + L"_" +
            std::to_wstring(InterlockedIncrement(&count));
  } while (CreateDirectoryW(path_.c_str(), nullptr) == FALSE && GetLastError() == ERROR_ALREADY_EXISTS);
  if (!exists(path_)) {
    throw std::runtime_error("cannot make a folder for the test");
  }
}

TempFolder::~TempFolder() {
  remove(extended(path_));
}

std::wstring TempFolder::operator/(std::wstring_view name) const {
  return path_ + L"\\" + std::wstring(name);
}

std::wstring TempFolder::file(std::wstring_view name, std::string_view content) const {
  std::wstring path = *this / name;
  const File file = open(path, GENERIC_WRITE, CREATE_ALWAYS);
  DWORD written = 0;
  WriteFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &written, nullptr);
  return path;
}

std::wstring TempFolder::folder(std::wstring_view name) const {
  std::wstring path = *this / name;
  for (std::size_t end = path_.size(); end != std::wstring::npos;) {
    end = path.find(L'\\', end + 1);
    CreateDirectoryW(extended(path.substr(0, end)).c_str(), nullptr);
  }
  return path;
}

std::string contentOf(const std::wstring& path) {
  const File file = open(path, GENERIC_READ, OPEN_EXISTING);
  std::string content(GetFileSize(file.get(), nullptr), '\0');
  DWORD read = 0;
  ReadFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &read, nullptr);
  content.resize(read);
  return content;
}

bool exists(const std::wstring& path) {
  return GetFileAttributesW(extended(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool linkFolder(const std::wstring& link, const std::wstring& target) {
  if (const std::wstring name = systemName(target); !name.empty()) {
    run(L"Z:\\bin\\ln -s " + name + L" " + systemName(link));
    return comesTrue([&] { return isLink(link); });
  }
  run(L"cmd.exe /c mklink /J \"" + link + L"\" \"" + target + L"\"");
  return isLink(link);
}

MappedDrive::MappedDrive(const std::wstring& folder) : folder_(folder) {
  if (const std::wstring link = systemNameOfDrive(name()); !link.empty()) {
    run(L"Z:\\bin\\ln -sfn " + systemName(folder) + L" " + link);
  } else {
    DefineDosDeviceW(0, name(), folder.c_str());
  }
  if (!comesTrue([] { return exists(root()); })) {
    throw std::runtime_error("a drive cannot be made");
  }
}

void MappedDrive::remove() const {
  if (const std::wstring link = systemNameOfDrive(name()); link.empty()) {
    DefineDosDeviceW(DDD_REMOVE_DEFINITION, name(), folder_.c_str());
  } else if (exists(root())) {
    run(L"Z:\\bin\\rm " + link);
    comesTrue([] { return !exists(root()); });
  }
}

}  // namespace zeq::test
