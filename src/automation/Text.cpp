#include "automation/Text.h"

namespace zeq::automation {

std::wstring foldCase(std::wstring_view text) {
  std::wstring result(text);
  if (!result.empty()) {
    CharUpperBuffW(result.data(), static_cast<DWORD>(result.size()));
  }
  return result;
}

}  // namespace zeq::automation
