#pragma once
// Calls a method of a vtable with arguments that are known only at run time, by the platform's calling
// convention (stdcall on 32-bit Windows, the Microsoft x64 convention on 64-bit).

#include <windows.h>
#include <oaidl.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zeq::automation {

/// The argument list of one call, in declaration order and without the object itself. The caller sees to it
/// that no more than `capacity` words are pushed.
class SlotArguments {
 public:
  /// The most machine words that an argument list may have.
  static constexpr std::size_t capacity = 32;

  void pushPointer(const void* pointer) noexcept { pushWord(reinterpret_cast<std::uintptr_t>(pointer)); }
  void pushInteger(std::uint32_t value) noexcept { pushWord(value); }
  void pushFloat(float value) noexcept {
    markFloating();
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    pushWord(bits);
  }
  void pushDouble(double value) noexcept {
    markFloating();
    pushWide(&value);
  }
  void pushCurrency(const CY& value) noexcept { pushWide(&value); }
  /// A VARIANT by value: copied onto the stack on 32-bit Windows, passed by address on 64-bit.
  void pushVariant(const VARIANT& value) noexcept {
#ifdef _WIN64
    pushPointer(&value);
#else
    pushBytes(&value, sizeof value);
#endif
  }

  /// Calls the method at a position of the object's vtable.
  [[nodiscard]] HRESULT call(void* object, std::size_t slot) const noexcept;

 private:
  void pushWord(std::uintptr_t word) noexcept {
    words_[count_++] = word;
  }
  void pushWide(const void* eightBytes) noexcept {
    pushBytes(eightBytes, 8);
  }
  void pushBytes(const void* bytes, std::size_t size) noexcept {
    std::memcpy(&words_[count_], bytes, size);
    count_ += size / sizeof(std::uintptr_t);
  }
  void markFloating() noexcept {
    if (count_ < 3) {
      floating_ |= 1U << count_;
    }
  }

  std::array<std::uintptr_t, capacity> words_{};
  std::size_t count_ = 0;
  /// On 64-bit Windows: which of the three arguments in registers are floating-point numbers.
  unsigned floating_ = 0;
};

}  // namespace zeq::automation
