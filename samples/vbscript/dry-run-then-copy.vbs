' Copies a folder with all that is in it: first a dry run, which shows what the copy would do to the drives, then, if
' there is room, the copy itself.
'
'   cscript //nologo dry-run-then-copy.vbs SOURCE-FOLDER DESTINATION-FOLDER
Option Explicit

Const chartWidth = 40
Dim fso, batch, drive, files, bytes

If WScript.Arguments.Count <> 2 Then
  WScript.Echo "usage: cscript //nologo dry-run-then-copy.vbs SOURCE-FOLDER DESTINATION-FOLDER"
  WScript.Quit 2
End If

Set fso = CreateObject("Scripting.FileSystemObject")
Set batch = CreateObject("ZEQUtility2.CFileOperationBatch")

' 1. The plan: a list of operations. Nothing happens yet.
PlanFolder fso.GetFolder(WScript.Arguments(0)), WScript.Arguments(1)
WScript.Echo "Planned " & batch.Tasks.Count & " operations: " & files & " files, " & Size(bytes) & "."

' 2. The dry run: every operation checks its paths and tells how it would change the drives.
If Not batch.Execute(False) Then StopAtFailure "The dry run"
WScript.Echo "The dry run succeeded. What the copy would do to each drive:"
For Each drive In batch.DriveMonitors
  DrawDrive drive
Next
For Each drive In batch.DriveMonitors
  If drive.TooFull Then
    WScript.Echo "Drive " & drive.Name & " would be too full. Nothing was copied."
    WScript.Quit 1
  End If
Next

' 3. The same list again, for real.
If Not batch.Execute(True) Then StopAtFailure "The copy"
WScript.Echo "Copied " & files & " files, " & Size(bytes) & ", in " & batch.CurrentTaskIndex & " operations."

Sub PlanFolder(folder, target)
  Dim child
  batch.AddCreate target
  For Each child In folder.Files
    batch.AddCopy child.Path, fso.BuildPath(target, child.Name)
    files = files + 1
    bytes = bytes + child.Size
  Next
  For Each child In folder.SubFolders
    PlanFolder child, fso.BuildPath(target, child.Name)
  Next
End Sub

' The batch stops at the first operation that fails, and keeps it as its current task.
Sub StopAtFailure(what)
  WScript.Echo what & " stopped at operation " & batch.CurrentTaskIndex & ": " & _
    batch.StateAsString(batch.State, True)
  If Not batch.CurrentTask Is Nothing Then WScript.Echo "  " & batch.CurrentTask.AsString
  WScript.Quit 1
End Sub

' The tide marks are the lowest and the highest use of a drive at any moment of the run.
Sub DrawDrive(drive)
  WScript.Echo "  " & drive.Name & " of " & Size(drive.Capacity)
  WScript.Echo "    low tide  " & Bar(drive.LowTide, drive.Capacity) & " " & Size(drive.LowTide)
  WScript.Echo "    high tide " & Bar(drive.HighTide, drive.Capacity) & " " & Size(drive.HighTide) & _
    " (" & Size(drive.HighTideDelta) & " more)"
End Sub

Function Bar(used, capacity)
  Dim length
  length = 0
  If capacity > 0 Then length = Round(chartWidth * used / capacity)
  If length > chartWidth Then length = chartWidth
  Bar = "[" & String(length, "#") & String(chartWidth - length, ".") & "]"
End Function

Function Size(value)
  If value < 1048576 Then
    Size = Round(value / 1024, 1) & " KB"
  ElseIf value < 1073741824 Then
    Size = Round(value / 1048576, 1) & " MB"
  Else
    Size = Round(value / 1073741824, 1) & " GB"
  End If
End Function
