#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

#include "support/ClientObject.h"
#include "support/Component.h"
#include "support/Leaks.h"
#include "wizard/Step.h"

namespace zeq::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

WizardStepOutcome outcomeOf(int number) {
  return static_cast<WizardStepOutcome>(number);
}

class CWizardTest : public testing::Test {
 protected:
  CWizardTest() {
    Step::freed = 0;
    Step::whenFreed = nullptr;
  }
  ~CWizardTest() override {
    wizard.reset();
    Step::whenFreed = nullptr;
    EXPECT_EQ(Step::alive, 0);
  }

  ComPtr<_CWizardStepDetails> add(std::wstring_view key, PageAction execute) {
    ComPtr<_CWizardStepDetails> details;
    EXPECT_EQ(wizard->AddStep(Step::make(std::move(execute)).get(), Bstr(key).get(), details.out()), S_OK);
    return details;
  }
  /// Adds a step that notes its caption and leaves with an outcome.
  ComPtr<_CWizardStepDetails> add(std::wstring_view key, int outcome, std::wstring next = {}) {
    return add(key, [this, outcome, next](Page& page) {
      captions.push_back(page.caption);
      page.key = next;
      return outcomeOf(outcome);
    });
  }
  /// A step that leaves with one outcome after another.
  void addChanging(std::wstring_view key, std::vector<int> outcomes) {
    add(key, [this, outcomes, run = std::size_t{0}](Page& page) mutable {
      captions.push_back(page.caption);
      return outcomeOf(outcomes.at(run++));
    });
  }
  ComPtr<_CWizardStepDetails> item(const Variant& keyOrPosition) {
    ComPtr<_CWizardStepDetails> details;
    EXPECT_EQ(wizard->get_Item(keyOrPosition.get(), details.out()), S_OK);
    return details;
  }
  std::wstring keyOf(const ComPtr<_CWizardStepDetails>& details) {
    if (!details) {
      return L"(none)";
    }
    Bstr key;
    EXPECT_EQ(details->get_Key(key.out()), S_OK);
    return std::wstring(key.view());
  }
  WizardOutcome run(const Variant& first = Variant(1L), const Variant& finish = Variant::missing(),
                    IHelpProvider* helpProvider = nullptr) {
    auto result = static_cast<WizardOutcome>(3);
    EXPECT_EQ(wizard->DoWizard(first.get(), finish.get(), helpProvider, &result), S_OK);
    return result;
  }

  ComPtr<_CWizard> wizard = create<CWizard, _CWizard>();
  std::vector<std::wstring> captions;
};

// ---- the steps of a wizard

TEST_F(CWizardTest, FindsStepsByPositionAndKey) {
  add(L"A", wzsoNext);
  add(L"B", wzsoNext);
  EXPECT_EQ(keyOf(item(Variant(1L))), L"A");
  EXPECT_EQ(keyOf(item(Variant(2.0))), L"B");
  EXPECT_EQ(keyOf(item(Variant(L"b"))), L"B");
  EXPECT_FALSE(item(Variant(0L)));
  EXPECT_FALSE(item(Variant(3L)));
  EXPECT_FALSE(item(Variant(L"C")));
  EXPECT_FALSE(item(Variant(L"1")));  // A text is a key.
  EXPECT_FALSE(item(Variant::null()));
  EXPECT_FALSE(item(Variant()));
}

TEST_F(CWizardTest, RefusesAKeyTwice) {
  add(L"A", wzsoNext);
  EXPECT_FALSE(add(L"A", wzsoNext));
  EXPECT_FALSE(add(L"a", wzsoNext));
  EXPECT_FALSE(item(Variant(2L)));
  EXPECT_EQ(Step::freed, 0);  // The step that was refused never had a record.
  EXPECT_EQ(Step::alive, 1);
}

TEST_F(CWizardTest, FindsAStepUnderTheKeyThatItWasAddedWith) {
  const auto details = add(L"A", wzsoFinished);
  details->put_Key(Bstr(L"Other").get());
  EXPECT_EQ(keyOf(item(Variant(L"A"))), L"Other");
  EXPECT_FALSE(item(Variant(L"Other")));
}

TEST_F(CWizardTest, NewStepsPermitEverything) {
  const auto details = add(L"A", wzsoNext);
  VARIANT_BOOL back = VARIANT_FALSE;
  VARIANT_BOOL next = VARIANT_FALSE;
  VARIANT_BOOL finish = VARIANT_FALSE;
  short index = -1;
  Bstr nextKey, backKey;
  details->get_PermitBack(&back);
  details->get_PermitNext(&next);
  details->get_PermitFinish(&finish);
  details->get_Index(&index);
  details->get_NextStepKey(nextKey.out());
  details->get_BackStepKey(backKey.out());
  EXPECT_EQ(back, VARIANT_TRUE);
  EXPECT_EQ(next, VARIANT_TRUE);
  EXPECT_EQ(finish, VARIANT_TRUE);
  EXPECT_EQ(index, 0);
  EXPECT_EQ(nextKey.view(), L"");
  EXPECT_EQ(backKey.view(), L"");
  ComPtr<IWizardStep> step;
  details->get_TheStep(step.out());
  EXPECT_TRUE(step);
}

TEST_F(CWizardTest, CaptionIsKept) {
  Bstr caption;
  EXPECT_EQ(wizard->get_Caption(caption.out()), S_OK);
  EXPECT_EQ(caption.view(), L"");
  wizard->put_Caption(Bstr(L"Setup").get());
  EXPECT_EQ(wizard->get_Caption(caption.out()), S_OK);
  EXPECT_EQ(caption.view(), L"Setup");
}

// ---- running

TEST_F(CWizardTest, RunsFromStepToStep) {
  add(L"A", wzsoNext);
  add(L"B", wzsoNext);
  add(L"C", wzsoFinish);
  EXPECT_EQ(run(), wizoFinished);
  EXPECT_THAT(captions, ElementsAre(L"Step 1 of 3", L"Step 2 of 3", L"Step 3 of 3"));
}

TEST_F(CWizardTest, TitleComesBeforeTheStep) {
  wizard->put_Caption(Bstr(L"Setup").get());
  for (const wchar_t* key : {L"A", L"B", L"C", L"D"}) {
    add(key, wzsoNext);
  }
  add(L"E", wzsoFinished);
  EXPECT_EQ(run(Variant(2L)), wizoFinished);
  EXPECT_THAT(captions, ElementsAre(L"Setup - Step 2 of 5", L"Setup - Step 3 of 5", L"Setup - Step 4 of 5",
                                    L"Setup - Step 5 of 5"));
}

TEST_F(CWizardTest, NumbersTheStepsWhenItStarts) {
  const auto first = add(L"A", wzsoFinished);
  const auto second = add(L"B", wzsoFinished);
  run();
  short index = 0;
  first->get_Index(&index);
  EXPECT_EQ(index, 1);
  second->get_Index(&index);
  EXPECT_EQ(index, 2);
}

TEST_F(CWizardTest, EachOutcomeOfASingleStep) {
  const std::vector<std::pair<int, WizardOutcome>> rows{
      {wzsoError, wizoError},    {wzsoCancel, wizoCancelled}, {wzsoBack, wizoError},
      {wzsoNext, wizoError},     {wzsoFinish, wizoFinished},  {wzsoFinished, wizoFinished},
      {Step::failing, wizoError}};
  for (const auto& [outcome, result] : rows) {
    wizard->Clear();
    add(L"A", outcome);
    EXPECT_EQ(run(), result) << outcome;
  }
}

TEST_F(CWizardTest, BackGoesToTheStepBefore) {
  addChanging(L"A", {wzsoNext, wzsoCancel});
  add(L"B", wzsoBack);
  EXPECT_EQ(run(), wizoCancelled);
  EXPECT_THAT(captions, ElementsAre(L"Step 1 of 2", L"Step 2 of 2", L"Step 1 of 2"));
}

TEST_F(CWizardTest, APageNamesTheStepToGoTo) {
  addChanging(L"A", {wzsoNext, wzsoFinished});
  add(L"B", wzsoNext, L"a");
  add(L"C", wzsoFinished);
  EXPECT_EQ(run(), wizoFinished);
  EXPECT_THAT(captions, ElementsAre(L"Step 1 of 3", L"Step 2 of 3", L"Step 1 of 3"));
}

TEST_F(CWizardTest, NamedStepHoldsForBackAndFinishToo) {
  add(L"A", wzsoFinish, L"C");
  add(L"B", wzsoFinished);
  add(L"C", wzsoBack, L"B");
  EXPECT_EQ(run(Variant(1L), Variant(L"A")), wizoFinished);
  EXPECT_THAT(captions, ElementsAre(L"Step 1 of 3", L"Step 3 of 3", L"Step 2 of 3"));
}

TEST_F(CWizardTest, NamedStepMeansNothingForOtherOutcomes) {
  add(L"A", wzsoCancel, L"B");
  add(L"B", wzsoFinished);
  EXPECT_EQ(run(), wizoCancelled);
}

TEST_F(CWizardTest, UnknownNamedStepIsAnError) {
  for (const int outcome : {wzsoBack, wzsoNext, wzsoFinish}) {
    for (const wchar_t* key : {L"Nowhere", L"  "}) {
      wizard->Clear();
      add(L"A", wzsoFinished);
      add(L"B", outcome, key);
      EXPECT_EQ(run(Variant(2L)), wizoError);
    }
  }
}

TEST_F(CWizardTest, DefaultKeysHoldWhereThePageNamesNone) {
  addChanging(L"A", {wzsoNext, wzsoFinished});
  add(L"B", wzsoNext)->put_NextStepKey(Bstr(L"D").get());
  add(L"C", wzsoError);
  add(L"D", wzsoBack, L"  ")->put_BackStepKey(Bstr(L"A").get());  // A blank key names none.
  EXPECT_EQ(run(), wizoFinished);
  EXPECT_THAT(captions, ElementsAre(L"Step 1 of 4", L"Step 2 of 4", L"Step 4 of 4", L"Step 1 of 4"));
}

TEST_F(CWizardTest, FinishGoesToTheLastStepFirst) {
  add(L"A", wzsoFinish);
  add(L"B", wzsoError);
  add(L"C", wzsoFinish);
  EXPECT_EQ(run(), wizoFinished);
  EXPECT_THAT(captions, ElementsAre(L"Step 1 of 3", L"Step 3 of 3"));
}

TEST_F(CWizardTest, FinishGoesToTheFinishStep) {
  add(L"A", wzsoFinish);
  add(L"B", wzsoFinished);
  add(L"C", wzsoError);
  EXPECT_EQ(run(Variant(1L), Variant(L"B")), wizoFinished);
  EXPECT_EQ(run(Variant(1L), Variant(2L)), wizoFinished);
  EXPECT_THAT(captions, ElementsAre(L"Step 1 of 3", L"Step 2 of 3", L"Step 1 of 3", L"Step 2 of 3"));
  EXPECT_EQ(run(Variant(1L), Variant(L"Nowhere")), wizoError);
  EXPECT_EQ(run(Variant(1L), Variant()), wizoError);  // Given, but no step.
}

TEST_F(CWizardTest, AnyOtherOutcomeRunsTheStepAgain) {
  addChanging(L"A", {7, -1, wzsoFinished});
  EXPECT_EQ(run(), wizoFinished);
  EXPECT_THAT(captions, ElementsAre(L"Step 1 of 1", L"Step 1 of 1", L"Step 1 of 1"));
}

TEST_F(CWizardTest, StartsAtAKey) {
  add(L"A", wzsoError);
  add(L"B", wzsoFinished);
  EXPECT_EQ(run(Variant(L"b")), wizoFinished);
  EXPECT_THAT(captions, ElementsAre(L"Step 2 of 2"));
}

TEST_F(CWizardTest, UnknownFirstStepIsAnError) {
  EXPECT_EQ(run(), wizoError);  // No step at all.
  add(L"A", wzsoFinished);
  EXPECT_EQ(run(Variant(2L)), wizoError);
  EXPECT_EQ(run(Variant(0L)), wizoError);
  EXPECT_EQ(run(Variant(L"B")), wizoError);
  EXPECT_EQ(run(Variant::null()), wizoError);
  EXPECT_THAT(captions, IsEmpty());
}

TEST_F(CWizardTest, PageGetsPermissionsAnEmptyKeyAndTheHelpProvider) {
  const auto help = create<CWinHelp, _CWinHelp>().query<IHelpProvider>();
  std::vector<Page> pages;
  const auto details = add(L"A", [&](Page& page) {
    pages.push_back(page);
    page.key = pages.size() == 1 ? L"A" : L"";
    return pages.size() == 1 ? wzsoNext : wzsoFinished;
  });
  details->put_PermitBack(VARIANT_FALSE);
  details->put_PermitFinish(VARIANT_FALSE);
  EXPECT_EQ(run(Variant(1L), Variant::missing(), help.get()), wizoFinished);
  ASSERT_EQ(pages.size(), 2U);
  for (const Page& page : pages) {
    EXPECT_FALSE(page.permitBack);
    EXPECT_TRUE(page.permitNext);
    EXPECT_FALSE(page.permitFinish);
    EXPECT_EQ(page.key, L"");
    EXPECT_EQ(page.helpProvider, help.get());
  }
}

TEST_F(CWizardTest, PermissionsAreNotEnforced) {
  add(L"A", wzsoNext)->put_PermitNext(VARIANT_FALSE);
  add(L"B", wzsoFinished);
  EXPECT_EQ(run(), wizoFinished);
}

TEST_F(CWizardTest, ClientsIndexIsWhatCounts) {
  ComPtr<_CWizardStepDetails> first = add(L"A", [&](Page& page) {
    captions.push_back(page.caption);
    first->put_Index(2);
    return wzsoNext;
  });
  add(L"B", wzsoError);
  add(L"C", wzsoFinished);
  EXPECT_EQ(run(), wizoFinished);
  EXPECT_THAT(captions, ElementsAre(L"Step 1 of 3", L"Step 3 of 3"));
  first.reset();
}

TEST_F(CWizardTest, MoreStepsThanPositions) {
  const auto step = Step::make([](Page&) { return wzsoFinished; });
  for (int i = 1; i <= 32767; ++i) {
    ComPtr<_CWizardStepDetails> details;
    wizard->AddStep(step.get(), Bstr(std::to_wstring(i)).get(), details.out());
  }
  EXPECT_EQ(run(Variant(32767L)), wizoFinished);
  add(L"one more", wzsoFinished);
  EXPECT_EQ(run(), wizoError);
}

// ---- what steps do to a running wizard

TEST_F(CWizardTest, AStepThatClearsTheWizard) {
  addChanging(L"A", {wzsoNext});
  add(L"B", [&](Page& page) {
    captions.push_back(page.caption);
    if (captions.size() > 2) {
      return wzsoNext;
    }
    EXPECT_EQ(wizard->Clear(), S_OK);
    EXPECT_EQ(Step::freed, 1);  // A; B's record is in use.
    return outcomeOf(7);
  });
  EXPECT_EQ(run(), wizoError);
  EXPECT_THAT(captions, ElementsAre(L"Step 1 of 2", L"Step 2 of 2", L"Step 2 of 0"));
  EXPECT_EQ(Step::freed, 2);
}

TEST_F(CWizardTest, AStepThatRunsTheWizardAgain) {
  int depth = 0;
  add(L"A", [&](Page& page) {
    captions.push_back(page.caption);
    if (++depth == 1) {
      EXPECT_EQ(run(Variant(L"B")), wizoCancelled);
    }
    return wzsoFinished;
  });
  add(L"B", wzsoCancel);
  EXPECT_EQ(run(), wizoFinished);
  EXPECT_THAT(captions, ElementsAre(L"Step 1 of 2", L"Step 2 of 2"));
}

TEST_F(CWizardTest, AStepThatAddsSteps) {
  add(L"A", [&](Page& page) {
    captions.push_back(page.caption);
    add(L"B", wzsoFinished);
    return wzsoNext;
  });
  EXPECT_EQ(run(), wizoFinished);
  EXPECT_THAT(captions, ElementsAre(L"Step 1 of 1", L"Step 0 of 2"));  // New steps have no number yet.
}

TEST_F(CWizardTest, AStepThatLetsTheWizardGo) {
  add(L"A", [&](Page&) {
    wizard.reset();
    return wzsoNext;
  });
  add(L"B", wzsoFinished);
  _CWizard* const raw = wizard.get();
  auto result = wizoError;
  EXPECT_EQ(raw->DoWizard(Variant(1L).get(), Variant::missing().get(), nullptr, &result), S_OK);
  EXPECT_EQ(result, wizoFinished);
  EXPECT_EQ(Step::freed, 2);
}

TEST_F(CWizardTest, AStepThatReplacesItself) {
  ComPtr<_CWizardStepDetails> details = add(L"A", [&](Page&) {
    details->putref_TheStep(nullptr);
    return outcomeOf(7);
  });
  EXPECT_EQ(run(), wizoError);  // The second time there is no step to run.
  details.reset();
  wizard.reset();
  EXPECT_EQ(Step::freed, 0);  // Only the step that a record ends with is freed.
}

// ---- the end of a record

TEST_F(CWizardTest, ClearFreesEachStepOnceInOrder) {
  std::vector<std::wstring> left;
  Step::whenFreed = [&] { left.push_back(keyOf(item(Variant(1L)))); };
  add(L"A", wzsoNext);
  add(L"B", wzsoNext);
  add(L"C", wzsoNext);
  EXPECT_EQ(wizard->Clear(), S_OK);
  EXPECT_EQ(Step::freed, 3);
  EXPECT_EQ(Step::alive, 0);
  EXPECT_THAT(left, ElementsAre(L"B", L"C", L"(none)"));
  EXPECT_EQ(wizard->Clear(), S_OK);
  EXPECT_EQ(Step::freed, 3);
}

TEST_F(CWizardTest, TheWizardsEndFreesItsSteps) {
  add(L"A", wzsoNext);
  add(L"B", wzsoNext);
  wizard.reset();
  EXPECT_EQ(Step::freed, 2);
  EXPECT_EQ(Step::alive, 0);
}

TEST_F(CWizardTest, ARecordOutlivesTheWizard) {
  auto details = add(L"A", wzsoCancel);
  wizard.reset();
  EXPECT_EQ(Step::freed, 0);
  WizardStepOutcome outcome = wzsoError;
  Bstr key;
  EXPECT_EQ(details->Execute(Bstr(L"Alone").get(), key.out(), nullptr, &outcome), S_OK);
  EXPECT_EQ(outcome, wzsoCancel);
  EXPECT_THAT(captions, ElementsAre(L"Alone"));
  details.reset();
  EXPECT_EQ(Step::freed, 1);
}

TEST_F(CWizardTest, AStepThatAddsAnotherWhenFreed) {
  int added = 0;
  Step::whenFreed = [&] { add(L"New" + std::to_wstring(++added), wzsoNext); };
  add(L"A", wzsoNext);
  add(L"B", wzsoNext);
  EXPECT_EQ(wizard->Clear(), S_OK);
  EXPECT_EQ(Step::freed, 2);
  EXPECT_EQ(keyOf(item(Variant(1L))), L"New1");
  Step::whenFreed = nullptr;
}

TEST_F(CWizardTest, AStepThatReleasesTheWizardWhenFreed) {
  auto last = create<CWizard, _CWizard>();
  _CWizard* const borrowed = last.get();
  for (const wchar_t* key : {L"A", L"B"}) {
    ComPtr<_CWizardStepDetails> details;
    const auto step = Step::make([](Page&) { return wzsoFinished; });
    EXPECT_EQ(borrowed->AddStep(step.get(), Bstr(key).get(), details.out()), S_OK);
  }
  const int before = Step::freed;
  Step::whenFreed = [&] { last.reset(); };
  EXPECT_EQ(borrowed->Clear(), S_OK);
  Step::whenFreed = nullptr;
  EXPECT_FALSE(last);
  EXPECT_EQ(Step::freed - before, 2);
}

TEST_F(CWizardTest, AStepThatClearsTheWizardWhenFreed) {
  Step::whenFreed = [&] { wizard->Clear(); };
  add(L"A", wzsoNext);
  add(L"B", wzsoNext);
  add(L"C", wzsoNext);
  EXPECT_EQ(wizard->Clear(), S_OK);
  EXPECT_EQ(Step::freed, 3);
  EXPECT_FALSE(item(Variant(1L)));
}

// ---- a record by itself

class CWizardStepDetailsTest : public testing::Test {
 protected:
  WizardStepOutcome execute(Bstr& key) {
    auto outcome = outcomeOf(-1);
    EXPECT_EQ(details->Execute(Bstr(L"Page").get(), &variable(key), nullptr, &outcome), S_OK);
    return outcome;
  }
  std::wstring keyAfter(int outcome, std::wstring_view left) {
    const auto step = Step::make([&](Page& page) {
      page.key = left;
      return outcomeOf(outcome);
    });
    details->putref_TheStep(step.get());
    Bstr key;
    EXPECT_EQ(execute(key), outcomeOf(outcome));
    return std::wstring(key.view());
  }
  static BSTR& variable(Bstr& key) { return *key.out(); }

  ComPtr<_CWizardStepDetails> details = create<CWizardStepDetails, _CWizardStepDetails>();
};

TEST_F(CWizardStepDetailsTest, WithoutAStepItIsAnError) {
  Bstr key;
  EXPECT_EQ(execute(key), wzsoError);
}

TEST_F(CWizardStepDetailsTest, DefaultKeysGoWithBackAndNext) {
  details->put_NextStepKey(Bstr(L" N ").get());
  details->put_BackStepKey(Bstr(L"B").get());
  EXPECT_EQ(keyAfter(wzsoNext, L""), L" N ");  // Untrimmed.
  EXPECT_EQ(keyAfter(wzsoNext, L"  "), L" N ");
  EXPECT_EQ(keyAfter(wzsoNext, L"X"), L"X");
  EXPECT_EQ(keyAfter(wzsoBack, L""), L"B");
  EXPECT_EQ(keyAfter(wzsoBack, L" X "), L" X ");
  for (const int other : {0, 1, 4, 5, 7}) {
    EXPECT_EQ(keyAfter(other, L""), L"") << other;
  }
  details->put_NextStepKey(Bstr(L"  ").get());
  EXPECT_EQ(keyAfter(wzsoNext, L" "), L" ");  // A blank default is none.
  details.reset();
}

TEST_F(CWizardStepDetailsTest, AFailingStepIsAnError) {
  const auto step = Step::make([](Page&) { return outcomeOf(Step::failing); });
  details->putref_TheStep(step.get());
  Bstr key;
  EXPECT_EQ(execute(key), wzsoError);
  details.reset();
}

TEST_F(CWizardStepDetailsTest, KeepsItsProperties) {
  const Late late(details);
  for (const wchar_t* name : {L"Key", L"NextStepKey", L"BackStepKey"}) {
    EXPECT_EQ(late.put(name, Variant(L" text ")).code, S_OK);
    EXPECT_EQ(textIn(late.get(name)), L" text ") << name;
  }
  for (const wchar_t* name : {L"PermitBack", L"PermitNext", L"PermitFinish"}) {
    EXPECT_EQ(late.get(name).get().boolVal, VARIANT_TRUE) << name;
    EXPECT_EQ(late.put(name, Variant(false)).code, S_OK);
    EXPECT_EQ(late.get(name).get().boolVal, VARIANT_FALSE) << name;
  }
  EXPECT_EQ(late.put(L"Index", Variant(7L)).code, S_OK);
  EXPECT_EQ(late.get(L"Index").get().iVal, 7);
  EXPECT_EQ(late.put(L"Index", Variant(40000L)).code, DISP_E_OVERFLOW);
  EXPECT_EQ(late.get(L"TheStep").get().pdispVal, nullptr);
}

// ---- steps and help providers that answer only by name

/// A script's object: its members are known by name, and it writes only to variables of any type.
class ScriptObject final : public ClientObject<> {
 public:
  using Handler = std::function<HRESULT(const std::wstring& name, std::vector<VARIANT*> arguments, VARIANT*)>;
  static ComPtr<IDispatch> make(Handler handler) {
    return ComPtr<IDispatch>::attach(new ScriptObject(std::move(handler)));
  }

  STDMETHODIMP GetIDsOfNames(REFIID, wchar_t** names, UINT, LCID, DISPID* ids) noexcept override {
    names_.emplace_back(names[0]);
    *ids = static_cast<DISPID>(names_.size());
    return S_OK;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* exception, UINT*) noexcept override {
    const std::wstring& name = names_.at(static_cast<std::size_t>(id - 1));
    const HRESULT outcome = handler_(name, inDeclarationOrder(*parameters), result);
    if (outcome == DISP_E_EXCEPTION) {
      exception->scode = DISP_E_TYPEMISMATCH;  // What the script itself failed with.
    }
    return outcome;
  }

 private:
  explicit ScriptObject(Handler handler) : handler_(std::move(handler)) {}

  Handler handler_;
  std::vector<std::wstring> names_;
};

class CWizardByNameTest : public testing::Test {
 protected:
  std::vector<std::wstring> calls;  // It outlives the steps, which note their end in it.
  Late wizard{create<CWizard, _CWizard>()};
};

TEST_F(CWizardByNameTest, RunsStepsKnownByNameOnly) {
  const auto help = create<CWinHelp, _CWinHelp>();
  auto script =
      ScriptObject::make([&](const std::wstring& name, std::vector<VARIANT*> given, VARIANT* result) {
        calls.push_back(name);
        if (name != L"Execute") {
          return S_OK;
        }
        EXPECT_EQ(given.size(), 6U);
        EXPECT_EQ(automation::text(given[0]->bstrVal), L"Step 1 of 1");
        EXPECT_EQ(given[1]->vt, VT_BOOL);
        EXPECT_EQ(given[1]->boolVal, VARIANT_TRUE);
        EXPECT_EQ(given[2]->boolVal, VARIANT_FALSE);
        EXPECT_EQ(given[3]->boolVal, VARIANT_TRUE);
        EXPECT_EQ(given[4]->vt, VT_BYREF | VT_VARIANT);
        EXPECT_EQ(given[4]->pvarVal->vt, VT_BSTR);
        EXPECT_EQ(given[5]->vt, VT_DISPATCH);
        EXPECT_EQ(ComPtr<IUnknown>(given[5]->pdispVal).query<IUnknown>().get(), help.query<IUnknown>().get());
        EXPECT_EQ(Late(given[5]->pdispVal).call(L"ShowHelp", Variant(L""), Variant(L""), Variant(L"")).code,
                  S_OK);
        // Back to itself the first time.
        const bool first = std::count(calls.begin(), calls.end(), L"Execute") == 1;
        VariantClear(given[4]->pvarVal);
        *given[4]->pvarVal = Variant(first ? L"A" : L"").detach();
        *result = Variant(first ? 3.0 : 5.0).detach();
        return S_OK;
      });
  const Late details(wizard.get(L"AddStep", Variant(script.get()), Variant(L"A")).get().pdispVal);
  EXPECT_EQ(details.put(L"PermitNext", Variant(false)).code, S_OK);
  EXPECT_EQ(wizard.get(L"DoWizard", Variant(L"A"), Variant::missing(), Variant(help.get())).get().lVal,
            wizoFinished);
  // The client gets its own object back.
  EXPECT_EQ(details.get(L"TheStep").get().pdispVal, script.get());
  EXPECT_EQ(wizard.call(L"Clear").code, S_OK);
  EXPECT_THAT(calls, ElementsAre(L"Execute", L"Execute"));
}

TEST_F(CWizardByNameTest, FreesAStepKnownByNameOnce) {
  const auto script = ScriptObject::make([&](const std::wstring& name, auto, auto) {
    calls.push_back(name);
    return S_OK;
  });
  EXPECT_EQ(wizard.call(L"AddStep", Variant(script.get()), Variant(L"A")).code, S_OK);
  EXPECT_EQ(wizard.get(L"DoWizard").get().lVal, wizoError);  // No outcome is that of an error.
  EXPECT_EQ(wizard.call(L"Clear").code, S_OK);
  EXPECT_EQ(wizard.call(L"Clear").code, S_OK);
  EXPECT_THAT(calls, ElementsAre(L"Execute", L"Free"));
}

TEST_F(CWizardByNameTest, AnObjectWithATypedArgumentGetsItsType) {
  const auto typed =
      ScriptObject::make([&](const std::wstring& name, std::vector<VARIANT*> given, VARIANT* result) {
        calls.push_back(name);
        if (name != L"Execute") {
          return S_OK;
        }
        if (given[4]->vt != (VT_BYREF | VT_BSTR)) {
          return DISP_E_TYPEMISMATCH;
        }
        automation::assign(given[4]->pbstrVal, L"B");
        *result = Variant(3L).detach();
        return S_OK;
      });
  const auto last = ScriptObject::make([&](const std::wstring& name, auto, VARIANT* result) {
    calls.push_back(L"last " + name);
    if (result != nullptr) {
      *result = Variant(5L).detach();
    }
    return S_OK;
  });
  EXPECT_EQ(wizard.call(L"AddStep", Variant(typed.get()), Variant(L"A")).code, S_OK);
  EXPECT_EQ(wizard.call(L"AddStep", Variant(typed.get()), Variant(L"Not this")).code, S_OK);
  EXPECT_EQ(wizard.call(L"AddStep", Variant(last.get()), Variant(L"B")).code, S_OK);
  EXPECT_EQ(wizard.get(L"DoWizard").get().lVal, wizoFinished);
  EXPECT_THAT(calls, ElementsAre(L"Execute", L"Execute", L"last Execute"));
}

TEST_F(CWizardByNameTest, AnOutcomeThatIsNoNumberIsAnErrorAndRunsNothingTwice) {
  const auto script = ScriptObject::make([&](const std::wstring& name, auto, VARIANT* result) {
    calls.push_back(name);
    if (name == L"Execute") {
      *result = Variant(L"next").detach();
    }
    return S_OK;
  });
  EXPECT_EQ(wizard.call(L"AddStep", Variant(script.get()), Variant(L"A")).code, S_OK);
  EXPECT_EQ(wizard.get(L"DoWizard").get().lVal, wizoError);
  EXPECT_THAT(calls, ElementsAre(L"Execute"));
}

TEST_F(CWizardByNameTest, AStepThatFailsForATypeMismatchOfItsOwnRunsOnce) {
  const auto script = ScriptObject::make([&](const std::wstring& name, auto, auto) {
    calls.push_back(name);
    return name == L"Execute" ? DISP_E_EXCEPTION : S_OK;
  });
  EXPECT_EQ(wizard.call(L"AddStep", Variant(script.get()), Variant(L"A")).code, S_OK);
  EXPECT_EQ(wizard.get(L"DoWizard").get().lVal, wizoError);
  EXPECT_THAT(calls, ElementsAre(L"Execute"));
}

TEST_F(CWizardByNameTest, StepsGetTheHelpProviderItself) {
  const auto provider = ScriptObject::make([](const std::wstring&, auto, auto) { return S_OK; });
  const auto script =
      ScriptObject::make([&](const std::wstring& name, std::vector<VARIANT*> given, VARIANT* result) {
        calls.push_back(name);
        if (name == L"Execute") {
          EXPECT_EQ(given[5]->pdispVal, provider.get());
          *result = Variant(5L).detach();
        }
        return S_OK;
      });
  EXPECT_EQ(wizard.call(L"AddStep", Variant(script.get()), Variant(L"A")).code, S_OK);
  EXPECT_EQ(wizard.get(L"DoWizard", Variant(1L), Variant::missing(), Variant(provider.get())).get().lVal,
            wizoFinished);
  EXPECT_THAT(calls, ElementsAre(L"Execute"));
}

TEST_F(CWizardByNameTest, HelpProviderKnownByNameOnly) {
  const auto provider = ScriptObject::make([&](const std::wstring& name, std::vector<VARIANT*> given, auto) {
    calls.push_back(name + L" " + std::to_wstring(given.size()));
    return S_OK;
  });
  const auto step = Step::make([&](Page& page) {
    page.helpProvider->ShowHelp(nullptr, nullptr, nullptr);
    page.helpProvider->ShowContents();
    page.helpProvider->ShowIndex();
    page.helpProvider->ShowFind();
    page.helpProvider->ShowTopicID(7);
    page.helpProvider->ShowKeyword(nullptr);
    return wzsoFinished;
  });
  EXPECT_EQ(wizard.call(L"AddStep", Variant(step.get()), Variant(L"A")).code, S_OK);
  EXPECT_EQ(wizard.get(L"DoWizard", Variant(1L), Variant::missing(), Variant(provider.get())).get().lVal,
            wizoFinished);
  EXPECT_THAT(calls, ElementsAre(L"ShowHelp 3", L"ShowContents 0", L"ShowIndex 0", L"ShowFind 0",
                                 L"ShowTopicID 1", L"ShowKeyword 1"));
}

TEST_F(CWizardByNameTest, RefusesWhatIsNoObject) {
  EXPECT_EQ(wizard.call(L"AddStep", Variant(L"text"), Variant(L"A")).code, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(wizard.call(L"DoWizard", Variant(1L), Variant(1L), Variant(5L)).code, DISP_E_TYPEMISMATCH);
}

TEST_F(CWizardByNameTest, MembersByName) {
  EXPECT_EQ(wizard.put(L"Caption", Variant(L"Setup")).code, S_OK);
  EXPECT_EQ(textIn(wizard.get(L"Caption")), L"Setup");
  EXPECT_EQ(wizard.get(L"Item", Variant(1L)).get().pdispVal, nullptr);
  EXPECT_EQ(wizard.call(L"AddStep", Variant(static_cast<IDispatch*>(nullptr)), Variant(L"A")).code, S_OK);
  EXPECT_NE(wizard.get(L"Item", Variant(L"a")).get().pdispVal, nullptr);
  EXPECT_EQ(wizard.get(L"DoWizard").get().lVal, wizoError);
}

TEST(CWizardLeaks, LeaveNothingBehind) {
  const Bstr key(L"A");
  const Bstr next(L"B");
  const Variant first(1L);
  const Variant finish = Variant::missing();
  expectNoLeak(500, [&] {
    const auto wizard = create<CWizard, _CWizard>();
    const auto script = ScriptObject::make([](const std::wstring&, auto, VARIANT* result) {
      if (result != nullptr) {
        *result = Variant(3L).detach();
      }
      return S_OK;
    });
    const auto step = Step::make([](Page&) { return outcomeOf(Step::failing); });
    EXPECT_EQ(Late(wizard).call(L"AddStep", Variant(script.get()), Variant(L"A")).code, S_OK);
    ComPtr<_CWizardStepDetails> details;
    wizard->AddStep(step.get(), next.get(), details.out());
    details->put_NextStepKey(key.get());
    auto result = wizoFinished;
    wizard->DoWizard(first.get(), finish.get(), nullptr, &result);
    EXPECT_EQ(result, wizoError);
    wizard->get_Item(first.get(), details.out());
  });
}

}  // namespace
}  // namespace zeq::test
