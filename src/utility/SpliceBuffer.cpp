#include "utility/SpliceBuffer.h"

#include <algorithm>
#include <new>

namespace zeq::utility {

std::wstring SpliceBuffer::text() const {
  std::wstring result;
  result.reserve(left_ + right().size());
  result.append(characters_, 0, left_).append(right());
  return result;
}

void SpliceBuffer::passOver(std::size_t count) noexcept {
  if (left_ != right_) {
    std::wstring::traits_type::move(&characters_[left_], &characters_[right_], count);
  }
  left_ += count;
  right_ += count;
}

void SpliceBuffer::stepBack(std::size_t count) noexcept {
  left_ -= count;
  right_ -= count;
  if (left_ != right_) {
    std::wstring::traits_type::move(&characters_[right_], &characters_[left_], count);
  }
}

void SpliceBuffer::replace(std::size_t count, std::wstring_view replacement) {
  right_ += count;
  if (right_ - left_ < replacement.size()) {
    widenGap(replacement.size());
  }
  right_ -= replacement.size();
  replacement.copy(&characters_[right_], replacement.size());
}

void SpliceBuffer::widenGap(std::size_t needed) {
  const std::size_t length = left_ + right().size();
  if (length > limit_) {
    throw std::bad_alloc();
  }
  const std::size_t gap = std::max(needed, length / 2);
  std::wstring wider;
  wider.reserve(length + gap);
  wider.append(characters_, 0, left_).append(gap, L'\0').append(right());
  characters_ = std::move(wider);
  right_ = left_ + gap;
}

}  // namespace zeq::utility
