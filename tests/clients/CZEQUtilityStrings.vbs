' A script formats texts: every member, late-bound.
Option Explicit

Dim text
Set text = CreateObject("ZEQUtility2.CZEQUtilityStrings")

Equal "one is singular", text.Str_Plural(1, "file"), "file"
Equal "none is plural", text.Str_Plural(0, "file"), "files"
Equal "less than none is plural", text.Str_Plural(-1, "file"), "files"

Equal "case and blanks do not count", text.Str_Compare(" Abc ", "abc"), True
Equal "case counts if asked for", text.Str_Compare(" Abc ", "abc", True), False
Equal "blanks count if asked for", text.Str_Compare(" Abc ", "abc", , False), False
Equal "exact texts", text.Str_Compare("Abc", "Abc", True, False), True

Dim original, keyword, replacement
original = "a%N%b%N%"
keyword = "%N%"
replacement = "x"
Equal "keywords are replaced", text.Str_ReplaceSimpleKeyWord(original, keyword, replacement), "axbx"
Equal "the text itself stays", original, "a%N%b%N%"
Equal "case counts in keywords", text.Str_ReplaceSimpleKeyWord("a%n%", keyword, replacement), "a%n%"
Equal "what a replacement makes is replaced", text.Str_ReplaceSimpleKeyWord("<<>>!", "<>", ""), "!"
Equal "no keyword, no change", text.Str_ReplaceSimpleKeyWord("abc", "", "x"), "abc"
On Error Resume Next
keyword = text.Str_ReplaceSimpleKeyWord(String(32767, "a") & "b", "b", "c")
Raised "a keyword too far to the right", 6, "Overflow"
On Error GoTo 0

Dim expected, format
expected = Array("", "62:05", "62:05.25", "01:02:05", "01:02:05.25", "62:05:06", "01:02:05:06", "03725.25", "3725", "3725.25")
For format = 0 To 9
  Equal "video time format " & format, text.StrUtil_MakeTimeCodeString(3725.25, format, 25), expected(format)
Next
Equal "negative video time", text.StrUtil_MakeTimeCodeString(-3725.25, 3, 25), "- 01:02:05"
Equal "negative video time without a format", text.StrUtil_MakeTimeCodeString(-3725.25, 0, 25), "- "
Equal "seconds round without carrying", text.StrUtil_MakeTimeCodeString(59.999, 2, 25), "00:60.00"

Equal "a time code", text.StrUtil_SecsToTimeCodeStr(3725.25), "01:02:05:06"
Equal "a time code's frames are rounded", text.StrUtil_SecsToTimeCodeStr(0.99), "00:00:00:25"

Equal "a time by a pattern", text.StrUtil_SecsToTimeStr(3661, "hh:nn:ss"), "01:01:01"
Equal "a time that is none", text.StrUtil_SecsToTimeStr(1E+300, "hh:nn:ss"), "0"
Equal "a time in words", text.StrUtil_SecsToTimeStr(3725, "", True), "1 hour, 2 minutes, 5 seconds"
Equal "no time in words", text.StrUtil_SecsToTimeStr(0.4, "", True), "0 seconds"
Equal "less than none in words", text.StrUtil_SecsToTimeStr(-60, "", True), "0 seconds"
Equal "one minute in words", text.StrUtil_SecsToTimeStr(60, "", True), "1 minute"
Equal "an hour and a second in words", text.StrUtil_SecsToTimeStr(3601, "", True), "1 hour, 1 second"
Equal "hours in words", text.StrUtil_SecsToTimeStr(7200, "", True), "2 hours"

Equal "one byte", text.StrUtil_KiloMegaGigaString(1, 1), "1 bytes"
Equal "bytes of half a kilobyte", text.StrUtil_KiloMegaGigaString(0.5, 2), "512 bytes"
Equal "a fraction of kilobytes", text.StrUtil_KiloMegaGigaString(1.5, 2), "1.5 KB"
Equal "gigabytes of megabytes", text.StrUtil_KiloMegaGigaString(2048, 3), "2.0 GB"
Equal "megabytes of gigabytes", text.StrUtil_KiloMegaGigaString(0.5, 4), "512.0 MB"
Equal "no unit", text.StrUtil_KiloMegaGigaString(5, 0), "0 bytes"
Equal "bytes", text.StrUtil_KiloMegaGigaString(1023, 1), "1023 bytes"
Equal "kilobytes", text.StrUtil_KiloMegaGigaString(1024, 1), "1.0 KB"
Equal "megabytes without a unit", text.StrUtil_KiloMegaGigaString(1), "1.0 MB"
Equal "gigabytes", text.StrUtil_KiloMegaGigaString(5000000), "4882.8 GB"
Equal "an unknown unit", text.StrUtil_KiloMegaGigaString(5, 5), "0 bytes"

Equal "a key with modifiers", text.StrUtil_KeyCodeToString(112, 6, True), "CTRL-ALT F1"
Equal "a key with two modifiers", text.StrUtil_KeyCodeToString(112, 3, True), "CTRL-SHIFT F1"
Equal "a key with all modifiers", text.StrUtil_KeyCodeToString(112, 7, True), "CTRL-ALT-SHIFT F1"
Equal "a key alone", text.StrUtil_KeyCodeToString(65, 1), "A"
Equal "a key without a name", text.StrUtil_KeyCodeToString(0, 0), "[0]"

' Every key with a name of its own; the others have the character that they stand for, or their number.
Dim codes, names, i
codes = Array(1, 2, 3, 4, 8, 9, 12, 13, 16, 17, 18, 19, 20, 27, 32, 33, 34, 35, 36, 37, 38, 39, 40, 41, 42, 43, 44, 45, 46, _
  47, 106, 107, 108, 109, 110, 111, 144)
names = Array("KeyLButton", "KeyRButton", "CANCEL", "KeyMButton", "BACKSPACE", "TAB", "CLEAR", "ENTER", "SHIFT", "CTRL", _
  "MENU", "PAUSE", "CAPS LOCK", "ESC", "SPACEBAR", "PAGE UP", "PAGE DOWN", "END", "HOME", "LEFT ARROW", "UP ARROW", _
  "RIGHT ARROW", "DOWN ARROW", "SELECT", "PRINT SCREEN", "EXECUTE", "SNAPSHOT", "INS", "DEL", "HELP", "KP *", "KP +", _
  "KP ENTER", "KP -", "KP .", "KP /", "NUM LOCK")
For i = 0 To UBound(codes)
  Equal "key " & codes(i), text.StrUtil_KeyCodeToString(codes(i), 0), names(i)
Next
For i = 0 To 9
  Equal "digit " & i, text.StrUtil_KeyCodeToString(48 + i, 0), CStr(i)
  Equal "digit of the keypad " & i, text.StrUtil_KeyCodeToString(96 + i, 0), CStr(i)
Next
For i = 65 To 90
  Equal "letter " & i, text.StrUtil_KeyCodeToString(i, 0), Chr(i)
Next
For i = 112 To 127
  Equal "function key " & i, text.StrUtil_KeyCodeToString(i, 0), "F" & (i - 111)
Next
For Each i In Array(-1, 5, 7, 10, 11, 14, 15, 21, 26, 28, 31, 58, 64, 91, 95, 128, 143, 145, 186)
  Equal "key without a name " & i, text.StrUtil_KeyCodeToString(i, 0), "[" & i & "]"
Next
Equal "a key as numbers", text.StrUtil_KeyCodeToNumericString(112, 2), "Key-112-2"

Equal "blank and slash in a URL", text.URLEncode("a b/c"), "a%20b%2Fc"
Equal "what stays in a URL", text.URLEncode("it's (ok), fine!"), "it's%20(ok),%20fine!"
Equal "a line feed in a URL", text.URLEncode(vbLf), "%0A"
