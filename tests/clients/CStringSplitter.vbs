' A script splits texts: every member, late-bound.
Option Explicit

Dim splitter, field, joined
Set splitter = CreateObject("ZEQUtility2.CStringSplitter")

Equal "a new object separates at blanks", splitter.FieldSep, " "
Equal "a new object trims", splitter.TrimFields, True
Equal "a new object passes over empty fields", splitter.CountEmptyFields, False
Equal "a new object has no text", splitter.Record, ""
Equal "a new object has no fields", splitter.count, 0
OfType "the count is an integer", splitter.count, "Integer"

splitter.Record = "alpha  beta"
Equal "empty fields are passed over", splitter.count, 2
Equal "the second field", splitter.Field(2), "beta"
Equal "Split keeps empty fields", splitter.Split("alpha  beta"), 3
Equal "and says so", splitter.CountEmptyFields, True
Equal "the empty field", splitter.Field(2), ""

Equal "another separator", splitter.Split("x; Y ;z", ";"), 3
Equal "fields are trimmed", splitter.Field(2), "Y"
Equal "the default member", splitter(3), "z"
Equal "before the first field", splitter.Field(0), ""
Equal "behind the last field", splitter.Field(4), ""
splitter.TrimFields = False
Equal "fields are not trimmed", splitter.Field(2), " Y "
splitter.FieldSep = ""
Equal "an empty separator is ignored", splitter.FieldSep, ";"
splitter.FieldSep = "y"
Equal "a letter matches in either case", splitter.count, 2
splitter.CountEmptyFields = False
Equal "no argument but the text and flags", splitter.Split("1y2yy", , True, False), 2

For Each field In splitter
  joined = joined & "[" & field & "]"
Next
Equal "the enumerator", joined, "[1][2]"

Equal "a list with NULs", splitter.Split("k1" & Chr(0) & "k2" & Chr(0) & Chr(0), Chr(0), True, False), 2
Equal "its second field", splitter.Field(2), "k2"
Equal "with the empty ones", splitter.Split("k1" & Chr(0) & "k2" & Chr(0) & Chr(0), Chr(0), True, True), 4
Equal "before any field", splitter.Field(-1), ""

On Error Resume Next
splitter.Record = String(32766, "x") & Chr(0) & "y"
Raised "a separator too far to the right", 6, "Overflow"
On Error GoTo 0
Equal "the fields in front of it", splitter.count, 1
