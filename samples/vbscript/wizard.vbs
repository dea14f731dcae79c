' A wizard on the keyboard, with help: its pages are classes of this script.
'
'   cscript wizard.vbs              asks at each page
'   cscript wizard.vbs h n b n n f  takes its answers from the command line
'
' Answers: n next, b back, f finish, c cancel, h help.
Option Explicit

Const wzsoCancel = 1, wzsoBack = 2, wzsoNext = 3, wzsoFinish = 4
Const wizoCancelled = 1, wizoFinished = 2

Dim answersTaken
answersTaken = 0

' The next answer: from the command line, where the last one is followed by a cancel, or from the keyboard.
Function Ask(question)
  Dim answer
  If WScript.Arguments.Count = 0 Then
    WScript.Echo question
    answer = WScript.StdIn.ReadLine
  Else
    answer = "c"
    If answersTaken < WScript.Arguments.Count Then answer = WScript.Arguments(answersTaken)
    answersTaken = answersTaken + 1
    WScript.Echo question & " " & answer
  End If
  Ask = LCase(Trim(answer))
End Function

' One page. Execute and Free are all that a wizard asks of it.
Class Page
  Public Name
  Public Text

  Public Function Execute(caption, permitBack, permitNext, permitFinish, ByRef nextKey, help)
    WScript.Echo ""
    WScript.Echo caption
    WScript.Echo Text
    Execute = 0
    Do While Execute = 0
      Select Case Ask(Choices(permitBack, permitNext, permitFinish))
        Case "b"
          If permitBack Then Execute = wzsoBack
        Case "n"
          If permitNext Then Execute = wzsoNext
        Case "f"
          If permitFinish Then Execute = wzsoFinish
        Case "c"
          Execute = wzsoCancel
        Case "h"
          help.ShowHelp "", "Setup", Name
      End Select
    Loop
  End Function

  Public Sub Free
  End Sub

  Private Function Choices(permitBack, permitNext, permitFinish)
    Choices = "[h]elp [c]ancel"
    If permitBack Then Choices = Choices & " [b]ack"
    If permitNext Then Choices = Choices & " [n]ext"
    If permitFinish Then Choices = Choices & " [f]inish"
    Choices = Choices & ":"
  End Function
End Class

' Help for those without a help viewer: the same members as CWinHelp has, which shows a help file.
Class HelpOnTheConsole
  Public Sub ShowHelp(topic, form, context)
    WScript.Echo "  (Help on the page " & context & " of " & form & ".)"
  End Sub
End Class

' With a help file beside the script, the library's own provider shows it.
Function HelpProvider()
  Dim files, helpFile, page
  Set files = CreateObject("Scripting.FileSystemObject")
  helpFile = files.BuildPath(files.GetParentFolderName(WScript.ScriptFullName), "wizard.chm")
  If Not files.FileExists(helpFile) Then
    Set HelpProvider = New HelpOnTheConsole
    Exit Function
  End If
  Set HelpProvider = CreateObject("ZEQUtility2.CWinHelp")
  HelpProvider.Create helpFile
  page = 1
  Dim name
  For Each name In Array("Welcome", "Folder", "Summary")
    HelpProvider.TopicID(name) = page
    HelpProvider.FormTopicName("Setup", name) = name
    page = page + 1
  Next
End Function

Function NewPage(name, text)
  Set NewPage = New Page
  NewPage.Name = name
  NewPage.Text = text
End Function

Dim wizard
Set wizard = CreateObject("ZEQUtility2.CWizard")
wizard.Caption = "Setup"

With wizard.AddStep(NewPage("Welcome", "This will set up nothing at all."), "Welcome")
  .PermitBack = False
End With
wizard.AddStep NewPage("Folder", "It would go to C:\Tools."), "Folder"
With wizard.AddStep(NewPage("Summary", "Everything is ready."), "Summary")
  .PermitNext = False
End With

Dim outcome
outcome = wizard.DoWizard(1, , HelpProvider())
WScript.Echo ""
Select Case outcome
  Case wizoFinished
    WScript.Echo "Finished."
  Case wizoCancelled
    WScript.Echo "Cancelled."
  Case Else
    WScript.Echo "The wizard failed."
    WScript.Quit 1
End Select
