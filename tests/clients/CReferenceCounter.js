// A script counts how deep it is: every member, late-bound.
var counter = new ActiveXObject("ZEQUtility2.CReferenceCounter");

equal("a new counter is at zero", counter.CallDepth, 0);
equal("and says so", counter.Zeroed, true);
equal("one up", counter.Increment(), 1);
equal("two up", counter.Increment(), 2);
equal("one down", counter.Decrement(), 1);
counter.Zeroed = false;
equal("assigning false counts up", counter.CallDepth, 2);
counter.Zeroed = true;
equal("assigning true counts down", counter.CallDepth, 1);
equal("down to zero", counter.Decrement(), 0);
equal("never below", counter.Decrement(), 0);
