#include <gmock/gmock.h>

#include <limits>

#include "support/Component.h"
#include "support/ImportHook.h"
#include "support/Leaks.h"

namespace zeq::test {
namespace {

constexpr HRESULT overflow = static_cast<HRESULT>(0x800A0006);
constexpr double huge = std::numeric_limits<double>::max();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double mebibyte = 1048576;

class CFakeDriveTest : public testing::Test {
 protected:
  using Getter = HRESULT (STDMETHODCALLTYPE _CFakeDrive::*)(double*);
  using Setter = HRESULT (STDMETHODCALLTYPE _CFakeDrive::*)(double);

  double number(Getter getter) {
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
  void describe(double capacity, double base, double margin) {
    EXPECT_EQ(drive->put_Capacity(capacity), S_OK);
    EXPECT_EQ(drive->put_SpaceUsed(base), S_OK);
    EXPECT_EQ(drive->put_SafetyMargin(margin), S_OK);
  }

  ComPtr<_CFakeDrive> drive = create<CFakeDrive, _CFakeDrive>();
  Late late{drive};
};

TEST_F(CFakeDriveTest, StartsEmpty) {
  for (const Getter getter :
       {&_CFakeDrive::get_FreeSpace, &_CFakeDrive::get_SpaceUsed, &_CFakeDrive::get_SafetyMargin,
        &_CFakeDrive::get_Capacity, &_CFakeDrive::get_Delta, &_CFakeDrive::get_LowTide,
        &_CFakeDrive::get_HighTide, &_CFakeDrive::get_LowTideDelta, &_CFakeDrive::get_HighTideDelta}) {
    EXPECT_EQ(number(getter), 0);
  }
  EXPECT_FALSE(tooFull());
  EXPECT_EQ(asString(),
            L"[]  Capacity: 0.000M  FreeSpace: 0.000M  Delta: 0.000M  LowTide: 0.000M  LowTideDelta: 0.000M  "
            L"HighTide: 0.000M  HighTideDelta: 0.000M  ");
}

TEST_F(CFakeDriveTest, KeepsTides) {
  drive->put_SpaceUsed(1000);
  drive->UseBytes(100);
  drive->FreeBytes(300);
  EXPECT_EQ(number(&_CFakeDrive::get_Delta), -200);
  EXPECT_EQ(number(&_CFakeDrive::get_LowTideDelta), -200);
  EXPECT_EQ(number(&_CFakeDrive::get_HighTideDelta), 100);
  EXPECT_EQ(number(&_CFakeDrive::get_SpaceUsed), 800);
  EXPECT_EQ(number(&_CFakeDrive::get_LowTide), 800);
  EXPECT_EQ(number(&_CFakeDrive::get_HighTide), 1100);
  EXPECT_EQ(number(&_CFakeDrive::get_FreeSpace), -800);
}

TEST_F(CFakeDriveTest, StaysTooFullOnceItWas) {
  describe(1000, 900, 50);
  drive->UseBytes(50);
  EXPECT_EQ(number(&_CFakeDrive::get_HighTide), 950);
  EXPECT_FALSE(tooFull());
  drive->UseBytes(1);
  EXPECT_TRUE(tooFull());
  drive->FreeBytes(500);
  EXPECT_TRUE(tooFull());
  EXPECT_EQ(number(&_CFakeDrive::get_HighTide), 951);
}

TEST_F(CFakeDriveTest, SettingADescriptionResetsTheBalanceEvenToTheSameValue) {
  describe(1000, 900, 50);
  const std::pair<Setter, double> setters[]{{&_CFakeDrive::put_Capacity, 1000},
                                            {&_CFakeDrive::put_SpaceUsed, 900},
                                            {&_CFakeDrive::put_SafetyMargin, 50}};
  for (const auto& [setter, value] : setters) {
    drive->UseBytes(10);
    drive->FreeBytes(30);
    EXPECT_EQ((drive.get()->*setter)(value), S_OK);
    EXPECT_EQ(number(&_CFakeDrive::get_Delta), 0);
    EXPECT_EQ(number(&_CFakeDrive::get_LowTideDelta), 0);
    EXPECT_EQ(number(&_CFakeDrive::get_HighTideDelta), 0);
  }
}

TEST_F(CFakeDriveTest, SettingSpaceUsedToWhatWasReadDoesNotCountTwice) {
  describe(1000, 100, 0);
  drive->UseBytes(50);
  drive->put_SpaceUsed(number(&_CFakeDrive::get_SpaceUsed));
  EXPECT_EQ(number(&_CFakeDrive::get_SpaceUsed), 150);
  EXPECT_EQ(number(&_CFakeDrive::get_Delta), 0);
}

TEST_F(CFakeDriveTest, ResetLimitsKeepsTheDescription) {
  describe(1000, 900, 50);
  drive->put_Name(Bstr(L"C:").get());
  drive->UseBytes(7);
  drive->FreeBytes(9);
  EXPECT_EQ(drive->ResetLimits(), S_OK);
  EXPECT_EQ(number(&_CFakeDrive::get_SpaceUsed), 900);
  EXPECT_EQ(number(&_CFakeDrive::get_LowTide), 900);
  EXPECT_EQ(number(&_CFakeDrive::get_HighTide), 900);
  EXPECT_EQ(number(&_CFakeDrive::get_Capacity), 1000);
  EXPECT_EQ(number(&_CFakeDrive::get_SafetyMargin), 50);
  Bstr name;
  drive->get_Name(name.out());
  EXPECT_EQ(name.view(), L"C:");
}

TEST_F(CFakeDriveTest, NameIsStoredUnchanged) {
  const std::wstring_view odd(L" c: \0x", 7);
  EXPECT_EQ(drive->put_Name(Bstr(odd).get()), S_OK);
  Bstr name;
  EXPECT_EQ(drive->get_Name(name.out()), S_OK);
  EXPECT_EQ(name.view(), odd);
  EXPECT_TRUE(asString().starts_with(L"[" + std::wstring(odd) + L"]  Capacity: "));
  EXPECT_EQ(drive->put_Name(nullptr), S_OK);
  EXPECT_TRUE(asString().starts_with(L"[]  "));
}

TEST_F(CFakeDriveTest, DescribesItselfInMebibytes) {
  drive->put_Name(Bstr(L"C:").get());
  drive->put_Capacity(1024 * mebibyte);
  EXPECT_EQ(asString(),
            L"[C:]  Capacity: 1024.000M  FreeSpace: 1024.000M  Delta: 0.000M  LowTide: 0.000M  LowTideDelta: "
            L"0.000M  "
            L"HighTide: 0.000M  HighTideDelta: 0.000M  ");
  drive->put_SpaceUsed(mebibyte / 2);
  drive->UseBytes(2 * mebibyte);
  drive->FreeBytes(3.25 * mebibyte);
  EXPECT_EQ(asString(),
            L"[C:]  Capacity: 1024.000M  FreeSpace: 1024.750M  Delta: -1.250M  LowTide: -0.750M  "
            L"LowTideDelta: -1.250M  HighTide: 2.500M  HighTideDelta: 2.000M  ");
}

TEST_F(CFakeDriveTest, SignsWhatIsBelowZeroHoweverLittle) {
  drive->UseBytes(100);
  drive->FreeBytes(300);
  EXPECT_EQ(
      asString(),
      L"[]  Capacity: 0.000M  FreeSpace: 0.000M  Delta: -0.000M  LowTide: -0.000M  LowTideDelta: -0.000M  "
      L"HighTide: 0.000M  HighTideDelta: 0.000M  ");
}

int WINAPI answerComma(LCID /*locale*/, LCTYPE type, wchar_t* text, int size) {
  EXPECT_EQ(type, LCTYPE{LOCALE_SDECIMAL});
  EXPECT_GE(size, 2);
  text[0] = L',';
  text[1] = L'\0';
  return 2;
}

TEST_F(CFakeDriveTest, DescribesItselfAsTheUserWritesNumbers) {
  const ImportHook hook(component(), "GetLocaleInfoW", &answerComma);
  drive->put_Capacity(1.5 * mebibyte);
  EXPECT_TRUE(asString().starts_with(L"[]  Capacity: 1,500M  FreeSpace: 1,500M  Delta: 0,000M  "));
}

TEST_F(CFakeDriveTest, AcceptsAnyNumberAsItIs) {
  describe(-1000, -5, -7);
  EXPECT_EQ(number(&_CFakeDrive::get_Capacity), -1000);
  EXPECT_EQ(number(&_CFakeDrive::get_SpaceUsed), -5);
  EXPECT_EQ(number(&_CFakeDrive::get_SafetyMargin), -7);
  EXPECT_TRUE(tooFull());
  drive->UseBytes(-10);
  drive->FreeBytes(-4);
  EXPECT_EQ(number(&_CFakeDrive::get_Delta), -6);
  EXPECT_EQ(number(&_CFakeDrive::get_LowTideDelta), -10);
}

TEST_F(CFakeDriveTest, OverflowIsAnErrorThatChangesNothing) {
  drive->UseBytes(huge);
  for (const double amount : {huge, infinity, -infinity, notANumber}) {
    EXPECT_EQ(drive->UseBytes(amount), overflow);
    EXPECT_EQ(number(&_CFakeDrive::get_Delta), huge);
    EXPECT_EQ(number(&_CFakeDrive::get_HighTideDelta), huge);
    EXPECT_EQ(number(&_CFakeDrive::get_LowTideDelta), 0);
  }
  EXPECT_EQ(drive->FreeBytes(-huge), overflow);
  EXPECT_EQ(number(&_CFakeDrive::get_Delta), huge);
}

TEST_F(CFakeDriveTest, DerivedValuesThatOverflowAreErrors) {
  describe(-huge, huge, huge);
  double value = 1;
  EXPECT_EQ(drive->get_FreeSpace(&value), overflow);
  EXPECT_EQ(value, 0);
  VARIANT_BOOL full = VARIANT_TRUE;
  EXPECT_EQ(drive->get_TooFull(&full), overflow);
  Bstr text;
  EXPECT_EQ(drive->get_AsString(text.out()), overflow);
  EXPECT_EQ(text.get(), nullptr);
  drive->UseBytes(huge);
  EXPECT_EQ(drive->get_SpaceUsed(&value), overflow);
  EXPECT_EQ(drive->get_HighTide(&value), overflow);
  EXPECT_EQ(drive->get_LowTide(&value), S_OK);
}

TEST_F(CFakeDriveTest, AnswersByName) {
  for (const wchar_t* property : {L"SpaceUsed", L"SafetyMargin", L"Capacity"}) {
    EXPECT_EQ(late.put(property, Variant(250.0)).code, S_OK);
    EXPECT_EQ(late.get(property).get().dblVal, 250.0) << property;
  }
  late.put(L"Name", Variant(L"D:"));
  EXPECT_EQ(textIn(late.get(L"Name")), L"D:");
  EXPECT_EQ(late.call(L"UseBytes", Variant(short{10})).code, S_OK);
  EXPECT_EQ(late.call(L"FreeBytes", Variant(L"30")).code, S_OK);
  for (const auto& [property, value] :
       {std::pair{L"Delta", -20.0}, std::pair{L"LowTideDelta", -20.0}, std::pair{L"HighTideDelta", 10.0},
        std::pair{L"LowTide", 230.0}, std::pair{L"HighTide", 260.0}, std::pair{L"FreeSpace", 20.0},
        std::pair{L"SpaceUsed", 230.0}}) {
    EXPECT_EQ(late.get(property).get().dblVal, value) << property;
  }
  EXPECT_EQ(late.get(L"TooFull").get().boolVal, VARIANT_TRUE);
  EXPECT_TRUE(textIn(late.get(L"AsString")).starts_with(L"[D:]  Capacity: "));
  EXPECT_EQ(late.call(L"ResetLimits").code, S_OK);
  EXPECT_EQ(late.get(L"Delta").get().dblVal, 0.0);
}

TEST_F(CFakeDriveTest, ReportsOverflowByName) {
  late.call(L"UseBytes", Variant(huge));
  const Outcome outcome = late.call(L"UseBytes", Variant(huge));
  EXPECT_EQ(outcome.code, DISP_E_EXCEPTION);
  EXPECT_EQ(outcome.scode, overflow);
  EXPECT_EQ(outcome.description, L"Overflow");
  EXPECT_EQ(late.call(L"UseBytes", Variant(L"much")).code, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(late.put(L"Delta", Variant(1.0)).code, DISP_E_MEMBERNOTFOUND);
}

TEST_F(CFakeDriveTest, RefusesNullResults) {
  EXPECT_EQ(drive->get_Capacity(nullptr), E_POINTER);
  EXPECT_EQ(drive->get_AsString(nullptr), E_POINTER);
  EXPECT_EQ(drive->get_TooFull(nullptr), E_POINTER);
}

TEST_F(CFakeDriveTest, NoMemberLeaks) {
  drive->put_Name(Bstr(L"C:").get());
  for (const wchar_t* property :
       {L"FreeSpace", L"SpaceUsed", L"SafetyMargin", L"Capacity", L"Delta", L"LowTide", L"HighTide",
        L"LowTideDelta", L"HighTideDelta", L"TooFull", L"Name", L"AsString"}) {
    expectNoLeak(10000, [&] { late.get(property); });
  }
  for (const wchar_t* property : {L"SpaceUsed", L"SafetyMargin", L"Capacity", L"Name"}) {
    expectNoLeak(10000, [&] { late.put(property, Variant(L"1000")); });
  }
  for (const wchar_t* method : {L"UseBytes", L"FreeBytes"}) {
    expectNoLeak(10000, [&] { late.call(method, Variant(L"100")); });
  }
  expectNoLeak(10000, [&] { late.call(L"ResetLimits"); });
}

TEST_F(CFakeDriveTest, LeaksNothing) {
  expectNoLeak(10000, [&] {
    const auto made = create<CFakeDrive, _CFakeDrive>();
    made->put_Name(Bstr(L"C:").get());
    made->put_Capacity(1000);
    made->UseBytes(huge);
    made->UseBytes(huge);
    Bstr text;
    made->get_AsString(text.out());
    made->get_Name(text.out());
  });
}

}  // namespace
}  // namespace zeq::test
