#include "platform/Clock.h"

#include <windows.h>

namespace zeq::platform {

TimeOfDay localTime() noexcept {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  return {now.wHour, now.wMinute, now.wSecond};
}

}  // namespace zeq::platform
