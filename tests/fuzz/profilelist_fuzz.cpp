// Lists of ini files: every character is in an entry or behind the last one that is reported.

#include <vector>

#include "fuzz/Input.h"
#include "inifiles/ProfileList.h"

namespace zeq::inifiles {
namespace {

void checkList(const std::wstring& list) {
  const std::vector<std::wstring_view> entries = entriesOf(list);
  fuzz::require(!entries.empty(), "the first entry is always taken");
  std::size_t taken = 0;
  for (const std::wstring_view entry : entries) {
    fuzz::require(taken == 0 || list.size() - taken > 3, "no entry of the last three characters");
    fuzz::require(entry.find(L'\0') == std::wstring_view::npos, "an entry ends before its NUL");
    fuzz::require(list.compare(taken, entry.size(), entry) == 0, "entries stand in their order");
    taken += entry.size();
    fuzz::require(taken == list.size() || list[taken] == L'\0', "an entry ends at a NUL");
    taken += taken < list.size() ? 1 : 0;
    const std::wstring line(entry);
    const bool hasSign = line.find(L'=') != std::wstring::npos;
    const std::wstring parts =
        std::wstring(keyIn(line)) + (hasSign ? L"=" : L"") + std::wstring(valueIn(line));
    fuzz::require(parts == (hasSign ? line : L""), "key and value make the entry");
    fuzz::require(keyIn(line).find(L'=') == std::wstring_view::npos, "a key ends before the first sign");
  }
  fuzz::require(list.size() - taken <= 3, "all entries are taken");
}

}  // namespace
}  // namespace zeq::inifiles

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zeq::fuzz::Input input(data, size);
  zeq::inifiles::checkList(input.text(60, std::wstring_view(L"\0\0ab==\x00E9", 7)));
  return 0;
}
