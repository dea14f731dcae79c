#pragma once
// The text functions of MZEQUtilityStrings for clients.

#include "ZEQUtility2.h"
#include "automation/Object.h"

namespace zeq::utility {

class CZEQUtilityStrings final
    : public automation::Object<CZEQUtilityStrings, ::CZEQUtilityStrings, ::_CZEQUtilityStrings> {
 public:
  STDMETHODIMP Str_Plural(long n, BSTR singular, BSTR* result) noexcept override;
  STDMETHODIMP Str_Compare(BSTR s1, BSTR s2, VARIANT_BOOL caseSensitive, VARIANT_BOOL trimSpace,
                           VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP Str_ReplaceSimpleKeyWord(BSTR* OrigA, BSTR* KeyWordA, BSTR* ReplacementA,
                                        BSTR* result) noexcept override;
  STDMETHODIMP StrUtil_MakeTimeCodeString(double SecsTimeA, enumVideoTimeStringFormat TStringFormatA,
                                          double fpsA, BSTR* result) noexcept override;
  STDMETHODIMP StrUtil_SecsToTimeCodeStr(double secs, BSTR* result) noexcept override;
  STDMETHODIMP StrUtil_SecsToTimeStr(double secs, BSTR fmt, VARIANT_BOOL verbose,
                                     BSTR* result) noexcept override;
  STDMETHODIMP StrUtil_KiloMegaGigaString(double sz, enumFileSizeUnits szUnits,
                                          BSTR* result) noexcept override;
  STDMETHODIMP StrUtil_KeyCodeToString(short KeyCode, short Shift, VARIANT_BOOL addShiftString,
                                       BSTR* result) noexcept override;
  STDMETHODIMP StrUtil_KeyCodeToNumericString(short KeyCode, short Shift, BSTR* result) noexcept override;
  STDMETHODIMP URLEncode(BSTR OrigA, BSTR* result) noexcept override;
};

}  // namespace zeq::utility
