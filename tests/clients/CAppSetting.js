// A script keeps a setting: every member, late-bound.
var setting = new ActiveXObject("ZEQUtility2.CAppSetting");
setting.Key = "Width";
setting.value = "80";
equal("the key is kept", setting.Key, "Width");
equal("the value is kept", setting.value, "80");
equal("a setting describes itself", setting.AsString(), "[Width] 80");
