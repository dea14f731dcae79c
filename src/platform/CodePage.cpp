#include "platform/CodePage.h"

#include <windows.h>

namespace zeq::platform {

std::string toAnsi(std::wstring_view text) {
  if (text.empty()) {
    return {};
  }
  // No code page needs more bytes than UTF-8 does: three for a 16-bit unit.
  std::string result(text.size() * 3, '\0');
  const int length = WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), result.data(),
                                         static_cast<int>(result.size()), nullptr, nullptr);
  result.resize(static_cast<std::size_t>(length));
  return result;
}

std::wstring fromAnsi(std::string_view text) {
  if (text.empty()) {
    return {};
  }
  // No code page makes more 16-bit units than it has bytes.
  std::wstring result(text.size(), L'\0');
  const int length = MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), result.data(),
                                         static_cast<int>(result.size()));
  result.resize(static_cast<std::size_t>(length));
  return result;
}

}  // namespace zeq::platform
