' A script reports to its user and its developers: every member, late-bound. Somebody presses OK in message boxes.
Option Explicit

Class Label
  Public Caption
End Class

Class Box
  Public Text
  Public Caption
End Class

Dim audit, files, logFile, message, control
Set audit = CreateObject("ZEQUtility2.CZEQAudit")
Set files = CreateObject("Scripting.FileSystemObject")
logFile = Scratch & "\debug.log"

Function Logged
  Dim stream
  Set stream = files.OpenTextFile(logFile)
  Logged = stream.ReadAll
  stream.Close
End Function

Equal "no debug file at first", audit.DebugFile, ""
Equal "no control at first", audit.StatusDestControl Is Nothing, True
Equal "no mask at first", audit.DebugMask, 0

audit.Create logFile, "Test"
Equal "the debug file is named", audit.DebugFile, logFile
message = "hello"
audit.ZEQDbgLog message
Equal "a line is logged", Mid(Logged, 10), "] hello" & vbCrLf
audit.ZEQDbgLog "again"
Equal "and another one", Right(Logged, 9), "] again" & vbCrLf
audit.ClearDebugFile
Equal "the debug file is deleted", files.FileExists(logFile), False

Set control = New Label
audit.ZEQStatBar message
Set audit.StatusDestControl = control
Equal "the control is kept", audit.StatusDestControl, control
audit.ZEQStatBar message
Equal "a label gets the status", control.Caption, "hello"
Set audit.StatusDestControl = Nothing
audit.ZEQStatBar "still"
Equal "Nothing is ignored", control.Caption, "still"
Set control = New Box
audit.Create logFile, "Test", True, control
Equal "an information is status", audit.ZEQAudit("one"), 1
Equal "in the box's text", control.Text, "one"
Equal "and not in its caption", control.Caption, Empty
Equal "and not in the log", files.FileExists(logFile), False
Equal "a debug message is logged", audit.ZEQAudit(message, 3), 1
Equal "in the log", Mid(Logged, 10), "] hello" & vbCrLf
Equal "and not in the box", control.Text, "one"
audit.DebugMask = 4
Equal "the mask is kept", audit.DebugMask, 4
audit.ZEQAudit "both", 3
Equal "the mask adds the status", control.Text, "both"
Dim title
title = "Question"
Equal "a message box", audit.ZEQMsgBox(message, 0, title), vbOK
Equal "its title stays", title, "Question"
audit.ZEQAudit "a warning", 2, 1 + 16
Equal "a warning never stops", control.Text, "a warning"
audit.DebugFile = ""
audit.ZEQAudit "no file", 1, 4
Equal "without a debug file nothing is logged", InStr(Logged, "no file"), 0
