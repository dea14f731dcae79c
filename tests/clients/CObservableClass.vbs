' A script's objects pass their values through an observable companion: every member, late-bound.
Option Explicit

Dim observer, stored, other
Set observer = CreateObject("ZEQUtility2.CObservableClass")

stored = 5
Equal "an equal value is not stored", observer.SimplePropertyUpdate(stored, "Size", 5), False
Equal "another one is", observer.SimplePropertyUpdate(stored, "Size", 6), True
Equal "into the script's variable", stored, 6
stored = 5
Equal "an integer is no long", observer.SimplePropertyUpdate(stored, "Size", CLng(5)), True
OfType "and the variable takes the new type", stored, "Long"
stored = "a"
Equal "letter case counts", observer.SimplePropertyUpdate(stored, "Name", "A"), True
Equal "a text is stored", stored, "A"
Equal "checking finds a difference", observer.CheckDirtyProperty(stored, "Name", "B"), True
Equal "and stores nothing", stored, "A"
Equal "checking finds none", observer.CheckDirtyProperty(stored, "Name", "A"), False
Equal "updating stores", observer.UpdateDirtyProperty(stored, "Name", "B"), True
Equal "what differs", stored, "B"
Equal "and only that", observer.UpdateDirtyProperty(stored, "Name", "B"), False

stored = Null
Equal "Null differs from Null here", observer.SimplePropertyUpdate(stored, "Size", Null), True
Equal "but not here", observer.UpdateDirtyProperty(stored, "Size", Null), False
Equal "and not there", observer.CheckDirtyProperty(stored, "Size", Null), False

Set other = CreateObject("ZEQUtility2.Collection")
stored = Empty
Equal "an object is stored", observer.SimplePropertyUpdate(stored, "List", other), True
Equal "as itself", stored, other
Equal "and equals itself", observer.SimplePropertyUpdate(stored, "List", other), False
Equal "but no other", observer.CheckDirtyProperty(stored, "List", CreateObject("ZEQUtility2.Collection")), True

observer.RaisePropertyChange "Size", 7
Equal "nobody is busy", observer.PropertyChangeMode, 1
observer.PushPropertyChangeMode 5
observer.PushPropertyChangeMode 3
Equal "the outermost mode shows", observer.PropertyChangeMode, 5
Equal "the newest goes first", observer.PopPropertyChangeMode, 3
Equal "then the oldest", observer.PopPropertyChangeMode(), 5
Equal "then none is left", observer.PopPropertyChangeMode, 1
Equal "inner modes are not silent", observer.MajorModeChangeOnly, False
observer.MajorModeChangeOnly = True
Equal "unless they are to be", observer.MajorModeChangeOnly, True
