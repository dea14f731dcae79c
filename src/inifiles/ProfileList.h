#pragma once
// The lists that the system's private-profile functions return: entries that each end in a NUL.

#include <string_view>
#include <vector>

namespace zeq::inifiles {

/// The entries of a list. The first one is always taken, be it empty; each further one only if more than
/// three characters are left, its own and the closing NULs included. A short last entry is therefore left
/// out.
[[nodiscard]] std::vector<std::wstring_view> entriesOf(std::wstring_view list);

/// What stands before and after the first "=" of an entry; empty if it has none.
[[nodiscard]] std::wstring_view keyIn(std::wstring_view entry) noexcept;
[[nodiscard]] std::wstring_view valueIn(std::wstring_view entry) noexcept;

}  // namespace zeq::inifiles
