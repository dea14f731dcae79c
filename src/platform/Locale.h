#pragma once
// The current user's regional settings.

namespace zeq::platform {

/// The decimal separator for numbers in texts.
[[nodiscard]] wchar_t decimalSeparator() noexcept;

}  // namespace zeq::platform
