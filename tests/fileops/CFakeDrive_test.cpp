#include <gmock/gmock.h>

#include "support/Component.h"

namespace zeq::test {
namespace {

class CFakeDriveTest : public testing::Test {
 protected:
  double number(HRESULT (STDMETHODCALLTYPE _CFakeDrive::*getter)(double*)) {
    double value = -1;
    EXPECT_EQ((drive.get()->*getter)(&value), S_OK);
    return value;
  }
  bool tooFull() {
    VARIANT_BOOL value = VARIANT_FALSE;
    EXPECT_EQ(drive->get_TooFull(&value), S_OK);
    return value != VARIANT_FALSE;
  }
  std::wstring asString() {
    Bstr value;
    EXPECT_EQ(drive->get_AsString(value.out()), S_OK);
    return std::wstring(value.view());
  }

  ComPtr<_CFakeDrive> drive = create<CFakeDrive, _CFakeDrive>();
};

TEST_F(CFakeDriveTest, StartsEmpty) {
  EXPECT_EQ(number(&_CFakeDrive::get_Capacity), 0);
  EXPECT_EQ(number(&_CFakeDrive::get_FreeSpace), 0);
  EXPECT_FALSE(tooFull());
  EXPECT_EQ(asString(),
            L"[]  Capacity: 0.000M  FreeSpace: 0.000M  Delta: 0.000M  LowTide: 0.000M  LowTideDelta: 0.000M  "
            L"HighTide: 0.000M  HighTideDelta: 0.000M  ");
}

TEST_F(CFakeDriveTest, KeepsTides) {
  drive->UseBytes(100);
  drive->FreeBytes(300);
  EXPECT_EQ(number(&_CFakeDrive::get_Delta), -200);
  EXPECT_EQ(number(&_CFakeDrive::get_LowTideDelta), -200);
  EXPECT_EQ(number(&_CFakeDrive::get_HighTideDelta), 100);
}

}  // namespace
}  // namespace zeq::test
