// A batch of file operations against the platform calls that it cannot do without.

#include <windows.h>
#include <shellapi.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "harness.h"
#include "support/Component.h"
#include "support/TempFolder.h"

namespace zeq::bench {
namespace {

using automation::Bstr;
using automation::check;
using automation::ComPtr;

constexpr int fileCount = 1000;

struct Copy {
  std::wstring source;
  std::wstring destination;
};

/// Small files to copy, and where they go.
class Files {
 public:
  Files() {
    source_.folder(L"from");
    source_.folder(L"to");
    for (int i = 0; i < fileCount; ++i) {
      const std::wstring name = L"file " + std::to_wstring(i) + L".txt";
      const std::wstring path =
          source_.file(L"from\\" + name, "a small file of about sixty characters, as settings files are");
      copies_.push_back({path, source_ / (L"to\\" + name)});
    }
  }

  [[nodiscard]] const std::vector<Copy>& copies() const noexcept { return copies_; }

  void removeCopies() const {
    for (const Copy& copy : copies_) {
      DeleteFileW(copy.destination.c_str());
    }
  }

 private:
  test::TempFolder source_;
  std::vector<Copy> copies_;
};

using Batch = ComPtr<_CFileOperationBatch>;

Batch batchOf(const Files& files, int tasks) {
  const auto batch = test::create<CFileOperationBatch, _CFileOperationBatch>();
  for (int i = 0; i < tasks; ++i) {
    const Copy& copy = files.copies()[static_cast<std::size_t>(i % fileCount)];
    ComPtr<_CFileOperation> task;
    check(batch->AddCopy(Bstr(copy.source).get(), Bstr(copy.destination).get(), ovrtNo, ptypAny, task.out()));
  }
  return batch;
}

void execute(const Batch& batch, bool forReal) {
  VARIANT_BOOL success = VARIANT_FALSE;
  check(batch->Execute(forReal ? VARIANT_TRUE : VARIANT_FALSE, &success));
  if (success == VARIANT_FALSE) {
    throw std::runtime_error("the batch failed");
  }
}

/// What a simulated copy has to ask at the least: the source with its size, and the destination.
void queryAll(const Files& files, int tasks) {
  for (int i = 0; i < tasks; ++i) {
    const Copy& copy = files.copies()[static_cast<std::size_t>(i % fileCount)];
    WIN32_FILE_ATTRIBUTE_DATA source{};
    if (GetFileAttributesExW(copy.source.c_str(), GetFileExInfoStandard, &source) == FALSE ||
        GetFileAttributesW(copy.destination.c_str()) != INVALID_FILE_ATTRIBUTES) {
      throw std::runtime_error("the files of the benchmark changed");
    }
  }
}

std::string shellPath(const std::wstring& path) {
  return std::string(path.begin(), path.end()) + '\0';
}

void copyByShell(const Files& files) {
  for (const Copy& copy : files.copies()) {
    const std::string from = shellPath(copy.source);
    const std::string to = shellPath(copy.destination);
    SHFILEOPSTRUCTA operation{};
    operation.wFunc = FO_COPY;
    operation.pFrom = from.c_str();
    operation.pTo = to.c_str();
    operation.fFlags = FOF_FILESONLY;
    if (SHFileOperationA(&operation) != 0) {
      throw std::runtime_error("the shell failed");
    }
  }
}

const Area area("fileops", [](std::vector<Row>& rows) {
  const auto files = std::make_shared<const Files>();
  const Batch tenThousand = batchOf(*files, 10000);
  const Batch thirtyThousand = batchOf(*files, 30000);
  const Batch real = batchOf(*files, fileCount);
  rows.push_back({.what = "a dry run of 10,000 copy tasks",
                  .peer = "two bare attribute queries for each",
                  .target = 1.5,
                  .ours = each([=] { execute(tenThousand, false); }),
                  .theirs = each([=] { queryAll(*files, 10000); })});
  rows.push_back({.what = "a dry run of 30,000 copy tasks",
                  .peer = "a dry run of 10,000",
                  .target = 3.3,
                  .ours = each([=] { execute(thirtyThousand, false); }),
                  .theirs = each([=] { execute(tenThousand, false); })});
  rows.push_back({.what = "a batch that copies 1,000 small files",
                  .peer = "`SHFileOperationA` for each",
                  .target = 1.15,
                  .ours =
                      [=](int) {
                        files->removeCopies();
                        return timed([&] { execute(real, true); });
                      },
                  .theirs =
                      [=](int) {
                        files->removeCopies();
                        return timed([&] { copyByShell(*files); });
                      },
                  .times = 1});
});

}  // namespace
}  // namespace zeq::bench
