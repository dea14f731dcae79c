#include "platform/Process.h"

#include <windows.h>

namespace zeq::platform {

void endProcess(unsigned exitCode) noexcept {
  for (;;) {
    TerminateProcess(GetCurrentProcess(), exitCode);
  }
}

}  // namespace zeq::platform
