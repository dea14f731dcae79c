// A script asks which keystrokes are bound: every member, late-bound.
var filter = new ActiveXObject("ZEQUtility2.CKeymapFilter");

equal("a new filter has no mappings", filter.AsString(), "Keyboard mappings: ");
equal("a mapping is added", filter.AddMapping("Save", "Save file", 83, 2), true);
equal("to its mappings", filter.KeyMappings.count, 1);
equal("a bound keystroke", filter.Process(83, 2, false), true);
equal("an unbound one", filter.Process(83, 0, false), false);
equal("it describes itself", filter.AsString("> "), "> Keyboard mappings: \r\n>     [CTRL S] Save - Save file");
