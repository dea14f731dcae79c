#include <gmock/gmock.h>

#include <array>
#include <cwctype>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "automation/TypeInfo.h"
#include "help/HelpViewers.h"
#include "support/Component.h"
#include "support/EntryPoint.h"
#include "support/Leaks.h"

namespace zeq::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr long ownerNumber = 0x1234;
HWND ownerWindow() {
  return reinterpret_cast<HWND>(std::intptr_t{ownerNumber});
}

/// The path of this program without its extension.
std::wstring programBase() {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
  return path.substr(0, path.rfind(L'.'));
}

/// An empty file that is there as long as this.
class EmptyFile {
 public:
  explicit EmptyFile(std::wstring path) : path_(std::move(path)) {
    CloseHandle(CreateFileW(path_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
  }
  ~EmptyFile() { DeleteFileW(path_.c_str()); }
  EmptyFile(const EmptyFile&) = delete;
  EmptyFile& operator=(const EmptyFile&) = delete;

 private:
  std::wstring path_;
};

class CWinHelpTest : public testing::Test {
 protected:
  void open(std::wstring_view file) { ASSERT_EQ(help->Create(Bstr(file).get(), ownerNumber), S_OK); }
  long topicId(std::wstring_view topic) {
    long id = -1;
    EXPECT_EQ(help->get_TopicID(Bstr(topic).get(), &id), S_OK);
    return id;
  }
  void setTopicId(std::wstring_view topic, long id) {
    EXPECT_EQ(help->put_TopicID(Bstr(topic).get(), id), S_OK);
  }
  std::wstring formTopic(std::wstring_view form, std::wstring_view context) {
    Bstr name;
    EXPECT_EQ(help->get_FormTopicName(Bstr(form).get(), Bstr(context).get(), name.out()), S_OK);
    return std::wstring(name.view());
  }
  void setFormTopic(std::wstring_view form, std::wstring_view context, std::wstring_view topic) {
    EXPECT_EQ(help->put_FormTopicName(Bstr(form).get(), Bstr(context).get(), Bstr(topic).get()), S_OK);
  }
  std::wstring helpFile() {
    Bstr file;
    EXPECT_EQ(help->get_HelpFile(file.out()), S_OK);
    return std::wstring(file.view());
  }
  void show(std::wstring_view topic, std::wstring_view form = {}, std::wstring_view context = {}) {
    EXPECT_EQ(help->ShowTopic(Bstr(topic).get(), Bstr(form).get(), Bstr(context).get()), S_OK);
  }
  /// The number of the one topic that HTML Help was asked for.
  long shownTopic() {
    const auto calls = htmlHelp.take();
    EXPECT_EQ(calls.size(), 1U);
    return calls.empty() ? -1 : static_cast<long>(calls.front().data);
  }

  HtmlHelpViewer htmlHelp;
  WinHelpWindow winHelp;
  ComPtr<_CWinHelp> help = create<CWinHelp, _CWinHelp>();
};

// ---- what it stores

TEST_F(CWinHelpTest, StartsEmpty) {
  long window = -1;
  EXPECT_EQ(help->get_hwnd(&window), S_OK);
  EXPECT_EQ(window, 0);
  Bstr topic;
  EXPECT_EQ(help->get_DefaultTopic(topic.out()), S_OK);
  EXPECT_EQ(topic.view(), L"");
  EXPECT_EQ(topicId(L"Intro"), 0);
  EXPECT_EQ(formTopic(L"Main", L""), L"");
  EXPECT_EQ(helpFile(), L"");
}

TEST_F(CWinHelpTest, CreateSetsFileAndOwner) {
  open(L"C:\\Guide.chm");
  long window = 0;
  EXPECT_EQ(help->get_hwnd(&window), S_OK);
  EXPECT_EQ(window, ownerNumber);
  EXPECT_EQ(helpFile(), L"C:\\Guide.chm");
  EXPECT_EQ(Late(help).call(L"Create", Variant(L"C:\\Other.hlp")).code, S_OK);  // No window: 0.
  EXPECT_EQ(help->get_hwnd(&window), S_OK);
  EXPECT_EQ(window, 0);
  EXPECT_EQ(helpFile(), L"C:\\Other.hlp");
}

TEST_F(CWinHelpTest, KeepsPlainProperties) {
  help->put_hwnd(-2);
  long window = 0;
  EXPECT_EQ(help->get_hwnd(&window), S_OK);
  EXPECT_EQ(window, -2);
  help->put_DefaultTopic(Bstr(L" Start ").get());
  Bstr topic;
  EXPECT_EQ(help->get_DefaultTopic(topic.out()), S_OK);
  EXPECT_EQ(topic.view(), L" Start ");
  help->put_HelpFile(Bstr(L" C:\\Guide.chm ").get());
  EXPECT_EQ(helpFile(), L" C:\\Guide.chm ");
}

TEST_F(CWinHelpTest, TopicNamesIgnoreCase) {
  setTopicId(L"Intro", 7);
  setTopicId(L"Übersicht", 8);
  EXPECT_EQ(topicId(L"INTRO"), 7);
  EXPECT_EQ(topicId(L"intro"), 7);
  EXPECT_EQ(topicId(L"üBERSICHT"), 8);
  EXPECT_EQ(topicId(L" Intro"), 0);
}

TEST_F(CWinHelpTest, TopicIsReplaced) {
  setTopicId(L"Intro", 7);
  setTopicId(L"iNTRO", -9);
  EXPECT_EQ(topicId(L"Intro"), -9);
}

TEST_F(CWinHelpTest, ClearsTopicsAlone) {
  setTopicId(L"Intro", 7);
  setFormTopic(L"Main", L"", L"Intro");
  EXPECT_EQ(help->ClearTopics(), S_OK);
  EXPECT_EQ(topicId(L"Intro"), 0);
  EXPECT_EQ(formTopic(L"Main", L""), L"Intro");
}

TEST_F(CWinHelpTest, ClearsFormTopicsAlone) {
  setTopicId(L"Intro", 7);
  setFormTopic(L"Main", L"", L"Intro");
  EXPECT_EQ(help->ClearFormTopicNames(), S_OK);
  EXPECT_EQ(topicId(L"Intro"), 7);
  EXPECT_EQ(formTopic(L"Main", L""), L"");
}

TEST_F(CWinHelpTest, BlankContextIsTheFormItself) {
  setFormTopic(L"Main", L"   ", L"Overview");
  EXPECT_EQ(formTopic(L"Main", L""), L"Overview");
  EXPECT_EQ(formTopic(L"MAIN", L" "), L"Overview");
  EXPECT_EQ(formTopic(L"Main", L"Print"), L"");
}

TEST_F(CWinHelpTest, ContextIsTrimmedAndFormIsNot) {
  setFormTopic(L"Main", L"  Print ", L"Printing");
  EXPECT_EQ(formTopic(L"Main", L"PRINT"), L"Printing");
  EXPECT_EQ(formTopic(L"Main::print", L""), L"Printing");  // The key is the two joined by "::".
  EXPECT_EQ(formTopic(L" Main", L"Print"), L"");
  EXPECT_EQ(formTopic(L"Main", L"Print\t"), L"");  // Only blanks are trimmed.
}

TEST_F(CWinHelpTest, FormTopicIsReplaced) {
  setFormTopic(L"Main", L"", L"One");
  setFormTopic(L"main", L"", L"Two");
  EXPECT_EQ(formTopic(L"Main", L""), L"Two");
}

TEST_F(CWinHelpTest, ProgramsOwnHelpFileWhereNoneIsSet) {
  const std::wstring base = programBase();
  for (const wchar_t* blank : {L"", L"   "}) {
    help->put_HelpFile(Bstr(blank).get());
    EXPECT_EQ(helpFile(), L"");
    const EmptyFile oldStyle(base + L".hlp");
    EXPECT_EQ(helpFile(), base + L".hlp");
    const EmptyFile compiled(base + L".chm");
    EXPECT_EQ(helpFile(), base + L".chm");
    help->put_HelpFile(Bstr(L"C:\\Guide.hlp").get());
    EXPECT_EQ(helpFile(), L"C:\\Guide.hlp");
  }
}

// ---- HTML Help

TEST_F(CWinHelpTest, HtmlHelpCommands) {
  struct Row {
    std::function<HRESULT()> call;
    UINT command;
    LONG_PTR data;
  };
  const std::array rows{
      Row{[&] { return help->ShowContents(); }, 1, 0},
      Row{[&] { return help->ShowIndex(); }, 2, 0},
      Row{[&] { return help->ShowTopicID(42); }, 15, 42},
      Row{[&] { return help->ShowTopic(nullptr, nullptr, nullptr); }, 15, 0},
  };
  open(L"C:\\Guide.chm");
  for (const Row& row : rows) {
    EXPECT_EQ(row.call(), S_OK);
    EXPECT_THAT(htmlHelp.take(),
                ElementsAre(HelpCall{ownerWindow(), "C:\\Guide.chm", row.command, row.data, ""}));
  }
  EXPECT_THAT(winHelp.take(), IsEmpty());
}

TEST_F(CWinHelpTest, HtmlHelpSearchRecord) {
  open(L"C:\\Guide.chm");
  EXPECT_EQ(help->ShowFind(), S_OK);
  const auto calls = htmlHelp.take();
  ASSERT_EQ(calls.size(), 1U);
  EXPECT_EQ(calls[0].owner, ownerWindow());
  EXPECT_EQ(calls[0].file, "C:\\Guide.chm");
  EXPECT_EQ(calls[0].command, 3U);
  ASSERT_TRUE(htmlHelp.query);
  EXPECT_EQ(htmlHelp.query->size, 32);
  EXPECT_EQ(htmlHelp.query->unicode, FALSE);
  EXPECT_EQ(htmlHelp.query->query, nullptr);
  EXPECT_EQ(htmlHelp.query->proximity, -1);
  EXPECT_EQ(htmlHelp.query->stemmed, FALSE);
  EXPECT_EQ(htmlHelp.query->titleOnly, TRUE);
  EXPECT_EQ(htmlHelp.query->execute, FALSE);
  EXPECT_EQ(htmlHelp.query->window, nullptr);
}

TEST_F(CWinHelpTest, HtmlHelpKeywordRecord) {
  open(L"C:\\Guide.chm");
  EXPECT_EQ(help->ShowKeyword(Bstr(L"pl\u00fcsch;printing").get()), S_OK);
  const auto calls = htmlHelp.take();
  ASSERT_EQ(calls.size(), 1U);
  EXPECT_EQ(calls[0].owner, ownerWindow());
  EXPECT_EQ(calls[0].file, "C:\\Guide.chm");
  EXPECT_EQ(calls[0].command, 13U);
  ASSERT_TRUE(htmlHelp.link);
  EXPECT_EQ(htmlHelp.link->size, 28);
  EXPECT_EQ(htmlHelp.link->reserved, FALSE);
  EXPECT_EQ(htmlHelp.keywords, "pl\xfcsch;printing");
  EXPECT_EQ(htmlHelp.link->url, nullptr);
  EXPECT_EQ(htmlHelp.messageText, "No such keyword found");
  EXPECT_EQ(htmlHelp.messageTitle, "Keyword Not Found");
  EXPECT_EQ(htmlHelp.link->window, nullptr);
  EXPECT_EQ(htmlHelp.link->indexOnFail, FALSE);
}

TEST_F(CWinHelpTest, HtmlHelpHidesWithoutOwner) {
  open(L"C:\\Guide.chm");
  EXPECT_EQ(help->Hide(), S_OK);
  EXPECT_THAT(htmlHelp.take(), ElementsAre(HelpCall{nullptr, "C:\\Guide.chm", 18, 0, ""}));
}

TEST_F(CWinHelpTest, TopicNumbersArriveAs32Bits) {
  open(L"C:\\Guide.chm");
  help->ShowTopicID(-1);
  const auto calls = htmlHelp.take();
  ASSERT_EQ(calls.size(), 1U);
  EXPECT_EQ(static_cast<DWORD_PTR>(calls[0].data), DWORD_PTR{0xFFFFFFFF});
}

TEST_F(CWinHelpTest, FileNamesArriveInTheCodePage) {
  open(L"C:\\\u00dcbersicht.chm");
  help->ShowContents();
  const auto calls = htmlHelp.take();
  ASSERT_EQ(calls.size(), 1U);
  EXPECT_EQ(calls[0].file,
            "C:\\\xdc"
            "bersicht.chm");
}

// ---- WinHelp

TEST_F(CWinHelpTest, WinHelpCommands) {
  struct Row {
    std::function<HRESULT()> call;
    UINT command;
    LONG_PTR data;
  };
  const std::array rows{
      Row{[&] { return help->ShowContents(); }, 11, 0},
      Row{[&] { return help->ShowTopicID(42); }, 1, 42},
      Row{[&] { return help->ShowTopic(nullptr, nullptr, nullptr); }, 1, 0},
      Row{[&] { return help->Hide(); }, 2, 0},
  };
  open(L"C:\\Guide.hlp");
  for (const Row& row : rows) {
    EXPECT_EQ(row.call(), S_OK);
    EXPECT_THAT(winHelp.take(),
                ElementsAre(HelpCall{ownerWindow(), "C:\\Guide.hlp", row.command, row.data, ""}));
  }
  EXPECT_THAT(htmlHelp.take(), IsEmpty());
}

TEST_F(CWinHelpTest, WinHelpTabs) {
  // The system's WinHelpA sends HELP_TAB on to no window here, so that its arguments are looked at.
  WinHelpArguments arguments;
  open(L"C:\\Guide.hlp");
  EXPECT_EQ(help->ShowIndex(), S_OK);
  EXPECT_THAT(arguments.take(), ElementsAre(HelpCall{ownerWindow(), "C:\\Guide.hlp", 15, -2, ""}));
  EXPECT_EQ(help->ShowFind(), S_OK);
  EXPECT_THAT(arguments.take(), ElementsAre(HelpCall{ownerWindow(), "C:\\Guide.hlp", 15, -1, ""}));
}

TEST_F(CWinHelpTest, WinHelpKeyword) {
  open(L"C:\\Guide.hlp");
  EXPECT_EQ(help->ShowKeyword(Bstr(L"pl\u00fcsch").get()), S_OK);
  const auto calls = winHelp.take();
  ASSERT_EQ(calls.size(), 1U);
  EXPECT_EQ(calls[0].owner, ownerWindow());
  EXPECT_EQ(calls[0].file, "C:\\Guide.hlp");
  EXPECT_EQ(calls[0].command, 257U);
  EXPECT_EQ(calls[0].text, std::string("pl\xfcsch\0", 7));
}

TEST_F(CWinHelpTest, LocatesTheMainWindowWhateverTheExtension) {
  struct Place {
    std::int32_t size, x, y, width, height, show;
    char name[8];
  };
  for (const char* file : {"C:\\Guide.hlp", "C:\\Guide.chm", "C:\\Guide.txt"}) {
    open(std::wstring(file, file + 12));
    EXPECT_EQ(help->LocateHelp(), S_OK);
    const auto calls = winHelp.take();
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].owner, ownerWindow());
    EXPECT_EQ(calls[0].file, file);
    EXPECT_EQ(calls[0].command, 515U);
    ASSERT_EQ(calls[0].text.size(), 32U);
    const auto& place = *reinterpret_cast<const Place*>(calls[0].text.data());
    EXPECT_EQ(place.size, 32);
    EXPECT_EQ(place.x, 768);
    EXPECT_EQ(place.y, 0);
    EXPECT_EQ(place.width, 256);
    EXPECT_EQ(place.height, 1024);
    EXPECT_EQ(place.show, 5);
    EXPECT_EQ(std::string(place.name, 8), std::string("Tolvec\0\0", 8));
  }
  EXPECT_THAT(htmlHelp.take(), IsEmpty());
}

// ---- choosing the viewer

TEST_F(CWinHelpTest, ExtensionIgnoresCase) {
  open(L"Guide.CHM");
  help->ShowContents();
  EXPECT_EQ(htmlHelp.take().size(), 1U);
  open(L"C:/Help/Guide.Hlp");
  help->ShowContents();
  EXPECT_EQ(winHelp.take().size(), 1U);
}

TEST_F(CWinHelpTest, OtherFilesShowNothing) {
  for (const wchar_t* file : {L"C:\\Guide.txt", L"C:\\Guide", L"C:\\Old.chm\\Guide", L"C:\\Guide.chm.bak",
                              L"C:\\Guide.chm ", L"C:\\chm", L"Guide.", L""}) {
    open(file);
    help->ShowContents();
    help->ShowIndex();
    help->ShowFind();
    help->ShowTopicID(1);
    help->ShowHelpFileTopic(Bstr(file).get(), 1);
    show(L"Intro");
    help->ShowKeyword(Bstr(L"key").get());
    help->Hide();
    EXPECT_THAT(winHelp.take(), IsEmpty()) << file;
    EXPECT_THAT(htmlHelp.take(), IsEmpty()) << file;
  }
}

TEST_F(CWinHelpTest, EveryCallUsesTheProgramsOwnFileWhereNoneIsSet) {
  const std::wstring base = programBase();
  const EmptyFile compiled(base + L".chm");
  help->ShowContents();
  help->ShowIndex();
  help->ShowFind();
  help->ShowTopicID(1);
  help->ShowKeyword(Bstr(L"key").get());
  show(L"");
  help->Hide();
  const auto calls = htmlHelp.take();
  EXPECT_EQ(calls.size(), 7U);
  for (const HelpCall& call : calls) {
    EXPECT_EQ(call.file, std::string(base.begin(), base.end()) + ".chm");
  }
}

TEST_F(CWinHelpTest, ShowsATopicOfAnotherFile) {
  open(L"C:\\Guide.chm");
  EXPECT_EQ(help->ShowHelpFileTopic(Bstr(L"D:\\Other.hlp").get(), 5), S_OK);
  EXPECT_THAT(winHelp.take(), ElementsAre(HelpCall{ownerWindow(), "D:\\Other.hlp", 1, 5, ""}));
  EXPECT_THAT(htmlHelp.take(), IsEmpty());
  EXPECT_EQ(helpFile(), L"C:\\Guide.chm");
}

TEST_F(CWinHelpTest, ABlankOtherFileIsPassedAsItIs) {
  open(L"C:\\Guide.chm");
  EXPECT_EQ(help->ShowHelpFileTopic(Bstr(L"  ").get(), 5), S_OK);
  EXPECT_EQ(Late(help).call(L"ShowHelpFileTopic", Variant(L"")).code, S_OK);  // Topic 0.
  EXPECT_THAT(htmlHelp.take(),
              ElementsAre(HelpCall{ownerWindow(), "  ", 15, 5, ""}, HelpCall{ownerWindow(), "", 15, 0, ""}));
}

// ---- finding the topic

TEST_F(CWinHelpTest, ShowsTheNamedTopic) {
  open(L"C:\\Guide.chm");
  setTopicId(L"Intro", 7);
  setTopicId(L"Printing", 42);
  setFormTopic(L"Main", L"Print", L"Printing");
  show(L"INTRO", L"Main", L"Print");
  EXPECT_EQ(shownTopic(), 7);
}

TEST_F(CWinHelpTest, ShowsTheTopicOfTheFormAndContext) {
  open(L"C:\\Guide.chm");
  setTopicId(L"Printing", 42);
  setFormTopic(L"Main", L"Print", L"Printing");
  show(L"Unknown", L"Main", L"Print");
  EXPECT_EQ(shownTopic(), 42);
  show(L"", L"main", L" print ");
  EXPECT_EQ(shownTopic(), 42);
  show(L"Unknown", L"Main", L"");
  EXPECT_EQ(shownTopic(), 0);  // The form as a whole is another entry.
}

TEST_F(CWinHelpTest, ContextIsIgnoredForABlankForm) {
  open(L"C:\\Guide.chm");
  setTopicId(L"Printing", 42);
  setTopicId(L"Nowhere", 43);
  setTopicId(L"Blanks", 44);
  setFormTopic(L"", L"Print", L"Printing");
  setFormTopic(L"", L"", L"Nowhere");
  setFormTopic(L"  ", L"", L"Blanks");
  show(L"Unknown", L"", L"Print");
  EXPECT_EQ(shownTopic(), 43);
  show(L"Unknown", L"  ", L"Print");
  EXPECT_EQ(shownTopic(), 44);
}

TEST_F(CWinHelpTest, FallsBackToTheDefaultTopic) {
  open(L"C:\\Guide.chm");
  setTopicId(L"Start", 3);
  setFormTopic(L"Main", L"", L"Gone");
  setFormTopic(L"Blank", L"", L"  ");
  setTopicId(L"  ", 99);
  help->put_DefaultTopic(Bstr(L"START").get());
  show(L"Unknown");
  EXPECT_EQ(shownTopic(), 3);
  show(L"Unknown", L"Main");
  EXPECT_EQ(shownTopic(), 3);
  show(L"Unknown", L"Blank");  // A blank topic name of a form is none.
  EXPECT_EQ(shownTopic(), 3);
  help->put_DefaultTopic(Bstr(L"Unknown").get());
  show(L"Unknown", L"Main");
  EXPECT_EQ(shownTopic(), 0);
}

TEST_F(CWinHelpTest, ANumberOfZeroCountsAsUnknown) {
  open(L"C:\\Guide.chm");
  setTopicId(L"Zero", 0);
  setTopicId(L"Start", 3);
  help->put_DefaultTopic(Bstr(L"Start").get());
  show(L"Zero");
  EXPECT_EQ(shownTopic(), 3);
}

// ---- the other interface

TEST_F(CWinHelpTest, IsAHelpProvider) {
  const auto provider = help.query<IHelpProvider>();
  ASSERT_TRUE(provider);
  EXPECT_EQ(provider.query<IUnknown>().get(), help.query<IUnknown>().get());
  EXPECT_EQ(provider.query<_CWinHelp>().get(), help.get());
  EXPECT_EQ(provider.query<IDispatch>().get(), help.query<IDispatch>().get());

  open(L"C:\\Guide.chm");
  setTopicId(L"Printing", 42);
  setFormTopic(L"Main", L"Print", L"Printing");
  EXPECT_EQ(provider->ShowHelp(Bstr(L"?").get(), Bstr(L"Main").get(), Bstr(L"Print").get()), S_OK);
  EXPECT_EQ(provider->ShowContents(), S_OK);
  EXPECT_EQ(provider->ShowIndex(), S_OK);
  EXPECT_EQ(provider->ShowFind(), S_OK);
  EXPECT_EQ(provider->ShowTopicID(9), S_OK);
  EXPECT_EQ(provider->ShowKeyword(Bstr(L"key").get()), S_OK);
  std::vector<UINT> commands;
  for (const HelpCall& call : htmlHelp.take()) {
    commands.push_back(call.command);
  }
  EXPECT_THAT(commands, ElementsAre(15, 1, 2, 3, 15, 13));
}

TEST_F(CWinHelpTest, EachInterfaceAnswersWithItsOwnMembers) {
  const auto provider = help.query<IHelpProvider>();
  open(L"C:\\Guide.chm");
  const auto idOf = [](IDispatch* object, const wchar_t* name) {
    auto* writableName = const_cast<wchar_t*>(name);
    DISPID id = DISPID_UNKNOWN;
    object->GetIDsOfNames(IID_NULL, &writableName, 1, LOCALE_USER_DEFAULT, &id);
    return id;
  };
  EXPECT_EQ(idOf(provider.get(), L"ShowHelp"), 1);
  EXPECT_EQ(idOf(help.get(), L"ShowHelp"), DISPID_UNKNOWN);
  EXPECT_EQ(idOf(provider.get(), L"ShowTopic"), DISPID_UNKNOWN);
  EXPECT_EQ(idOf(provider.get(), L"ShowContents"), 2);
  EXPECT_EQ(idOf(help.get(), L"ShowContents"), 12);

  EXPECT_EQ(Late(provider).call(L"ShowHelp", Variant(L"?"), Variant(L"Main"), Variant(L"Print")).code, S_OK);
  EXPECT_EQ(Late(provider).call(L"ShowIndex").code, S_OK);
  const auto calls = htmlHelp.take();
  ASSERT_EQ(calls.size(), 2U);
  EXPECT_EQ(calls[0].command, 15U);
  EXPECT_EQ(calls[1].command, 2U);

  const auto errors = help.query<ISupportErrorInfo>();
  EXPECT_EQ(errors->InterfaceSupportsErrorInfo(__uuidof(IHelpProvider)), S_OK);
  EXPECT_EQ(errors->InterfaceSupportsErrorInfo(__uuidof(_CWinHelp)), S_OK);
  EXPECT_EQ(errors->InterfaceSupportsErrorInfo(__uuidof(_CWizard)), S_FALSE);
  ComPtr<ITypeInfo> info;
  ASSERT_EQ(provider->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.out()), S_OK);
  EXPECT_EQ(automation::attributesOf(*info)->guid, __uuidof(IHelpProvider));
}

// ---- by name

TEST_F(CWinHelpTest, WorksByName) {
  const Late late(help);
  EXPECT_EQ(late.call(L"Create", Variant(L"C:\\Guide.chm"), Variant(ownerNumber)).code, S_OK);
  EXPECT_EQ(late.put(L"TopicID", Variant(L"Intro"), Variant(7L)).code, S_OK);
  EXPECT_EQ(late.get(L"TopicID", Variant(L"intro")).get().lVal, 7);
  EXPECT_EQ(late.put(L"FormTopicName", Variant(L"Main"), Variant(L"Print"), Variant(L"Intro")).code, S_OK);
  EXPECT_EQ(textIn(late.get(L"FormTopicName", Variant(L"main"), Variant(L"print"))), L"Intro");
  EXPECT_EQ(late.put(L"DefaultTopic", Variant(L"Intro")).code, S_OK);
  EXPECT_EQ(textIn(late.get(L"DefaultTopic")), L"Intro");
  EXPECT_EQ(late.call(L"ShowTopic", Variant(L"none")).code, S_OK);  // Form and context are optional.
  EXPECT_EQ(shownTopic(), 7);
  EXPECT_EQ(late.put(L"hwnd", Variant(5L)).code, S_OK);
  EXPECT_EQ(late.get(L"hwnd").get().lVal, 5);
  EXPECT_EQ(late.put(L"HelpFile", Variant(L"D:\\Other.chm")).code, S_OK);
  EXPECT_EQ(textIn(late.get(L"HelpFile")), L"D:\\Other.chm");
  for (const wchar_t* member : {L"ShowContents", L"ShowIndex", L"ShowFind", L"Hide"}) {
    EXPECT_EQ(late.call(member).code, S_OK);
    EXPECT_EQ(htmlHelp.take().size(), 1U) << member;
  }
  EXPECT_EQ(late.call(L"ShowTopicID", Variant(7L)).code, S_OK);
  EXPECT_EQ(late.call(L"ShowKeyword", Variant(L"key")).code, S_OK);
  EXPECT_EQ(late.call(L"ShowHelpFileTopic", Variant(L"D:\\More.chm"), Variant(1L)).code, S_OK);
  EXPECT_EQ(htmlHelp.take().size(), 3U);
  EXPECT_EQ(late.call(L"LocateHelp").code, S_OK);
  EXPECT_EQ(winHelp.take().size(), 1U);
  EXPECT_EQ(late.call(L"ClearTopics").code, S_OK);
  EXPECT_EQ(late.call(L"ClearFormTopicNames").code, S_OK);
  EXPECT_EQ(late.get(L"TopicID", Variant(L"intro")).get().lVal, 0);
}

// ---- its end

TEST_F(CWinHelpTest, HidesTheViewerAtItsEnd) {
  open(L"C:\\Guide.chm");
  help.reset();
  EXPECT_THAT(htmlHelp.take(), ElementsAre(HelpCall{nullptr, "C:\\Guide.chm", 18, 0, ""}));
  help = create<CWinHelp, _CWinHelp>();
  open(L"C:\\Guide.hlp");
  help.reset();
  EXPECT_THAT(winHelp.take(), ElementsAre(HelpCall{ownerWindow(), "C:\\Guide.hlp", 2, 0, ""}));
}

TEST_F(CWinHelpTest, LeavesNothingBehind) {
  const Bstr file(L"C:\\Guide.chm");
  const Bstr name(L"Printing");
  expectNoLeak(1000, [&] {
    const auto another = create<CWinHelp, _CWinHelp>();
    another->Create(file.get(), 0);
    another->put_TopicID(name.get(), 42);
    another->put_FormTopicName(name.get(), name.get(), name.get());
    another->ShowTopic(nullptr, name.get(), name.get());
    another->ShowFind();
    another->ShowKeyword(name.get());
    another->LocateHelp();
    Bstr text;
    another->get_HelpFile(text.out());
    another->get_FormTopicName(name.get(), name.get(), text.out());
    another.query<IHelpProvider>()->ShowIndex();
    (void)htmlHelp.take();
    (void)winHelp.take();
  });
}

// ---- a machine without HTML Help

int librariesAskedFor = 0;

HMODULE WINAPI noLibrary(const wchar_t* name, HANDLE, DWORD) {
  EXPECT_EQ(std::wstring(name), L"hhctrl.ocx");
  ++librariesAskedFor;
  SetLastError(ERROR_MOD_NOT_FOUND);
  return nullptr;
}

TEST(CWinHelpWithoutHtmlHelp, LosesOnlyTheHelp) {
  // A second copy of the component, because the first one keeps the viewer once it is loaded.
  const std::wstring copy = programBase() + L"-copy.dll";
  std::wstring original(MAX_PATH, L'\0');
  original.resize(GetModuleFileNameW(component(), original.data(), MAX_PATH));
  ASSERT_NE(CopyFileW(original.c_str(), copy.c_str(), FALSE), FALSE);
  const HMODULE module = LoadLibraryW(copy.c_str());
  ASSERT_NE(module, nullptr);
  {
    HtmlHelpViewer htmlHelp;
    librariesAskedFor = 0;
    const ImportHook hook(module, "LoadLibraryExW", &noLibrary);
    using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    const auto getClassObject = entryPoint<GetClassObject>(module, "DllGetClassObject");
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(getClassObject(__uuidof(CWinHelp), IID_IClassFactory, factory.outVoid()), S_OK);
    ComPtr<_CWinHelp> help;
    ASSERT_EQ(factory->CreateInstance(nullptr, __uuidof(_CWinHelp), help.outVoid()), S_OK);
    help->Create(Bstr(L"C:\\Guide.chm").get(), 0);
    EXPECT_EQ(librariesAskedFor, 0) << "not before it is needed";
    EXPECT_EQ(help->ShowContents(), S_OK);
    EXPECT_EQ(help->ShowFind(), S_OK);
    EXPECT_EQ(help->Hide(), S_OK);
    EXPECT_EQ(librariesAskedFor, 1);
    EXPECT_THAT(htmlHelp.take(), IsEmpty());
    Bstr file;
    EXPECT_EQ(help->get_HelpFile(file.out()), S_OK);
    EXPECT_EQ(file.view(), L"C:\\Guide.chm");
  }
  FreeLibrary(module);
  DeleteFileW(copy.c_str());
}

}  // namespace
}  // namespace zeq::test
