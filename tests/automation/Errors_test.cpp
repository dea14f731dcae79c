#include "automation/Errors.h"

#include <gmock/gmock.h>
#include <oleauto.h>

#include <new>
#include <stdexcept>
#include <system_error>

#include "automation/ComPtr.h"
#include "automation/Policy.h"
#include "automation/Text.h"

namespace zeq::automation {
namespace {

template <class Thrown>
Failure failureOf(const Thrown& thrown) {
  try {
    throw thrown;
  } catch (...) {
    return currentFailure();
  }
}

std::pair<DWORD, std::wstring> reported(const Failure& failure) {
  return {static_cast<DWORD>(failure.code), failure.description};
}

using Seen = std::pair<DWORD, std::wstring>;

TEST(Errors, EveryKindOfExceptionHasItsCode) {
  EXPECT_EQ(reported(failureOf(Error(ErrorNumber::fileNotFound))), Seen(0x800A0035, L"File not found"));
  EXPECT_EQ(reported(failureOf(Error(E_ACCESSDENIED))).first, static_cast<DWORD>(E_ACCESSDENIED));
  EXPECT_EQ(reported(failureOf(Error(E_FAIL, L"my own"))), Seen(0x80004005, L"my own"));
  EXPECT_EQ(reported(failureOf(std::system_error(ERROR_PATH_NOT_FOUND, std::system_category()))),
            Seen(0x800A004C, L"Path not found"));
  EXPECT_EQ(reported(failureOf(std::system_error(2, std::generic_category()))),
            Seen(0x800A0033, L"Internal error"));
  EXPECT_EQ(reported(failureOf(std::overflow_error(""))), Seen(0x800A0006, L"Overflow"));
  EXPECT_EQ(reported(failureOf(std::bad_alloc())), Seen(0x800A0007, L"Out of memory"));
  EXPECT_EQ(reported(failureOf(std::length_error(""))), Seen(0x800A0007, L"Out of memory"));
  EXPECT_EQ(reported(failureOf(std::out_of_range(""))), Seen(0x800A0033, L"Internal error"));
  EXPECT_EQ(reported(failureOf(42)), Seen(0x800A0033, L"Internal error"));
}

TEST(Errors, PlatformCodesBecomeErrorNumbers) {
  EXPECT_EQ(reported(failureOf(Error(DISP_E_OVERFLOW))), Seen(0x800A0006, L"Overflow"));
  EXPECT_EQ(reported(failureOf(Error(DISP_E_TYPEMISMATCH))), Seen(0x800A000D, L"Type mismatch"));
  EXPECT_EQ(reported(failureOf(Error(DISP_E_DIVBYZERO))), Seen(0x800A000B, L"Division by zero"));
  EXPECT_EQ(reported(failureOf(Error(DISP_E_BADINDEX))), Seen(0x800A0009, L"Subscript out of range"));
  EXPECT_EQ(reported(failureOf(Error(E_OUTOFMEMORY))), Seen(0x800A0007, L"Out of memory"));
}

TEST(Errors, Texts) {
  const struct {
    int number;
    const wchar_t* text;
  } usual[] = {{5, L"Invalid procedure call or argument"},
               {6, L"Overflow"},
               {7, L"Out of memory"},
               {9, L"Subscript out of range"},
               {11, L"Division by zero"},
               {13, L"Type mismatch"},
               {51, L"Internal error"},
               {52, L"Bad file name or number"},
               {53, L"File not found"},
               {55, L"File already open"},
               {57, L"Device I/O error"},
               {58, L"File already exists"},
               {61, L"Disk full"},
               {67, L"Too many files"},
               {68, L"Device unavailable"},
               {70, L"Permission denied"},
               {71, L"Disk not ready"},
               {75, L"Path/File access error"},
               {76, L"Path not found"},
               {91, L"Object variable or With block variable not set"},
               {429, L"ActiveX component can't create object"},
               {438, L"Object doesn't support this property or method"},
               {445, L"Object doesn't support this action"},
               {457, L"This key is already associated with an element of this collection"}};
  for (const auto& [number, text] : usual) {
    EXPECT_EQ(describe(static_cast<HRESULT>(0x800A0000U + static_cast<unsigned>(number))), text);
  }
  EXPECT_FALSE(describe(E_ACCESSDENIED).empty());
  EXPECT_EQ(describe(E_ACCESSDENIED).find_first_of(L"\r\n"), std::wstring::npos);
  EXPECT_EQ(describe(static_cast<HRESULT>(0x800ABEEF)), L"Automation error");
}

TEST(Errors, Win32Codes) {
  const struct {
    DWORD error;
    int number;
  } known[] = {{ERROR_FILE_NOT_FOUND, 53}, {ERROR_PATH_NOT_FOUND, 76},    {ERROR_ACCESS_DENIED, 70},
               {ERROR_WRITE_PROTECT, 70},  {ERROR_SHARING_VIOLATION, 70}, {ERROR_FILE_EXISTS, 58},
               {ERROR_ALREADY_EXISTS, 58}, {ERROR_INVALID_DRIVE, 68},     {ERROR_NOT_READY, 71},
               {ERROR_DISK_FULL, 61},      {ERROR_INVALID_NAME, 52},      {ERROR_DIR_NOT_EMPTY, 75},
               {ERROR_BAD_NETPATH, 76},    {ERROR_GEN_FAILURE, 57}};
  for (const auto& [error, number] : known) {
    EXPECT_EQ(static_cast<int>(numberOfWin32Error(error)), number) << error;
  }
}

/// What the thread's error object says; it is taken.
std::pair<std::wstring, std::wstring> takenError() {
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.out()) != S_OK) {
    return {};
  }
  Bstr source;
  Bstr description;
  info->GetSource(source.out());
  info->GetDescription(description.out());
  return {std::wstring(source.view()), std::wstring(description.view())};
}

TEST(Policy, RaisingReportsAndClears) {
  Bstr text;
  EXPECT_EQ(raising(text.out(), []() -> std::wstring { throw Error(ErrorNumber::diskFull); }),
            static_cast<HRESULT>(0x800A003D));
  EXPECT_EQ(text.get(), nullptr);
  EXPECT_EQ(takenError(), (std::pair<std::wstring, std::wstring>(L"ZEQUtility2", L"Disk full")));
  long number = 7;
  EXPECT_EQ(raising(&number, []() -> long { throw 42; }), static_cast<HRESULT>(0x800A0033));
  EXPECT_EQ(number, 0);
  EXPECT_EQ(raising([] { throw std::bad_alloc(); }), static_cast<HRESULT>(0x800A0007));
  EXPECT_EQ(raising([] {}), S_OK);
}

TEST(Policy, ANullResultIsReported) {
  bool ran = false;
  const auto body = [&] {
    ran = true;
    return 1L;
  };
  SetErrorInfo(0, nullptr);
  EXPECT_EQ(raising(static_cast<long*>(nullptr), body), E_POINTER);
  EXPECT_EQ(takenError().first, L"ZEQUtility2");
  EXPECT_EQ(quietly(static_cast<long*>(nullptr), body), E_POINTER);
  EXPECT_FALSE(ran);
}

TEST(Policy, QuietlyLeavesTheNeutralValue) {
  const auto failing = [](auto value) {
    return [value]() -> decltype(value) { throw Error(ErrorNumber::overflow); };
  };
  SetErrorInfo(0, nullptr);
  long number = 7;
  EXPECT_EQ(quietly(&number, failing(1L)), S_OK);
  EXPECT_EQ(number, 0);
  VARIANT_BOOL flag = VARIANT_TRUE;
  EXPECT_EQ(quietly(&flag, failing(true)), S_OK);
  EXPECT_EQ(flag, VARIANT_FALSE);
  double real = 7;
  EXPECT_EQ(quietly(&real, failing(1.0)), S_OK);
  EXPECT_EQ(real, 0);
  BSTR text = nullptr;
  EXPECT_EQ(quietly(&text, failing(std::wstring(L"x"))), S_OK);
  EXPECT_EQ(text, nullptr);
  VARIANT any{};
  any.vt = VT_I4;
  EXPECT_EQ(quietly(&any, []() -> Variant { throw 42; }), S_OK);
  EXPECT_EQ(any.vt, VT_EMPTY);
  IDispatch* object = reinterpret_cast<IDispatch*>(1);
  EXPECT_EQ(quietly(&object, []() -> ComPtr<IDispatch> { throw 42; }), S_OK);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(quietly([] { throw 42; }), S_OK);
  ComPtr<IErrorInfo> none;
  EXPECT_EQ(GetErrorInfo(0, none.out()), S_FALSE);
}

TEST(Policy, ResultsAreStored) {
  VARIANT_BOOL flag = VARIANT_FALSE;
  EXPECT_EQ(raising(&flag, [] { return true; }), S_OK);
  EXPECT_EQ(flag, VARIANT_TRUE);
  short number = 0;
  EXPECT_EQ(raising(&number, [] { return short{5}; }), S_OK);
  EXPECT_EQ(number, 5);
  Bstr text;
  EXPECT_EQ(raising(text.out(), [] { return std::wstring(L"a\0b", 3); }), S_OK);
  EXPECT_EQ(text.view(), std::wstring_view(L"a\0b", 3));
  Variant any;
  EXPECT_EQ(raising(any.out(), [] { return Variant(5L); }), S_OK);
  EXPECT_EQ(any.get().lVal, 5);
}

TEST(Policy, AFailureLeavesNothingOfAnEarlierOne) {
  EXPECT_EQ(raising([] { throw Error(ErrorNumber::diskFull); }), static_cast<HRESULT>(0x800A003D));
  EXPECT_EQ(raising([] { throw Error(ErrorNumber::overflow); }), static_cast<HRESULT>(0x800A0006));
  EXPECT_EQ(takenError().second, L"Overflow");
}

}  // namespace
}  // namespace zeq::automation
