#include "platform/Registry.h"

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <system_error>
#include <vector>

namespace zeq::platform {
namespace {

class RegistryTest : public testing::Test {
 protected:
  ~RegistryTest() override { RegDeleteTreeW(HKEY_CURRENT_USER, path.c_str()); }

  const std::wstring path = L"Software\\ZEQUtility2 tests";
};

int codeOf(const std::function<void()>& body) {
  try {
    body();
  } catch (const std::system_error& error) {
    EXPECT_EQ(error.code().category(), std::system_category());
    return error.code().value();
  }
  return ERROR_SUCCESS;
}

TEST_F(RegistryTest, CreatesKeysWithTheirParents) {
  const auto first = RegistryKey::create(HKEY_CURRENT_USER, path + L"\\a\\b");
  EXPECT_TRUE(first.isNew());
  EXPECT_TRUE(first.isEmpty());
  EXPECT_FALSE(RegistryKey::create(HKEY_CURRENT_USER, path + L"\\a").isNew());
  EXPECT_FALSE(RegistryKey::create(HKEY_CURRENT_USER, path + L"\\a").isEmpty());
}

TEST_F(RegistryTest, OpensWhatIsThere) {
  EXPECT_FALSE(RegistryKey::open(HKEY_CURRENT_USER, path));
  static_cast<void>(RegistryKey::create(HKEY_CURRENT_USER, path));
  EXPECT_TRUE(RegistryKey::open(HKEY_CURRENT_USER, path));
}

TEST_F(RegistryTest, KeepsTexts) {
  auto key = RegistryKey::create(HKEY_CURRENT_USER, path);
  EXPECT_FALSE(key.value(L""));
  key.setValue(L"", RegistryValue::text(L"default \u00E9"));
  key.setValue(L"named", RegistryValue::text(L""));
  std::wstring data(64, L'\0');
  DWORD size = 128;
  ASSERT_EQ(
      RegGetValueW(HKEY_CURRENT_USER, path.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, data.data(), &size),
      ERROR_SUCCESS);
  EXPECT_EQ(std::wstring(data.c_str()), L"default \u00E9");
  EXPECT_EQ(size, 20U);
  EXPECT_FALSE(key.isEmpty());
  EXPECT_EQ(key.value(L"named")->data.size(), 2U);
}

TEST_F(RegistryTest, KeepsEveryTypeAsItIs) {
  auto key = RegistryKey::create(HKEY_CURRENT_USER, path);
  const RegistryValue binary{REG_BINARY, std::vector<BYTE>(100000, BYTE{7})};
  key.setValue(L"binary", binary);
  const auto read = key.value(L"binary");
  ASSERT_TRUE(read);
  EXPECT_EQ(read->type, DWORD{REG_BINARY});
  EXPECT_EQ(read->data, binary.data);
  key.setValue(L"nothing", {REG_NONE, {}});
  EXPECT_EQ(key.value(L"nothing")->data.size(), 0U);
}

TEST_F(RegistryTest, RemovesValues) {
  auto key = RegistryKey::create(HKEY_CURRENT_USER, path);
  key.setValue(L"named", RegistryValue::text(L"x"));
  key.removeValue(L"named");
  EXPECT_TRUE(key.isEmpty());
  EXPECT_EQ(codeOf([&] { key.removeValue(L"named"); }), ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistryTest, RemovesTrees) {
  RegistryKey::create(HKEY_CURRENT_USER, path + L"\\a\\b").setValue(L"x", RegistryValue::text(L"y"));
  removeRegistryKeyIfEmpty(HKEY_CURRENT_USER, path + L"\\a");
  EXPECT_TRUE(RegistryKey::open(HKEY_CURRENT_USER, path + L"\\a\\b"));
  removeRegistryTree(HKEY_CURRENT_USER, path + L"\\a");
  EXPECT_FALSE(RegistryKey::open(HKEY_CURRENT_USER, path + L"\\a"));
  removeRegistryTree(HKEY_CURRENT_USER, path + L"\\a");
  removeRegistryKeyIfEmpty(HKEY_CURRENT_USER, path);
  EXPECT_FALSE(RegistryKey::open(HKEY_CURRENT_USER, path));
  removeRegistryKeyIfEmpty(HKEY_CURRENT_USER, path);
}

TEST_F(RegistryTest, ReportsTheSystemsError) {
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_WRITE,
                            nullptr, &key, nullptr),
            ERROR_SUCCESS);
  RegCloseKey(key);
  EXPECT_EQ(codeOf([&] { static_cast<void>(RegistryKey::create(HKEY_CURRENT_USER, path + L"\\lasting")); }),
            ERROR_CHILD_MUST_BE_VOLATILE);
}

}  // namespace
}  // namespace zeq::platform
