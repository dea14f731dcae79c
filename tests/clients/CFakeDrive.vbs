' A script plans with a simulated drive: every member, late-bound.
Option Explicit

Dim drive
Set drive = CreateObject("ZEQUtility2.CFakeDrive")

Equal "a new drive has no capacity", drive.Capacity, 0
OfType "quantities are doubles", drive.Capacity, "Double"
Equal "a new drive has no free space", drive.FreeSpace, 0
Equal "a new drive uses no space", drive.SpaceUsed, 0
Equal "a new drive has no safety margin", drive.SafetyMargin, 0
Equal "a new drive has no name", drive.Name, ""
Equal "a new drive is not too full", drive.TooFull, False
Equal "a new drive describes itself", drive.AsString, _
  "[]  Capacity: 0.000M  FreeSpace: 0.000M  Delta: 0.000M  LowTide: 0.000M  LowTideDelta: 0.000M  " & _
  "HighTide: 0.000M  HighTideDelta: 0.000M  "

drive.Name = "C:"
drive.Capacity = 1073741824
Equal "the name is kept", drive.Name, "C:"
Equal "a named drive describes itself", drive.AsString, _
  "[C:]  Capacity: 1024.000M  FreeSpace: 1024.000M  Delta: 0.000M  LowTide: 0.000M  LowTideDelta: 0.000M  " & _
  "HighTide: 0.000M  HighTideDelta: 0.000M  "

drive.Capacity = 1000
drive.SpaceUsed = 900
drive.SafetyMargin = 50
Equal "the safety margin is kept", drive.SafetyMargin, 50
drive.UseBytes 50
Equal "the balance follows what is used", drive.Delta, 50
Equal "space used is base and balance", drive.SpaceUsed, 950
Equal "free space is what is left", drive.FreeSpace, 50
Equal "exactly the margin left is not too full", drive.TooFull, False
drive.UseBytes 1
Equal "one byte more is too full", drive.TooFull, True
drive.FreeBytes 500
Equal "the balance follows what is freed", drive.Delta, -449
Equal "once too full, always too full", drive.TooFull, True
Equal "the high tide", drive.HighTide, 951
Equal "the high tide's balance", drive.HighTideDelta, 51
Equal "the low tide", drive.LowTide, 451
Equal "the low tide's balance", drive.LowTideDelta, -449

drive.ResetLimits
Equal "a reset clears the balance", drive.Delta, 0
Equal "a reset brings the tides to the base", drive.LowTide & "/" & drive.HighTide, "900/900"
Equal "a reset clears the verdict", drive.TooFull, False

' Variables arrive by reference, expressions and texts are converted.
Dim bytes, before
bytes = "25"
drive.UseBytes bytes
Equal "a text that is a number is taken", drive.Delta, 25
Equal "the caller's variable stays a text", bytes, "25"
before = CLng(75)
drive.UseBytes before + 0
Equal "an expression is taken", drive.Delta, 100
drive.SpaceUsed = before
Equal "a let clears the balance", drive.Delta & "/" & drive.SpaceUsed, "0/75"
drive.usebytes 5
Equal "names are found in any case", drive.DELTA, 5

On Error Resume Next
drive.UseBytes "many"
RefusedByHost "a text that is no number is refused", 13
drive.UseBytes
RefusedByHost "a missing argument is refused", 449
drive.UseBytes 1, 2
RefusedByHost "an argument too many is refused", 450
drive.Burn
RefusedByHost "an unknown member is refused", 438
drive.Delta = 1
RefusedByHost "a read-only property is refused", 438
On Error GoTo 0
Equal "a refused call changes nothing", drive.Delta, 5
