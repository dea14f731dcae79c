// A batch of operations: its list, its runs with their events, and what a simulation tells of the drives.

#include <gmock/gmock.h>

#include "fileops/ClientTask.h"
#include "fileops/Recorder.h"
#include "support/Component.h"
#include "support/ImportHook.h"
#include "support/Leaks.h"

namespace zeq::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr bool forReal = true;
constexpr bool simulated = false;
constexpr HRESULT overflow = static_cast<HRESULT>(0x800A0006);

class BatchTest : public testing::Test {
 protected:
  using Adder = HRESULT (STDMETHODCALLTYPE _CFileOperationBatch::*)(BSTR, BSTR, enumOverwriteType,
                                                                    enumParamType, _CFileOperation**);
  ComPtr<_CFileOperationBatch> batch = create<CFileOperationBatch, _CFileOperationBatch>();
  Late late{batch};
  Recorder events{batch.get(), __uuidof(__CFileOperationBatch), Recorder::batchEvents()};
  Sandbox sandbox;

  ComPtr<_CFileOperation> add(Adder adder, const std::wstring& source, const std::wstring& destination,
                              enumOverwriteType overwrite = ovrtNo, enumParamType pathType = ptypAny) {
    ComPtr<_CFileOperation> task;
    EXPECT_EQ(
        (batch.get()->*adder)(Bstr(source).get(), Bstr(destination).get(), overwrite, pathType, task.out()),
        S_OK);
    return task;
  }
  ComPtr<_CFileOperation> addMove(const std::wstring& source, const std::wstring& destination,
                                  enumOverwriteType overwrite = ovrtNo) {
    return add(&_CFileOperationBatch::AddMove, source, destination, overwrite);
  }
  ComPtr<_CFileOperation> addCopy(const std::wstring& source, const std::wstring& destination,
                                  enumOverwriteType overwrite = ovrtNo) {
    return add(&_CFileOperationBatch::AddCopy, source, destination, overwrite);
  }
  ComPtr<_CFileOperation> addDelete(const std::wstring& path) {
    ComPtr<_CFileOperation> task;
    EXPECT_EQ(batch->AddDelete(Bstr(path).get(), ptypAny, task.out()), S_OK);
    return task;
  }
  ComPtr<_CFileOperation> addCreate(const std::wstring& path, enumOverwriteType overwrite = ovrtNo,
                                    enumParamType pathType = ptypFolder) {
    ComPtr<_CFileOperation> task;
    EXPECT_EQ(batch->AddCreate(Bstr(path).get(), overwrite, pathType, task.out()), S_OK);
    return task;
  }
  /// A task that succeeds in every run and never touches the disk.
  ComPtr<_CFileOperation> addIdle() { return addDelete(sandbox.path(L"missing")); }

  ComPtr<_Collection> tasks() {
    ComPtr<_Collection> result;
    EXPECT_EQ(batch->get_Tasks(result.out()), S_OK);
    return result;
  }
  ComPtr<_Collection> monitors() {
    ComPtr<_Collection> result;
    EXPECT_EQ(batch->get_DriveMonitors(result.out()), S_OK);
    return result;
  }
  static long count(const ComPtr<_Collection>& collection) {
    long result = -1;
    EXPECT_EQ(collection->get_Count(&result), S_OK);
    return result;
  }
  static void put(const ComPtr<_Collection>& collection, const Variant& item) {
    EXPECT_EQ(collection->Add(item.get(), Variant::missing().get(), Variant::missing().get(),
                              Variant::missing().get()),
              S_OK);
  }
  static HRESULT remove(const ComPtr<_Collection>& collection, long position) {
    return collection->Remove(Variant(position).get());
  }
  ComPtr<_CFakeDrive> monitor(std::wstring_view key) {
    Variant item;
    EXPECT_EQ(monitors()->get_Item(Variant(key).get(), item.out()), S_OK);
    return ComPtr<IUnknown>(automation::objectIn(item.get())).query<_CFakeDrive>();
  }
  static double read(const ComPtr<_CFakeDrive>& drive,
                     HRESULT (STDMETHODCALLTYPE _CFakeDrive::*getter)(double*)) {
    double value = -1;
    EXPECT_EQ((drive.get()->*getter)(&value), S_OK);
    return value;
  }
  bool execute(bool real) {
    events.clear();
    VARIANT_BOOL result = VARIANT_FALSE;
    EXPECT_EQ(batch->Execute(real ? VARIANT_TRUE : VARIANT_FALSE, &result), S_OK);
    EXPECT_FALSE(simulating());
    return result != VARIANT_FALSE;
  }
  bool simulating() {
    VARIANT_BOOL value = VARIANT_FALSE;
    EXPECT_EQ(batch->get_Simulating(&value), S_OK);
    return value != VARIANT_FALSE;
  }
  template <class Object>
  static enumExecutionState stateOf(const Object& object) {
    auto value = exstNotStarted;
    EXPECT_EQ(object->get_State(&value), S_OK);
    return value;
  }
  short currentIndex() {
    short value = -1;
    EXPECT_EQ(batch->get_CurrentTaskIndex(&value), S_OK);
    return value;
  }
  ComPtr<_CFileOperation> currentTask() {
    ComPtr<_CFileOperation> task;
    EXPECT_EQ(batch->get_CurrentTask(task.out()), S_OK);
    return task;
  }
  static long windowOf(const ComPtr<_CFileOperation>& task) {
    long value = -1;
    EXPECT_EQ(task->get_StatusHWnd(&value), S_OK);
    return value;
  }
};

TEST_F(BatchTest, StartsEmpty) {
  EXPECT_EQ(count(tasks()), 0);
  EXPECT_EQ(count(monitors()), 0);
  EXPECT_EQ(stateOf(batch), exstNotStarted);
  EXPECT_EQ(currentIndex(), 0);
  EXPECT_FALSE(currentTask());
  EXPECT_FALSE(simulating());
  EXPECT_EQ(late.get(L"StatusHWnd").get().lVal, 0);
  EXPECT_EQ(textIn(late.get(L"AsString", Variant(true))), L"Batch (0 tasks)  State: Not started\r\n");
}

TEST_F(BatchTest, AnEmptyBatchSucceeds) {
  EXPECT_TRUE(execute(forReal));
  EXPECT_THAT(events.lines(), ElementsAre(L"Starting()", L"Finished(True, False)"));
  EXPECT_EQ(stateOf(batch), exstFinished_OK);
  EXPECT_TRUE(execute(simulated));
  EXPECT_EQ(currentIndex(), 0);
}

TEST_F(BatchTest, AddsEveryKindOfTask) {
  const auto plain = [&] {
    ComPtr<_CFileOperation> task;
    EXPECT_EQ(batch->Add(task.out()), S_OK);
    return task;
  }();
  const auto move = addMove(L"a", L"b", ovrtAsk);
  const auto copy = add(&_CFileOperationBatch::AddCopy, L"c", L"d", ovrtYes, ptypFile);
  const auto removal = addDelete(L"e");
  const auto creation = addCreate(L"f", ovrtAsk, ptypFile);
  EXPECT_EQ(count(tasks()), 5);
  EXPECT_EQ(textIn(late.get(L"AsString", Variant(true))),
            L"Batch (5 tasks)  State: Not started\r\n"
            L"\r\n### Operation Uninitialised ###"
            L"\r\nMoving a to b [Ask before overwriting] CurrentState: Not started"
            L"\r\nCopying file c to d [Overwrite] CurrentState: Not started"
            L"\r\nDeleting e [Don't delete non-empty folder] CurrentState: Not started"
            L"\r\nCreating file f [Ask before overwriting] CurrentState: Not started");
  long position = 0;
  for (const auto& task : {plain, move, copy, removal, creation}) {
    Variant item;
    EXPECT_EQ(tasks()->get_Item(Variant(++position).get(), item.out()), S_OK);
    EXPECT_EQ(automation::objectIn(item.get()), task.get());
  }
}

TEST_F(BatchTest, DescribesItself) {
  const auto task = addMove(L"C:\\a.txt", L"D:\\b.txt");
  EXPECT_EQ(textIn(late.get(L"AsString", Variant(true))),
            L"Batch (1 tasks)  State: Not started\r\n\r\n"
            L"Moving C:\\a.txt to D:\\b.txt [Don't overwrite] CurrentState: Not started");
  EXPECT_EQ(textIn(late.get(L"AsString", Variant(false))),
            L"Batch (1 tasks)  State: exstNotStarted\r\n\r\nMoving C:\\a.txt to D:\\b.txt ");
  EXPECT_EQ(late.call(L"AsString").code, DISP_E_PARAMNOTOPTIONAL);
}

TEST_F(BatchTest, TranslatesStates) {
  batch->put_State(exstFinished_OK);
  for (const auto& [state, verbose, terse] :
       {std::tuple{1L, L"Not started", L"exstNotStarted"}, std::tuple{2L, L"In progress", L"exstExecuting"},
        std::tuple{3L, L"Completed sucessfully", L"exstFinished_OK"},
        std::tuple{4L, L"Cancelled", L"exstFinished_Cancelled"},
        std::tuple{5L, L"Completed unsucessfully", L"exstFinished_Error"},
        std::tuple{0L, L"### State Unknown ###", L"######"}}) {
    EXPECT_EQ(textIn(late.get(L"StateAsString", Variant(state), Variant(true))), verbose);
    EXPECT_EQ(textIn(late.get(L"StateAsString", Variant(state), Variant(false))), terse);
  }
}

TEST_F(BatchTest, ARefusedTaskStaysInTheList) {
  EXPECT_FALSE(addCreate(sandbox.path(L"x"), ovrtNo, ptypAny));
  EXPECT_EQ(count(tasks()), 1);
  EXPECT_EQ(textIn(late.get(L"AsString", Variant(false))),
            L"Batch (1 tasks)  State: exstNotStarted\r\n\r\n### Operation Uninitialised ###");
  EXPECT_FALSE(execute(forReal));
  EXPECT_THAT(events.lines(), ElementsAre(L"Starting()", L"Finished(False, False)"));
  EXPECT_EQ(stateOf(batch), exstFinished_Error);
}

TEST_F(BatchTest, DefaultsOfLeftOutArguments) {
  late.call(L"AddMove", Variant(L"a"), Variant(L"b"));
  late.call(L"AddCopy", Variant(L"a"), Variant(L"b"));
  late.call(L"AddDelete", Variant(L"a"));
  late.call(L"AddCreate", Variant(L"a"));
  EXPECT_EQ(textIn(late.get(L"AsString", Variant(true))),
            L"Batch (4 tasks)  State: Not started\r\n"
            L"\r\nMoving a to b [Don't overwrite] CurrentState: Not started"
            L"\r\nCopying a to b [Don't overwrite] CurrentState: Not started"
            L"\r\nDeleting a [Don't delete non-empty folder] CurrentState: Not started"
            L"\r\nCreating folder a [Don't overwrite] CurrentState: Not started");
  EXPECT_EQ(late.get(L"Add").type(), VT_DISPATCH);
  EXPECT_EQ(late.get(L"CurrentTask").get().pdispVal, nullptr);
}

TEST_F(BatchTest, ClearRemovesTheTasksAndKeepsTheMonitors) {
  addCopy(sandbox.file(L"a", 1), sandbox.path(L"b"));
  execute(simulated);
  const auto held = tasks();
  EXPECT_EQ(batch->Clear(), S_OK);
  EXPECT_EQ(count(held), 0);
  EXPECT_EQ(count(monitors()), 1);
  EXPECT_EQ(batch->Clear(), S_OK);
}

TEST_F(BatchTest, TheEndOfABatchClearsItsTasks) {
  addIdle();
  addCopy(sandbox.file(L"a", 1), sandbox.path(L"b"));
  execute(simulated);
  const auto heldTasks = tasks();
  const auto heldMonitors = monitors();
  late = Late(nullptr);
  events.disconnect();
  batch.reset();
  EXPECT_EQ(count(heldTasks), 0);
  EXPECT_EQ(count(heldMonitors), 1);
}

TEST_F(BatchTest, HandsTheStatusWindowToItsTasks) {
  const auto first = addIdle();
  const auto second = addIdle();
  EXPECT_EQ(batch->put_StatusHWnd(77), S_OK);
  EXPECT_EQ(windowOf(first), 77);
  EXPECT_EQ(windowOf(second), 77);
  EXPECT_EQ(windowOf(addIdle()), 77);
  first->put_StatusHWnd(5);
  batch->put_StatusHWnd(77);  // Nothing new: nothing is handed on.
  EXPECT_EQ(windowOf(first), 5);
  batch->put_StatusHWnd(0);
  EXPECT_EQ(windowOf(first), 0);
  EXPECT_EQ(late.get(L"StatusHWnd").get().lVal, 0);
}

TEST_F(BatchTest, ResettingTheStateResetsTheTasks) {
  const auto first = addIdle();
  const auto second = addIdle();
  execute(forReal);
  EXPECT_EQ(stateOf(second), exstFinished_OK);
  EXPECT_EQ(batch->put_State(exstFinished_Error), S_OK);
  EXPECT_EQ(stateOf(batch), exstFinished_Error);
  EXPECT_EQ(stateOf(first), exstFinished_OK);
  batch->put_State(exstFinished_OK);
  EXPECT_EQ(stateOf(first), exstFinished_OK);
  EXPECT_EQ(batch->put_State(exstNotStarted), S_OK);
  EXPECT_EQ(stateOf(first), exstNotStarted);
  EXPECT_EQ(stateOf(second), exstNotStarted);
  // A state that is there already is not handed on.
  first->put_State(exstFinished_Cancelled);
  batch->put_State(exstNotStarted);
  EXPECT_EQ(stateOf(first), exstFinished_Cancelled);
  late.put(L"State", Variant(77L));
  EXPECT_EQ(late.get(L"State").get().lVal, 77);
}

TEST_F(BatchTest, RunsTheTasksInOrder) {
  const std::wstring folder = sandbox.path(L"folder");
  const std::wstring file = sandbox.file(L"file", 5);
  addCreate(folder);
  addCopy(file, folder + L"\\copy");
  const auto last = addDelete(file);
  EXPECT_TRUE(execute(forReal));
  EXPECT_THAT(events.lines(),
              ElementsAre(L"Starting()", L"AboutToExecuteOperation(op)",
                          L"ExecutedOperation(op, True, False, Succeeded)", L"AboutToExecuteOperation(op)",
                          L"ExecutedOperation(op, True, False, Succeeded)", L"AboutToExecuteOperation(op)",
                          L"ExecutedOperation(op, True, False, Succeeded)", L"Finished(True, False)"));
  EXPECT_EQ(contentOf(folder + L"\\copy").size(), 5U);
  EXPECT_FALSE(exists(file));
  EXPECT_EQ(stateOf(batch), exstFinished_OK);
  EXPECT_EQ(stateOf(last), exstFinished_OK);
  EXPECT_EQ(currentIndex(), 3);
  EXPECT_EQ(currentTask().get(), last.get());
}

TEST_F(BatchTest, StopsAtTheFirstFailure) {
  const auto first = addIdle();
  const auto second = addMove(sandbox.path(L"missing"), sandbox.path(L"target"));
  const auto third = addIdle();
  for (const bool real : {simulated, forReal}) {
    EXPECT_FALSE(execute(real));
    EXPECT_THAT(events.lines(),
                ElementsAre(L"Starting()", L"AboutToExecuteOperation(op)",
                            L"ExecutedOperation(op, True, False, Source already deleted)",
                            L"AboutToExecuteOperation(op)",
                            L"ExecutedOperation(op, False, False, Source file does not exist)",
                            L"Finished(False, False)"));
    EXPECT_EQ(stateOf(first), exstFinished_OK);
    EXPECT_EQ(stateOf(second), exstFinished_Error);
    EXPECT_EQ(stateOf(third), exstNotStarted);
    EXPECT_EQ(stateOf(batch), exstFinished_Error);
    EXPECT_EQ(currentIndex(), 2);
    EXPECT_EQ(currentTask().get(), second.get());
  }
}

TEST_F(BatchTest, ACancelledTaskCancelsTheBatch) {
  const auto task = addCreate(sandbox.file(L"file", 5), ovrtAsk, ptypFile);
  addIdle();
  EXPECT_FALSE(execute(forReal));
  EXPECT_EQ(events.lines().back(), L"Finished(False, True)");
  EXPECT_EQ(stateOf(batch), exstFinished_Cancelled);
  EXPECT_EQ(stateOf(task), exstFinished_Cancelled);
  EXPECT_EQ(currentIndex(), 1);
}

TEST_F(BatchTest, SuccessesWithoutWorkDoNotStopIt) {
  const std::wstring readOnly = sandbox.file(L"read only", 5);
  setReadOnly(readOnly);
  addDelete(sandbox.path(L"missing"));
  addDelete(readOnly);
  addCreate(sandbox.root());
  EXPECT_TRUE(execute(forReal));
  EXPECT_EQ(currentIndex(), 3);
  EXPECT_TRUE(exists(readOnly));
}

TEST_F(BatchTest, AnswersGoBackToTheTask) {
  const std::wstring file = sandbox.file(L"file", 5);
  const std::wstring full = sandbox.folder(L"full");
  sandbox.file(L"full\\inside", 1);
  addCreate(file, ovrtAsk, ptypFile);
  addDelete(full)->put_DeleteNonEmptyFolder(ovrtAsk);
  events.on(L"BeforeOperationOverwrite", sayYes);
  events.on(L"BeforeOperationFolderDelete", sayYes);
  EXPECT_TRUE(execute(forReal));
  EXPECT_THAT(events.lines(),
              ElementsAre(L"Starting()", L"AboutToExecuteOperation(op)",
                          L"BeforeOperationOverwrite(op, " + file + L", " + file + L", by reference: False)",
                          L"ExecutedOperation(op, True, False, Succeeded)", L"AboutToExecuteOperation(op)",
                          L"BeforeOperationFolderDelete(op, " + full + L", by reference: False)",
                          L"ExecutedOperation(op, True, False, Succeeded)", L"Finished(True, False)"));
  EXPECT_EQ(contentOf(file).size(), 0U);
  EXPECT_FALSE(exists(full));
}

TEST_F(BatchTest, StateWhileItRuns) {
  addIdle();
  addIdle();
  std::vector<std::wstring> seen;
  const auto note = [&](const Recorder::Arguments&) {
    seen.push_back(std::to_wstring(stateOf(batch)) + L" " + std::to_wstring(currentIndex()) +
                   (simulating() ? L" simulating" : L""));
  };
  for (const wchar_t* event : {L"Starting", L"AboutToExecuteOperation", L"Finished"}) {
    events.on(event, note);
  }
  execute(simulated);
  EXPECT_THAT(seen, ElementsAre(L"1 0 simulating", L"2 1 simulating", L"2 2 simulating", L"3 2 simulating"));
  seen.clear();
  execute(forReal);
  EXPECT_THAT(seen, ElementsAre(L"1 0", L"2 1", L"2 2", L"3 2"));
}

TEST_F(BatchTest, EveryHandlerGetsTheTaskInAVariableOfItsOwn) {
  const auto task = addCreate(sandbox.file(L"file", 5), ovrtAsk, ptypFile);
  const auto other = create<CFileOperation, _CFileOperation>();
  const auto assign = [&](const Recorder::Arguments& arguments) {
    IDispatch** op = arguments.front()->ppdispVal;
    EXPECT_EQ(*op, task.get());
    (*op)->Release();
    *op = ComPtr<IDispatch>(other.get()).detach();
  };
  Recorder second(batch.get(), __uuidof(__CFileOperationBatch), Recorder::batchEvents());
  const auto drop = [&](const Recorder::Arguments& arguments) {
    IDispatch** op = arguments.front()->ppdispVal;
    EXPECT_EQ(*op, task.get());
    std::exchange(*op, nullptr)->Release();
  };
  for (const wchar_t* event :
       {L"AboutToExecuteOperation", L"BeforeOperationOverwrite", L"ExecutedOperation"}) {
    events.on(event, assign);
    second.on(event, drop);
  }
  EXPECT_FALSE(execute(forReal));
  EXPECT_EQ(second.lines().size(), 5U);
  EXPECT_EQ(stateOf(task), exstFinished_Cancelled);
  EXPECT_EQ(stateOf(other), exstNotStarted);
  expectNoLeak(1000, [&] {
    second.clear();
    execute(forReal);
  });
}

TEST_F(BatchTest, TheConnectionEndsWithTheRun) {
  const auto task = addIdle();
  execute(forReal);
  events.clear();
  VARIANT_BOOL result = VARIANT_FALSE;
  EXPECT_EQ(task->Execute(VARIANT_TRUE, &result), S_OK);
  EXPECT_THAT(events.lines(), IsEmpty());
  // While Finished is raised the last task is still connected.
  events.on(L"Finished", [&](const Recorder::Arguments&) { task->Execute(VARIANT_TRUE, &result); });
  execute(forReal);
  EXPECT_EQ(events.lines().size(), 6U);
}

TEST_F(BatchTest, TheSameTaskMayStandInTheListTwice) {
  const auto task = addIdle();
  put(tasks(), Variant(task.get()));
  EXPECT_TRUE(execute(forReal));
  EXPECT_EQ(events.lines().size(), 6U);
  EXPECT_EQ(currentIndex(), 2);
}

// Drive monitors.

TEST_F(BatchTest, ASimulationWatchesTheDrives) {
  const Sandbox other(folderOnOtherDrive());
  const std::wstring here = sandbox.root().substr(0, 2);
  const std::wstring there = other.root().substr(0, 2);
  addMove(sandbox.file(L"a", 100), other.path(L"a"));
  addCopy(sandbox.file(L"b", 30), other.path(L"b"));
  addDelete(sandbox.file(L"c", 5));
  EXPECT_TRUE(execute(simulated));
  EXPECT_THAT(events.lines(),
              ElementsAre(L"Starting()", L"AboutToExecuteOperation(op)",
                          L"OperationDriveUsageChangeEstimate(op, " + there + L", True, 100)",
                          L"OperationDriveUsageChangeEstimate(op, " + here + L", False, 100)",
                          L"ExecutedOperation(op, True, False, Succeeded)", L"AboutToExecuteOperation(op)",
                          L"OperationDriveUsageChangeEstimate(op, " + there + L", True, 30)",
                          L"ExecutedOperation(op, True, False, Succeeded)", L"AboutToExecuteOperation(op)",
                          L"OperationDriveUsageChangeEstimate(op, " + here + L", False, 5)",
                          L"ExecutedOperation(op, True, False, Succeeded)", L"Finished(True, False)"));
  EXPECT_EQ(count(monitors()), 2);
  const auto filled = monitor(there);
  EXPECT_EQ(read(filled, &_CFakeDrive::get_Delta), 130);
  const auto freed = monitor(here);
  EXPECT_EQ(read(freed, &_CFakeDrive::get_Delta), -105);
  EXPECT_EQ(read(freed, &_CFakeDrive::get_HighTideDelta), 0);
  EXPECT_TRUE(exists(sandbox.path(L"c")));
  // A run for real keeps none, and forgets those of the simulation.
  const auto held = monitors();
  batch->Clear();
  EXPECT_TRUE(execute(forReal));
  EXPECT_EQ(count(held), 0);
}

BOOL WINAPI answerSpace(const wchar_t* /*root*/, ULARGE_INTEGER* available, ULARGE_INTEGER* total,
                        ULARGE_INTEGER* free) {
  available->QuadPart = 10;
  total->QuadPart = std::uint64_t{5} << 40;
  free->QuadPart = std::uint64_t{3} << 40;
  return TRUE;
}

TEST_F(BatchTest, AMonitorCountsWhatIsFreeOnTheWholeDrive) {
  const ImportHook hook(component(), "GetDiskFreeSpaceExW", &answerSpace);
  addCopy(sandbox.file(L"a", 100), sandbox.path(L"b"));
  execute(simulated);
  const auto drive = monitor(sandbox.root().substr(0, 2));
  constexpr double tebibyte = 1099511627776.0;
  EXPECT_EQ(read(drive, &_CFakeDrive::get_Capacity), 5 * tebibyte);
  EXPECT_EQ(read(drive, &_CFakeDrive::get_LowTide), 2 * tebibyte);
  EXPECT_EQ(read(drive, &_CFakeDrive::get_SpaceUsed), 2 * tebibyte + 100);
}

TEST_F(BatchTest, AMonitorStartsFromTheRealDrive) {
  addCopy(sandbox.file(L"a", 100), sandbox.path(L"b"));
  ULARGE_INTEGER available{};
  ULARGE_INTEGER total{};
  ULARGE_INTEGER free{};
  ASSERT_NE(GetDiskFreeSpaceExW(sandbox.root().c_str(), &available, &total, &free), FALSE);
  execute(simulated);
  const auto drive = monitor(sandbox.root().substr(0, 2));
  EXPECT_EQ(read(drive, &_CFakeDrive::get_Capacity), static_cast<double>(total.QuadPart));
  EXPECT_EQ(read(drive, &_CFakeDrive::get_SafetyMargin), 0);
  // Other programs use the disk meanwhile.
  constexpr double tolerance = 256.0 * 1048576;
  EXPECT_NEAR(read(drive, &_CFakeDrive::get_LowTide), static_cast<double>(total.QuadPart - free.QuadPart),
              tolerance);
  EXPECT_EQ(read(drive, &_CFakeDrive::get_HighTide), read(drive, &_CFakeDrive::get_LowTide) + 100);
  Bstr name;
  drive->get_Name(name.out());
  EXPECT_EQ(name.view(), sandbox.root().substr(0, 2));
}

TEST_F(BatchTest, DriveNamesAreComparedWithoutSpacesAndCase) {
  const std::wstring lower = L"c:" + sandbox.root().substr(2);
  const std::wstring upper = L"C:" + sandbox.root().substr(2);
  const std::wstring file = sandbox.file(L"a", 100);
  const auto task = ClientTask::make({{L"c:", true, 100}, {L"  C: ", true, 100}, {L"C:", false, 50}});
  put(tasks(), Variant(task.get()));
  addCopy(file, lower + L"\\b");
  addCopy(file, upper + L"\\c");
  EXPECT_TRUE(execute(simulated));
  EXPECT_EQ(count(monitors()), 1);
  const auto drive = monitor(L"C:");
  EXPECT_EQ(read(drive, &_CFakeDrive::get_Delta), 350);
  Bstr name;
  drive->get_Name(name.out());
  EXPECT_EQ(name.view(), L"C:");
  EXPECT_EQ(events.lines().at(1), L"OperationDriveUsageChangeEstimate(op, c:, True, 100)");
  EXPECT_EQ(events.lines().at(2), L"OperationDriveUsageChangeEstimate(op,   C: , True, 100)");
}

TEST_F(BatchTest, ADriveThatCannotBeHadIsMonitoredFromNothing) {
  const std::vector<std::wstring> paths{L"1:\\new", L"\\\\no server\\share\\new", L"relative new"};
  for (const auto& path : paths) {
    addCopy(sandbox.file(L"a", 100), path);
  }
  EXPECT_TRUE(execute(simulated));
  EXPECT_EQ(count(monitors()), 3);
  for (const wchar_t* key : {L"1:", L"\\\\NO SERVER\\SHARE", L""}) {
    const auto drive = monitor(key);
    ASSERT_TRUE(drive) << key;
    EXPECT_EQ(read(drive, &_CFakeDrive::get_Capacity), 0);
    EXPECT_EQ(read(drive, &_CFakeDrive::get_LowTide), 0);
    EXPECT_EQ(read(drive, &_CFakeDrive::get_Delta), 100);
  }
}

TEST_F(BatchTest, TheMonitorIsUpToDateWhenTheEventComes) {
  addCopy(sandbox.file(L"a", 100), sandbox.path(L"b"));
  double delta = -1;
  events.on(L"OperationDriveUsageChangeEstimate", [&](const Recorder::Arguments&) {
    delta = read(monitor(sandbox.root().substr(0, 2)), &_CFakeDrive::get_Delta);
  });
  execute(simulated);
  EXPECT_EQ(delta, 100);
}

TEST_F(BatchTest, AMonitorIsFoundByTheNameThatItBears) {
  const std::wstring file = sandbox.file(L"a", 100);
  const auto own = create<CFakeDrive, _CFakeDrive>();
  own->put_Name(Bstr(L" c:  ").get());
  addCopy(file, L"C:\\b");
  events.on(L"Starting", [&](const Recorder::Arguments&) {
    put(monitors(), Variant(L"no drive"));
    put(monitors(), Variant(own.get()));
  });
  EXPECT_TRUE(execute(simulated));
  EXPECT_EQ(count(monitors()), 2);
  EXPECT_EQ(read(own, &_CFakeDrive::get_Delta), 100);
  // One whose key is taken is not watched, and the run goes on.
  events.on(L"OperationDriveUsageChangeEstimate",
            [&](const Recorder::Arguments&) { monitor(L"C:")->put_Name(Bstr(L"renamed").get()); });
  events.on(L"Starting", [](const Recorder::Arguments&) {});
  addCopy(file, L"C:\\c");
  EXPECT_TRUE(execute(simulated));
  EXPECT_EQ(count(monitors()), 1);
  EXPECT_EQ(events.lines().size(), 8U);
}

TEST_F(BatchTest, AFullDriveDoesNotStopASimulation) {
  addCopy(sandbox.file(L"a", 100), L"1:\\b");
  EXPECT_TRUE(execute(simulated));
  VARIANT_BOOL full = VARIANT_FALSE;
  EXPECT_EQ(monitor(L"1:")->get_TooFull(&full), S_OK);
  EXPECT_EQ(full, VARIANT_TRUE);
  EXPECT_EQ(stateOf(batch), exstFinished_OK);
}

// Tasks of the client's own, and things that are no tasks.

TEST_F(BatchTest, TasksOfTheClientsOwnRun) {
  const auto task = ClientTask::make({{L"C:", true, 10}});
  put(tasks(), Variant(task.get()));
  EXPECT_TRUE(execute(simulated));
  EXPECT_THAT(events.lines(),
              ElementsAre(L"Starting()", L"OperationDriveUsageChangeEstimate(op, C:, True, 10)",
                          L"Finished(True, False)"));
  task->fail(E_FAIL);
  EXPECT_FALSE(execute(simulated));
  EXPECT_EQ(stateOf(batch), exstFinished_Error);
  task->cancel();
  EXPECT_FALSE(execute(simulated));
  EXPECT_EQ(stateOf(batch), exstFinished_Cancelled);
}

TEST_F(BatchTest, ATaskThatKeepsItsSinkReachesNobodyAfterwards) {
  const auto task = ClientTask::make({});
  task->ignoreUnadvise();
  put(tasks(), Variant(task.get()));
  addIdle();
  EXPECT_TRUE(execute(simulated));
  events.clear();
  task->raiseEstimate({L"C:", true, 10});
  EXPECT_THAT(events.lines(), IsEmpty());
  late = Late(nullptr);
  events.disconnect();
  batch.reset();
  task->raiseEstimate({L"C:", true, 10});
  task->forgetSinks();
}

TEST_F(BatchTest, MalformedEventsOfATaskHarmNobody) {
  const auto task = ClientTask::make({});
  put(tasks(), Variant(task.get()));
  std::vector<HRESULT> results;
  events.on(L"Starting", [&](const Recorder::Arguments&) {
    task->whenExecuted([&] {
      for (const DISPID event : {0, 1, 2, 3, 4, 5, 6, -1}) {
        results.push_back(task->raiseMalformed(event));
      }
    });
  });
  EXPECT_TRUE(execute(simulated));
  EXPECT_EQ(count(monitors()), 0);
  EXPECT_EQ(results.size(), 8U);
  EXPECT_EQ(results.at(2), DISP_E_BADPARAMCOUNT);
}

TEST_F(BatchTest, ATaskWithoutEventsRunsSilently) {
  const auto task = ClientTask::make({{L"C:", true, 10}});
  task->hideEvents();
  put(tasks(), Variant(task.get()));
  EXPECT_TRUE(execute(simulated));
  EXPECT_THAT(events.lines(), ElementsAre(L"Starting()", L"Finished(True, False)"));
}

TEST_F(BatchTest, WhatIsNoOperationFailsWhenItsTurnComes) {
  const auto collection = create<Collection, _Collection>();
  for (const Variant& thing :
       {Variant(L"text"), Variant(5L), Variant(), Variant(static_cast<IDispatch*>(nullptr)),
        Variant(static_cast<IDispatch*>(collection.get()))}) {
    batch->Clear();
    addIdle();
    put(tasks(), thing);
    const auto last = addIdle();
    EXPECT_FALSE(execute(forReal));
    EXPECT_EQ(events.lines().size(), 4U);
    EXPECT_EQ(events.lines().back(), L"Finished(False, False)");
    EXPECT_EQ(stateOf(batch), exstFinished_Error);
    EXPECT_EQ(currentIndex(), 2);
    EXPECT_FALSE(currentTask());
    EXPECT_EQ(stateOf(last), exstNotStarted);
    EXPECT_EQ(textIn(late.get(L"AsString", Variant(false))),
              L"Batch (3 tasks)  State: exstFinished_Error\r\n\r\nDeleting " + sandbox.path(L"missing") +
                  L" \r\n\r\nDeleting " + sandbox.path(L"missing") + L" ");
    EXPECT_EQ(batch->put_State(exstNotStarted), S_OK);
    EXPECT_EQ(batch->put_StatusHWnd(currentIndex() + count(tasks())), S_OK);
  }
}

// Handlers that change what is going on.

TEST_F(BatchTest, ATaskThatIsGoneEndsTheRun) {
  addIdle();
  const auto second = addIdle();
  events.on(L"AboutToExecuteOperation", [&](const Recorder::Arguments&) { batch->Clear(); });
  EXPECT_FALSE(execute(forReal));
  EXPECT_THAT(events.lines(), ElementsAre(L"Starting()", L"AboutToExecuteOperation(op)",
                                          L"ExecutedOperation(op, True, False, Source already deleted)",
                                          L"Finished(False, False)"));
  EXPECT_EQ(stateOf(batch), exstFinished_Error);
  EXPECT_EQ(stateOf(second), exstNotStarted);
  EXPECT_EQ(currentIndex(), 2);
  EXPECT_FALSE(currentTask());
}

TEST_F(BatchTest, AClearedTaskThatNobodyElseHoldsFinishesItsRun) {
  addIdle();
  events.on(L"AboutToExecuteOperation", [&](const Recorder::Arguments&) { batch->Clear(); });
  EXPECT_TRUE(execute(forReal));
  EXPECT_EQ(events.lines().size(), 4U);
  EXPECT_FALSE(currentTask());
}

TEST_F(BatchTest, TasksAddedByAHandlerWaitForTheNextRun) {
  addIdle();
  events.on(L"AboutToExecuteOperation", [&](const Recorder::Arguments&) { addIdle(); });
  EXPECT_TRUE(execute(forReal));
  EXPECT_EQ(count(tasks()), 2);
  EXPECT_EQ(currentIndex(), 1);
  EXPECT_TRUE(execute(forReal));
  EXPECT_EQ(currentIndex(), 2);
  // Those that are there when Starting has been raised belong to the run.
  events.on(L"AboutToExecuteOperation", [](const Recorder::Arguments&) {});
  events.on(L"Starting", [&](const Recorder::Arguments&) { addIdle(); });
  EXPECT_TRUE(execute(forReal));
  EXPECT_EQ(currentIndex(), 5);
}

TEST_F(BatchTest, AHandlerMayExecuteTheBatchAgain) {
  const auto first = addIdle();
  const auto second = addIdle();
  int runs = 0;
  events.on(L"AboutToExecuteOperation", [&](const Recorder::Arguments&) {
    if (++runs == 1) {
      VARIANT_BOOL result = VARIANT_FALSE;
      EXPECT_EQ(batch->Execute(VARIANT_TRUE, &result), S_OK);
      EXPECT_EQ(result, VARIANT_TRUE);
    }
  });
  EXPECT_TRUE(execute(simulated));
  // The inner run ends the connection to the task that the outer one is in.
  EXPECT_THAT(events.lines(), ElementsAre(L"Starting()", L"AboutToExecuteOperation(op)", L"Starting()",
                                          L"AboutToExecuteOperation(op)",
                                          L"ExecutedOperation(op, True, False, Source already deleted)",
                                          L"AboutToExecuteOperation(op)",
                                          L"ExecutedOperation(op, True, False, Source already deleted)",
                                          L"Finished(True, False)", L"AboutToExecuteOperation(op)",
                                          L"ExecutedOperation(op, True, False, Source already deleted)",
                                          L"Finished(True, False)"));
  EXPECT_EQ(stateOf(batch), exstFinished_OK);
  EXPECT_EQ(currentIndex(), 2);
}

TEST_F(BatchTest, ASimulatedTaskStaysSimulatedWhateverRunsInside) {
  const std::wstring file = sandbox.file(L"file", 5);
  const auto task = addCreate(file, ovrtAsk, ptypFile);
  int depth = 0;
  events.on(L"BeforeOperationOverwrite", [&](const Recorder::Arguments& arguments) {
    if (depth++ == 0) {
      VARIANT_BOOL result = VARIANT_FALSE;
      task->put_Overwrite(ovrtNo);
      batch->Execute(VARIANT_TRUE, &result);
    }
    sayYes(arguments);
  });
  EXPECT_TRUE(execute(simulated));
  EXPECT_EQ(contentOf(file).size(), 5U);
}

TEST_F(BatchTest, AHandlerMayReleaseTheBatch) {
  for (const wchar_t* event : {L"Starting", L"AboutToExecuteOperation", L"OperationDriveUsageChangeEstimate",
                               L"ExecutedOperation", L"Finished"}) {
    auto owned = create<CFileOperationBatch, _CFileOperationBatch>();
    ComPtr<_CFileOperation> task;
    owned->AddCreate(Bstr(sandbox.path(L"new")).get(), ovrtNo, ptypFolder, task.out());
    task.reset();
    Recorder recorder(owned.get(), __uuidof(__CFileOperationBatch), Recorder::batchEvents());
    recorder.on(event, [&](const Recorder::Arguments&) {
      recorder.disconnect();
      owned.reset();
    });
    VARIANT_BOOL result = VARIANT_FALSE;
    EXPECT_EQ(owned.get()->Execute(VARIANT_FALSE, &result), S_OK);
    EXPECT_EQ(result, VARIANT_TRUE);
    EXPECT_FALSE(owned);
  }
}

TEST_F(BatchTest, AHandlerMaySetTheState) {
  const auto task = addIdle();
  const auto next = addIdle();
  events.on(L"AboutToExecuteOperation", [&](const Recorder::Arguments&) {
    batch->put_State(exstNotStarted);
    EXPECT_EQ(stateOf(task), exstNotStarted);
  });
  EXPECT_TRUE(execute(forReal));
  EXPECT_EQ(stateOf(batch), exstFinished_OK);
  EXPECT_EQ(stateOf(next), exstFinished_OK);
}

TEST_F(BatchTest, AHandlerMayDisconnect) {
  addIdle();
  events.on(L"AboutToExecuteOperation", [&](const Recorder::Arguments&) { events.disconnect(); });
  EXPECT_TRUE(execute(forReal));
  EXPECT_EQ(events.lines().size(), 2U);
}

// Limits.

TEST_F(BatchTest, RunsAsManyTasksAsItCanCount) {
  const auto idle = addIdle();
  const auto list = tasks();
  for (long i = 1; i < 32767; ++i) {
    put(list, Variant(idle.get()));
  }
  events.disconnect();
  EXPECT_TRUE(execute(simulated));
  EXPECT_EQ(currentIndex(), 32767);

  Recorder recorder(batch.get(), __uuidof(__CFileOperationBatch), Recorder::batchEvents());
  idle->put_State(exstNotStarted);
  addIdle();
  VARIANT_BOOL result = VARIANT_TRUE;
  EXPECT_EQ(batch->Execute(VARIANT_FALSE, &result), overflow);
  EXPECT_EQ(result, VARIANT_FALSE);
  EXPECT_THAT(recorder.lines(), ElementsAre(L"Starting()"));
  EXPECT_EQ(stateOf(idle), exstNotStarted);
  EXPECT_EQ(stateOf(batch), exstNotStarted);
  EXPECT_EQ(currentIndex(), 0);
  EXPECT_FALSE(simulating());
  const Outcome outcome = late.call(L"Execute", Variant(true));
  EXPECT_EQ(outcome.scode, overflow);
  EXPECT_EQ(outcome.description, L"Overflow");
}

TEST_F(BatchTest, AnswersByName) {
  const std::wstring path = sandbox.path(L"by name");
  Variant script(path);
  late.invoke(L"AddCreate", DISPATCH_METHOD, {byRef(script)});
  EXPECT_EQ(late.get(L"Execute", Variant(false)).get().boolVal, VARIANT_TRUE);
  EXPECT_EQ(late.get(L"State").get().lVal, exstFinished_OK);
  EXPECT_EQ(late.get(L"CurrentTaskIndex").get().iVal, 1);
  EXPECT_EQ(late.get(L"CurrentTask").type(), VT_DISPATCH);
  EXPECT_EQ(Late(late.get(L"DriveMonitors").get().pdispVal).get(L"Count").get().lVal, 1);
  EXPECT_EQ(Late(late.get(L"Tasks").get().pdispVal).get(L"Count").get().lVal, 1);
  EXPECT_EQ(late.get(L"Simulating").get().boolVal, VARIANT_FALSE);
  EXPECT_EQ(late.call(L"Clear").code, S_OK);
  EXPECT_EQ(Late(late.get(L"Tasks").get().pdispVal).get(L"Count").get().lVal, 0);
}

TEST_F(BatchTest, RefusesNullResults) {
  EXPECT_EQ(batch->Execute(VARIANT_TRUE, nullptr), E_POINTER);
  EXPECT_EQ(batch->Add(nullptr), E_POINTER);
  EXPECT_EQ(batch->get_Tasks(nullptr), E_POINTER);
}

TEST_F(BatchTest, NoMemberLeaks) {
  const Variant path(std::wstring_view(sandbox.path(L"missing")));
  for (const wchar_t* method : {L"AddMove", L"AddCopy"}) {
    expectNoLeak(10000, [&] {
      late.call(method, path, path);
      late.call(L"Clear");
    });
  }
  for (const wchar_t* method : {L"AddDelete", L"AddCreate"}) {
    expectNoLeak(10000, [&] {
      late.call(method, path);
      late.call(L"Clear");
    });
  }
  expectNoLeak(10000, [&] {
    late.call(L"Add");
    late.call(L"Clear");
  });
  late.call(L"AddDelete", path);
  for (const bool real : {true, false}) {
    expectNoLeak(10000, [&] {
      late.call(L"Execute", Variant(real));
      events.clear();
    });
  }
  for (const wchar_t* property : {L"Tasks", L"DriveMonitors", L"Simulating", L"CurrentTaskIndex",
                                  L"CurrentTask", L"State", L"StatusHWnd"}) {
    expectNoLeak(10000, [&] { late.get(property); });
  }
  for (const wchar_t* property : {L"State", L"StatusHWnd"}) {
    expectNoLeak(10000, [&] {
      late.put(property, Variant(L"2"));
      late.put(property, Variant(L"1"));
    });
  }
  expectNoLeak(10000, [&] { late.get(L"AsString", Variant(true)); });
  expectNoLeak(10000, [&] { late.get(L"StateAsString", Variant(2L), Variant(false)); });
}

TEST_F(BatchTest, WholeBatchesLeakNothing) {
  const std::wstring file = sandbox.file(L"file", 5);
  const std::wstring target = sandbox.path(L"target");
  expectNoLeak(2000, [&] {
    const auto made = create<CFileOperationBatch, _CFileOperationBatch>();
    Recorder recorder(made.get(), __uuidof(__CFileOperationBatch), Recorder::batchEvents());
    ComPtr<_CFileOperation> task;
    made->Add(task.out());
    made->AddMove(Bstr(file).get(), Bstr(target).get(), ovrtAsk, ptypAny, task.out());
    Bstr text;
    made->get_AsString(VARIANT_TRUE, text.out());
    made->Clear();
    made->AddMove(Bstr(file).get(), Bstr(target).get(), ovrtAsk, ptypAny, task.out());
    made->AddCreate(Bstr(file).get(), ovrtAsk, ptypFile, task.out());
    VARIANT_BOOL result = VARIANT_FALSE;
    made->Execute(VARIANT_FALSE, &result);
    made->get_CurrentTask(task.out());
    ComPtr<_Collection> collection;
    made->get_DriveMonitors(collection.out());
  });
}

}  // namespace
}  // namespace zeq::test
