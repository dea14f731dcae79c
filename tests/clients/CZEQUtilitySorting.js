// This language has no arrays of automation: it passes copies of the ones that a dictionary gives, and its own are refused.
var sorting = new ActiveXObject("ZEQUtility2.CZEQUtilitySorting");

raised("an array of the language", function () { sorting.QuickSortVariants([2, 1], [1, 2], 0, 1); }, 13,
       "Type mismatch");

var dictionary = new ActiveXObject("Scripting.Dictionary");
dictionary.Add("c", 0);
dictionary.Add("a", 1);
dictionary.Add("b", 2);
var keys = dictionary.Keys();
var values = dictionary.Items();
equal("arrays of automation are taken", errorOf(function () { sorting.QuickSortVariants(keys, values, 0, 2); }), null);
raised("an index outside", function () { sorting.QuickSortVariants(keys, values, 0, 3); }, 9, "Subscript out of range");
