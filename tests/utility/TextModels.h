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

struct TooManySteps {};

/// Searches again from the first character after each replacement; throws TooManySteps after so many of them.
inline std::wstring replaceKeyword(std::wstring text, const std::wstring& keyword,
                                   const std::wstring& replacement,
                                   int mostSteps = std::numeric_limits<int>::max()) {
  for (std::size_t found = text.find(keyword); found != std::wstring::npos; found = text.find(keyword)) {
    const auto before = static_cast<std::size_t>(shortPosition(found + 1) - 1);
    if (mostSteps-- == 0) {
      throw TooManySteps();
    }
    text.replace(before, keyword.size(), replacement);
  }
  return text;
}

/// The name of a key, row by row of the table of keys.
inline std::wstring keyName(int code) {
  struct Row {
    int code;
    const wchar_t* name;
  };
  const Row table[] = {
      {1, L"KeyLButton"},    {2, L"KeyRButton"},   {3, L"CANCEL"},      {4, L"KeyMButton"},
      {8, L"BACKSPACE"},     {9, L"TAB"},          {12, L"CLEAR"},      {13, L"ENTER"},
      {16, L"SHIFT"},        {17, L"CTRL"},        {18, L"MENU"},       {19, L"PAUSE"},
      {20, L"CAPS LOCK"},    {27, L"ESC"},         {32, L"SPACEBAR"},   {33, L"PAGE UP"},
      {34, L"PAGE DOWN"},    {35, L"END"},         {36, L"HOME"},       {37, L"LEFT ARROW"},
      {38, L"UP ARROW"},     {39, L"RIGHT ARROW"}, {40, L"DOWN ARROW"}, {41, L"SELECT"},
      {42, L"PRINT SCREEN"}, {43, L"EXECUTE"},     {44, L"SNAPSHOT"},   {45, L"INS"},
      {46, L"DEL"},          {47, L"HELP"},        {106, L"KP *"},      {107, L"KP +"},
      {108, L"KP ENTER"},    {109, L"KP -"},       {110, L"KP ."},      {111, L"KP /"},
      {144, L"NUM LOCK"},
  };
  for (const Row& each : table) {
    if (each.code == code) {
      return each.name;
    }
  }
  const bool isDigit = (code >= 48 && code <= 57) || (code >= 96 && code <= 105);
  if (isDigit) {
    return std::to_wstring(code >= 96 ? code - 96 : code - 48);
  }
  if (code >= 65 && code <= 90) {
    return {L"ABCDEFGHIJKLMNOPQRSTUVWXYZ"[code - 65]};
  }
  return code >= 112 && code <= 127 ? L"F" + std::to_wstring(code - 111)
                                    : L"[" + std::to_wstring(code) + L"]";
}

/// Cuts its record step by step with 16-bit positions, ignoring case everywhere, at every change.
class Splitter {
 public:
  void setCountsEmptyFields(bool count) { change(countEmpty_, count, count != countEmpty_); }
  void setTrimsFields(bool trim) { change(trim_, trim, trim != trim_); }
  void setSeparator(const std::wstring& separator) {
    change(separator_, separator, !separator.empty() && separator != separator_);
  }
  void setRecord(const std::wstring& record) { change(record_, record, true); }
  void split(const std::wstring& record, const std::wstring& separator, bool trim, bool countEmpty) {
    setSeparator(separator);
    setTrimsFields(trim);
    setCountsEmptyFields(countEmpty);
    setRecord(record);
  }

  [[nodiscard]] const std::vector<std::wstring>& fields() const { return fields_; }

 private:
  template <class Value>
  void change(Value& property, const Value& value, bool takesPlace) {
    if (takesPlace) {
      property = value;
      cut();
    }
  }

  void cut() {
    fields_.clear();
    const std::wstring searched = lowerCase(record_);
    const std::wstring mark = lowerCase(separator_);
    std::int16_t start = 1;
    bool more = !record_.empty();
    while (more) {
      const auto from = static_cast<std::size_t>(start - 1);
      const std::size_t found = searched.find(mark, from);
      more = found != std::wstring::npos;
      const std::size_t end = more ? static_cast<std::size_t>(shortPosition(found + 1) - 1) : record_.size();
      add(record_.substr(from, end - from));
      if (more) {
        start = shortPosition(end + 1 + mark.size());
      }
    }
  }

  void add(std::wstring field) {
    while (trim_ && !field.empty() && field.front() == L' ') {
      field.erase(0, 1);
    }
    while (trim_ && !field.empty() && field.back() == L' ') {
      field.pop_back();
    }
    if (!field.empty() || countEmpty_) {
      fields_.push_back(field);
    }
  }

  bool countEmpty_ = false;
  bool trim_ = true;
  std::wstring separator_ = L" ";
  std::wstring record_;
  std::vector<std::wstring> fields_;
};

}  // namespace zeq::utility::model
