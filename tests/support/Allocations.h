#pragma once
// The memory that the component asks for: counted, and refused where a test wants to see what happens then.
// Two sources are watched: the component's own heap (operator new and malloc in its DLL), and COM's task
// memory, from which every BSTR and array comes, whoever asks for it.

namespace zeq::test {

/// Blocks of the component's own heap since counting began: 0 while its DLL is not loaded. The first call
/// with the DLL loaded begins.
[[nodiscard]] long componentBlocks();

/// Blocks of task memory since counting began with the first call, which also switches the BSTR cache off.
[[nodiscard]] long taskBlocks();

/// While it lives, one request of the thread that made it is refused: the `nth` from now on, counted from 1.
class RefusedAllocation {
 public:
  explicit RefusedAllocation(long nth);
  ~RefusedAllocation();
  RefusedAllocation(const RefusedAllocation&) = delete;
  RefusedAllocation& operator=(const RefusedAllocation&) = delete;

  /// False if there were fewer requests so far.
  [[nodiscard]] bool happened() const noexcept;
};

}  // namespace zeq::test
