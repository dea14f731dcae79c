// Copies a folder with all that is in it, with ZEQUtility2 used early-bound: a plan, a dry run that shows the
// tide marks of the drives, another one that is refused because too little space would stay free, the copy
// with a progress bar that the library's events draw, and a comparison of both sides.
//
//   batch_copy SOURCE-FOLDER DESTINATION-FOLDER
//
// All that it needs of the library is ZEQUtility2.h and the registered DLL.

#include <windows.h>
#include <comutil.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "Client.h"
#include "ZEQUtility2.h"

namespace {

namespace fs = std::filesystem;
using client::check;
using client::ComPtr;

std::string sizeText(double bytes) {
  std::array<char, 32> text{};
  if (bytes < 1048576) {
    std::snprintf(text.data(), text.size(), "%.1f KB", bytes / 1024);
  } else if (bytes < 1073741824) {
    std::snprintf(text.data(), text.size(), "%.1f MB", bytes / 1048576);
  } else {
    std::snprintf(text.data(), text.size(), "%.1f GB", bytes / 1073741824);
  }
  return text.data();
}

std::string bar(double part, double whole, int width) {
  const long length = whole > 0 ? std::lround(width * std::min(part / whole, 1.0)) : 0;
  return "[" + std::string(static_cast<std::size_t>(length), '#') +
         std::string(static_cast<std::size_t>(width - length), '.') + "]";
}

// The identifiers of the events that are listened to, and what they bring.
constexpr DISPID executedOperation = 4;                  // op, success, wasCancelled, description
constexpr DISPID operationDriveUsageChangeEstimate = 7;  // op, driveNameA, fillingDrive, deltaBytes

using BatchEvents = client::Events<__CFileOperationBatch>;

/// Draws a progress bar while a batch runs.
class Progress {
 public:
  Progress(_CFileOperationBatch& batch, long taskCount)
      : taskCount_(taskCount), events_(&batch, [this](DISPID event, const VARIANTARG* arguments) {
          if (event == executedOperation) {
            taskDone(arguments[2].boolVal != VARIANT_FALSE, arguments[0].bstrVal);
          }
        }) {}

 private:
  void taskDone(bool success, const wchar_t* description) {
    ++done_;
    const long percent = done_ * 100 / taskCount_;
    if (percent != shownPercent_) {
      shownPercent_ = percent;
      std::printf("\r  %s %3ld %%",
                  bar(static_cast<double>(done_), static_cast<double>(taskCount_), 50).c_str(), percent);
      std::fflush(stdout);
    }
    if (!success) {
      std::printf("\n  operation %ld: %ls\n", done_, description);
    }
  }

  long taskCount_;
  long done_ = 0;
  long shownPercent_ = -1;
  BatchEvents events_;
};

struct Plan {
  long files = 0;
  double bytes = 0;
};

/// Adds one operation for each folder and each file. Nothing happens yet.
void planFolder(_CFileOperationBatch& batch, const fs::path& source, const fs::path& target, Plan& plan) {
  ComPtr<_CFileOperation> create;
  check(batch.AddCreate(_bstr_t(target.c_str()), ovrtNo, ptypFolder, create.GetAddressOf()),
        "planning a folder");
  for (const auto& entry : fs::directory_iterator(source)) {
    const fs::path copy = target / entry.path().filename();
    if (entry.is_directory()) {
      planFolder(batch, entry.path(), copy, plan);
      continue;
    }
    ComPtr<_CFileOperation> task;
    check(batch.AddCopy(_bstr_t(entry.path().c_str()), _bstr_t(copy.c_str()), ovrtNo, ptypFile,
                        task.GetAddressOf()),
          "planning a copy");
    ++plan.files;
    plan.bytes += static_cast<double>(entry.file_size());
  }
}

bool execute(_CFileOperationBatch& batch, bool forReal) {
  VARIANT_BOOL success = VARIANT_FALSE;
  check(batch.Execute(forReal ? VARIANT_TRUE : VARIANT_FALSE, &success), "Execute");
  return success != VARIANT_FALSE;
}

bool executeWithProgress(_CFileOperationBatch& batch, long taskCount, bool forReal) {
  const Progress progress(batch, taskCount);
  const bool success = execute(batch, forReal);
  std::printf("\n");
  return success;
}

/// A drive monitor by its position or its drive's name.
ComPtr<_CFakeDrive> driveIn(_Collection& monitors, const VARIANT& index) {
  _variant_t item;
  check(monitors.get_Item(index, &item), "Item");
  return client::query<_CFakeDrive>(item.pdispVal, "a drive monitor");
}

/// Draws one drive and says whether it has room.
bool showDrive(_CFakeDrive& drive) {
  _bstr_t name;
  double capacity = 0;
  double low = 0;
  double high = 0;
  double change = 0;
  VARIANT_BOOL tooFull = VARIANT_FALSE;
  check(drive.get_Name(name.GetAddress()), "Name");
  check(drive.get_Capacity(&capacity), "Capacity");
  check(drive.get_LowTide(&low), "LowTide");
  check(drive.get_HighTide(&high), "HighTide");
  check(drive.get_HighTideDelta(&change), "HighTideDelta");
  check(drive.get_TooFull(&tooFull), "TooFull");
  std::printf("  %ls of %s\n", static_cast<const wchar_t*>(name), sizeText(capacity).c_str());
  std::printf("    low tide  %s %s\n", bar(low, capacity, 40).c_str(), sizeText(low).c_str());
  std::printf("    high tide %s %s (%s more)\n", bar(high, capacity, 40).c_str(), sizeText(high).c_str(),
              sizeText(change).c_str());
  std::printf("    %s\n", tooFull != VARIANT_FALSE ? "TOO FULL" : "there is room");
  return tooFull == VARIANT_FALSE;
}

/// Draws the drives that the dry run touched and says whether all of them have room.
bool showDrives(_CFileOperationBatch& batch, double& bytesNeeded) {
  ComPtr<_Collection> monitors;
  long count = 0;
  check(batch.get_DriveMonitors(monitors.GetAddressOf()), "DriveMonitors");
  check(monitors->get_Count(&count), "Count");
  bool haveRoom = true;
  for (long i = 1; i <= count; ++i) {
    const auto drive = driveIn(*monitors.Get(), _variant_t(i));
    haveRoom = showDrive(*drive.Get()) && haveRoom;
    check(drive->get_HighTideDelta(&bytesNeeded), "HighTideDelta");
  }
  return haveRoom;
}

/// Demands that all but some of the free space stays free: the safety margin of the drive, set when the drive
/// is first touched, because that starts its measurement anew.
class FreeSpaceKeeper {
 public:
  FreeSpaceKeeper(_CFileOperationBatch& batch, double spare)
      : batch_(batch), spare_(spare), events_(&batch, [this](DISPID event, const VARIANTARG* arguments) {
          if (event == operationDriveUsageChangeEstimate && !isSet_) {
            setMargin(arguments[2]);
          }
        }) {}

 private:
  void setMargin(const VARIANT& driveName) {
    isSet_ = true;
    ComPtr<_Collection> monitors;
    check(batch_.get_DriveMonitors(monitors.GetAddressOf()), "DriveMonitors");
    const auto drive = driveIn(*monitors.Get(), driveName);
    double free = 0;
    check(drive->get_FreeSpace(&free), "FreeSpace");
    check(drive->put_SafetyMargin(free - spare_), "SafetyMargin");
  }

  _CFileOperationBatch& batch_;
  double spare_;
  bool isSet_ = false;
  BatchEvents events_;
};

/// A dry run that leaves half of what is needed to be filled. Says whether that was refused.
bool showRefusal(_CFileOperationBatch& batch, double bytesNeeded) {
  std::printf("Dry run again, with all but %s of the free space to be kept free:\n",
              sizeText(bytesNeeded / 2).c_str());
  const FreeSpaceKeeper keeper(batch, bytesNeeded / 2);
  double ignored = 0;
  if (!execute(batch, false) || showDrives(batch, ignored)) {
    std::printf("This should have been refused.\n");
    return false;
  }
  std::printf("  So this copy is refused.\n");
  return true;
}

std::string contentOf(const fs::path& path) {
  std::string content(static_cast<std::size_t>(fs::file_size(path)), '\0');
  std::ifstream(path, std::ios::binary).read(content.data(), static_cast<std::streamsize>(content.size()));
  return content;
}

/// How many files of the source have no equal in the target.
long countDifferences(const fs::path& source, const fs::path& target) {
  long differences = 0;
  for (const auto& entry : fs::recursive_directory_iterator(source)) {
    const fs::path copy = target / entry.path().lexically_relative(source);
    if (entry.is_directory()) {
      continue;
    }
    if (!fs::exists(copy) || contentOf(copy) != contentOf(entry.path())) {
      std::printf("  %ls differs\n", copy.c_str());
      ++differences;
    }
  }
  return differences;
}

int copyFolder(const fs::path& source, const fs::path& target) {
  const auto batch = client::create<_CFileOperationBatch>(
      __uuidof(CFileOperationBatch), "creating a batch (is ZEQUtility2.dll registered?)");

  Plan plan;
  planFolder(*batch.Get(), source, target, plan);
  ComPtr<_Collection> tasks;
  long taskCount = 0;
  check(batch->get_Tasks(tasks.GetAddressOf()), "Tasks");
  check(tasks->get_Count(&taskCount), "Count");
  std::printf("Planned %ld operations: %ld files, %s.\n", taskCount, plan.files,
              sizeText(plan.bytes).c_str());

  std::printf("Dry run:\n");
  if (!executeWithProgress(*batch.Get(), taskCount, false)) {
    std::printf("The dry run failed. Nothing was copied.\n");
    return 1;
  }
  double bytesNeeded = 0;
  if (!showDrives(*batch.Get(), bytesNeeded)) {
    std::printf("Nothing was copied.\n");
    return 1;
  }
  if (bytesNeeded > 0 && !showRefusal(*batch.Get(), bytesNeeded)) {
    return 1;
  }

  std::printf("For real:\n");
  if (!executeWithProgress(*batch.Get(), taskCount, true)) {
    std::printf("The copy stopped at the operation above.\n");
    return 1;
  }
  const long differences = countDifferences(source, target);
  std::printf("Compared %ld files with their copies: %ld differ.\n", plan.files, differences);
  return differences == 0 ? 0 : 1;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc != 3) {
    std::printf("usage: batch_copy SOURCE-FOLDER DESTINATION-FOLDER\n");
    return 2;
  }
  check(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), "CoInitializeEx");
  int result = 1;
  try {
    result = copyFolder(argv[1], argv[2]);
  } catch (const fs::filesystem_error& error) {
    std::printf("%s\n", error.what());
  }
  CoUninitialize();
  return result;
}
