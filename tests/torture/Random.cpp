#include "torture/Random.h"

namespace zeq::torture {

std::wstring randomText(Random& random) {
  static const std::vector<std::wstring> texts{L"",
                                               L" ",
                                               L"a",
                                               L"A",
                                               L"1",
                                               L"-5",
                                               L"2.5",
                                               L"40000",
                                               L"1e400",
                                               L"abc",
                                               L"True",
                                               L"file.txt",
                                               L"*",
                                               L"sub",
                                               L"sub\\file",
                                               L"HKCU",
                                               L"   ",
                                               L"#1/2#",
                                               L"key",
                                               L"KEY",
                                               L"a|b|c",
                                               L"[section]",
                                               L"a=b",
                                               L"%N%",
                                               L"\u00E4\u20AC",
                                               L"\u4E2D\u6587",
                                               L"VERSION",
                                               L"NMappings",
                                               L"hh:nn:ss",
                                               L"step",
                                               L"ini.ini",
                                               L"12/31/1999"};
  const std::size_t kind = random.below(20);
  if (kind < 15) {
    return random.pick(texts);
  }
  if (kind == 15) {
    return std::wstring(L"a\0b", 3);
  }
  if (kind == 16) {
    return std::wstring(random.below(3000), L'x');
  }
  if (kind == 17) {
    return std::wstring(1, L'\xD800');  // Half of a surrogate pair.
  }
  std::wstring text(random.below(20), L' ');
  for (wchar_t& character : text) {
    character = static_cast<wchar_t>(L'a' + random.below(26));
  }
  return text;
}

}  // namespace zeq::torture
