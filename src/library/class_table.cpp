#include "library/class_table.h"

#include <array>

#include "audit/CZEQAudit.h"
#include "automation/Collection.h"
#include "fileops/CFakeDrive.h"
#include "inifiles/CIniFile.h"
#include "observe/CObservableClass.h"
#include "observe/CReferenceCounter.h"
#include "utility/CRangeMapper.h"
#include "utility/CStringSplitter.h"
#include "utility/CZEQUtilityNumerical.h"
#include "utility/CZEQUtilityStrings.h"

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
      entry<utility::CRangeMapper, ::CRangeMapper>(),
      entry<utility::CStringSplitter, ::CStringSplitter>(),
      entry<utility::CZEQUtilityNumerical, ::CZEQUtilityNumerical>(),
      entry<utility::CZEQUtilityStrings, ::CZEQUtilityStrings>(),
      entry<audit::CZEQAudit, ::CZEQAudit>(),
      entry<observe::CObservableClass, ::CObservableClass>(),
      entry<observe::CReferenceCounter, ::CReferenceCounter>(),
  };
  return table;
}

}  // namespace zeq::library
