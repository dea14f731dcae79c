// What the C++ runtime keeps for a thread, for an initialisation and for its locks, on the system's own
// means. The threads library that would otherwise be linked in takes a thread-local slot and memory of the
// process at every load of the DLL and never gives them back: a host that loads and unloads the component
// often would run out of slots, of which there are a thousand, and be ended. The names and layouts are those
// of the compiler's binary interface (Itanium C++ ABI) and of that library.

#include "library/runtime.h"

#include <windows.h>
#include <pthread.h>

#include <atomic>
#include <cstdlib>

namespace __cxxabiv1 {  // NOLINT: the name is given.

/// The exceptions that a thread is handling.
struct __cxa_eh_globals {  // NOLINT
  void* caughtExceptions;
  unsigned int uncaughtExceptions;
};

}  // namespace __cxxabiv1

namespace __gnu_cxx {  // NOLINT: the name is given.
void __freeres();
}

namespace {

using Globals = __cxxabiv1::__cxa_eh_globals;

constexpr DWORD none = FLS_OUT_OF_INDEXES;
std::atomic<DWORD> slot{none};

void WINAPI freeGlobals(void* globals) {
  std::free(globals);
}

/// The slot of the threads' globals, taken when an exception is first thrown.
DWORD globalsSlot() noexcept {
  DWORD current = slot.load(std::memory_order_acquire);
  if (current == none) {
    const DWORD taken = FlsAlloc(&freeGlobals);
    if (slot.compare_exchange_strong(current, taken)) {
      return taken;
    }
    FlsFree(taken);  // Another thread was first.
  }
  return current;
}

/// The guard of a static variable. The compiler reads its first byte, the second one is the runtime's.
using Guard = long long;

class GuardBytes {
 public:
  explicit GuardBytes(Guard* guard) noexcept : bytes_(reinterpret_cast<unsigned char*>(guard)) {}
  [[nodiscard]] std::atomic_ref<unsigned char> isReady() const noexcept { return std::atomic_ref(bytes_[0]); }
  [[nodiscard]] unsigned char& isBeingMade() const noexcept { return bytes_[1]; }

 private:
  unsigned char* bytes_;
};

SRWLOCK guards = SRWLOCK_INIT;  ///< Of the variables' guards and of what runs once.
CONDITION_VARIABLE guardChanged = CONDITION_VARIABLE_INIT;

/// A lock of the system, in the memory of one that is set up with all bits set.
SRWLOCK* lockOf(pthread_mutex_t* mutex) noexcept {
  static_assert(sizeof(pthread_mutex_t) == sizeof(SRWLOCK));
  void* const unset =
      reinterpret_cast<void*>(PTHREAD_MUTEX_INITIALIZER);  // NOLINT(performance-no-int-to-ptr)
  InterlockedCompareExchangePointer(reinterpret_cast<void**>(mutex), nullptr, unset);
  return reinterpret_cast<SRWLOCK*>(mutex);
}

void finish(const GuardBytes& guard, bool isReady) noexcept {
  AcquireSRWLockExclusive(&guards);
  guard.isBeingMade() = 0;
  guard.isReady().store(isReady ? 1 : 0, std::memory_order_release);
  ReleaseSRWLockExclusive(&guards);
  WakeAllConditionVariable(&guardChanged);
}

}  // namespace

extern "C" {

Globals* __cxa_get_globals() noexcept {  // NOLINT
  const DWORD index = globalsSlot();
  auto* globals = static_cast<Globals*>(FlsGetValue(index));
  if (globals == nullptr) {
    globals = static_cast<Globals*>(std::calloc(1, sizeof(Globals)));
    if (globals == nullptr || FlsSetValue(index, globals) == FALSE) {
      std::abort();  // There is no way to throw.
    }
  }
  return globals;
}

Globals* __cxa_get_globals_fast() noexcept {  // NOLINT
  return __cxa_get_globals();
}

int __cxa_guard_acquire(Guard* variable) noexcept {  // NOLINT
  const GuardBytes guard(variable);
  AcquireSRWLockExclusive(&guards);
  while (guard.isBeingMade() != 0) {
    SleepConditionVariableSRW(&guardChanged, &guards, INFINITE, 0);
  }
  const bool isReady = guard.isReady().load(std::memory_order_relaxed) != 0;
  guard.isBeingMade() = isReady ? 0 : 1;
  ReleaseSRWLockExclusive(&guards);
  return isReady ? 0 : 1;
}

void __cxa_guard_release(Guard* variable) noexcept {  // NOLINT
  finish(GuardBytes(variable), true);
}

void __cxa_guard_abort(Guard* variable) noexcept {  // NOLINT
  finish(GuardBytes(variable), false);
}

// What the runtime wants of the threads library.

int pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* /*attributes*/) {
  InitializeSRWLock(reinterpret_cast<SRWLOCK*>(mutex));
  return 0;
}

int pthread_mutex_destroy(pthread_mutex_t* /*mutex*/) {
  return 0;
}

int pthread_mutex_lock(pthread_mutex_t* mutex) {
  AcquireSRWLockExclusive(lockOf(mutex));
  return 0;
}

int pthread_mutex_unlock(pthread_mutex_t* mutex) {
  ReleaseSRWLockExclusive(lockOf(mutex));
  return 0;
}

int pthread_once(pthread_once_t* once, void (*function)()) {
  constexpr pthread_once_t isDone = 1;
  constexpr pthread_once_t isRunning = 2;
  AcquireSRWLockExclusive(&guards);
  while (*once == isRunning) {
    SleepConditionVariableSRW(&guardChanged, &guards, INFINITE, 0);
  }
  const bool isMine = *once != isDone;
  *once = isMine ? isRunning : isDone;
  ReleaseSRWLockExclusive(&guards);
  if (isMine) {
    function();
    AcquireSRWLockExclusive(&guards);
    *once = isDone;
    ReleaseSRWLockExclusive(&guards);
    WakeAllConditionVariable(&guardChanged);
  }
  return 0;
}

}  // extern "C"

namespace zeq::library {

void releaseRuntime() noexcept {
  if (slot != none) {
    FlsFree(slot.exchange(none));  // Frees the globals of all threads.
  }
  __gnu_cxx::__freeres();  // The memory for exceptions that are thrown when there is no other.
}

}  // namespace zeq::library
