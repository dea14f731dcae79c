#include "support/IniText.h"

#include <windows.h>

#include <array>
#include <stdexcept>

namespace zeq::test {
namespace {

class File {
 public:
  File(const std::wstring& path, DWORD access, DWORD disposition)
      : handle_(CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, disposition,
                            FILE_ATTRIBUTE_NORMAL, nullptr)) {
    if (handle_ == INVALID_HANDLE_VALUE) {
      throw std::runtime_error("the ini file cannot be opened");
    }
  }
  ~File() { CloseHandle(handle_); }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  [[nodiscard]] HANDLE get() const noexcept { return handle_; }

 private:
  HANDLE handle_;
};

}  // namespace

IniText::IniText(std::string_view content) {
  std::array<wchar_t, MAX_PATH + 1> folder{};
  std::array<wchar_t, MAX_PATH + 1> file{};
  GetTempPathW(static_cast<DWORD>(folder.size()), folder.data());
  if (GetTempFileNameW(folder.data(), L"zeq", 0, file.data()) == 0) {
    throw std::runtime_error("no temporary file");
  }
  path_ = file.data();
  write(content);
}

IniText::~IniText() {
  SetFileAttributesW(path_.c_str(), FILE_ATTRIBUTE_NORMAL);
  DeleteFileW(path_.c_str());
}

std::string IniText::narrowPath() const {
  return narrow(path_);
}

void IniText::write(std::string_view content) {
  const File file(path_, GENERIC_WRITE, CREATE_ALWAYS);
  DWORD written = 0;
  if (WriteFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &written, nullptr) == FALSE ||
      written != content.size()) {
    throw std::runtime_error("the ini file cannot be written");
  }
}

std::string IniText::content() const {
  const File file(path_, GENERIC_READ, OPEN_EXISTING);
  std::string result(GetFileSize(file.get(), nullptr), '\0');
  DWORD length = 0;
  ReadFile(file.get(), result.data(), static_cast<DWORD>(result.size()), &length, nullptr);
  result.resize(length);
  return result;
}

void IniText::setReadOnly() {
  SetFileAttributesW(path_.c_str(), FILE_ATTRIBUTE_READONLY);
}

std::shared_ptr<void> IniText::denyWriting() const {
  HANDLE file = CreateFileW(path_.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    throw std::runtime_error("the ini file cannot be locked");
  }
  return {file, CloseHandle};
}

std::string IniText::platformValue(const char* section, const char* key, const char* fallback,
                                   std::size_t size) const {
  std::string buffer(size, '\0');
  buffer.resize(GetPrivateProfileStringA(section, key, fallback, buffer.data(),
                                         static_cast<DWORD>(buffer.size()), narrowPath().c_str()));
  return buffer;
}

std::string narrow(std::wstring_view text) {
  const int size = static_cast<int>(text.size());
  std::string result(static_cast<std::size_t>(
                         WideCharToMultiByte(CP_ACP, 0, text.data(), size, nullptr, 0, nullptr, nullptr)),
                     '\0');
  WideCharToMultiByte(CP_ACP, 0, text.data(), size, result.data(), static_cast<int>(result.size()), nullptr,
                      nullptr);
  return result;
}

std::wstring wide(std::string_view text) {
  const int size = static_cast<int>(text.size());
  std::wstring result(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, text.data(), size, nullptr, 0)),
                      L'\0');
  MultiByteToWideChar(CP_ACP, 0, text.data(), size, result.data(), static_cast<int>(result.size()));
  return result;
}

}  // namespace zeq::test
