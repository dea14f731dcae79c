#include "filesystem/FileNames.h"

#include "utility/Format.h"
#include "utility/MZEQUtilityStrings.h"

namespace zeq::filesystem {

bool isSensibleBaseName(std::wstring_view name) noexcept {
  return !utility::trimmed(name).empty() &&
         name.find_first_of(L".\\/[]:;|=,*?<>\"\n\r") == std::wstring_view::npos;
}

std::wstring suggestName(std::wstring_view prefix, std::wstring_view suffix, int last,
                         const IsTaken& isTaken) {
  for (int i = 1; i <= last; ++i) {
    std::wstring name(prefix);
    name.append(utility::formatInteger(i, 3)).append(suffix);
    if (!isTaken(name)) {
      return name;
    }
    if (!isTaken(name)) {
      return {};
    }
  }
  return {};
}

std::wstring archivePath(const std::wstring& stem, const IsTaken& isTaken) {
  for (int i = 0; i <= 999; ++i) {
    std::wstring path = stem + L"." + utility::formatInteger(i, 3);
    if (!isTaken(path)) {
      return path;
    }
  }
  return {};
}

std::wstring freePath(int maxTries, const std::function<std::wstring()>& makePath, const IsTaken& isTaken) {
  for (int i = 0; i <= maxTries; ++i) {
    std::wstring path = makePath();
    if (!isTaken(path)) {
      return path;
    }
  }
  return {};
}

}  // namespace zeq::filesystem
