#include "platform/LetterCase.h"

#include <windows.h>

namespace zeq::platform {

std::wstring lowerCase(std::wstring_view text) {
  std::wstring result(text);
  CharLowerBuffW(result.data(), static_cast<DWORD>(result.size()));
  return result;
}

}  // namespace zeq::platform
