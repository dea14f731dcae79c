// Prints a playlist: the splitter cuts each line into its fields, the collection holds the tracks by their titles, and the
// string functions write times, sizes and addresses.
var strings = new ActiveXObject("ZEQUtility2.CZEQUtilityStrings");
var collections = new ActiveXObject("ZEQUtility2.CZEQUtilityCollections");
var tracks = new ActiveXObject("ZEQUtility2.Collection");

var minutesSeconds = 1;  // vtsfMMSS
var bytes = 1;           // fsuIsBytes

// Title; seconds; bytes. The last line has a title that is there already.
var lines = ["Morning & Evening ; 215.4 ; 3446400", "Rain (live); 61; 976000", "Long Way; 3725.25; 59604000",
             "RAIN (LIVE); 60; 960000"];
for (var i = 0; i < lines.length; ++i) {
  var track = new ActiveXObject("ZEQUtility2.CStringSplitter");
  track.Split(lines[i], ";");
  if (!collections.Collection_Add(tracks, track, track.Field(1))) {
    WScript.Echo("Line " + (i + 1) + " is left out: there is a track " + track.Field(1) + ".");
  }
}

var seconds = 0;
var size = 0;
for (var each = new Enumerator(tracks); !each.atEnd(); each.moveNext()) {
  var fields = each.item();
  seconds += Number(fields.Field(2));
  size += Number(fields.Field(3));
  WScript.Echo(strings.StrUtil_MakeTimeCodeString(fields.Field(2), minutesSeconds, 25) + "  " + fields.Field(1) + "  " +
               strings.StrUtil_KiloMegaGigaString(fields.Field(3), bytes) + "  tracks/" +
               strings.URLEncode(fields.Field(1)));
}
WScript.Echo(tracks.Count + " " + strings.Str_Plural(tracks.Count, "track") + ", " +
             strings.StrUtil_SecsToTimeStr(seconds, "", true) + ", " +
             strings.StrUtil_KiloMegaGigaString(size, bytes));
