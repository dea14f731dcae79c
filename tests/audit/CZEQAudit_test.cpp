#include <gmock/gmock.h>

#include <array>
#include <cstdio>
#include <deque>
#include <regex>
#include <set>

#include "support/ClientObject.h"
#include "support/Component.h"
#include "support/DialogAnswer.h"
#include "support/EventLog.h"
#include "support/ImportHook.h"
#include "support/Leaks.h"
#include "support/TempFolder.h"

namespace zeq::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

const EventLog::Names eventNames{{1, L"AuditDataReady"}, {2, L"StopApplication"}};
constexpr DISPID auditDataReady = 1;

/// A control as a client may have it: an object with some properties, assigned by name.
class Control final : public ClientObject<> {
 public:
  using Names = std::vector<std::wstring>;
  explicit Control(Names properties, Names rejecting = {})
      : properties_(std::move(properties)), rejecting_(std::move(rejecting)) {}

  std::vector<std::wstring> assigned;  ///< Such as "Text=hello".

  STDMETHODIMP GetIDsOfNames(REFIID, wchar_t** names, UINT, LCID, DISPID* ids) noexcept override {
    const auto found = std::find(properties_.begin(), properties_.end(), names[0]);
    *ids = found != properties_.end() ? static_cast<DISPID>(found - properties_.begin()) : DISPID_UNKNOWN;
    return *ids >= 0 ? S_OK : DISP_E_UNKNOWNNAME;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT*, EXCEPINFO*,
                      UINT*) noexcept override {
    const std::wstring& name = properties_[static_cast<std::size_t>(id)];
    EXPECT_EQ(flags, DISPATCH_PROPERTYPUT);
    EXPECT_EQ(parameters->cNamedArgs, 1U);
    EXPECT_EQ(parameters->rgdispidNamedArgs[0], DISPID_PROPERTYPUT);
    if (std::find(rejecting_.begin(), rejecting_.end(), name) != rejecting_.end()) {
      return DISP_E_EXCEPTION;
    }
    assigned.push_back(name + L"=" + std::wstring(automation::text(parameters->rgvarg[0].bstrVal)));
    return S_OK;
  }

 private:
  Names properties_;
  Names rejecting_;
};

class CZEQAuditTest : public testing::Test {
 protected:
  long doAudit(const wchar_t* message, long auditClass = ZEQ_AUD_INFO, long actions = 0, long buttons = 0) {
    Bstr text(message);
    BSTR argument = text.get();
    long result = -1;
    EXPECT_EQ(audit->ZEQAudit(&argument, static_cast<enumZEQAuditClass>(auditClass),
                              static_cast<enumZEQAuditAction>(actions), buttons, &result),
              S_OK);
    EXPECT_EQ(text.view(), message) << "the argument is only read";
    return result;
  }
  long ask(const wchar_t* prompt, long buttons, const wchar_t* title) {
    const Bstr promptText(prompt);
    const Bstr titleText(title);
    BSTR promptArgument = promptText.get();
    BSTR titleArgument = titleText.get();
    long result = -1;
    EXPECT_EQ(audit->ZEQMsgBox(&promptArgument, buttons, &titleArgument, &result), S_OK);
    return result;
  }
  void write(const wchar_t* message) {
    const Bstr text(message);
    BSTR argument = text.get();
    EXPECT_EQ(audit->ZEQDbgLog(&argument), S_OK);
  }
  void showStatus(const wchar_t* message) {
    const Bstr text(message);
    BSTR argument = text.get();
    EXPECT_EQ(audit->ZEQStatBar(&argument), S_OK);
  }
  void setMask(long mask) { EXPECT_EQ(audit->put_DebugMask(static_cast<enumZEQAuditAction>(mask)), S_OK); }
  void setUp(bool clear = false) {
    EXPECT_EQ(audit->Create(Bstr(logFile).get(), Bstr(L"Test application").get(),
                            clear ? VARIANT_TRUE : VARIANT_FALSE, &control),
              S_OK);
  }
  std::string logged() { return exists(logFile) ? contentOf(logFile) : "no file"; }

  Control& addControl(Control::Names properties, Control::Names rejecting = {}) {
    return controls.emplace_back(std::move(properties), std::move(rejecting));
  }

  TempFolder folder;
  std::wstring logFile = folder / L"debug.log";
  std::deque<Control> controls;  // They outlast the object that refers to them.
  Control& control = addControl({L"Text", L"Caption"});
  ComPtr<_CZEQAudit> audit = create<CZEQAudit, _CZEQAudit>();
  EventLog log{audit, __uuidof(__CZEQAudit), eventNames};
};

// The fields.

TEST_F(CZEQAuditTest, StartsEmpty) {
  Bstr path;
  EXPECT_EQ(audit->get_DebugFile(path.out()), S_OK);
  EXPECT_EQ(path.view(), L"");
  ComPtr<IDispatch> destination;
  EXPECT_EQ(audit->get_StatusDestControl(destination.out()), S_OK);
  EXPECT_FALSE(destination);
  enumZEQAuditAction mask = ZEQ_AUD_ACT_LOG;
  EXPECT_EQ(audit->get_DebugMask(&mask), S_OK);
  EXPECT_EQ(mask, 0);
}

TEST_F(CZEQAuditTest, KeepsItsFields) {
  EXPECT_EQ(audit->put_DebugFile(Bstr(L" C:\\some file ").get()), S_OK);
  Bstr path;
  EXPECT_EQ(audit->get_DebugFile(path.out()), S_OK);
  EXPECT_EQ(path.view(), L" C:\\some file ");
  setMask(0x7FFFFFFF);
  enumZEQAuditAction mask{};
  EXPECT_EQ(audit->get_DebugMask(&mask), S_OK);
  EXPECT_EQ(static_cast<long>(mask), 0x7FFFFFFF);
}

TEST_F(CZEQAuditTest, CreateMayBeCalledAgainAndKeepsTheControl) {
  setUp();
  EXPECT_EQ(audit->Create(Bstr(L"other").get(), Bstr(L"Other").get(), VARIANT_FALSE, nullptr), S_OK);
  Bstr path;
  EXPECT_EQ(audit->get_DebugFile(path.out()), S_OK);
  EXPECT_EQ(path.view(), L"other");
  ComPtr<IDispatch> destination;
  EXPECT_EQ(audit->get_StatusDestControl(destination.out()), S_OK);
  EXPECT_EQ(destination.get(), &control);
}

TEST_F(CZEQAuditTest, IgnoresNothingAsControl) {
  EXPECT_EQ(audit->putref_StatusDestControl(&control), S_OK);
  EXPECT_EQ(audit->putref_StatusDestControl(nullptr), S_OK);
  showStatus(L"hello");
  EXPECT_THAT(control.assigned, ElementsAre(L"Text=hello"));
}

TEST_F(CZEQAuditTest, ReleasesItsControlAtTheEnd) {
  {
    const auto other = create<CZEQAudit, _CZEQAudit>();
    other->putref_StatusDestControl(&control);
    EXPECT_EQ(control.references(), 2U);
  }
  EXPECT_EQ(control.references(), 1U);
}

// The debug file.

TEST_F(CZEQAuditTest, AppendsLinesWithTheTime) {
  folder.file(L"debug.log", "before\r\n");
  setUp();
  write(L"hello");
  write(L"again");
  EXPECT_TRUE(std::regex_match(logged(), std::regex("before\r\n\\[\\d\\d:\\d\\d:\\d\\d\\] hello\r\n"
                                                    "\\[\\d\\d:\\d\\d:\\d\\d\\] again\r\n")))
      << logged();
}

TEST_F(CZEQAuditTest, WritesTheLocalTime) {
  const auto now = [] {
    SYSTEMTIME time{};
    GetLocalTime(&time);
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "[%02d:%02d:%02d] hello\r\n", time.wHour, time.wMinute,
                  time.wSecond);
    return std::string(text.data());
  };
  setUp();
  const std::string before = now();
  write(L"hello");
  EXPECT_THAT((std::set<std::string>{before, now()}), testing::Contains(logged()));
}

void WINAPI sevenSecondsPastFivePastNine(SYSTEMTIME* time) {
  *time = {};
  time->wHour = 9;
  time->wMinute = 5;
  time->wSecond = 7;
}

void WINAPI lastSecondOfTheDay(SYSTEMTIME* time) {
  *time = {};
  time->wHour = 23;
  time->wMinute = 59;
  time->wSecond = 59;
}

TEST_F(CZEQAuditTest, WritesTwoDigitsForEachPartOfTheTime) {
  setUp();
  {
    const ImportHook clock(component(), "GetLocalTime", &sevenSecondsPastFivePastNine);
    write(L"hello");
  }
  const ImportHook clock(component(), "GetLocalTime", &lastSecondOfTheDay);
  write(L"good night");
  EXPECT_EQ(logged(), "[09:05:07] hello\r\n[23:59:59] good night\r\n");
}

TEST_F(CZEQAuditTest, WritesTheCodePageOfTheSystem) {
  setUp();
  write(L"\u00e9\u2026");
  std::array<char, 16> expected{};
  const int length = WideCharToMultiByte(CP_ACP, 0, L"\u00e9\u2026", 2, expected.data(),
                                         static_cast<int>(expected.size()), nullptr, nullptr);
  EXPECT_EQ(logged().substr(11), std::string(expected.data(), static_cast<std::size_t>(length)) + "\r\n");
}

TEST_F(CZEQAuditTest, WritesEveryCharacterOfAMessage) {
  setUp();
  const Bstr message(std::wstring_view(L"a\0b\r\nc", 6));
  BSTR argument = message.get();
  EXPECT_EQ(audit->ZEQDbgLog(&argument), S_OK);
  EXPECT_EQ(logged().substr(11), std::string("a\0b\r\nc\r\n", 8));
}

TEST_F(CZEQAuditTest, WritesEmptyAndLongMessages) {
  setUp();
  write(L"");
  EXPECT_EQ(logged().substr(10), " \r\n");
  audit->ClearDebugFile();
  write(std::wstring(100000, L'x').c_str());
  EXPECT_EQ(logged().size(), 11U + 100000U + 2U);
}

TEST_F(CZEQAuditTest, NeedsAPathForTheDebugFile) {
  write(L"hello");
  EXPECT_EQ(audit->ClearDebugFile(), S_OK);
  EXPECT_EQ(doAudit(L"hello", ZEQ_AUD_DEBUG), 1);
  EXPECT_EQ(logged(), "no file");
}

TEST_F(CZEQAuditTest, SwallowsFailuresOfTheDebugFile) {
  audit->put_DebugFile(Bstr(folder / L"missing\\debug.log").get());
  write(L"hello");
  EXPECT_EQ(audit->ClearDebugFile(), S_OK);
  audit->put_DebugFile(Bstr(folder.path()).get());
  write(L"hello");
  EXPECT_EQ(audit->ClearDebugFile(), S_OK);
}

TEST_F(CZEQAuditTest, NeverLeavesTheDebugFileOpen) {
  setUp();
  write(L"hello");
  const HANDLE alone =
      CreateFileW(logFile.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(alone, INVALID_HANDLE_VALUE);
  const std::string before = [&] {
    write(L"locked out");
    EXPECT_EQ(audit->ClearDebugFile(), S_OK);
    CloseHandle(alone);
    return logged();
  }();
  EXPECT_THAT(before, testing::EndsWith("hello\r\n"));
}

BOOL WINAPI refuseToWrite(HANDLE, const void*, DWORD, DWORD* written, OVERLAPPED*) {
  *written = 0;
  SetLastError(ERROR_DISK_FULL);
  return FALSE;
}

TEST_F(CZEQAuditTest, AFullDiskLeavesTheDebugFileClosedAsItWas) {
  setUp();
  write(L"before");
  const std::string before = logged();
  {
    const ImportHook full(component(), "WriteFile", &refuseToWrite);
    write(L"lost");
    EXPECT_EQ(doAudit(L"lost", ZEQ_AUD_ERROR, ZEQ_AUD_ACT_STAT), 1);
  }
  const HANDLE alone =
      CreateFileW(logFile.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_NE(alone, INVALID_HANDLE_VALUE);
  CloseHandle(alone);
  EXPECT_EQ(logged(), before);
  EXPECT_THAT(control.assigned, ElementsAre(L"Text=lost"));
}

TEST_F(CZEQAuditTest, WritesWhileOthersReadAndWrite) {
  setUp();
  const HANDLE other = CreateFileW(logFile.c_str(), GENERIC_READ | GENERIC_WRITE,
                                   FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, CREATE_ALWAYS, 0, nullptr);
  write(L"hello");
  CloseHandle(other);
  EXPECT_THAT(logged(), testing::EndsWith("hello\r\n"));
}

TEST_F(CZEQAuditTest, DeletesTheDebugFile) {
  folder.file(L"debug.log", "old");
  setUp();
  EXPECT_EQ(logged(), "old");
  EXPECT_EQ(audit->ClearDebugFile(), S_OK);
  EXPECT_EQ(logged(), "no file");
  EXPECT_EQ(audit->ClearDebugFile(), S_OK) << "and does nothing without one";
}

TEST_F(CZEQAuditTest, CreateDeletesTheDebugFileOnRequest) {
  folder.file(L"debug.log", "old");
  setUp(true);
  EXPECT_EQ(logged(), "no file");
}

// The status control.

TEST_F(CZEQAuditTest, PutsStatusIntoText) {
  setUp();
  showStatus(L"hello");
  EXPECT_THAT(control.assigned, ElementsAre(L"Text=hello"));
}

TEST_F(CZEQAuditTest, PutsStatusIntoCaptionWhereThereIsNoText) {
  Control& label = addControl({L"Caption"});
  audit->putref_StatusDestControl(&label);
  showStatus(L"hello");
  EXPECT_THAT(label.assigned, ElementsAre(L"Caption=hello"));
}

TEST_F(CZEQAuditTest, PutsStatusIntoCaptionWhereTextIsRejected) {
  Control& label = addControl({L"Text", L"Caption"}, {L"Text"});
  audit->putref_StatusDestControl(&label);
  showStatus(L"hello");
  EXPECT_THAT(label.assigned, ElementsAre(L"Caption=hello"));
}

TEST_F(CZEQAuditTest, LeavesAControlWithNeitherAlone) {
  Control& other = addControl({L"Value"});
  audit->putref_StatusDestControl(&other);
  showStatus(L"hello");
  EXPECT_THAT(other.assigned, IsEmpty());
  Control& rejecting = addControl({L"Text", L"Caption"}, {L"Text", L"Caption"});
  audit->putref_StatusDestControl(&rejecting);
  showStatus(L"hello");
  EXPECT_EQ(doAudit(L"hello"), 1);
}

TEST_F(CZEQAuditTest, NeedsAControlForStatus) {
  showStatus(L"hello");
}

// The message box.

TEST_F(CZEQAuditTest, AsksTheUser) {
  DialogAnswer answer(L"A title", IDNO);
  EXPECT_EQ(ask(L"Really?", MB_YESNO, L"A title"), IDNO);
  EXPECT_TRUE(answer.content().appeared);
  EXPECT_EQ(answer.content().text, L"Really?");
  EXPECT_THAT(answer.content().buttons, ElementsAre(IDYES, IDNO));
  EXPECT_EQ(answer.content().icon, nullptr);
}

TEST_F(CZEQAuditTest, UsesTheApplicationNameForABlankTitle) {
  setUp();
  for (const wchar_t* title : {L"", L" ", L"   "}) {
    DialogAnswer answer(L"Test application", IDOK);
    EXPECT_EQ(ask(L"Hello", MB_OK, title), IDOK);
    EXPECT_TRUE(answer.content().appeared);
  }
}

TEST_F(CZEQAuditTest, KeepsTheBlanksOfATitle) {
  setUp();
  DialogAnswer answer(L" A ", IDOK);
  EXPECT_EQ(ask(L"Hello", MB_OK, L" A "), IDOK);
  EXPECT_TRUE(answer.content().appeared);
}

TEST_F(CZEQAuditTest, ShowsTheIconOfTheClass) {
  struct Case {
    long auditClass;
    const wchar_t* icon;
  };
  setUp();
  for (const auto& [auditClass, icon] :
       {Case{ZEQ_AUD_ERROR, IDI_HAND}, Case{ZEQ_AUD_WARNING, IDI_EXCLAMATION},
        Case{ZEQ_AUD_DEBUG, IDI_ASTERISK}, Case{ZEQ_AUD_INFO, IDI_ASTERISK}, Case{5, nullptr}}) {
    DialogAnswer answer(L"Test application", IDCANCEL);
    EXPECT_EQ(doAudit(L"Hello", auditClass, ZEQ_AUD_ACT_MB, MB_OKCANCEL), IDCANCEL);
    EXPECT_EQ(answer.content().text, L"Hello");
    EXPECT_THAT(answer.content().buttons, ElementsAre(IDOK, IDCANCEL));
    EXPECT_EQ(answer.content().icon, icon != nullptr ? LoadIconW(nullptr, icon) : nullptr) << auditClass;
  }
}

// The dispatcher.

TEST_F(CZEQAuditTest, ShowsAMessageAsStatusByDefault) {
  setUp();
  EXPECT_EQ(doAudit(L"hello"), 1);
  EXPECT_THAT(log.take(), ElementsAre(L"AuditDataReady 4 4 False"));
  EXPECT_THAT(control.assigned, ElementsAre(L"Text=hello"));
  EXPECT_EQ(logged(), "no file");
}

TEST_F(CZEQAuditTest, LogsDebugMessagesOnly) {
  setUp();
  EXPECT_EQ(doAudit(L"hello", ZEQ_AUD_DEBUG), 1);
  EXPECT_THAT(log.take(), ElementsAre(L"AuditDataReady 3 1 False", L"AuditDataReady 3 8 False"));
  EXPECT_THAT(control.assigned, IsEmpty());
  EXPECT_THAT(logged(), testing::EndsWith("] hello\r\n"));
}

TEST_F(CZEQAuditTest, WidensTheActionsByClass) {
  setUp();
  doAudit(L"x", ZEQ_AUD_ERROR, ZEQ_AUD_ACT_LOG);
  EXPECT_THAT(log.take(), ElementsAre(L"AuditDataReady 1 1 False", L"AuditDataReady 1 8 False"));
  doAudit(L"x", ZEQ_AUD_ERROR);
  EXPECT_THAT(log.take(), ElementsAre(L"AuditDataReady 1 1 False", L"AuditDataReady 1 4 False",
                                      L"AuditDataReady 1 8 False"));
  doAudit(L"x", ZEQ_AUD_WARNING, ZEQ_AUD_ACT_LOG);
  EXPECT_THAT(log.take(), ElementsAre(L"AuditDataReady 2 1 False", L"AuditDataReady 2 4 False"));
  doAudit(L"x", ZEQ_AUD_DEBUG, ZEQ_AUD_ACT_STAT);
  EXPECT_THAT(log.take(), ElementsAre(L"AuditDataReady 3 1 False", L"AuditDataReady 3 4 False",
                                      L"AuditDataReady 3 8 False"));
  doAudit(L"x", ZEQ_AUD_INFO, ZEQ_AUD_ACT_LOG);
  EXPECT_THAT(log.take(), ElementsAre(L"AuditDataReady 4 1 False", L"AuditDataReady 4 4 False"));
  doAudit(L"x", 5, ZEQ_AUD_ACT_LOG);
  EXPECT_THAT(log.take(), ElementsAre(L"AuditDataReady 5 1 False"));
  doAudit(L"x", 0);
  EXPECT_THAT(log.take(), ElementsAre(L"AuditDataReady 0 4 False"));
}

TEST_F(CZEQAuditTest, AddsTheMaskAfterTheDefault) {
  setUp();
  setMask(ZEQ_AUD_ACT_DBG);
  doAudit(L"x");
  EXPECT_THAT(log.take(), ElementsAre(L"AuditDataReady 4 4 False", L"AuditDataReady 4 8 False"));
  setMask(ZEQ_AUD_ACT_STAT);
  doAudit(L"x", ZEQ_AUD_DEBUG);
  EXPECT_THAT(log.take(), ElementsAre(L"AuditDataReady 3 1 False", L"AuditDataReady 3 4 False",
                                      L"AuditDataReady 3 8 False"));
}

TEST_F(CZEQAuditTest, CarriesOutTheActionsInTheirOrder) {
  setUp();
  DialogAnswer answer(L"Test application", IDOK);
  EXPECT_EQ(doAudit(L"x", 5, ZEQ_AUD_ACT_LOG | ZEQ_AUD_ACT_STAT | ZEQ_AUD_ACT_DBG | ZEQ_AUD_ACT_MB), IDOK);
  EXPECT_TRUE(answer.content().appeared);
  EXPECT_THAT(log.take(), ElementsAre(L"AuditDataReady 5 1 False", L"AuditDataReady 5 4 False",
                                      L"AuditDataReady 5 8 False", L"AuditDataReady 5 2 False"));
}

TEST_F(CZEQAuditTest, ReturnsTheButtonOfAnError) {
  setUp();
  DialogAnswer answer(L"Test application", IDRETRY);
  EXPECT_EQ(doAudit(L"x", ZEQ_AUD_ERROR, ZEQ_AUD_ACT_MB, MB_RETRYCANCEL), IDRETRY);
  EXPECT_EQ(answer.content().icon, LoadIconW(nullptr, IDI_HAND));
  EXPECT_THAT(log.take(), ElementsAre(L"AuditDataReady 1 1 False", L"AuditDataReady 1 8 False",
                                      L"AuditDataReady 1 2 False"));
}

TEST_F(CZEQAuditTest, LeavesToTheClientWhatAHandlerTakesOver) {
  setUp();
  const EventLog taker(audit, __uuidof(__CZEQAudit), eventNames,
                       [](DISPID, const std::vector<VARIANT*>& arguments) {
                         ASSERT_EQ(arguments.back()->vt, VT_BYREF | VT_BOOL);
                         *arguments.back()->pboolVal = VARIANT_TRUE;
                       });
  constexpr long all =
      ZEQ_AUD_ACT_LOG | ZEQ_AUD_ACT_STAT | ZEQ_AUD_ACT_DBG | ZEQ_AUD_ACT_MB | ZEQ_AUD_ACT_STOP;
  EXPECT_EQ(doAudit(L"x", ZEQ_AUD_ERROR, all, MB_YESNO), 1);
  EXPECT_EQ(logged(), "no file");
  EXPECT_THAT(control.assigned, IsEmpty());
  EXPECT_THAT(log.take(), ElementsAre(L"AuditDataReady 1 1 False", L"AuditDataReady 1 4 False",
                                      L"AuditDataReady 1 8 False", L"AuditDataReady 1 2 False",
                                      L"StopApplication False"));
}

TEST_F(CZEQAuditTest, StopsForErrorsOnly) {
  setUp();
  for (const long auditClass : {ZEQ_AUD_WARNING, ZEQ_AUD_DEBUG, ZEQ_AUD_INFO}) {
    doAudit(L"x", auditClass, ZEQ_AUD_ACT_STOP);
    EXPECT_THAT(log.take(), testing::Not(testing::Contains(L"StopApplication False")));
  }
}

TEST_F(CZEQAuditTest, AHandlerMayChangeTheClassForTheRestOfTheCall) {
  setUp();
  const EventLog changer(audit, __uuidof(__CZEQAudit), eventNames,
                         [](DISPID event, const std::vector<VARIANT*>& arguments) {
                           ASSERT_EQ(event, auditDataReady);
                           ASSERT_EQ(arguments[0]->vt, VT_BYREF | VT_I4);
                           ASSERT_EQ(arguments[1]->vt, VT_BYREF | VT_I4);
                           *arguments[0]->plVal = ZEQ_AUD_WARNING;
                           *arguments[1]->plVal = ZEQ_AUD_ACT_MB;
                         });
  EXPECT_EQ(doAudit(L"x", ZEQ_AUD_ERROR, ZEQ_AUD_ACT_STOP), 1);
  EXPECT_THAT(log.take(), ElementsAre(L"AuditDataReady 1 1 False", L"AuditDataReady 2 8 False"))
      << "no stop, and no status text, which warnings would have had from the start";
  EXPECT_THAT(logged(), testing::EndsWith("] x\r\n"));
}

TEST_F(CZEQAuditTest, AHandlerMayMakeItAnError) {
  setUp();
  const EventLog changer(audit, __uuidof(__CZEQAudit), eventNames,
                         [](DISPID event, const std::vector<VARIANT*>& arguments) {
                           if (event == auditDataReady) {
                             *arguments[0]->plVal = ZEQ_AUD_ERROR;
                           } else {
                             *arguments[0]->pboolVal = VARIANT_TRUE;
                           }
                         });
  doAudit(L"x", ZEQ_AUD_WARNING, ZEQ_AUD_ACT_STOP);
  EXPECT_THAT(log.take(), ElementsAre(L"AuditDataReady 2 4 False", L"StopApplication False"));
}

TEST_F(CZEQAuditTest, PassesOverAFailingHandler) {
  setUp();
  const Sink failing(audit.get(), __uuidof(__CZEQAudit),
                     [](DISPID, std::vector<VARIANT*>) { return E_FAIL; });
  EXPECT_EQ(doAudit(L"x", ZEQ_AUD_WARNING, ZEQ_AUD_ACT_LOG), 1);
  EXPECT_THAT(control.assigned, ElementsAre(L"Text=x"));
  EXPECT_THAT(logged(), testing::EndsWith("] x\r\n"));
}

TEST_F(CZEQAuditTest, AHandlerMayChangeTheMessageAndReleaseTheObject) {
  auto other = create<CZEQAudit, _CZEQAudit>();
  other->Create(Bstr(logFile).get(), Bstr(L"x").get(), VARIANT_FALSE, &control);
  _CZEQAudit* bare = other.get();
  Bstr message(L"first");
  BSTR argument = message.detach();
  const auto sink =
      std::make_unique<Sink>(other.get(), __uuidof(__CZEQAudit), [&](DISPID, std::vector<VARIANT*>) {
        other.reset();
        SysReAllocString(&argument, L"second");
        return S_OK;
      });
  long result = 0;
  EXPECT_EQ(bare->ZEQAudit(&argument, ZEQ_AUD_WARNING, ZEQ_AUD_ACT_LOG, 0, &result), S_OK);
  EXPECT_EQ(result, 1);
  EXPECT_THAT(control.assigned, ElementsAre(L"Text=first"));
  EXPECT_THAT(logged(), testing::EndsWith("] first\r\n"));
  SysFreeString(argument);
}

// The end of the process. The statement runs in a process of its own.

class CZEQAuditDeathTest : public CZEQAuditTest {};

TEST_F(CZEQAuditDeathTest, EndsTheProcessAtOnce) {
  EXPECT_EXIT(
      {
        doAudit(L"x", ZEQ_AUD_ERROR, ZEQ_AUD_ACT_STOP);
        ExitProcess(42);
      },
      testing::ExitedWithCode(1), "");
}

TEST_F(CZEQAuditDeathTest, GoesOnIfAHandlerTakesTheStopOver) {
  EXPECT_EXIT(
      {
        const Sink taker(audit.get(), __uuidof(__CZEQAudit),
                         [](DISPID event, std::vector<VARIANT*> arguments) {
                           if (event == 2) {
                             *arguments[0]->pboolVal = VARIANT_TRUE;
                           }
                           return S_OK;
                         });
        doAudit(L"x", ZEQ_AUD_ERROR, ZEQ_AUD_ACT_STOP);
        ExitProcess(42);
      },
      testing::ExitedWithCode(42), "");
}

// By name.

TEST_F(CZEQAuditTest, AnswersByName) {
  const Late late(audit);
  EXPECT_EQ(late.call(L"Create", Variant(logFile), Variant(L"By name")).code, S_OK);
  EXPECT_EQ(textIn(late.get(L"DebugFile")), logFile);
  EXPECT_EQ(late.invoke(L"StatusDestControl", DISPATCH_PROPERTYPUTREF, {Variant(&control).get()}).code, S_OK);
  EXPECT_EQ(late.get(L"StatusDestControl").get().pdispVal, &control);
  EXPECT_EQ(late.put(L"DebugMask", Variant(1L)).code, S_OK);
  EXPECT_EQ(late.get(L"DebugMask").get().lVal, 1);
  EXPECT_EQ(late.get(L"ZEQAudit", Variant(L"one")).get().lVal, 1);
  Variant message(L"two");
  EXPECT_EQ(late.get(L"ZEQAudit", byRef(message), Variant(3L)).get().lVal, 1);
  EXPECT_EQ(late.call(L"ZEQDbgLog", byRef(message)).code, S_OK);
  EXPECT_EQ(late.call(L"ZEQStatBar", byRef(message)).code, S_OK);
  EXPECT_THAT(control.assigned, ElementsAre(L"Text=one", L"Text=two"));
  EXPECT_THAT(logged(), testing::EndsWith("] two\r\n"));
  DialogAnswer answer(L"By name", IDOK);
  EXPECT_EQ(late.get(L"ZEQMsgBox", byRef(message)).get().lVal, IDOK);
  EXPECT_EQ(answer.content().text, L"two");
  EXPECT_EQ(late.call(L"ClearDebugFile").code, S_OK);
  EXPECT_EQ(logged(), "no file");
}

TEST_F(CZEQAuditTest, LeaksNothing) {
  setUp();
  expectNoLeak(100, [&] {
    doAudit(L"hello", ZEQ_AUD_ERROR, ZEQ_AUD_ACT_STAT);
    audit->ClearDebugFile();
    control.assigned.clear();
    log.take();
  });
}

}  // namespace
}  // namespace zeq::test
