#include "platform/FileTypes.h"

#include <windows.h>
#include <shellapi.h>

#include "platform/Failure.h"
#include "platform/Files.h"
#include "platform/Paths.h"

namespace zeq::platform {

std::wstring fileTypeName(const std::wstring& path) {
  // With the attributes given, the shell goes by the name alone, so that the path may have any length.
  const DWORD attributes = fileInfo(path).attributes;
  const std::wstring name(fileName(path));
  SHFILEINFOW info{};
  if (SHGetFileInfoW(name.c_str(), attributes, &info, sizeof info,
                     SHGFI_TYPENAME | SHGFI_USEFILEATTRIBUTES) == 0) {
    fail(ERROR_FILE_NOT_FOUND);
  }
  return info.szTypeName;
}

}  // namespace zeq::platform
