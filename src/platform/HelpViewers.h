#pragma once
// The system's two help viewers, and the help file of the program that this code runs in.

#include <windows.h>

#include <string>

namespace zeq::platform {

/// WinHelpA. The file name and a text among the data are in the ANSI code page.
void winHelp(HWND owner, const std::string& file, UINT command, ULONG_PTR data) noexcept;

/// HtmlHelpA of hhctrl.ocx, which is loaded on first use and stays loaded. Nothing happens on a system
/// without it.
void htmlHelp(HWND owner, const std::string& file, UINT command, DWORD_PTR data) noexcept;

/// The help file of the program: the file in its folder with its base name and the extension chm, or else
/// hlp. Empty if there is neither.
[[nodiscard]] std::wstring programHelpFile();

}  // namespace zeq::platform
