#pragma once
// What the tests of file operations share: a folder to work in, a record of the events that arrive, and
// somebody who answers the shell's questions.

#include <windows.h>

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "support/Component.h"
#include "support/TempFolder.h"

namespace zeq::test {

/// A folder for operations to work in.
class Sandbox : public TempFolder {
 public:
  using TempFolder::TempFolder;

  [[nodiscard]] const std::wstring& root() const noexcept { return TempFolder::path(); }
  /// The path of something in the folder.
  [[nodiscard]] std::wstring path(std::wstring_view name) const { return *this / name; }
  /// Makes a file of that many bytes, and its folders.
  std::wstring file(std::wstring_view name, std::size_t size) const;
};

/// A folder on another drive than the temporary files: on a drive that there is, or under a letter made for
/// it.
[[nodiscard]] std::wstring folderOnOtherDrive();

void setReadOnly(const std::wstring& path, bool readOnly = true);

/// Answers the shell's confirmation dialogs with one button while it lives.
class ShellAnswer {
 public:
  explicit ShellAnswer(int button);
  ~ShellAnswer();
  ShellAnswer(const ShellAnswer&) = delete;
  ShellAnswer& operator=(const ShellAnswer&) = delete;

  /// How many dialogs were answered.
  [[nodiscard]] int given() const noexcept { return given_; }
  /// The window that owned the last dialog.
  [[nodiscard]] HWND owner() const noexcept { return owner_; }

 private:
  std::atomic<bool> stops_ = false;
  std::atomic<int> given_ = 0;
  std::atomic<HWND> owner_ = nullptr;
  std::thread thread_;
};

/// Writes down every event of a source as one line, such as "Executed(True, False, Succeeded)". Objects are
/// shown as "op". A reaction runs after its event is written down.
class Recorder {
 public:
  using Arguments = std::vector<VARIANT*>;
  using Reaction = std::function<void(const Arguments&)>;

  /// The names of the events, by their identifiers from 1.
  static std::vector<std::wstring> operationEvents();
  static std::vector<std::wstring> batchEvents();

  Recorder(IUnknown* source, REFIID events, std::vector<std::wstring> names);
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  [[nodiscard]] const std::vector<std::wstring>& lines() const noexcept { return lines_; }
  void on(std::wstring_view event, Reaction reaction) {
    reactions_[std::wstring(event)] = std::move(reaction);
  }
  void clear() { lines_.clear(); }
  void disconnect() { sink_.reset(); }

 private:
  std::vector<std::wstring> names_;
  std::vector<std::wstring> lines_;
  std::map<std::wstring, Reaction> reactions_;
  std::unique_ptr<Sink> sink_;
};

/// A reaction that answers the question of an event with True: its last argument.
void sayYes(const Recorder::Arguments& arguments);

}  // namespace zeq::test
