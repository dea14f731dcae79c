// A collection, and the functions that work on collections, against a list of pairs.

#include <algorithm>
#include <iterator>
#include <optional>

#include "torture/Models.h"
#include "torture/Subject.h"

namespace zeq::torture {
namespace {

using test::Variant;

constexpr HRESULT unknownKey = static_cast<HRESULT>(0x800A0005);
constexpr HRESULT noSuchPosition = static_cast<HRESULT>(0x800A0009);
constexpr HRESULT keyInUse = static_cast<HRESULT>(0x800A01C9);

class CollectionModel final : public Model {
 public:
  explicit CollectionModel(Random& random)
      : random_(random),
        collection_(random, "Collection", __uuidof(Collection)),
        functions_(random, "CZEQUtilityCollections", __uuidof(CZEQUtilityCollections)) {}

 private:
  /// A position, or a key in any letter case.
  struct Index {
    std::optional<std::wstring> key;
    long position;
  };
  struct Entry {
    std::wstring key;  ///< In lower case; empty for none.
    long value;
  };
  using Entries = std::vector<Entry>;

  void act() override {
    const Index index = randomIndex();
    const Entries::iterator found = find(index);
    const bool exists = found != entries_.end();
    switch (random_.below(8)) {
      case 0:
        expectCode(L"Remove", collection_.attempt(L"Remove", asVariant(index)),
                   exists ? S_OK : refusal(index));
        if (exists) {
          entries_.erase(found);
        }
        break;
      case 1:
        functions_.expect(exists, L"Collection_Remove", collection_.late(), asVariant(index));
        if (exists) {
          entries_.erase(found);
        }
        break;
      case 2:
        functions_.expect(exists, L"Collection_ContainsKey", collection_.late(), asVariant(index));
        break;
      case 3:
        if (random_.chance(10)) {
          functions_.call(L"Collection_Clear", collection_.late());
          entries_.clear();
        }
        break;
      default:
        add();
    }
  }

  void add() {
    const long value = ++lastValue_;
    const std::wstring key = random_.chance(60) ? randomKey() : std::wstring();
    const Variant keyArgument = key.empty() ? Variant::missing() : Variant(std::wstring_view(key));
    const Index neighbour = randomIndex();
    const std::size_t way = random_.below(4);
    const bool isBefore = way == 0;
    const bool isAfter = way == 1;
    const Entries::iterator found = find(neighbour);
    const HRESULT code =
        collection_.attempt(L"Add", value, keyArgument, isBefore ? asVariant(neighbour) : Variant::missing(),
                            isAfter ? asVariant(neighbour) : Variant::missing());
    if ((isBefore || isAfter) && found == entries_.end()) {
      expectCode(L"Add", code, refusal(neighbour));
    } else if (!key.empty() && find({key, 0}) != entries_.end()) {
      expectCode(L"Add", code, keyInUse);
    } else {
      expectCode(L"Add", code, S_OK);
      const auto place = isBefore ? found : isAfter ? std::next(found) : entries_.end();
      entries_.insert(place, {lowerCase(key), value});
    }
  }

  void compare() override {
    collection_.expect(static_cast<long>(entries_.size()), L"Count");
    const Index index = randomIndex();
    const Entries::iterator found = find(index);
    if (found != entries_.end()) {
      collection_.expect(found->value, L"Item", asVariant(index));
    } else {
      expectCode(L"Item", collection_.attempt(L"Item", asVariant(index)), refusal(index));
    }
    std::vector<std::wstring> values;
    for (const Entry& entry : entries_) {
      values.push_back(std::to_wstring(entry.value));
    }
    if (collection_.items() != values) {
      collection_.fail(L"NewEnum", L"does not give the items in order");
    }
  }

  void expectCode(const wchar_t* member, HRESULT got, HRESULT wanted) const {
    collection_.expectSame(member, Variant(long{got}), Variant(long{wanted}));
  }
  static HRESULT refusal(const Index& index) { return index.key ? unknownKey : noSuchPosition; }
  static Variant asVariant(const Index& index) {
    return index.key ? Variant(std::wstring_view(*index.key)) : Variant(index.position);
  }

  Entries::iterator find(const Index& index) {
    if (!index.key) {
      const bool exists = index.position >= 1 && index.position <= static_cast<long>(entries_.size());
      return exists ? entries_.begin() + (index.position - 1) : entries_.end();
    }
    return std::find_if(entries_.begin(), entries_.end(),
                        [&](const Entry& entry) { return entry.key == lowerCase(*index.key); });
  }
  Index randomIndex() {
    if (random_.chance(50)) {
      return {randomKey(), 0};
    }
    return {std::nullopt, static_cast<long>(random_.below(entries_.size() + 3)) - 1};
  }
  std::wstring randomKey() {
    static const std::vector<std::wstring> keys{L"a", L"A", L"b", L"key", L"Key", L"another key", L"7"};
    return random_.pick(keys);
  }

  Random& random_;
  Subject collection_;
  Subject functions_;
  Entries entries_;
  long lastValue_ = 0;
};

}  // namespace

std::unique_ptr<Model> makeCollectionModel(Random& random) {
  return std::make_unique<CollectionModel>(random);
}

}  // namespace zeq::torture
