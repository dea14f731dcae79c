#pragma once
// A smart pointer for COM interfaces: one reference, released in the destructor.

#include <windows.h>
#include <unknwn.h>

#include <utility>

namespace zeq::automation {

template <class Interface>
class ComPtr {
 public:
  ComPtr() noexcept = default;
  ComPtr(std::nullptr_t) noexcept {}
  /// Shares the object: adds a reference of its own.
  explicit ComPtr(Interface* pointer) noexcept : pointer_(pointer) {
    if (pointer_ != nullptr) {
      pointer_->AddRef();
    }
  }
  ComPtr(const ComPtr& other) noexcept : ComPtr(other.pointer_) {}
  ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  ~ComPtr() { reset(); }

  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }

  /// Takes over a reference that the caller owns.
  static ComPtr attach(Interface* pointer) noexcept {
    ComPtr result;
    result.pointer_ = pointer;
    return result;
  }

  /// Gives the reference away; the caller releases it.
  [[nodiscard]] Interface* detach() noexcept { return std::exchange(pointer_, nullptr); }

  void reset() noexcept {
    // The pointer is cleared first: the object's destructor may come back to its owner.
    if (Interface* pointer = std::exchange(pointer_, nullptr)) {
      pointer->Release();
    }
  }

  /// The address for a function that returns a reference through an out argument; any present one is
  /// released.
  [[nodiscard]] Interface** out() noexcept {
    reset();
    return &pointer_;
  }
  [[nodiscard]] void** outVoid() noexcept { return reinterpret_cast<void**>(out()); }

  [[nodiscard]] Interface* get() const noexcept { return pointer_; }
  Interface* operator->() const noexcept { return pointer_; }
  Interface& operator*() const noexcept { return *pointer_; }
  explicit operator bool() const noexcept { return pointer_ != nullptr; }

  /// Another interface of the same object; empty if it has none.
  template <class Other>
  [[nodiscard]] ComPtr<Other> query(REFIID iid = __uuidof(Other)) const noexcept {
    void* found = nullptr;
    const bool answers = pointer_ != nullptr && SUCCEEDED(pointer_->QueryInterface(iid, &found));
    return ComPtr<Other>::attach(answers ? static_cast<Other*>(found) : nullptr);
  }

 private:
  Interface* pointer_ = nullptr;
};

}  // namespace zeq::automation
