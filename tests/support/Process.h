#pragma once
// Other programs, run by a test as a user runs them.

#include <windows.h>

#include <string>

namespace zeq::test {

/// A program that runs beside the test. It is ended with the object.
class Program {
 public:
  /// Throws if the program cannot be started.
  explicit Program(std::wstring commandLine, const std::wstring& folder = {});
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  /// For waiting; signalled when the program has ended.
  [[nodiscard]] HANDLE process() const noexcept { return process_; }
  /// Ends the program where it stands. It is gone on return.
  void kill();
  /// Waits for its end and returns the exit code. Throws if that takes longer than a minute.
  DWORD exitCode();

 private:
  HANDLE process_;
};

/// Runs a command line to its end and returns the exit code. A program that takes longer than a minute is
/// ended and the test stopped with an exception; so it is if the program cannot be started.
DWORD runProgram(std::wstring commandLine, const std::wstring& folder = {});

/// The command line that runs one disabled test of this program: the part of a test that needs a process of
/// its own.
[[nodiscard]] std::wstring partOfATest(const std::wstring& name);

/// A path in double quotes.
[[nodiscard]] inline std::wstring quoted(const std::wstring& path) {
  return L"\"" + path + L"\"";
}

/// The folder of the system programs of a bitness (32 or 64), as this process reaches it. Empty if there is
/// none.
[[nodiscard]] std::wstring systemFolder(int bits);

/// The bitness of this process.
inline constexpr int ownBits = sizeof(void*) == 8 ? 64 : 32;

}  // namespace zeq::test
