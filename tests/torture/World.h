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
  };

  void readClasses();
  void create();
  void forget();
  void connect();
  void callRandomMember();
  void call(const Class& type, const automation::ComPtr<IDispatch>& object,
            const test::LibraryMember& member);
  void keep(IDispatch* object);
  void enumerate();
  void playModel();
  void onEvent(const std::vector<VARIANT*>& arguments);
  void reenter();
  HRESULT answer(const DISPPARAMS& arguments, VARIANT* result, EXCEPINFO* exception);
  [[nodiscard]] automation::ComPtr<IDispatch> anyObject();
  [[nodiscard]] automation::ComPtr<IDispatch> stranger();
  [[nodiscard]] const Class* classOf(IDispatch* object) const;

  Random& random_;
  ObjectSource objectSource_;
  ObjectSource strangers_;
  Stranger::Answer answer_;
  std::vector<Class> classes_;
  std::vector<Live> live_;
  std::vector<automation::ComPtr<IEnumVARIANT>> enumerators_;
  std::vector<std::unique_ptr<test::Sink>> sinks_;
  std::vector<std::unique_ptr<test::Sink>> retired_;  ///< Disconnected during an event; destroyed after it.
  std::vector<std::unique_ptr<Model>> models_;
  long long calls_ = 0;
  long long modelSteps_ = 0;
  int depth_ = 0;
};

}  // namespace zeq::torture
