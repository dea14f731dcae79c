' A script keeps options in the registry and in an ini file: every member, late-bound.
Option Explicit

Dim options, shell, files, root, path
root = "Software\ZEQUtility2Test CAppOptions.vbs"
Set shell = CreateObject("WScript.Shell")

Sub RemoveKey()
  shell.Run "reg.exe delete ""HKCU\" & root & """ /f", 0, True
End Sub

RemoveKey
Set options = CreateObject("ZEQUtility2.CAppOptions")
Equal "AutoSave is on", options.AutoSave, True
options.AutoSave = False
Equal "AutoSave stays on", options.AutoSave, True
options.Hive = "HKCU"
options.Hive = "hkcu"
Equal "a hive that differs in case is ignored", options.Hive, "HKCU"
options.RootKey = root
Equal "the root key is kept", options.RootKey, root

options.WriteSetting "Editor", "Width", 80
Equal "a write is stored", shell.RegRead("HKCU\" & root & "\Editor\Width"), "80"
Equal "a read sees the store", options.ReadSetting("Editor", "Width"), "80"
Equal "a missing option is its default", options.ReadSetting("Editor", "Height", 25), 25
Equal "a default is stored", shell.RegRead("HKCU\" & root & "\Editor\Height"), "25"
Equal "as string", options.ReadSettingString("Editor", "Width"), "80"
Equal "as boolean", options.ReadSettingBoolean("Editor", "Width"), True
OfType "as 16-bit integer", options.ReadSettingInteger("Editor", "Width"), "Integer"
OfType "as 32-bit integer", options.ReadSettingLong("Editor", "Width"), "Long"
OfType "as single", options.ReadSettingSingle("Editor", "Width"), "Single"
OfType "as double", options.ReadSettingDouble("Editor", "Width"), "Double"
Equal "a group reads the same store", options.Group("Editor").ReadSettingLong("Width"), 80
Equal "every group is a new one", options.Group("Editor") Is options.Group("Editor"), False
options.Save
options.Clear
Equal "the options describe themselves", options.AsString, "HKCU \" & root
RemoveKey

Set files = CreateObject("Scripting.FileSystemObject")
path = Scratch & "\options.ini"
files.CreateTextFile(path, True).Close
options.Hive = path
options.WriteSetting "Editor", "Width", 90
Equal "an ini file keeps options", options.ReadSettingLong("Editor", "Width"), 90
Equal "an ini file lacks no option", options.ReadSetting("Editor", "None", 5), ""
