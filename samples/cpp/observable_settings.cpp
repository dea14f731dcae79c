// A settings object that tells others of its changes, with ZEQUtility2 used early-bound: the object holds a
// CObservableClass, passes every new value through it, and shows itself to others as IObservableClass. A
// listener connects to the companion's events and prints what it hears.
//
// All that it needs of the library is ZEQUtility2.h and the registered DLL.

#include <windows.h>
#include <comutil.h>
#include <olectl.h>
#include <wrl/client.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "ZEQUtility2.h"

namespace {

using Microsoft::WRL::ComPtr;

void check(HRESULT result, const char* what) {
  if (FAILED(result)) {
    std::printf("%s failed: %08lX\n", what, static_cast<unsigned long>(result));
    std::exit(1);
  }
}

/// The settings of a window. Each setter is one line: the companion compares, stores and announces.
class WindowSettings {
 public:
  WindowSettings() {
    check(CoCreateInstance(__uuidof(CObservableClass), nullptr, CLSCTX_INPROC_SERVER,
                           __uuidof(_CObservableClass), reinterpret_cast<void**>(observer_.GetAddressOf())),
          "creating CObservableClass");
  }

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

  ComPtr<_CObservableClass> observer_;
  _variant_t title_{L""};
  _variant_t width_{0L};
};

/// Prints the events of a CObservableClass. The dispatch identifiers stand in the type library.
class Listener final : public IDispatch {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    const bool known =
        iid == __uuidof(IUnknown) || iid == __uuidof(IDispatch) || iid == __uuidof(__CObservableClass);
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  // It lives on the stack of main, longer than the connection.
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
  STDMETHODIMP Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                      UINT*) override {
    constexpr DISPID propertyChange = 1;
    const VARIANTARG* list = arguments->rgvarg;  // The last argument comes first.
    if (event == propertyChange) {
      const _bstr_t value{_variant_t(list[0])};
      std::printf("  %ls is \"%ls\"\n", list[1].bstrVal,
                  value.length() > 0 ? static_cast<const wchar_t*>(value) : L"");
    } else {
      static const char* const activities[] = {"creating", "clearing", "cloning", "updating", "enumerating"};
      std::printf("  %s %s\n", list[0].boolVal != VARIANT_FALSE ? "finished" : "started",
                  activities[event - 2]);
    }
    return S_OK;
  }
};

DWORD connect(IUnknown* source, IUnknown* sink, ComPtr<IConnectionPoint>& point) {
  ComPtr<IConnectionPointContainer> container;
  check(source->QueryInterface(__uuidof(IConnectionPointContainer),
                               reinterpret_cast<void**>(container.GetAddressOf())),
        "asking for events");
  check(container->FindConnectionPoint(__uuidof(__CObservableClass), point.GetAddressOf()),
        "finding the events");
  DWORD cookie = 0;
  check(point->Advise(sink, &cookie), "connecting");
  return cookie;
}

void run() {
  WindowSettings settings;
  Listener listener;
  ComPtr<IConnectionPoint> events;
  const DWORD cookie = connect(settings.observer(), &listener, events);

  std::printf("A new title and a new width:\n");
  settings.setTitle(L"Report");
  settings.setWidth(640);
  std::printf("The same width once more, which changes nothing:\n");
  settings.setWidth(640);
  std::printf("All values, for a listener that came late:\n");
  settings.enumerateProperties();
  std::printf("Back to the start:\n");
  settings.clear();

  events->Unadvise(cookie);
}

}  // namespace

int wmain() {
  check(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), "starting COM");
  run();
  CoUninitialize();
  return 0;
}
