// The field splitter against the step-by-step model, change for change.

#include <stdexcept>
#include <vector>

#include "fuzz/Input.h"
#include "utility/FieldSplitter.h"
#include "utility/TextModels.h"

namespace zeq::utility {
namespace {

/// Short texts, and at times one that reaches the limit of 16-bit positions.
std::wstring anyRecord(fuzz::Input& input) {
  constexpr std::wstring_view alphabet(L"aAbB ,;\t\0\u00C4\u00E4\uFFFF", 12);
  std::wstring record = input.text(40, alphabet);
  if (input.number(0, 15) == 1) {
    record.insert(record.size() / 2, static_cast<std::size_t>(input.number(32740, 32770)), L'x');
  }
  return record;
}

std::wstring anySeparator(fuzz::Input& input) {
  return input.text(3, std::wstring_view(L"aA ,;\0\u00C4\u00E4", 8));
}

template <class Change>
bool overflows(Change&& change) {
  try {
    change();
    return false;
  } catch (const std::overflow_error&) {
    return true;
  }
}

std::vector<std::wstring> fieldsOf(const FieldSplitter& splitter) {
  std::vector<std::wstring> fields;
  for (int position = 1; position <= splitter.count(); ++position) {
    fields.emplace_back(splitter.field(position));
  }
  return fields;
}

/// Makes one change of the splitter and of the model, which must end alike.
void changeBoth(fuzz::Input& input, FieldSplitter& splitter, model::Splitter& model) {
  const auto both = [&](auto&& change) {
    const bool isTooFar = overflows([&] { change(splitter); });
    fuzz::require(overflows([&] { change(model); }) == isTooFar, "both overflow, or none");
  };
  switch (input.number(0, 4)) {
    case 0:
      return both([trim = input.flag()](auto& each) { each.setTrimsFields(trim); });
    case 1:
      return both([count = input.flag()](auto& each) { each.setCountsEmptyFields(count); });
    case 2:
      return both([separator = anySeparator(input)](auto& each) { each.setSeparator(separator); });
    case 3:
      return both([record = anyRecord(input)](auto& each) { each.setRecord(record); });
    default:
      return both([record = anyRecord(input), separator = anySeparator(input), trim = input.flag(),
                   count = input.flag()](auto& each) { each.split(record, separator, trim, count); });
  }
}

}  // namespace
}  // namespace zeq::utility

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zeq;
  fuzz::Input input(data, size);
  utility::FieldSplitter splitter(&utility::model::lowerCase);
  utility::model::Splitter model;
  for (int changes = 0; changes < 8 && input.hasMore(); ++changes) {
    utility::changeBoth(input, splitter, model);
    fuzz::require(utility::fieldsOf(splitter) == model.fields(), "the fields are those of the model");
  }
  return 0;
}
