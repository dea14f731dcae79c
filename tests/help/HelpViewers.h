#pragma once
// Both help viewers as the tests see them: every call that arrives there, with copies of what it points at.

#include <windows.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/ImportHook.h"

namespace zeq::test {

struct HelpCall {
  HWND owner = nullptr;
  std::string file;
  UINT command = 0;
  LONG_PTR data = 0;
  std::string text;  ///< WinHelp: the data behind the file name, as bytes.

  bool operator==(const HelpCall&) const = default;
};

/// A window of the class that WinHelpA sends its commands to.
class WinHelpWindow {
 public:
  WinHelpWindow();
  ~WinHelpWindow();
  WinHelpWindow(const WinHelpWindow&) = delete;
  WinHelpWindow& operator=(const WinHelpWindow&) = delete;

  /// The calls since the last time; the data of a call is the 32-bit number that arrives.
  [[nodiscard]] std::vector<HelpCall> take() { return std::exchange(calls_, {}); }

 private:
  static LRESULT CALLBACK receive(HWND window, UINT message, WPARAM sender, LPARAM content);

  HWND window_ = nullptr;
  std::vector<HelpCall> calls_;
};

/// The arguments of WinHelpA itself, for the commands that do not reach the window here.
class WinHelpArguments {
 public:
  WinHelpArguments();
  ~WinHelpArguments();

  [[nodiscard]] std::vector<HelpCall> take() { return std::exchange(calls_, {}); }

 private:
  static BOOL WINAPI winHelp(HWND owner, const char* file, UINT command, ULONG_PTR data);

  std::vector<HelpCall> calls_;
  std::optional<ImportHook> hook_;
};

/// A record of HTML Help, read while the viewer has it.
struct QueryRecord {
  int size;
  BOOL unicode;
  const char* query;
  LONG proximity;
  BOOL stemmed;
  BOOL titleOnly;
  BOOL execute;
  const char* window;
};
struct LinkRecord {
  int size;
  BOOL reserved;
  const char* keywords;
  const char* url;
  const char* messageText;
  const char* messageTitle;
  const char* window;
  BOOL indexOnFail;
};

/// The calls that arrive at HTML Help.
class HtmlHelpViewer {
 public:
  HtmlHelpViewer();
  ~HtmlHelpViewer();
  HtmlHelpViewer(const HtmlHelpViewer&) = delete;
  HtmlHelpViewer& operator=(const HtmlHelpViewer&) = delete;

  [[nodiscard]] std::vector<HelpCall> take() { return std::exchange(calls_, {}); }

  // The last records, with the texts that they pointed at.
  std::optional<QueryRecord> query;
  std::optional<LinkRecord> link;
  std::string keywords, messageText, messageTitle;

 private:
  static HWND htmlHelp(HWND owner, const char* file, UINT command, DWORD_PTR data);

  std::vector<HelpCall> calls_;
};

}  // namespace zeq::test
