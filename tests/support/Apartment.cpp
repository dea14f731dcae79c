#include "support/Apartment.h"

#include <objbase.h>

#include <utility>

namespace zeq::test {
namespace {

/// Waits as COM wants it: calls from other apartments come in.
void waitFor(HANDLE event) {
  DWORD index = 0;
  while (CoWaitForMultipleHandles(0, INFINITE, 1, &event, &index) == RPC_S_CALLPENDING) {
  }
}

}  // namespace

Apartment::Apartment(Kind kind)
    : kind_(kind), thread_(CreateThread(nullptr, 0, &Apartment::serve, this, 0, nullptr)) {}

Apartment::~Apartment() {
  SetEvent(wanted_);
  waitFor(thread_);
  CloseHandle(thread_);
  CloseHandle(wanted_);
  CloseHandle(done_);
}

void Apartment::start(std::function<void()> work) {
  work_ = std::move(work);
  SetEvent(wanted_);
}

void Apartment::finish() {
  waitFor(done_);
  if (failure_) {
    std::rethrow_exception(std::exchange(failure_, nullptr));
  }
}

DWORD WINAPI Apartment::serve(void* self) {
  static_cast<Apartment*>(self)->serve();
  return 0;
}

void Apartment::serve() {
  CoInitializeEx(nullptr, kind_ == Kind::singleThreaded ? COINIT_APARTMENTTHREADED : COINIT_MULTITHREADED);
  for (;;) {
    waitFor(wanted_);
    const std::function<void()> work = std::exchange(work_, nullptr);
    if (!work) {
      break;
    }
    try {
      work();
    } catch (...) {
      failure_ = std::current_exception();
    }
    SetEvent(done_);
  }
  CoUninitialize();
}

}  // namespace zeq::test
