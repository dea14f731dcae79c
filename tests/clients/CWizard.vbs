' A wizard whose pages and help are a script's own classes.
Option Explicit

Dim trace, freed
trace = ""
freed = 0

Class Page
  Public Outcome
  Public NextKey
  Public Topic
  Public Function Execute(CaptionA, PermitBackA, PermitNextA, PermitFinishA, ByRef SubsequentStepKeyA, HelpProviderA)
    trace = trace & CaptionA & " " & PermitBackA & PermitNextA & PermitFinishA & " [" & SubsequentStepKeyA & "]; "
    If Not HelpProviderA Is Nothing Then HelpProviderA.ShowHelp Topic, "Main", "Print"
    If NextKey <> "" Then SubsequentStepKeyA = NextKey
    Execute = Outcome
    If Outcome = 99 Then Outcome = 5
  End Function
  Public Sub Free
    freed = freed + 1
  End Sub
End Class

Class Provider
  Public Sub ShowHelp(TopicNameA, FormNameA, ContextNameA)
    trace = trace & "help " & TopicNameA & "/" & FormNameA & "/" & ContextNameA & "; "
  End Sub
End Class

Class Failing
  Public Function Execute(CaptionA, PermitBackA, PermitNextA, PermitFinishA, ByRef SubsequentStepKeyA, HelpProviderA)
    Err.Raise 5
  End Function
  Public Sub Free
    freed = freed + 1
  End Sub
End Class

Function NewPage(outcome, nextKey)
  Dim made
  Set made = New Page
  made.Outcome = outcome
  made.NextKey = nextKey
  Set NewPage = made
End Function

Function TraceOf()
  TraceOf = trace
  trace = ""
End Function

Dim wizard, details
Set wizard = CreateObject("ZEQUtility2.CWizard")
Equal "a new wizard has no title", wizard.Caption, ""
Equal "a wizard without steps fails", wizard.DoWizard, 0
Equal "there is no step", wizard.Item(1) Is Nothing, True

wizard.Caption = "Setup"
Equal "the title is kept", wizard.Caption, "Setup"
Dim first
Set first = NewPage(3, "")
Set details = wizard.AddStep(first, "A")
OfType "a step has a record", details, "_CWizardStepDetails"
Equal "a key is taken once", wizard.AddStep(NewPage(3, ""), "a") Is Nothing, True
wizard.AddStep(NewPage(3, "C"), "B").PermitBack = False
wizard.AddStep NewPage(1, ""), "Skipped"
Set details = wizard.AddStep(NewPage(4, ""), "C")
Equal "a step by its key", wizard.Item("c").Key, "C"
Equal "a step by its position", wizard.Item(2).Key, "B"
Equal "the record has the page itself", wizard.Item("A").TheStep Is first, True

Equal "the wizard runs to its end", wizard.DoWizard, 2
Equal "each page saw what it should", TraceOf, _
  "Setup - Step 1 of 4 TrueTrueTrue []; Setup - Step 2 of 4 FalseTrueTrue []; Setup - Step 4 of 4 TrueTrueTrue []; "
Equal "positions are known after a run", details.Index, 4

Equal "it starts at a key", wizard.DoWizard("Skipped"), 1
trace = ""
wizard.Item(1).NextStepKey = "Skipped"
Equal "a record's default step", wizard.DoWizard(1), 1
trace = ""
wizard.Item(1).TheStep.Outcome = 4
Equal "Finish leads to the finish step", wizard.DoWizard(1, "Skipped"), 1
Equal "by way of two pages", TraceOf, "Setup - Step 1 of 4 TrueTrueTrue []; Setup - Step 3 of 4 TrueTrueTrue []; "

first.Topic = "Intro"
first.Outcome = 5
Equal "pages get the help provider", wizard.DoWizard(1, , New Provider), 2
Equal "and it shows help", TraceOf, "Setup - Step 1 of 4 TrueTrueTrue []; help Intro/Main/Print; "
Equal "the library's own will do", wizard.DoWizard(1, , CreateObject("ZEQUtility2.CWinHelp")), 2
trace = ""

first.Outcome = 99
Equal "any other outcome runs the page again", wizard.DoWizard, 2
Equal "with the same caption", TraceOf, _
  "Setup - Step 1 of 4 TrueTrueTrue []; Setup - Step 1 of 4 TrueTrueTrue []; "

Dim key
key = "before"
Equal "a record runs its page", wizard.Item("B").Execute("Alone", key), 3
Equal "and hands the key back", key, "C"
Equal "with the caption given", TraceOf, "Alone FalseTrueTrue [before]; "

Set details = Nothing
wizard.Clear
Equal "each page is freed once", freed, 4
wizard.Clear
Equal "and only once", freed, 4

wizard.AddStep New Failing, "F"
Equal "a page that fails ends the wizard", wizard.DoWizard, 0
Set wizard = Nothing
Equal "the wizard's end frees its pages", freed, 5

Dim record
Set record = CreateObject("ZEQUtility2.CWizardStepDetails")
Equal "a new record permits Back", record.PermitBack, True
Equal "a new record permits Next", record.PermitNext, True
Equal "a new record permits Finish", record.PermitFinish, True
Equal "a new record has no page", record.TheStep Is Nothing, True
record.Key = "K"
record.Index = 3
record.NextStepKey = "N"
record.BackStepKey = "B"
record.PermitNext = False
record.PermitFinish = False
Equal "the key is kept", record.Key, "K"
Equal "the position is kept", record.Index, 3
Equal "the next step is kept", record.NextStepKey, "N"
Equal "the step before is kept", record.BackStepKey, "B"
Equal "the permission for Next is kept", record.PermitNext, False
Equal "the permission for Finish is kept", record.PermitFinish, False
Set record.TheStep = first
Equal "the page is kept", record.TheStep Is first, True
Set record.TheStep = Nothing
Equal "the page can be taken away", record.TheStep Is Nothing, True
