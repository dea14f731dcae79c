' A script's own collection: every member, by position and by key, and the For Each loop.
Option Explicit

Dim c
Set c = CreateObject("ZEQUtility2.Collection")
Equal "a new collection is empty", c.Count, 0
OfType "the count is a 32-bit integer", c.Count, "Long"
Equal "For Each over nothing", Joined(c), ""

c.Add "b"
c.Add "d", "Delta"
c.Add "a", "Alpha", 1
c.Add "c", "Gamma", "DELTA"
c.Add "e", "Epsilon", , "delta"
Equal "items stand in their order", Joined(c), "a b c d e "
Equal "the count follows", c.Count, 5
Equal "an item by position", c.Item(2), "b"
Equal "an item by key", c.Item("Gamma"), "c"
Equal "a key in another case", c.Item("gAMMA"), "c"
Equal "the default member by position", c(1), "a"
Equal "the default member by key", c("epsilon"), "e"

Dim position, key, value
position = 3
key = "alpha"
value = "x"
Equal "a position in a variable", c(position), "c"
Equal "a position as a fraction is rounded", c(2.6), "c"
Equal "a key in a variable", c(key), "a"
c.Add value, key & "2"
value = "changed"
Equal "an item is a copy of the variable", c("alpha2"), "x"

c.Remove "ALPHA2"
c.Remove 1
c.Remove position
Equal "removed by key, by position and by a variable", Joined(c), "b c e "

' Values keep their types; objects stay the same objects.
Dim many, drive
Set many = CreateObject("ZEQUtility2.Collection")
Set drive = CreateObject("ZEQUtility2.CFakeDrive")
many.Add drive, "drive"
many.Add Empty
many.Add Null
many.Add True
many.Add 1.5
many.Add Array(1, 2)
many.Add Nothing
many.Add "nul" & Chr(0) & "inside"
Equal "an object comes back", many("drive"), drive
Equal "an empty value comes back", many(2), Empty
Equal "a null comes back", many(3), Null
Equal "a boolean comes back", many(4), True
OfType "a double comes back", many(5), "Double"
Dim pair
pair = many(6)
Equal "an array comes back", pair(0) & "/" & pair(1), "1/2"
Report "nothing comes back", many(7) Is Nothing, "an object"
Equal "a text keeps its NUL", Len(many(8)), 10
many("drive").Name = "Q:"
Equal "a member of an item", drive.Name, "Q:"

' Changing a collection inside its own loop harms nobody.
Dim each_, seen
For Each each_ In c
  seen = seen & each_
  If c.Count > 0 Then c.Remove 1
Next
Equal "a loop sees what was there when it began", seen, "bce"
Equal "and the removals took place", c.Count, 0

c.Add 1, "taken"
On Error Resume Next
c.Add 2, "TAKEN"
Raised "a key that is taken", 457, "This key is already associated with an element of this collection"
Err.Clear
value = c(2)
Raised "a position behind the end", 9, "Subscript out of range"
value = c(0)
Raised "a position before the start", 9, "Subscript out of range"
value = c("missing")
Raised "an unknown key", 5, "Invalid procedure call or argument"
c.Remove 2
Raised "removing behind the end", 9, "Subscript out of range"
c.Remove "missing"
Raised "removing an unknown key", 5, "Invalid procedure call or argument"
c.Add 3, 4
Raised "a key that is no text", 13, "Type mismatch"
c.Add 3, "k", 1, 1
Raised "before and after at once", 5, "Invalid procedure call or argument"
c.Add
RefusedByHost "an item must be given", 449
On Error GoTo 0
Equal "refused calls change nothing", c.Count, 1

Function Joined(collection)
  Dim item
  Joined = ""
  For Each item In collection
    Joined = Joined & item & " "
  Next
End Function
