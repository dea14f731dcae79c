#include "inifiles/CIniFileEx.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>
#include <vector>

#include "automation/Array.h"
#include "inifiles/ProfileList.h"
#include "platform/CodePage.h"
#include "platform/ProfileFiles.h"

namespace zeq::inifiles {
namespace {

using automation::quietly;
using automation::raising;
using automation::text;
using automation::Variant;
using platform::fromAnsi;
using platform::toAnsi;

/// What a private-profile function listed: so many characters of the buffer, and NULs after them.
struct Listing {
  std::string buffer;
  std::size_t length = 0;
};

/// Reads a list with growing buffers. One that the largest buffer cannot hold is no list at all: its buffer
/// is empty.
template <class Read>
Listing readList(Read read) {
  constexpr std::size_t firstSize = 2048;
  constexpr std::size_t lastSize = 16384;
  for (std::size_t size = firstSize; size <= lastSize; size *= 2) {
    Listing listing{std::string(size - 1, '\0')};
    listing.length = read(std::span(listing.buffer));
    if (listing.length != listing.buffer.size() - 2) {
      return listing;
    }
  }
  return {};
}

Listing readSection(std::wstring_view section, std::wstring_view file) {
  const std::string narrowSection = toAnsi(section);
  const std::string narrowFile = toAnsi(file);
  return readList([&](std::span<char> buffer) {
    return platform::readProfileSection(narrowSection.c_str(), buffer, narrowFile.c_str());
  });
}

Listing readSectionNames(std::wstring_view file) {
  const std::string narrowFile = toAnsi(file);
  return readList(
      [&](std::span<char> buffer) { return platform::readProfileSectionNames(buffer, narrowFile.c_str()); });
}

/// The list with two closing NULs, or the single NUL of an empty one; empty for a list that was too large.
std::wstring withTwoNuls(const Listing& listing) {
  return fromAnsi(std::string_view(listing.buffer).substr(0, listing.length + 1));
}

/// The list with one closing NUL; empty if nothing was listed.
std::wstring withOneNul(const Listing& listing) {
  if (listing.length == 0) {
    return {};
  }
  return fromAnsi(std::string_view(listing.buffer).substr(0, listing.length - 1)) + L'\0';
}

using Part = std::wstring_view (*)(std::wstring_view entry);

std::wstring_view wholeOf(std::wstring_view entry) {
  return entry;
}

/// The entries of a list in arrays, one for each part of an entry.
struct Columns {
  std::vector<Variant> arrays;  ///< None if there was no entry.
  short count = -1;             ///< Of the entries that are not empty.
};

Columns columnsOf(std::wstring_view list, std::initializer_list<Part> parts) {
  if (list.empty()) {
    return {};
  }
  std::vector<std::wstring_view> entries = entriesOf(list);
  // An empty entry has an element only as long as no other follows it.
  const std::wstring_view last = entries.back();
  std::erase(entries, std::wstring_view());
  Columns columns{.arrays = {}, .count = static_cast<short>(entries.size())};
  if (last.empty()) {
    entries.push_back(last);
  }
  std::vector<std::wstring_view> elements(entries.size());
  for (const Part part : parts) {
    std::transform(entries.begin(), entries.end(), elements.begin(), part);
    columns.arrays.push_back(automation::textArray(elements));
  }
  return columns;
}

void store(VARIANT* target, const Variant& value) {
  if (target == nullptr) {
    throw automation::Error(E_POINTER);
  }
  automation::assign(*target, value.get());
}

/// Hands the one array of an enumeration to the client, or Null.
short storeArray(VARIANT* target, Columns columns) {
  store(target, columns.count < 0 ? Variant::null() : std::move(columns.arrays.front()));
  return columns.count;
}

}  // namespace

std::wstring CIniFileEx::read(std::wstring_view name, std::wstring_view fallback) const {
  return platform::profileValue(section_, name, fallback, file_);
}

void CIniFileEx::write(std::wstring_view name, std::wstring_view value) {
  platform::writeProfileString(toAnsi(section_).c_str(), toAnsi(name).c_str(), toAnsi(value).c_str(),
                               toAnsi(file_).c_str());
}

STDMETHODIMP CIniFileEx::get_file(BSTR* result) noexcept {
  return raising(result, [&] { return std::wstring_view(file_); });
}

STDMETHODIMP CIniFileEx::put_file(BSTR value) noexcept {
  return raising([&] {
    file_ = text(value);
    section_.clear();
  });
}

STDMETHODIMP CIniFileEx::get_section(BSTR* result) noexcept {
  return raising(result, [&] { return std::wstring_view(section_); });
}

STDMETHODIMP CIniFileEx::put_section(BSTR value) noexcept {
  return raising([&] { section_ = text(value); });
}

STDMETHODIMP CIniFileEx::get_values(BSTR ValueName, VARIANT* result) noexcept {
  return raising(result, [&] { return Variant(std::wstring_view(read(text(ValueName), {}))); });
}

STDMETHODIMP CIniFileEx::put_values(BSTR ValueName, VARIANT value) noexcept {
  return quietly([&] {
    const auto alive = keepAlive();
    const std::wstring written = automation::textOf(value);
    write(text(ValueName), written);
  });
}

STDMETHODIMP CIniFileEx::getValue(BSTR ValueName, BSTR Default, VARIANT_BOOL* Failed,
                                  VARIANT* result) noexcept {
  return raising(result, [&] {
    const std::wstring value = read(text(ValueName), text(Default));
    if (Failed != nullptr) {
      *Failed = value.empty() ? VARIANT_TRUE : VARIANT_FALSE;
    }
    return Variant(value.empty() ? text(Default) : std::wstring_view(value));
  });
}

STDMETHODIMP CIniFileEx::addSection(BSTR Name, VARIANT_BOOL* SetAsCurrent) noexcept {
  return quietly([&] {
    const std::string file = toAnsi(file_);
    const std::string name = toAnsi(text(Name));
    // The system makes a section for a key and keeps it when the key goes.
    platform::writeProfileString(name.c_str(), "Dummy", "Val", file.c_str());
    platform::writeProfileString(name.c_str(), "Dummy", nullptr, file.c_str());
    if (SetAsCurrent != nullptr && *SetAsCurrent != VARIANT_FALSE) {
      section_ = text(Name);
    }
  });
}

STDMETHODIMP CIniFileEx::deleteSection(BSTR SectionName) noexcept {
  return quietly([&] {
    platform::writeProfileString(toAnsi(text(SectionName)).c_str(), nullptr, nullptr, toAnsi(file_).c_str());
  });
}

STDMETHODIMP CIniFileEx::deleteKey(BSTR KeyName) noexcept {
  return quietly([&] {
    platform::writeProfileString(toAnsi(section_).c_str(), toAnsi(text(KeyName)).c_str(), nullptr,
                                 toAnsi(file_).c_str());
  });
}

STDMETHODIMP CIniFileEx::flush() noexcept {
  return quietly([&] { platform::writeProfileString(nullptr, nullptr, nullptr, toAnsi(file_).c_str()); });
}

STDMETHODIMP CIniFileEx::writeSection(VARIANT rValue) noexcept {
  return quietly([&] {
    const auto array = automation::arrayIn(rValue);
    if (!array) {
      return;
    }
    const auto alive = keepAlive();
    std::wstring lines;
    for (const Variant& element : automation::elementsOf(*array)) {
      lines.append(automation::textOf(element.get())).push_back(L'\0');
    }
    lines.append(2, L'\0');
    platform::writeProfileSection(toAnsi(section_).c_str(), toAnsi(lines), toAnsi(file_).c_str());
  });
}

STDMETHODIMP CIniFileEx::enumSections(VARIANT* ArrayResult, short* result) noexcept {
  return quietly(result, [&] {
    const Listing listing = readSectionNames(file_);
    const std::wstring list = listing.length > 0 ? withTwoNuls(listing) : std::wstring();
    return storeArray(ArrayResult, columnsOf(list, {wholeOf}));
  });
}

STDMETHODIMP CIniFileEx::enumSectionKeys(VARIANT* ArrayResult, short* result) noexcept {
  return quietly(result, [&] {
    return storeArray(ArrayResult, columnsOf(withTwoNuls(readSection(section_, file_)), {keyIn}));
  });
}

STDMETHODIMP CIniFileEx::enumSectionValues(VARIANT* ArrayResult, short* result) noexcept {
  return quietly(result, [&] {
    return storeArray(ArrayResult, columnsOf(withOneNul(readSection(section_, file_)), {valueIn}));
  });
}

STDMETHODIMP CIniFileEx::enumSectionValuePairs(VARIANT* ArrayResult, short* result) noexcept {
  return quietly(result, [&] {
    const std::wstring list = withOneNul(readSection(section_, file_));
    Columns columns = columnsOf(list, {keyIn, valueIn});
    store(ArrayResult,
          columns.count < 0 ? Variant::null() : automation::variantArray(std::move(columns.arrays)));
    return columns.count;
  });
}

}  // namespace zeq::inifiles
