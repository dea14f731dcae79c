// A script's own collection: every member, by position and by key, and the Enumerator.
var c = new ActiveXObject("ZEQUtility2.Collection");
equal("a new collection is empty", c.Count, 0);
equal("an Enumerator over nothing", items(c).join(" "), "");

c.Add("b");
c.Add("d", "Delta");
c.Add("a", "Alpha", 1);
c.Add("c", "Gamma", "DELTA");
equal("items stand in their order", items(c).join(" "), "a b c d");
equal("the count follows", c.Count, 4);
equal("an item by position", c.Item(2), "b");
equal("an item by key", c.Item("gamma"), "c");
equal("the default member", c(1), "a");

c.Remove("ALPHA");
c.Remove(1);
equal("removed by key and by position", items(c).join(" "), "c d");

var drive = new ActiveXObject("ZEQUtility2.CFakeDrive");
c.Add(drive, "drive");
c("drive").Name = "Q:";
equal("an object stays the same object", drive.Name, "Q:");
c.Add(1.5, "number");
c.Add(true, "boolean");
equal("a number comes back", c("number"), 1.5);
equal("a boolean comes back", c("boolean"), true);

raised("a key that is taken", function () { c.Add(2, "DRIVE"); }, 457,
       "This key is already associated with an element of this collection");
raised("a position behind the end", function () { return c.Item(99); }, 9, "Subscript out of range");
raised("an unknown key", function () { return c.Item("missing"); }, 5, "Invalid procedure call or argument");
raised("removing behind the end", function () { c.Remove(99); }, 9, "Subscript out of range");
equal("refused calls change nothing", c.Count, 5);
