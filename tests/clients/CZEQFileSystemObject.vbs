' A script asks about files and folders and changes some: every member, late-bound.
Option Explicit

Dim files, runtime, folder, path, list, first, second, third, created, changed
Set files = CreateObject("ZEQUtility2.CZEQFileSystemObject")
Set runtime = CreateObject("Scripting.FileSystemObject")
folder = Scratch

Sub WriteFile(name, content)
  Dim stream
  Set stream = runtime.CreateTextFile(folder & "\" & name, True)
  stream.Write content
  stream.Close
End Sub

path = "C:\docs\plan.txt"
Equal "a path is built", files.FSO_BuildPath("C:\docs", "plan.txt"), path
Equal "an absolute path", files.FSO_GetAbsolutePathName(path), path
Equal "a base name", files.FSO_GetBaseName(path), "plan"
Equal "an extension", files.FSO_GetExtensionName(path), "txt"
Equal "a file name", files.FSO_GetFileName(path), "plan.txt"
Equal "a parent folder", files.FSO_GetParentFolderName(path), "C:\docs"
Equal "a drive name", files.FSO_GetDriveName(path), "C:"
Equal "a path is split", files.FSO_SplitFullFilePath(path, first, second, third), True
Equal "its parts come back", Left(first, 7) & "|" & second & "|" & third, "C:\docs|plan|txt"
Equal "a name with a question mark", files.FSO_IsBaseFileNameSensible("a?b"), False
Equal "a plain name", files.FSO_IsBaseFileNameSensible("ab"), True
Equal "the Windows folder is there", files.FSO_FolderExists(files.FSO_GetSpecialFolderLocation(36)), True
Equal "the folder of temporary files is there", files.FSO_FolderExists(files.FSO_GetTempPath), True

path = folder & "\a.txt"
WriteFile "a.txt", "12345"
runtime.CreateFolder folder & "\sub"
Equal "a file exists", files.FSO_FileExists(path), True
Equal "a file is no folder", files.FSO_FolderExists(path), False
Equal "a folder exists", files.FSO_FolderExists(folder), True
Equal "a drive exists", files.FSO_DriveExists(Left(folder, 2)), True
Equal "the date of creation is read", files.FSO_GetFileCreationDate(path, created), True
Equal "it is a date of today or of yesterday", Date - Int(CDbl(created)) <= 1, True
Equal "the date of change is read", files.FSO_GetFileLastModificationDate(path, changed), True
OfType "it comes back as a date", changed, "Date"
Equal "as the runtime has it", changed, runtime.GetFile(path).DateLastModified
Equal "dates of nothing", files.FSO_GetFileCreationDate(folder & "\none", created), False
OfType "sizes are doubles", files.FSO_GetFileSize(path), "Double"
Equal "a file's size", files.FSO_GetFileSize(path), 5 / 1048576
Equal "a folder's size", files.FSO_GetFolderSize(folder), 5 / 1048576
Equal "a drive's size", files.FSO_GetDriveTotalSize(Left(folder, 2)) > 0, True
Equal "a drive's space", files.FSO_GetDriveAvailableSpace(Left(folder, 2)) > 0, True
Equal "a file object", files.FSO_GetFile(path).Name, "a.txt"
Equal "a folder object", files.FSO_GetFolder(folder & "\sub").Name, "sub"
Equal "no object for nothing", files.FSO_GetFile(folder & "\none") Is Nothing, True
OfType "a file's type is a text", files.FSO_GetFileType(path), "String"
Set list = CreateObject("ZEQUtility2.Collection")
Equal "files are listed", files.FSO_GetFiles(folder, list), 1
Equal "under their paths", list(UCase(path)).Name, "a.txt"
Equal "folders are listed", files.FSO_GetFolders(folder, list), 1
Equal "behind the files", list(2).Name, "sub"

Equal "folders are made", files.FSO_CreateFolderPath(folder & "\x\y"), True
Equal "they are there", runtime.FolderExists(folder & "\x\y"), True
WriteFile "b.txt", "new"
Equal "a file is archived and replaced", files.FSO_ArchiveAndReplaceFile(path, folder & "\b.txt"), True
Equal "the new one took its place", runtime.GetFile(path).Size, 3
Equal "a temporary name", Len(files.FSO_GetTempFileName(folder, 5)) > Len(folder), True
Equal "a name for a file", files.FSO_SuggestFileChild(folder, "new", "txt", 5), "new_001.txt"
Equal "a name for a folder", files.FSO_SuggestFolderChild(folder, "new", 5), "new_001"
Equal "a file is deleted", files.FSO_DeleteFile(path), True
Equal "it is gone", runtime.FileExists(path), False
Equal "what is not there is not deleted", files.FSO_DeleteFile(path, True), False
