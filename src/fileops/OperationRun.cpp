#include "fileops/OperationRun.h"

#include <exception>
#include <optional>
#include <utility>

#include "automation/Text.h"
#include "filesystem/CZEQFileSystemObject.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "platform/ShellTransfer.h"
#include "platform/WindowHandle.h"
#include "utility/MZEQUtilityStrings.h"

namespace zeq::fileops {
namespace {

using Looked = std::optional<platform::FileInfo>;

bool isFolder(const Looked& looked) noexcept {
  return looked && (looked->attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool isFile(const Looked& looked) noexcept {
  return looked && !isFolder(looked);
}

Outcome succeeded(const wchar_t* description = L"Succeeded") {
  return {true, false, description};
}
Outcome failed(const wchar_t* description) {
  return {false, false, description};
}
Outcome cancelled(const wchar_t* description) {
  return {false, true, description};
}

double folderSizeOrZero(const std::wstring& path) noexcept {
  try {
    return static_cast<double>(platform::folderSize(path));
  } catch (const std::exception&) {
    return 0;
  }
}

bool holds(long (*count)(const std::wstring&), const std::wstring& folder) noexcept {
  try {
    return count(folder) >= 1;
  } catch (const std::exception&) {
    return false;
  }
}

bool isEmptyFolder(const std::wstring& folder) noexcept {
  return !holds(platform::countFiles, folder) && !holds(platform::countSubfolders, folder);
}

bool isSameText(std::wstring_view left, std::wstring_view right) {
  left = utility::trimmed(left);
  right = utility::trimmed(right);
  return left.size() == right.size() &&
         (left == right || automation::foldCase(left) == automation::foldCase(right));
}

class Run {
 public:
  Run(const Operation& operation, bool moves, bool simulates, RunListener& listener)
      : operation_(operation),
        moves_(moves),
        simulates_(simulates),
        listener_(listener),
        source_(operation.paths[0]),
        destination_(operation.paths[1]) {}

  [[nodiscard]] Outcome transfer();
  [[nodiscard]] Outcome remove();
  [[nodiscard]] Outcome create();

 private:
  [[nodiscard]] std::optional<Outcome> refusedOverwrite(const std::wstring& destination,
                                                        const wchar_t* refusal) const;
  [[nodiscard]] std::optional<Outcome> refusedDelete() const;
  [[nodiscard]] Outcome estimateTransfer(double bytes) const;
  [[nodiscard]] Outcome transferFolder() const;
  [[nodiscard]] Outcome transferFile() const;
  [[nodiscard]] std::wstring progressTitle() const;
  [[nodiscard]] Outcome createFile() const;
  [[nodiscard]] Outcome createFolder() const;
  void estimate(const std::wstring& path, bool fills, double bytes) const {
    listener_.estimate(platform::driveName(path), fills, bytes);
  }

  const Operation& operation_;
  const bool moves_;
  const bool simulates_;
  RunListener& listener_;
  const std::wstring source_;
  const std::wstring destination_;
};

Outcome Run::transfer() {
  if (isSameText(source_, destination_)) {
    return succeeded();
  }
  Looked source = platform::lookUp(source_);
  const bool asFolder =
      operation_.pathType == PathType::folder || (operation_.pathType != PathType::file && isFolder(source));
  if (asFolder && !isFolder(source)) {
    return failed(L"Source folder does not exist");
  }
  if (!asFolder && !isFile(source)) {
    return failed(L"Source file does not exist");
  }
  const Looked destination = platform::lookUp(destination_);
  if (asFolder ? isFolder(destination) : isFile(destination)) {
    if (auto refused = refusedOverwrite(destination_, L"Destination already exists")) {
      return std::move(*refused);
    }
    source = platform::lookUp(source_);  // Whoever was asked may have changed it.
  }
  if (simulates_) {
    return estimateTransfer(asFolder ? folderSizeOrZero(source_)
                                     : (isFile(source) ? static_cast<double>(source->size) : 0));
  }
  return asFolder ? transferFolder() : transferFile();
}

Outcome Run::estimateTransfer(double bytes) const {
  estimate(destination_, true, bytes);
  if (moves_) {
    estimate(source_, false, bytes);
  }
  return succeeded();
}

Outcome Run::transferFolder() const {
  if (!moves_) {
    platform::copyFolder(source_, destination_, true);
    return succeeded();
  }
  if (isFolder(platform::lookUp(destination_))) {
    platform::deleteFolder(destination_, operation_.overridesReadOnly);
  }
  platform::moveFolder(source_, destination_);
  return succeeded();
}

Outcome Run::transferFile() const {
  if (moves_ && isFile(platform::lookUp(destination_))) {
    platform::deleteFile(destination_, operation_.overridesReadOnly);
  }
  const HWND owner = platform::windowWithHandle(operation_.statusWindow);
  switch (platform::transferFile({moves_, source_, destination_, progressTitle(), owner})) {
    case platform::TransferResult::succeeded:
      return succeeded();
    case platform::TransferResult::aborted:
      return cancelled(L"Overwrite cancelled");
    default:
      return failed(moves_ ? L"Problem moving file" : L"Problem copying file");
  }
}

std::wstring Run::progressTitle() const {
  const std::wstring_view from = platform::fileName(source_);
  const std::wstring_view to = platform::fileName(destination_);
  std::wstring title(moves_ ? L"Moving " : L"Copying ");
  title.append(from);
  if (!isSameText(from, to)) {
    title.append(L" to ").append(to);
  }
  return title;
}

Outcome Run::remove() {
  const Looked looked = platform::lookUp(source_);
  if (isFolder(looked)) {
    if (auto refused = refusedDelete()) {
      return std::move(*refused);
    }
  } else if (!looked) {
    return succeeded(L"Source already deleted");
  } else if ((looked->attributes & FILE_ATTRIBUTE_READONLY) != 0 && !operation_.overridesReadOnly) {
    return succeeded(L"Skipped read only file");
  }
  if (simulates_) {
    estimate(source_, false,
             isFolder(looked) ? folderSizeOrZero(source_) : static_cast<double>(looked->size));
  } else if (isFolder(looked)) {
    platform::deleteFolder(source_, operation_.overridesReadOnly);
  } else {
    platform::deleteFile(source_, operation_.overridesReadOnly);
  }
  return succeeded();
}

Outcome Run::create() {
  return operation_.pathType == PathType::file ? createFile() : createFolder();
}

Outcome Run::createFile() const {
  if (isFile(platform::lookUp(source_))) {
    if (auto refused = refusedOverwrite(source_, L"File already exists")) {
      return std::move(*refused);
    }
  }
  if (simulates_) {
    estimate(source_, true, fileSizeOrZero(source_));
  } else {
    platform::truncateFile(source_);
  }
  return succeeded();
}

Outcome Run::createFolder() const {
  if (isFolder(platform::lookUp(source_))) {
    return succeeded(L"Folder already exists");
  }
  if (simulates_) {
    estimate(source_, true, 0);
    return succeeded();
  }
  // Whether the folder came to be is not part of the outcome.
  VARIANT_BOOL created = VARIANT_FALSE;
  const automation::Bstr path(source_);
  automation::check(filesystem::CZEQFileSystemObject::make()->FSO_CreateFolderPath(path.get(), &created));
  return succeeded();
}

std::optional<Outcome> Run::refusedOverwrite(const std::wstring& destination, const wchar_t* refusal) const {
  switch (operation_.overwrite) {
    case Policy::refuse:
      return failed(refusal);
    case Policy::ask:
      if (!listener_.mayOverwrite(source_, destination)) {
        return cancelled(L"Overwrite cancelled");
      }
      return std::nullopt;
    default:
      return std::nullopt;
  }
}

std::optional<Outcome> Run::refusedDelete() const {
  const Policy policy = operation_.deleteNonEmptyFolder;
  if ((policy != Policy::refuse && policy != Policy::ask) || isEmptyFolder(source_)) {
    return std::nullopt;
  }
  if (policy == Policy::refuse) {
    return failed(L"Folder is not empty");
  }
  if (!listener_.mayDelete(source_)) {
    return cancelled(L"Delete cancelled");
  }
  return std::nullopt;
}

}  // namespace

bool isRunnable(const Operation& operation) noexcept {
  switch (operation.type) {
    case OperationType::move:
    case OperationType::copy:
    case OperationType::remove:
      return true;
    case OperationType::create:
      return operation.pathType == PathType::file || operation.pathType == PathType::folder;
    default:
      return false;
  }
}

Outcome run(const Operation& operation, OperationType type, bool simulates, RunListener& listener) {
  Run run(operation, type == OperationType::move, simulates, listener);
  switch (type) {
    case OperationType::remove:
      return run.remove();
    case OperationType::create:
      return run.create();
    default:
      return run.transfer();
  }
}

double fileSizeOrZero(const std::wstring& path) noexcept {
  const Looked looked = platform::lookUp(path);
  return isFile(looked) ? static_cast<double>(looked->size) : 0;
}

}  // namespace zeq::fileops
