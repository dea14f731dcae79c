#pragma once
// Other programs, run by a test as a user runs them.

#include <windows.h>

#include <string>

namespace zeq::test {

/// Runs a command line to its end and returns the exit code. A program that takes longer than a minute is
/// ended and the test stopped with an exception; so it is if the program cannot be started.
DWORD runProgram(std::wstring commandLine, const std::wstring& folder = {});

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
