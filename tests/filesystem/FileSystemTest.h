#pragma once
// The file system object of the built component, its members as functions, and a folder to work in.

#include <gmock/gmock.h>

#include <string>
#include <string_view>

#include "support/Component.h"
#include "support/TempFolder.h"

namespace zeq::test {

class FileSystemTest : public testing::Test {
 protected:
  using Fso = _CZEQFileSystemObject;

  // By the types of a member's arguments: a path by reference or by value, and the kind of result.
  std::wstring textOf(HRESULT (STDMETHODCALLTYPE Fso::*member)(BSTR*, BSTR*), std::wstring_view path) {
    const Bstr argument(path);
    BSTR pointer = argument.get();
    Bstr result;
    EXPECT_EQ((fso.get()->*member)(&pointer, result.out()), S_OK);
    return std::wstring(result.view());
  }
  bool test(HRESULT (STDMETHODCALLTYPE Fso::*member)(BSTR*, VARIANT_BOOL*), std::wstring_view path) {
    const Bstr argument(path);
    BSTR pointer = argument.get();
    VARIANT_BOOL result = 1;
    EXPECT_EQ((fso.get()->*member)(&pointer, &result), S_OK);
    return isTrue(result);
  }
  bool test(HRESULT (STDMETHODCALLTYPE Fso::*member)(BSTR, VARIANT_BOOL*), std::wstring_view path) {
    VARIANT_BOOL result = 1;
    EXPECT_EQ((fso.get()->*member)(Bstr(path).get(), &result), S_OK);
    return isTrue(result);
  }
  double numberOf(HRESULT (STDMETHODCALLTYPE Fso::*member)(BSTR, double*), std::wstring_view path) {
    double result = -1;
    EXPECT_EQ((fso.get()->*member)(Bstr(path).get(), &result), S_OK);
    return result;
  }
  ComPtr<IDispatch> objectOf(HRESULT (STDMETHODCALLTYPE Fso::*member)(BSTR, IDispatch**),
                             std::wstring_view path) {
    ComPtr<IDispatch> result;
    EXPECT_EQ((fso.get()->*member)(Bstr(path).get(), result.out()), S_OK);
    return result;
  }

  std::wstring buildPath(std::wstring_view path, std::wstring_view name) {
    const Bstr pathArgument(path);
    const Bstr nameArgument(name);
    BSTR pathPointer = pathArgument.get();
    BSTR namePointer = nameArgument.get();
    Bstr result;
    EXPECT_EQ(fso->FSO_BuildPath(&pathPointer, &namePointer, result.out()), S_OK);
    return std::wstring(result.view());
  }

  /// Automation's own two values for a boolean and no other.
  static bool isTrue(VARIANT_BOOL value) {
    EXPECT_TRUE(value == VARIANT_TRUE || value == VARIANT_FALSE) << value;
    return value == VARIANT_TRUE;
  }

  ComPtr<Fso> fso = create<CZEQFileSystemObject, Fso>();
  TempFolder temp;
};

}  // namespace zeq::test
