#pragma once
// Random argument lists: every VARIANT type, by value, by reference, arrays, objects, records, null pointers.

#include <windows.h>
#include <oleauto.h>

#include <deque>
#include <functional>
#include <vector>

#include "automation/ComPtr.h"
#include "automation/Variant.h"
#include "torture/Random.h"

namespace zeq::torture {

/// Where objects for arguments come from; now and then there is none.
using ObjectSource = std::function<automation::ComPtr<IDispatch>()>;

/// A value of any type that is no object and no array.
[[nodiscard]] automation::Variant randomValue(Random& random);

/// One argument list with everything that it refers to.
class Arguments {
 public:
  Arguments(Random& random, const ObjectSource& objects) : random_(random), objects_(objects) {}
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;

  /// Adds a random argument.
  void add();
  [[nodiscard]] std::vector<VARIANT>& list() noexcept { return list_; }

 private:
  [[nodiscard]] automation::Variant value();
  [[nodiscard]] automation::Variant array();
  [[nodiscard]] automation::Variant element(VARTYPE type);
  [[nodiscard]] VARIANT reference();

  Random& random_;
  const ObjectSource& objects_;
  std::deque<automation::Variant> variables_;  ///< A deque, so that references to its elements stay.
  std::vector<VARIANT> list_;
};

}  // namespace zeq::torture
