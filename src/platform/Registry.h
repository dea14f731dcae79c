#pragma once
// The registry. Every function that can fail throws std::system_error with the Win32 error code.

#include <windows.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zeq::platform {

/// The data of a value as it is stored.
struct RegistryValue {
  DWORD type = REG_NONE;
  std::vector<BYTE> data;

  [[nodiscard]] static RegistryValue text(const std::wstring& text);
};

/// One open key. Paths are relative to a predefined root, so that each is seen as the view of this process
/// has it.
class RegistryKey {
 public:
  /// Opens an existing key, if it is there.
  [[nodiscard]] static std::optional<RegistryKey> open(HKEY root, const std::wstring& path,
                                                       REGSAM access = KEY_READ);

  /// Opens a key, and creates it with its parents where they are missing.
  [[nodiscard]] static RegistryKey create(HKEY root, const std::wstring& path);

  RegistryKey(RegistryKey&& other) noexcept
      : key_(std::exchange(other.key_, nullptr)), isNew_(other.isNew_) {}
  RegistryKey(const RegistryKey&) = delete;
  RegistryKey& operator=(const RegistryKey&) = delete;
  ~RegistryKey();

  /// True if create had to make the key.
  [[nodiscard]] bool isNew() const noexcept { return isNew_; }

  /// The value of a name; the empty name is the key's default value.
  [[nodiscard]] std::optional<RegistryValue> value(const std::wstring& name) const;
  void setValue(const std::wstring& name, const RegistryValue& value);
  void removeValue(const std::wstring& name);

  /// True if the key holds neither values nor subkeys.
  [[nodiscard]] bool isEmpty() const;

 private:
  RegistryKey(HKEY key, bool isNew) noexcept : key_(key), isNew_(isNew) {}

  HKEY key_;
  bool isNew_;
};

/// Removes a key with everything below it. Nothing happens if there is none.
void removeRegistryTree(HKEY root, const std::wstring& path);

/// Removes a key if it is there and empty.
void removeRegistryKeyIfEmpty(HKEY root, const std::wstring& path);

}  // namespace zeq::platform
