#pragma once
// The objects that the torture run plays with, and what it does to them.

#include <windows.h>
#include <oleauto.h>

#include <memory>
#include <string>
#include <vector>

#include "automation/ComPtr.h"
#include "support/Component.h"
#include "support/TypeLibrary.h"
#include "torture/Arguments.h"
#include "torture/Models.h"
#include "torture/Random.h"
#include "torture/Stranger.h"

namespace zeq::torture {

class World {
 public:
  explicit World(Random& random);
  ~World();
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  /// Does one random thing. Throws Violation.
  void step();

  /// How many calls of members were made so far, those from event handlers included.
  [[nodiscard]] long long calls() const noexcept { return calls_; }
  /// How many steps were made besides with objects that a model foretells.
  [[nodiscard]] long long modelSteps() const noexcept { return modelSteps_; }

 private:
  struct Class {
    std::wstring name;
    CLSID clsid;
    bool hasEvents;
    IID events;
    std::vector<test::LibraryMember> members;
  };
  struct Live {
    const Class* type;
    automation::ComPtr<IDispatch> object;
    long identity;  ///< The same for all that are one object, and never used again.
  };
  struct Connection {
    long source;  ///< Its identity.
    std::unique_ptr<test::Sink> sink;
  };

  void readClasses();
  void create();
  void forget();
  void forget(std::size_t index);
  void connect(const Live& source);
  void disconnect(std::size_t index);
  void callRandomMember();
  void insist();
  void call(Live target, const test::LibraryMember& member, bool borrows);
  HRESULT invoke(Live target, bool borrows, DISPID member, WORD flags, DISPPARAMS& parameters,
                 VARIANT* result, EXCEPINFO* exception);
  void keep(IDispatch* object);
  void enumerate();
  void playModel();
  void onEvent(const std::vector<VARIANT*>& arguments);
  void reenter();
  void letBorrowedGo();
  HRESULT answer(const DISPPARAMS& arguments, VARIANT* result, EXCEPINFO* exception);
  [[nodiscard]] bool isLive(long identity) const;
  [[nodiscard]] automation::ComPtr<IDispatch> anyObject();
  [[nodiscard]] automation::ComPtr<IDispatch> stranger();
  [[nodiscard]] const Class* classOf(IDispatch* object) const;

  Random& random_;
  ObjectSource objectSource_;
  ObjectSource strangers_;
  Stranger::Manners manners_;
  std::vector<Class> classes_;
  std::vector<Live> live_;
  std::vector<automation::ComPtr<IEnumVARIANT>> enumerators_;
  std::vector<Connection> connections_;
  std::vector<std::unique_ptr<test::Sink>> retired_;  ///< Disconnected during an event; destroyed after it.
  /// The identities of those under calls that do not hold them, the innermost call's last. They may be gone.
  std::vector<long> borrowed_;
  std::vector<std::unique_ptr<Model>> models_;
  long long calls_ = 0;
  long long modelSteps_ = 0;
  long lastIdentity_ = 0;
  int depth_ = 0;
};

}  // namespace zeq::torture
