' A script describes an attached file and opens it: every member, late-bound.
Option Explicit

Dim attachment
Set attachment = CreateObject("ZEQUtility2.CAttachment")

Equal "a new attachment has no path", attachment.FullPath, ""
Equal "nor any part of one", attachment.Location & attachment.Name & attachment.Extension, ""
Equal "nor a type", attachment.Association, ""
Equal "nor an icon", attachment.IconKey, ""
Equal "nothing cannot be opened", attachment.Execute, False
OfType "the answer is a boolean", attachment.Execute, "Boolean"

Dim path
path = "C:\docs\plan.txt"
attachment.IconKey = "paper"
Equal "the icon's key is kept", attachment.IconKey, "paper"
attachment.Create path
Equal "the path", attachment.FullPath, path
Equal "the folder", attachment.Location, "C:\docs"
Equal "the name", attachment.Name, "plan"
Equal "the extension", attachment.Extension, "txt"
OfType "the type's description is a text", attachment.Association, "String"
Equal "the icon's key is empty again", attachment.IconKey, ""
Equal "a missing file is not opened", attachment.Execute, False

attachment.Name = "other"
attachment.Location = "D:\"
attachment.Extension = "doc"
attachment.Association = "Plan"
Equal "what is shown can be changed", _
  attachment.Location & attachment.Name & "." & attachment.Extension & " " & attachment.Association, "D:\other.doc Plan"
Equal "the path stays", attachment.FullPath, path
attachment.FullPath = Scratch & "\none.txt"
Equal "the path can be changed alone", attachment.Name, "other"

' A file of a type that the script makes up and has a program for: the script host, which writes down its argument.
Dim files, shell, program, record
Set files = CreateObject("Scripting.FileSystemObject")
Set shell = CreateObject("WScript.Shell")
program = Scratch & "\opened.vbs"
record = Scratch & "\record.txt"
Dim text
Set text = files.CreateTextFile(program)
text.WriteLine "Set file = CreateObject(""Scripting.FileSystemObject"").CreateTextFile(""" & record & ".part"")"
text.WriteLine "file.Write WScript.Arguments(0)"
text.WriteLine "file.Close"
text.WriteLine "CreateObject(""Scripting.FileSystemObject"").MoveFile """ & record & ".part"", """ & record & """"
text.Close
files.CreateTextFile(Scratch & "\plan.zqscript").Close
shell.RegWrite "HKCR\.zqscript\", "ZEQUtility2Client.Plan"
shell.RegWrite "HKCR\ZEQUtility2Client.Plan\shell\open\command\", "cscript.exe //nologo """ & program & """ ""%1"""

attachment.Create Scratch & "\plan.zqscript"
Equal "an existing file is opened", attachment.Execute, True
Dim tries
Do Until files.FileExists(record) Or tries = 300
  shell.Run "cmd.exe /c exit", 0, True  ' Passes some time: Wine's script host has no Sleep.
  tries = tries + 1
Loop
Equal "the program for its type starts", files.FileExists(record), True
Equal "the program for its type gets its path", files.OpenTextFile(record).ReadAll, Scratch & "\plan.zqscript"

shell.Run "reg.exe delete HKCR\ZEQUtility2Client.Plan /f", 0, True
shell.Run "reg.exe delete HKCR\.zqscript /f", 0, True
