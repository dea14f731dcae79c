// A settings group, and the options above it, against a cache and a store: in the registry and in ini files.

#include <algorithm>
#include <map>
#include <optional>

#include "support/TempFolder.h"
#include "torture/Models.h"
#include "torture/Subject.h"

namespace zeq::torture {
namespace {

using test::Variant;

/// A key of the run's own below the user's software.
std::wstring newRegistryPath() {
  static int last = 0;
  return L"Software\\ZEQUtility2Torture" + std::to_wstring(++last);
}

class SettingsModel final : public Model {
 public:
  explicit SettingsModel(Random& random)
      : random_(random),
        isIni_(random.chance(50)),
        rootKey_(isIni_ ? L"root" : newRegistryPath()),
        group_(random, "CAppSettings", __uuidof(CAppSettings)),
        options_(random, "CAppOptions", __uuidof(CAppOptions)) {
    const std::wstring hive = isIni_ ? folder_.file(L"settings.ini") : L"HKCU";
    for (const Subject* object : {&group_, &options_}) {
      object->put(L"Hive", hive);
      object->put(L"RootKey", rootKey_);
    }
    group_.put(L"SubKey", L"group");
  }
  ~SettingsModel() override {
    if (!isIni_) {
      RegDeleteTreeW(HKEY_CURRENT_USER, rootKey_.c_str());
      RegDeleteKeyW(HKEY_CURRENT_USER, rootKey_.c_str());
    }
  }

 private:
  struct Setting {
    std::wstring key;
    std::wstring value;  ///< As text, which is all that a store keeps.
  };

  void act() override {
    const std::wstring key = randomKey();
    const Variant value = randomValue();
    switch (random_.below(9)) {
      case 0:
        savesAtOnce_ = random_.chance(70);
        group_.put(L"AutoSave", savesAtOnce_);
        break;
      case 1:
        group_.call(L"Save");
        for (const Setting& setting : cache_) {
          store_[lowerCase(setting.key)] = setting.value;
        }
        break;
      case 2:
        group_.call(L"Clear");
        if (!cache_.empty()) {
          cache_.erase(cache_.begin(), cache_.end() - 1);  // The last one is kept.
        }
        break;
      case 3:
        options_.call(L"WriteSetting", L"group", key, value);
        store_[lowerCase(key)] = test::shown(value.get());
        break;
      case 4:
        readOption(key, value);
        break;
      case 5:
      case 6:
        read(key, value);
        break;
      default:
        group_.call(L"WriteSetting", key, value);
        write(key, test::shown(value.get()));
    }
  }

  void read(const std::wstring& key, const Variant& fallback) {
    const bool hasDefault = random_.chance(50);
    const Variant got =
        hasDefault ? group_.call(L"ReadSetting", key, fallback) : group_.call(L"ReadSetting", key);
    if (const Setting* setting = cached(key)) {
      group_.expectSame(L"ReadSetting", got, test::asVariant(setting->value));
      return;
    }
    const std::optional<std::wstring> value = loaded(key, hasDefault ? &fallback : nullptr);
    group_.expectSame(L"ReadSetting", got, value ? test::asVariant(*value) : Variant());
    if (value) {
      write(key, *value);
    }
  }
  /// Options cache nothing and save at once.
  void readOption(const std::wstring& key, const Variant& fallback) {
    const std::optional<std::wstring> value = loaded(key, &fallback);
    options_.expect(*value, L"ReadSetting", L"group", key, fallback);
    store_[lowerCase(key)] = *value;
  }

  void compare() override {
    std::wstring text = L"Group: group";
    for (const Setting& setting : cache_) {
      text += L"\r\n    [" + setting.key + L"] " + setting.value;
    }
    group_.expect(text, L"AsString");
    group_.expect(savesAtOnce_, L"AutoSave");
    options_.expect(true, L"AutoSave");
  }

  /// What a read finds that the cache does not know; nothing for an empty value.
  std::optional<std::wstring> loaded(const std::wstring& key, const Variant* fallback) const {
    const auto stored = store_.find(lowerCase(key));
    if (stored != store_.end()) {
      return stored->second;
    }
    if (isIni_) {
      return std::wstring();  // A missing key of an ini file is an empty text.
    }
    return fallback != nullptr ? std::optional(test::shown(fallback->get())) : std::nullopt;
  }
  void write(const std::wstring& key, const std::wstring& value) {
    if (Setting* setting = cached(key)) {
      setting->value = value;
    } else {
      cache_.push_back({key, value});
    }
    if (savesAtOnce_) {
      store_[lowerCase(key)] = value;
    }
  }
  Setting* cached(const std::wstring& key) {
    const auto found = std::find_if(cache_.begin(), cache_.end(),
                                    [&](const Setting& setting) { return setting.key == key; });
    return found != cache_.end() ? &*found : nullptr;
  }

  std::wstring randomKey() {
    static const std::vector<std::wstring> keys{L"width", L"Width", L"font", L"a key", L"x", L"X1"};
    return random_.pick(keys);
  }
  Variant randomValue() {
    static const std::vector<std::wstring> texts{L"", L"Arial", L"a b", L"80", L"x=y", L"True"};
    switch (random_.below(4)) {
      case 0:
        return Variant(static_cast<long>(random_.below(100000)) - 50000);
      case 1:
        return Variant(random_.chance(50));
      default:
        return test::asVariant(random_.pick(texts));
    }
  }

  Random& random_;
  test::TempFolder folder_;
  bool isIni_;
  std::wstring rootKey_;
  Subject group_;
  Subject options_;
  bool savesAtOnce_ = true;
  std::vector<Setting> cache_;
  std::map<std::wstring, std::wstring> store_;  ///< Keys in lower case: the stores know no letter case.
};

}  // namespace

std::unique_ptr<Model> makeSettingsModel(Random& random) {
  return std::make_unique<SettingsModel>(random);
}

}  // namespace zeq::torture
