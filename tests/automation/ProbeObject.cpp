#include "automation/ProbeObject.h"

#include <stdexcept>
#include <system_error>
#include <vector>

#include "automation/Enumerator.h"

namespace zeq::test {

using automation::ComPtr;
using automation::Error;
using automation::raising;
using automation::text;
using automation::Variant;

namespace {

template <class Interface>
void replaceObject(Interface** variable, Interface* object) {
  const auto old = ComPtr<Interface>::attach(*variable);
  *variable = ComPtr<Interface>(object).detach();
}

template <class Value>
Variant numberVariant(Value value) {
  return Variant(static_cast<double>(value));
}

/// The values as texts, separated by "|". A missing argument is "missing", an object "object", no object
/// "nothing".
std::wstring joined(std::initializer_list<Variant> values) {
  std::wstring result;
  for (const Variant& value : values) {
    result += result.empty() && &value == values.begin() ? L"" : L"|";
    if (automation::isMissing(value.get())) {
      result += L"missing";
    } else if (value.type() == VT_DISPATCH) {
      result += value.get().pdispVal != nullptr ? L"object" : L"nothing";
    } else {
      result += automation::textOf(value.get());
    }
  }
  return result;
}

void growArray(SAFEARRAY& array) {
  void* data = nullptr;
  automation::check(SafeArrayAccessData(&array, &data));
  static_cast<VARIANT*>(data)[0].lVal += 1;
  SafeArrayUnaccessData(&array);
}

}  // namespace

STDMETHODIMP ProbeObject::get_Item(long Index, long* result) noexcept {
  return raising(result, [&] { return items_.at(static_cast<std::size_t>(Index)); });
}
STDMETHODIMP ProbeObject::put_Item(long Index, long value) noexcept {
  return raising([&] { items_.at(static_cast<std::size_t>(Index)) = value; });
}
STDMETHODIMP ProbeObject::get_NewEnum(IUnknown** result) noexcept {
  return raising(result, [&] {
    automation::VariantEnumerator::Elements elements;
    for (const long item : items_) {
      elements.push_back({Variant(item)});
    }
    return automation::VariantEnumerator::make(std::move(elements));
  });
}

STDMETHODIMP ProbeObject::EchoByte(unsigned char value, unsigned char* result) noexcept {
  return raising(result, [&] { return value; });
}
STDMETHODIMP ProbeObject::EchoShort(short value, short* result) noexcept {
  return raising(result, [&] { return value; });
}
STDMETHODIMP ProbeObject::EchoLong(long value, long* result) noexcept {
  return raising(result, [&] { return value; });
}
STDMETHODIMP ProbeObject::EchoSingle(float value, float* result) noexcept {
  return raising(result, [&] { return value; });
}
STDMETHODIMP ProbeObject::EchoDouble(double value, double* result) noexcept {
  return raising(result, [&] { return value; });
}
STDMETHODIMP ProbeObject::EchoBoolean(VARIANT_BOOL value, VARIANT_BOOL* result) noexcept {
  return raising(result, [&] { return value; });
}
STDMETHODIMP ProbeObject::EchoText(BSTR value, BSTR* result) noexcept {
  return raising(result, [&] { return text(value); });
}
STDMETHODIMP ProbeObject::EchoDate(DATE value, DATE* result) noexcept {
  return raising(result, [&] { return value; });
}
STDMETHODIMP ProbeObject::EchoCurrency(CURRENCY value, CURRENCY* result) noexcept {
  return raising([&] { *result = value; });
}
STDMETHODIMP ProbeObject::EchoVariant(VARIANT value, VARIANT* result) noexcept {
  return raising(result, [&] { return Variant(value); });
}
STDMETHODIMP ProbeObject::EchoEnum(enumProbe value, enumProbe* result) noexcept {
  return raising(result, [&] { return value; });
}
STDMETHODIMP ProbeObject::EchoObject(IDispatch* value, IDispatch** result) noexcept {
  return raising(result, [&] { return ComPtr<IDispatch>(value); });
}
STDMETHODIMP ProbeObject::EchoProbe(_Probe* value, _Probe** result) noexcept {
  return raising(result, [&] { return ComPtr<_Probe>(value); });
}
STDMETHODIMP ProbeObject::EchoUnknown(IUnknown* value, IUnknown** result) noexcept {
  return raising(result, [&] { return ComPtr<IUnknown>(value); });
}

STDMETHODIMP ProbeObject::ChangeByte(unsigned char* value) noexcept {
  return raising([&] { ++*value; });
}
STDMETHODIMP ProbeObject::ChangeShort(short* value) noexcept {
  return raising([&] { ++*value; });
}
STDMETHODIMP ProbeObject::ChangeLong(long* value) noexcept {
  return raising([&] { ++*value; });
}
STDMETHODIMP ProbeObject::ChangeSingle(float* value) noexcept {
  return raising([&] { *value += 1; });
}
STDMETHODIMP ProbeObject::ChangeDouble(double* value) noexcept {
  return raising([&] { *value += 1; });
}
STDMETHODIMP ProbeObject::ChangeBoolean(VARIANT_BOOL* value) noexcept {
  return raising([&] { *value = *value != VARIANT_FALSE ? VARIANT_FALSE : VARIANT_TRUE; });
}
STDMETHODIMP ProbeObject::ChangeText(BSTR* value) noexcept {
  return raising([&] { automation::assign(value, std::wstring(text(value)) + L"!"); });
}
STDMETHODIMP ProbeObject::ChangeDate(DATE* value) noexcept {
  return raising([&] { *value += 1; });
}
STDMETHODIMP ProbeObject::ChangeCurrency(CURRENCY* value) noexcept {
  return raising([&] { value->int64 += 10000; });
}
STDMETHODIMP ProbeObject::ChangeVariant(VARIANT* value) noexcept {
  return raising([&] {
    if (value->vt == (VT_BYREF | VT_ARRAY | VT_VARIANT)) {
      growArray(**value->pparray);
    } else if (value->vt == (VT_ARRAY | VT_VARIANT)) {
      growArray(*value->parray);
    } else {
      Variant changed(std::wstring_view(automation::textOf(*value) + L"!"));
      std::swap(*value, changed.get());
    }
  });
}
STDMETHODIMP ProbeObject::ChangeEnum(enumProbe* value) noexcept {
  return raising([&] { *value = static_cast<enumProbe>(*value + 1); });
}
STDMETHODIMP ProbeObject::ChangeObject(IDispatch** value) noexcept {
  return raising([&] { replaceObject<IDispatch>(value, this); });
}
STDMETHODIMP ProbeObject::ChangeProbe(_Probe** value) noexcept {
  return raising([&] { replaceObject<_Probe>(value, this); });
}
STDMETHODIMP ProbeObject::ChangeUnknown(IUnknown** value) noexcept {
  return raising([&] { replaceObject<IUnknown>(value, static_cast<_Probe*>(this)); });
}

STDMETHODIMP ProbeObject::ReadLong(long* value, long* result) noexcept {
  return raising(result, [&] { return *value; });
}
STDMETHODIMP ProbeObject::ReadText(BSTR* value, BSTR* result) noexcept {
  return raising(result, [&] { return text(value); });
}
STDMETHODIMP ProbeObject::ReadVariant(VARIANT* value, BSTR* result) noexcept {
  return raising(result, [&] { return std::to_wstring(value->vt) + L":" + joined({Variant(*value)}); });
}
STDMETHODIMP ProbeObject::ReadObject(IDispatch** value, IDispatch** result) noexcept {
  return raising(result, [&] { return ComPtr<IDispatch>(*value); });
}

STDMETHODIMP ProbeObject::Defaults(long number, VARIANT_BOOL flag, BSTR textA, enumProbe kind,
                                   BSTR* textByReference, long* numberByReference, BSTR* result) noexcept {
  return raising(result, [&] {
    return joined({Variant(number), Variant(flag != VARIANT_FALSE), Variant(text(textA)),
                   Variant(static_cast<long>(kind)), Variant(text(textByReference)),
                   Variant(*numberByReference)});
  });
}
STDMETHODIMP ProbeObject::Zeros(double number, BSTR textA, IDispatch* object, VARIANT any,
                                VARIANT* anyByReference, long* written, BSTR* writtenText,
                                BSTR* result) noexcept {
  return raising(result, [&] {
    std::wstring seen = joined({Variant(number), Variant(text(textA)), Variant(object), Variant(any),
                                Variant(*anyByReference), Variant(*written), Variant(text(writtenText))});
    *written = 5;
    automation::assign(writtenText, L"written");
    return seen;
  });
}
STDMETHODIMP ProbeObject::Join(BSTR first, BSTR second, BSTR third, BSTR* result) noexcept {
  return raising(result, [&] {
    return joined({Variant(text(first)), Variant(text(second)), Variant(text(third))});
  });
}

STDMETHODIMP ProbeObject::get_Text(BSTR* result) noexcept {
  return raising(result, [&] { return std::wstring_view(text_); });
}
STDMETHODIMP ProbeObject::put_Text(BSTR value) noexcept {
  return raising([&] { text_ = text(value); });
}
STDMETHODIMP ProbeObject::get_Any(VARIANT* result) noexcept {
  return raising(result, [&] { return any_; });
}
STDMETHODIMP ProbeObject::put_Any(VARIANT value) noexcept {
  return raising([&] {
    any_ = Variant(value);
    lastAssignment_ = L"put";
  });
}
STDMETHODIMP ProbeObject::putref_Any(IDispatch* value) noexcept {
  return raising([&] {
    any_ = Variant(value);
    lastAssignment_ = L"putref";
  });
}
STDMETHODIMP ProbeObject::get_Companion(_Probe** result) noexcept {
  return raising(result, [&] { return companion_; });
}
STDMETHODIMP ProbeObject::putref_Companion(_Probe* value) noexcept {
  return raising([&] { companion_ = ComPtr<_Probe>(value); });
}
STDMETHODIMP ProbeObject::get_Other(IDispatch** result) noexcept {
  return raising(result, [&] { return other_; });
}
STDMETHODIMP ProbeObject::put_Other(IDispatch* value) noexcept {
  return raising([&] { other_ = ComPtr<IDispatch>(value); });
}
STDMETHODIMP ProbeObject::get_Slot(BSTR section, long number, BSTR* result) noexcept {
  return raising(result, [&] { return std::wstring_view(slots_[{std::wstring(text(section)), number}]); });
}
STDMETHODIMP ProbeObject::put_Slot(BSTR section, long number, BSTR value) noexcept {
  return raising([&] { slots_[{std::wstring(text(section)), number}] = text(value); });
}
STDMETHODIMP ProbeObject::get_ReadOnly(long* result) noexcept {
  return raising(result, [] { return 42L; });
}
STDMETHODIMP ProbeObject::get_Step(IProbeStep** result) noexcept {
  return raising(result, [&] { return step_; });
}
STDMETHODIMP ProbeObject::putref_Step(IProbeStep* value) noexcept {
  return raising([&] { step_ = ComPtr<IProbeStep>(value); });
}
STDMETHODIMP ProbeObject::get_LastAssignment(BSTR* result) noexcept {
  return raising(result, [&] { return std::wstring_view(lastAssignment_); });
}

STDMETHODIMP ProbeObject::Fail(long code) noexcept {
  return raising([&] { throw Error(static_cast<HRESULT>(code)); });
}
STDMETHODIMP ProbeObject::FailWithText(long code, BSTR description) noexcept {
  return raising([&] { throw Error(static_cast<HRESULT>(code), std::wstring(text(description))); });
}
STDMETHODIMP ProbeObject::FailSilently(long code, BSTR* /*result*/) noexcept {
  return static_cast<HRESULT>(code);
}
STDMETHODIMP ProbeObject::Throw(long kind) noexcept {
  return raising([&] {
    switch (kind) {
      case 1:
        throw std::system_error(ERROR_ACCESS_DENIED, std::system_category());
      case 2:
        throw std::overflow_error("too much");
      case 3:
        throw std::bad_alloc();
      case 4:
        throw std::logic_error("wrong");
      default:
        throw kind;
    }
  });
}

STDMETHODIMP ProbeObject::Sixteen(long a, long b, long c, long d, long e, long f, long g, long h, long i,
                                  long j, long k, long l, long m, long n, long o, long p,
                                  BSTR* result) noexcept {
  return raising(result, [&] {
    return joined({Variant(a), Variant(b), Variant(c), Variant(d), Variant(e), Variant(f), Variant(g),
                   Variant(h), Variant(i), Variant(j), Variant(k), Variant(l), Variant(m), Variant(n),
                   Variant(o), Variant(p)});
  });
}
STDMETHODIMP ProbeObject::FourVariants(VARIANT a, VARIANT b, VARIANT c, VARIANT d, BSTR* result) noexcept {
  return raising(result, [&] { return joined({Variant(a), Variant(b), Variant(c), Variant(d)}); });
}
STDMETHODIMP ProbeObject::Mixed(float a, long b, double c, VARIANT_BOOL d, CURRENCY e, VARIANT f, BSTR g,
                                float h, short i, DATE j, BSTR* result) noexcept {
  return raising(result, [&] {
    return joined({numberVariant(a), Variant(b), Variant(c), Variant(d != VARIANT_FALSE),
                   numberVariant(e.int64), Variant(f), Variant(text(g)), numberVariant(h), Variant(i),
                   Variant(j)});
  });
}

STDMETHODIMP ProbeObject::Ask(VARIANT_BOOL* answer, long* count, BSTR* textA) noexcept {
  return raising([&] {
    const auto alive = keepAlive();
    raise(1, answer, count, textA, static_cast<IDispatch*>(static_cast<_Probe*>(this)));
  });
}
STDMETHODIMP ProbeObject::CallOut(BSTR* textA, VARIANT* any, BSTR* result) noexcept {
  return raising(result, [&] {
    const auto alive = keepAlive();
    const std::wstring before(text(textA));
    const Variant anyBefore(*any);
    raise(2);
    return before + L"," + joined({anyBefore});
  });
}
STDMETHODIMP ProbeObject::RunStep(IProbeStep* stepToRun, BSTR* next, enumProbe* result) noexcept {
  return raising(result, [&] {
    const auto alive = keepAlive();
    const automation::Bstr caption(L"the caption");
    enumProbe outcome = prbNone;
    automation::check(stepToRun->Run(caption.get(), VARIANT_TRUE, next, this, &outcome));
    return outcome;
  });
}
STDMETHODIMP ProbeObject::ExchangeStep(IProbeStep** stepToRun) noexcept {
  return raising([&] {
    IProbeStep* given = *stepToRun;
    *stepToRun = step_.detach();
    step_ = ComPtr<IProbeStep>::attach(given);
  });
}
STDMETHODIMP ProbeObject::RaiseLevel(IProbeStep* stepToRun, long* result) noexcept {
  return raising(result, [&] {
    long level = 0;
    automation::check(stepToRun->get_Level(&level));
    automation::check(stepToRun->put_Level(level + 1));
    return level + 1;
  });
}

}  // namespace zeq::test
