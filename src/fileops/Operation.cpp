#include "fileops/Operation.h"

#include <algorithm>

namespace zeq::fileops {
namespace {

constexpr std::wstring_view lineEnd = L"\r\n";

std::wstring_view verb(OperationType type) noexcept {
  switch (type) {
    case OperationType::move:
      return L"Moving ";
    case OperationType::copy:
      return L"Copying ";
    case OperationType::remove:
      return L"Deleting ";
    case OperationType::create:
      return L"Creating ";
    default:
      return {};
  }
}

std::wstring_view noun(PathType type) noexcept {
  switch (type) {
    case PathType::file:
      return L"file ";
    case PathType::folder:
      return L"folder ";
    default:
      return {};
  }
}

std::wstring_view overwriteTag(Policy policy) noexcept {
  switch (policy) {
    case Policy::refuse:
      return L"[Don't overwrite] ";
    case Policy::goAhead:
      return L"[Overwrite] ";
    case Policy::ask:
      return L"[Ask before overwriting] ";
    default:
      return {};
  }
}

std::wstring_view deleteTag(Policy policy) noexcept {
  switch (policy) {
    case Policy::refuse:
      return L"[Don't delete non-empty folder] ";
    case Policy::goAhead:
      return L"[Delete non-empty folder] ";
    case Policy::ask:
      return L"[Ask before deleting non-empty folder] ";
    default:
      return {};
  }
}

std::wstring pathsText(const Operation& operation, std::wstring_view lineBreak, std::wstring_view indent) {
  std::wstring text;
  switch (operation.type) {
    case OperationType::move:
    case OperationType::copy:
      text.append(indent).append(operation.paths[0]).append(lineBreak).append(L" to ").append(lineBreak);
      return text.append(indent).append(operation.paths[1]).append(L" ");
    case OperationType::remove:
    case OperationType::create:
      return text.append(indent).append(operation.paths[0]).append(L" ");
    default:
      return text;
  }
}

std::wstring policyText(const Operation& operation, std::wstring_view lineBreak) {
  switch (operation.type) {
    case OperationType::move:
    case OperationType::copy:
    case OperationType::create:
      return std::wstring(lineBreak).append(overwriteTag(operation.overwrite));
    case OperationType::remove:
      if (operation.pathType == PathType::file) {
        return {};
      }
      return std::wstring(lineBreak).append(deleteTag(operation.deleteNonEmptyFolder));
    default:
      return {};
  }
}

}  // namespace

std::wstring_view stateText(ExecutionState state, bool verbose) noexcept {
  switch (state) {
    case ExecutionState::notStarted:
      return verbose ? L"Not started" : L"exstNotStarted";
    case ExecutionState::executing:
      return verbose ? L"In progress" : L"exstExecuting";
    // Clients know the verbose texts of the two ends by their spelling.
    case ExecutionState::finishedOk:
      return verbose ? L"Completed sucessfully" : L"exstFinished_OK";
    case ExecutionState::finishedCancelled:
      return verbose ? L"Cancelled" : L"exstFinished_Cancelled";
    case ExecutionState::finishedError:
      return verbose ? L"Completed unsucessfully" : L"exstFinished_Error";
    default:
      return verbose ? L"### State Unknown ###" : L"######";
  }
}

std::wstring describe(const Operation& operation, bool verbose, std::wstring_view lineBreak,
                      std::wstring_view indent) {
  if (operation.type == OperationType::none) {
    return L"### Operation Uninitialised ###";
  }
  std::wstring text(verb(operation.type));
  text.append(noun(operation.pathType)).append(lineBreak).append(pathsText(operation, lineBreak, indent));
  if (verbose) {
    text.append(policyText(operation, lineBreak));
    text.append(lineBreak).append(L"CurrentState: ").append(stateText(operation.state, true));
  }
  return text;
}

std::wstring describeBatch(std::size_t tasks, ExecutionState state, bool verbose) {
  std::wstring text = L"Batch (" + std::to_wstring(tasks) + L" tasks)  State: ";
  return text.append(stateText(state, verbose)).append(lineEnd);
}

double copiedPercent(double sourceSize, double destinationSize) noexcept {
  if (sourceSize == 0) {
    return destinationSize == 0 ? 0 : 100;
  }
  return std::clamp(destinationSize / sourceSize * 100, 0.0, 100.0);
}

}  // namespace zeq::fileops
