// A keymap filter and its mappings against a list of records, in memory and through a key-map file.

#include <algorithm>

#include "support/TempFolder.h"
#include "torture/Models.h"
#include "torture/Subject.h"

namespace zeq::torture {
namespace {

using test::Variant;

struct Mapping {
  std::wstring name;
  std::wstring description;
  short key;
  short shift;

  [[nodiscard]] std::wstring text() const {
    return name + L"|" + description + L"|" + std::to_wstring(key) + L"|" + std::to_wstring(shift);
  }
};

class KeyMapModel final : public Model {
 public:
  explicit KeyMapModel(Random& random)
      : random_(random),
        filter_(random, "CKeymapFilter", __uuidof(CKeymapFilter)),
        mappings_(random, "CKeyMappings", filter_.call(L"KeyMappings").get().pdispVal),
        sink_(filter_.dispatch(), __uuidof(__CKeymapFilter),
              [this](DISPID, const std::vector<VARIANT*>& arguments) {
                event_ = textOf(arguments[0] != nullptr ? *arguments[0]->ppdispVal : nullptr);
                *arguments[1]->pboolVal = answer_ ? VARIANT_TRUE : VARIANT_FALSE;
                return S_OK;
              }) {}

 private:
  void act() override {
    switch (random_.below(10)) {
      case 0:
        if (random_.chance(20)) {
          mappings_.call(L"Clear");
          expected_.clear();
        }
        break;
      case 1:
        remove();
        break;
      case 2:
        change();
        break;
      case 3:
        if (random_.chance(20)) {
          writeAndRead();
        }
        break;
      case 4:
      case 5:
        process();
        break;
      default:
        add();
    }
  }

  void add() {
    const Mapping mapping = randomMapping();
    filter_.expect(true, L"AddMapping", mapping.name, mapping.description, mapping.key, mapping.shift);
    expected_.push_back(mapping);
  }
  void remove() {
    const long position = randomPosition();
    mappings_.call(L"Remove", position);
    if (at(position) != nullptr) {
      expected_.erase(expected_.begin() + (position - 1));
    }
  }
  void change() {
    const long position = randomPosition();
    if (Mapping* mapping = at(position)) {
      *mapping = randomMapping();
      const Subject object(random_, "CKeyMapping", mappings_.call(L"Item", position).get().pdispVal);
      object.put(L"Name", mapping->name);
      object.put(L"description", mapping->description);
      object.put(L"KeyCode", mapping->key);
      object.put(L"Shift", mapping->shift);
    }
  }
  /// Through the file and back; what the file held before is gone.
  void writeAndRead() {
    const std::wstring file = folder_ / L"keys.txt";
    mappings_.expect(true, L"WriteToFile", file, L"Keys");
    if (random_.chance(30)) {
      mappings_.expect(false, L"ReadFromFile", file, L"Other");
      mappings_.expect(0, L"count");
    }
    mappings_.expect(true, L"ReadFromFile", file, L"Keys");
  }

  void process() {
    const Mapping wanted = randomMapping();
    const Mapping* bound =
        find([&](const Mapping& each) { return each.key == wanted.key && each.shift == wanted.shift; });
    answer_ = random_.chance(50);
    const bool before = random_.chance(50);
    event_.clear();
    Variant processed(before);
    const test::Outcome outcome =
        filter_.late().call(L"Process", Variant(wanted.key), Variant(wanted.shift), test::byRef(processed));
    filter_.expectSame(L"Process", outcome.value, Variant(bound != nullptr));
    filter_.expectSame(L"Process (processed)", processed, Variant(bound != nullptr ? answer_ : before));
    filter_.expectSame(L"KeyboardEvent", test::asVariant(event_),
                       test::asVariant(bound != nullptr ? bound->text() : std::wstring()));
  }

  void compare() override {
    mappings_.expect(static_cast<long>(expected_.size()), L"count");
    const long position = randomPosition();
    expectMapping(L"Item", mappings_.call(L"Item", position), at(position));
    const Mapping wanted = randomMapping();
    expectMapping(L"ItemByName", mappings_.call(L"ItemByName", wanted.name),
                  find([&](const Mapping& each) { return each.name == wanted.name; }));
    expectMapping(
        L"ItemByKeycode", mappings_.call(L"ItemByKeycode", wanted.key, wanted.shift),
        find([&](const Mapping& each) { return each.key == wanted.key && each.shift == wanted.shift; }));
    if (mappings_.items().size() != expected_.size()) {
      mappings_.fail(L"NewEnum", L"gives another number of mappings");
    }
  }

  void expectMapping(const wchar_t* member, const Variant& got, const Mapping* wanted) const {
    mappings_.expectSame(member, test::asVariant(textOf(got.get().pdispVal)),
                         test::asVariant(wanted != nullptr ? wanted->text() : std::wstring()));
  }
  static std::wstring textOf(IDispatch* mapping) {
    if (mapping == nullptr) {
      return {};
    }
    const test::Late object(mapping);
    const auto field = [&](const wchar_t* name) { return test::shown(object.get(name).get()); };
    return field(L"Name") + L"|" + field(L"description") + L"|" + field(L"KeyCode") + L"|" + field(L"Shift");
  }

  Mapping* at(long position) {
    const bool exists = position >= 1 && position <= static_cast<long>(expected_.size());
    return exists ? &expected_[static_cast<std::size_t>(position - 1)] : nullptr;
  }
  template <class Condition>
  const Mapping* find(const Condition& condition) const {
    const auto found = std::find_if(expected_.begin(), expected_.end(), condition);
    return found != expected_.end() ? &*found : nullptr;
  }
  long randomPosition() { return static_cast<long>(random_.below(expected_.size() + 3)) - 1; }
  /// Few enough of each field that searches find something, and find the first of several.
  Mapping randomMapping() {
    static const std::vector<std::wstring> names{L"", L"Save", L"save", L"Quit", L"a name"};
    static const std::vector<std::wstring> descriptions{L"", L"Save file", L"=", L"[x]"};
    static const std::vector<short> keys{0, 65, 83, 112, -1, 32767};
    return {random_.pick(names), random_.pick(descriptions), random_.pick(keys),
            static_cast<short>(random_.below(4))};
  }

  Random& random_;
  test::TempFolder folder_;
  std::vector<Mapping> expected_;
  std::wstring event_;
  bool answer_ = false;
  Subject filter_;
  Subject mappings_;
  test::Sink sink_;
};

}  // namespace

std::unique_ptr<Model> makeKeyMapModel(Random& random) {
  return std::make_unique<KeyMapModel>(random);
}

}  // namespace zeq::torture
