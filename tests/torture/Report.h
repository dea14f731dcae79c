#pragma once
// What the torture run tells about a failure: what the component did wrong, and what was being done.

#include <algorithm>
#include <array>
#include <exception>
#include <string>
#include <string_view>
#include <utility>

namespace zeq::torture {

/// Thrown when the component answers in a way that no client may see.
class Violation : public std::exception {
 public:
  explicit Violation(std::string what) : what_(std::move(what)) {}
  [[nodiscard]] const char* what() const noexcept override { return what_.c_str(); }

 private:
  std::string what_;
};

inline std::array<char, 256> currentText{};

/// What is being done, for the report of a crash: a text that is always there.
[[nodiscard]] inline const char* current() noexcept {
  return currentText.data();
}

/// Tells what is being done from now on; a long text is cut.
inline void setCurrent(std::string_view text) noexcept {
  const std::size_t length = std::min(text.size(), currentText.size() - 1);
  std::copy_n(text.begin(), length, currentText.begin());
  currentText[length] = '\0';
}

}  // namespace zeq::torture
