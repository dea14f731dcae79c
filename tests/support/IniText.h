#pragma once
// An ini file of a test's own, removed when the test ends, and what the system's own functions say about it.

#include <memory>
#include <string>
#include <string_view>

namespace zeq::test {

class IniText {
 public:
  /// A new file in the folder for temporary files, with these bytes.
  explicit IniText(std::string_view content = {});
  ~IniText();
  IniText(const IniText&) = delete;
  IniText& operator=(const IniText&) = delete;

  [[nodiscard]] const std::wstring& path() const noexcept { return path_; }
  [[nodiscard]] std::string narrowPath() const;

  void write(std::string_view content);
  [[nodiscard]] std::string content() const;
  /// Marks the file read only. That keeps nobody out who may write to any file, as an administrator of the
  /// machine may.
  void setReadOnly();

  /// Nobody can write to the file while the result lives.
  [[nodiscard]] std::shared_ptr<void> denyWriting() const;

  /// GetPrivateProfileStringA into a buffer of that size, the whole of what it reports. No key means all key
  /// names.
  [[nodiscard]] std::string platformValue(const char* section, const char* key, const char* fallback = "",
                                          std::size_t size = 32768) const;

 private:
  std::wstring path_;
};

/// A text in the system's narrow code page and back, as the system converts it.
[[nodiscard]] std::string narrow(std::wstring_view text);
[[nodiscard]] std::wstring wide(std::string_view text);

}  // namespace zeq::test
