#pragma once
// What the test process holds, counted: heap blocks, COM task memory (every BSTR is one block of it),
// handles, and whether anything keeps the component loaded.

#include <windows.h>

#include <cstddef>
#include <functional>

namespace zeq::test {

/// What the process holds at one moment.
struct Holdings {
  /// Busy blocks of all heaps: every object, string and array, whoever allocated it.
  std::size_t heapBlocks = 0;
  /// Those of the component's own heap, since counting began.
  long componentBlocks = 0;
  /// Blocks from CoTaskMemAlloc, BSTRs among them, since counting began.
  long taskMemory = 0;
  /// Open kernel handles.
  std::size_t handles = 0;
  /// The component's DLL is loaded and DllCanUnloadNow answers that it is needed.
  bool componentInUse = false;

  bool operator==(const Holdings&) const = default;
};

/// Counts. The first call switches the BSTR cache off, which would hide leaks.
[[nodiscard]] Holdings holdings();

/// Expects that the process holds the same after as before `repetitions` runs of the body. The body runs some
/// times beforehand, so that what is made once and kept does not count; and growth must show in three rounds,
/// so that other threads of the system do not count either.
void expectNoLeak(int repetitions, const std::function<void()>& body);

}  // namespace zeq::test
