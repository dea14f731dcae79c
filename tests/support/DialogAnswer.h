#pragma once
// Answers a dialog box that the test itself waits in: a thread finds the box, notes what it shows and presses
// a button.

#include <windows.h>

#include <string>
#include <thread>
#include <vector>

namespace zeq::test {

/// What a dialog box shows.
struct DialogContent {
  bool appeared = false;
  std::wstring text;         ///< Of the label.
  HICON icon = nullptr;      ///< Of the icon's control.
  std::vector<int> buttons;  ///< Identifiers, in their order.
};

class DialogAnswer {
 public:
  /// Waits from now on for a dialog box of this process with that title, for some seconds at most.
  DialogAnswer(std::wstring title, int button);
  ~DialogAnswer();
  DialogAnswer(const DialogAnswer&) = delete;
  DialogAnswer& operator=(const DialogAnswer&) = delete;

  /// What the box showed, once it has been answered.
  [[nodiscard]] const DialogContent& content();

 private:
  void answer(const std::wstring& title, int button);

  DialogContent content_;
  std::thread thread_;
};

}  // namespace zeq::test
