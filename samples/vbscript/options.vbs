' An application's options, kept in the registry. To keep them in an ini file instead, change the one line that sets
' Hive to the full path of the file, which must exist.
Option Explicit

Dim options
Set options = CreateObject("ZEQUtility2.CAppOptions")
options.Hive = "HKCU"
options.RootKey = "Software\ZEQUtility2 samples\Editor"

' Each run begins with what the one before left.
Dim runs
runs = options.ReadSettingLong("Statistics", "Runs", 0) + 1
options.WriteSetting "Statistics", "Runs", runs
WScript.Echo "This is run " & runs & "."

' A default is stored when it is first read, so that the user finds every option in the store.
WScript.Echo "The window is " & options.ReadSettingLong("Window", "Width", 80) & " by " & _
  options.ReadSettingLong("Window", "Height", 25) & "."
WScript.Echo "Word wrap is " & options.ReadSettingBoolean("Text", "Wrap", True) & "."
WScript.Echo "The options are in " & options.AsString & "."
