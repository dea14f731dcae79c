// A script asks about files and folders and changes some: every member, late-bound.
var files = new ActiveXObject("ZEQUtility2.CZEQFileSystemObject");
var runtime = new ActiveXObject("Scripting.FileSystemObject");
var folder = scratch();

function writeFile(name, content) {
  var stream = runtime.CreateTextFile(folder + "\\" + name, true);
  stream.Write(content);
  stream.Close();
}

var path = "C:\\docs\\plan.txt";
equal("a path is built", files.FSO_BuildPath("C:\\docs", "plan.txt"), path);
equal("an absolute path", files.FSO_GetAbsolutePathName(path), path);
equal("a base name", files.FSO_GetBaseName(path), "plan");
equal("an extension", files.FSO_GetExtensionName(path), "txt");
equal("a file name", files.FSO_GetFileName(path), "plan.txt");
equal("a parent folder", files.FSO_GetParentFolderName(path), "C:\\docs");
equal("a drive name", files.FSO_GetDriveName(path), "C:");
equal("a path is split, even if the parts go nowhere", files.FSO_SplitFullFilePath(path, "", "", ""), true);
equal("a name with a question mark", files.FSO_IsBaseFileNameSensible("a?b"), false);
equal("the Windows folder is there", files.FSO_FolderExists(files.FSO_GetSpecialFolderLocation(36)), true);
equal("the folder of temporary files is there", files.FSO_FolderExists(files.FSO_GetTempPath()), true);

path = folder + "\\a.txt";
writeFile("a.txt", "12345");
runtime.CreateFolder(folder + "\\sub");
equal("a file exists", files.FSO_FileExists(path), true);
equal("a drive exists", files.FSO_DriveExists(folder.substr(0, 2)), true);
equal("the date of creation can be read", files.FSO_GetFileCreationDate(path, 0), true);
equal("the date of change can be read", files.FSO_GetFileLastModificationDate(path, 0), true);
equal("a file's size", files.FSO_GetFileSize(path), 5 / 1048576);
equal("a folder's size", files.FSO_GetFolderSize(folder), 5 / 1048576);
equal("a drive's size", files.FSO_GetDriveTotalSize(folder.substr(0, 2)) > 0, true);
equal("a drive's space", files.FSO_GetDriveAvailableSpace(folder.substr(0, 2)) > 0, true);
equal("a file object", files.FSO_GetFile(path).Name, "a.txt");
equal("a folder object", files.FSO_GetFolder(folder + "\\sub").Name, "sub");
equal("a file's type is a text", typeof files.FSO_GetFileType(path), "string");
var list = new ActiveXObject("ZEQUtility2.Collection");
equal("files are listed", files.FSO_GetFiles(folder, list), 1);
equal("folders are listed", files.FSO_GetFolders(folder, list), 1);
equal("both are in the list", list.Count, 2);

equal("folders are made", files.FSO_CreateFolderPath(folder + "\\x\\y"), true);
writeFile("b.txt", "new");
equal("a file is archived and replaced", files.FSO_ArchiveAndReplaceFile(path, folder + "\\b.txt"), true);
equal("the new one took its place", runtime.GetFile(path).Size, 3);
equal("a temporary name", files.FSO_GetTempFileName(folder, 5).length > folder.length, true);
equal("a name for a file", files.FSO_SuggestFileChild(folder, "new", "txt", 5), "new_001.txt");
equal("a name for a folder", files.FSO_SuggestFolderChild(folder, "new", 5), "new_001");
equal("a file is deleted", files.FSO_DeleteFile(path), true);
equal("it is gone", runtime.FileExists(path), false);
