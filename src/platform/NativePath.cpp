#include "platform/NativePath.h"

#include <cwchar>
#include <string_view>

#include "platform/Failure.h"
#include "platform/Paths.h"

namespace zeq::platform {
namespace {

constexpr std::wstring_view extendedPrefix = L"\\\\?\\";
constexpr std::wstring_view devicePrefix = L"\\\\.\\";
constexpr std::wstring_view sharePrefix = L"\\\\?\\UNC";

/// Short in itself and still short when the current folder stands before it.
bool isShort(const wchar_t* path) noexcept {
  const std::size_t length = wcsnlen(path, shortPathLimit);
  if (length >= shortPathLimit) {
    return false;
  }
  if (length > 2 && path[1] == L':') {
    return isSeparator(path[2]);  // The current folder of a drive is not known.
  }
  return isSeparator(path[0]) || length + GetCurrentDirectoryW(0, nullptr) < shortPathLimit;
}

}  // namespace

std::wstring fullPath(const std::wstring& path) {
  if (path.empty() || path.find(L'\0') != std::wstring::npos) {
    fail(ERROR_INVALID_NAME);
  }
  std::wstring result(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        GetFullPathNameW(path.c_str(), static_cast<DWORD>(result.size() + 1), result.data(), nullptr);
    if (length == 0) {
      failLast();
    }
    const bool fits = length <= result.size();
    result.resize(length);
    if (fits) {
      return result;
    }
  }
}

std::wstring extendedPath(const std::wstring& path) {
  if (path.starts_with(extendedPrefix)) {
    return path;
  }
  std::wstring full = fullPath(path);
  if (full.starts_with(devicePrefix) || full.starts_with(extendedPrefix)) {
    return full;
  }
  if (full.starts_with(L"\\\\")) {
    return full.replace(0, 1, sharePrefix);
  }
  return full.insert(0, extendedPrefix);
}

NativePath::NativePath(const std::wstring& path) : NativePath(path.c_str()) {
  if (path.find(L'\0') != std::wstring::npos) {
    fail(ERROR_INVALID_NAME);
  }
}

NativePath::NativePath(const wchar_t* path) : short_(path) {
  if (!isShort(path)) {
    extended_ = extendedPath(path);
  }
}

}  // namespace zeq::platform
