// A script compares versions: late-bound.
var version = new ActiveXObject("ZEQUtility2.CVersionInfo");
version.ItemName = "Editor";
version.description = "text";
version.VerMajor = 1;
version.VerMinor = 2;
version.Revision = 3;
equal("the name is kept", version.ItemName, "Editor");
equal("the description is kept", version.description, "text");
equal("equal numbers", version.IsEqualTo(1, 2, 3), true);
equal("later", version.IsLaterThan(1, 2, 2), true);
var other = new ActiveXObject("ZEQUtility2.CVersionInfo");
equal("later than another version", version.IsLaterThanVer(other), true);
equal("reading what is missing succeeds", version.ReadFromIniFile("C:\\no such folder\\x.ini"), true);
equal("it is version 1.1.1", version.IsEqualTo(1, 1, 1), true);
version.Clear();
equal("a cleared version", version.VerMajor + version.VerMinor + version.Revision, 0);
refused("no version", function () { version.IsLaterThanVer(null); });
