// The HTML Help viewer that stands beside the test programs: it hands every call to the test.

#include <windows.h>

namespace {

using Handler = HWND (*)(HWND owner, const char* file, UINT command, DWORD_PTR data);
Handler handler = nullptr;

}  // namespace

extern "C" __declspec(dllexport) HWND WINAPI
    HtmlHelpA(HWND owner, const char* file, UINT command, DWORD_PTR data) {
  return handler != nullptr ? handler(owner, file, command, data) : nullptr;
}

extern "C" __declspec(dllexport) void WINAPI SetHandler(Handler newHandler) {
  handler = newHandler;
}
