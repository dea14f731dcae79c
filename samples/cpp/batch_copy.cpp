// Copies a folder with all that is in it, with ZEQUtility2 used early-bound: a plan, a dry run that shows the
// tide marks of the drives, another one that is refused because too little space would stay free, the copy
// with a progress bar that the library's events draw, and a comparison of both sides.
//
//   batch_copy SOURCE-FOLDER DESTINATION-FOLDER
//
// All that it needs of the library is ZEQUtility2.h and the registered DLL.

#include <windows.h>
#include <olectl.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

#include "ZEQUtility2.h"

namespace {

namespace fs = std::filesystem;

// The little that COM needs in C++: who owns a reference, who owns a text, and what to do when a call fails.

template <class Interface>
class Com {
 public:
  Com() = default;
  Com(Com&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  Com(const Com&) = delete;
  Com& operator=(const Com&) = delete;
  ~Com() {
    if (pointer_ != nullptr) {
      pointer_->Release();
    }
  }
  Interface* operator->() const { return pointer_; }
  Interface* get() const { return pointer_; }
  Interface** out() { return &pointer_; }
  void** outVoid() { return reinterpret_cast<void**>(&pointer_); }

 private:
  Interface* pointer_ = nullptr;
};

class Text {
 public:
  Text() = default;
  explicit Text(const std::wstring& text) : text_(SysAllocString(text.c_str())) {}
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  ~Text() { SysFreeString(text_); }
  BSTR get() const { return text_; }
  BSTR* out() { return &text_; }

 private:
  BSTR text_ = nullptr;
};

void check(HRESULT result, const char* what) {
  if (FAILED(result)) {
    std::printf("%s failed: %08lX\n", what, static_cast<unsigned long>(result));
    std::exit(1);
  }
}

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
  const int length = whole > 0 ? static_cast<int>(width * std::min(part / whole, 1.0) + 0.5) : 0;
  return "[" + std::string(static_cast<std::size_t>(length), '#') +
         std::string(static_cast<std::size_t>(width - length), '.') + "]";
}

// The identifiers of the events that are listened to, and what they bring.
constexpr DISPID executedOperation = 4;                  // op, success, wasCancelled, description
constexpr DISPID operationDriveUsageChangeEstimate = 7;  // op, driveNameA, fillingDrive, deltaBytes

/// Hears the events of a batch: an object that answers IDispatch::Invoke with the event's identifier.
class BatchListener : public IDispatch {
 public:
  BatchListener() = default;
  BatchListener(const BatchListener&) = delete;
  BatchListener& operator=(const BatchListener&) = delete;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IDispatch) &&
        !IsEqualIID(iid, __uuidof(__CFileOperationBatch))) {
      *object = nullptr;
      return E_NOINTERFACE;
    }
    *object = static_cast<IDispatch*>(this);
    return S_OK;
  }
  // It lives on the stack of main for longer than the batch knows it.
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, wchar_t**, UINT, LCID, DISPID*) override { return E_NOTIMPL; }

  STDMETHODIMP Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                      UINT*) override {
    hear(event, arguments->rgvarg);
    return S_OK;
  }

 protected:
  ~BatchListener() = default;

 private:
  /// `arguments` are those of the event, the last one first.
  virtual void hear(DISPID event, const VARIANT* arguments) = 0;
};

/// Draws a progress bar.
class Progress final : public BatchListener {
 public:
  explicit Progress(long taskCount) : taskCount_(taskCount) {}

 private:
  void hear(DISPID event, const VARIANT* arguments) override {
    if (event == executedOperation) {
      taskDone(arguments[2].boolVal != VARIANT_FALSE, arguments[0].bstrVal);
    }
  }

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
};

/// Connects a sink to the events of an object while it lives.
class Connection {
 public:
  Connection(IUnknown* source, IDispatch* sink) {
    Com<IConnectionPointContainer> container;
    check(source->QueryInterface(IID_IConnectionPointContainer, container.outVoid()), "asking for events");
    check(container->FindConnectionPoint(__uuidof(__CFileOperationBatch), point_.out()),
          "finding the events");
    check(point_->Advise(sink, &cookie_), "connecting to the events");
  }
  ~Connection() { point_->Unadvise(cookie_); }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

 private:
  Com<IConnectionPoint> point_;
  DWORD cookie_ = 0;
};

struct Plan {
  long files = 0;
  double bytes = 0;
};

/// Adds one operation for each folder and each file. Nothing happens yet.
void planFolder(_CFileOperationBatch& batch, const fs::path& source, const fs::path& target, Plan& plan) {
  Com<_CFileOperation> create;
  check(batch.AddCreate(Text(target.wstring()).get(), ovrtNo, ptypFolder, create.out()), "planning a folder");
  for (const auto& entry : fs::directory_iterator(source)) {
    const fs::path copy = target / entry.path().filename();
    if (entry.is_directory()) {
      planFolder(batch, entry.path(), copy, plan);
      continue;
    }
    Com<_CFileOperation> task;
    check(batch.AddCopy(Text(entry.path().wstring()).get(), Text(copy.wstring()).get(), ovrtNo, ptypFile,
                        task.out()),
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

/// A drive monitor by its position or its drive's name.
Com<_CFakeDrive> driveIn(_Collection& monitors, const VARIANT& index) {
  VARIANT item;
  VariantInit(&item);
  check(monitors.get_Item(index, &item), "Item");
  Com<_CFakeDrive> drive;
  check(item.pdispVal->QueryInterface(__uuidof(_CFakeDrive), drive.outVoid()), "a drive monitor");
  VariantClear(&item);
  return drive;
}

/// Draws one drive and says whether it has room.
bool showDrive(_CFakeDrive& drive) {
  Text name;
  double capacity = 0;
  double low = 0;
  double high = 0;
  double change = 0;
  VARIANT_BOOL tooFull = VARIANT_FALSE;
  check(drive.get_Name(name.out()), "Name");
  check(drive.get_Capacity(&capacity), "Capacity");
  check(drive.get_LowTide(&low), "LowTide");
  check(drive.get_HighTide(&high), "HighTide");
  check(drive.get_HighTideDelta(&change), "HighTideDelta");
  check(drive.get_TooFull(&tooFull), "TooFull");
  std::printf("  %ls of %s\n", name.get(), sizeText(capacity).c_str());
  std::printf("    low tide  %s %s\n", bar(low, capacity, 40).c_str(), sizeText(low).c_str());
  std::printf("    high tide %s %s (%s more)\n", bar(high, capacity, 40).c_str(), sizeText(high).c_str(),
              sizeText(change).c_str());
  std::printf("    %s\n", tooFull != VARIANT_FALSE ? "TOO FULL" : "there is room");
  return tooFull == VARIANT_FALSE;
}

/// Draws the drives that the dry run touched and says whether all of them have room.
bool showDrives(_CFileOperationBatch& batch, double& bytesNeeded) {
  Com<_Collection> monitors;
  long count = 0;
  check(batch.get_DriveMonitors(monitors.out()), "DriveMonitors");
  check(monitors->get_Count(&count), "Count");
  bool haveRoom = true;
  for (long i = 1; i <= count; ++i) {
    VARIANT position;
    VariantInit(&position);
    position.vt = VT_I4;
    position.lVal = i;
    const auto drive = driveIn(*monitors.get(), position);
    haveRoom = showDrive(*drive.get()) && haveRoom;
    check(drive->get_HighTideDelta(&bytesNeeded), "HighTideDelta");
  }
  return haveRoom;
}

/// Demands that all but some of the free space stays free: the safety margin of the drive, set when the drive
/// is first touched, because that starts its measurement anew.
class FreeSpaceKeeper final : public BatchListener {
 public:
  FreeSpaceKeeper(_CFileOperationBatch& batch, double spare) : batch_(batch), spare_(spare) {}

 private:
  void hear(DISPID event, const VARIANT* arguments) override {
    if (event != operationDriveUsageChangeEstimate || isSet_) {
      return;
    }
    isSet_ = true;
    Com<_Collection> monitors;
    check(batch_.get_DriveMonitors(monitors.out()), "DriveMonitors");
    const auto drive = driveIn(*monitors.get(), arguments[2]);
    double free = 0;
    check(drive->get_FreeSpace(&free), "FreeSpace");
    check(drive->put_SafetyMargin(free - spare_), "SafetyMargin");
  }

  _CFileOperationBatch& batch_;
  double spare_;
  bool isSet_ = false;
};

/// A dry run that leaves half of what is needed to be filled. Says whether that was refused.
bool showRefusal(_CFileOperationBatch& batch, double bytesNeeded) {
  std::printf("Dry run again, with all but %s of the free space to be kept free:\n",
              sizeText(bytesNeeded / 2).c_str());
  FreeSpaceKeeper keeper(batch, bytesNeeded / 2);
  const Connection connection(&batch, &keeper);
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
  Com<_CFileOperationBatch> batch;
  check(CoCreateInstance(__uuidof(CFileOperationBatch), nullptr, CLSCTX_INPROC_SERVER,
                         __uuidof(_CFileOperationBatch), batch.outVoid()),
        "creating a batch (is ZEQUtility2.dll registered?)");

  Plan plan;
  planFolder(*batch.get(), source, target, plan);
  Com<_Collection> tasks;
  long taskCount = 0;
  check(batch->get_Tasks(tasks.out()), "Tasks");
  check(tasks->get_Count(&taskCount), "Count");
  std::printf("Planned %ld operations: %ld files, %s.\n", taskCount, plan.files,
              sizeText(plan.bytes).c_str());

  std::printf("Dry run:\n");
  Progress dryProgress(taskCount);
  bool succeeded = false;
  {
    const Connection connection(batch.get(), &dryProgress);
    succeeded = execute(*batch.get(), false);
  }
  std::printf("\n");
  if (!succeeded) {
    std::printf("The dry run failed. Nothing was copied.\n");
    return 1;
  }
  double bytesNeeded = 0;
  if (!showDrives(*batch.get(), bytesNeeded)) {
    std::printf("Nothing was copied.\n");
    return 1;
  }
  if (!showRefusal(*batch.get(), bytesNeeded)) {
    return 1;
  }

  std::printf("For real:\n");
  Progress progress(taskCount);
  {
    const Connection connection(batch.get(), &progress);
    succeeded = execute(*batch.get(), true);
  }
  std::printf("\n");
  if (!succeeded) {
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
