#include "help/CWinHelp.h"

#include <htmlhelp.h>

#include <cstdint>

#include "platform/CodePage.h"
#include "platform/HelpViewers.h"
#include "platform/Paths.h"
#include "platform/WindowHandle.h"
#include "utility/MZEQUtilityStrings.h"

namespace zeq::help {
namespace {

using automation::foldCase;
using automation::quietly;
using automation::text;
using utility::trimmed;

// The records of HTML Help and WinHelp that the calls below pass, in narrow text. Their size members are
// those of 32-bit Windows everywhere.

struct FullTextQuery {  // HH_FTS_QUERY
  int size = 32;
  BOOL unicode = FALSE;
  const char* query = nullptr;
  LONG proximity = HH_FTS_DEFAULT_PROXIMITY;
  BOOL stemmed = FALSE;
  BOOL titleOnly = TRUE;
  BOOL execute = FALSE;
  const char* window = nullptr;
};

struct KeywordLink {  // HH_AKLINK
  int size = 28;      // Four less than the record has: viewers have always been given this.
  BOOL reserved = FALSE;
  const char* keywords = nullptr;
  const char* url = nullptr;
  const char* messageText = "No such keyword found";
  const char* messageTitle = "Keyword Not Found";
  const char* window = nullptr;
  BOOL indexOnFail = FALSE;
};

struct MainWindowPlace {  // HELPWININFO
  int size = sizeof(MainWindowPlace);
  int x = 768;  // Of 1024 across and down the screen.
  int y = 0;
  int width = 256;
  int height = 1024;
  int show = SW_SHOW;
  char name[8] = "Tolvec";
};

#ifndef _WIN64
static_assert(sizeof(FullTextQuery) == 32 && sizeof(KeywordLink) == 32);
#endif
static_assert(sizeof(MainWindowPlace) == 32);

template <class Record>
std::uintptr_t addressOf(const Record& record) noexcept {
  return reinterpret_cast<std::uintptr_t>(&record);
}

// The two pages of WinHelp's finder that HELP_TAB opens.
constexpr auto indexPage = static_cast<std::uintptr_t>(-2);
constexpr auto searchPage = static_cast<std::uintptr_t>(-1);

std::wstring formKey(std::wstring_view form, std::wstring_view context) {
  std::wstring key(form);
  if (const auto name = trimmed(context); !name.empty()) {
    key.append(L"::").append(name);
  }
  return key;
}

}  // namespace

/// The viewer for one help file; no viewer if its extension is not that of a help file.
struct CWinHelp::Viewer {
  enum class Kind { none, winHelp, htmlHelp } kind;
  HWND owner;
  std::string file;

  void show(UINT winHelpCommand, std::uintptr_t winHelpData, UINT htmlHelpCommand,
            std::uintptr_t htmlHelpData) const noexcept {
    if (kind == Kind::winHelp) {
      platform::winHelp(owner, file, winHelpCommand, winHelpData);
    } else if (kind == Kind::htmlHelp) {
      platform::htmlHelp(owner, file, htmlHelpCommand, htmlHelpData);
    }
  }
  void showTopic(long id) const noexcept {
    const auto number = static_cast<DWORD>(id);
    show(HELP_CONTEXT, number, HH_HELP_CONTEXT, number);
  }
};

CWinHelp::~CWinHelp() {
  Hide();
}

std::wstring CWinHelp::helpFile() const {
  return trimmed(helpFile_).empty() ? platform::programHelpFile() : helpFile_;
}

CWinHelp::Viewer CWinHelp::viewerFor(std::wstring_view file) const {
  const std::wstring extension =
      foldCase(platform::extensionName(trimmed(file).empty() ? helpFile() : std::wstring(file)));
  const auto kind = extension == L"HLP"   ? Viewer::Kind::winHelp
                    : extension == L"CHM" ? Viewer::Kind::htmlHelp
                                          : Viewer::Kind::none;
  return {kind, owner(), platform::toAnsi(file)};
}

CWinHelp::Viewer CWinHelp::viewer() const {
  return viewerFor(helpFile());
}

HWND CWinHelp::owner() const noexcept {
  return platform::windowWithHandle(window_);
}

STDMETHODIMP CWinHelp::Create(BSTR HelpFileA, long HWndAppA) noexcept {
  return quietly([&] {
    helpFile_ = text(HelpFileA);
    window_ = HWndAppA;
  });
}

STDMETHODIMP CWinHelp::ClearTopics() noexcept {
  return quietly([&] { topicIds_.clear(); });
}

long CWinHelp::topicId(std::wstring_view topic) const {
  const auto found = topicIds_.find(foldCase(topic));
  return found != topicIds_.end() ? found->second : 0;
}

STDMETHODIMP CWinHelp::get_TopicID(BSTR TopicNameA, long* result) noexcept {
  return quietly(result, [&] { return topicId(text(TopicNameA)); });
}

STDMETHODIMP CWinHelp::put_TopicID(BSTR TopicNameA, long value) noexcept {
  return quietly([&] { topicIds_[foldCase(text(TopicNameA))] = value; });
}

STDMETHODIMP CWinHelp::ClearFormTopicNames() noexcept {
  return quietly([&] { formTopics_.clear(); });
}

STDMETHODIMP CWinHelp::get_FormTopicName(BSTR FormNameA, BSTR ContextNameA, BSTR* result) noexcept {
  return quietly(result, [&]() -> std::wstring_view {
    const auto found = formTopics_.find(foldCase(formKey(text(FormNameA), text(ContextNameA))));
    return found != formTopics_.end() ? std::wstring_view(found->second) : std::wstring_view();
  });
}

STDMETHODIMP CWinHelp::put_FormTopicName(BSTR FormNameA, BSTR ContextNameA, BSTR value) noexcept {
  return quietly([&] { formTopics_[foldCase(formKey(text(FormNameA), text(ContextNameA)))] = text(value); });
}

STDMETHODIMP CWinHelp::get_HelpFile(BSTR* result) noexcept {
  return quietly(result, [&] { return helpFile(); });
}

STDMETHODIMP CWinHelp::put_HelpFile(BSTR value) noexcept {
  return quietly([&] { helpFile_ = text(value); });
}

STDMETHODIMP CWinHelp::get_hwnd(long* result) noexcept {
  return quietly(result, [&] { return window_; });
}

STDMETHODIMP CWinHelp::put_hwnd(long value) noexcept {
  return quietly([&] { window_ = value; });
}

STDMETHODIMP CWinHelp::get_DefaultTopic(BSTR* result) noexcept {
  return quietly(result, [&] { return std::wstring_view(defaultTopic_); });
}

STDMETHODIMP CWinHelp::put_DefaultTopic(BSTR value) noexcept {
  return quietly([&] { defaultTopic_ = text(value); });
}

long CWinHelp::resolve(std::wstring_view topic, std::wstring_view form, std::wstring_view context) const {
  long id = topicId(topic);
  if (id == 0) {
    // A blank form stands for itself: the context is ignored.
    const std::wstring key = trimmed(form).empty() ? std::wstring(form) : formKey(form, context);
    const auto found = formTopics_.find(foldCase(key));
    if (found != formTopics_.end() && !trimmed(found->second).empty()) {
      id = topicId(found->second);
    }
  }
  return id != 0 ? id : topicId(defaultTopic_);
}

STDMETHODIMP CWinHelp::ShowTopic(BSTR TopicNameA, BSTR FormNameA, BSTR ContextNameA) noexcept {
  return quietly([&] { viewer().showTopic(resolve(text(TopicNameA), text(FormNameA), text(ContextNameA))); });
}

STDMETHODIMP CWinHelp::ShowHelp(BSTR TopicNameA, BSTR FormNameA, BSTR ContextNameA) noexcept {
  return ShowTopic(TopicNameA, FormNameA, ContextNameA);
}

STDMETHODIMP CWinHelp::ShowTopicID(long TopicIDA) noexcept {
  return quietly([&] { viewer().showTopic(TopicIDA); });
}

STDMETHODIMP CWinHelp::ShowHelpFileTopic(BSTR HelpFileA, long TopicIDA) noexcept {
  return quietly([&] { viewerFor(text(HelpFileA)).showTopic(TopicIDA); });
}

STDMETHODIMP CWinHelp::ShowContents() noexcept {
  return quietly([&] { viewer().show(HELP_FINDER, 0, HH_DISPLAY_TOC, 0); });
}

STDMETHODIMP CWinHelp::ShowIndex() noexcept {
  return quietly([&] { viewer().show(HELP_TAB, indexPage, HH_DISPLAY_INDEX, 0); });
}

STDMETHODIMP CWinHelp::ShowFind() noexcept {
  return quietly([&] {
    const FullTextQuery query;
    viewer().show(HELP_TAB, searchPage, HH_DISPLAY_SEARCH, addressOf(query));
  });
}

STDMETHODIMP CWinHelp::ShowKeyword(BSTR KeyWordA) noexcept {
  return quietly([&] {
    const std::string keyword = platform::toAnsi(text(KeyWordA));
    KeywordLink link;
    link.keywords = keyword.c_str();
    viewer().show(HELP_KEY, addressOf(*keyword.c_str()), HH_KEYWORD_LOOKUP, addressOf(link));
  });
}

STDMETHODIMP CWinHelp::Hide() noexcept {
  return quietly([&] {
    Viewer all = viewer();
    if (all.kind == Viewer::Kind::htmlHelp) {
      all.owner = nullptr;  // HH_CLOSE_ALL closes the windows of every owner.
    }
    all.show(HELP_QUIT, 0, HH_CLOSE_ALL, 0);
  });
}

STDMETHODIMP CWinHelp::LocateHelp() noexcept {
  return quietly([&] {
    const MainWindowPlace place;
    platform::winHelp(owner(), platform::toAnsi(helpFile()), HELP_SETWINPOS, addressOf(place));
  });
}

}  // namespace zeq::help
