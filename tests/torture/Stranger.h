#pragma once
// An object of the client's own: it knows every name or none, and answers calls as chance has it. The
// component must bear it wherever it takes an object.

#include <windows.h>
#include <oleauto.h>

#include <functional>

#include "automation/ComPtr.h"
#include "support/ClientObject.h"

namespace zeq::torture {

class Stranger final : public test::ClientObject<> {
 public:
  enum class Kind {
    knowsEveryName,
    knowsNoName,
    answersNoName,  ///< It has no IDispatch at all.
  };
  /// What its calls fail with; a member that calls it may pass that on.
  static constexpr HRESULT failure = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_ITF, 0x2FF);

  /// What it does; lasts longer than the object.
  struct Manners {
    std::function<HRESULT(const DISPPARAMS& arguments, VARIANT* result, EXCEPINFO* exception)> answer;
    std::function<void()> go;  ///< When its last reference is released.
  };

  [[nodiscard]] static automation::ComPtr<IDispatch> make(Kind kind, const Manners& manners) {
    return automation::ComPtr<IDispatch>::attach(new Stranger(kind, manners));
  }

  /// How many there are.
  [[nodiscard]] static long alive() noexcept { return alive_; }

  STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override;
  STDMETHODIMP GetIDsOfNames(REFIID reserved, wchar_t** names, UINT count, LCID locale,
                             DISPID* ids) noexcept override;
  STDMETHODIMP Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* arguments,
                      VARIANT* result, EXCEPINFO* exception, UINT* argumentError) noexcept override;

 private:
  Stranger(Kind kind, const Manners& manners) : kind_(kind), manners_(manners) { ++alive_; }
  ~Stranger() override {
    --alive_;
    manners_.go();
  }

  Kind kind_;
  const Manners& manners_;
  static inline long alive_ = 0;
};

}  // namespace zeq::torture
