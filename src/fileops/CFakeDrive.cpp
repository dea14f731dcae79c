#include "fileops/CFakeDrive.h"

#include <array>

#include "platform/Locale.h"
#include "utility/Format.h"

namespace zeq::fileops {

using automation::raising;

STDMETHODIMP CFakeDrive::get_FreeSpace(double* result) noexcept {
  return raising(result, [&] { return usage_.freeSpace(); });
}

STDMETHODIMP CFakeDrive::get_SpaceUsed(double* result) noexcept {
  return raising(result, [&] { return usage_.spaceUsed(); });
}

STDMETHODIMP CFakeDrive::put_SpaceUsed(double value) noexcept {
  return raising([&] { usage_.setBaseSpaceUsed(value); });
}

STDMETHODIMP CFakeDrive::get_SafetyMargin(double* result) noexcept {
  return raising(result, [&] { return usage_.safetyMargin(); });
}

STDMETHODIMP CFakeDrive::put_SafetyMargin(double value) noexcept {
  return raising([&] { usage_.setSafetyMargin(value); });
}

STDMETHODIMP CFakeDrive::get_Capacity(double* result) noexcept {
  return raising(result, [&] { return usage_.capacity(); });
}

STDMETHODIMP CFakeDrive::put_Capacity(double value) noexcept {
  return raising([&] { usage_.setCapacity(value); });
}

STDMETHODIMP CFakeDrive::get_Delta(double* result) noexcept {
  return raising(result, [&] { return usage_.delta(); });
}

STDMETHODIMP CFakeDrive::get_LowTide(double* result) noexcept {
  return raising(result, [&] { return usage_.lowTide(); });
}

STDMETHODIMP CFakeDrive::get_HighTide(double* result) noexcept {
  return raising(result, [&] { return usage_.highTide(); });
}

STDMETHODIMP CFakeDrive::get_LowTideDelta(double* result) noexcept {
  return raising(result, [&] { return usage_.lowTideDelta(); });
}

STDMETHODIMP CFakeDrive::get_HighTideDelta(double* result) noexcept {
  return raising(result, [&] { return usage_.highTideDelta(); });
}

STDMETHODIMP CFakeDrive::get_TooFull(VARIANT_BOOL* result) noexcept {
  return raising(result, [&] { return usage_.tooFull(); });
}

STDMETHODIMP CFakeDrive::get_Name(BSTR* result) noexcept {
  return raising(result, [&] { return std::wstring_view(name_); });
}

STDMETHODIMP CFakeDrive::put_Name(BSTR value) noexcept {
  return raising([&] { name_ = automation::text(value); });
}

STDMETHODIMP CFakeDrive::get_AsString(BSTR* result) noexcept {
  return raising(result, [&] {
    struct Labelled {
      std::wstring_view label;
      double bytes;
    };
    const std::array values{
        Labelled{L"Capacity: ", usage_.capacity()},
        Labelled{L"FreeSpace: ", usage_.freeSpace()},
        Labelled{L"Delta: ", usage_.delta()},
        Labelled{L"LowTide: ", usage_.lowTide()},
        Labelled{L"LowTideDelta: ", usage_.lowTideDelta()},
        Labelled{L"HighTide: ", usage_.highTide()},
        Labelled{L"HighTideDelta: ", usage_.highTideDelta()},
    };
    constexpr double mebibyte = 1048576;
    const wchar_t separator = platform::decimalSeparator();
    std::wstring line = L"[" + name_ + L"]  ";
    for (const auto& [label, bytes] : values) {
      line.append(label).append(utility::formatNumber(bytes / mebibyte, 1, 3, separator)).append(L"M  ");
    }
    return line;
  });
}

STDMETHODIMP CFakeDrive::UseBytes(double bytesUsedA) noexcept {
  return raising([&] { usage_.use(bytesUsedA); });
}

STDMETHODIMP CFakeDrive::FreeBytes(double bytesFreedA) noexcept {
  return raising([&] { usage_.free(bytesFreedA); });
}

STDMETHODIMP CFakeDrive::ResetLimits() noexcept {
  return raising([&] { usage_.reset(); });
}

}  // namespace zeq::fileops
