#pragma once
// A text split into fields by a separator, split again at every change of what decides the fields.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "utility/MZEQUtilityStrings.h"

namespace zeq::utility {

/// Positions and the number of fields are 16-bit: what changes the fields throws std::overflow_error where a
/// separator ends beyond character 32766. The change has then taken place, and the fields are those that were
/// cut until then.
class FieldSplitter {
 public:
  /// Letters in the separator match either case, as `lowerCase` tells them.
  explicit FieldSplitter(LowerCase lowerCase) noexcept : lowerCase_(lowerCase) {}

  [[nodiscard]] bool countsEmptyFields() const noexcept { return countEmptyFields_; }
  [[nodiscard]] bool trimsFields() const noexcept { return trimFields_; }
  [[nodiscard]] const std::wstring& separator() const noexcept { return separator_; }
  [[nodiscard]] const std::wstring& record() const noexcept { return record_; }

  void setCountsEmptyFields(bool count);
  void setTrimsFields(bool trim);
  /// An empty separator is ignored.
  void setSeparator(std::wstring_view separator);
  void setRecord(std::wstring_view record);

  /// Sets everything, one after the other. An empty separator keeps the present one.
  void split(std::wstring_view record, std::wstring_view separator, bool trim, bool countEmpty);

  [[nodiscard]] std::int16_t count() const noexcept { return static_cast<std::int16_t>(fields_.size()); }
  /// The field at a position counted from 1, valid until the next change; empty if there is none.
  [[nodiscard]] std::wstring_view field(int position) const noexcept;

 private:
  struct Field {
    std::size_t start;
    std::size_t length;
  };

  void splitAgain();
  void cut(std::wstring_view searched, std::wstring_view separator);
  void addField(std::size_t start, std::size_t length);

  LowerCase lowerCase_;
  std::wstring separator_{L" "};
  std::wstring record_;
  std::vector<Field> fields_;  ///< Parts of the record.
  bool trimFields_ = true;
  bool countEmptyFields_ = false;
};

}  // namespace zeq::utility
