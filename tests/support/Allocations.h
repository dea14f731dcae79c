#pragma once
// The memory that the component asks for, counted, and refused where a test wants to see what happens then.

namespace zeq::test {

/// Blocks of the component's own heap (operator new and malloc in its DLL) since counting began: 0 while its
/// DLL is not loaded. The first call with the DLL loaded begins.
[[nodiscard]] long componentBlocks();

/// Blocks of COM's task memory, from which every BSTR and array comes, since counting began with the first
/// call, which also switches the BSTR cache off.
[[nodiscard]] long taskBlocks();

/// While it lives, one of the component's requests in the thread that made it is refused: the `nth` from now
/// on, counted from 1; with 0 none is. Requests are those to its own heap, and those for strings, arrays,
/// copies and conversions that it makes of automation. What the system asks for on its own account is left
/// alone.
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
