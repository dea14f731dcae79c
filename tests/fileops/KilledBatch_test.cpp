// A process that is ended in the middle of a real batch. Whatever the moment: what was completed is whole,
// nothing else is touched, and running the batch again succeeds.
//
// The disk changes only by calls to the kernel, so that a process can die in as many ways as there are calls.
// A process of its own runs the batch, stops before one of them, and is ended there.

#include <windows.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "fileops/Recorder.h"
#include "support/Component.h"
#include "support/EntryPoint.h"
#include "support/ImportHook.h"
#include "support/Process.h"

namespace zeq::test {
namespace {

// What there is, and what the batch makes of it.

struct Original {
  const wchar_t* path;
  std::size_t size;
};

/// In the first folder. The sizes are such that some files are copied in several pieces.
constexpr std::array originals{
    Original{L"docs\\big", 150000},
    Original{L"docs\\small", 1000},
    Original{L"docs\\beside", 100},
    Original{L"tree\\one", 70000},
    Original{L"tree\\sub\\two", 1000},
    Original{L"moving\\x", 150000},
    Original{L"moving\\y", 70000},
    Original{L"moving\\beside", 100},
    Original{L"folder\\p", 1000},
    Original{L"folder\\q\\r", 70000},
    Original{L"replaced\\old", 1000},
    Original{L"replaced\\sub\\old", 10},
    Original{L"trash\\full\\one", 1000},
    Original{L"trash\\full\\sub\\two", 10},
    Original{L"trash\\file", 10},
    Original{L"trash\\beside", 100},
    Original{L"log", 500},
    Original{L"out\\beside", 100},
};

/// What the batch is told to change, in either folder. Everything else must stay as it is.
const std::set<std::wstring> touched{
    L"out\\new", L"out\\made", L"out\\big",    L"out\\tree",   L"log",         L"moving\\x", L"moving\\y",
    L"folder",   L"replaced",  L"trash\\full", L"trash\\file", L"there small", L"there y",   L"there tree"};

/// The content that a file had at first, different for each.
std::string contentOfOriginal(const std::wstring& path) {
  const auto* found = std::find_if(originals.begin(), originals.end(),
                                   [&](const Original& original) { return path == original.path; });
  const std::string name(path.begin(), path.end());
  std::string content;
  while (content.size() < found->size) {
    content.append(name).append(1, '\n');
  }
  content.resize(found->size);
  return content;
}

/// The two folders, on two drives where there are two.
struct Places {
  std::wstring here;
  std::wstring there;

  [[nodiscard]] std::wstring operator/(const std::wstring& name) const {
    return (name.starts_with(L"there ") ? there : here) + L"\\" + name;
  }
};

void expectOriginal(const std::wstring& path, const std::wstring& original) {
  ASSERT_TRUE(exists(path));
  EXPECT_TRUE(contentOf(path) == contentOfOriginal(original)) << "not whole";
}

/// A task of the batch.
struct Step {
  std::function<void(_CFileOperationBatch&)> add;
  std::function<void()> expectDone;
};

Step creation(const std::wstring& path, enumParamType type) {
  return {
      [=](auto& batch) { batch.AddCreate(Bstr(path).get(), ovrtYes, type, ComPtr<_CFileOperation>().out()); },
      [=] {
        ASSERT_TRUE(exists(path));
        if (type == ptypFile) {
          EXPECT_EQ(contentOf(path), "");
        }
      }};
}

Step removal(const std::wstring& path, std::function<void()> expectDone) {
  return {[=](auto& batch) {
            ComPtr<_CFileOperation> task;
            batch.AddDelete(Bstr(path).get(), ptypAny, task.out());
            task->put_DeleteNonEmptyFolder(ovrtYes);
          },
          std::move(expectDone)};
}

Step copying(const std::wstring& from, const std::wstring& to, std::function<void()> expectDone) {
  return {[=](auto& batch) {
            batch.AddCopy(Bstr(from).get(), Bstr(to).get(), ovrtYes, ptypAny,
                          ComPtr<_CFileOperation>().out());
          },
          std::move(expectDone)};
}

/// A move that has been made already is not made again.
Step moving(const std::wstring& from, const std::wstring& to, const std::function<void()>& expectDone) {
  return {[=](auto& batch) {
            if (exists(from)) {
              batch.AddMove(Bstr(from).get(), Bstr(to).get(), ovrtYes, ptypAny,
                            ComPtr<_CFileOperation>().out());
            }
          },
          [=] {
            EXPECT_FALSE(exists(from));
            expectDone();
          }};
}

std::vector<Step> steps(const Places& at) {
  const auto isOriginal = [at](const std::wstring& name, const std::wstring& original) {
    return [=] { expectOriginal(at / name, original); };
  };
  const auto isTree = [at](const std::wstring& name) {
    return [=] {
      expectOriginal(at / (name + L"\\one"), L"tree\\one");
      expectOriginal(at / (name + L"\\sub\\two"), L"tree\\sub\\two");
    };
  };
  const auto isGone = [at](const std::wstring& name) { return [=] { EXPECT_FALSE(exists(at / name)); }; };
  const auto isFolder = [at] {
    EXPECT_FALSE(exists(at / L"replaced\\old"));
    expectOriginal(at / L"replaced\\p", L"folder\\p");
    expectOriginal(at / L"replaced\\q\\r", L"folder\\q\\r");
  };
  // The shell asks before it overwrites a file, so that what may be there from an earlier run is deleted
  // first.
  const auto untilItIsCopied = [] {};
  return {creation(at / L"out\\new\\deep", ptypFolder),
          creation(at / L"out\\made", ptypFile),
          creation(at / L"log", ptypFile),
          removal(at / L"out\\big", untilItIsCopied),
          copying(at / L"docs\\big", at / L"out\\big", isOriginal(L"out\\big", L"docs\\big")),
          removal(at / L"there small", untilItIsCopied),
          copying(at / L"docs\\small", at / L"there small", isOriginal(L"there small", L"docs\\small")),
          copying(at / L"tree", at / L"out\\tree", isTree(L"out\\tree")),
          copying(at / L"tree", at / L"there tree", isTree(L"there tree")),
          moving(at / L"moving\\x", at / L"out\\new\\x", isOriginal(L"out\\new\\x", L"moving\\x")),
          moving(at / L"moving\\y", at / L"there y", isOriginal(L"there y", L"moving\\y")),
          moving(at / L"folder", at / L"replaced", isFolder),
          removal(at / L"trash\\full", isGone(L"trash\\full")),
          removal(at / L"trash\\file", isGone(L"trash\\file"))};
}

ComPtr<_CFileOperationBatch> batchOf(const std::vector<Step>& steps) {
  auto batch = create<CFileOperationBatch, _CFileOperationBatch>();
  for (const Step& step : steps) {
    step.add(*batch);
  }
  return batch;
}

bool execute(_CFileOperationBatch& batch) {
  VARIANT_BOOL success = VARIANT_FALSE;
  EXPECT_EQ(batch.Execute(VARIANT_TRUE, &success), S_OK);
  return success != VARIANT_FALSE;
}

// What the two processes know of each other.

struct Job {
  wchar_t here[MAX_PATH];
  wchar_t there[MAX_PATH];
  LONG stopBefore;  ///< The number of the call before which the process is ended; 0 for none.
  LONG calls;       ///< How many calls it has come to.
  LONG completed;   ///< How many tasks have succeeded.
};

constexpr const wchar_t* jobVariable = L"ZEQ_TEST_KILLED_BATCH";

/// A job in memory that both processes see under one name.
class SharedJob {
 public:
  explicit SharedJob(const std::wstring& name)
      : stopped_(CreateEventW(nullptr, TRUE, FALSE, (name + L" stopped").c_str())),
        mapping_(
            CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(Job), name.c_str())),
        job_(static_cast<Job*>(MapViewOfFile(mapping_, FILE_MAP_ALL_ACCESS, 0, 0, 0))) {}
  ~SharedJob() {
    UnmapViewOfFile(job_);
    CloseHandle(mapping_);
    CloseHandle(stopped_);
  }
  SharedJob(const SharedJob&) = delete;
  SharedJob& operator=(const SharedJob&) = delete;

  Job* operator->() const noexcept { return job_; }
  /// Set when the process stands where it is to be ended.
  [[nodiscard]] HANDLE stopped() const noexcept { return stopped_; }

 private:
  HANDLE stopped_;
  HANDLE mapping_;
  Job* job_;
};

// The process that runs the batch. The system's own functions for files call the kernel through these.

constexpr std::array kernelCalls{std::pair{"NtCreateFile", 11U}, std::pair{"NtOpenFile", 6U},
                                 std::pair{"NtReadFile", 9U},    std::pair{"NtWriteFile", 9U},
                                 std::pair{"NtClose", 1U},       std::pair{"NtSetInformationFile", 5U}};

const SharedJob* running;  ///< Null before and after the batch.

void stopIfItIsTime() {
  if (running != nullptr && ++(*running)->calls == (*running)->stopBefore) {
    SetEvent(running->stopped());
    WaitForSingleObject(GetCurrentProcess(), INFINITE);
  }
}

template <std::size_t>
using Word = ULONG_PTR;

/// Stands before one kernel call: every argument of one is a word.
template <std::size_t call, std::size_t... argument>
struct KernelCall {
  static inline LONG(NTAPI* made)(Word<argument>...) = nullptr;
  static LONG NTAPI counted(Word<argument>... arguments) {
    stopIfItIsTime();
    return made(arguments...);
  }
};

template <std::size_t call, std::size_t... argument>
std::unique_ptr<ImportHook> hookKernelCall(std::index_sequence<argument...> /*arguments*/) {
  using Call = KernelCall<call, argument...>;
  const char* name = kernelCalls[call].first;
  Call::made = entryPoint<decltype(Call::made)>(GetModuleHandleW(L"ntdll.dll"), name);
  return std::make_unique<ImportHook>(GetModuleHandleW(L"kernelbase.dll"), name, &Call::counted);
}

template <std::size_t... call>
std::vector<std::unique_ptr<ImportHook>> hookKernelCalls(std::index_sequence<call...> /*calls*/) {
  std::vector<std::unique_ptr<ImportHook>> hooks;
  (hooks.push_back(hookKernelCall<call>(std::make_index_sequence<kernelCalls[call].second>())), ...);
  return hooks;
}

/// Not a test of its own: what the process does that is ended.
TEST(KilledBatchTest, DISABLED_RunsTheBatch) {
  std::wstring name(MAX_PATH, L'\0');
  name.resize(GetEnvironmentVariableW(jobVariable, name.data(), MAX_PATH));
  ASSERT_FALSE(name.empty());
  const SharedJob job(name);
  const auto batch = batchOf(steps({job->here, job->there}));
  Recorder events(batch.get(), __uuidof(__CFileOperationBatch), Recorder::batchEvents());
  events.on(L"ExecutedOperation", [&](const Recorder::Arguments& arguments) {
    job->completed += arguments[1]->boolVal != VARIANT_FALSE ? 1 : 0;
  });
  const auto hooks = hookKernelCalls(std::make_index_sequence<kernelCalls.size()>());
  running = &job;
  EXPECT_TRUE(execute(*batch));
  running = nullptr;
}

// The process that ends it.

/// One process with folders of its own.
class BatchProcess {
 public:
  explicit BatchProcess(LONG stopBefore) : job_(name()) {
    for (const Original& original : originals) {
      const std::wstring path = original.path;
      if (const auto end = path.rfind(L'\\'); end != std::wstring::npos) {
        here_.folder(path.substr(0, end));
      }
      here_.TempFolder::file(path, contentOfOriginal(path));
    }
    there_.TempFolder::file(L"there beside", "beside");
    before_ = untouched();
    at_.here.copy(job_->here, MAX_PATH - 1);
    at_.there.copy(job_->there, MAX_PATH - 1);
    job_->stopBefore = stopBefore;
    SetEnvironmentVariableW(jobVariable, name().c_str());
    program_.emplace(partOfATest(L"KilledBatchTest.DISABLED_RunsTheBatch"));
    SetEnvironmentVariableW(jobVariable, nullptr);
  }

  /// Ends the process where it is to end. False if it had run to its end by then.
  bool kill() {
    const std::array<HANDLE, 2> either{job_.stopped(), program_->process()};
    constexpr DWORD minute = 60000;
    const DWORD first = WaitForMultipleObjects(2, either.data(), FALSE, minute);
    EXPECT_NE(first, DWORD{WAIT_TIMEOUT});
    program_->kill();
    return first == WAIT_OBJECT_0;
  }
  DWORD exitCode() { return program_->exitCode(); }

  void expectCompletedWhole() const {
    const auto all = steps(at_);
    ASSERT_LE(static_cast<std::size_t>(job_->completed), all.size());
    for (LONG i = 0; i < job_->completed; ++i) {
      SCOPED_TRACE(i);
      all[static_cast<std::size_t>(i)].expectDone();
    }
    // What is moved is whole at one of its two places at any moment.
    for (const auto& [from, to] :
         {std::pair{L"moving\\x", L"out\\new\\x"}, std::pair{L"moving\\y", L"there y"}}) {
      expectOriginal(at_ / (exists(at_ / from) ? from : to), from);
    }
    EXPECT_EQ(untouched(), before_);
  }

  void expectItRunsAgain() const {
    const auto all = steps(at_);
    EXPECT_TRUE(execute(*batchOf(all)));
    for (const Step& step : all) {
      step.expectDone();
    }
    EXPECT_EQ(untouched(), before_);
  }

  [[nodiscard]] LONG calls() const { return job_->calls; }
  [[nodiscard]] LONG completed() const { return job_->completed; }

 private:
  using Found = std::map<std::wstring, std::string>;

  [[nodiscard]] std::wstring name() const {
    return L"ZEQUtility2 test: batch " + here_.root().substr(here_.root().rfind(L'\\') + 1);
  }

  /// Everything that the batch is not told to touch, with content, attributes and the time of its last
  /// change.
  [[nodiscard]] Found untouched() const {
    Found found;
    for (const std::wstring& folder : {at_.here, at_.there}) {
      collect(folder, {}, found);
    }
    return found;
  }
  static void collect(const std::wstring& root, const std::wstring& below, Found& found) {
    WIN32_FIND_DATAW entry{};
    const HANDLE search = FindFirstFileW((root + L"\\" + below + L"*").c_str(), &entry);
    do {
      const std::wstring path = below + entry.cFileName;
      if (entry.cFileName[0] == L'.' || touched.contains(path)) {
        continue;
      }
      std::string& seen = found[path] = std::to_string(entry.dwFileAttributes);
      if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        collect(root, path + L"\\", found);
      } else {
        seen += " " + std::to_string(entry.ftLastWriteTime.dwHighDateTime) + " " +
                std::to_string(entry.ftLastWriteTime.dwLowDateTime) + " " + contentOf(root + L"\\" + path);
      }
    } while (FindNextFileW(search, &entry) != FALSE);
    FindClose(search);
  }

  Sandbox here_;
  Sandbox there_{folderOnOtherDrive()};
  Places at_{here_.root(), there_.root()};
  SharedJob job_;
  Found before_;
  std::optional<Program> program_;
};

/// A number that equal seeds make equal; ZEQ_TEST_SEED repeats a run.
unsigned seedOfThisRun() {
  const char* given = std::getenv("ZEQ_TEST_SEED");
  return given != nullptr ? static_cast<unsigned>(std::strtoul(given, nullptr, 10)) : std::random_device()();
}

TEST(KilledBatchTest, LeavesWholeWhatWasCompletedAndRunsAgain) {
  constexpr int moments = 100;
  constexpr int atOnce = 4;
  const unsigned seed = seedOfThisRun();
  std::printf("killed at %d moments, ZEQ_TEST_SEED=%u\n", moments, seed);
  SCOPED_TRACE("ZEQ_TEST_SEED=" + std::to_string(seed));
  BatchProcess whole(0);
  ASSERT_EQ(whole.exitCode(), 0U);
  ASSERT_EQ(static_cast<std::size_t>(whole.completed()), steps({}).size());
  whole.expectCompletedWhole();
  ASSERT_GE(whole.calls(), moments);

  std::mt19937 random(seed);
  std::uniform_int_distribution<LONG> anyCall(1, whole.calls());
  int killed = 0;
  for (int i = 0; i < moments; i += atOnce) {
    std::vector<std::pair<LONG, std::unique_ptr<BatchProcess>>> runs;
    for (int j = 0; j < atOnce; ++j) {
      const LONG call = anyCall(random);
      runs.emplace_back(call, std::make_unique<BatchProcess>(call));
    }
    for (const auto& [call, run] : runs) {
      SCOPED_TRACE("before call " + std::to_string(call) + " of " + std::to_string(whole.calls()));
      killed += run->kill() ? 1 : 0;
      run->expectCompletedWhole();
      run->expectItRunsAgain();
    }
  }
  EXPECT_GE(killed, moments * 9 / 10);
}

}  // namespace
}  // namespace zeq::test
