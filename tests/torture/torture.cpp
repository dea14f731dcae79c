// Random members with random arguments on many live objects, with random event handlers, until the given
// number of calls is made. Every run can be repeated from the seed that it prints.
//
//   torture [--seed N] [--calls N] [--rounds N]
//
// Exit code 0: nothing crashed, hung, leaked or answered what no client may see.

#include <windows.h>
#include <objbase.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "support/Leaks.h"
#include "support/TempFolder.h"
#include "torture/World.h"

namespace {

using namespace zeq;

std::uint64_t seed = 0;
std::atomic<long long> steps{0};

void reportCurrent(const char* what) {
  std::printf("FAILED %s in step %lld of seed %llu: %s\n", what, steps.load(),
              static_cast<unsigned long long>(seed), torture::World::current());
  std::fflush(stdout);
}

LONG WINAPI onCrash(EXCEPTION_POINTERS* crash) {
  char text[64];
  std::snprintf(text, sizeof text, "crash 0x%08lX",
                static_cast<unsigned long>(crash->ExceptionRecord->ExceptionCode));
  reportCurrent(text);
  std::_Exit(2);
}

/// Answers dialogs, and ends the run when one step takes longer than a minute.
DWORD WINAPI watch(void* /*unused*/) {
  long long lastStep = -1;
  ULONGLONG since = GetTickCount64();
  for (unsigned answer = 0;; ++answer) {
    Sleep(10);
    if (const HWND dialog = FindWindowW(L"#32770", nullptr)) {
      static constexpr WPARAM buttons[] = {IDYES, IDNO, IDOK, IDCANCEL};
      PostMessageW(dialog, WM_COMMAND, buttons[answer % 4], 0);
    }
    if (steps != lastStep) {
      lastStep = steps;
      since = GetTickCount64();
    } else if (GetTickCount64() - since > 60000) {
      reportCurrent("hang");
      std::_Exit(3);
    }
  }
}

/// One round with objects of its own; all of them are gone afterwards.
long long playRound(torture::Random& random, long long calls) {
  torture::World world(random);
  while (world.calls() < calls) {
    ++steps;
    world.step();
  }
  return world.calls();
}

bool expectNothingLeft(const test::Holdings& before, const test::Holdings& after, long long calls) {
  if (after.componentInUse) {
    std::printf("FAILED something keeps the component loaded\n");
    return false;
  }
  // The system keeps a little for itself now and then; a leak would show in every hundredth call at least.
  const auto heap = static_cast<long long>(after.heapBlocks) - static_cast<long long>(before.heapBlocks);
  const auto handles = static_cast<long long>(after.handles) - static_cast<long long>(before.handles);
  std::printf("after %lld calls: %+lld heap blocks, %+ld strings and task memory, %+lld handles\n", calls,
              heap, after.taskMemory - before.taskMemory, handles);
  if (heap > calls / 100 + 50 || after.taskMemory - before.taskMemory > calls / 1000 || handles > 10) {
    std::printf("FAILED this is a leak\n");
    return false;
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  seed = GetTickCount64();
  long long calls = 20000;
  int rounds = 5;
  for (int i = 1; i + 1 < argc; i += 2) {
    const std::string option = argv[i];
    if (option == "--seed") {
      seed = std::strtoull(argv[i + 1], nullptr, 10);
    } else if (option == "--calls") {
      calls = std::atoll(argv[i + 1]);
    } else if (option == "--rounds") {
      rounds = std::atoi(argv[i + 1]);
    } else {
      std::printf("unknown option %s\n", argv[i]);
      return 1;
    }
  }
  std::printf("seed %llu: %d rounds of %lld calls, %d-bit\n", static_cast<unsigned long long>(seed), rounds,
              calls, static_cast<int>(sizeof(void*) * 8));
  std::fflush(stdout);
  SetUnhandledExceptionFilter(onCrash);
  CloseHandle(CreateThread(nullptr, 0, watch, nullptr, 0, nullptr));
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  const test::TempFolder sandbox;
  SetCurrentDirectoryW(sandbox.path().c_str());

  torture::Random random(seed);
  long long made = 0;
  try {
    static_cast<void>(test::holdings());  // Counting begins.
    for (int round = 0; round < 2; ++round) {
      made += playRound(random, calls);  // What is made once and kept is made here.
    }
    const test::Holdings before = test::holdings();
    long long counted = 0;
    for (int round = 2; round < rounds; ++round) {
      counted += playRound(random, calls);
    }
    made += counted;
    if (!expectNothingLeft(before, test::holdings(), counted)) {
      return 1;
    }
  } catch (const std::exception& error) {
    reportCurrent(error.what());
    return 1;
  }
  SetCurrentDirectoryW(L"C:\\");
  std::printf("ok torture: %lld calls\n", made);
  CoUninitialize();
  return 0;
}
