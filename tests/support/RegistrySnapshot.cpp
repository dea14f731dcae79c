#include "support/RegistrySnapshot.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace zeq::test {
namespace {

/// Walks the registry with one set of buffers.
class Walk {
 public:
  void add(HKEY parent, const std::wstring& name, const std::wstring& path) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(parent, name.c_str(), 0, KEY_READ | KEY_WOW64_64KEY, &key) != ERROR_SUCCESS) {
      return;
    }
    lines_.push_back(path);
    addValues(key, path);
    for (DWORD index = 0;; ++index) {
      auto length = static_cast<DWORD>(name_.size());
      if (RegEnumKeyExW(key, index, name_.data(), &length, nullptr, nullptr, nullptr, nullptr) !=
          ERROR_SUCCESS) {
        break;
      }
      const std::wstring child(name_.data(), length);
      add(key, child, path + L"\\" + child);
    }
    RegCloseKey(key);
  }

  std::vector<std::wstring> take() {
    std::sort(lines_.begin(), lines_.end());
    return std::move(lines_);
  }

 private:
  void addValues(HKEY key, const std::wstring& path) {
    for (DWORD index = 0;;) {
      auto nameLength = static_cast<DWORD>(name_.size());
      auto dataLength = static_cast<DWORD>(data_.size());
      DWORD type = 0;
      const LSTATUS status =
          RegEnumValueW(key, index, name_.data(), &nameLength, nullptr, &type, data_.data(), &dataLength);
      if (status == ERROR_MORE_DATA) {
        data_.resize(data_.size() * 2);
        continue;
      }
      if (status != ERROR_SUCCESS) {
        return;
      }
      std::wstring line =
          path + L" | " + std::wstring(name_.data(), nameLength) + L" | " + std::to_wstring(type) + L" |";
      line.append(data_.data(), data_.data() + dataLength);
      lines_.push_back(std::move(line));
      ++index;
    }
  }

  std::vector<std::wstring> lines_;
  std::vector<wchar_t> name_ = std::vector<wchar_t>(16384);
  std::vector<BYTE> data_ = std::vector<BYTE>(65536);
};

void addDifference(const std::vector<std::wstring>& lines, const std::vector<std::wstring>& others, char mark,
                   std::vector<std::string>& result) {
  std::vector<std::wstring> only;
  std::set_difference(lines.begin(), lines.end(), others.begin(), others.end(), std::back_inserter(only));
  for (const std::wstring& line : only) {
    std::string text(1, mark);
    std::transform(line.begin(), line.end(), std::back_inserter(text),
                   [](wchar_t c) { return c >= L' ' && c < 0x7F ? static_cast<char>(c) : '.'; });
    result.push_back(std::move(text));
  }
}

}  // namespace

std::vector<std::wstring> registrySnapshot(HKEY root, const std::wstring& path) {
  Walk walk;
  walk.add(root, path, path);
  return walk.take();
}

std::vector<std::string> differences(const std::vector<std::wstring>& before,
                                     const std::vector<std::wstring>& after) {
  std::vector<std::string> result;
  addDifference(before, after, '-', result);
  addDifference(after, before, '+', result);
  return result;
}

}  // namespace zeq::test
