' Copies the files of a folder and audits what happens: the developers get a log with every step, the user a line of
' status, and an error goes to both. Nothing needs a message box, so that the script may run at night.
'
'   cscript //nologo audited-batch.vbs SOURCE-FOLDER DESTINATION-FOLDER LOG-FILE
Option Explicit

Const ZEQ_AUD_ERROR = 1, ZEQ_AUD_WARNING = 2, ZEQ_AUD_DEBUG = 3, ZEQ_AUD_INFO = 4
Const ZEQ_AUD_ACT_STAT = 4
Const ovrtYes = 2, ptypFile = 1

' Whatever has a property Text or Caption can show the status. This one shows it on the console.
Class ConsoleStatus
  Public Property Let Text(message)
    WScript.Echo message
  End Property
End Class

Dim audit, batch, files, file, task
If WScript.Arguments.Count <> 3 Then
  WScript.Echo "usage: cscript //nologo audited-batch.vbs SOURCE-FOLDER DESTINATION-FOLDER LOG-FILE"
  WScript.Quit 2
End If

' 1. The audit: a fresh log, and the console as status.
Set audit = CreateObject("ZEQUtility2.CZEQAudit")
audit.Create WScript.Arguments(2), "Audited batch", True, New ConsoleStatus

' 2. The plan. Debug messages go into the log alone, information to the status alone.
Set files = CreateObject("Scripting.FileSystemObject")
Set batch = CreateObject("ZEQUtility2.CFileOperationBatch")
For Each file In files.GetFolder(WScript.Arguments(0)).Files
  batch.AddCopy file.Path, files.BuildPath(WScript.Arguments(1), file.Name), ovrtYes, ptypFile
  audit.ZEQAudit "planned: " & file.Path, ZEQ_AUD_DEBUG
Next
audit.ZEQAudit "Copying " & batch.Tasks.Count & " files ..."

' 3. The run. Each task says in the log how it ended; a failure is an error, which the log gets without being asked.
If batch.Execute(True) Then
  audit.ZEQAudit "All files are copied.", ZEQ_AUD_INFO
Else
  audit.ZEQAudit "The copy stopped at " & batch.CurrentTask.Parameter(1), ZEQ_AUD_ERROR, ZEQ_AUD_ACT_STAT
End If
For Each task In batch.Tasks
  audit.ZEQAudit task.AsString(True), ZEQ_AUD_DEBUG
Next

' 4. A warning is status; the mask adds the log to it from here on.
audit.DebugMask = 1 ' ZEQ_AUD_ACT_LOG
If batch.Tasks.Count = 0 Then audit.ZEQAudit "There was nothing to copy.", ZEQ_AUD_WARNING
