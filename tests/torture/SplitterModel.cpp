// A field splitter against a plain loop over the characters.

#include <utility>

#include "torture/Models.h"
#include "torture/Subject.h"

namespace zeq::torture {
namespace {

std::wstring trimmed(const std::wstring& text) {
  const std::size_t first = text.find_first_not_of(L' ');
  return first == std::wstring::npos ? std::wstring()
                                     : text.substr(first, text.find_last_not_of(L' ') - first + 1);
}

class SplitterModel final : public Model {
 public:
  explicit SplitterModel(Random& random)
      : random_(random), splitter_(random, "CStringSplitter", __uuidof(CStringSplitter)) {}

 private:
  void act() override {
    switch (random_.below(6)) {
      case 0:
        counts_ = random_.chance(50);
        splitter_.put(L"CountEmptyFields", counts_);
        break;
      case 1:
        trims_ = random_.chance(50);
        splitter_.put(L"TrimFields", trims_);
        break;
      case 2: {
        const std::wstring separator = randomSeparator();
        splitter_.put(L"FieldSep", separator);
        setSeparator(separator);
        break;
      }
      case 3:
        record_ = randomRecord();
        splitter_.put(L"Record", record_);
        break;
      default:
        split();
    }
  }

  void split() {
    const std::wstring separator = randomSeparator();
    record_ = randomRecord();
    setSeparator(separator);
    trims_ = random_.chance(50);
    counts_ = random_.chance(50);
    if (trims_ && counts_) {  // As the arguments are by default.
      splitter_.expect(static_cast<long>(fields().size()), L"Split", record_, separator);
    } else {
      splitter_.expect(static_cast<long>(fields().size()), L"Split", record_, separator, trims_, counts_);
    }
  }

  void compare() override {
    const std::vector<std::wstring> wanted = fields();
    const auto count = static_cast<long>(wanted.size());
    splitter_.expect(record_, L"Record");
    splitter_.expect(separator_, L"FieldSep");
    splitter_.expect(trims_, L"TrimFields");
    splitter_.expect(counts_, L"CountEmptyFields");
    splitter_.expect(count, L"count");
    const long index = static_cast<long>(random_.below(wanted.size() + 3)) - 1;
    const bool exists = index >= 1 && index <= count;
    splitter_.expect(exists ? wanted[static_cast<std::size_t>(index - 1)] : std::wstring(), L"Field", index);
    if (splitter_.items() != wanted) {
      splitter_.fail(L"NewEnum", L"does not give the fields");
    }
  }

  [[nodiscard]] std::vector<std::wstring> fields() const {
    std::vector<std::wstring> found;
    std::wstring field;
    for (std::size_t i = 0; i < record_.size();) {
      if (lowerCase(record_.substr(i, separator_.size())) == lowerCase(separator_)) {
        add(found, std::exchange(field, {}));
        i += separator_.size();
      } else {
        field += record_[i++];
      }
    }
    if (!record_.empty()) {
      add(found, field);
    }
    return found;
  }
  void add(std::vector<std::wstring>& found, const std::wstring& field) const {
    const std::wstring kept = trims_ ? trimmed(field) : field;
    if (counts_ || !kept.empty()) {
      found.push_back(kept);
    }
  }
  void setSeparator(const std::wstring& separator) {
    if (!separator.empty()) {
      separator_ = separator;
    }
  }

  std::wstring randomSeparator() {
    static const std::vector<std::wstring> separators{L"", L" ", L";", L"ab", L"AB", std::wstring(1, L'\0')};
    return random_.pick(separators);
  }
  std::wstring randomRecord() {
    static const std::wstring characters(L"aAbBxy  ;;\0", 11);
    std::wstring record(random_.below(40), L' ');
    for (wchar_t& character : record) {
      character = characters[random_.below(characters.size())];
    }
    return record;
  }

  Random& random_;
  Subject splitter_;
  std::wstring separator_ = L" ";
  std::wstring record_;
  bool trims_ = true;
  bool counts_ = false;
};

}  // namespace

std::unique_ptr<Model> makeSplitterModel(Random& random) {
  return std::make_unique<SplitterModel>(random);
}

}  // namespace zeq::torture
