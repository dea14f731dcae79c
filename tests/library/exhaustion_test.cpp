// Memory runs out: each request for memory on the main paths of every class is refused in turn. The call in
// which it is refused fails with an error that says so, or gives the member's neutral value or the one that
// it gives otherwise (where a member has another to give, the test says which). Those before it give what
// they give otherwise; of those after it, which may lack what it should have made, only errors are looked at.
// Nothing is left behind, and the next run is whole again.

#include <windows.h>
#include <gmock/gmock.h>

#include <functional>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "support/Allocations.h"
#include "support/Component.h"
#include "support/EventLog.h"
#include "support/Printable.h"
#include "support/TempFolder.h"
#include "wizard/Step.h"

namespace zeq::test {
namespace {

constexpr HRESULT outOfMemoryError = static_cast<HRESULT>(0x800A0007);

/// Thrown to end a path on which memory ran out.
class Exhausted {};

/// What a call gave, without a reference to it.
struct Answer {
  VARTYPE type;
  std::wstring text;
  bool operator==(const Answer&) const = default;
};

Answer answerOf(const Variant& value) {
  return {value.type(), shown(value.get())};
}

/// What the calls of a path give one after the other; nothing for a call that gives something new each time.
using Answers = std::vector<std::optional<Answer>>;

/// Whether a call without enough memory may give another answer than the one that it gives otherwise.
using Tolerance = std::function<bool(const Answer& given, const Answer& otherwise)>;

bool isNeutral(const Answer& given, const Answer& /*otherwise*/) {
  const std::wstring& text = given.text;
  return text.empty() || text == L"Empty" || text == L"Nothing" || text == L"0" || text == L"False";
}

/// For a text of lines whose ends other members make: those ends that came to nothing are missing.
bool hasBeginningsOfLines(const Answer& given, const Answer& otherwise) {
  std::wistringstream lines(given.text);
  const std::wstring whole = L"\n" + otherwise.text;
  for (std::wstring line; std::getline(lines, line);) {
    if (whole.find(L"\n" + line.substr(0, line.find(L'\r'))) == std::wstring::npos) {
      return false;
    }
  }
  return true;
}

/// One walk along a path: every outcome is whole or says that memory ran out.
class Walk {
 public:
  /// An undisturbed walk, which notes the answers.
  explicit Walk(Answers& answers) : answers_(answers) {}
  /// A walk with answers that are known.
  Walk(Answers& answers, const RefusedAllocation& refusal) : answers_(answers), refusal_(&refusal) {}

  Late create(REFCLSID clsid) {
    ComPtr<IDispatch> object;
    expectClean(L"create", classFactory(clsid)->CreateInstance(nullptr, IID_IDispatch, object.outVoid()),
                S_OK);
    if (!object) {
      throw Exhausted();
    }
    return Late(object);
  }
  template <class... Arguments>
  Variant call(const Late& object, const wchar_t* member, const Arguments&... arguments) {
    return callWith(isNeutral, object, member, arguments...);
  }
  /// A call of a member that may give something else than its neutral value, too.
  template <class... Arguments>
  Variant callWith(const Tolerance& tolerance, const Late& object, const wchar_t* member,
                   const Arguments&... arguments) {
    Outcome outcome = object.call(member, asVariant(arguments)...);
    expectClean(member, outcome.code, outcome.scode);
    if (refusal_ == nullptr) {
      note(outcome.value);
    } else {
      expectWholeOr(tolerance, member, outcome.value);
    }
    return std::move(outcome.value);
  }
  template <class... Arguments>
  void put(const Late& object, const wchar_t* member, const Arguments&... arguments) {
    const Outcome outcome = object.put(member, asVariant(arguments)...);
    expectClean(member, outcome.code, outcome.scode);
    isDisturbed_ = refusal_ != nullptr && refusal_->happened();
  }
  /// The object that a member returns.
  template <class... Arguments>
  Late follow(const Late& object, const wchar_t* member, const Arguments&... arguments) {
    const Variant result = call(object, member, arguments...);
    if (result.type() != VT_DISPATCH || result.get().pdispVal == nullptr) {
      throw Exhausted();
    }
    return Late(result.get().pdispVal);
  }

 private:
  /// Ends the walk at an error: what follows would lack what the member should have made.
  static void expectClean(const wchar_t* member, HRESULT code, HRESULT error) {
    const HRESULT told = code == DISP_E_EXCEPTION ? error : code;
    EXPECT_TRUE(SUCCEEDED(told) || told == E_OUTOFMEMORY || told == outOfMemoryError)
        << printable(member) << " returned 0x" << std::hex << told;
    if (FAILED(told)) {
      throw Exhausted();
    }
  }
  void note(const Variant& value) {
    const Answer given = answerOf(value);
    if (position_ == answers_.size()) {
      answers_.emplace_back(given);
    } else if (answers_[position_] != given) {
      answers_[position_].reset();
    }
    ++position_;
  }
  void expectWholeOr(const Tolerance& tolerance, const wchar_t* member, const Variant& value) {
    const std::optional<Answer>& otherwise = answers_.at(position_++);
    const bool wasDisturbed = std::exchange(isDisturbed_, refusal_->happened());
    if (wasDisturbed || !otherwise) {
      return;
    }
    const Answer given = answerOf(value);
    const bool isTolerable = isNeutral(given, *otherwise) || tolerance(given, *otherwise);
    EXPECT_TRUE(given == *otherwise || (isDisturbed_ && isTolerable))
        << printable(member) << " gave " << printable(given.text) << " of type " << given.type
        << " instead of " << printable(otherwise->text) << " of type " << otherwise->type;
  }

  Answers& answers_;
  std::size_t position_ = 0;
  const RefusedAllocation* refusal_ = nullptr;
  bool isDisturbed_ = false;  ///< By a call before.
};

class ExhaustionTest : public testing::Test {
 protected:
  using Path = std::function<void(Walk&)>;

  /// Walks the path whole, then with each request refused in turn, then whole again.
  static void exhaust(const Path& path) {
    raiseOnce();
    Answers answers;
    for (int i = 0; i < 3; ++i) {
      ASSERT_TRUE(walk(path, Walk(answers)))
          << "without any refusal";  // What is made once and kept is made here.
    }
    const long component = componentBlocks();
    const long task = taskBlocks();
    long nth = 0;
    for (bool refused = true; refused && !HasFailure();) {
      SCOPED_TRACE("refusing request " + std::to_string(++nth));
      {
        const RefusedAllocation refusal(nth);
        walk(path, Walk(answers, refusal));
        refused = refusal.happened();
      }
      SetErrorInfo(0, nullptr);
      EXPECT_EQ(componentBlocks(), component);
      EXPECT_EQ(taskBlocks(), task);
      EXPECT_TRUE(canUnload());
    }
    EXPECT_GT(nth, 5) << "hardly anything was refused";
    EXPECT_TRUE(walk(path, Walk(answers))) << "afterwards";
  }

 private:
  /// True if the walk came to its end.
  static bool walk(const Path& path, Walk steps) {
    try {
      path(steps);
      return true;
    } catch (const Exhausted&) {
      return false;
    } catch (const automation::Error& error) {  // From the class factory or a connection point.
      EXPECT_EQ(error.code(), E_OUTOFMEMORY);
      return false;
    }
  }

  /// The C++ runtime keeps something from its first exception on, and from the first one without memory.
  static void raiseOnce() {
    const auto collection = create<::Collection, _Collection>();
    for (const long refused : {0L, 1L}) {
      Variant none;
      const RefusedAllocation refusal(refused);
      EXPECT_NE(collection->get_Item(Variant(1L).get(), none.out()), S_OK);
    }
  }
};

TEST_F(ExhaustionTest, Collection) {
  exhaust([](Walk& walk) {
    const Late collection = walk.create(__uuidof(Collection));
    walk.call(collection, L"Add", L"first", L"key");
    walk.call(collection, L"Add", 2, L"other", L"key");
    walk.call(collection, L"Item", L"KEY");
    walk.call(collection, L"NewEnum");
    walk.call(collection, L"Remove", 1);
  });
}

TEST_F(ExhaustionTest, Strings) {
  exhaust([](Walk& walk) {
    const Late strings = walk.create(__uuidof(CZEQUtilityStrings));
    walk.call(strings, L"Str_Plural", 2, L"apple");
    walk.call(strings, L"Str_Compare", L" a", L"A");
    walk.call(strings, L"Str_ReplaceSimpleKeyWord", L"a %N% b", L"%N%", L"x");
    walk.call(strings, L"StrUtil_SecsToTimeStr", 3700.5, L"hh:nn:ss", true);
    walk.call(strings, L"StrUtil_MakeTimeCodeString", 3700.5, 0, 25.0);
    walk.call(strings, L"StrUtil_KiloMegaGigaString", 123456.0);
    walk.call(strings, L"StrUtil_KeyCodeToString", 83, 2, true);
    walk.call(strings, L"URLEncode", L"a b&c");
  });
}

TEST_F(ExhaustionTest, Splitter) {
  exhaust([](Walk& walk) {
    const Late splitter = walk.create(__uuidof(CStringSplitter));
    walk.put(splitter, L"Record", L"some words that are long enough to need memory of their own");
    walk.call(splitter, L"Split", L"a;b;c", L";");
    walk.call(splitter, L"Field", 2);
    walk.call(splitter, L"NewEnum");
  });
}

TEST_F(ExhaustionTest, NumbersCollectionsAndSorting) {
  exhaust([](Walk& walk) {
    const Late numbers = walk.create(__uuidof(CZEQUtilityNumerical));
    walk.call(numbers, L"NumVal_Scale", 1.0, 0.0, 2.0, 0.0, 10.0);
    const Late collections = walk.create(__uuidof(CZEQUtilityCollections));
    const Late collection = walk.create(__uuidof(Collection));
    walk.call(collections, L"Collection_Add", collection, numbers, L"key");
    walk.call(collections, L"Collection_ContainsKey", collection, L"key");
    walk.call(collections, L"Collection_Remove", collection, 1);
    walk.call(collections, L"Collection_Clear", collection);
    const Late sorting = walk.create(__uuidof(CZEQUtilitySorting));
    Variant ranks;
    ranks.get().parray = SafeArrayCreateVector(VT_VARIANT, 0, 3);
    ranks.get().vt = VT_ARRAY | VT_VARIANT;
    for (LONG i = 0; i < 3; ++i) {
      Variant text = asVariant(i == 1 ? L"a" : L"b");
      SafeArrayPutElement(ranks.get().parray, &i, &text.get());
    }
    Variant data(ranks);
    walk.call(sorting, L"QuickSortVariants", ranks, data, 0, 2);
  });
}

TEST_F(ExhaustionTest, RangeMapper) {
  exhaust([](Walk& walk) {
    const Late mapper = walk.create(__uuidof(CRangeMapper));
    walk.call(mapper, L"SetDomain", L"0", 10);
    walk.call(mapper, L"SetRange", 0, L"100");
    walk.call(mapper, L"ToRange", 5);
    walk.call(mapper, L"ToDomain", L"50");
  });
}

TEST_F(ExhaustionTest, FileSystem) {
  const TempFolder folder;
  const std::wstring file = folder.file(L"file.txt", "content");
  exhaust([&](Walk& walk) {
    const Late system = walk.create(__uuidof(CZEQFileSystemObject));
    walk.call(system, L"FSO_BuildPath", folder.path(), L"name");
    walk.call(system, L"FSO_GetAbsolutePathName", L"name");
    walk.call(system, L"FSO_GetBaseName", file);
    walk.call(system, L"FSO_SplitFullFilePath", file, L"", L"", L"");
    walk.call(system, L"FSO_FileExists", file);
    walk.call(system, L"FSO_GetFileSize", file);
    walk.call(system, L"FSO_GetFolderSize", folder.path());
    walk.call(system, L"FSO_CreateFolderPath", folder / L"a\\b");
    walk.call(system, L"FSO_SuggestFileChild", folder.path(), L"file", L"txt", 10);
    walk.call(system, L"FSO_GetTempFileName", folder.path(), 5);
    walk.call(system, L"FSO_GetTempPath");
    walk.call(system, L"FSO_DeleteFile", folder / L"none");
  });
}

TEST_F(ExhaustionTest, Attachment) {
  const TempFolder folder;
  const std::wstring file = folder.file(L"file.txt", "content");
  exhaust([&](Walk& walk) {
    const Late attachment = walk.create(__uuidof(CAttachment));
    walk.call(attachment, L"Create", file);
    walk.call(attachment, L"FullPath");
    walk.call(attachment, L"Association");
    walk.put(attachment, L"IconKey", L"a key that is long enough to need memory");
  });
}

TEST_F(ExhaustionTest, FakeDriveAndCounter) {
  exhaust([](Walk& walk) {
    const Late drive = walk.create(__uuidof(CFakeDrive));
    walk.put(drive, L"Name", L"a drive with a long name");
    walk.put(drive, L"Capacity", 1e9);
    walk.call(drive, L"UseBytes", 100.0);
    walk.call(drive, L"AsString");
    const Late counter = walk.create(__uuidof(CReferenceCounter));
    const Sink sink(counter.dispatch(), __uuidof(__CReferenceCounter),
                    [](DISPID, const std::vector<VARIANT*>&) { return S_OK; });
    walk.call(counter, L"Increment");
    walk.call(counter, L"Decrement");
  });
}

TEST_F(ExhaustionTest, FileOperations) {
  const TempFolder folder;
  const std::wstring source = folder.file(L"source.txt", "content");
  exhaust([&](Walk& walk) {
    DeleteFileW((folder / L"copy.txt").c_str());
    RemoveDirectoryW((folder / L"made").c_str());
    const Late batch = walk.create(__uuidof(CFileOperationBatch));
    const Sink sink(batch.dispatch(), __uuidof(__CFileOperationBatch),
                    [](DISPID, const std::vector<VARIANT*>&) { return S_OK; });
    walk.call(batch, L"AddCreate", folder / L"made");
    walk.call(batch, L"AddCopy", source, folder / L"copy.txt");
    walk.call(batch, L"Execute", false);
    walk.call(batch, L"Execute", true);
    walk.callWith(hasBeginningsOfLines, batch, L"AsString", true);
    walk.follow(batch, L"DriveMonitors");
    walk.call(batch, L"Clear");
  });
}

TEST_F(ExhaustionTest, Settings) {
  const TempFolder folder;
  const auto isDefault = [](const Answer& given, const Answer&) { return given.text == L"10"; };
  exhaust([&](Walk& walk) {
    // Written anew: a setting that could not be read is replaced by its default.
    const std::wstring ini = folder.file(L"settings.ini", "[root\\group]\r\nwidth=80\r\n");
    const Late options = walk.create(__uuidof(CAppOptions));
    walk.put(options, L"Hive", ini);
    walk.put(options, L"RootKey", L"root");
    walk.call(options, L"WriteSetting", L"group", L"font", L"Arial");
    walk.callWith(isDefault, options, L"ReadSettingLong", L"group", L"width", 10);
    const Late settings = walk.create(__uuidof(CAppSettings));
    walk.put(settings, L"Hive", ini);
    walk.put(settings, L"RootKey", L"root");
    walk.put(settings, L"SubKey", L"group");
    walk.callWith(isDefault, settings, L"ReadSetting", L"width", 10);
    walk.call(settings, L"WriteSetting", L"height", L"20");
    walk.call(settings, L"Save");
    walk.callWith(hasBeginningsOfLines, settings, L"AsString");
    walk.call(settings, L"Clear");
  });
}

TEST_F(ExhaustionTest, IniFiles) {
  const TempFolder folder;
  const std::wstring ini = folder.file(
      L"file.ini", "[VERSION]\r\nItemName=thing\r\nVerMajor=1\r\n[one]\r\nkey=value\r\nother=2\r\n");
  exhaust([&](Walk& walk) {
    const Late reader = walk.create(__uuidof(CIniFile));
    walk.call(reader, L"Create", ini);
    walk.put(reader, L"section", L"one");
    walk.call(reader, L"GetString", L"key");
    walk.follow(reader, L"Keys");
    const Late extended = walk.create(__uuidof(CIniFileEx));
    walk.put(extended, L"file", ini);
    walk.put(extended, L"section", L"one");
    walk.call(extended, L"values", L"key");
    walk.put(extended, L"values", L"key", L"value");
    walk.call(extended, L"enumSections", Variant());
    walk.call(extended, L"enumSectionKeys", Variant());
    walk.call(extended, L"enumSectionValuePairs", Variant());
    const Late version = walk.create(__uuidof(CVersionInfo));
    walk.call(version, L"ReadFromIniFile", ini);
    walk.call(version, L"ItemName");
  });
}

TEST_F(ExhaustionTest, Audit) {
  const TempFolder folder;
  exhaust([&](Walk& walk) {
    const Late audit = walk.create(__uuidof(CZEQAudit));
    walk.call(audit, L"Create", folder / L"debug.log", L"application", true);
    walk.call(audit, L"ZEQDbgLog", L"a message");
    walk.call(audit, L"ZEQStatBar", L"a message");
    walk.call(audit, L"DebugFile");
  });
}

TEST_F(ExhaustionTest, KeyMaps) {
  const TempFolder folder;
  exhaust([&](Walk& walk) {
    const Late filter = walk.create(__uuidof(CKeymapFilter));
    const Sink sink(filter.dispatch(), __uuidof(__CKeymapFilter),
                    [](DISPID, const std::vector<VARIANT*>&) { return S_OK; });
    walk.call(filter, L"AddMapping", L"Save", L"Save the file", 83, 2);
    walk.call(filter, L"Process", 83, 2, false);
    walk.call(filter, L"AsString");
    const Late mappings = walk.follow(filter, L"KeyMappings");
    walk.call(mappings, L"WriteToFile", folder / L"keys.txt", L"Keys");
    walk.call(mappings, L"ReadFromFile", folder / L"keys.txt", L"Keys");
    walk.call(mappings, L"ItemByName", L"Save");
    walk.call(mappings, L"NewEnum");
  });
}

TEST_F(ExhaustionTest, ObservableClass) {
  exhaust([](Walk& walk) {
    const Late observable = walk.create(__uuidof(CObservableClass));
    const Sink sink(observable.dispatch(), __uuidof(__CObservableClass),
                    [](DISPID, const std::vector<VARIANT*>&) { return S_OK; });
    walk.call(observable, L"SimplePropertyUpdate", L"old", L"name", L"new");
    walk.call(observable, L"PushPropertyChangeMode", 1);
    walk.call(observable, L"RaisePropertyChange", L"name", L"new");
    walk.call(observable, L"PopPropertyChangeMode");
  });
}

TEST_F(ExhaustionTest, Help) {
  exhaust([](Walk& walk) {
    const Late help = walk.create(__uuidof(CWinHelp));
    walk.call(help, L"Create", L"a file.txt");
    walk.put(help, L"TopicID", L"topic", 5);
    walk.put(help, L"FormTopicName", L"form", L"context", L"topic");
    walk.call(help, L"FormTopicName", L"form", L"context");
    walk.call(help, L"ShowTopic", L"topic");
  });
}

TEST_F(ExhaustionTest, Wizard) {
  const auto step = Step::make([](Page& page) {
    page.key.clear();
    return page.permitBack ? wzsoFinish : wzsoNext;
  });
  exhaust([&](Walk& walk) {
    const Late wizard = walk.create(__uuidof(CWizard));
    walk.put(wizard, L"Caption", L"a wizard");
    const Late page(step);
    walk.call(wizard, L"AddStep", page, L"first");
    walk.follow(wizard, L"AddStep", page, L"last");
    const Late details = walk.follow(wizard, L"Item", L"first");
    walk.put(details, L"NextStepKey", L"LAST");
    walk.call(wizard, L"DoWizard");
    walk.call(wizard, L"Clear");
  });
}

}  // namespace
}  // namespace zeq::test
