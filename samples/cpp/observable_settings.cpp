// A settings object that tells others of its changes, with ZEQUtility2 used early-bound: the object holds a
// CObservableClass, passes every new value through it, and shows itself to others as IObservableClass. A
// listener connects to the companion's events and prints what it hears.
//
// All that it needs of the library is ZEQUtility2.h and the registered DLL.

#include <windows.h>
#include <comutil.h>

#include <cstdio>

#include "Client.h"
#include "ZEQUtility2.h"

namespace {

using client::check;
using client::ComPtr;

/// The settings of a window. Each setter is one line: the companion compares, stores and announces.
class WindowSettings {
 public:
  [[nodiscard]] _CObservableClass* observer() const { return observer_.Get(); }

  bool setTitle(const wchar_t* title) { return update(title_, L"Title", _variant_t(title)); }
  bool setWidth(long width) { return update(width_, L"Width", _variant_t(width)); }

  /// Everything back to the start, as one activity.
  void clear() {
    check(observer_->PushPropertyChangeMode(pcmClearing), "starting to clear");
    setTitle(L"");
    setWidth(0);
    finish();
  }

  /// What IObservableClass calls EnumerateProperties: tells a newcomer every value, changed or not.
  void enumerateProperties() {
    check(observer_->PushPropertyChangeMode(pcmEnumerating), "starting to enumerate");
    update(title_, L"Title", _variant_t(title_));
    update(width_, L"Width", _variant_t(width_));
    finish();
  }

 private:
  bool update(_variant_t& property, const wchar_t* name, const _variant_t& value) {
    VARIANT_BOOL stored = VARIANT_FALSE;
    check(observer_->SimplePropertyUpdate(&property, _bstr_t(name), value, &stored), "updating a property");
    return stored != VARIANT_FALSE;
  }
  void finish() {
    PropertyChangeMode mode{};
    check(observer_->PopPropertyChangeMode(&mode), "finishing an activity");
  }

  ComPtr<_CObservableClass> observer_ =
      client::create<_CObservableClass>(__uuidof(CObservableClass), "creating CObservableClass");
  _variant_t title_{L""};
  _variant_t width_{0L};
};

/// Prints an event of a CObservableClass.
void print(DISPID event, const VARIANTARG* arguments) {
  constexpr DISPID propertyChange = 1;
  if (event == propertyChange) {
    const _bstr_t value{_variant_t(arguments[0])};
    std::printf("  %ls is \"%ls\"\n", arguments[1].bstrVal,
                value.length() > 0 ? static_cast<const wchar_t*>(value) : L"");
  } else {
    static const char* const activities[] = {"creating", "clearing", "cloning", "updating", "enumerating"};
    std::printf("  %s %s\n", arguments[0].boolVal != VARIANT_FALSE ? "finished" : "started",
                activities[event - 2]);
  }
}

void run() {
  WindowSettings settings;
  const client::Events<__CObservableClass> events(settings.observer(), print);

  std::printf("A new title and a new width:\n");
  settings.setTitle(L"Report");
  settings.setWidth(640);
  std::printf("The same width once more, which changes nothing:\n");
  settings.setWidth(640);
  std::printf("All values, for a listener that came late:\n");
  settings.enumerateProperties();
  std::printf("Back to the start:\n");
  settings.clear();
}

}  // namespace

int wmain() {
  check(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), "starting COM");
  run();
  CoUninitialize();
  return 0;
}
