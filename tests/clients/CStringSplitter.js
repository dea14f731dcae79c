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
