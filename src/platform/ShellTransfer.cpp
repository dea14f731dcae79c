#include "platform/ShellTransfer.h"

#include <shellapi.h>

#include <optional>
#include <string>

#include "platform/CodePage.h"

namespace zeq::platform {
namespace {

#ifdef _WIN64
static_assert(sizeof(SHFILEOPSTRUCTA) == 56);
#else
static_assert(sizeof(SHFILEOPSTRUCTA) == 30, "packed: no padding after the 2-byte flags");
#endif

/// Ends a text with two NUL characters, as the shell takes it.
std::string doublyTerminated(std::string text) {
  return text.append(2, '\0');
}

/// A path as a list of one file. Nothing for one that would arrive as several, or as the name of others: what
/// the code page cannot hold becomes "?", which is a wildcard to the shell. Nor for one that is longer than
/// the shell takes; Wine's does not look.
std::optional<std::string> fileList(const std::wstring& path) {
  if (path.size() >= MAX_PATH) {
    return std::nullopt;
  }
  std::string narrow = toAnsi(path);
  if (path.find(L'\0') != std::wstring::npos || fromAnsi(narrow) != path) {
    return std::nullopt;
  }
  return doublyTerminated(std::move(narrow));
}

}  // namespace

TransferResult transferFile(const Transfer& transfer) {
  const auto from = fileList(transfer.source);
  const auto to = fileList(transfer.destination);
  if (!from || !to) {
    return TransferResult::failed;
  }
  const std::string title = doublyTerminated(toAnsi(transfer.progressTitle));
  SHFILEOPSTRUCTA operation{};
  operation.hwnd = transfer.owner;
  operation.wFunc = transfer.moves ? FO_MOVE : FO_COPY;
  operation.pFrom = from->c_str();
  operation.pTo = to->c_str();
  operation.fFlags = FOF_FILESONLY;
  operation.lpszProgressTitle = title.c_str();
  const int failure = SHFileOperationA(&operation);
  if (operation.fAnyOperationsAborted != FALSE) {
    return TransferResult::aborted;
  }
  return failure == 0 ? TransferResult::succeeded : TransferResult::failed;
}

}  // namespace zeq::platform
