#include "inifiles/CIniFile.h"

#include "platform/CodePage.h"
#include "platform/LetterCase.h"
#include "platform/ProfileFiles.h"
#include "utility/FieldSplitter.h"

namespace zeq::inifiles {
namespace {

using automation::Collection;
using automation::ComPtr;
using automation::optionalText;
using automation::raising;
using automation::text;
using automation::Variant;

/// What the buffer holds before a read. Where both of the last two places still hold it, nothing was cut.
constexpr char fill = '\1';
constexpr std::size_t firstSize = 256;
constexpr std::size_t lastSizeToGrow = 16000;

/// The value of a key (null: the list of the section's key names, each followed by a NUL), read with growing
/// buffers.
std::wstring readValue(const std::wstring& file, std::wstring_view section, const char* key,
                       std::wstring_view fallback) {
  if (file.empty() || section.empty()) {
    return {};
  }
  const std::string narrowFile = platform::toAnsi(file);
  const std::string narrowSection = platform::toAnsi(section);
  const std::string narrowFallback = platform::toAnsi(fallback);
  std::string buffer;
  for (std::size_t size = firstSize;; size *= 2) {
    buffer.assign(size, fill);
    const std::size_t length = platform::readProfileString(narrowSection.c_str(), key, narrowFallback.c_str(),
                                                           buffer, narrowFile.c_str());
    const bool mayBeCut = length >= 1 && (buffer[size - 2] != fill || buffer[size - 1] != fill);
    if (!mayBeCut || size > lastSizeToGrow) {
      return length < size ? platform::fromAnsi(std::string_view(buffer).substr(0, length)) : std::wstring();
    }
  }
}

}  // namespace

CIniFile::~CIniFile() {
  if (keys_) {
    keys_->clear();  // A client may keep the collection.
  }
}

void CIniFile::setSection(std::wstring_view name) {
  if (name != section_) {
    section_ = name;
    readKeys();
  }
}

std::wstring CIniFile::getString(std::wstring_view key, std::wstring_view section,
                                 std::wstring_view fallback) {
  const std::wstring chosen(section.empty() ? section_ : section);
  if (chosen.empty()) {
    return {};
  }
  setSection(chosen);
  return key.empty() ? std::wstring() : readValue(fileName_, chosen, platform::toAnsi(key).c_str(), fallback);
}

STDMETHODIMP CIniFile::Create(BSTR* fName) noexcept {
  return raising([&] { setFileName(text(fName)); });
}

STDMETHODIMP CIniFile::get_FileName(BSTR* result) noexcept {
  return raising(result, [&] { return std::wstring_view(fileName_); });
}

STDMETHODIMP CIniFile::put_FileName(BSTR* value) noexcept {
  return raising([&] { setFileName(text(value)); });
}

STDMETHODIMP CIniFile::get_section(BSTR* result) noexcept {
  return raising(result, [&] { return std::wstring_view(section_); });
}

STDMETHODIMP CIniFile::put_section(BSTR value) noexcept {
  return raising([&] {
    const auto alive = keepAlive();
    setSection(text(value));
  });
}

STDMETHODIMP CIniFile::get_Keys(::_Collection** result) noexcept {
  return raising(result, [&] { return keys(); });
}

STDMETHODIMP CIniFile::GetString(BSTR* Key, BSTR* SectionName, BSTR* Default, BSTR* result) noexcept {
  return raising(result, [&] {
    const auto alive = keepAlive();
    // Copies: emptying the key collection may release a client's object, which may change the client's
    // variables.
    const std::wstring key(text(Key));
    const std::wstring section(optionalText(SectionName));
    const std::wstring fallback(optionalText(Default));
    return getString(key, section, fallback);
  });
}

ComPtr<Collection> CIniFile::keys() {
  if (!keys_) {
    keys_ = Collection::make();
  }
  return keys_;
}

void CIniFile::readKeys() {
  const ComPtr<Collection> names = keys();
  names->clear();
  utility::FieldSplitter splitter(platform::lowerCase);
  splitter.split(readValue(fileName_, section_, nullptr, {}), std::wstring_view(L"\0", 1), true, false);
  for (int position = 1; position <= splitter.count(); ++position) {
    const std::wstring_view name = splitter.field(position);
    names->append(Variant(name), name);
  }
}

}  // namespace zeq::inifiles
