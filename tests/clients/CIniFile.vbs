' A script reads an ini file: every member, late-bound.
Option Explicit

Dim files, path, ini, key, names
Set files = CreateObject("Scripting.FileSystemObject")
path = Scratch & "\reader.ini"

Sub WriteText(text)
  Dim stream
  Set stream = files.CreateTextFile(path, True)
  stream.Write text
  stream.Close
End Sub

WriteText "[General]" & vbCrLf & "Name=Alpha" & vbCrLf & "Size=2" & vbCrLf & "[Other]" & vbCrLf & "Name=Beta" & vbCrLf

Set ini = CreateObject("ZEQUtility2.CIniFile")
Equal "a new reader has no file", ini.FileName, ""
Equal "a new reader has no section", ini.section, ""
Equal "a new reader has no keys", ini.Keys.Count, 0
ini.Create path
Equal "the file is kept", ini.FileName, path
Equal "nothing is read without a section", ini.GetString("Name"), ""
ini.section = "General"
Equal "the section is kept", ini.section, "General"
Equal "the keys are counted", ini.Keys.Count, 2
Equal "a key is found by name", ini.Keys("size"), "Size"
For Each key In ini.Keys
  names = names & key & ";"
Next
Equal "the keys stand in file order", names, "Name;Size;"
Equal "a value is read", ini.GetString("Name"), "Alpha"
Equal "a missing value is the default", ini.GetString("Missing", "General", "x"), "x"
Equal "a missing value without a default is empty", ini.GetString("Missing"), ""
key = "Name"
Equal "variables are taken", ini.GetString(key, "Other"), "Beta"
Equal "the section followed", ini.section, "Other"
ini.FileName = "C:\no such folder\x.ini"
Equal "another file is kept", ini.FileName, "C:\no such folder\x.ini"
Equal "the keys are those of the old file", ini.Keys.Count, 1
Equal "a missing file reads as the default", ini.GetString("Name", , "x"), "x"

WriteText "[General]" & vbCrLf & "a=1" & vbCrLf & "A=2" & vbCrLf
ini.FileName = path
On Error Resume Next
ini.section = "General"
Raised "a key that is there twice", 457, "This key is already associated with an element of this collection"
On Error GoTo 0
