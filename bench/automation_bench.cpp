// Late binding against the platform's own: a trivial member called by name.

#include <stdexcept>

#include "harness.h"
#include "support/Component.h"

namespace zeq::bench {
namespace {

using automation::check;
using automation::ComPtr;
using automation::Variant;

/// One call that takes a text and returns a boolean, by name or with the identifier kept.
class LateCall {
 public:
  LateCall(ComPtr<IDispatch> object, const wchar_t* name) : object_(std::move(object)), name_(name) {
    id_ = lookUp();
  }

  void byName() { invoke(lookUp()); }
  void byIdentifier() { invoke(id_); }

 private:
  [[nodiscard]] DISPID lookUp() const {
    DISPID id = DISPID_UNKNOWN;
    auto* name = const_cast<wchar_t*>(name_);
    check(object_->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id));
    return id;
  }

  void invoke(DISPID id) {
    Variant result;
    DISPPARAMS parameters{&argument_.get(), nullptr, 1, 0};
    check(object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, &result.get(),
                          nullptr, nullptr));
  }

  ComPtr<IDispatch> object_;
  const wchar_t* name_;
  DISPID id_;
  Variant argument_{std::wstring_view(L"report")};
};

ComPtr<IDispatch> scriptingDictionary() {
  CLSID clsid{};
  check(CLSIDFromProgID(L"Scripting.Dictionary", &clsid));
  ComPtr<IDispatch> dictionary;
  check(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, dictionary.outVoid()));
  return dictionary;
}

const Area area("automation", [](std::vector<Row>& rows) {
  const auto fileSystem = test::create<CZEQFileSystemObject, _CZEQFileSystemObject>();
  LateCall ours(ComPtr<IDispatch>(fileSystem.get()), L"FSO_IsBaseFileNameSensible");
  LateCall theirs(scriptingDictionary(), L"Exists");
  rows.push_back({.what = "a trivial member called by name",
                  .peer = "`Scripting.Dictionary`'s `Exists` called the same way",
                  .target = 0.25,
                  .ours = each([ours]() mutable { ours.byName(); }),
                  .theirs = each([theirs]() mutable { theirs.byName(); })});
  rows.push_back({.what = "the same with the identifier kept",
                  .peer = "`Exists` with the identifier kept",
                  .target = 0.5,
                  .ours = each([ours]() mutable { ours.byIdentifier(); }),
                  .theirs = each([theirs]() mutable { theirs.byIdentifier(); })});
});

}  // namespace
}  // namespace zeq::bench
