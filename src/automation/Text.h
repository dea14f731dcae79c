#pragma once
// BSTR, the counted UTF-16 string of automation, against the standard library's strings. A null BSTR is the
// empty string. Embedded NUL characters survive in both directions.

#include <windows.h>
#include <oleauto.h>

#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "automation/Errors.h"

namespace zeq::automation {

/// The text of a BSTR, valid as long as the BSTR.
[[nodiscard]] inline std::wstring_view text(BSTR string) noexcept {
  return string == nullptr ? std::wstring_view() : std::wstring_view(string, SysStringLen(string));
}

/// The text of a by-reference argument. A null pointer, which only an early-bound client can pass, is an
/// error.
[[nodiscard]] inline std::wstring_view text(const BSTR* string) {
  if (string == nullptr) {
    throw Error(E_POINTER);
  }
  return text(*string);
}

/// The same for one that may be left out.
[[nodiscard]] inline std::wstring_view optionalText(const BSTR* string) noexcept {
  return string != nullptr ? text(*string) : std::wstring_view();
}

/// A new BSTR that the caller owns.
[[nodiscard]] inline BSTR newBstr(std::wstring_view text) {
  BSTR result = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  if (result == nullptr) {
    throw std::bad_alloc();
  }
  return result;
}

/// Owns one BSTR.
class Bstr {
 public:
  Bstr() noexcept = default;
  explicit Bstr(std::wstring_view text) : string_(newBstr(text)) {}
  /// A text of so many characters, which the caller writes.
  [[nodiscard]] static Bstr ofLength(std::size_t length) {
    Bstr result;
    result.string_ = SysAllocStringLen(nullptr, static_cast<UINT>(length));
    if (result.string_ == nullptr) {
      throw std::bad_alloc();
    }
    return result;
  }
  Bstr(Bstr&& other) noexcept : string_(std::exchange(other.string_, nullptr)) {}
  Bstr(const Bstr&) = delete;
  Bstr& operator=(Bstr other) noexcept {
    std::swap(string_, other.string_);
    return *this;
  }
  ~Bstr() {
    if (string_ != nullptr) {  // Saves the call for one that was given away.
      SysFreeString(string_);
    }
  }

  [[nodiscard]] BSTR get() const noexcept { return string_; }
  /// The address for a function that returns a BSTR through an out argument.
  [[nodiscard]] BSTR* out() noexcept {
    SysFreeString(std::exchange(string_, nullptr));
    return &string_;
  }
  [[nodiscard]] BSTR detach() noexcept { return std::exchange(string_, nullptr); }
  [[nodiscard]] std::wstring_view view() const noexcept { return text(string_); }

 private:
  BSTR string_ = nullptr;
};

/// Replaces the string that a by-reference argument holds. Nothing changes if the new one cannot be
/// allocated.
inline void assign(BSTR* target, std::wstring_view text) {
  if (target == nullptr) {
    throw Error(E_POINTER);
  }
  BSTR replacement = newBstr(text);
  SysFreeString(std::exchange(*target, replacement));
}

/// A text in upper case by the system's rules for any language, for comparisons that ignore case.
[[nodiscard]] std::wstring foldCase(std::wstring_view text);

}  // namespace zeq::automation
