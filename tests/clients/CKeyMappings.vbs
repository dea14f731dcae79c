' A script keeps its keystrokes in a file: every member, late-bound.
Option Explicit

Dim keys, save, quit, each_, names, path
Set keys = CreateObject("ZEQUtility2.CKeyMappings")
path = Scratch & "\keys.ini"

Equal "a new collection is empty", keys.Count, 0
Equal "and says so", keys.AsString, "Keyboard mappings: "
Set save = keys.Add
save.Name = "Save" : save.Description = "Save file" : save.KeyCode = 83 : save.Shift = 2
Set quit = keys.Add()
quit.Name = "Quit" : quit.KeyCode = 81 : quit.Shift = 2
Equal "two were added", keys.Count, 2
Equal "by position", keys.Item(2), quit
Equal "by the default member", keys(1), save
Equal "nothing at position 0", keys.Item(0) Is Nothing, True
Equal "nothing beyond the end", keys(3) Is Nothing, True
Equal "nothing under a text", keys("Save") Is Nothing, True
Equal "by name", keys.ItemByName("Quit"), quit
Equal "names are exact", keys.ItemByName("quit") Is Nothing, True
Equal "by keystroke", keys.ItemByKeycode(83, 2), save
Equal "with its shift state", keys.ItemByKeycode(83, 0) Is Nothing, True
quit.KeyCode = 83
Equal "the first of a keystroke", keys.ItemByKeycode(83, 2), save
save.Shift = 0
Equal "follows what is changed", keys.ItemByKeycode(83, 2), quit
save.Shift = 2 : quit.KeyCode = 81
For Each each_ In keys
  names = names & each_.Name & " "
Next
Equal "For Each goes in order", names, "Save Quit "
Equal "the collection describes itself", keys.AsString(" "), _
  " Keyboard mappings: " & vbCrLf & "     [CTRL S] Save - Save file" & vbCrLf & "     [CTRL Q] Quit - "
Equal "it is written", keys.WriteToFile(path, "Keys"), True
Equal "not where it cannot be", keys.WriteToFile(Scratch & "\no\folder", "Keys"), False
keys.Remove 1
keys.Remove 5
Equal "one was removed", keys.Count, 1
Equal "it is read back", keys.ReadFromFile(path, "Keys"), True
Equal "with all that it had", keys.Count, 2
Equal "in the same order", keys(1).Description, "Save file"
Equal "another section holds nothing", keys.ReadFromFile(path, "Other"), False
Equal "and empties it", keys.Count, 0
keys.Add
keys.Clear
Equal "it is cleared", keys.Count, 0
