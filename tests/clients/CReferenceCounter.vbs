' A script counts how deep it is: every member, late-bound.
Option Explicit

Dim counter
Set counter = CreateObject("ZEQUtility2.CReferenceCounter")

Equal "a new counter is at zero", counter.CallDepth, 0
Equal "and says so", counter.Zeroed, True
OfType "the count is a long", counter.CallDepth, "Long"
Equal "one up", counter.Increment, 1
Equal "no longer at zero", counter.Zeroed, False
Equal "two up", counter.Increment(), 2
Equal "one down", counter.Decrement, 1
counter.Zeroed = False
Equal "assigning False counts up", counter.CallDepth, 2
counter.Zeroed = True
Equal "assigning True counts down", counter.CallDepth, 1
Equal "and sets nothing", counter.Zeroed, False
Equal "down to zero", counter.Decrement, 0
Equal "never below", counter.Decrement, 0
