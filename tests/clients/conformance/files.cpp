// Files, folders, drives, attachments and operations on them.

#include "Scenario.h"

namespace conformance {
namespace {

/// A folder below the scratch folder, made new.
std::wstring makeFolder(const std::wstring& name) {
  std::wstring path = scratchFolder() + L"\\" + name;
  if (CreateDirectoryW(path.c_str(), nullptr) == FALSE) {
    throw Failure("a folder cannot be made");
  }
  return path;
}

bool exists(const std::wstring& path) {
  return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

const Scenario pathsScenario(L"CZEQFileSystemObject's paths", [] {
  const Object<_CZEQFileSystemObject> files(L"CZEQFileSystemObject");
  Value folder = L"C:\\docs";
  Value name = L"plan.txt";
  Value path = L"C:\\docs\\plan.txt";
  equal(L"a path is built", CALL(files, FSO_BuildPath, ref(folder), ref(name)), path);
  equal(L"an absolute path", CALL(files, FSO_GetAbsolutePathName, ref(path)), path);
  equal(L"a base name", CALL(files, FSO_GetBaseName, ref(path)), L"plan");
  equal(L"an extension", CALL(files, FSO_GetExtensionName, ref(path)), L"txt");
  equal(L"a file name", CALL(files, FSO_GetFileName, ref(path)), L"plan.txt");
  equal(L"a parent folder", CALL(files, FSO_GetParentFolderName, ref(path)), L"C:\\docs");
  equal(L"a drive name", CALL(files, FSO_GetDriveName, ref(path)), L"C:");
  Value base = L"";
  Value extension = L"";
  folder = L"";
  equal(L"a path is split", CALL(files, FSO_SplitFullFilePath, path, ref(folder), ref(base), ref(extension)),
        true);
  equal(L"its folder comes back", folder.text().substr(0, 7), L"C:\\docs");
  equal(L"its base name comes back", base, L"plan");
  equal(L"its extension comes back", extension, L"txt");
  equal(L"a sensible name", CALL(files, FSO_IsBaseFileNameSensible, L"a?b"), false);
  equal(L"the Windows folder", CALL(files, FSO_GetSpecialFolderLocation, CSIDL_WINDOWS).text().empty(),
        false);
  equal(L"the folder of temporary files", CALL(files, FSO_GetTempPath).text().empty(), false);
});

const Scenario queriesScenario(L"CZEQFileSystemObject's queries", [] {
  const Object<_CZEQFileSystemObject> files(L"CZEQFileSystemObject");
  Value folder = makeFolder(L"queries");
  Value file = writeFile(L"queries\\a.txt", "12345");
  Value drive = file.text().substr(0, 2);
  makeFolder(L"queries\\sub");
  equal(L"a file exists", CALL(files, FSO_FileExists, ref(file)), true);
  equal(L"a folder exists", CALL(files, FSO_FolderExists, ref(folder)), true);
  equal(L"a drive exists", CALL(files, FSO_DriveExists, ref(drive)), true);
  Value created = Value(0.0).as(VT_DATE);
  Value changed = created;
  equal(L"the date of creation is read", CALL(files, FSO_GetFileCreationDate, file, ref(created)), true);
  equal(L"the date of change is read", CALL(files, FSO_GetFileLastModificationDate, file, ref(changed)),
        true);
  equal(L"both dates come back", created.get().date > 40000 && changed.get().date > 40000, true);
  equal(L"a file's size", CALL(files, FSO_GetFileSize, file).as(VT_R8).get().dblVal > 0, true);
  equal(L"a folder's size", CALL(files, FSO_GetFolderSize, folder).as(VT_R8).get().dblVal > 0, true);
  equal(L"a drive's size", CALL(files, FSO_GetDriveTotalSize, drive).as(VT_R8).get().dblVal > 0, true);
  equal(L"a drive's space", CALL(files, FSO_GetDriveAvailableSpace, drive).as(VT_R8).get().dblVal > 0, true);
  equal(L"a file object", CALL(files, FSO_GetFile, file).object() != nullptr, true);
  equal(L"a folder object", CALL(files, FSO_GetFolder, folder).object() != nullptr, true);
  equal(L"a file type is a text", CALL(files, FSO_GetFileType, file).get().vt == VT_BSTR, true);
  Value list = Object<_Collection>(L"Collection");
  equal(L"files are listed", CALL(files, FSO_GetFiles, folder, ref(list)), 1);
  equal(L"folders are listed", CALL(files, FSO_GetFolders, folder, ref(list)), 1);
  equal(L"both are in the list", GET(Object<_Collection>(list), Count), 2);
});

const Scenario changesScenario(L"CZEQFileSystemObject's changes", [] {
  const Object<_CZEQFileSystemObject> files(L"CZEQFileSystemObject");
  const std::wstring folder = makeFolder(L"changes");
  equal(L"folders are made", CALL(files, FSO_CreateFolderPath, folder + L"\\x\\y"), true);
  equal(L"the folders are there", exists(folder + L"\\x\\y"), true);
  Value file = writeFile(L"changes\\a.txt", "a");
  const std::wstring successor = writeFile(L"changes\\b.txt", "b");
  equal(L"a file is archived", CALL(files, FSO_ArchiveAndReplaceFile, file, successor), true);
  equal(L"a temporary name", CALL(files, FSO_GetTempFileName, folder, 5).text().empty(), false);
  equal(L"a name for a file", CALL(files, FSO_SuggestFileChild, folder, L"new", L"txt", 5).text().empty(),
        false);
  equal(L"a name for a folder", CALL(files, FSO_SuggestFolderChild, folder, L"new", 5).text().empty(), false);
  Value force = false;
  equal(L"a file is deleted", CALL(files, FSO_DeleteFile, ref(file), ref(force)), true);
  equal(L"it is gone", exists(file.text()), false);
});

const Scenario attachmentScenario(L"CAttachment", [] {
  const Object<_CAttachment> attachment(L"CAttachment");
  CALL(attachment, Create, L"C:\\docs\\plan.none");
  equal(L"the path", GET(attachment, FullPath), L"C:\\docs\\plan.none");
  equal(L"the folder", GET(attachment, Location), L"C:\\docs");
  equal(L"the name", GET(attachment, Name), L"plan");
  equal(L"the extension", GET(attachment, Extension), L"none");
  equal(L"the type is a text", GET(attachment, Association).get().vt == VT_BSTR, true);
  equal(L"there is no icon", GET(attachment, IconKey), L"");
  equal(L"a missing file is not opened", CALL(attachment, Execute), false);
  PUT(attachment, FullPath, scratchFolder());
  PUT(attachment, Location, L"D:\\");
  PUT(attachment, Name, L"other");
  PUT(attachment, Extension, L"doc");
  PUT(attachment, Association, L"Plan");
  PUT(attachment, IconKey, L"paper");
  equal(L"what is shown can be changed", GET(attachment, Name), L"other");
});

const Scenario driveScenario(L"CFakeDrive", [] {
  const Object<_CFakeDrive> drive(L"CFakeDrive");
  PUT(drive, Name, L"C:");
  PUT(drive, Capacity, 1000.0);
  PUT(drive, SpaceUsed, 900.0);
  PUT(drive, SafetyMargin, 50.0);
  CALL(drive, UseBytes, 51.0);
  CALL(drive, FreeBytes, 500.0);
  equal(L"the name is kept", GET(drive, Name), L"C:");
  equal(L"the capacity is kept", GET(drive, Capacity), 1000);
  equal(L"the margin is kept", GET(drive, SafetyMargin), 50);
  equal(L"space used", GET(drive, SpaceUsed), 451);
  equal(L"free space", GET(drive, FreeSpace), 549);
  equal(L"the balance", GET(drive, Delta), -449);
  equal(L"the low tide", GET(drive, LowTide), 451);
  equal(L"the high tide", GET(drive, HighTide), 951);
  equal(L"the low tide's balance", GET(drive, LowTideDelta), -449);
  equal(L"the high tide's balance", GET(drive, HighTideDelta), 51);
  equal(L"it was too full", GET(drive, TooFull), true);
  equal(L"it describes itself", GET(drive, AsString).text().substr(0, 4), L"[C:]");
  CALL(drive, ResetLimits);
  equal(L"a reset clears the balance", GET(drive, Delta), 0);
});

const Scenario operationScenario(L"CFileOperation", [] {
  const Object<_CFileOperation> task(L"CFileOperation");
  const std::wstring folder = makeFolder(L"operation");
  equal(L"a move is accepted", CALL(task, SetMove, L"C:\\a", L"C:\\b", ovrtNo, ptypAny), true);
  equal(L"a copy is accepted", CALL(task, SetCopy, L"C:\\a", L"C:\\b", ovrtAsk, ptypFile), true);
  equal(L"a delete is accepted", CALL(task, SetDelete, L"C:\\a", ptypAny), true);
  equal(L"a create is accepted", CALL(task, SetCreate, folder + L"\\made", ovrtNo, ptypFolder), true);
  equal(L"its type", GET(task, OpType), otypCreate);
  equal(L"its policy", GET(task, Overwrite), ovrtNo);
  equal(L"its parameter type", GET(task, ParameterType), ptypFolder);
  equal(L"its path", GET(task, Parameter, 1), folder + L"\\made");
  equal(L"its text", GET(task, AsString, false, L"", L"").text().substr(0, 8), L"Creating");
  equal(L"a state's name", CALL(task, StateAsString, exstFinished_OK, false), L"exstFinished_OK");
  const Listener events(task, DIID___CFileOperation, true);
  equal(L"it runs", CALL(task, Execute, true), true);
  equal(L"the folder is there", exists(folder + L"\\made"), true);
  equal(L"events were raised", events.count() >= 2, true);
  equal(L"its state", GET(task, State), exstFinished_OK);
  equal(L"its progress", GET(task, PercentComplete), 100);
  equal(L"it is not simulating", GET(task, Simulating), false);
  const std::wstring file = writeFile(L"operation\\made\\a.txt", "0123456789");
  CALL(task, SetCreate, file, ovrtAsk, ptypFile);
  equal(L"a file is emptied if the client agrees", CALL(task, Execute, true), true);
  CALL(task, SetDelete, folder + L"\\made", ptypAny);
  PUT(task, DeleteNonEmptyFolder, ovrtAsk);
  equal(L"a dry run deletes nothing", CALL(task, Execute, false), true);
  equal(L"the file is still there", exists(file), true);
  equal(L"a folder is deleted if the client agrees", CALL(task, Execute, true), true);
  equal(L"the folder is gone", exists(folder + L"\\made"), false);
  PUT(task, OpType, otypMove);
  PUT(task, Overwrite, ovrtYes);
  PUT(task, OverRideReadOnly, true);
  PUT(task, DeleteNonEmptyFolder, ovrtAsk);
  PUT(task, ParameterType, ptypFile);
  PUT(task, Parameter, 2, L"D:\\x");
  PUT(task, State, exstNotStarted);
  PUT(task, StatusHWnd, 7);
  equal(L"its read-only flag is kept", GET(task, OverRideReadOnly), true);
  equal(L"its folder policy is kept", GET(task, DeleteNonEmptyFolder), ovrtAsk);
  equal(L"its window is kept", GET(task, StatusHWnd), 7);
  equal(L"its second path is kept", GET(task, Parameter, 2), L"D:\\x");
});

const Scenario batchScenario(L"CFileOperationBatch", [] {
  const Object<_CFileOperationBatch> batch(L"CFileOperationBatch");
  const std::wstring folder = makeFolder(L"batch");
  const std::wstring file = writeFile(L"batch\\a.txt", "0123456789");
  CALL(batch, AddCreate, folder + L"\\made", ovrtNo, ptypFolder);
  CALL(batch, AddCopy, file, folder + L"\\made\\copy.txt", ovrtNo, ptypAny);
  CALL(batch, AddMove, file, folder + L"\\made\\moved.txt", ovrtNo, ptypFile);
  CALL(batch, AddDelete, folder + L"\\made\\copy.txt", ptypAny);
  const Object<_CFileOperation> added(CALL(batch, Add));
  equal(L"a new task is not set up", GET(added, OpType), otypNull);
  const Object<_Collection> tasks(GET(batch, Tasks));
  CALL(tasks, Remove, 5);
  CALL(batch, AddCreate, folder + L"\\made\\moved.txt", ovrtAsk, ptypFile);
  CALL(batch, AddDelete, makeFolder(L"batch\\full"), ptypAny);
  writeFile(L"batch\\full\\b.txt", "");
  PUT(Object<_CFileOperation>(GET(tasks, Item, 6)), DeleteNonEmptyFolder, ovrtAsk);
  const Listener events(batch, DIID___CFileOperationBatch, true);
  PUT(batch, StatusHWnd, 0);
  equal(L"its window", GET(batch, StatusHWnd), 0);
  equal(L"it is not simulating", GET(batch, Simulating), false);
  equal(L"the dry run succeeds", CALL(batch, Execute, false), true);
  equal(L"nothing was made", exists(folder + L"\\made"), false);
  equal(L"one drive is watched", GET(Object<_Collection>(GET(batch, DriveMonitors)), Count), 1);
  equal(L"the run succeeds", CALL(batch, Execute, true), true);
  equal(L"the file was moved", exists(folder + L"\\made\\moved.txt") && !exists(file), true);
  equal(L"every task raised events", events.count() >= 10, true);
  equal(L"its state", GET(batch, State), exstFinished_OK);
  equal(L"the full folder was deleted", exists(folder + L"\\full"), false);
  equal(L"its position", GET(batch, CurrentTaskIndex), 6);
  equal(L"its task", GET(batch, CurrentTask), GET(tasks, Item, 6));
  equal(L"a state in words", CALL(batch, StateAsString, exstFinished_Cancelled, true), L"Cancelled");
  PUT(batch, State, exstNotStarted);
  equal(L"it describes itself", GET(batch, AsString, false).text().substr(0, 15), L"Batch (6 tasks)");
  CALL(batch, Clear);
  equal(L"no task is left", GET(tasks, Count), 0);
});

}  // namespace
}  // namespace conformance
