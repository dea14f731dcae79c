#pragma once
// A collection that a client passes: the library's own, or any automation object with Add, Item, Count and
// Remove, because hosts bring their own.

#include <windows.h>

#include "ZEQUtility2.h"
#include "automation/ComPtr.h"
#include "automation/NamedCaller.h"
#include "automation/Variant.h"

namespace zeq::automation {

/// All members throw Error as the collection reports it. They may run client code.
class CollectionArgument {
 public:
  /// Throws object-not-set if the argument holds no object.
  explicit CollectionArgument(IDispatch* object);
  explicit CollectionArgument(IDispatch* const* argument)
      : CollectionArgument(argument != nullptr ? *argument : nullptr) {}

  void add(const Variant& item, const Variant& key = Variant::missing());

  [[nodiscard]] long count() const;
  /// An index is a position, counted from 1, or a key.
  [[nodiscard]] Variant item(const Variant& index) const;
  [[nodiscard]] Variant item(long position) const { return item(Variant(position)); }
  void remove(const Variant& index);
  void remove(long position) { remove(Variant(position)); }

 private:
  void addToForeign(const Variant& item, const Variant& key);

  NamedCaller object_;
  ComPtr<::_Collection> own_;  ///< The same object, if it is the library's own.
};

}  // namespace zeq::automation
