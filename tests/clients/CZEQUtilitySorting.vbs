' A script sorts its arrays, late-bound.
Option Explicit

Dim sorting, ranks, names, low, high
Set sorting = CreateObject("ZEQUtility2.CZEQUtilitySorting")

ranks = Array(3, 1, 2)
names = Array("c", "a", "b")
sorting.QuickSortVariants ranks, names, 0, 2
Equal "ranks are sorted", Joined(ranks), "1 2 3"
Equal "names go with them", Joined(names), "a b c"

ranks = Array("b", "B", "a", "")
names = Array(0, 1, 2, 3)
low = LBound(ranks)
high = UBound(ranks)
sorting.QuickSortVariants ranks, names, low, high
Equal "texts compare by character codes", Joined(ranks), " B a b"
Equal "numbers go with them", Joined(names), "3 1 2 0"

Dim fixed(4), places(4), i
For i = 0 To 4
  fixed(i) = 10 - i
  places(i) = i
Next
sorting.QuickSortVariants fixed, places, 1, 3
Equal "only a part is sorted", Joined(fixed), "10 7 8 9 6"
Equal "and its places", Joined(places), "0 3 2 1 4"

On Error Resume Next
sorting.QuickSortVariants fixed, places, 0, 5
Raised "an index outside", 9, "Subscript out of range"
sorting.QuickSortVariants "text", places, 0, 1
Raised "no array", 13, "Type mismatch"

Function Joined(items)
  Dim i
  For i = LBound(items) To UBound(items)
    If i > LBound(items) Then Joined = Joined & " "
    Joined = Joined & items(i)
  Next
End Function
