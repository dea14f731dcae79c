// A script describes an attached file: every member, late-bound.
var attachment = new ActiveXObject("ZEQUtility2.CAttachment");

equal("a new attachment has no path", attachment.FullPath, "");
equal("nothing cannot be opened", attachment.Execute(), false);

attachment.IconKey = "paper";
equal("the icon's key is kept", attachment.IconKey, "paper");
attachment.Create("C:\\docs\\plan.txt");
equal("the path", attachment.FullPath, "C:\\docs\\plan.txt");
equal("the folder", attachment.Location, "C:\\docs");
equal("the name", attachment.Name, "plan");
equal("the extension", attachment.Extension, "txt");
equal("the type's description is a text", typeof attachment.Association, "string");
equal("the icon's key is empty again", attachment.IconKey, "");
equal("a missing file is not opened", attachment.Execute(), false);

attachment.FullPath = scratch() + "\\other.txt";
attachment.Location = "D:\\";
attachment.Name = "other";
attachment.Extension = "doc";
attachment.Association = "Plan";
equal("every property can be set",
      attachment.Location + attachment.Name + "." + attachment.Extension + " " + attachment.Association,
      "D:\\other.doc Plan");
equal("setting one changes no other", attachment.FullPath, scratch() + "\\other.txt");

refused("a path is needed", function () { attachment.Create(); });
