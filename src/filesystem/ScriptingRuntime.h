#pragma once
// The scripting runtime's own objects for files and folders. It is created when it is first asked.

#include <windows.h>
#include <oleauto.h>

#include <functional>
#include <string_view>

#include "automation/ComPtr.h"
#include "automation/Variant.h"
#include "filesystem/ScriptingInterfaces.h"

namespace zeq::filesystem {

/// All members throw automation::Error as the runtime reports it.
class ScriptingRuntime {
 public:
  [[nodiscard]] automation::ComPtr<scripting::IFile> file(BSTR path);
  [[nodiscard]] automation::ComPtr<scripting::IFolder> folder(BSTR path);

  /// Takes an object of the runtime and its path.
  using Visitor = std::function<void(const automation::Variant& object, std::wstring_view path)>;

  /// Calls the visitor for every file, or every subfolder, of a folder and returns how many there are
  /// afterwards.
  long forEachFile(BSTR folder, const Visitor& visit);
  long forEachSubfolder(BSTR folder, const Visitor& visit);

 private:
  [[nodiscard]] scripting::IFileSystem& fileSystem();

  automation::ComPtr<scripting::IFileSystem> fileSystem_;
};

}  // namespace zeq::filesystem
