' A script keeps objects in the library's collection and in one of its own: every member, late-bound.
Option Explicit

' A collection as a script writes one: it counts from 1 and has no keys.
Class Shelf
  Private items

  Private Sub Class_Initialize
    Set items = CreateObject("Scripting.Dictionary")
  End Sub

  Public Sub Add(item)
    items.Add items.Count + 1, item
  End Sub

  Public Property Get Count()
    Count = items.Count
  End Property

  Public Property Get Item(index)
    If Not items.Exists(index) Then Err.Raise 9
    Set Item = items(index)
  End Property

  Public Sub Remove(index)
    If Not items.Exists(index) Then Err.Raise 9
    items.Remove items.Count
  End Sub
End Class

Dim collections, own, drive, host
Set collections = CreateObject("ZEQUtility2.CZEQUtilityCollections")
Set own = CreateObject("ZEQUtility2.Collection")
Set drive = CreateObject("ZEQUtility2.CFakeDrive")

Equal "an object is added", collections.Collection_Add(own, drive, "C:"), True
Equal "a key is taken once", collections.Collection_Add(own, drive, "c:"), False
Equal "an object without a key", collections.Collection_Add(own, drive), True
Equal "both are there", own.Count, 2
Equal "the object is the same", own("C:"), drive
Equal "a key is found", collections.Collection_ContainsKey(own, "C:"), True
Equal "a key is not found", collections.Collection_ContainsKey(own, "D:"), False
Equal "a position is found", collections.Collection_ContainsKey(own, 2), True
Equal "there is no position 0", collections.Collection_ContainsKey(own, 0), False
Equal "an item is removed", collections.Collection_Remove(own, "C:"), True
Equal "but only once", collections.Collection_Remove(own, "C:"), False
collections.Collection_Clear own
Equal "the rest is cleared", own.Count, 0
Equal "nothing can be added to Nothing", collections.Collection_Add(Nothing, drive), False

Set host = New Shelf
Equal "an object is added to the script's collection", collections.Collection_Add(host, drive), True
Equal "and another one", collections.Collection_Add(host, drive), True
Equal "which has them", host.Count, 2
Equal "a position is found there", collections.Collection_ContainsKey(host, 2), True
Equal "another is not", collections.Collection_ContainsKey(host, 3), False
Equal "an item is removed there", collections.Collection_Remove(host, 1), True
Equal "an item that is not there", collections.Collection_Remove(host, 5), False
collections.Collection_Clear host
Equal "the script's collection is cleared", host.Count, 0
