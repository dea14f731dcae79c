#pragma once
// A text that is gone through from left to right and changed at the place reached: what lies to the left and
// to the right of that place each stands in one piece, with a gap between them that replacements fill or
// widen.

#include <string>
#include <string_view>

namespace zeq::utility {

class SpliceBuffer {
 public:
  /// `limit` is the length beyond which the text does not go on growing.
  SpliceBuffer(std::wstring_view text, std::size_t limit);

  /// How many characters lie to the left of the place reached.
  [[nodiscard]] std::size_t passed() const noexcept { return left_; }
  /// What lies to the right of it, valid until the next change.
  [[nodiscard]] std::wstring_view right() const noexcept {
    return std::wstring_view(characters_).substr(right_);
  }
  /// The whole text, which the buffer is left without.
  [[nodiscard]] std::wstring take();

  /// Moves on to the right, or back to the left.
  void passOver(std::size_t count) noexcept;
  void stepBack(std::size_t count) noexcept;

  /// Puts a text in the place of the next `count` characters and stays in front of it. Throws std::bad_alloc
  /// where a text beyond the limit would have to grow.
  void replace(std::size_t count, std::wstring_view replacement);

 private:
  void widenGap(std::size_t needed);

  std::wstring characters_;  ///< Left side, gap, right side.
  std::size_t left_ = 0;     ///< Length of the left side.
  std::size_t right_;        ///< Where the right side begins.
  std::size_t limit_;
};

}  // namespace zeq::utility
