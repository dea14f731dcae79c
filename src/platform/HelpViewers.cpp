#include "platform/HelpViewers.h"

#include <htmlhelp.h>

#include <string>

#include "platform/Files.h"
#include "platform/Paths.h"

namespace zeq::platform {
namespace {

using HtmlHelpFunction = decltype(&HtmlHelpA);

/// Null if the system has no HTML Help. An application may bring a viewer in its own folder; the current
/// folder and the search path are left out, because anybody may have put a file of that name there.
HtmlHelpFunction loadHtmlHelp() noexcept {
  const HMODULE viewer = LoadLibraryExW(L"hhctrl.ocx", nullptr,
                                        LOAD_LIBRARY_SEARCH_APPLICATION_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
  if (viewer == nullptr) {
    return nullptr;
  }
  return reinterpret_cast<HtmlHelpFunction>(reinterpret_cast<void*>(GetProcAddress(viewer, "HtmlHelpA")));
}

}  // namespace

void winHelp(HWND owner, const std::string& file, UINT command, ULONG_PTR data) noexcept {
  WinHelpA(owner, file.c_str(), command, data);
}

void htmlHelp(HWND owner, const std::string& file, UINT command, DWORD_PTR data) noexcept {
  static const HtmlHelpFunction function = loadHtmlHelp();
  if (function != nullptr) {
    function(owner, file.c_str(), command, data);
  }
}

std::wstring programHelpFile() {
  std::wstring path(32768, L'\0');  // No path is longer.
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  const std::wstring base = buildPath(parentFolderName(path), baseName(path));
  for (const wchar_t* extension : {L".chm", L".hlp"}) {
    std::wstring candidate = base + extension;
    if (fileExists(candidate.c_str())) {
      return candidate;
    }
  }
  return {};
}

}  // namespace zeq::platform
