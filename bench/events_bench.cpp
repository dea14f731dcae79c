// Events against the calls that they are made of, keystrokes among many mappings against few, and the debug
// file against the system's calls.

#include <array>
#include <memory>
#include <string>

#include "harness.h"
#include "support/ClientObject.h"
#include "support/Component.h"
#include "support/TempFolder.h"

namespace zeq::bench {
namespace {

using automation::check;
using automation::ComPtr;
using test::Bstr;
using test::create;
using test::Variant;

/// A client's sink that takes the arguments of PropertyChange out of the list, as sinks do that know them by
/// position.
class PropertySink final : public test::ClientObject<> {
 public:
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*, EXCEPINFO*,
                      UINT* argumentError) noexcept override {
    Variant name;
    Variant value;
    UINT ignored = 0;
    UINT* error = argumentError != nullptr ? argumentError : &ignored;
    const HRESULT first = DispGetParam(parameters, 0, VT_BSTR, name.out(), error);
    return FAILED(first) ? first : DispGetParam(parameters, 1, VT_I4, value.out(), error);
  }
};

/// An observable object that announces one property, and its sink.
struct Announcer {
  ComPtr<_CObservableClass> observable = create<CObservableClass, _CObservableClass>();
  PropertySink sink;
  Bstr name{L"Size"};
  Variant value{5L};

  void connect() {
    const auto container = observable.query<IConnectionPointContainer>(IID_IConnectionPointContainer);
    ComPtr<IConnectionPoint> point;
    check(container->FindConnectionPoint(__uuidof(__CObservableClass), point.out()));
    DWORD cookie = 0;
    check(point->Advise(&sink, &cookie));
  }
  void raise() { observable->RaisePropertyChange(name.get(), value.get()); }
  void callSink() {
    std::array<VARIANTARG, 2> arguments{value.get(), {}};
    arguments[1].vt = VT_BSTR;
    arguments[1].bstrVal = name.get();
    DISPPARAMS parameters{arguments.data(), nullptr, 2, 0};
    EXCEPINFO exception{};
    static_cast<IDispatch&>(sink).Invoke(1, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                                         nullptr, &exception, nullptr);
  }
  void callMember() {
    PropertyChangeMode mode{};
    observable->get_PropertyChangeMode(&mode);
  }
};

void addEventRows(std::vector<Row>& rows) {
  constexpr double allowance = 20e-9;
  const auto silent = std::make_shared<Announcer>();
  rows.push_back({.what = "raising an event with no sink",
                  .peer = "a virtual call of a member that returns a value, and 20 ns",
                  .target = 1.0,
                  .ours = each([silent] { silent->raise(); }),
                  .theirs = [silent](int times) {
                    return allowance * times + timed([&] {
                             for (int i = 0; i < times; ++i) {
                               silent->callMember();
                             }
                           });
                  }});
  const auto heard = std::make_shared<Announcer>();
  heard->connect();
  rows.push_back({.what = "raising an event with one late-bound sink",
                  .peer = "calling that sink's `Invoke` (two arguments, read with `DispGetParam`)",
                  .target = 1.3,
                  .ours = each([heard] { heard->raise(); }),
                  .theirs = each([heard] { heard->callSink(); })});
}

/// Processes the keystroke that is bound last among so many.
Work processAmong(short mappings) {
  const auto filter = create<CKeymapFilter, _CKeymapFilter>();
  const Bstr text(L"command");
  VARIANT_BOOL result = VARIANT_FALSE;
  for (short i = 1; i <= mappings; ++i) {
    check(filter->AddMapping(text.get(), text.get(), i, 0, &result));
  }
  return each([filter, mappings] {
    VARIANT_BOOL processed = VARIANT_FALSE;
    VARIANT_BOOL bound = VARIANT_FALSE;
    filter->Process(mappings, 0, &processed, &bound);
  });
}

void addDebugFileRow(std::vector<Row>& rows) {
  const auto folder = std::make_shared<test::TempFolder>();
  const std::wstring path = *folder / L"debug.log";
  const auto audit = create<CZEQAudit, _CZEQAudit>();
  check(audit->put_DebugFile(Bstr(path).get()));
  const auto message = std::make_shared<Bstr>(L"a message of the usual length for the developers");
  rows.push_back({.what = "`ZEQDbgLog`",
                  .peer = "CreateFileW, WriteFile and CloseHandle with the same line on the same file",
                  .target = 1.2,
                  .ours = each([audit, message, folder] {
                    BSTR argument = message->get();
                    audit->ZEQDbgLog(&argument);
                  }),
                  .theirs = each([path] {
                    constexpr std::string_view line =
                        "[09:05:07] a message of the usual length for the developers\r\n";
                    const HANDLE file =
                        CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
                    DWORD written = 0;
                    WriteFile(file, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
                    CloseHandle(file);
                  })});
}

const Area area("events", [](std::vector<Row>& rows) {
  addEventRows(rows);
  rows.push_back({.what = "`CKeymapFilter.Process` among 1,000 mappings",
                  .peer = "the same among 10",
                  .target = 2.0,
                  .ours = processAmong(1000),
                  .theirs = processAmong(10)});
  addDebugFileRow(rows);
});

}  // namespace
}  // namespace zeq::bench
