' A script asks which keystrokes are bound: every member, late-bound.
Option Explicit

Dim filter, processed
Set filter = CreateObject("ZEQUtility2.CKeymapFilter")

Equal "a new filter has no mappings", filter.AsString, "Keyboard mappings: "
Equal "a mapping is added", filter.AddMapping("Save", "Save file", 83, 2), True
Equal "to its mappings", filter.KeyMappings.Count, 1
Equal "which are always the same", filter.KeyMappings, filter.KeyMappings
Equal "with what it was given", filter.AsString("> "), _
  "> Keyboard mappings: " & vbCrLf & ">     [CTRL S] Save - Save file"
processed = False
Equal "a bound keystroke", filter.Process(83, 2, processed), True
Equal "that nobody handles", processed, False
processed = True
Equal "another shift state", filter.Process(83, 0, processed), False
Equal "leaves the variable alone", processed, True
Equal "bound, and the variable untouched", filter.Process(83, 2, processed), True
Equal "as it was", processed, True
filter.KeyMappings(1).KeyCode = 84
Equal "no longer bound", filter.Process(83, 2, processed), False
Equal "but another key", filter.Process(84, 2, processed), True
