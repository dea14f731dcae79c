' A script keeps the record of a wizard's step: every member, late-bound.
Option Explicit

Class Page
  Public Seen
  Public Function Execute(CaptionA, PermitBackA, PermitNextA, PermitFinishA, ByRef SubsequentStepKeyA, HelpProviderA)
    Seen = CaptionA & " " & PermitBackA & PermitNextA & PermitFinishA
    Execute = 3
  End Function
  Public Sub Free
  End Sub
End Class

Dim details, first, key
Set details = CreateObject("ZEQUtility2.CWizardStepDetails")
Equal "a new record permits Back", details.PermitBack, True
Equal "a new record has no page", details.TheStep Is Nothing, True
details.Key = "K"
details.Index = 3
details.PermitBack = False
details.PermitNext = False
details.PermitFinish = False
details.NextStepKey = "N"
details.BackStepKey = "B"
Equal "the key is kept", details.Key, "K"
Equal "the position is kept", details.Index, 3
Equal "the permission for Back is kept", details.PermitBack, False
Equal "the permission for Next is kept", details.PermitNext, False
Equal "the permission for Finish is kept", details.PermitFinish, False
Equal "the next step is kept", details.NextStepKey, "N"
Equal "the step before is kept", details.BackStepKey, "B"

Set first = New Page
Set details.TheStep = first
Equal "the page is kept", details.TheStep Is first, True
key = ""
Equal "the page runs", details.Execute("Alone", key), 3
Equal "it sees what it may do", first.Seen, "Alone FalseFalseFalse"
Equal "the next step comes back", key, "N"
