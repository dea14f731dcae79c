#include "utility/SpliceBuffer.h"

#include <algorithm>
#include <new>
#include <utility>

namespace zeq::utility {

// A gap from the start on: most texts never need a wider one.
SpliceBuffer::SpliceBuffer(std::wstring_view text, std::size_t limit)
    : right_(text.size() / 2), limit_(limit) {
  characters_.reserve(right_ + text.size());
  characters_.append(right_, L'\0').append(text);
}

std::wstring SpliceBuffer::take() {
  characters_.erase(left_, right_ - left_);
  left_ = right_ = 0;
  return std::exchange(characters_, {});
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
  characters_.insert(left_, gap - (right_ - left_), L'\0');
  right_ = left_ + gap;
}

}  // namespace zeq::utility
