// A script formats texts: every member, late-bound.
var text = new ActiveXObject("ZEQUtility2.CZEQUtilityStrings");

equal("one is singular", text.Str_Plural(1, "file"), "file");
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
equal("a time code", text.StrUtil_SecsToTimeCodeStr(3725.25), "01:02:05:06");
equal("a time by a pattern", text.StrUtil_SecsToTimeStr(3661, "hh:nn:ss"), "01:01:01");
equal("a time in words", text.StrUtil_SecsToTimeStr(7200, "", true), "2 hours");
equal("kilobytes", text.StrUtil_KiloMegaGigaString(1.5, 2), "1.5 KB");
equal("megabytes without a unit", text.StrUtil_KiloMegaGigaString(3), "3.0 MB");
equal("a key with modifiers", text.StrUtil_KeyCodeToString(112, 7, true), "CTRL-ALT-SHIFT F1");
equal("a key alone", text.StrUtil_KeyCodeToString(106, 7), "KP *");
equal("a key as numbers", text.StrUtil_KeyCodeToNumericString(112, 2), "Key-112-2");
equal("a text in a URL", text.URLEncode("a b/c"), "a%20b%2Fc");
