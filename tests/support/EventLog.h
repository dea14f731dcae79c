#pragma once
// Writes down the events of an object as lines of text: their names and their arguments.

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "support/Component.h"

namespace zeq::test {

/// An argument as text, a reference by what it refers to: 5, hello, True, Null, object.
[[nodiscard]] std::wstring shown(const VARIANT& value);

class EventLog {
 public:
  using Names = std::map<DISPID, std::wstring>;
  /// Runs after an event was written down.
  using Then = std::function<void(DISPID event, const std::vector<VARIANT*>& arguments)>;

  /// Connects to the events of an object; `names` tells them by their dispatch identifiers.
  template <class Interface>
  EventLog(const ComPtr<Interface>& source, REFIID events, Names names, Then then = {})
      : names_(std::move(names)),
        then_(std::move(then)),
        sink_(source.get(), events, [this](DISPID event, std::vector<VARIANT*> arguments) {
          note(event, arguments);
          return S_OK;
        }) {}

  /// The lines so far, such as "Triggered 1 0". The next call returns those after them.
  std::vector<std::wstring> take() { return std::exchange(lines_, {}); }

 private:
  void note(DISPID event, const std::vector<VARIANT*>& arguments);

  Names names_;
  Then then_;
  std::vector<std::wstring> lines_;
  Sink sink_;
};

}  // namespace zeq::test
