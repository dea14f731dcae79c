// A script plans with a simulated drive: every member, late-bound.
var drive = new ActiveXObject("ZEQUtility2.CFakeDrive");

equal("a new drive has no capacity", drive.Capacity, 0);
equal("a new drive has no name", drive.Name, "");
equal("a new drive is not too full", drive.TooFull, false);

drive.Name = "C:";
drive.Capacity = 1000;
drive.SpaceUsed = 900;
drive.SafetyMargin = 50;
equal("the name is kept", drive.Name, "C:");
equal("the safety margin is kept", drive.SafetyMargin, 50);
drive.UseBytes(50);
equal("space used is base and balance", drive.SpaceUsed, 950);
equal("free space is what is left", drive.FreeSpace, 50);
equal("exactly the margin left is not too full", drive.TooFull, false);
drive.UseBytes(1);
equal("one byte more is too full", drive.TooFull, true);
drive.FreeBytes(500);
equal("the balance", drive.Delta, -449);
equal("the high tide", drive.HighTide, 951);
equal("the high tide's balance", drive.HighTideDelta, 51);
equal("the low tide", drive.LowTide, 451);
equal("the low tide's balance", drive.LowTideDelta, -449);

drive.Capacity = 1073741824;
drive.SpaceUsed = 0;
equal("a drive describes itself", drive.AsString,
      "[C:]  Capacity: 1024.000M  FreeSpace: 1024.000M  Delta: 0.000M  LowTide: 0.000M  LowTideDelta: 0.000M  " +
          "HighTide: 0.000M  HighTideDelta: 0.000M  ");
drive.UseBytes("12.5");
equal("a text that is a number is taken", drive.Delta, 12.5);
drive.ResetLimits();
equal("a reset clears the balance", drive.Delta, 0);

refused("a text that is no number is refused", function () { drive.UseBytes("many"); });
refused("an unknown member is refused", function () { drive.Burn(); });
