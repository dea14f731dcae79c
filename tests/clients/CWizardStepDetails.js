// A script keeps the record of a wizard's step: every member, late-bound.
var step = new ActiveXObject("ZEQUtility2.CWizardStepDetails");
equal("a new record permits Back", step.PermitBack, true);
equal("a new record permits Next", step.PermitNext, true);
equal("a new record permits Finish", step.PermitFinish, true);
step.Key = "K";
step.Index = 3;
step.PermitBack = false;
step.PermitNext = false;
step.PermitFinish = false;
step.NextStepKey = "N";
step.BackStepKey = "B";
equal("the key is kept", step.Key, "K");
equal("the position is kept", step.Index, 3);
equal("the permission for Back is kept", step.PermitBack, false);
equal("the permission for Next is kept", step.PermitNext, false);
equal("the permission for Finish is kept", step.PermitFinish, false);
equal("the next step is kept", step.NextStepKey, "N");
equal("the step before is kept", step.BackStepKey, "B");

var freed = 0;
var seen = "";
var page = {
  Execute: function (caption, back, next, finish) {
    seen = caption + " " + back + next + finish;
    return 3;
  },
  Free: function () { freed += 1; }
};
step.TheStep = page;
equal("the page is kept", step.TheStep === page, true);
equal("the page runs", step.Execute("Alone", ""), 3);
equal("it sees what it may do", seen, "Alone falsefalsefalse");
step = null;  // While the script host can still run the page's functions.
equal("a record that ends frees its page", freed, 1);
