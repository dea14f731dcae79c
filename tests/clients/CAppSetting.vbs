' A script keeps a setting: every member, late-bound.
Option Explicit

Dim setting
Set setting = CreateObject("ZEQUtility2.CAppSetting")
Equal "a new setting has no key", setting.Key, ""
Equal "a new setting is empty", setting.value, Empty
setting.Key = "Width"
setting.value = 80
Equal "the key is kept", setting.Key, "Width"
Equal "the value is kept", setting.value, 80
Equal "a setting describes itself", setting.AsString, "[Width] 80"
Equal "with an indent", setting.AsString("  "), "  [Width] 80"
