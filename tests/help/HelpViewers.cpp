#include "help/HelpViewers.h"

#include <htmlhelp.h>

#include <cstdint>
#include <cstring>
#include <stdexcept>

#include "support/Component.h"

namespace zeq::test {
namespace {

constexpr const char* winHelpClass = "MS_WINHELP";

WinHelpArguments* winHelpObserver = nullptr;
HtmlHelpViewer* htmlHelpObserver = nullptr;

/// What WinHelpA sends in WM_COPYDATA; the file name and the command's own data follow.
struct WinHelpMessage {
  std::uint16_t size;
  std::uint16_t command;
  std::int32_t data;
  std::int32_t reserved;
  std::uint16_t fileOffset;
  std::uint16_t dataOffset;
};

HelpCall callIn(const COPYDATASTRUCT& content, HWND owner) {
  const std::string bytes(static_cast<const char*>(content.lpData), content.cbData);
  WinHelpMessage message{};
  std::memcpy(&message, bytes.data(), sizeof message);
  HelpCall call{owner, {}, message.command, message.data, {}};
  call.file = message.fileOffset != 0 ? bytes.data() + message.fileOffset : "";
  call.text = message.dataOffset != 0 ? bytes.substr(message.dataOffset) : "";
  return call;
}

using SetHandler = void(WINAPI*)(HWND (*)(HWND, const char*, UINT, DWORD_PTR));

void setHtmlHelpHandler(HWND (*handler)(HWND, const char*, UINT, DWORD_PTR)) {
  const HMODULE viewer = LoadLibraryW(L"hhctrl.ocx");
  const FARPROC setter = viewer != nullptr ? GetProcAddress(viewer, "SetHandler") : nullptr;
  if (setter == nullptr) {
    throw std::runtime_error("the tests' own hhctrl.ocx does not stand beside the program");
  }
  reinterpret_cast<SetHandler>(reinterpret_cast<void*>(setter))(handler);
}

}  // namespace

WinHelpWindow::WinHelpWindow() {
  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = &WinHelpWindow::receive;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.lpszClassName = winHelpClass;
  RegisterClassA(&windowClass);
  window_ = CreateWindowA(winHelpClass, "", 0, 0, 0, 0, 0, nullptr, nullptr, windowClass.hInstance, nullptr);
  if (window_ == nullptr) {
    throw std::runtime_error("no window for WinHelp");
  }
  SetWindowLongPtrA(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

WinHelpWindow::~WinHelpWindow() {
  DestroyWindow(window_);
  UnregisterClassA(winHelpClass, GetModuleHandleW(nullptr));
}

LRESULT CALLBACK WinHelpWindow::receive(HWND window, UINT message, WPARAM sender, LPARAM content) {
  auto* const self = reinterpret_cast<WinHelpWindow*>(GetWindowLongPtrA(window, GWLP_USERDATA));
  if (message == WM_COPYDATA && self != nullptr) {
    self->calls_.push_back(
        callIn(*reinterpret_cast<const COPYDATASTRUCT*>(content), reinterpret_cast<HWND>(sender)));
    return TRUE;
  }
  return DefWindowProcA(window, message, sender, content);
}

WinHelpArguments::WinHelpArguments() {
  winHelpObserver = this;
  hook_.emplace(component(), "WinHelpA", &WinHelpArguments::winHelp);
}

WinHelpArguments::~WinHelpArguments() {
  winHelpObserver = nullptr;
}

BOOL WINAPI WinHelpArguments::winHelp(HWND owner, const char* file, UINT command, ULONG_PTR data) {
  winHelpObserver->calls_.push_back({owner, file, command, static_cast<LONG_PTR>(data), {}});
  return TRUE;
}

HtmlHelpViewer::HtmlHelpViewer() {
  htmlHelpObserver = this;
  setHtmlHelpHandler(&HtmlHelpViewer::htmlHelp);
}

HtmlHelpViewer::~HtmlHelpViewer() {
  setHtmlHelpHandler(nullptr);
  htmlHelpObserver = nullptr;
}

HWND HtmlHelpViewer::htmlHelp(HWND owner, const char* file, UINT command, DWORD_PTR data) {
  HtmlHelpViewer& self = *htmlHelpObserver;
  self.calls_.push_back({owner, file, command, static_cast<LONG_PTR>(data), {}});
  if (command == HH_DISPLAY_SEARCH) {
    self.query = *reinterpret_cast<const QueryRecord*>(data);
  } else if (command == HH_KEYWORD_LOOKUP) {
    self.link = *reinterpret_cast<const LinkRecord*>(data);
    self.keywords = self.link->keywords;
    self.messageText = self.link->messageText;
    self.messageTitle = self.link->messageTitle;
  }
  return nullptr;
}

}  // namespace zeq::test
