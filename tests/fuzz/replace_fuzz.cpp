// Keyword replacement against searching again from the first character after each replacement.

#include <stdexcept>
#include <string>

#include "fuzz/Input.h"
#include "utility/MZEQUtilityStrings.h"
#include "utility/TextModels.h"

namespace zeq::utility {
namespace {

/// What replacing ends with: a text, or that a match lies too far to the right.
template <class Replace>
std::wstring outcome(Replace&& replace) {
  try {
    return L"text " + replace();
  } catch (const std::overflow_error&) {
    return L"overflow";
  }
}

/// Two letters, so that replacements often make new matches; at times at the limit of 16-bit positions.
std::wstring anyText(fuzz::Input& input) {
  std::wstring text = input.text(40, L"ab");
  if (input.number(0, 63) == 1) {
    text.insert(input.flag() ? 0 : text.size() / 2, static_cast<std::size_t>(input.number(32740, 32770)),
                L'x');
  }
  return text;
}

}  // namespace
}  // namespace zeq::utility

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zeq;
  fuzz::Input input(data, size);
  const std::wstring text = utility::anyText(input);
  const std::wstring keyword = input.text(5, L"abx");
  const std::wstring replacement = input.text(8, L"abx");
  if (keyword.empty() || replacement.find(keyword) != std::wstring::npos) {
    fuzz::require(utility::replaceKeyword(text, keyword, replacement) == text,
                  "what would never end changes nothing");
    return 0;
  }
  try {
    // Growing texts may take very many replacements; those are left out.
    constexpr int mostSteps = 200;
    const std::wstring expected = utility::outcome(
        [&] { return utility::model::replaceKeyword(text, keyword, replacement, mostSteps); });
    const std::wstring actual =
        utility::outcome([&] { return utility::replaceKeyword(text, keyword, replacement); });
    fuzz::require(actual == expected, "the text is that of the model");
  } catch (const utility::model::TooManySteps&) {
    return -1;  // Not worth keeping.
  }
  return 0;
}
