#include "platform/Registry.h"

#include <cstring>

#include "platform/Failure.h"

namespace zeq::platform {
namespace {

void check(LSTATUS status) {
  if (status != ERROR_SUCCESS) {
    fail(static_cast<DWORD>(status));
  }
}

}  // namespace

RegistryValue RegistryValue::text(const std::wstring& text) {
  RegistryValue value{REG_SZ, std::vector<BYTE>((text.size() + 1) * sizeof(wchar_t))};
  std::memcpy(value.data.data(), text.c_str(), value.data.size());
  return value;
}

std::optional<RegistryKey> RegistryKey::open(HKEY root, const std::wstring& path, REGSAM access) {
  HKEY key = nullptr;
  const LSTATUS status = RegOpenKeyExW(root, path.c_str(), 0, access, &key);
  if (status == ERROR_FILE_NOT_FOUND) {
    return std::nullopt;
  }
  check(status);
  return RegistryKey(key, false);
}

RegistryKey RegistryKey::create(HKEY root, const std::wstring& path) {
  HKEY key = nullptr;
  DWORD disposition = 0;
  check(RegCreateKeyExW(root, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_READ | KEY_WRITE,
                        nullptr, &key, &disposition));
  return {key, disposition == REG_CREATED_NEW_KEY};
}

RegistryKey::~RegistryKey() {
  if (key_ != nullptr) {
    RegCloseKey(key_);
  }
}

std::optional<RegistryValue> RegistryKey::value(const std::wstring& name) const {
  for (;;) {
    RegistryValue result;
    DWORD size = 0;
    LSTATUS status = RegQueryValueExW(key_, name.c_str(), nullptr, &result.type, nullptr, &size);
    if (status == ERROR_SUCCESS) {
      result.data.resize(size);
      status = RegQueryValueExW(key_, name.c_str(), nullptr, &result.type, result.data.data(), &size);
    }
    if (status == ERROR_FILE_NOT_FOUND) {
      return std::nullopt;
    }
    if (status != ERROR_MORE_DATA) {  // It grew between the two calls.
      check(status);
      result.data.resize(size);
      return result;
    }
  }
}

void RegistryKey::setValue(const std::wstring& name, const RegistryValue& value) {
  check(RegSetValueExW(key_, name.c_str(), 0, value.type, value.data.data(),
                       static_cast<DWORD>(value.data.size())));
}

void RegistryKey::removeValue(const std::wstring& name) {
  check(RegDeleteValueW(key_, name.c_str()));
}

bool RegistryKey::isEmpty() const {
  DWORD subkeys = 0;
  DWORD values = 0;
  check(RegQueryInfoKeyW(key_, nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr, &values, nullptr,
                         nullptr, nullptr, nullptr));
  return subkeys == 0 && values == 0;
}

void removeRegistryTree(HKEY root, const std::wstring& path) {
  const LSTATUS status = RegDeleteTreeW(root, path.c_str());
  if (status != ERROR_FILE_NOT_FOUND) {
    check(status);
  }
}

void removeRegistryKeyIfEmpty(HKEY root, const std::wstring& path) {
  const auto key = RegistryKey::open(root, path);
  if (key && key->isEmpty()) {
    check(RegDeleteKeyW(root, path.c_str()));
  }
}

}  // namespace zeq::platform
