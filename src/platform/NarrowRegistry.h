#pragma once
// The registry through its functions in the system's narrow code page. Every function answers with the Win32
// error code, 0 on success. A 32-bit process on 64-bit Windows has its own view of some keys, as the system
// arranges it.

#include <windows.h>

#include <cstddef>
#include <string>

namespace zeq::platform {

/// One open key, closed in the destructor.
class NarrowRegistryKey {
 public:
  NarrowRegistryKey() noexcept = default;
  ~NarrowRegistryKey() { RegCloseKey(key_); }
  NarrowRegistryKey(const NarrowRegistryKey&) = delete;
  NarrowRegistryKey& operator=(const NarrowRegistryKey&) = delete;

  /// Opens a key to query values. Call once for an object, or createToWrite once.
  LSTATUS openToRead(HKEY root, const std::string& path) noexcept;

  /// Opens a key to set values, and creates it with its parents where they are missing.
  LSTATUS createToWrite(HKEY root, const std::string& path) noexcept;

  /// Reads all bytes of a value, whatever its type. `type` becomes the stored one.
  LSTATUS read(const std::string& name, std::string& data, DWORD& type) const;

  /// Reads at most `size` bytes of a value, whatever its type; a longer value is an error (ERROR_MORE_DATA).
  LSTATUS read(const std::string& name, void* data, std::size_t size) const noexcept;

  LSTATUS write(const std::string& name, DWORD type, const void* data, std::size_t size) noexcept;

 private:
  HKEY key_ = nullptr;
};

}  // namespace zeq::platform
