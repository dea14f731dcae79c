' An application's options, kept in the registry or in an ini file. The one line that sets Hive makes the difference.
'
'   cscript //nologo options.vbs            keeps them in the registry
'   cscript //nologo options.vbs INI-FILE   keeps them in that file, which is made if it is not there
Option Explicit

' A registry root, or the full path of an ini file that exists: the library never makes one.
Function Store()
  Dim files
  Store = "HKCU"
  If WScript.Arguments.Count = 1 Then
    Set files = CreateObject("Scripting.FileSystemObject")
    Store = files.GetAbsolutePathName(WScript.Arguments(0))
    If Not files.FileExists(Store) Then files.CreateTextFile(Store).Close
  End If
End Function

Dim options
Set options = CreateObject("ZEQUtility2.CAppOptions")
options.Hive = Store()
options.RootKey = "Software\ZEQUtility2 samples\Editor"

' Each run begins with what the one before left.
Dim runs
runs = options.ReadSettingLong("Statistics", "Runs", 0) + 1
options.WriteSetting "Statistics", "Runs", runs
WScript.Echo "This is run " & runs & "."

' Reading an option that is not there gives the default, and makes an entry for it where the user can find it: with
' the default in the registry, an empty one in an ini file.
WScript.Echo "The window is " & options.ReadSettingLong("Window", "Width", 80) & " by " & _
  options.ReadSettingLong("Window", "Height", 25) & "."
WScript.Echo "Word wrap is " & options.ReadSettingBoolean("Text", "Wrap", True) & "."
WScript.Echo "The options are in " & options.AsString & "."
