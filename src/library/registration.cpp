#include "library/registration.h"

#include <algorithm>
#include <functional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "automation/ComPtr.h"
#include "automation/Errors.h"
#include "automation/Module.h"
#include "automation/TypeInfo.h"
#include "library/class_table.h"
#include "platform/Registry.h"

namespace zeq::library {
namespace {

using automation::attributesOf;
using automation::ComPtr;
using automation::Documentation;
using automation::documentationOf;
using platform::RegistryKey;
using platform::RegistryValue;

constexpr const wchar_t* dualMarshaller = L"{00020424-0000-0000-C000-000000000046}";
constexpr const wchar_t* dispatchMarshaller = L"{00020420-0000-0000-C000-000000000046}";
#ifdef _WIN64
constexpr const wchar_t* thisPlatform = L"win64";
constexpr REGSAM otherBitness = KEY_WOW64_32KEY;
#else
constexpr const wchar_t* thisPlatform = L"win32";
constexpr REGSAM otherBitness = KEY_WOW64_64KEY;
#endif

/// One value of the registration; its key is relative to the classes of the scope.
struct Entry {
  std::wstring key;
  std::wstring name;
  std::wstring data;
};

/// The registration of the component. What lies under the own keys exists once for each bitness; the shared
/// keys are the same for both.
struct Registration {
  std::vector<Entry> entries;
  std::vector<std::wstring> ownKeys;
  std::vector<std::wstring> sharedKeys;
  /// Keys that a registration may be the first to need, and the last; inner ones behind outer ones.
  std::vector<std::wstring> containers{L"Wow6432Node", L"CLSID", L"Interface", L"TypeLib"};
};

std::wstring textOf(REFGUID guid) {
  constexpr int length = 39;  // With braces and the final NUL.
  std::wstring text(length, L'\0');
  StringFromGUID2(guid, text.data(), length);
  text.pop_back();
  return text;
}

std::wstring versionOf(const TLIBATTR& attributes) {
  return std::to_wstring(attributes.wMajorVerNum) + L"." + std::to_wstring(attributes.wMinorVerNum);
}

/// Builds the registration from the class table and the type library.
class Registrar {
 public:
  Registrar() : library_(automation::typeLibrary()), attributes_(*attributesOf(*library_)) {
    addLibrary();
    for (const ClassEntry& entry : classTable()) {
      addClass(entry.clsid);
    }
    const UINT count = library_->GetTypeInfoCount();
    for (UINT i = 0; i < count; ++i) {
      addInterface(*automation::typeAt(*library_, i));
    }
  }

  Registration take() { return std::move(result_); }

 private:
  void add(std::wstring key, std::wstring data, std::wstring name = {}) {
    result_.entries.push_back({std::move(key), std::move(name), std::move(data)});
  }

  void addLibrary() {
    const std::wstring key = L"TypeLib\\" + libraryId_ + L"\\" + libraryVersion_;
    result_.sharedKeys.push_back(key);
    result_.ownKeys.push_back(key + L"\\0\\" + thisPlatform);
    add(key, documentation_.help);
    add(key + L"\\0\\" + thisPlatform, modulePath_);
    // That the library was loaded from a file is not a property of the library.
    add(key + L"\\FLAGS", std::to_wstring(attributes_.wLibFlags & ~LIBFLAG_FHASDISKIMAGE));
    add(key + L"\\HELPDIR", modulePath_.substr(0, modulePath_.find_last_of(L'\\')));
    result_.containers.push_back(L"TypeLib\\" + libraryId_);
  }

  void addClass(REFCLSID clsid) {
    const ComPtr<ITypeInfo> info = automation::typeInfo(clsid);
    const Documentation documentation = documentationOf(*info);
    const std::wstring progId = documentation_.name + L"." + documentation.name;
    const std::wstring id = textOf(clsid);
    const std::wstring key = L"CLSID\\" + id;
    result_.ownKeys.push_back(key);
    add(key, documentation.help);
    add(key + L"\\InprocServer32", modulePath_);
    add(key + L"\\InprocServer32", L"Apartment", L"ThreadingModel");
    add(key + L"\\ProgID", progId);
    add(key + L"\\TypeLib", libraryId_);
    add(key + L"\\Version", libraryVersion_);
    add(key + L"\\Programmable", L"");

    result_.sharedKeys.push_back(progId);
    add(progId, documentation.help);
    add(progId + L"\\CLSID", id);
  }

  void addInterface(ITypeInfo& info) {
    const auto attributes = attributesOf(info);
    if (attributes->typekind != TKIND_DISPATCH) {
      return;
    }
    const std::wstring key = L"Interface\\" + textOf(attributes->guid);
    const bool isDual = (attributes->wTypeFlags & TYPEFLAG_FDUAL) != 0;
    result_.ownKeys.push_back(key);
    add(key, documentationOf(info).name);
    add(key + L"\\ProxyStubClsid32", isDual ? dualMarshaller : dispatchMarshaller);
    add(key + L"\\TypeLib", libraryId_);
    add(key + L"\\TypeLib", libraryVersion_, L"Version");
  }

  ComPtr<ITypeLib> library_;
  TLIBATTR attributes_;
  std::wstring libraryId_ = textOf(attributes_.guid);
  std::wstring libraryVersion_ = versionOf(attributes_);
  Documentation documentation_ = documentationOf(*library_);
  std::wstring modulePath_ = automation::modulePath();
  Registration result_;
};

/// The classes of a scope.
class Classes {
 public:
  explicit Classes(Scope scope) noexcept
      : root_(scope == Scope::machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER) {}

  [[nodiscard]] HKEY root() const noexcept { return root_; }
  [[nodiscard]] static std::wstring path(const std::wstring& key) { return L"Software\\Classes\\" + key; }

 private:
  HKEY root_;
};

/// Writes entries and, unless told to keep them, takes everything back in the end.
class Transaction {
 public:
  explicit Transaction(Classes classes) noexcept : classes_(classes) {}
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  ~Transaction() {
    for (auto step = undo_.rbegin(); step != undo_.rend(); ++step) {
      try {
        (*step)();
      } catch (...) {  // NOLINT(bugprone-empty-catch): the other steps are still worth taking.
      }
    }
  }

  void keep() noexcept { undo_.clear(); }

  void write(const Entry& entry) {
    const HKEY root = classes_.root();
    const std::wstring path = Classes::path(entry.key);
    createLevels(path);
    RegistryKey key = RegistryKey::create(root, path);
    undo_.emplace_back([root, path, name = entry.name, before = key.value(entry.name)] {
      RegistryKey written = RegistryKey::create(root, path);
      if (before) {
        written.setValue(name, *before);
      } else {
        written.removeValue(name);
      }
    });
    key.setValue(entry.name, RegistryValue::text(entry.data));
  }

 private:
  /// Creates the keys of a path one by one, to know which of them are new.
  void createLevels(const std::wstring& path) {
    for (std::size_t end = path.find(L'\\');; end = path.find(L'\\', end + 1)) {
      const std::wstring level = path.substr(0, end);
      if (RegistryKey::create(classes_.root(), level).isNew()) {
        undo_.emplace_back(
            [root = classes_.root(), level] { platform::removeRegistryKeyIfEmpty(root, level); });
      }
      if (end == std::wstring::npos) {
        return;
      }
    }
  }

  Classes classes_;
  std::vector<std::function<void()>> undo_;
};

void write(const Registration& registration, Scope scope) {
  Transaction transaction{Classes(scope)};
  for (const Entry& entry : registration.entries) {
    transaction.write(entry);
  }
  transaction.keep();
}

void remove(const Registration& registration, Scope scope) {
  const HKEY root = Classes(scope).root();
  for (const std::wstring& key : registration.ownKeys) {
    platform::removeRegistryTree(root, Classes::path(key));
  }
  // Where both bitnesses see the same keys, ours is gone by now and does not count as the other one's.
  const bool otherRemains =
      std::any_of(registration.ownKeys.begin(), registration.ownKeys.end(), [&](const std::wstring& key) {
        return key.starts_with(L"CLSID\\") &&
               RegistryKey::open(root, Classes::path(key), KEY_READ | otherBitness);
      });
  if (otherRemains) {
    return;
  }
  for (const std::wstring& key : registration.sharedKeys) {
    platform::removeRegistryTree(root, Classes::path(key));
  }
  // The last one added is the innermost.
  std::for_each(
      registration.containers.rbegin(), registration.containers.rend(),
      [&](const std::wstring& key) { platform::removeRegistryKeyIfEmpty(root, Classes::path(key)); });
}

/// Runs a piece of the registration; regsvr32 shows the user what it returns.
template <class Body>
HRESULT reportingSystemErrors(Body&& body) noexcept {
  try {
    body();
    return S_OK;
  } catch (const std::system_error& error) {
    return HRESULT_FROM_WIN32(static_cast<DWORD>(error.code().value()));
  } catch (...) {
    return automation::currentFailure().code;
  }
}

}  // namespace

HRESULT registerComponent(Scope scope) noexcept {
  return reportingSystemErrors([&] { write(Registrar().take(), scope); });
}

HRESULT unregisterComponent(Scope scope) noexcept {
  return reportingSystemErrors([&] { remove(Registrar().take(), scope); });
}

}  // namespace zeq::library
