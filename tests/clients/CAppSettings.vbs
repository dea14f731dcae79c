' A script keeps a group of settings: every member, late-bound.
Option Explicit

Dim group, shell, root
root = "Software\ZEQUtility2Test CAppSettings.vbs"
Set shell = CreateObject("WScript.Shell")

Sub RemoveKey()
  shell.Run "reg.exe delete ""HKCU\" & root & """ /f", 0, True
End Sub

RemoveKey
Set group = CreateObject("ZEQUtility2.CAppSettings")
Equal "AutoSave is on", group.AutoSave, True
group.Hive = " HKCU "
group.RootKey = root
group.SubKey = "Editor"
Equal "the hive is trimmed", group.Hive, "HKCU"
Equal "the root key is kept", group.RootKey, root
Equal "the group's key is kept", group.SubKey, "Editor"

group.WriteSetting "Width", 80
Equal "a write is stored", shell.RegRead("HKCU\" & root & "\Editor\Width"), "80"
Equal "a cached value keeps its type", group.ReadSetting("Width"), 80
Equal "a missing setting is empty", group.ReadSetting("None"), Empty
Equal "a missing setting is its default", group.ReadSetting("Height", 25), 25
Equal "a default is stored", shell.RegRead("HKCU\" & root & "\Editor\Height"), "25"
Equal "as string", group.ReadSettingString("Width"), "80"
Equal "as boolean", group.ReadSettingBoolean("Width"), True
OfType "as 16-bit integer", group.ReadSettingInteger("Width"), "Integer"
OfType "as 32-bit integer", group.ReadSettingLong("Width"), "Long"
OfType "as single", group.ReadSettingSingle("Width"), "Single"
OfType "as double", group.ReadSettingDouble("Width"), "Double"
group.WriteSetting "Big", "40000"
Equal "too large for the type", group.ReadSettingInteger("Big", "12"), 12
Equal "a group describes itself", group.AsString, "Group: Editor" & vbCrLf & "    [Width] 80" & vbCrLf & _
  "    [Height] 25" & vbCrLf & "    [Big] 40000"
group.Clear
Equal "clear keeps the last", group.AsString("> "), "> Group: Editor" & vbCrLf & ">     [Big] 40000"
group.AutoSave = False
group.WriteSetting "Big", "50000"
Equal "without AutoSave nothing is stored", shell.RegRead("HKCU\" & root & "\Editor\Big"), "40000"
group.Save
Equal "save stores", shell.RegRead("HKCU\" & root & "\Editor\Big"), "50000"

RemoveKey
