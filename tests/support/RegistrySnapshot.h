#pragma once
// What a part of the real registry holds.

#include <windows.h>

#include <string>
#include <vector>

namespace zeq::test {

/// Every key below a key (as 64-bit programs see it, the 32-bit ones' part included) and every value with its
/// type and data, one line each.
[[nodiscard]] std::vector<std::wstring> registrySnapshot(HKEY root, const std::wstring& path);

/// What is in one snapshot and not in the other, marked with + (new) or - (gone).
[[nodiscard]] std::vector<std::string> differences(const std::vector<std::wstring>& before,
                                                   const std::vector<std::wstring>& after);

}  // namespace zeq::test
