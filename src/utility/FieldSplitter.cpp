#include "utility/FieldSplitter.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace zeq::utility {
namespace {

/// Characters that no other character becomes when its case is changed.
bool hasNoCase(wchar_t character) noexcept {
  const bool isLetter = (character >= L'a' && character <= L'z') || (character >= L'A' && character <= L'Z');
  return character < 0x80 && !isLetter;
}

void requirePosition(std::size_t position) {
  if (position > static_cast<std::size_t>(std::numeric_limits<std::int16_t>::max())) {
    throw std::overflow_error("a separator lies too far to the right");
  }
}

}  // namespace

void FieldSplitter::setCountsEmptyFields(bool count) {
  if (count != countEmptyFields_) {
    countEmptyFields_ = count;
    splitAgain();
  }
}

void FieldSplitter::setTrimsFields(bool trim) {
  if (trim != trimFields_) {
    trimFields_ = trim;
    splitAgain();
  }
}

void FieldSplitter::setSeparator(std::wstring_view separator) {
  if (!separator.empty() && separator != separator_) {
    separator_ = separator;
    splitAgain();
  }
}

void FieldSplitter::setRecord(std::wstring_view record) {
  record_ = record;
  splitAgain();
}

void FieldSplitter::split(std::wstring_view record, std::wstring_view separator, bool trim, bool countEmpty) {
  setSeparator(separator);
  setTrimsFields(trim);
  setCountsEmptyFields(countEmpty);
  setRecord(record);
}

std::wstring_view FieldSplitter::field(int position) const noexcept {
  if (position < 1 || static_cast<std::size_t>(position) > fields_.size()) {
    return {};
  }
  const Field& field = fields_[static_cast<std::size_t>(position) - 1];
  return std::wstring_view(record_).substr(field.start, field.length);
}

void FieldSplitter::splitAgain() {
  fields_.clear();
  if (record_.empty()) {
    return;
  }
  if (std::all_of(separator_.begin(), separator_.end(), hasNoCase)) {
    cut(record_, separator_);
  } else {
    cut(lowerCase_(record_), lowerCase_(separator_));
  }
}

void FieldSplitter::cut(std::wstring_view searched, std::wstring_view separator) {
  std::size_t start = 0;
  for (;;) {
    const std::size_t found = searched.find(separator, start);
    if (found == std::wstring_view::npos) {
      addField(start, searched.size() - start);
      return;
    }
    requirePosition(found + 1);
    addField(start, found - start);
    start = found + separator.size();
    requirePosition(start + 1);
  }
}

void FieldSplitter::addField(std::size_t start, std::size_t length) {
  if (trimFields_) {
    const std::wstring_view field = trimmed(std::wstring_view(record_).substr(start, length));
    start = field.empty() ? start : static_cast<std::size_t>(field.data() - record_.data());
    length = field.size();
  }
  if (length != 0 || countEmptyFields_) {
    fields_.push_back({start, length});
  }
}

}  // namespace zeq::utility
