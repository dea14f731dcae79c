// A script keeps its keystrokes in a file: every member, late-bound.
var keys = new ActiveXObject("ZEQUtility2.CKeyMappings");
var path = scratch() + "\\keys.ini";

equal("a new collection says that it is empty", keys.AsString(), "Keyboard mappings: ");
var save = keys.Add();
save.Name = "Save";
save.KeyCode = 83;
save.Shift = 2;
keys.Add().Name = "Quit";
equal("two were added", keys.count, 2);
equal("by position", keys.Item(2).Name, "Quit");
equal("nothing at position 0", keys.Item(0), null);
equal("by name", keys.ItemByName("Save").KeyCode, 83);
equal("by keystroke", keys.ItemByKeycode(83, 2).Name, "Save");
equal("not by another one", keys.ItemByKeycode(83, 3), null);
var names = "";
for (var all = new Enumerator(keys); !all.atEnd(); all.moveNext()) {
  names += all.item().Name + " ";
}
equal("an enumerator goes in order", names, "Save Quit ");
equal("it is written", keys.WriteToFile(path, "Keys"), true);
keys.Remove(1);
equal("one was removed", keys.count, 1);
equal("it is read back", keys.ReadFromFile(path, "Keys"), true);
equal("with all that it had", keys.count, 2);
keys.Clear();
equal("it is cleared", keys.count, 0);
