#pragma once
// Event sources: connection points that raise the events of a dispinterface on every connected sink.
//
// Events are raised synchronously. A sink that fails is passed over; a sink that disconnects while an event
// is being raised gets no further call; a by-reference argument is one variable that all sinks see in turn.

#include <windows.h>
#include <oleauto.h>
#include <olectl.h>

#include <array>
#include <concepts>
#include <memory>
#include <string_view>
#include <vector>

#include "automation/ComPtr.h"
#include "automation/Text.h"

namespace zeq::automation {

/// The connection point for one dispinterface; a part of the object whose events it raises.
class ConnectionPoint final : public IConnectionPoint {
 public:
  ConnectionPoint(IConnectionPointContainer& owner, REFIID events) noexcept
      : owner_(owner), events_(events) {}
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

/// One argument of an event. By-value texts are borrowed for the time of the event.
class EventArgument {
 public:
  template <std::same_as<bool> Bool>  // A pointer is not silently a boolean.
  explicit EventArgument(Bool value) noexcept {
    set(VT_BOOL).boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  }
  explicit EventArgument(long value) noexcept { set(VT_I4).lVal = value; }
  explicit EventArgument(double value) noexcept { set(VT_R8).dblVal = value; }
  explicit EventArgument(BSTR value) noexcept { set(VT_BSTR).bstrVal = value; }
  explicit EventArgument(const Bstr& value) noexcept { set(VT_BSTR).bstrVal = value.get(); }
  explicit EventArgument(const VARIANT& value) noexcept : value_(value) {}
  explicit EventArgument(VARIANT_BOOL* answer) noexcept { set(VT_BYREF | VT_BOOL).pboolVal = answer; }
  explicit EventArgument(long* answer) noexcept { set(VT_BYREF | VT_I4).plVal = answer; }
  explicit EventArgument(IDispatch** object) noexcept { set(VT_BYREF | VT_DISPATCH).ppdispVal = object; }

  [[nodiscard]] const VARIANTARG& get() const noexcept { return value_; }

 private:
  VARIANTARG& set(VARTYPE type) noexcept {
    VariantInit(&value_);
    value_.vt = type;
    return value_;
  }
  VARIANTARG value_;
};

/// A base of every object with events. `Source` is the dispinterface.
template <class Source>
class EventSource : public IConnectionPointContainer {
 public:
  STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** enumerator) noexcept override;
  STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** point) noexcept override;

 protected:
  EventSource() noexcept : point_(*this, __uuidof(Source)) {}
  ~EventSource() = default;
  EventSource(const EventSource&) = delete;
  EventSource& operator=(const EventSource&) = delete;

  [[nodiscard]] bool hasSinks() const noexcept { return point_.hasSinks(); }

  /// Raises an event; its arguments are given in declaration order.
  template <class... Arguments>
  void raise(DISPID event, Arguments&&... arguments) noexcept {
    if (!point_.hasSinks()) {
      return;
    }
    if constexpr (sizeof...(Arguments) == 0) {
      point_.raise(event, nullptr, 0);
    } else {
      constexpr std::size_t count = sizeof...(Arguments);
      std::array<VARIANTARG, count> list;
      std::size_t at = count;
      ((list[--at] = EventArgument(std::forward<Arguments>(arguments)).get()), ...);
      point_.raise(event, list.data(), static_cast<UINT>(count));
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
