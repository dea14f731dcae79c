#pragma once
// Event sources: connection points that raise the events of a dispinterface on every connected sink.
//
// Events are raised synchronously. A sink that fails is passed over; a sink that disconnects while an event
// is being raised gets no further call; a by-reference argument is one variable that all sinks see in turn,
// but an object by reference comes to every sink anew, and what a sink assigns to it is released.

#include <windows.h>
#include <oleauto.h>
#include <olectl.h>

#include <memory>
#include <utility>
#include <vector>

#include "automation/CallOut.h"
#include "automation/ComPtr.h"

namespace zeq::automation {

/// The connection point for one dispinterface; a part of the object whose events it raises.
class ConnectionPoint final : public IConnectionPoint {
 public:
  ConnectionPoint(IConnectionPointContainer& owner, REFIID events) noexcept
      : owner_(owner), events_(events) {}
  ~ConnectionPoint();
  ConnectionPoint(const ConnectionPoint&) = delete;
  ConnectionPoint& operator=(const ConnectionPoint&) = delete;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override;
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return owner_.AddRef(); }
  STDMETHODIMP_(ULONG) Release() noexcept override { return owner_.Release(); }
  STDMETHODIMP GetConnectionInterface(IID* iid) noexcept override;
  STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** container) noexcept override;
  STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) noexcept override;
  STDMETHODIMP Unadvise(DWORD cookie) noexcept override;
  STDMETHODIMP EnumConnections(IEnumConnections** enumerator) noexcept override;

  [[nodiscard]] bool hasSinks() const noexcept { return sinks_ != nullptr; }
  [[nodiscard]] REFIID events() const noexcept { return events_; }

  /// Calls every connected sink with the arguments (in the order of an argument list: the last one first).
  void raise(DISPID event, VARIANTARG* arguments, UINT count) noexcept;

 private:
  struct Sink {
    DWORD cookie;
    ComPtr<IDispatch> dispatch;
  };
  using Sinks = std::vector<Sink>;

  [[nodiscard]] bool isConnected(DWORD cookie) const noexcept;

  IConnectionPointContainer& owner_;
  const IID events_;
  /// Never changed in place: whoever is going through the sinks keeps the list that it started with. Null if
  /// empty.
  std::shared_ptr<const Sinks> sinks_;
  DWORD lastCookie_ = 0;
};

/// A base of every object with events. `Source` is the dispinterface.
template <class Source>
class EventSource : public IConnectionPointContainer {
 public:
  EventSource(const EventSource&) = delete;
  EventSource& operator=(const EventSource&) = delete;

  STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** enumerator) noexcept override;
  STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** point) noexcept override;

 protected:
  EventSource() noexcept : point_(*this, __uuidof(Source)) {}
  ~EventSource() = default;
  [[nodiscard]] bool hasSinks() const noexcept { return point_.hasSinks(); }

  /// Raises an event; its arguments are given in declaration order. See CallArgument for what can be passed.
  template <class... Arguments>
  void raise(DISPID event, Arguments&&... arguments) noexcept {
    if (!point_.hasSinks()) {
      return;
    }
    if constexpr (sizeof...(Arguments) == 0) {
      point_.raise(event, nullptr, 0);
    } else {
      CallArguments list(std::forward<Arguments>(arguments)...);
      point_.raise(event, list.data(), list.size());
    }
  }

 private:
  ConnectionPoint point_;
};

/// Fills in IConnectionPointContainer::EnumConnectionPoints for an object with one connection point.
HRESULT enumerateConnectionPoint(ConnectionPoint& point, IEnumConnectionPoints** enumerator) noexcept;

template <class Source>
STDMETHODIMP EventSource<Source>::EnumConnectionPoints(IEnumConnectionPoints** enumerator) noexcept {
  return enumerateConnectionPoint(point_, enumerator);
}

template <class Source>
STDMETHODIMP EventSource<Source>::FindConnectionPoint(REFIID iid, IConnectionPoint** point) noexcept {
  if (point == nullptr) {
    return E_POINTER;
  }
  *point = nullptr;
  if (!IsEqualIID(iid, __uuidof(Source))) {
    return CONNECT_E_NOCONNECTION;
  }
  *point = &point_;
  point_.AddRef();
  return S_OK;
}

}  // namespace zeq::automation
