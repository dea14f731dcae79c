// Random members with random arguments on many live objects, with random event handlers, until the given
// number of calls is made. Every run can be repeated from the seed that it prints.
//
//   torture [--seed N] [--calls N] [--rounds N]
//
// Exit code 0: nothing crashed, hung, leaked or answered what no client may see.

#include <windows.h>
#include <objbase.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

#include "support/Leaks.h"
#include "support/TempFolder.h"
#include "torture/Record.h"
#include "torture/Report.h"
#include "torture/Stranger.h"
#include "torture/World.h"

namespace {

using namespace zeq;

std::uint64_t seed = 0;
std::atomic<long long> steps{0};

void reportCurrent(const char* what) {
  std::printf("FAILED %s in step %lld of seed %llu: %s\n", what, steps.load(),
              static_cast<unsigned long long>(seed), torture::current());
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

/// One round with objects of its own; all of them are gone afterwards. Adds to what was made so far.
void playRound(torture::Random& random, long long calls, long long& made, long long& modelSteps) {
  torture::World world(random);
  while (world.calls() < calls) {
    ++steps;
    world.step();
  }
  made += world.calls();
  modelSteps += world.modelSteps();
}

/// What the rounds left behind. Something is made once and kept now and then, such as the description of a
/// class on its first use; so a leak of the component's blocks, of strings or of handles is what shows in
/// every round. The system's own heap blocks go up and down all the time; they only tell a gross leak.
class Leftovers {
 public:
  Leftovers() : last_(test::holdings()) {}

  /// Ends a round. Throws Violation if something of the round is still there.
  void count() {
    if (torture::Stranger::alive() != 0) {
      throw torture::Violation("an object of the client's is still held after a round");
    }
    if (torture::Record::alive() != 0) {
      throw torture::Violation("a record of the client's is still held after a round");
    }
    const test::Holdings now = test::holdings();
    if (now.componentInUse) {
      throw torture::Violation("something keeps the component loaded after a round");
    }
    component_ = std::min(component_, now.componentBlocks - last_.componentBlocks);
    tasks_ = std::min(tasks_, now.taskMemory - last_.taskMemory);
    handles_ = std::min(handles_, difference(now.handles, last_.handles));
    heap_ += difference(now.heapBlocks, last_.heapBlocks);
    last_ = now;
  }

  /// Throws Violation if the rounds, of that many calls together, left more and more behind.
  void expectNoLeak(long long calls) const {
    std::printf(
        "the least that a round left: %+ld blocks of the component, %+ld strings and task memory, %+ld "
        "handles\n",
        component_, tasks_, handles_);
    if (component_ > 0 || tasks_ > 0 || handles_ > 0 || heap_ > calls / 100 + 10000) {
      throw torture::Violation("this is a leak");
    }
  }

 private:
  static long difference(std::size_t after, std::size_t before) {
    return static_cast<long>(after) - static_cast<long>(before);
  }

  static constexpr long unknown = std::numeric_limits<long>::max();
  test::Holdings last_;
  long component_ = unknown;
  long tasks_ = unknown;
  long handles_ = unknown;
  long long heap_ = 0;
};

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
  long long modelSteps = 0;
  try {
    Leftovers leftovers;
    for (int round = 0; round < rounds; ++round) {
      playRound(random, calls, made, modelSteps);
      leftovers.count();
    }
    leftovers.expectNoLeak(made);
  } catch (const std::exception& error) {
    reportCurrent(error.what());
    return 1;
  }
  SetCurrentDirectoryW(L"C:\\");
  std::printf("ok torture: %lld calls, %lld steps beside models\n", made, modelSteps);
  CoUninitialize();
  return 0;
}
