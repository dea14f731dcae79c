// A wizard that is driven by keystrokes, with help, and with ZEQUtility2 used early-bound. Its pages
// implement IWizardStep. A keymap filter turns the keystrokes into commands, so that the pages know commands
// only and the keys can be changed in one place; a help provider shows help for the page that is open.
//
//   keyboard_wizard           reads the keyboard: N or Right, B or Left, F or Enter, H or F1, Escape
//   keyboard_wizard HNBNNF    takes its keystrokes from the argument, and Escape after them
//
// The help is in keyboard_wizard.chm beside the program; without it only the help is missing. All that the
// program needs of the library is ZEQUtility2.h and the registered DLL.

#include <windows.h>
#include <comutil.h>

#include <array>
#include <cstdio>
#include <cwctype>
#include <string>
#include <utility>

#include "Client.h"
#include "ZEQUtility2.h"

namespace {

using client::check;
using client::ComPtr;
using client::create;
using client::query;

struct Keystroke {
  short code;
  short shift;  ///< The sum of 1 for Shift, 2 for Ctrl and 4 for Alt.
};

/// The keystrokes of the user, or those of a text that stands for them.
class Keyboard {
 public:
  explicit Keyboard(const wchar_t* typed) : typed_(typed) {}

  [[nodiscard]] Keystroke next() {
    if (typed_ == nullptr) {
      return pressed();
    }
    // The key code of a letter is that of its capital.
    return {static_cast<short>(*typed_ != L'\0' ? std::towupper(*typed_++) : VK_ESCAPE), 0};
  }

 private:
  [[nodiscard]] static Keystroke pressed() {
    INPUT_RECORD record{};
    DWORD count = 0;
    while (ReadConsoleInputW(GetStdHandle(STD_INPUT_HANDLE), &record, 1, &count) != FALSE) {
      const KEY_EVENT_RECORD& key = record.Event.KeyEvent;
      if (record.EventType == KEY_EVENT && key.bKeyDown != FALSE) {
        const auto held = [&](DWORD keys) { return (key.dwControlKeyState & keys) != 0; };
        const int shift = (held(SHIFT_PRESSED) ? 1 : 0) +
                          (held(LEFT_CTRL_PRESSED | RIGHT_CTRL_PRESSED) ? 2 : 0) +
                          (held(LEFT_ALT_PRESSED | RIGHT_ALT_PRESSED) ? 4 : 0);
        return {static_cast<short>(key.wVirtualKeyCode), static_cast<short>(shift)};
      }
    }
    return {VK_ESCAPE, 0};  // There is no keyboard.
  }

  const wchar_t* typed_;
};

/// Gives the commands that keystrokes are bound to, which it hears from the keymap filter's one event.
class Commands {
 public:
  explicit Commands(Keyboard& keyboard) : keyboard_(keyboard) {}

  void bind(const wchar_t* command, const wchar_t* description, short code) {
    VARIANT_BOOL added = VARIANT_FALSE;
    check(filter_->AddMapping(_bstr_t(command), _bstr_t(description), code, 0, &added), "binding a key");
  }
  void show() {
    _bstr_t text;
    check(filter_->AsString(_bstr_t(L""), text.GetAddress()), "describing the keys");
    std::printf("%ls\n", static_cast<const wchar_t*>(text));
  }

  /// Waits for the next keystroke that is bound.
  [[nodiscard]] std::wstring next() {
    command_.clear();
    while (command_.empty()) {
      const Keystroke keystroke = keyboard_.next();
      VARIANT_BOOL processed = VARIANT_FALSE;
      VARIANT_BOOL bound = VARIANT_FALSE;
      check(filter_->Process(keystroke.code, keystroke.shift, &processed, &bound), "processing a key");
    }
    return command_;
  }

 private:
  /// KeyboardEvent(keyStroke, processed), the last argument first.
  void hear(const VARIANTARG* arguments) {
    const auto mapping = query<_CKeyMapping>(*arguments[1].ppdispVal, "taking a mapping");
    _bstr_t name;
    check(mapping->get_Name(name.GetAddress()), "reading a command");
    command_ = name;
    *arguments[0].pboolVal = VARIANT_TRUE;
  }

  Keyboard& keyboard_;
  std::wstring command_;
  ComPtr<_CKeymapFilter> filter_ = create<_CKeymapFilter>(__uuidof(CKeymapFilter));
  client::Events<__CKeymapFilter> events_{filter_.Get(),
                                          [this](DISPID, VARIANTARG* arguments) { hear(arguments); }};
};

/// One page. Execute and Free are all that a wizard asks of it.
class Page final : public client::StackObject<IWizardStep> {
 public:
  Page(Commands& commands, std::wstring name, std::wstring text)
      : commands_(commands), name_(std::move(name)), text_(std::move(text)) {}

  [[nodiscard]] const std::wstring& name() const { return name_; }

  STDMETHODIMP Execute(BSTR caption, VARIANT_BOOL permitBack, VARIANT_BOOL permitNext,
                       VARIANT_BOOL permitFinish, BSTR*, IHelpProvider* help,
                       WizardStepOutcome* outcome) override {
    std::printf("\n%ls\n%ls\n", caption, text_.c_str());
    for (*outcome = wzsoError; *outcome == wzsoError;) {
      const std::wstring command = commands_.next();
      if (command == L"Next" && permitNext != VARIANT_FALSE) {
        *outcome = wzsoNext;
      } else if (command == L"Back" && permitBack != VARIANT_FALSE) {
        *outcome = wzsoBack;
      } else if (command == L"Finish" && permitFinish != VARIANT_FALSE) {
        *outcome = wzsoFinish;
      } else if (command == L"Cancel") {
        *outcome = wzsoCancel;
      } else if (command == L"Help") {
        std::printf("  (Help on the page %ls.)\n", name_.c_str());
        check(help->ShowHelp(_bstr_t(L""), _bstr_t(L"Setup"), _bstr_t(name_.c_str())), "showing help");
      }
    }
    return S_OK;
  }
  STDMETHODIMP Free() override {
    std::printf("(%ls is freed.)\n", name_.c_str());
    return S_OK;
  }

 private:
  Commands& commands_;
  std::wstring name_;
  std::wstring text_;
};

ComPtr<_CWizardStepDetails> add(_CWizard* wizard, Page& page) {
  ComPtr<_CWizardStepDetails> details;
  check(wizard->AddStep(&page, _bstr_t(page.name().c_str()), details.GetAddressOf()), "adding a step");
  return details;
}

WizardOutcome run(Commands& commands) {
  std::array pages{Page(commands, L"Welcome", L"This will set up nothing at all."),
                   Page(commands, L"Folder", L"It would go to C:\\Tools."),
                   Page(commands, L"Summary", L"Everything is ready.")};
  const auto help = create<_CWinHelp>(__uuidof(CWinHelp));
  const auto wizard = create<_CWizard>(__uuidof(CWizard));
  check(wizard->put_Caption(_bstr_t(L"Setup")), "naming the wizard");
  long topic = 0;
  for (Page& page : pages) {
    add(wizard.Get(), page);
    const _bstr_t name(page.name().c_str());
    check(help->put_TopicID(name, ++topic), "numbering a topic");
    check(help->put_FormTopicName(_bstr_t(L"Setup"), name, name), "naming a page's topic");
  }
  ComPtr<_CWizardStepDetails> first;
  check(wizard->get_Item(_variant_t(1L), first.GetAddressOf()), "finding the first step");
  check(first->put_PermitBack(VARIANT_FALSE), "forbidding to go back");

  const auto provider = query<IHelpProvider>(help.Get(), "asking for a help provider");
  WizardOutcome outcome = wizoError;
  const _variant_t noFinishStep(DISP_E_PARAMNOTFOUND, VT_ERROR);
  check(wizard->DoWizard(_variant_t(1L), noFinishStep, provider.Get(), &outcome), "running the wizard");
  return outcome;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  check(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), "starting COM");
  auto outcome = wizoError;
  {
    Keyboard keyboard(count > 1 ? arguments[1] : nullptr);
    Commands commands(keyboard);
    commands.bind(L"Next", L"Goes on", 'N');
    commands.bind(L"Next", L"Goes on", VK_RIGHT);
    commands.bind(L"Back", L"Goes back", 'B');
    commands.bind(L"Back", L"Goes back", VK_LEFT);
    commands.bind(L"Finish", L"Finishes", 'F');
    commands.bind(L"Finish", L"Finishes", VK_RETURN);
    commands.bind(L"Help", L"Shows help on the page", 'H');
    commands.bind(L"Help", L"Shows help on the page", VK_F1);
    commands.bind(L"Cancel", L"Leaves without a change", VK_ESCAPE);
    commands.show();
    outcome = run(commands);
  }
  CoUninitialize();
  std::printf("\n%s\n", outcome == wizoFinished    ? "Finished."
                        : outcome == wizoCancelled ? "Cancelled."
                                                   : "The wizard failed.");
  return outcome == wizoError ? 1 : 0;
}
