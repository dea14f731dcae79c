#pragma once
// The test interface's class: its members do what Probe.idl says, so that tests can see what arrived.

#include <array>
#include <map>
#include <string>
#include <utility>

#include "Probe.h"
#include "automation/Object.h"

namespace zeq::test {

class ProbeObject final : public automation::Object<ProbeObject, ::Probe, ::_Probe, ::__Probe> {
 public:
  STDMETHODIMP get_Item(long Index, long* result) noexcept override;
  STDMETHODIMP put_Item(long Index, long value) noexcept override;
  STDMETHODIMP get_NewEnum(IUnknown** result) noexcept override;
  STDMETHODIMP EchoByte(unsigned char value, unsigned char* result) noexcept override;
  STDMETHODIMP EchoShort(short value, short* result) noexcept override;
  STDMETHODIMP EchoLong(long value, long* result) noexcept override;
  STDMETHODIMP EchoSingle(float value, float* result) noexcept override;
  STDMETHODIMP EchoDouble(double value, double* result) noexcept override;
  STDMETHODIMP EchoBoolean(VARIANT_BOOL value, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP EchoText(BSTR value, BSTR* result) noexcept override;
  STDMETHODIMP EchoDate(DATE value, DATE* result) noexcept override;
  STDMETHODIMP EchoCurrency(CURRENCY value, CURRENCY* result) noexcept override;
  STDMETHODIMP EchoVariant(VARIANT value, VARIANT* result) noexcept override;
  STDMETHODIMP EchoEnum(enumProbe value, enumProbe* result) noexcept override;
  STDMETHODIMP EchoObject(IDispatch* value, IDispatch** result) noexcept override;
  STDMETHODIMP EchoProbe(_Probe* value, _Probe** result) noexcept override;
  STDMETHODIMP EchoUnknown(IUnknown* value, IUnknown** result) noexcept override;
  STDMETHODIMP ChangeByte(unsigned char* value) noexcept override;
  STDMETHODIMP ChangeShort(short* value) noexcept override;
  STDMETHODIMP ChangeLong(long* value) noexcept override;
  STDMETHODIMP ChangeSingle(float* value) noexcept override;
  STDMETHODIMP ChangeDouble(double* value) noexcept override;
  STDMETHODIMP ChangeBoolean(VARIANT_BOOL* value) noexcept override;
  STDMETHODIMP ChangeText(BSTR* value) noexcept override;
  STDMETHODIMP ChangeDate(DATE* value) noexcept override;
  STDMETHODIMP ChangeCurrency(CURRENCY* value) noexcept override;
  STDMETHODIMP ChangeVariant(VARIANT* value) noexcept override;
  STDMETHODIMP ChangeEnum(enumProbe* value) noexcept override;
  STDMETHODIMP ChangeObject(IDispatch** value) noexcept override;
  STDMETHODIMP ChangeProbe(_Probe** value) noexcept override;
  STDMETHODIMP ChangeUnknown(IUnknown** value) noexcept override;
  STDMETHODIMP ReadLong(long* value, long* result) noexcept override;
  STDMETHODIMP ReadText(BSTR* value, BSTR* result) noexcept override;
  STDMETHODIMP ReadVariant(VARIANT* value, BSTR* result) noexcept override;
  STDMETHODIMP ReadObject(IDispatch** value, IDispatch** result) noexcept override;
  STDMETHODIMP Defaults(long number, VARIANT_BOOL flag, BSTR text, enumProbe kind, BSTR* textByReference,
                        long* numberByReference, BSTR* result) noexcept override;
  STDMETHODIMP Zeros(double number, BSTR text, IDispatch* object, VARIANT any, VARIANT* anyByReference,
                     long* written, BSTR* writtenText, BSTR* result) noexcept override;
  STDMETHODIMP Join(BSTR first, BSTR second, BSTR third, BSTR* result) noexcept override;
  STDMETHODIMP get_Text(BSTR* result) noexcept override;
  STDMETHODIMP put_Text(BSTR value) noexcept override;
  STDMETHODIMP get_Any(VARIANT* result) noexcept override;
  STDMETHODIMP put_Any(VARIANT value) noexcept override;
  STDMETHODIMP putref_Any(IDispatch* value) noexcept override;
  STDMETHODIMP get_Companion(_Probe** result) noexcept override;
  STDMETHODIMP putref_Companion(_Probe* value) noexcept override;
  STDMETHODIMP get_Other(IDispatch** result) noexcept override;
  STDMETHODIMP put_Other(IDispatch* value) noexcept override;
  STDMETHODIMP get_Slot(BSTR section, long number, BSTR* result) noexcept override;
  STDMETHODIMP put_Slot(BSTR section, long number, BSTR value) noexcept override;
  STDMETHODIMP get_ReadOnly(long* result) noexcept override;
  STDMETHODIMP get_Step(IProbeStep** result) noexcept override;
  STDMETHODIMP putref_Step(IProbeStep* value) noexcept override;
  STDMETHODIMP get_LastAssignment(BSTR* result) noexcept override;
  STDMETHODIMP Fail(long code) noexcept override;
  STDMETHODIMP FailWithText(long code, BSTR description) noexcept override;
  STDMETHODIMP FailSilently(long code, BSTR* result) noexcept override;
  STDMETHODIMP Throw(long kind) noexcept override;
  STDMETHODIMP Sixteen(long a, long b, long c, long d, long e, long f, long g, long h, long i, long j, long k,
                       long l, long m, long n, long o, long p, BSTR* result) noexcept override;
  STDMETHODIMP FourVariants(VARIANT a, VARIANT b, VARIANT c, VARIANT d, BSTR* result) noexcept override;
  STDMETHODIMP Mixed(float a, long b, double c, VARIANT_BOOL d, CURRENCY e, VARIANT f, BSTR g, float h,
                     short i, DATE j, BSTR* result) noexcept override;
  STDMETHODIMP Ask(VARIANT_BOOL* answer, long* count, BSTR* text) noexcept override;
  STDMETHODIMP CallOut(BSTR* text, VARIANT* any, BSTR* result) noexcept override;
  STDMETHODIMP RunStep(IProbeStep* stepToRun, BSTR* next, enumProbe* result) noexcept override;
  STDMETHODIMP ExchangeStep(IProbeStep** stepToRun) noexcept override;
  STDMETHODIMP RaiseLevel(IProbeStep* stepToRun, long* result) noexcept override;

 private:
  std::array<long, 10> items_{};
  std::wstring text_;
  automation::Variant any_;
  automation::ComPtr<_Probe> companion_;
  automation::ComPtr<IDispatch> other_;
  automation::ComPtr<IProbeStep> step_;
  std::map<std::pair<std::wstring, long>, std::wstring> slots_;
  std::wstring lastAssignment_;
};

}  // namespace zeq::test
