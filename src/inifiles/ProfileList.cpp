#include "inifiles/ProfileList.h"

#include <algorithm>

namespace zeq::inifiles {

std::vector<std::wstring_view> entriesOf(std::wstring_view list) {
  constexpr std::size_t leftOut = 3;
  std::vector<std::wstring_view> entries;
  do {
    const std::size_t end = std::min(list.find(L'\0'), list.size());
    entries.push_back(list.substr(0, end));
    list.remove_prefix(std::min(end + 1, list.size()));
  } while (list.size() > leftOut);
  return entries;
}

std::wstring_view keyIn(std::wstring_view entry) noexcept {
  const std::size_t sign = entry.find(L'=');
  return sign == std::wstring_view::npos ? std::wstring_view() : entry.substr(0, sign);
}

std::wstring_view valueIn(std::wstring_view entry) noexcept {
  const std::size_t sign = entry.find(L'=');
  return sign == std::wstring_view::npos ? std::wstring_view() : entry.substr(sign + 1);
}

}  // namespace zeq::inifiles
