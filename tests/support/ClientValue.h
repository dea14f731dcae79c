#pragma once
// A client's object that stands for a value: whoever takes the value runs the client's code, and so does
// whoever releases the object for the last time.

#include <functional>
#include <utility>

#include "support/ClientObject.h"
#include "support/Component.h"

namespace zeq::test {

class ClientValue final : public ClientObject<> {
 public:
  [[nodiscard]] static Variant make(
      std::function<Variant()> compute, std::function<void()> released = [] {}) {
    const auto object = ComPtr<IDispatch>::attach(new ClientValue(std::move(compute), std::move(released)));
    return Variant(object.get());
  }

  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                      UINT*) noexcept override {
    if (id != DISPID_VALUE || result == nullptr) {
      return DISP_E_MEMBERNOTFOUND;
    }
    *result = compute_().detach();
    return S_OK;
  }

 private:
  ClientValue(std::function<Variant()> compute, std::function<void()> released)
      : compute_(std::move(compute)), released_(std::move(released)) {}
  ~ClientValue() override { released_(); }

  std::function<Variant()> compute_;
  std::function<void()> released_;
};

}  // namespace zeq::test
