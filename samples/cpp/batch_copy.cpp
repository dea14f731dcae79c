// Copies a folder with all that is in it, with ZEQUtility2 used early-bound: a plan, a dry run that shows the
// tide marks of the drives, the copy with a progress bar that the library's events draw, and a comparison of
// both sides.
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

/// Hears the events of a batch: an object that answers IDispatch::Invoke with the event's identifier.
class Progress final : public IDispatch {
 public:
  explicit Progress(long taskCount) : taskCount_(taskCount) {}

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
    constexpr DISPID executedOperation = 4;  // ExecutedOperation(op, success, wasCancelled, description)
    if (event == executedOperation) {
      const VARIANT* list = arguments->rgvarg;  // The last argument comes first.
      taskDone(list[2].boolVal != VARIANT_FALSE, list[0].bstrVal);
    }
    return S_OK;
  }

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
  std::printf("    %s\n", tooFull != VARIANT_FALSE ? "TOO FULL: such a copy is refused" : "there is room");
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
    VARIANT index;
    VARIANT item;
    VariantInit(&index);
    VariantInit(&item);
    index.vt = VT_I4;
    index.lVal = i;
    check(monitors->get_Item(index, &item), "Item");
    Com<_CFakeDrive> drive;
    check(item.pdispVal->QueryInterface(__uuidof(_CFakeDrive), drive.outVoid()), "a drive monitor");
    VariantClear(&item);
    haveRoom = showDrive(*drive.get()) && haveRoom;
    check(drive->get_HighTideDelta(&bytesNeeded), "HighTideDelta");
  }
  return haveRoom;
}

/// The same bytes on a drive that is too small for them: an imagined one, because a real one is rarely at
/// hand.
void showTooSmallDrive(double bytesNeeded) {
  Com<_CFakeDrive> drive;
  check(CoCreateInstance(__uuidof(CFakeDrive), nullptr, CLSCTX_INPROC_SERVER, __uuidof(_CFakeDrive),
                         drive.outVoid()),
        "creating a simulated drive");
  check(drive->put_Name(Text(L"an imagined drive").get()), "Name");
  check(drive->put_Capacity(bytesNeeded / 2), "Capacity");
  check(drive->UseBytes(bytesNeeded), "UseBytes");
  showDrive(*drive.get());
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
  std::printf("The same copy onto a drive of half that size, imagined to show a refusal:\n");
  showTooSmallDrive(bytesNeeded);

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
