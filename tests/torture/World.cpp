#include "torture/World.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <utility>

#include "automation/TypeInfo.h"
#include "support/Printable.h"
#include "torture/Report.h"

namespace zeq::torture {

using automation::check;
using automation::ComPtr;
using automation::Variant;

namespace {

constexpr std::size_t mostObjects = 60;
constexpr std::size_t mostConnections = 20;
constexpr std::size_t mostEnumerators = 10;
constexpr std::size_t mostModels = 8;
constexpr int deepest = 3;
constexpr unsigned borrowingCalls = 25;   ///< In a hundred.
constexpr int mostBorrowingCalls = 20;    ///< In a row.
constexpr unsigned lettingHandlers = 40;  ///< In a hundred, during a borrowing call.

/// Members that would end the test program, start other programs or wait for a person: they have tests of
/// their own.
bool isLeftOut(const std::wstring& type, const std::wstring& member) {
  static const std::vector<std::pair<std::wstring, std::wstring>> leftOut{
      {L"CZEQAudit", L"ZEQAudit"},  {L"CZEQAudit", L"DebugMask"}, {L"CZEQAudit", L"ZEQMsgBox"},
      {L"CAttachment", L"Execute"}, {L"CWinHelp", L"LocateHelp"},
  };
  return std::find(leftOut.begin(), leftOut.end(), std::pair(type, member)) != leftOut.end();
}

/// Members that keep the object given to them and have no member to let it go: a ring of objects that hold
/// each other would be the client's leak, so that they get strangers only, which hold nothing.
bool keepsItsArgument(const std::wstring& type, const std::wstring& member) {
  static const std::vector<std::wstring> types{L"CZEQAudit",    L"CRangeMapper", L"CAppSetting",
                                               L"CAppSettings", L"CAppOptions",  L"CIniFileEx"};
  return std::find(types.begin(), types.end(), type) != types.end() ||
         (type == L"CWizardStepDetails" && member == L"TheStep") ||
         (type == L"CWizard" && member == L"AddStep");
}

/// A collection that is let go is emptied first: collections may hold each other.
void emptyCollection(IDispatch& object) {
  const auto collection = ComPtr<IDispatch>(&object).query<_Collection>();
  long count = 0;
  while (collection && SUCCEEDED(collection->get_Count(&count)) && count > 0) {
    if (FAILED(collection->Remove(Variant(1L).get()))) {
      return;
    }
  }
}

bool isAllowed(HRESULT code) {
  if (SUCCEEDED(code) || HRESULT_FACILITY(code) == FACILITY_DISPATCH) {
    return true;
  }
  return code == E_OUTOFMEMORY || code == E_INVALIDARG || code == E_POINTER || code == Stranger::failure;
}

bool isAllowedError(HRESULT code) {
  return HRESULT_FACILITY(code) == FACILITY_CONTROL || isAllowed(code);
}

/// The type of an argument, and of the variable behind it: "0x400C>8" is a reference to a variable with a
/// text.
std::string describeType(const VARIANT& argument) {
  char text[32];
  const bool refers = argument.vt == (VT_BYREF | VT_VARIANT) && argument.pvarVal != nullptr;
  std::snprintf(text, sizeof text, "0x%X>0x%X", argument.vt,
                refers ? static_cast<unsigned>(argument.pvarVal->vt) : 0U);
  return text;
}

}  // namespace

World::World(Random& random)
    : random_(random),
      objectSource_([this] { return anyObject(); }),
      strangers_([this] { return stranger(); }),
      manners_{[this](const DISPPARAMS& arguments, VARIANT* result, EXCEPINFO* exception) {
                 return answer(arguments, result, exception);
               },
               [this] { reenter(); }} {
  readClasses();
}

World::~World() {
  depth_ = deepest;  // What goes now does nothing more.
  connections_.clear();
  retired_.clear();
  enumerators_.clear();
  while (!live_.empty()) {
    forget();
  }
}

void World::readClasses() {
  for (const test::LibraryType& type : test::libraryTypes(TKIND_COCLASS)) {
    if ((type.flags & TYPEFLAG_FCANCREATE) == 0) {
      continue;
    }
    Class read{.name = type.name, .clsid = type.guid, .hasEvents = false, .events = {}, .members = {}};
    for (const test::Implemented& implemented : test::implementedBy(type)) {
      if ((implemented.flags & IMPLTYPEFLAG_FSOURCE) != 0) {
        read.hasEvents = true;
        read.events = implemented.type.guid;
      } else if ((implemented.flags & IMPLTYPEFLAG_FDEFAULT) != 0) {
        read.members = test::membersOf(implemented.type);
        std::erase_if(read.members,
                      [&](const test::LibraryMember& member) { return isLeftOut(type.name, member.name); });
      }
    }
    classes_.push_back(std::move(read));
  }
}

void World::step() {
  const std::size_t kind = random_.below(100);
  if (live_.empty() || (kind < 6 && live_.size() < mostObjects)) {
    create();
  } else if (kind < 11) {
    forget();
  } else if (kind < 14) {
    connect(random_.pick(live_));
  } else if (kind < 16 && !connections_.empty()) {
    disconnect(random_.below(connections_.size()));
  } else if (kind < 19) {
    enumerate();
  } else if (kind < 25) {
    playModel();
  } else if (kind < 27 && live_.size() < mostObjects) {
    insist();
  } else {
    callRandomMember();
  }
  if (depth_ == 0) {
    retired_.clear();
  }
}

void World::create() {
  const Class& type = random_.pick(classes_);
  setCurrent("create " + test::printable(type.name));
  ComPtr<IDispatch> object;
  check(test::classFactory(type.clsid)->CreateInstance(nullptr, IID_IDispatch, object.outVoid()));
  live_.push_back({&type, std::move(object), ++lastIdentity_});
}

void World::forget() {
  forget(random_.below(live_.size()));
}

void World::forget(std::size_t index) {
  const Live gone = std::move(live_[index]);
  live_.erase(live_.begin() + static_cast<std::ptrdiff_t>(index));
  setCurrent("release " + test::printable(gone.type->name));
  emptyCollection(*gone.object);
}

void World::connect(const Live& source) {
  if (!source.type->hasEvents || connections_.size() >= mostConnections) {
    return;
  }
  const ComPtr<IDispatch> object = source.object;
  const long identity = source.identity;
  auto sink = std::make_unique<test::Sink>(object.get(), source.type->events,
                                           [this](DISPID, std::vector<VARIANT*> arguments) {
                                             onEvent(arguments);
                                             return random_.chance(20) ? E_FAIL : S_OK;
                                           });
  connections_.push_back({identity, std::move(sink)});
}

/// The sink may be the one that is being called: it is destroyed when the event is over.
void World::disconnect(std::size_t index) {
  const auto place = connections_.begin() + static_cast<std::ptrdiff_t>(index);
  retired_.push_back(std::move(place->sink));
  connections_.erase(place);
  retired_.back()->disconnect();
}

void World::callRandomMember() {
  const Live& target = random_.pick(live_);
  if (!target.type->members.empty()) {
    call(target, random_.pick(target.type->members), random_.chance(borrowingCalls));
  }
}

/// Calls a new object again and again without a reference beside that in the world, which a handler may drop.
void World::insist() {
  create();
  const Class& type = *live_.back().type;
  IDispatch* object = live_.back().object.get();
  const long identity = live_.back().identity;
  connect(live_.back());
  for (int left = mostBorrowingCalls; left > 0 && isLive(identity) && !type.members.empty(); --left) {
    call({&type, ComPtr<IDispatch>(object), identity}, random_.pick(type.members), true);
  }
}

void World::call(Live target, const test::LibraryMember& member, bool borrows) {
  const Class& type = *target.type;
  ++calls_;
  Arguments arguments(random_, keepsItsArgument(type.name, member.name) ? strangers_ : objectSource_);
  std::size_t count = member.parameters;
  if (random_.chance(15)) {
    count = random_.below(count + 3);
  }
  for (std::size_t i = 0; i < count; ++i) {
    arguments.add();
  }
  WORD flags = member.kind;
  if (random_.chance(5)) {
    flags = static_cast<WORD>(random_.below(16));
  }
  const bool isPut = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  std::vector<DISPID> names;
  if (isPut && count > 0) {
    names.push_back(DISPID_PROPERTYPUT);
  } else if (random_.chance(5) && count > 0) {
    names.push_back(static_cast<DISPID>(random_.below(count + 1)));
  }
  std::string types;
  for (const VARIANT& argument : arguments.list()) {
    types += " " + describeType(argument);
  }
  std::array<char, 256> text{};
  std::snprintf(text.data(), text.size(), "%ls.%ls, flags %u, depth %d, arguments (last first):%s",
                type.name.c_str(), member.name.c_str(), static_cast<unsigned>(flags), depth_, types.c_str());
  setCurrent(text.data());

  DISPPARAMS parameters{arguments.list().data(), names.data(), static_cast<UINT>(count),
                        static_cast<UINT>(names.size())};
  Variant result;
  EXCEPINFO exception{};
  const bool wantsResult = random_.chance(80);
  const HRESULT code =
      invoke(std::move(target), borrows, member.id, flags, parameters, wantsResult ? &result.get() : nullptr,
             random_.chance(90) ? &exception : nullptr);
  const HRESULT error = exception.scode;
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  if (!isAllowed(code) || (code == DISP_E_EXCEPTION && error != 0 && !isAllowedError(error))) {
    char what[400];
    std::snprintf(what, sizeof what, "%s returned 0x%08lX (error 0x%08lX)", text.data(),
                  static_cast<unsigned long>(code), static_cast<unsigned long>(error));
    throw Violation(what);
  }
  if (result.type() == VT_DISPATCH) {
    keep(result.get().pdispVal);
  } else if (result.type() == VT_UNKNOWN && enumerators_.size() < mostEnumerators) {
    if (auto enumerator = ComPtr<IUnknown>(result.get().punkVal).query<IEnumVARIANT>()) {
      enumerators_.push_back(std::move(enumerator));
    }
  }
}

/// The call itself. If it borrows the object from the world, a handler may drop the last reference meanwhile.
HRESULT World::invoke(Live target, bool borrows, DISPID member, WORD flags, DISPPARAMS& parameters,
                      VARIANT* result, EXCEPINFO* exception) {
  IDispatch& object = *target.object;
  borrows = borrows && isLive(target.identity);  // Making the arguments may have dropped it already.
  if (borrows) {
    borrowed_.push_back(target.identity);
    target.object.reset();
  }
  UINT argumentError = 0;
  const HRESULT code = object.Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, result,
                                     exception, random_.chance(90) ? &argumentError : nullptr);
  if (borrows) {
    borrowed_.pop_back();
  }
  return code;
}

bool World::isLive(long identity) const {
  return std::any_of(live_.begin(), live_.end(), [&](const Live& each) { return each.identity == identity; });
}

void World::keep(IDispatch* object) {
  const Class* type = object != nullptr && live_.size() < mostObjects ? classOf(object) : nullptr;
  if (type != nullptr) {
    const auto known = std::find_if(live_.begin(), live_.end(),
                                    [&](const Live& each) { return each.object.get() == object; });
    const long identity = known != live_.end() ? known->identity : ++lastIdentity_;
    live_.push_back({type, ComPtr<IDispatch>(object), identity});
  }
}

const World::Class* World::classOf(IDispatch* object) const {
  const auto provider = ComPtr<IDispatch>(object).query<IProvideClassInfo>(IID_IProvideClassInfo);
  ComPtr<ITypeInfo> info;
  if (!provider || FAILED(provider->GetClassInfo(info.out()))) {
    return nullptr;
  }
  const std::wstring name = automation::documentationOf(*info).name;
  const auto found =
      std::find_if(classes_.begin(), classes_.end(), [&](const Class& each) { return each.name == name; });
  return found != classes_.end() ? &*found : nullptr;
}

ComPtr<IDispatch> World::anyObject() {
  if (live_.empty() || random_.chance(10)) {
    return nullptr;
  }
  return random_.chance(15) ? stranger() : random_.pick(live_).object;
}

ComPtr<IDispatch> World::stranger() {
  static const std::vector<Stranger::Kind> kinds{Stranger::Kind::knowsEveryName,
                                                 Stranger::Kind::knowsEveryName, Stranger::Kind::knowsNoName,
                                                 Stranger::Kind::answersNoName};
  return random_.chance(10) ? nullptr : Stranger::make(random_.pick(kinds), manners_);
}

/// Goes on with an enumerator of a collection that may have changed or gone meanwhile.
void World::enumerate() {
  if (enumerators_.empty()) {
    return;
  }
  const std::size_t index = random_.below(enumerators_.size());
  const ComPtr<IEnumVARIANT> enumerator = enumerators_[index];
  std::array<VARIANT, 4> items{};
  ULONG fetched = 0;
  ComPtr<IEnumVARIANT> copy;
  switch (random_.below(5)) {
    case 0:
      enumerators_.erase(enumerators_.begin() + static_cast<std::ptrdiff_t>(index));
      break;
    case 1:
      enumerator->Reset();
      break;
    case 2:
      enumerator->Skip(static_cast<ULONG>(random_.below(3)));
      break;
    case 3:
      if (SUCCEEDED(enumerator->Clone(copy.out()))) {
        enumerators_[index] = copy;
      }
      break;
    default:
      enumerator->Next(static_cast<ULONG>(random_.below(items.size() + 1)), items.data(), &fetched);
      std::for_each_n(items.begin(), fetched, [](VARIANT& item) { VariantClear(&item); });
  }
}

/// Goes on with an object whose answers are foretold, in the midst of all the others.
void World::playModel() {
  if (models_.empty() || (models_.size() < mostModels && random_.chance(5))) {
    models_.push_back(makeModel(random_));
  }
  const std::size_t index = random_.below(models_.size());
  ++modelSteps_;
  models_[index]->step();
  if (random_.chance(3)) {
    models_.erase(models_.begin() + static_cast<std::ptrdiff_t>(index));
  }
}

/// What a handler or a stranger leaves in the variables that it is given.
void World::onEvent(const std::vector<VARIANT*>& arguments) {
  for (VARIANT* argument : arguments) {
    if ((argument->vt & VT_BYREF) != 0 && argument->byref == nullptr) {
      continue;  // A client's own reference to nothing, handed on to a client's object.
    }
    if (argument->vt == (VT_BYREF | VT_BOOL)) {
      *argument->pboolVal = random_.chance(50) ? VARIANT_TRUE : VARIANT_FALSE;
    } else if (argument->vt == (VT_BYREF | VT_I4)) {
      *argument->plVal = static_cast<long>(random_.below(6));
    } else if (argument->vt == (VT_BYREF | VT_DISPATCH) && random_.chance(30)) {
      IDispatch* other = anyObject().detach();
      if (IDispatch* old = std::exchange(*argument->ppdispVal, other)) {
        old->Release();
      }
    }
  }
  reenter();
}

/// Uses the component in the middle of one of its calls.
void World::reenter() {
  if (depth_ >= deepest) {
    return;
  }
  ++depth_;
  const std::string outer = current();
  const std::size_t kind = random_.below(10);
  if (!borrowed_.empty() && random_.chance(lettingHandlers)) {
    letBorrowedGo();
  } else if (kind < 3 && !live_.empty()) {
    callRandomMember();
  } else if (kind == 3 && !live_.empty()) {
    forget();
  } else if (kind == 4 && !connections_.empty()) {
    disconnect(random_.below(connections_.size()));
  } else if (kind == 5 && !live_.empty()) {
    connect(random_.pick(live_));
  }
  setCurrent(outer);
  --depth_;
}

/// Gives up all references to an object that is under a call, so that it may be gone before the call is over.
void World::letBorrowedGo() {
  const long identity = borrowed_.back();
  const auto place = [](const auto& list, auto isWanted) {
    return static_cast<std::size_t>(std::find_if(list.begin(), list.end(), isWanted) - list.begin());
  };
  const auto source = [&] {
    return place(connections_, [&](const Connection& each) { return each.source == identity; });
  };
  const auto owned = [&] {
    return place(live_, [&](const Live& each) { return each.identity == identity; });
  };
  for (std::size_t i = source(); i < connections_.size(); i = source()) {
    disconnect(i);
  }
  for (std::size_t i = owned(); i < live_.size(); i = owned()) {
    forget(i);
  }
}

HRESULT World::answer(const DISPPARAMS& arguments, VARIANT* result, EXCEPINFO* exception) {
  std::vector<VARIANT*> list;
  for (UINT i = 0; i < arguments.cArgs; ++i) {
    list.push_back(&arguments.rgvarg[i]);
  }
  onEvent(list);
  if (random_.chance(20)) {
    if (exception == nullptr || random_.chance(50)) {
      return Stranger::failure;
    }
    exception->scode = Stranger::failure;
    exception->bstrDescription = SysAllocString(L"a stranger's failure");
    return DISP_E_EXCEPTION;
  }
  if (result != nullptr) {
    // Small numbers mostly, because they are taken for counts.
    *result =
        (random_.chance(70) ? Variant(static_cast<long>(random_.below(4))) : randomValue(random_)).detach();
  }
  return S_OK;
}

}  // namespace zeq::torture
