#include "support/TestKey.h"

#include <array>
#include <cstring>
#include <stdexcept>

namespace zeq::test {
namespace {

class Key {
 public:
  Key(const std::wstring& path, bool create) {
    const LSTATUS status = create ? RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0,
                                                    KEY_ALL_ACCESS, nullptr, &key_, nullptr)
                                  : RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &key_);
    if (status != ERROR_SUCCESS) {
      key_ = nullptr;
    }
  }
  ~Key() { RegCloseKey(key_); }
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;
  [[nodiscard]] HKEY get() const noexcept { return key_; }

 private:
  HKEY key_ = nullptr;
};

/// Gives everybody every kind of access to a key but the denied ones.
bool setAccess(const std::wstring& path, REGSAM denied) noexcept {
  std::array<BYTE, SECURITY_MAX_SID_SIZE> everyone{};
  auto size = static_cast<DWORD>(everyone.size());
  std::array<BYTE, 256> entries{};
  auto* const list = reinterpret_cast<ACL*>(entries.data());
  SECURITY_DESCRIPTOR descriptor{};
  HKEY key = nullptr;
  const bool done = CreateWellKnownSid(WinWorldSid, nullptr, everyone.data(), &size) != FALSE &&
                    InitializeAcl(list, static_cast<DWORD>(entries.size()), ACL_REVISION) != FALSE &&
                    AddAccessDeniedAce(list, ACL_REVISION, denied, everyone.data()) != FALSE &&
                    AddAccessAllowedAce(list, ACL_REVISION, KEY_ALL_ACCESS, everyone.data()) != FALSE &&
                    InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION) != FALSE &&
                    SetSecurityDescriptorDacl(&descriptor, TRUE, list, FALSE) != FALSE &&
                    RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, WRITE_DAC, &key) == ERROR_SUCCESS &&
                    RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, &descriptor) == ERROR_SUCCESS;
  RegCloseKey(key);
  return done;
}

}  // namespace

TestKey::TestKey() : path_(L"Software\\ZEQUtility2Test" + std::to_wstring(GetCurrentProcessId())) {
  const Key key(path_, true);
  if (key.get() == nullptr) {
    throw std::runtime_error("no registry key for the test");
  }
}

TestKey::~TestKey() {
  RegDeleteTreeW(HKEY_CURRENT_USER, path_.c_str());
  RegDeleteKeyW(HKEY_CURRENT_USER, path_.c_str());
}

std::wstring TestKey::path(std::wstring_view below) const {
  return below.empty() ? path_ : path_ + L"\\" + std::wstring(below);
}

bool TestKey::exists(std::wstring_view below) const {
  return Key(path(below), false).get() != nullptr;
}

TestKey::Value TestKey::value(std::wstring_view below, const std::wstring& name) const {
  const Key key(path(below), false);
  Value result;
  DWORD size = 0;
  if (RegQueryValueExW(key.get(), name.c_str(), nullptr, &result.type, nullptr, &size) == ERROR_SUCCESS) {
    result.data.resize(size);
    RegQueryValueExW(key.get(), name.c_str(), nullptr, &result.type, result.data.data(), &size);
  }
  return result;
}

void TestKey::setValue(std::wstring_view below, const std::wstring& name, const Value& value) {
  const Key key(path(below), true);
  if (RegSetValueExW(key.get(), name.c_str(), 0, value.type, value.data.data(),
                     static_cast<DWORD>(value.data.size())) != ERROR_SUCCESS) {
    throw std::runtime_error("the registry value cannot be set");
  }
}

std::shared_ptr<void> TestKey::deny(std::wstring_view below, REGSAM access) const {
  const std::wstring denied = path(below);
  if (!setAccess(denied, access)) {
    throw std::runtime_error("the access to the registry key cannot be denied");
  }
  return {nullptr, [denied](void*) { setAccess(denied, 0); }};
}

std::wstring TestKey::text(std::wstring_view below, const std::wstring& name) const {
  const Value stored = value(below, name);
  if (stored.type != REG_SZ || stored.data.size() < sizeof(wchar_t)) {
    throw std::runtime_error("not a string value");
  }
  std::wstring result(stored.data.size() / sizeof(wchar_t), L'\0');
  std::memcpy(result.data(), stored.data.data(), stored.data.size());
  if (result.back() != L'\0') {
    throw std::runtime_error("not terminated");
  }
  result.pop_back();
  return result;
}

TestKey::Value TestKey::textValue(std::wstring_view text) {
  const std::wstring terminated(text);
  Value value{REG_SZ, std::vector<BYTE>((terminated.size() + 1) * sizeof(wchar_t))};
  std::memcpy(value.data.data(), terminated.c_str(), value.data.size());
  return value;
}

}  // namespace zeq::test
