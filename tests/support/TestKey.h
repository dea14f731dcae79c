#pragma once
// A registry key of a test's own under the current user's software, removed with everything below it when the
// test ends.

#include <windows.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zeq::test {

class TestKey {
 public:
  TestKey();
  ~TestKey();
  TestKey(const TestKey&) = delete;
  TestKey& operator=(const TestKey&) = delete;

  /// The path of the key, or of one below it, under HKEY_CURRENT_USER.
  [[nodiscard]] std::wstring path(std::wstring_view below = {}) const;

  [[nodiscard]] bool exists(std::wstring_view below = {}) const;

  struct Value {
    DWORD type = REG_NONE;
    std::vector<BYTE> data;
    bool operator==(const Value&) const = default;
  };
  /// A value as it is stored; REG_NONE without data if there is none.
  [[nodiscard]] Value value(std::wstring_view below, const std::wstring& name) const;
  void setValue(std::wstring_view below, const std::wstring& name, const Value& value);

  /// Nobody gets these kinds of access to a key below this one while the result lives.
  [[nodiscard]] std::shared_ptr<void> deny(std::wstring_view below, REGSAM access) const;

  /// The text of a string value.
  [[nodiscard]] std::wstring text(std::wstring_view below, const std::wstring& name) const;
  /// A text as a string value.
  [[nodiscard]] static Value textValue(std::wstring_view text);

 private:
  std::wstring path_;
};

}  // namespace zeq::test
