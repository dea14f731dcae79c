#pragma once
// The simplest possible versions of text functions, to compare the real ones with, and a lower case for
// tests.

#include <algorithm>
#include <cstdint>
#include <cwctype>
#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zeq::utility::model {

inline std::wstring lowerCase(std::wstring_view text) {
  std::wstring result(text);
  std::transform(result.begin(), result.end(), result.begin(), [](wchar_t each) {
    return static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(each)));
  });
  return result;
}

inline std::int16_t shortPosition(std::size_t position) {
  if (position > static_cast<std::size_t>(std::numeric_limits<std::int16_t>::max())) {
    throw std::overflow_error("position");
  }
  return static_cast<std::int16_t>(position);
}

/// Searches again from the first character after each replacement.
inline std::wstring replaceKeyword(std::wstring text, const std::wstring& keyword,
                                   const std::wstring& replacement) {
  for (std::size_t found = text.find(keyword); found != std::wstring::npos; found = text.find(keyword)) {
    const auto before = static_cast<std::size_t>(shortPosition(found + 1) - 1);
    text = text.substr(0, before) + replacement + text.substr(before + keyword.size());
  }
  return text;
}

/// Cuts a record step by step with 16-bit positions, ignoring case everywhere.
inline std::vector<std::wstring> split(const std::wstring& record, const std::wstring& separator, bool trim,
                                       bool countEmpty) {
  std::vector<std::wstring> fields;
  std::int16_t start = 1;
  bool more = !record.empty();
  while (more) {
    const auto from = static_cast<std::size_t>(start - 1);
    const std::size_t found = lowerCase(record).find(lowerCase(separator), from);
    more = found != std::wstring::npos;
    std::size_t end = more ? static_cast<std::size_t>(shortPosition(found + 1) - 1) : record.size();
    std::wstring field = record.substr(from, end - from);
    while (trim && !field.empty() && field.front() == L' ') {
      field.erase(0, 1);
    }
    while (trim && !field.empty() && field.back() == L' ') {
      field.pop_back();
    }
    if (!field.empty() || countEmpty) {
      fields.push_back(field);
    }
    if (more) {
      start = shortPosition(end + 1 + separator.size());
    }
  }
  return fields;
}

}  // namespace zeq::utility::model
