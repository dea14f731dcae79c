// A script binds a command to a keystroke: every member, late-bound.
var mapping = new ActiveXObject("ZEQUtility2.CKeyMapping");

equal("a new mapping describes itself", mapping.AsString(), "[[0]]  - ");
mapping.KeyCode = 112;
mapping.Shift = 3;
mapping.Name = "Help";
mapping.description = "Shows the help";
equal("the key code is kept", mapping.KeyCode, 112);
equal("the shift state is kept", mapping.Shift, 3);
equal("the name is kept", mapping.Name, "Help");
equal("the description is kept", mapping.description, "Shows the help");
equal("a mapping describes itself", mapping.AsString("> "), "> [CTRL-SHIFT F1] Help - Shows the help");
