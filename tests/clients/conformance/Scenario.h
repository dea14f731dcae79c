#pragma once
// A scenario uses one class as a client does and checks what comes back.

#include <ocidl.h>

#include <functional>
#include <string>
#include <string_view>

#include "../../support/ClientObject.h"
#include "Object.h"

namespace conformance {

/// Registers a scenario that the program runs; make one at namespace scope.
struct Scenario {
  Scenario(const wchar_t* name, std::function<void()> run);
};

/// Counts a check, and says so if it fails. Values are equal if automation says so: 3 and "3" are not.
void equal(std::wstring_view what, const Value& actual, const Value& expected);

/// A folder for files of the scenarios, empty when the program starts; without a backslash at its end.
[[nodiscard]] const std::wstring& scratchFolder();

/// Writes a text file into the scratch folder and returns its path.
std::wstring writeFile(const std::wstring& name, std::string_view text);

/// Counts the events of an object while it lives. What they ask is answered with True if the listener agrees.
class Listener {
 public:
  Listener(const Value& source, REFIID events, bool agrees = false);
  ~Listener();
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  [[nodiscard]] int count(DISPID event) const;
  [[nodiscard]] int count() const;

 private:
  class Sink;
  Sink* sink_;
  IConnectionPoint* point_ = nullptr;
  DWORD cookie_ = 0;
};

/// A client's own object that answers to names; each call goes to its function.
class ScriptObject final : public zeq::test::ClientObject<> {
 public:
  using Handler = std::function<Value(std::wstring_view member, DISPPARAMS& arguments)>;
  explicit ScriptObject(Handler handler) : handler_(std::move(handler)) {}

  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept override;
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT* result, EXCEPINFO*,
                      UINT*) noexcept override;

 private:
  Handler handler_;
  std::vector<std::wstring> names_;
};

}  // namespace conformance
