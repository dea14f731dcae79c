// What a program's user sees: messages, keys, changes, help, wizards.

#include "Scenario.h"

namespace conformance {
namespace {

const Scenario auditScenario(L"CZEQAudit", [] {
  const Object<_CZEQAudit> audit(L"CZEQAudit");
  const std::wstring log = scratchFolder() + L"\\debug.log";
  std::wstring status;
  const Value label = Value::owning(new ScriptObject([&](std::wstring_view, DISPPARAMS& arguments) {
    status = arguments.cArgs == 1 && arguments.rgvarg[0].vt == VT_BSTR ? arguments.rgvarg[0].bstrVal : L"";
    return Value();
  }));
  const Listener events(audit, DIID___CZEQAudit, true);
  CALL(audit, Create, log, L"Conformance", true, label);
  equal(L"the debug file is kept", GET(audit, DebugFile), log);
  equal(L"the control is kept", GET(audit, StatusDestControl), label);
  Value message = L"hello";
  CALL(audit, ZEQStatBar, ref(message));
  equal(L"the control gets the status", status, L"hello");
  CALL(audit, ZEQDbgLog, ref(message));
  CALL(audit, ClearDebugFile);
  PUT(audit, DebugMask, ZEQ_AUD_ACT_STAT);
  equal(L"the mask is kept", GET(audit, DebugMask), ZEQ_AUD_ACT_STAT);
  equal(L"a message is audited", CALL(audit, ZEQAudit, ref(message), ZEQ_AUD_DEBUG, 0, 0), 1);
  equal(L"the event was raised", events.count() > 0, true);
  Value title = L"Question";
  equal(L"a message box", CALL(audit, ZEQMsgBox, ref(message), 0, ref(title)), IDOK);
  CALL(audit, ZEQAudit, ref(message), ZEQ_AUD_ERROR, ZEQ_AUD_ACT_STOP, 0);
  equal(L"the client stops the program in its own way", events.count(2), 1);
  SET(audit, StatusDestControl, static_cast<IDispatch*>(nullptr));
  PUT(audit, DebugFile, L"");
});

const Scenario keysScenario(L"CKeyMapping", [] {
  const Object<_CKeyMapping> key(L"CKeyMapping");
  PUT(key, KeyCode, 112);
  PUT(key, Shift, 2);
  PUT(key, Name, L"Help");
  PUT(key, description, L"Shows it");
  equal(L"the key code is kept", GET(key, KeyCode), 112);
  equal(L"the shift state is kept", GET(key, Shift), 2);
  equal(L"the name is kept", GET(key, Name), L"Help");
  equal(L"the description is kept", GET(key, description), L"Shows it");
  equal(L"it describes itself", CALL(key, AsString, L""), L"[CTRL F1] Help - Shows it");
});

const Scenario keyMapsScenario(L"CKeyMappings", [] {
  const Object<_CKeyMappings> keys(L"CKeyMappings");
  const std::wstring path = scratchFolder() + L"\\keys.ini";
  const Object<_CKeyMapping> key(CALL(keys, Add));
  PUT(key, KeyCode, 83);
  PUT(key, Name, L"Save");
  equal(L"keys are counted", GET(keys, count), 1);
  equal(L"by position", GET(keys, Item, 1), key);
  equal(L"by name", GET(keys, ItemByName, L"Save"), key);
  equal(L"by keystroke", GET(keys, ItemByKeycode, 83, 0), key);
  equal(L"there is an enumerator", GET(keys, NewEnum).get().vt == VT_UNKNOWN, true);
  equal(L"they describe themselves", CALL(keys, AsString, L""), L"Keyboard mappings: \r\n    [S] Save - ");
  equal(L"they are written", CALL(keys, WriteToFile, path, L"Keys"), true);
  CALL(keys, Remove, 1);
  equal(L"they are read", CALL(keys, ReadFromFile, path, L"Keys"), true);
  CALL(keys, Clear);
  equal(L"none is left", GET(keys, count), 0);
});

const Scenario filterScenario(L"CKeymapFilter", [] {
  const Object<_CKeymapFilter> filter(L"CKeymapFilter");
  const Listener events(filter, DIID___CKeymapFilter);
  equal(L"a key is bound", CALL(filter, AddMapping, L"Save", L"", 83, 2), true);
  Value processed = true;
  equal(L"the key is known", CALL(filter, Process, 83, 2, ref(processed)), true);
  equal(L"the client was told", events.count(), 1);
  equal(L"its keys", GET(Object<_CKeyMappings>(GET(filter, KeyMappings)), count), 1);
  equal(L"it describes itself", CALL(filter, AsString, L"").text().empty(), false);
});

const Scenario observableScenario(L"CObservableClass", [] {
  const Object<_CObservableClass> observer(L"CObservableClass");
  const Listener events(observer, DIID___CObservableClass);
  Value stored = 5;
  equal(L"another value is stored", CALL(observer, SimplePropertyUpdate, ref(stored), L"Size", 6), true);
  equal(L"it comes back", stored, 6);
  equal(L"a difference is found", CALL(observer, CheckDirtyProperty, ref(stored), L"Size", 7), true);
  equal(L"and stored", CALL(observer, UpdateDirtyProperty, ref(stored), L"Size", 7), true);
  equal(L"it comes back too", stored, 7);
  CALL(observer, RaisePropertyChange, L"Size", 7);
  equal(L"changes are told", events.count() >= 2, true);
  equal(L"nobody is busy", GET(observer, PropertyChangeMode), pcmIndividual);
  CALL(observer, PushPropertyChangeMode, pcmCreating);
  equal(L"a mode ends", CALL(observer, PopPropertyChangeMode), pcmCreating);
  for (const PropertyChangeMode mode : {pcmClearing, pcmCloning, pcmBatchUpdating, pcmEnumerating}) {
    CALL(observer, PushPropertyChangeMode, mode);
    equal(L"another mode ends", CALL(observer, PopPropertyChangeMode), mode);
  }
  PUT(observer, MajorModeChangeOnly, true);
  equal(L"the flag is kept", GET(observer, MajorModeChangeOnly), true);
});

const Scenario counterScenario(L"CReferenceCounter", [] {
  const Object<_CReferenceCounter> counter(L"CReferenceCounter");
  const Listener events(counter, DIID___CReferenceCounter);
  equal(L"one up", CALL(counter, Increment), 1);
  equal(L"its depth", GET(counter, CallDepth), 1);
  equal(L"it is not at zero", GET(counter, Zeroed), false);
  PUT(counter, Zeroed, true);
  equal(L"one down", CALL(counter, Decrement), 0);
  equal(L"events were raised", events.count() > 0, true);
});

const Scenario helpScenario(L"CWinHelp", [] {
  const Object<_CWinHelp> help(L"CWinHelp");
  const std::wstring file = scratchFolder() + L"\\guide.txt";  // No viewer takes it, so nothing is shown.
  CALL(help, Create, file, 5);
  equal(L"the owner is kept", GET(help, hwnd), 5);
  PUT(help, hwnd, 0);
  PUT(help, HelpFile, file);
  equal(L"the help file is kept", GET(help, HelpFile), file);
  PUT(help, TopicID, L"Intro", 42);
  equal(L"a topic's number", GET(help, TopicID, L"INTRO"), 42);
  PUT(help, FormTopicName, L"Main", L"", L"Intro");
  equal(L"a form's topic", GET(help, FormTopicName, L"Main", L""), L"Intro");
  PUT(help, DefaultTopic, L"Intro");
  equal(L"the default topic", GET(help, DefaultTopic), L"Intro");
  CALL(help, ShowTopic, L"Intro", L"", L"");
  CALL(help, ShowTopicID, 42);
  CALL(help, ShowHelpFileTopic, file, 42);
  CALL(help, ShowContents);
  CALL(help, ShowIndex);
  CALL(help, ShowFind);
  CALL(help, ShowKeyword, L"printing");
  CALL(help, LocateHelp);
  CALL(help, Hide);
  CALL(help, ClearTopics);
  CALL(help, ClearFormTopicNames);
  equal(L"topics are forgotten", GET(help, TopicID, L"Intro"), 0);
  const Object<IHelpProvider> provider(asInterface(help, IID_IHelpProvider));
  CALL(provider, ShowHelp, L"Intro", L"", L"");
  CALL(provider, ShowContents);
  CALL(provider, ShowIndex);
  CALL(provider, ShowFind);
  CALL(provider, ShowTopicID, 42);
  CALL(provider, ShowKeyword, L"printing");
});

/// A page of a wizard. A late-bound client's is known by name only, an early-bound one's by its interface.
#ifdef EARLY_BOUND
class Page final : public zeq::test::ClientObject<IWizardStep> {
 public:
  Page(WizardStepOutcome outcome, int& freed) : outcome_(outcome), freed_(freed) {}
  STDMETHODIMP Free() noexcept override {
    ++freed_;
    return S_OK;
  }
  STDMETHODIMP Execute(BSTR, VARIANT_BOOL, VARIANT_BOOL, VARIANT_BOOL, BSTR*, IHelpProvider*,
                       WizardStepOutcome* result) noexcept override {
    *result = outcome_;
    return S_OK;
  }

 private:
  WizardStepOutcome outcome_;
  int& freed_;
};

Value makePage(WizardStepOutcome outcome, int& freed) {
  return Value::owning(new Page(outcome, freed));
}
#else
Value makePage(WizardStepOutcome outcome, int& freed) {
  return Value::owning(new ScriptObject([outcome, &freed](std::wstring_view member, DISPPARAMS&) {
    if (member == L"Free") {
      ++freed;
      return Value();
    }
    return Value(static_cast<long>(outcome));
  }));
}
#endif

const Scenario wizardScenario(L"CWizard", [] {
  int freed = 0;
  const Object<_CWizard> wizard(L"CWizard");
  const Value help = Object<_CWinHelp>(L"CWinHelp");
  PUT(wizard, Caption, L"Setup");
  equal(L"the title is kept", GET(wizard, Caption), L"Setup");
  equal(L"a step is added", CALL(wizard, AddStep, makePage(wzsoNext, freed), L"A").object() != nullptr, true);
  CALL(wizard, AddStep, makePage(wzsoFinished, freed), L"B");
  {
    const Object<_CWizardStepDetails> details(GET(wizard, Item, L"B"));
    equal(L"a step by its key", GET(details, Key), L"B");
  }
  equal(L"it runs to its end", CALL(wizard, DoWizard, 1, Value::missing(), help), wizoFinished);
  CALL(wizard, Clear);
  equal(L"each page is freed", freed, 2);
});

const Scenario stepScenario(L"CWizardStepDetails", [] {
  int freed = 0;
  const Value page = makePage(wzsoNext, freed);
  {
    const Object<_CWizardStepDetails> step(L"CWizardStepDetails");
    PUT(step, Key, L"K");
    PUT(step, Index, 3);
    PUT(step, PermitBack, false);
    PUT(step, PermitNext, false);
    PUT(step, PermitFinish, false);
    PUT(step, NextStepKey, L"N");
    PUT(step, BackStepKey, L"B");
    SET(step, TheStep, page);
    equal(L"the key is kept", GET(step, Key), L"K");
    equal(L"the position is kept", GET(step, Index), 3);
    equal(L"the permission for Back is kept", GET(step, PermitBack), false);
    equal(L"the permission for Next is kept", GET(step, PermitNext), false);
    equal(L"the permission for Finish is kept", GET(step, PermitFinish), false);
    equal(L"the next step is kept", GET(step, NextStepKey), L"N");
    equal(L"the step before is kept", GET(step, BackStepKey), L"B");
    equal(L"the page is kept", GET(step, TheStep), page);
    Value key = L"";
    equal(L"the page runs", CALL(step, Execute, L"Alone", ref(key), static_cast<IDispatch*>(nullptr)),
          wzsoNext);
    equal(L"the next step comes back", key, L"N");
  }
  equal(L"the page is freed", freed, 1);
});

}  // namespace
}  // namespace conformance
