#include "library/class_table.h"

#include <array>

#include "automation/Collection.h"
#include "fileops/CFakeDrive.h"
#include "inifiles/CIniFile.h"

namespace zeq::library {
namespace {

template <class Class, class Coclass>
constexpr ClassEntry entry() noexcept {
  return {__uuidof(Coclass), &Class::create};
}

}  // namespace

std::span<const ClassEntry> classTable() noexcept {
  static const std::array table{
      entry<automation::Collection, ::Collection>(),
      entry<fileops::CFakeDrive, ::CFakeDrive>(),
      entry<inifiles::CIniFile, ::CIniFile>(),
  };
  return table;
}

}  // namespace zeq::library
