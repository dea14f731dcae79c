#include "support/DialogAnswer.h"

#include <array>
#include <chrono>
#include <string_view>
#include <utility>

namespace zeq::test {
namespace {

HWND findDialog(const std::wstring& title) {
  HWND dialog = nullptr;
  while ((dialog = FindWindowExW(nullptr, dialog, L"#32770", title.c_str())) != nullptr) {
    DWORD process = 0;
    GetWindowThreadProcessId(dialog, &process);
    if (process == GetCurrentProcessId() && IsWindowVisible(dialog)) {
      return dialog;
    }
  }
  return nullptr;
}

std::wstring textOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)), L'\0');
  GetWindowTextW(window, text.data(), static_cast<int>(text.size() + 1));
  return text;
}

BOOL CALLBACK noteControl(HWND control, LPARAM contentAddress) {
  auto& content = *reinterpret_cast<DialogContent*>(contentAddress);
  std::array<wchar_t, 32> name{};
  GetClassNameW(control, name.data(), static_cast<int>(name.size()));
  const auto style = static_cast<DWORD>(GetWindowLongW(control, GWL_STYLE));
  if ((style & WS_VISIBLE) == 0) {
    return TRUE;
  }
  if (std::wstring_view(name.data()) == L"Button") {
    content.buttons.push_back(GetDlgCtrlID(control));
  } else if ((style & SS_TYPEMASK) == SS_ICON) {
    content.icon = reinterpret_cast<HICON>(SendMessageW(control, STM_GETICON, 0, 0));
  } else {
    content.text += textOf(control);
  }
  return TRUE;
}

}  // namespace

DialogAnswer::DialogAnswer(std::wstring title, int button)
    : thread_([this, title = std::move(title), button] { answer(title, button); }) {}

DialogAnswer::~DialogAnswer() {
  if (thread_.joinable()) {
    thread_.join();
  }
}

const DialogContent& DialogAnswer::content() {
  if (thread_.joinable()) {
    thread_.join();
  }
  return content_;
}

void DialogAnswer::answer(const std::wstring& title, int button) {
  constexpr int most = 2000;
  for (int i = 0; i < most; ++i) {
    if (const HWND dialog = findDialog(title)) {
      content_.appeared = true;
      EnumChildWindows(dialog, noteControl, reinterpret_cast<LPARAM>(&content_));
      SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED), 0);
      return;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

}  // namespace zeq::test
