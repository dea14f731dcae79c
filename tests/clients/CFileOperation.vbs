' A script sets up single operations, simulates them and runs them for real: every member, late-bound.
Option Explicit

Const exstNotStarted = 1, exstFinished_OK = 3, exstFinished_Cancelled = 4, exstFinished_Error = 5
Const otypNull = 0, otypMove = 1, otypCopy = 2, otypDelete = 3, otypCreate = 4
Const ovrtNo = 1, ovrtYes = 2, ovrtAsk = 3
Const ptypFile = 1, ptypFolder = 2, ptypAny = 3

Dim op, fso, folder
Set fso = CreateObject("Scripting.FileSystemObject")
Set op = CreateObject("ZEQUtility2.CFileOperation")
folder = Scratch()

Equal "a new operation is not set up", op.AsString, "### Operation Uninitialised ###"
Equal "its type", op.OpType, otypNull
Equal "its state", op.State, exstNotStarted
Equal "its overwrite policy", op.Overwrite, ovrtNo
Equal "its folder policy", op.DeleteNonEmptyFolder, ovrtNo
Equal "its parameter type", op.ParameterType, ptypAny
Equal "its read-only flag", op.OverRideReadOnly, False
Equal "its status window", op.StatusHWnd, 0
Equal "its progress", op.PercentComplete, 0
Equal "it is not simulating", op.Simulating, False
Equal "its paths", op.Parameter(1) & op.Parameter(2), ""

Dim source, target
source = "C:\a.txt"
target = "D:\b.txt"
Equal "a move is accepted", op.SetMove(source, target), True
Equal "a move describes itself", op.AsString, "Moving C:\a.txt to D:\b.txt [Don't overwrite] CurrentState: Not started"
Equal "in short", op.AsString(False), "Moving C:\a.txt to D:\b.txt "
Equal "in lines", op.AsString(True, "|", "-"), "Moving |-C:\a.txt| to |-D:\b.txt |[Don't overwrite] |CurrentState: Not started"
Equal "a copy is accepted", op.SetCopy(source, target, ovrtAsk, ptypFile), True
Equal "its type is set", op.OpType, otypCopy
Equal "its policy is set", op.Overwrite, ovrtAsk
Equal "its parameter type is set", op.ParameterType, ptypFile
Equal "a delete is accepted", op.SetDelete(source), True
Equal "a delete keeps the overwrite policy", op.Overwrite, ovrtAsk
Equal "a delete has one path", op.Parameter(2), ""
Equal "a create of anything is refused", op.SetCreate(target, ovrtYes, ptypAny), False
Equal "a refused create changes nothing", op.OpType, otypDelete
Equal "a create is accepted", op.SetCreate(target), True
Equal "a create is of a folder by default", op.ParameterType, ptypFolder

op.Parameter(1) = "one"
op.Parameter(3) = "three"
Equal "a path can be set", op.Parameter(1), "one"
Equal "there is no third path", op.Parameter(3), ""
op.OpType = otypMove
op.Overwrite = ovrtYes
op.OverRideReadOnly = True
op.DeleteNonEmptyFolder = ovrtAsk
op.ParameterType = ptypFile
op.State = exstFinished_Cancelled
op.StatusHWnd = 0
Equal "properties can be set", op.AsString, "Moving file one to  [Overwrite] CurrentState: Cancelled"
Equal "a finished operation is complete", op.PercentComplete, 100
Equal "states have words", op.StateAsString(3, True), "Completed sucessfully"
Equal "states have names", op.StateAsString(3, False), "exstFinished_OK"
Equal "unknown states have neither", op.StateAsString(0, True) & op.StateAsString(0, False), "### State Unknown ###" & "######"

' For real.
Set op = CreateObject("ZEQUtility2.CFileOperation")
Equal "nothing to do is a failure", op.Execute(True), False
Equal "and an error", op.State, exstFinished_Error
op.SetCreate folder & "\made\deep"
Equal "a simulated create succeeds", op.Execute(False), True
Equal "and makes nothing", fso.FolderExists(folder & "\made"), False
Equal "a create succeeds", op.Execute(True), True
Equal "and makes the folders", fso.FolderExists(folder & "\made\deep"), True
Equal "its state is finished", op.State, exstFinished_OK

fso.CreateTextFile(folder & "\a.txt").Write "content"
op.SetCopy folder & "\a.txt", folder & "\made\b.txt"
Equal "a copy succeeds", op.Execute(True), True
Equal "the copy is there", fso.GetFile(folder & "\made\b.txt").Size, 7
Equal "a second copy is refused", op.Execute(True), False
op.Overwrite = ovrtAsk
Equal "nobody answers", op.Execute(True), False
Equal "so it is cancelled", op.State, exstFinished_Cancelled
op.SetMove folder & "\a.txt", folder & "\made\b.txt", ovrtYes
Equal "a move replaces", op.Execute(True), True
Equal "the source is gone", fso.FileExists(folder & "\a.txt"), False
op.SetDelete folder & "\made"
op.DeleteNonEmptyFolder = ovrtNo
Equal "a full folder stays", op.Execute(True), False
op.DeleteNonEmptyFolder = ovrtYes
Equal "unless it may go", op.Execute(True), True
Equal "the folder is gone", fso.FolderExists(folder & "\made"), False
Equal "what is gone is a success", op.Execute(True), True

On Error Resume Next
op.Parameter(1, 2) = "x"
RefusedByHost "too many arguments", 450
op.SetMove "only one"
RefusedByHost "a required argument left out", 449
op.Overwrite = "never"
RefusedByHost "a text that is no number", 13
On Error GoTo 0
