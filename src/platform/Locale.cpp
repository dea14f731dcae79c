#include "platform/Locale.h"

#include <windows.h>

#include <array>

namespace zeq::platform {

wchar_t decimalSeparator() noexcept {
  std::array<wchar_t, 4> text{};  // The setting is at most three characters and a NUL.
  const int length =
      GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, text.data(), static_cast<int>(text.size()));
  return length > 1 ? text[0] : L'.';
}

}  // namespace zeq::platform
