// A script reports to its user and its developers: every member, late-bound. Somebody presses OK in message boxes.
var audit = new ActiveXObject("ZEQUtility2.CZEQAudit");
var files = new ActiveXObject("Scripting.FileSystemObject");
var logFile = scratch() + "\\debug.log";
var box = { Text: "", Caption: "" };

function logged() {
  var stream = files.OpenTextFile(logFile);
  var text = stream.ReadAll();
  stream.Close();
  return text;
}

equal("no debug file at first", audit.DebugFile, "");
equal("no control at first", audit.StatusDestControl, null);
audit.Create(logFile, "Test", true, box);
equal("the debug file is named", audit.DebugFile, logFile);
audit.ZEQDbgLog("hello");
equal("a line is logged", logged().substring(9), "] hello\r\n");
audit.ClearDebugFile();
equal("the debug file is deleted", files.FileExists(logFile), false);
audit.ZEQStatBar("hello");
equal("the box gets the status", box.Text, "hello");
audit.DebugMask = 1;
equal("the mask is kept", audit.DebugMask, 1);
equal("an information is status", audit.ZEQAudit("one", 4), 1);
equal("in the box", box.Text, "one");
equal("and in the log by the mask", logged().substring(9), "] one\r\n");
equal("a message box", audit.ZEQMsgBox("hello", 0, "Question"), 1);
audit.DebugFile = "";
equal("the debug file can be none", audit.DebugFile, "");
audit.StatusDestControl = { Caption: "" };
audit.ZEQAudit("two");
equal("another control takes its place", box.Text, "one");
equal("and gets the status", audit.StatusDestControl.Caption, "two");
