// A script keeps objects in a collection: every member, late-bound.
var collections = new ActiveXObject("ZEQUtility2.CZEQUtilityCollections");
var own = new ActiveXObject("ZEQUtility2.Collection");
var drive = new ActiveXObject("ZEQUtility2.CFakeDrive");

equal("an object is added", collections.Collection_Add(own, drive, "C:"), true);
equal("a key is taken once", collections.Collection_Add(own, drive, "C:"), false);
equal("an object without a key", collections.Collection_Add(own, drive), true);
equal("a key is found", collections.Collection_ContainsKey(own, "c:"), true);
equal("there is no position 0", collections.Collection_ContainsKey(own, 0), false);
equal("a position is not found", collections.Collection_ContainsKey(own, 3), false);
equal("an item is removed", collections.Collection_Remove(own, 1), true);
equal("an item that is not there", collections.Collection_Remove(own, 5), false);
collections.Collection_Clear(own);
equal("the rest is cleared", own.Count, 0);
refused("a text is no collection", function () { collections.Collection_Clear("text"); });
