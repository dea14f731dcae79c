' A script compares versions: every member, late-bound.
Option Explicit

Dim files, stream, path, version, other
Set files = CreateObject("Scripting.FileSystemObject")
path = Scratch & "\version.ini"
Set stream = files.CreateTextFile(path, True)
stream.Write "[VERSION]" & vbCrLf & "ItemName=Editor" & vbCrLf & "VerMajor=2" & vbCrLf & "VerMinor=2.5" & vbCrLf & _
  "Description=text" & vbCrLf & "[Bad]" & vbCrLf & "VerMajor=40000" & vbCrLf
stream.Close

Set version = CreateObject("ZEQUtility2.CVersionInfo")
Equal "a new version is 0.0.0", version.VerMajor & "." & version.VerMinor & "." & version.Revision, "0.0.0"
OfType "the date is a date", version.CreationDate, "Date"
Equal "the zero date", CDbl(version.CreationDate), 0
Equal "no name", version.ItemName, ""
Equal "no description", version.description, ""

Equal "reading succeeds", version.ReadFromIniFile(path), True
Equal "the numbers are read", version.VerMajor & "." & version.VerMinor & "." & version.Revision, "2.2.1"
Equal "the name is read", version.ItemName, "Editor"
Equal "the description is read", version.description, "text"
Equal "the default date", version.CreationDate, DateSerial(1996, 1, 1)
Equal "equal numbers", version.IsEqualTo(2, 2, 1), True
Equal "other numbers", version.IsEqualTo(2, 2, 2), False
Equal "not later than itself", version.IsLaterThan(2, 2, 1), False
Equal "later than an earlier one", version.IsLaterThan(2, 1, 9), True
Equal "a missing section reads as 1.1.1", version.ReadFromIniFile(path, "None") And version.IsEqualTo(1, 1, 1), True

Set other = CreateObject("ZEQUtility2.CVersionInfo")
other.VerMajor = 1
other.VerMinor = 2
other.Revision = 3
other.ItemName = "Other"
other.description = "other text"
other.CreationDate = DateSerial(2000, 1, 1)
Equal "the date is kept", other.CreationDate, DateSerial(2000, 1, 1)
Equal "later than another version", other.IsLaterThanVer(version), True
Equal "not later than another version", version.IsLaterThanVer(other), False
other.Clear
Equal "a cleared version", other.IsEqualTo(0, 0, 0) And other.ItemName = "" And other.description = "", True

On Error Resume Next
version.ReadFromIniFile path, "Bad"
Raised "a number beyond 16 bits", 6, "Overflow"
version.IsLaterThanVer Nothing
Raised "no version", 91, "Object variable or With block variable not set"
On Error GoTo 0
