#include "automation/Events.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "automation/Enumerator.h"

namespace zeq::automation {
namespace {

struct ConnectionElement {
  DWORD cookie;
  ComPtr<IDispatch> sink;
  void copyTo(CONNECTDATA& out) const noexcept {
    out.dwCookie = cookie;
    out.pUnk = ComPtr<IDispatch>(sink).detach();
  }
};

struct PointElement {
  ComPtr<IConnectionPoint> point;
  void copyTo(IConnectionPoint*& out) const noexcept { out = ComPtr<IConnectionPoint>(point).detach(); }
};

/// The by-reference object among the arguments of an event (there is one at most). Every sink finds the
/// object that the event is about; what a sink puts in its place is released again.
class ObjectVariable {
 public:
  ObjectVariable(const VARIANTARG* arguments, UINT count) noexcept {
    const auto* found = std::find_if(arguments, arguments + count, [](const VARIANTARG& each) {
      return each.vt == (VT_BYREF | VT_DISPATCH);
    });
    if (found != arguments + count) {
      variable_ = found->ppdispVal;
      object_ = ComPtr<IDispatch>(*variable_);
    }
  }

  void beforeSink() noexcept {
    if (variable_ != nullptr) {
      *variable_ = ComPtr<IDispatch>(object_).detach();
    }
  }
  void afterSink() noexcept {
    if (variable_ != nullptr) {
      ComPtr<IDispatch>::attach(std::exchange(*variable_, object_.get())).reset();
    }
  }

 private:
  IDispatch** variable_ = nullptr;
  ComPtr<IDispatch> object_;
};

}  // namespace

ConnectionPoint::~ConnectionPoint() {
  // The list is taken away first: what a sink does when it is released finds no connection left.
  const std::shared_ptr<const Sinks> last = std::exchange(sinks_, nullptr);
}

STDMETHODIMP ConnectionPoint::QueryInterface(REFIID iid, void** object) noexcept {
  if (object == nullptr) {
    return E_POINTER;
  }
  if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IConnectionPoint)) {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  *object = static_cast<IConnectionPoint*>(this);
  AddRef();
  return S_OK;
}

STDMETHODIMP ConnectionPoint::GetConnectionInterface(IID* iid) noexcept {
  if (iid == nullptr) {
    return E_POINTER;
  }
  *iid = events_;
  return S_OK;
}

STDMETHODIMP ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** container) noexcept {
  if (container == nullptr) {
    return E_POINTER;
  }
  *container = &owner_;
  owner_.AddRef();
  return S_OK;
}

STDMETHODIMP ConnectionPoint::Advise(IUnknown* sink, DWORD* cookie) noexcept {
  if (sink == nullptr || cookie == nullptr) {
    return E_POINTER;
  }
  *cookie = 0;
  // A sink may answer for the event interface itself or, as scripts do, only for IDispatch.
  auto dispatch = ComPtr<IUnknown>(sink).query<IDispatch>(events_);
  if (!dispatch) {
    dispatch = ComPtr<IUnknown>(sink).query<IDispatch>(IID_IDispatch);
  }
  if (!dispatch) {
    return CONNECT_E_CANNOTCONNECT;
  }
  do {
    ++lastCookie_;
  } while (lastCookie_ == 0 || isConnected(lastCookie_));
  try {
    auto changed = sinks_ != nullptr ? std::make_shared<Sinks>(*sinks_) : std::make_shared<Sinks>();
    changed->push_back({lastCookie_, std::move(dispatch)});
    sinks_ = std::move(changed);
  } catch (...) {
    return E_OUTOFMEMORY;
  }
  *cookie = lastCookie_;
  return S_OK;
}

STDMETHODIMP ConnectionPoint::Unadvise(DWORD cookie) noexcept {
  if (!isConnected(cookie)) {
    return CONNECT_E_NOCONNECTION;
  }
  // The old list may hold the last reference to the sink, whose end may come back here: it goes last.
  const std::shared_ptr<const Sinks> old = sinks_;
  try {
    auto changed = std::make_shared<Sinks>();
    std::copy_if(old->begin(), old->end(), std::back_inserter(*changed),
                 [&](const Sink& sink) { return sink.cookie != cookie; });
    sinks_ = changed->empty() ? nullptr : std::move(changed);
  } catch (...) {
    return E_OUTOFMEMORY;
  }
  return S_OK;
}

STDMETHODIMP ConnectionPoint::EnumConnections(IEnumConnections** enumerator) noexcept {
  if (enumerator == nullptr) {
    return E_POINTER;
  }
  *enumerator = nullptr;
  try {
    std::vector<ConnectionElement> elements;
    if (sinks_ != nullptr) {
      for (const Sink& sink : *sinks_) {
        elements.push_back({sink.cookie, sink.dispatch});
      }
    }
    *enumerator =
        Enumerator<IEnumConnections, CONNECTDATA, ConnectionElement>::make(std::move(elements)).detach();
    return S_OK;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

bool ConnectionPoint::isConnected(DWORD cookie) const noexcept {
  return sinks_ != nullptr &&
         std::any_of(sinks_->begin(), sinks_->end(), [&](const Sink& sink) { return sink.cookie == cookie; });
}

void ConnectionPoint::raise(DISPID event, VARIANTARG* arguments, UINT count) noexcept {
  const std::shared_ptr<const Sinks> sinks = sinks_;
  if (sinks == nullptr) {
    return;
  }
  const ComPtr<IConnectionPointContainer> alive(
      &owner_);  // A sink may release the object that raises the event.
  ObjectVariable object(arguments, count);
  for (const Sink& sink : *sinks) {
    if (sinks != sinks_ && !isConnected(sink.cookie)) {
      continue;
    }
    DISPPARAMS parameters{arguments, nullptr, count, 0};
    CallException exception;
    object.beforeSink();
    static_cast<void>(sink.dispatch->Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                            &parameters, nullptr, exception.out(), nullptr));
    object.afterSink();
  }
}

HRESULT enumerateConnectionPoint(ConnectionPoint& point, IEnumConnectionPoints** enumerator) noexcept {
  if (enumerator == nullptr) {
    return E_POINTER;
  }
  *enumerator = nullptr;
  try {
    std::vector<PointElement> elements{{ComPtr<IConnectionPoint>(&point)}};
    *enumerator =
        Enumerator<IEnumConnectionPoints, IConnectionPoint*, PointElement>::make(std::move(elements))
            .detach();
    return S_OK;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace zeq::automation
