#include "platform/Paths.h"

#include <algorithm>

namespace zeq::platform {
namespace {

constexpr std::wstring_view separators = L"\\/";

std::wstring_view withoutTrailingSeparators(std::wstring_view path) noexcept {
  return path.substr(0, path.find_last_not_of(separators) + 1);
}

bool isBareDrive(std::wstring_view path) noexcept {
  return path.size() == 2 && path[1] == L':';
}

}  // namespace

void JoinedPath::copyTo(wchar_t* target) const noexcept {
  target = std::copy(path.begin(), path.end(), target);
  if (!separator.empty()) {
    *target++ = separator.front();
  }
  std::copy(name.begin(), name.end(), target);
}

JoinedPath joinPath(std::wstring_view path, std::wstring_view name) noexcept {
  const bool nameBringsOne = !name.empty() && isSeparator(name.front());
  if (!path.empty() && isSeparator(path.back())) {
    path.remove_suffix(nameBringsOne ? 1 : 0);
    return {path, {}, name};
  }
  const bool needsNone = path.empty() || path.back() == L':' || nameBringsOne;
  return {path, separators.substr(0, needsNone ? 0 : 1), name};
}

std::wstring buildPath(std::wstring_view path, std::wstring_view name) {
  const JoinedPath joined = joinPath(path, name);
  std::wstring result(joined.size(), L'\0');
  joined.copyTo(result.data());
  return result;
}

std::wstring_view fileName(std::wstring_view path) noexcept {
  path = withoutTrailingSeparators(path);
  if (isBareDrive(path)) {
    return {};
  }
  return path.substr(path.find_last_of(separators) + 1);
}

std::wstring_view baseName(std::wstring_view path) noexcept {
  const std::wstring_view name = fileName(path);
  const std::wstring_view base = name.substr(0, name.rfind(L'.'));
  // "C:.txt" has a drive and an extension, but no base name.
  return isBareDrive(base) && base.data() == path.data() ? std::wstring_view() : base;
}

std::wstring_view extensionName(std::wstring_view path) noexcept {
  const std::wstring_view name = fileName(path);
  const std::size_t dot = name.rfind(L'.');
  return dot == std::wstring_view::npos ? std::wstring_view() : name.substr(dot + 1);
}

std::wstring_view parentFolderName(std::wstring_view path) noexcept {
  path = withoutTrailingSeparators(path);
  path = path.substr(0, path.find_last_of(separators) + 1);
  const std::wstring_view parent = withoutTrailingSeparators(path);
  return isBareDrive(parent) ? path.substr(0, 3) : parent;
}

std::wstring_view driveName(std::wstring_view path) noexcept {
  if (path.size() >= 2 && path[1] == L':') {
    return path.substr(0, 2);
  }
  if (path.size() < 2 || !isSeparator(path[0]) || !isSeparator(path[1])) {
    return {};
  }
  const std::size_t server = 2;
  const std::size_t afterServer = path.find_first_of(separators, server);
  if (afterServer == std::wstring_view::npos) {
    return {};
  }
  const std::wstring_view serverName = path.substr(server, afterServer - server);
  const std::size_t share = afterServer + 1;
  const std::size_t afterShare = std::min(path.find_first_of(separators, share), path.size());
  // "\\?\" and "\\.\" begin a path of the operating system, not a share.
  if (serverName.empty() || serverName == L"?" || serverName == L"." || afterShare == share) {
    return {};
  }
  return path.substr(0, afterShare);
}

}  // namespace zeq::platform
