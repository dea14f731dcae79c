' A script binds a command to a keystroke: every member, late-bound.
Option Explicit

Dim mapping
Set mapping = CreateObject("ZEQUtility2.CKeyMapping")

Equal "a new mapping has no key code", mapping.KeyCode, 0
OfType "key codes are integers", mapping.KeyCode, "Integer"
Equal "a new mapping has no shift state", mapping.Shift, 0
Equal "a new mapping has no name", mapping.Name, ""
Equal "a new mapping has no description", mapping.Description, ""
Equal "a new mapping describes itself", mapping.AsString, "[[0]]  - "
mapping.KeyCode = 112
mapping.Shift = 3
mapping.Name = "Help"
mapping.Description = "Shows the help"
Equal "the key code is kept", mapping.KeyCode, 112
Equal "the shift state is kept", mapping.Shift, 3
Equal "the name is kept", mapping.Name, "Help"
Equal "the description is kept", mapping.Description, "Shows the help"
Equal "a mapping describes itself", mapping.AsString, "[CTRL-SHIFT F1] Help - Shows the help"
Equal "with an indent", mapping.AsString("> "), "> [CTRL-SHIFT F1] Help - Shows the help"
