// A script reads an ini file: every member, late-bound.
var files = new ActiveXObject("Scripting.FileSystemObject");
var path = scratch() + "\\reader.ini";
var stream = files.CreateTextFile(path, true);
stream.Write("[General]\r\nName=Alpha\r\nSize=2\r\n[Other]\r\nName=Beta\r\n");
stream.Close();

var ini = new ActiveXObject("ZEQUtility2.CIniFile");
ini.Create(path);
equal("the file is kept", ini.FileName, path);
ini.section = "General";
equal("the section is kept", ini.section, "General");
equal("the keys are counted", ini.Keys.Count, 2);
equal("a key is found by position", ini.Keys.Item(1), "Name");
equal("a value is read", ini.GetString("Name"), "Alpha");
equal("a missing value is the default", ini.GetString("Missing", "General", "x"), "x");
equal("another section is read", ini.GetString("Name", "Other"), "Beta");
ini.FileName = "C:\\no such folder\\x.ini";
equal("a missing file reads as empty", ini.GetString("Name"), "");
