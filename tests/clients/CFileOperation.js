// A script sets up single operations, simulates them and runs them for real: every member, late-bound.
var fso = new ActiveXObject("Scripting.FileSystemObject");
var op = new ActiveXObject("ZEQUtility2.CFileOperation");
var folder = scratch();

equal("a new operation is not set up", op.AsString, "### Operation Uninitialised ###");
equal("its type", op.OpType, 0);
equal("its state", op.State, 1);
equal("its overwrite policy", op.Overwrite, 1);
equal("its folder policy", op.DeleteNonEmptyFolder, 1);
equal("its parameter type", op.ParameterType, 3);
equal("its read-only flag", op.OverRideReadOnly, false);
equal("its status window", op.StatusHWnd, 0);
equal("its progress", op.PercentComplete, 0);
equal("it is not simulating", op.Simulating, false);

equal("a move is accepted", op.SetMove("C:\\a.txt", "D:\\b.txt"), true);
equal("a move describes itself", op.AsString,
      "Moving C:\\a.txt to D:\\b.txt [Don't overwrite] CurrentState: Not started");
equal("in short", op.AsString(false), "Moving C:\\a.txt to D:\\b.txt ");
equal("a copy is accepted", op.SetCopy("C:\\a.txt", "D:\\b.txt", 3, 1), true);
equal("its policy is set", op.Overwrite, 3);
equal("a delete is accepted", op.SetDelete("C:\\a.txt"), true);
equal("a delete has one path", op.Parameter(1) + op.Parameter(2), "C:\\a.txt");
equal("a create of anything is refused", op.SetCreate("D:\\b.txt", 2, 3), false);
equal("a create is accepted", op.SetCreate("D:\\b.txt"), true);
equal("a create is of a folder by default", op.ParameterType, 2);

op.Parameter(1) = "D:\\c.txt";
equal("a path can be set", op.Parameter(1), "D:\\c.txt");
op.OpType = 1;
op.Overwrite = 2;
op.OverRideReadOnly = true;
op.DeleteNonEmptyFolder = 3;
op.ParameterType = 1;
op.State = 4;
op.StatusHWnd = 0;
equal("properties can be set", op.AsString, "Moving file D:\\c.txt to  [Overwrite] CurrentState: Cancelled");
equal("a finished operation is complete", op.PercentComplete, 100);
equal("the other properties come back", "" + op.OverRideReadOnly + op.DeleteNonEmptyFolder, "true3");
equal("states have words", op.StateAsString(5, true), "Completed unsucessfully");
equal("states have names", op.StateAsString(5, false), "exstFinished_Error");

op = new ActiveXObject("ZEQUtility2.CFileOperation");
op.SetCreate(folder + "\\made\\deep");
equal("a simulated create succeeds", op.Execute(false), true);
equal("and makes nothing", fso.FolderExists(folder + "\\made"), false);
equal("a create succeeds", op.Execute(true), true);
equal("and makes the folders", fso.FolderExists(folder + "\\made\\deep"), true);
op.SetCreate(folder + "\\made\\a.txt", 1, 1);
equal("a file is created", op.Execute(true), true);
equal("only once", op.Execute(true), false);
op.SetMove(folder + "\\made\\a.txt", folder + "\\made\\b.txt");
equal("a move succeeds", op.Execute(true), true);
equal("the source is gone", fso.FileExists(folder + "\\made\\a.txt"), false);
equal("the target is there", fso.FileExists(folder + "\\made\\b.txt"), true);
op.SetDelete(folder + "\\made");
op.DeleteNonEmptyFolder = 2;
equal("a folder is deleted", op.Execute(true), true);
equal("the folder is gone", fso.FolderExists(folder + "\\made"), false);

refused("a required argument left out is refused", function () { op.SetMove("only one"); });
refused("a text that is no number is refused", function () { op.Overwrite = "never"; });
