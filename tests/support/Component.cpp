#include "support/Component.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <utility>

#include "support/ClientObject.h"
#include "support/EntryPoint.h"

namespace zeq::test {
namespace {

class SinkObject final : public ClientObject<> {
 public:
  SinkObject(REFIID events, Sink::Handler handler) : events_(events), handler_(std::move(handler)) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override {
    return ClientObject::QueryInterface(IsEqualIID(iid, events_) ? IID_IDispatch : iid, object);
  }
  STDMETHODIMP Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*, EXCEPINFO*,
                      UINT*) noexcept override {
    return handler_(event, inDeclarationOrder(*parameters));
  }

 private:
  IID events_;
  Sink::Handler handler_;
};

}  // namespace

HMODULE component() {
  static const HMODULE module = LoadLibraryW(L"ZEQUtility2.dll");
  if (module == nullptr) {
    throw std::runtime_error("ZEQUtility2.dll cannot be loaded");
  }
  return module;
}

ComPtr<IClassFactory> classFactory(REFCLSID clsid) {
  using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
  static const auto getClassObject = entryPoint<GetClassObject>(component(), "DllGetClassObject");
  ComPtr<IClassFactory> factory;
  automation::check(getClassObject(clsid, IID_IClassFactory, factory.outVoid()));
  return factory;
}

bool canUnload() {
  using CanUnloadNow = HRESULT(STDAPICALLTYPE*)();
  static const auto canUnloadNow = entryPoint<CanUnloadNow>(component(), "DllCanUnloadNow");
  return canUnloadNow() == S_OK;
}

std::vector<VARIANT*> inDeclarationOrder(const DISPPARAMS& parameters) {
  std::vector<VARIANT*> arguments;
  for (UINT i = parameters.cArgs; i-- > 0;) {
    arguments.push_back(&parameters.rgvarg[i]);
  }
  return arguments;
}

Outcome Late::invoke(const wchar_t* name, WORD flags, std::vector<VARIANT> arguments) const {
  Outcome outcome;
  DISPID id = DISPID_UNKNOWN;
  auto* writableName = const_cast<wchar_t*>(name);
  outcome.code = object_->GetIDsOfNames(IID_NULL, &writableName, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(outcome.code)) {
    return outcome;
  }
  std::reverse(arguments.begin(), arguments.end());
  DISPID put = DISPID_PROPERTYPUT;
  const bool isPut = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  DISPPARAMS parameters{arguments.data(), isPut ? &put : nullptr, static_cast<UINT>(arguments.size()),
                        isPut ? 1U : 0U};
  EXCEPINFO exception{};
  outcome.code = object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                 isPut ? nullptr : &outcome.value.get(), &exception, &outcome.argumentError);
  outcome.scode = exception.scode;
  outcome.description = automation::text(exception.bstrDescription);
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  return outcome;
}

std::wstring textIn(const Variant& value) {
  if (value.type() != VT_BSTR) {
    throw std::runtime_error("not a text");
  }
  return std::wstring(automation::text(value.get().bstrVal));
}

Sink::Sink(IUnknown* source, REFIID events, Handler handler) {
  const auto container = ComPtr<IUnknown>(source).query<IConnectionPointContainer>();
  if (!container) {
    throw std::runtime_error("not an event source");
  }
  automation::check(container->FindConnectionPoint(events, point_.out()));
  const auto sink = ComPtr<IDispatch>::attach(new SinkObject(events, std::move(handler)));
  automation::check(point_->Advise(sink.get(), &cookie_));
}

Sink::~Sink() {
  disconnect();
}

void Sink::disconnect() {
  if (const auto point = std::exchange(point_, nullptr)) {
    point->Unadvise(cookie_);
  }
}

}  // namespace zeq::test
