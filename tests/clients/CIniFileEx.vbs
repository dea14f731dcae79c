' A script reads and writes an ini file: every member, late-bound.
Option Explicit

Dim ini, failed, list
Set ini = CreateObject("ZEQUtility2.CIniFileEx")
Equal "a new object has no file", ini.file, ""
ini.section = "lost"
ini.file = Scratch & "\writer.ini"
Equal "the file is kept", ini.file, Scratch & "\writer.ini"
Equal "a file clears the section", ini.section, ""
ini.section = "General"
Equal "the section is kept", ini.section, "General"

ini.values("Name") = "Alpha"
ini.values("Size") = 80
ini.values("Flag") = True
Equal "a text is read", ini.values("Name"), "Alpha"
Equal "a number is read as text", ini.values("Size"), "80"
Equal "a boolean is read as text", ini.values("Flag"), "True"
failed = True
Equal "getValue reads a value", ini.getValue("Name", "", failed), "Alpha"
Equal "a value did not fail", failed, False
Equal "getValue answers with the default", ini.getValue("Missing", "x", failed), "x"
Equal "a default did not fail", failed, False
Equal "getValue of nothing is empty", ini.getValue("Missing", , failed), ""
Equal "nothing did fail", failed, True
Equal "getValue without optional arguments", ini.getValue("Missing"), ""

ini.deleteKey "Flag"
Equal "a deleted key is gone", ini.values("Flag"), ""
ini.addSection "New"
Equal "adding keeps the section", ini.section, "General"
ini.addSection "Newer", True
Equal "adding may set the section", ini.section, "Newer"
ini.flush
Equal "the sections are counted", ini.enumSections(list), 3
Equal "they are an array", IsArray(list), True
ini.section = "General"
Equal "the keys are counted", ini.enumSectionKeys(list), 2
Equal "the values are counted", ini.enumSectionValues(list), 2
Equal "the pairs are counted", ini.enumSectionValuePairs(list), 2
Equal "pairs are two arrays", UBound(list), 1
Equal "keys are an array", IsArray(list(0)), True
ini.deleteSection "Newer"
Equal "a deleted section is gone", ini.enumSections(list), 2

ini.writeSection Array("a=1", "b=" & 2)
Equal "a written section holds the lines", ini.values("a") & ini.values("b"), "12"
Equal "a written section holds nothing else", ini.values("Name"), ""
ini.writeSection "no array"
Equal "what is no array is ignored", ini.values("a"), "1"
ini.section = "No such section"
Equal "no values", ini.enumSectionValues(list), -1
Equal "no values are Null", list, Null
Equal "no keys", ini.enumSectionKeys(list), 0
