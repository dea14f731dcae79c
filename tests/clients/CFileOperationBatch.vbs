' A script plans a batch, simulates it, reads the drives and runs it for real: every member, late-bound.
Option Explicit

Const exstNotStarted = 1, exstFinished_OK = 3, exstFinished_Error = 5
Const ovrtNo = 1, ovrtYes = 2, ptypFile = 1, ptypAny = 3

Dim batch, fso, folder, task, drive, i
Set fso = CreateObject("Scripting.FileSystemObject")
Set batch = CreateObject("ZEQUtility2.CFileOperationBatch")
folder = Scratch()

Equal "a new batch has no tasks", batch.Tasks.Count, 0
Equal "and watches no drives", batch.DriveMonitors.Count, 0
Equal "its state", batch.State, exstNotStarted
Equal "its position", batch.CurrentTaskIndex, 0
Report "its task", batch.CurrentTask Is Nothing, "an object"
Equal "it is not simulating", batch.Simulating, False
Equal "its status window", batch.StatusHWnd, 0
Equal "it describes itself", batch.AsString(True), "Batch (0 tasks)  State: Not started" & vbCrLf
Equal "an empty batch succeeds", batch.Execute(True), True
Equal "states have words", batch.StateAsString(4, True), "Cancelled"
Equal "states have names", batch.StateAsString(4, False), "exstFinished_Cancelled"

fso.CreateTextFile(folder & "\a.txt").Write "0123456789"
Dim source, target
source = folder & "\a.txt"
target = folder & "\made"
OfType "a task is an object", batch.AddCreate(target), "_CFileOperation"
batch.AddCopy source, target & "\copy.txt"
batch.AddMove source, target & "\moved.txt", ovrtYes, ptypFile
batch.AddDelete target & "\copy.txt"
Report "a refused task is not returned", batch.AddCreate(target, ovrtNo, ptypAny) Is Nothing, "an object"
Equal "but it is in the list", batch.Tasks.Count, 5
batch.Tasks.Remove 5
Set task = batch.Add
Equal "a plain task", task.AsString, "### Operation Uninitialised ###"
batch.Tasks.Remove batch.Tasks.Count
Equal "four tasks are left", batch.Tasks.Count, 4

batch.StatusHWnd = 1
For Each task In batch.Tasks
  Equal "every task has the window", task.StatusHWnd, 1
Next
batch.StatusHWnd = 0

' The plan fails in a simulation where it would need what an earlier task makes: the last one finds nothing to delete.
Equal "the simulation succeeds", batch.Execute(False), True
Equal "its state is finished", batch.State, exstFinished_OK
Equal "nothing was made", fso.FolderExists(target), False
Equal "one drive was touched", batch.DriveMonitors.Count, 1
Set drive = batch.DriveMonitors(UCase(Left(folder, 2)))
Equal "the drive's name", drive.Name, UCase(Left(folder, 2))
Equal "the drive's high tide", drive.HighTideDelta, 20
Equal "the drive's balance", drive.Delta, 10
Equal "the drive is not too full", drive.TooFull, False
drive.SafetyMargin = drive.Capacity
drive.UseBytes 1
Equal "a drive without room is too full", drive.TooFull, True

Equal "the run succeeds", batch.Execute(True), True
Equal "the drives are forgotten", batch.DriveMonitors.Count, 0
Equal "the file has moved", fso.FileExists(source) & fso.FileExists(target & "\moved.txt"), "FalseTrue"
Equal "the copy was deleted", fso.FileExists(target & "\copy.txt"), False
Equal "the last task ran", batch.CurrentTaskIndex, 4
Equal "and is at hand", batch.CurrentTask, batch.Tasks(4)

Equal "a second run fails", batch.Execute(True), False
Equal "at the second task", batch.CurrentTaskIndex, 2
Equal "with an error", batch.State, exstFinished_Error
Equal "the first task is done", batch.Tasks(1).State, exstFinished_OK
batch.State = exstNotStarted
Equal "a reset resets the tasks", batch.Tasks(2).State, exstNotStarted
Equal "the description lists the tasks", batch.AsString(False), _
  "Batch (4 tasks)  State: exstNotStarted" & vbCrLf & vbCrLf & _
  "Creating folder " & target & " " & vbCrLf & _
  "Copying " & source & " to " & target & "\copy.txt " & vbCrLf & _
  "Moving file " & source & " to " & target & "\moved.txt " & vbCrLf & _
  "Deleting " & target & "\copy.txt "
batch.Clear
Equal "a cleared batch has no tasks", batch.Tasks.Count, 0

batch.Tasks.Add "no task"
Equal "what is no task fails", batch.Execute(True), False
Report "and is not returned", batch.CurrentTask Is Nothing, "an object"

' The count of tasks is a 16-bit number.
batch.Clear
Set task = batch.AddDelete(folder & "\missing")
For i = 2 To 32768
  batch.Tasks.Add task
Next
On Error Resume Next
batch.Execute False
Raised "too many tasks", 6, "Overflow"
On Error GoTo 0
batch.Tasks.Remove 1
Equal "one less is enough", batch.Execute(False), True
