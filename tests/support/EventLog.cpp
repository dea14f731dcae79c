#include "support/EventLog.h"

namespace zeq::test {

std::wstring shown(const VARIANT& value) {
  const Variant read(value);
  Variant text;
  switch (read.type()) {
    case VT_EMPTY:
      return L"Empty";
    case VT_NULL:
      return L"Null";
    case VT_ERROR:
      return L"Error";
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return read.get().punkVal != nullptr ? L"object" : L"Nothing";
    default:
      if ((read.type() & VT_ARRAY) != 0) {
        return L"array";
      }
      automation::check(VariantChangeTypeEx(text.out(), const_cast<VARIANT*>(&read.get()), LOCALE_INVARIANT,
                                            VARIANT_ALPHABOOL, VT_BSTR));
      return textIn(text);
  }
}

void EventLog::note(DISPID event, const std::vector<VARIANT*>& arguments) {
  std::wstring line = names_.contains(event) ? names_[event] : L"unknown event";
  for (const VARIANT* argument : arguments) {
    line.append(L" ").append(shown(*argument));
  }
  lines_.push_back(std::move(line));
  if (then_) {
    then_(event, arguments);
  }
}

}  // namespace zeq::test
