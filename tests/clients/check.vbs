
' What every VBScript client test uses. tools/clients.sh appends this file to each script, because Wine's script host has
' no include: the procedures are known from the script's first line, and the last lines below print the totals once
' the script has come to its end. A script that stops before that has failed.
'
'   Equal name, actual, expected          the same value; Empty, Null, texts and numbers are told apart
'   OfType name, value, "Long"            the TypeName of a value
'   Raised name, number, description      the error of the statement before, which stands under On Error Resume Next
'   RefusedByHost name, number            the same for an error whose text is the script engine's own
'   Scratch                               the path of an empty folder that is the script's own
'
'   Dim c : Set c = CreateObject("ZEQUtility2.Collection")
'   Equal "a new collection is empty", c.Count, 0
'   On Error Resume Next
'   c.Remove 1
'   Raised "removing what is not there", 9, "Subscript out of range"
'   On Error GoTo 0
'
' A script is named after the class that it tests: CFakeDrive.vbs.

Dim checksPassed, checksFailed

Sub Report(name, isGood, complaint)
  If isGood Then
    checksPassed = checksPassed + 1
    WScript.Echo "ok " & name
  Else
    checksFailed = checksFailed + 1
    WScript.Echo "FAILED " & name & ": " & complaint
  End If
End Sub

Sub Equal(name, actual, expected)
  Dim same
  same = KindOf(actual) = KindOf(expected)
  If same And KindOf(actual) = "object" Then
    same = actual Is expected
  ElseIf same And KindOf(actual) <> "Empty" And KindOf(actual) <> "Null" Then
    same = (actual = expected)
  End If
  Report name, same, "expected " & Shown(expected) & ", got " & Shown(actual)
End Sub

Sub OfType(name, value, typeExpected)
  Report name, TypeName(value) = typeExpected, "expected " & typeExpected & ", got " & TypeName(value)
End Sub

Sub Raised(name, number, description)
  Dim actualNumber, actualDescription
  actualNumber = Err.Number
  actualDescription = Err.Description
  Err.Clear
  Report name, actualNumber = number And actualDescription = description, _
    "expected " & number & " " & Shown(description) & ", got " & actualNumber & " " & Shown(actualDescription)
End Sub

Sub RefusedByHost(name, number)
  Dim actualNumber
  actualNumber = Err.Number
  Err.Clear
  Report name, actualNumber = number, "expected " & number & ", got " & actualNumber
End Sub

Function Scratch()
  Scratch = WScript.Arguments(0)
End Function

Function KindOf(value)
  If IsObject(value) Then
    KindOf = "object"
    Exit Function
  End If
  Select Case VarType(value)
    Case 0 KindOf = "Empty"
    Case 1 KindOf = "Null"
    Case 2, 3, 4, 5, 6, 17 KindOf = "number"
    Case Else KindOf = TypeName(value)
  End Select
End Function

Function Shown(value)
  Select Case KindOf(value)
    Case "object" Shown = "an object (" & TypeName(value) & ")"
    Case "Empty", "Null" Shown = KindOf(value)
    Case "String" Shown = """" & value & """"
    Case Else Shown = TypeName(value) & " " & CStr(value)
  End Select
End Function

WScript.Echo CLng(checksPassed) & " passed, " & CLng(checksFailed) & " failed"
