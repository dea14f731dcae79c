// A script's objects pass their values through an observable companion: every member, late-bound. JScript passes
// copies of its variables, so that nothing comes back.
var observer = new ActiveXObject("ZEQUtility2.CObservableClass");

equal("an equal value is not stored", observer.SimplePropertyUpdate(5, "Size", 5), false);
equal("another one is", observer.SimplePropertyUpdate(5, "Size", 6), true);
equal("letter case counts", observer.CheckDirtyProperty("a", "Name", "A"), true);
equal("updating tells a difference", observer.UpdateDirtyProperty("a", "Name", "b"), true);
equal("Null differs from Null here", observer.SimplePropertyUpdate(null, "Size", null), true);
equal("but not here", observer.UpdateDirtyProperty(null, "Size", null), false);
equal("an object equals itself", observer.CheckDirtyProperty(observer, "Self", observer), false);

observer.RaisePropertyChange("Size", 7);
equal("nobody is busy", observer.PropertyChangeMode, 1);
observer.PushPropertyChangeMode(5);
observer.PushPropertyChangeMode(3);
equal("the outermost mode shows", observer.PropertyChangeMode, 5);
equal("the newest goes first", observer.PopPropertyChangeMode(), 3);
equal("then the oldest", observer.PopPropertyChangeMode(), 5);
equal("inner modes are not silent", observer.MajorModeChangeOnly, false);
observer.MajorModeChangeOnly = true;
equal("unless they are to be", observer.MajorModeChangeOnly, true);
