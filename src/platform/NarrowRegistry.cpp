#include "platform/NarrowRegistry.h"

namespace zeq::platform {

LSTATUS NarrowRegistryKey::openToRead(HKEY root, const std::string& path) noexcept {
  return RegOpenKeyExA(root, path.c_str(), 0, KEY_QUERY_VALUE, &key_);
}

LSTATUS NarrowRegistryKey::createToWrite(HKEY root, const std::string& path) noexcept {
  char noClass[] = "";
  return RegCreateKeyExA(root, path.c_str(), 0, noClass, REG_OPTION_NON_VOLATILE,
                         KEY_SET_VALUE | KEY_CREATE_SUB_KEY, nullptr, &key_, nullptr);
}

LSTATUS NarrowRegistryKey::read(const std::string& name, std::string& data, DWORD& type) const {
  // A buffer without room makes the system say how much is needed. Should the value grow meanwhile, it says
  // so again.
  DWORD size = 0;
  LSTATUS status = ERROR_MORE_DATA;
  do {
    data.resize(size);
    status =
        RegQueryValueExA(key_, name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(data.data()), &size);
  } while (status == ERROR_MORE_DATA);
  if (status == ERROR_SUCCESS) {
    data.resize(size);
  }
  return status;
}

LSTATUS NarrowRegistryKey::read(const std::string& name, void* data, std::size_t size) const noexcept {
  auto length = static_cast<DWORD>(size);
  return RegQueryValueExA(key_, name.c_str(), nullptr, nullptr, static_cast<BYTE*>(data), &length);
}

LSTATUS NarrowRegistryKey::write(const std::string& name, DWORD type, const void* data,
                                 std::size_t size) noexcept {
  return RegSetValueExA(key_, name.c_str(), 0, type, static_cast<const BYTE*>(data),
                        static_cast<DWORD>(size));
}

}  // namespace zeq::platform
