// Encoded texts: only what may stand in a URL, and decoding gives the bytes back.

#include <cstring>
#include <string>

#include "fuzz/Input.h"
#include "utility/MZEQUtilityStrings.h"

namespace zeq::utility {
namespace {

/// A code page with one, two and three bytes a character.
std::string encode(wchar_t character) {
  const auto byte = [](int value) { return static_cast<char>(value & 0xFF); };
  const int code = character & 0xFFFF;
  if (code < 0x100) {
    return {byte(code)};
  }
  return code < 0x8000 ? std::string{byte(code / 0x100), byte(code)}
                       : std::string{'\0', byte(code / 0x100), byte(code)};
}

int digit(wchar_t character) {
  const std::size_t value = std::wstring_view(L"0123456789ABCDEF").find(character);
  fuzz::require(value != std::wstring_view::npos, "a percent sign is followed by two upper-case digits");
  return static_cast<int>(value);
}

std::string decoded(std::wstring_view text) {
  std::string bytes;
  while (!text.empty()) {
    if (text[0] != L'%') {
      const bool isAscii = text[0] > 0 && text[0] < 0x80;
      fuzz::require(isAscii && (std::isalnum(text[0]) != 0 || std::strchr("$-_.+!*'(),", text[0]) != nullptr),
                    "what stays may stand in a URL");
      bytes += static_cast<char>(text[0]);
      text.remove_prefix(1);
      continue;
    }
    fuzz::require(text.size() >= 3, "an encoded byte is complete");
    bytes += static_cast<char>(digit(text[1]) * 16 + digit(text[2]));
    text.remove_prefix(3);
  }
  return bytes;
}

}  // namespace
}  // namespace zeq::utility

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zeq;
  fuzz::Input input(data, size);
  std::wstring text;
  std::string bytes;
  while (input.hasMore()) {
    text += static_cast<wchar_t>(input.flag() ? input.any<std::uint8_t>() : input.any<std::uint16_t>());
    bytes += utility::encode(text.back());
  }
  fuzz::require(utility::decoded(utility::urlEncoded(text, &utility::encode)) == bytes,
                "decoding gives the bytes back");
  return 0;
}
