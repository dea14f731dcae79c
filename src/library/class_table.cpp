#include "library/class_table.h"

#include <array>

#include "audit/CZEQAudit.h"
#include "automation/Adapter.h"
#include "automation/Collection.h"
#include "fileops/CFakeDrive.h"
#include "fileops/CFileOperation.h"
#include "fileops/CFileOperationBatch.h"
#include "filesystem/CAttachment.h"
#include "filesystem/CZEQFileSystemObject.h"
#include "help/CWinHelp.h"
#include "help/HelpProviderAdapter.h"
#include "inifiles/CIniFile.h"
#include "inifiles/CIniFileEx.h"
#include "inifiles/CVersionInfo.h"
#include "keymap/CKeyMapping.h"
#include "keymap/CKeyMappings.h"
#include "keymap/CKeymapFilter.h"
#include "observe/CObservableClass.h"
#include "observe/CReferenceCounter.h"
#include "settings/CAppOptions.h"
#include "settings/CAppSetting.h"
#include "settings/CAppSettings.h"
#include "utility/CRangeMapper.h"
#include "utility/CStringSplitter.h"
#include "utility/CZEQUtilityCollections.h"
#include "utility/CZEQUtilityNumerical.h"
#include "utility/CZEQUtilitySorting.h"
#include "utility/CZEQUtilityStrings.h"
#include "wizard/CWizard.h"
#include "wizard/CWizardStepDetails.h"
#include "wizard/StepAdapter.h"

namespace zeq::library {
namespace {

template <class Class, class Coclass>
constexpr ClassEntry entry() noexcept {
  return {__uuidof(Coclass), &Class::create};
}

}  // namespace

std::span<const ClassEntry> classTable() noexcept {
  static const std::array table{
      entry<audit::CZEQAudit, ::CZEQAudit>(),
      entry<automation::Collection, ::Collection>(),
      entry<fileops::CFakeDrive, ::CFakeDrive>(),
      entry<fileops::CFileOperation, ::CFileOperation>(),
      entry<fileops::CFileOperationBatch, ::CFileOperationBatch>(),
      entry<filesystem::CAttachment, ::CAttachment>(),
      entry<filesystem::CZEQFileSystemObject, ::CZEQFileSystemObject>(),
      entry<help::CWinHelp, ::CWinHelp>(),
      entry<inifiles::CIniFile, ::CIniFile>(),
      entry<inifiles::CIniFileEx, ::CIniFileEx>(),
      entry<inifiles::CVersionInfo, ::CVersionInfo>(),
      entry<keymap::CKeymapFilter, ::CKeymapFilter>(),
      entry<keymap::CKeyMapping, ::CKeyMapping>(),
      entry<keymap::CKeyMappings, ::CKeyMappings>(),
      entry<observe::CObservableClass, ::CObservableClass>(),
      entry<observe::CReferenceCounter, ::CReferenceCounter>(),
      entry<settings::CAppOptions, ::CAppOptions>(),
      entry<settings::CAppSetting, ::CAppSetting>(),
      entry<settings::CAppSettings, ::CAppSettings>(),
      entry<utility::CRangeMapper, ::CRangeMapper>(),
      entry<utility::CStringSplitter, ::CStringSplitter>(),
      entry<utility::CZEQUtilityCollections, ::CZEQUtilityCollections>(),
      entry<utility::CZEQUtilityNumerical, ::CZEQUtilityNumerical>(),
      entry<utility::CZEQUtilitySorting, ::CZEQUtilitySorting>(),
      entry<utility::CZEQUtilityStrings, ::CZEQUtilityStrings>(),
      entry<wizard::CWizard, ::CWizard>(),
      entry<wizard::CWizardStepDetails, ::CWizardStepDetails>(),
  };
  return table;
}

void registerAdapters() {
  automation::registerAdapter<help::HelpProviderAdapter>();
  automation::registerAdapter<wizard::StepAdapter>();
}

}  // namespace zeq::library
