#include "platform/SpecialFolders.h"

#include <windows.h>
#include <shlobj.h>

#include <algorithm>
#include <memory>

#include "platform/CodePage.h"

namespace zeq::platform {

std::optional<std::wstring> specialFolder(int id) {
  PIDLIST_ABSOLUTE list = nullptr;
  if (SHGetSpecialFolderLocation(nullptr, id, &list) != S_OK) {
    return std::nullopt;
  }
  const std::unique_ptr<void, decltype(&CoTaskMemFree)> owner(list, &CoTaskMemFree);
  std::string buffer(1024, ' ');
  if (SHGetPathFromIDListA(list, buffer.data()) == FALSE) {
    return std::nullopt;
  }
  buffer.resize(std::min(buffer.find('\0'), buffer.size()));
  // Wine gives the name that a virtual folder has in the shell's own tree.
  return buffer.starts_with("::") ? std::nullopt : std::optional(fromAnsi(buffer));
}

std::wstring temporaryFolder() {
  std::string buffer(256, ' ');
  const DWORD length = GetTempPathA(static_cast<DWORD>(buffer.size()), buffer.data());
  buffer.resize(std::min<std::size_t>(length, buffer.size()));
  return fromAnsi(buffer);
}

}  // namespace zeq::platform
