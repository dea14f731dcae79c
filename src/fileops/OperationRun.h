#pragma once
// Runs one file operation, for real or as a simulation that only tells how it would change the use of drives.

#include <string>
#include <string_view>

#include "fileops/Operation.h"

namespace zeq::fileops {

/// Whom a run asks and tells. The answers may come from client code that changes the operation or the disk.
class RunListener {
 public:
  [[nodiscard]] virtual bool mayOverwrite(std::wstring_view source, std::wstring_view destination) = 0;
  [[nodiscard]] virtual bool mayDelete(std::wstring_view folder) = 0;
  virtual void estimate(std::wstring_view drive, bool fills, double bytes) = 0;

 protected:
  ~RunListener() = default;
};

struct Outcome {
  bool success = false;
  bool cancelled = false;
  std::wstring description;
};

/// True for an operation that a run does anything for: of a known type and, for a create, of a file or a
/// folder.
[[nodiscard]] bool isRunnable(const Operation& operation) noexcept;

/// Runs an operation as one of a type that isRunnable accepted. The paths are those at the start; the
/// policies are read when they are needed. Throws what the platform reports; what is done by then stays done.
[[nodiscard]] Outcome run(const Operation& operation, OperationType type, bool simulates,
                          RunListener& listener);

/// The size of a file in bytes; 0 if there is none or it cannot be read.
[[nodiscard]] double fileSizeOrZero(const std::wstring& path) noexcept;

}  // namespace zeq::fileops
