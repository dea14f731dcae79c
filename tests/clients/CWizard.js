// A wizard whose pages are a script's own objects.

var trace = "", freed = 0;

function Page(outcome) { this.outcome = outcome; }
Page.prototype.Execute = function (caption, back, next, finish, key, help) {
  trace += caption + " " + back + next + finish + "; ";
  if (help) {
    help.ShowHelp("Intro", "", "");
  }
  return this.outcome;
};
Page.prototype.Free = function () { ++freed; };

function traceOf() {
  var result = trace;
  trace = "";
  return result;
}

var wizard = new ActiveXObject("ZEQUtility2.CWizard");
equal("a wizard without steps fails", wizard.DoWizard(), 0);
equal("there is no step", wizard.Item("A"), null);
wizard.Caption = "Setup";
equal("the title is kept", wizard.Caption, "Setup");

var first = new Page(3);
var details = wizard.AddStep(first, "A");
equal("a key is taken once", wizard.AddStep(new Page(3), "a"), null);
wizard.AddStep(new Page(1), "B");
wizard.AddStep(new Page(4), "C");
details.NextStepKey = "C";
details.PermitBack = false;
equal("the record has the page itself", details.TheStep === first, true);
equal("the wizard runs to its end", wizard.DoWizard(), 2);
equal("each page saw what it should", traceOf(), "Setup - Step 1 of 3 falsetruetrue; Setup - Step 3 of 3 truetruetrue; ");
equal("it starts at a key", wizard.DoWizard("B"), 1);
traceOf();

first.outcome = 5;
var provider = {ShowHelp: function (topic) { trace += "help " + topic + "; "; }};
equal("pages get the help provider", wizard.DoWizard(1, "C", provider), 2);
equal("and it shows help", traceOf(), "Setup - Step 1 of 3 falsetruetrue; help Intro; ");

details.TheStep = new Page(1);
equal("a page can be replaced", wizard.DoWizard(), 1);

details = null;
first = null;
CollectGarbage();
wizard.Clear();
equal("each page is freed", freed, 3);
