#include "inifiles/CVersionInfo.h"

#include <optional>
#include <string_view>
#include <tuple>

#include "automation/Variant.h"
#include "inifiles/CIniFile.h"
#include "utility/MZEQUtilityStrings.h"

namespace zeq::inifiles {
namespace {

using automation::ComPtr;
using automation::Error;
using automation::ErrorNumber;
using automation::raising;
using automation::text;
using automation::Variant;

using Version = std::tuple<long, long, long>;

Version versionOf(const long* major, const long* minor, const long* revision) {
  if (major == nullptr || minor == nullptr || revision == nullptr) {
    throw Error(E_POINTER);
  }
  return {*major, *minor, *revision};
}

/// A text as another type, if the automation conversion recognises it.
std::optional<Variant> recognised(std::wstring_view text, VARTYPE type) {
  Variant value;
  if (FAILED(automation::changeType(value.get(), Variant(text).get(), type))) {
    return std::nullopt;
  }
  return value;
}

/// Stores a text that is a number, rounded to a whole one with halves to even. Throws beyond 16 bits.
void storeNumber(long& field, std::wstring_view text) {
  const std::optional<Variant> number = recognised(text, VT_R8);
  if (!number) {
    return;
  }
  Variant whole;
  if (FAILED(automation::changeType(whole.get(), number->get(), VT_I2))) {
    throw Error(ErrorNumber::overflow);
  }
  field = whole.get().iVal;
}

/// Stores a text that is a date. The delimiters of a date literal may stand around it.
void storeDate(DATE& field, std::wstring_view text) {
  if (text.size() >= 2 && text.front() == L'#' && text.back() == L'#') {
    text = text.substr(1, text.size() - 2);
  }
  if (const std::optional<Variant> date = recognised(text, VT_DATE)) {
    field = date->get().date;
  }
}

}  // namespace

STDMETHODIMP CVersionInfo::get_ItemName(BSTR* result) noexcept {
  return raising(result, [&] { return std::wstring_view(fields_.itemName); });
}

STDMETHODIMP CVersionInfo::put_ItemName(BSTR value) noexcept {
  return raising([&] { fields_.itemName = text(value); });
}

STDMETHODIMP CVersionInfo::get_CreationDate(DATE* result) noexcept {
  return raising(result, [&] { return fields_.creationDate; });
}

STDMETHODIMP CVersionInfo::put_CreationDate(DATE value) noexcept {
  return raising([&] { fields_.creationDate = value; });
}

STDMETHODIMP CVersionInfo::get_VerMajor(long* result) noexcept {
  return raising(result, [&] { return fields_.major; });
}

STDMETHODIMP CVersionInfo::put_VerMajor(long value) noexcept {
  return raising([&] { fields_.major = value; });
}

STDMETHODIMP CVersionInfo::get_VerMinor(long* result) noexcept {
  return raising(result, [&] { return fields_.minor; });
}

STDMETHODIMP CVersionInfo::put_VerMinor(long value) noexcept {
  return raising([&] { fields_.minor = value; });
}

STDMETHODIMP CVersionInfo::get_Revision(long* result) noexcept {
  return raising(result, [&] { return fields_.revision; });
}

STDMETHODIMP CVersionInfo::put_Revision(long value) noexcept {
  return raising([&] { fields_.revision = value; });
}

STDMETHODIMP CVersionInfo::get_description(BSTR* result) noexcept {
  return raising(result, [&] { return std::wstring_view(fields_.description); });
}

STDMETHODIMP CVersionInfo::put_description(BSTR value) noexcept {
  return raising([&] { fields_.description = text(value); });
}

STDMETHODIMP CVersionInfo::Clear() noexcept {
  return raising([&] { fields_ = {}; });
}

STDMETHODIMP CVersionInfo::IsEqualTo(long* mj, long* mn, long* rv, VARIANT_BOOL* result) noexcept {
  return raising(result, [&] {
    return Version(fields_.major, fields_.minor, fields_.revision) == versionOf(mj, mn, rv);
  });
}

STDMETHODIMP CVersionInfo::IsLaterThan(long* mj, long* mn, long* rv, VARIANT_BOOL* result) noexcept {
  return raising(result, [&] {
    return Version(fields_.major, fields_.minor, fields_.revision) > versionOf(mj, mn, rv);
  });
}

STDMETHODIMP CVersionInfo::IsLaterThanVer(::_CVersionInfo** ver, VARIANT_BOOL* result) noexcept {
  return raising(result, [&] {
    if (ver == nullptr || *ver == nullptr) {
      throw Error(ErrorNumber::objectNotSet);
    }
    // The other version may be a client's own object.
    const auto alive = keepAlive();
    const ComPtr<::_CVersionInfo> other(*ver);
    long major = 0;
    long minor = 0;
    long revision = 0;
    automation::check(other->get_VerMajor(&major));
    automation::check(other->get_VerMinor(&minor));
    automation::check(other->get_Revision(&revision));
    VARIANT_BOOL isLater = VARIANT_FALSE;
    automation::check(IsLaterThan(&major, &minor, &revision, &isLater));
    return isLater != VARIANT_FALSE;
  });
}

STDMETHODIMP CVersionInfo::ReadFromIniFile(BSTR* fn, BSTR* sectID, VARIANT_BOOL* result) noexcept {
  return raising(result, [&] {
    const std::wstring_view section = automation::optionalText(sectID);
    const auto reader = CIniFile::make();
    reader->setFileName(text(fn));
    reader->setSection(section.empty() ? L"VERSION" : section);
    const auto read = [&](std::wstring_view key, std::wstring_view fallback) {
      return std::wstring(utility::trimmed(reader->getString(key, {}, fallback)));
    };
    fields_.itemName = read(L"ItemName", L"");
    storeDate(fields_.creationDate, read(L"CreationDate", L"#01/01/1996#"));
    storeNumber(fields_.major, read(L"VerMajor", L"1"));
    storeNumber(fields_.minor, read(L"VerMinor", L"1"));
    storeNumber(fields_.revision, read(L"Revision", L"1"));
    fields_.description = read(L"Description", L"");
    return true;
  });
}

}  // namespace zeq::inifiles
