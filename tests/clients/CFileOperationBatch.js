// A script plans a batch, simulates it, reads the drives and runs it for real: every member, late-bound.
var fso = new ActiveXObject("Scripting.FileSystemObject");
var batch = new ActiveXObject("ZEQUtility2.CFileOperationBatch");
var folder = scratch();

equal("a new batch has no tasks", batch.Tasks.Count, 0);
equal("and watches no drives", batch.DriveMonitors.Count, 0);
equal("its state", batch.State, 1);
equal("its position", batch.CurrentTaskIndex, 0);
equal("its task", batch.CurrentTask === null, true);
equal("it is not simulating", batch.Simulating, false);
equal("its status window", batch.StatusHWnd, 0);
equal("states have words", batch.StateAsString(1, true), "Not started");
equal("states have names", batch.StateAsString(1, false), "exstNotStarted");

var target = folder + "\\made";
batch.AddCreate(target);
batch.AddCreate(target + "\\a.txt", 1, 1);
batch.AddCopy(target + "\\a.txt", target + "\\b.txt");
batch.AddMove(target + "\\b.txt", target + "\\c.txt", 2, 1);
batch.AddDelete(target + "\\a.txt");
equal("a plain task", batch.Add().AsString, "### Operation Uninitialised ###");
batch.Tasks.Remove(6);
equal("five tasks are left", batch.Tasks.Count, 5);
equal("the description", batch.AsString(false).split("\r\n")[2], "Creating folder " + target + " ");

var sum = 0;
batch.StatusHWnd = 7;
for (var tasks = new Enumerator(batch.Tasks); !tasks.atEnd(); tasks.moveNext()) {
  sum += tasks.item().StatusHWnd;
}
equal("every task has the window", sum, 35);
batch.StatusHWnd = 0;

equal("a simulation that needs what is not there yet fails", batch.Execute(false), false);
equal("at the copy", batch.CurrentTaskIndex, 3);
equal("one drive was touched", batch.DriveMonitors.Count, 1);
equal("under its name", batch.DriveMonitors.Item(1).Name, folder.substr(0, 2).toUpperCase());
equal("the run succeeds", batch.Execute(true), true);
equal("its state", batch.State, 3);
equal("the last task is at hand", batch.CurrentTask.OpType, 3);
equal("the files are where they should be", fso.GetFolder(target).Files.Count, 1);
equal("the moved one is there", fso.FileExists(target + "\\c.txt"), true);
batch.State = 1;
equal("a reset resets the tasks", batch.Tasks.Item(1).State, 1);
batch.Clear();
equal("a cleared batch has no tasks", batch.Tasks.Count, 0);

refused("a required argument left out is refused", function () { batch.AddMove("only one"); });
refused("a property that cannot be set is refused", function () { batch.CurrentTaskIndex = 3; });
