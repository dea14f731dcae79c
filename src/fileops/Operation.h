#pragma once
// What one file operation is, apart from running it: its record, its texts and its progress figure.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zeq::fileops {

// The numbers are those of the type library's enumerations. Clients may store any other number as well.

enum class ExecutionState : std::int32_t {
  notStarted = 1,
  executing = 2,
  finishedOk = 3,
  finishedCancelled = 4,
  finishedError = 5,
};

enum class OperationType : std::int32_t { none = 0, move = 1, copy = 2, remove = 3, create = 4 };

/// What to do when a destination exists, or when a folder to delete is not empty.
enum class Policy : std::int32_t { refuse = 1, goAhead = 2, ask = 3 };

/// What the paths name.
enum class PathType : std::int32_t { file = 1, folder = 2, any = 3 };

/// What a client sets and reads of an operation.
struct Operation {
  OperationType type = OperationType::none;
  Policy overwrite = Policy::refuse;
  bool overridesReadOnly = false;
  Policy deleteNonEmptyFolder = Policy::refuse;
  PathType pathType = PathType::any;
  std::array<std::wstring, 2> paths;  ///< The source, or the only path; the destination.
  ExecutionState state = ExecutionState::notStarted;
  std::int32_t statusWindow = 0;
};

/// The text of a state: words if verbose, else the enumeration member's name.
[[nodiscard]] std::wstring_view stateText(ExecutionState state, bool verbose) noexcept;

/// The description of an operation, with its policy and state if verbose.
[[nodiscard]] std::wstring describe(const Operation& operation, bool verbose, std::wstring_view lineBreak,
                                    std::wstring_view indent);

/// The first line of a batch's description, with its line break.
[[nodiscard]] std::wstring describeBatch(std::size_t tasks, ExecutionState state, bool verbose);

/// How much of a copy is done, in percent, judged by the sizes of both files.
[[nodiscard]] double copiedPercent(double sourceSize, double destinationSize) noexcept;

}  // namespace zeq::fileops
