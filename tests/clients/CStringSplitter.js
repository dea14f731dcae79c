// A script splits texts: every member, late-bound.
var splitter = new ActiveXObject("ZEQUtility2.CStringSplitter");

equal("a new object has no fields", splitter.count, 0);
splitter.Record = "alpha  beta";
equal("empty fields are passed over", splitter.count, 2);
equal("Split keeps empty fields", splitter.Split("alpha  beta"), 3);
equal("another separator", splitter.Split("x; Y ;z", ";"), 3);
equal("the fields in order", items(splitter).join("|"), "x|Y|z");
equal("the default member", splitter(2), "Y");
equal("no field", splitter.Field(4), "");
equal("before the first field", splitter.Field(0) + splitter.Field(-1), "");
splitter.FieldSep = "";
equal("an empty separator is ignored", splitter.FieldSep, ";");
equal("a list with NULs", splitter.Split("k1\u0000k2\u0000\u0000", "\u0000", true, false), 2);
equal("its fields", items(splitter).join("|"), "k1|k2");
equal("with the empty ones", splitter.Split("k1\u0000k2\u0000\u0000", "\u0000"), 4);
equal("the text as before", splitter.Split("x; Y ;z", ";"), 3);
splitter.TrimFields = false;
equal("fields are not trimmed", splitter.Field(2), " Y ");
splitter.CountEmptyFields = false;
splitter.FieldSep = "AND";
splitter.Record = "salt and pepper AND ";
equal("a separator in either case", splitter.count, 3);
equal("the separator as it was set", splitter.FieldSep, "AND");
equal("the text", splitter.Record, "salt and pepper AND ");
equal("the flags", splitter.TrimFields || splitter.CountEmptyFields, false);
var filler = ",";
while (filler.length < 40000) {
  filler += filler;
}
raised("too many separators", function () { splitter.Split(filler, ","); }, 6, "Overflow");
