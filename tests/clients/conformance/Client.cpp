// The program: runs every scenario against the registered library and counts the checks. At the end every
// member of every class must have been used. Usage: client <empty folder>

#include <algorithm>
#include <cstdio>
#include <map>
#include <set>

#include "Scenario.h"

namespace conformance {
namespace {

int passed = 0;
int failed = 0;
std::wstring scratch;

std::vector<std::pair<const wchar_t*, std::function<void()>>>& scenarios() {
  static std::vector<std::pair<const wchar_t*, std::function<void()>>> list;
  return list;
}

std::wstring lowerCase(std::wstring_view text) {
  std::wstring lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](wchar_t c) { return static_cast<wchar_t>(towlower(c)); });
  return lower;
}

std::wstring textOf(REFIID interfaceId) {
  wchar_t id[40];
  StringFromGUID2(interfaceId, id, 40);
  return id;
}

std::wstring memberKey(REFIID interfaceId, int use, std::wstring_view name) {
  return textOf(interfaceId) + std::to_wstring(use) + lowerCase(name);
}

std::set<std::wstring>& usedMembers() {
  static std::set<std::wstring> members;
  return members;
}

void count(bool good, std::wstring_view what) {
  (good ? passed : failed)++;
  if (!good) {
    std::wprintf(L"FAILED %.*ls\n", static_cast<int>(what.size()), what.data());
  }
}

std::wstring shown(const Value& value) {
  if (value.get().vt == VT_DISPATCH) {
    return value.object() != nullptr ? L"an object" : L"Nothing";
  }
  if ((value.get().vt & VT_ARRAY) != 0) {
    return L"an array";
  }
  return value.text() + L" (type " + std::to_wstring(value.get().vt) + L")";
}

bool same(const Value& actual, const Value& expected) {
  if (actual.object() != nullptr || expected.object() != nullptr || expected.get().vt == VT_DISPATCH) {
    return actual.object() == expected.object();
  }
  if ((actual.get().vt == VT_BSTR) != (expected.get().vt == VT_BSTR)) {
    return false;
  }
  if (expected.get().vt == VT_BSTR) {
    return actual.text() == expected.text();
  }
  if (expected.get().vt <= VT_NULL || actual.get().vt <= VT_NULL) {
    return actual.get().vt == expected.get().vt;
  }
  return actual.as(VT_R8).get().dblVal == expected.as(VT_R8).get().dblVal;
}

/// Events received so far, each by its interface and its number.
std::set<std::pair<std::wstring, DISPID>>& receivedEvents() {
  static std::set<std::pair<std::wstring, DISPID>> events;
  return events;
}

/// Counts each member of one of a class's interfaces as used or not, or, if they are its events, as raised or
/// not.
void countMembers(ITypeInfo& classInfo, UINT index, const std::wstring& className) {
  HREFTYPE reference = 0;
  INT flags = 0;
  ITypeInfo* members = nullptr;
  expectSuccess(classInfo.GetImplTypeFlags(index, &flags), className);
  expectSuccess(classInfo.GetRefTypeOfImplType(index, &reference), className);
  expectSuccess(classInfo.GetRefTypeInfo(reference, &members), className);
  TYPEATTR* attributes = nullptr;
  expectSuccess(members->GetTypeAttr(&attributes), className);
  const bool areEvents = (flags & IMPLTYPEFLAG_FSOURCE) != 0;
  for (UINT i = 0; i < attributes->cFuncs; ++i) {
    FUNCDESC* function = nullptr;
    BSTR name = nullptr;
    expectSuccess(members->GetFuncDesc(i, &function), className);
    members->GetDocumentation(function->memid, &name, nullptr, nullptr, nullptr);
    if (areEvents) {
      count(receivedEvents().contains({textOf(attributes->guid), function->memid}),
            className + L"." + name + L" is not raised");
    } else if ((function->wFuncFlags & FUNCFLAG_FRESTRICTED) == 0) {
      count(usedMembers().contains(memberKey(attributes->guid, function->invkind, name)),
            className + L"." + name + L" is not used (" + std::to_wstring(function->invkind) + L")");
    }
    SysFreeString(name);
    members->ReleaseFuncDesc(function);
  }
  members->ReleaseTypeAttr(attributes);
  members->Release();
}

void countAllMembers() {
  ITypeLib* library = nullptr;
  expectSuccess(LoadRegTypeLib(LIBID_ZEQUtility2, 1, 0, LOCALE_NEUTRAL, &library), L"LoadRegTypeLib");
  for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
    TYPEKIND kind{};
    ITypeInfo* info = nullptr;
    BSTR name = nullptr;
    library->GetTypeInfoType(i, &kind);
    if (kind == TKIND_COCLASS && SUCCEEDED(library->GetTypeInfo(i, &info))) {
      info->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr);
      TYPEATTR* attributes = nullptr;
      expectSuccess(info->GetTypeAttr(&attributes), name);
      for (UINT index = 0; index < attributes->cImplTypes; ++index) {
        countMembers(*info, index, name);
      }
      info->ReleaseTypeAttr(attributes);
      SysFreeString(name);
      info->Release();
    }
  }
  library->Release();
}

void runAll() {
  for (const auto& [name, run] : scenarios()) {
    try {
      run();
    } catch (const Failure& failure) {
      const std::string what = failure.what();
      count(false, name + std::wstring(L" ends: ") + std::wstring(what.begin(), what.end()));
    }
  }
  countAllMembers();
}

}  // namespace

void expectSuccess(HRESULT result, std::wstring_view what) {
  if (FAILED(result)) {
    char code[16];
    std::snprintf(code, sizeof code, "0x%08lX", static_cast<unsigned long>(result));
    throw Failure(std::string(what.begin(), what.end()) + ": " + code);
  }
}

Value Value::as(VARTYPE type) const {
  Value result;
  expectSuccess(VariantChangeTypeEx(result.raw(), const_cast<VARIANT*>(&variant_), LOCALE_NEUTRAL,
                                    VARIANT_ALPHABOOL, type),
                L"a conversion");
  return result;
}

std::wstring Value::text() const {
  if (variant_.vt == VT_EMPTY || variant_.vt == VT_NULL) {
    return variant_.vt == VT_NULL ? L"Null" : L"";
  }
  const Value converted = as(VT_BSTR);
  return {converted.get().bstrVal, SysStringLen(converted.get().bstrVal)};
}

Scenario::Scenario(const wchar_t* name, std::function<void()> run) {
  scenarios().emplace_back(name, std::move(run));
}

void noteUse(REFIID interfaceId, Use use, std::wstring_view name) {
  usedMembers().insert(memberKey(interfaceId, static_cast<int>(use), name));
}

void equal(std::wstring_view what, const Value& actual, const Value& expected) {
  const bool good = same(actual, expected);
  count(good, good ? std::wstring(what)
                   : std::wstring(what) + L": expected " + shown(expected) + L", got " + shown(actual));
}

const std::wstring& scratchFolder() {
  return scratch;
}

std::wstring writeFile(const std::wstring& name, std::string_view text) {
  std::wstring path = scratch + L"\\" + name;
  const HANDLE file =
      CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  DWORD written = 0;
  if (file == INVALID_HANDLE_VALUE ||
      WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) == FALSE) {
    throw Failure("a file cannot be written");
  }
  CloseHandle(file);
  return path;
}

Value createObject(const wchar_t* className) {
  const std::wstring progId = std::wstring(L"ZEQUtility2.") + className;
  CLSID id{};
  Value object(static_cast<IDispatch*>(nullptr));
  expectSuccess(CLSIDFromProgID(progId.c_str(), &id), progId);
  expectSuccess(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                 reinterpret_cast<void**>(&object.raw()->pdispVal)),
                progId);
  return object;
}

IDispatch& Value::needObject() const {
  if (object() == nullptr) {
    throw Failure("an object is missing");
  }
  return *object();
}

Value asInterface(const Value& object, REFIID iid) {
  Value other(static_cast<IDispatch*>(nullptr));
  expectSuccess(object.needObject().QueryInterface(iid, reinterpret_cast<void**>(&other.raw()->pdispVal)),
                L"QueryInterface");
  return other;
}

Value callByName(IDispatch* object, Use use, const wchar_t* name, std::vector<Argument> arguments) {
  DISPID id = 0;
  auto* names = const_cast<LPOLESTR>(name);
  expectSuccess(object->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id), name);
  std::vector<VARIANT> passed;
  for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument) {
    VARIANT variant = argument->value.get();
    if (argument->variable != nullptr) {
      variant.vt = VT_BYREF | VT_VARIANT;
      variant.pvarVal = argument->variable->raw();
    }
    passed.push_back(variant);
  }
  DISPID putId = DISPID_PROPERTYPUT;
  const bool puts = use == Use::put || use == Use::set;
  DISPPARAMS parameters{passed.data(), puts ? &putId : nullptr, static_cast<UINT>(passed.size()),
                        puts ? 1U : 0U};
  const WORD flags =
      use == Use::method || use == Use::get ? DISPATCH_METHOD | DISPATCH_PROPERTYGET : static_cast<WORD>(use);
  Value result;
  EXCEPINFO exception{};
  const HRESULT outcome = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                         puts ? nullptr : result.raw(), &exception, nullptr);
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  expectSuccess(outcome == DISP_E_EXCEPTION ? exception.scode : outcome, name);
  return result;
}

STDMETHODIMP ScriptObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept {
  if (count != 1) {
    return DISP_E_UNKNOWNNAME;
  }
  names_.emplace_back(names[0]);
  *ids = static_cast<DISPID>(names_.size());
  return S_OK;
}

STDMETHODIMP ScriptObject::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT* result,
                                  EXCEPINFO*, UINT*) noexcept {
  Value value = handler_(names_[static_cast<std::size_t>(id - 1)], *parameters);
  if (result != nullptr) {
    std::swap(*result, *value.raw());
  }
  return S_OK;
}

/// Answers for the dispinterface that it listens to.
class Listener::Sink final : public zeq::test::ClientObject<> {
 public:
  Sink(REFIID events, bool agrees) : events_(events), agrees_(agrees) {}
  STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override {
    return ClientObject::QueryInterface(IsEqualIID(iid, events_) ? IID_IDispatch : iid, object);
  }
  STDMETHODIMP Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                      UINT*) noexcept override {
    ++counts[event];
    receivedEvents().emplace(textOf(events_), event);
    for (UINT i = 0; i < arguments->cArgs && agrees_; ++i) {
      if (arguments->rgvarg[i].vt == (VT_BYREF | VT_BOOL)) {
        *arguments->rgvarg[i].pboolVal = VARIANT_TRUE;
      }
    }
    return S_OK;
  }

  std::map<DISPID, int> counts;

 private:
  const IID events_;
  const bool agrees_;
};

Listener::Listener(const Value& source, REFIID events, bool agrees) : sink_(new Sink(events, agrees)) {
  IConnectionPointContainer* container = nullptr;
  expectSuccess(
      source.needObject().QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&container)),
      L"IConnectionPointContainer");
  const HRESULT found = container->FindConnectionPoint(events, &point_);
  container->Release();
  expectSuccess(found, L"FindConnectionPoint");
  expectSuccess(point_->Advise(sink_, &cookie_), L"Advise");
}

Listener::~Listener() {
  point_->Unadvise(cookie_);
  point_->Release();
  sink_->Release();
}

int Listener::count(DISPID event) const {
  const auto found = sink_->counts.find(event);
  return found != sink_->counts.end() ? found->second : 0;
}

int Listener::count() const {
  int total = 0;
  for (const auto& [event, times] : sink_->counts) {
    total += times;
  }
  return total;
}

}  // namespace conformance

int wmain(int count, wchar_t** arguments) {
  if (count != 2) {
    std::printf("usage: client <empty folder>\n");
    return 2;
  }
  conformance::scratch = arguments[1];
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  conformance::runAll();
  CoUninitialize();
  std::printf("%d passed, %d failed\n", conformance::passed, conformance::failed);
  return conformance::failed == 0 ? 0 : 1;
}
