' Counts the words of a text and lists the most frequent ones: the splitter cuts, the sorter orders, the string functions
' write. Pass a text file, or nothing for a text of the script's own.
Option Explicit

Const ForReading = 1

Dim splitter, sorting, strings, text
Set splitter = CreateObject("ZEQUtility2.CStringSplitter")
Set sorting = CreateObject("ZEQUtility2.CZEQUtilitySorting")
Set strings = CreateObject("ZEQUtility2.CZEQUtilityStrings")

If WScript.Arguments.Count > 0 Then
  text = CreateObject("Scripting.FileSystemObject").OpenTextFile(WScript.Arguments(0), ForReading).ReadAll
Else
  text = "the quick brown fox jumps over the lazy dog and the dog does not mind the fox"
End If
text = Replace(Replace(text, vbCr, " "), vbLf, " ")
WScript.Echo "The text has " & strings.StrUtil_KiloMegaGigaString(Len(text), 1) & "."

' Empty fields, between two blanks, do not count.
Dim counts, word
Set counts = CreateObject("Scripting.Dictionary")
splitter.Split text, " ", True, False
For Each word In splitter
  counts(LCase(word)) = counts(LCase(word)) + 1
Next
WScript.Echo splitter.count & " words, " & counts.Count & " different " & strings.Str_Plural(counts.Count, "word") & "."

' The counts are sorted, and the words go with them.
Dim ranks, words, i
ranks = counts.Items
words = counts.Keys
sorting.QuickSortVariants ranks, words, 0, UBound(ranks)
For i = UBound(ranks) To 0 Step -1
  If ranks(i) > 1 Then WScript.Echo words(i) & ": " & ranks(i) & " " & strings.Str_Plural(ranks(i), "time")
Next
