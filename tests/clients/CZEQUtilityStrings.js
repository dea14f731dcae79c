// A script formats texts: every member, late-bound.
var text = new ActiveXObject("ZEQUtility2.CZEQUtilityStrings");

equal("one is singular", text.Str_Plural(1, "file"), "file");
equal("none is plural", text.Str_Plural(0, "file"), "files");
equal("less than none is plural", text.Str_Plural(-1, "file"), "files");
equal("two are plural", text.Str_Plural(2, "file"), "files");
equal("case and blanks do not count", text.Str_Compare(" Abc ", "abc"), true);
equal("case counts if asked for", text.Str_Compare(" Abc ", "abc", true), false);
equal("blanks count if asked for", text.Str_Compare(" Abc ", "Abc", true, false), false);
equal("keywords are replaced", text.Str_ReplaceSimpleKeyWord("a%N%b%N%", "%N%", "x"), "axbx");
equal("a replacement with the keyword in it", text.Str_ReplaceSimpleKeyWord("a", "a", "aa"), "a");
var filler = "a";
while (filler.length < 32767) {
  filler += filler;
}
raised("a keyword too far to the right", function () { text.Str_ReplaceSimpleKeyWord(filler + "b", "b", "c"); }, 6,
       "Overflow");

var expected = ["", "62:05", "62:05.25", "01:02:05", "01:02:05.25", "62:05:06", "01:02:05:06", "03725.25", "3725", "3725.25"];
for (var format = 0; format < expected.length; ++format) {
  equal("video time format " + format, text.StrUtil_MakeTimeCodeString(3725.25, format, 25), expected[format]);
}
equal("negative video time", text.StrUtil_MakeTimeCodeString(-3725.25, 3, 25), "- 01:02:05");
equal("negative video time without a format", text.StrUtil_MakeTimeCodeString(-3725.25, 0, 25), "- ");
equal("seconds round without carrying", text.StrUtil_MakeTimeCodeString(59.999, 2, 25), "00:60.00");
equal("a time code's frames are rounded", text.StrUtil_SecsToTimeCodeStr(0.99), "00:00:00:25");
equal("a time code", text.StrUtil_SecsToTimeCodeStr(3725.25), "01:02:05:06");
equal("a time by a pattern", text.StrUtil_SecsToTimeStr(3661, "hh:nn:ss"), "01:01:01");
equal("a time in words", text.StrUtil_SecsToTimeStr(7200, "", true), "2 hours");
var times = [[3725, "1 hour, 2 minutes, 5 seconds"], [60, "1 minute"], [3601, "1 hour, 1 second"], [0.4, "0 seconds"],
             [-60, "0 seconds"]];
for (var i = 0; i < times.length; ++i) {
  equal(times[i][0] + " seconds in words", text.StrUtil_SecsToTimeStr(times[i][0], "", true), times[i][1]);
}
var sizes = [[512, 1, "512 bytes"], [1, 1, "1 bytes"], [1023, 1, "1023 bytes"], [1024, 1, "1.0 KB"], [2048, 3, "2.0 GB"],
             [5000000, 3, "4882.8 GB"], [5, 0, "0 bytes"], [5, 5, "0 bytes"]];
for (i = 0; i < sizes.length; ++i) {
  equal(sizes[i][0] + " of unit " + sizes[i][1], text.StrUtil_KiloMegaGigaString(sizes[i][0], sizes[i][1]), sizes[i][2]);
}
equal("kilobytes", text.StrUtil_KiloMegaGigaString(1.5, 2), "1.5 KB");
equal("megabytes without a unit", text.StrUtil_KiloMegaGigaString(3), "3.0 MB");
equal("a key with modifiers", text.StrUtil_KeyCodeToString(112, 7, true), "CTRL-ALT-SHIFT F1");
var keys = [[112, 6, "CTRL-ALT F1"], [112, 3, "CTRL-SHIFT F1"], [65, 0, "A"], [57, 0, "9"], [97, 0, "1"], [42, 0, "PRINT SCREEN"],
            [44, 0, "SNAPSHOT"], [1, 0, "KeyLButton"], [127, 0, "F16"], [0, 0, "[0]"], [186, 0, "[186]"]];
for (i = 0; i < keys.length; ++i) {
  equal("key " + keys[i][0], text.StrUtil_KeyCodeToString(keys[i][0], keys[i][1], true), keys[i][2]);
}
equal("a key alone", text.StrUtil_KeyCodeToString(106, 7), "KP *");
equal("a key as numbers", text.StrUtil_KeyCodeToNumericString(112, 2), "Key-112-2");
equal("what stays in a URL", text.URLEncode("it's (ok), fine!"), "it's%20(ok),%20fine!");
equal("a text in a URL", text.URLEncode("a b/c"), "a%20b%2Fc");
