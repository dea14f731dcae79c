#include "audit/CZEQAudit.h"

#include "automation/NamedCaller.h"
#include "platform/Clock.h"
#include "platform/MessageBox.h"
#include "platform/Process.h"
#include "platform/TextFiles.h"
#include "utility/Format.h"

namespace zeq::audit {

using automation::ComPtr;
using automation::quietly;
using automation::text;

namespace {

// Dispatch identifiers of the events.
constexpr DISPID auditDataReady = 1;
constexpr DISPID stopApplication = 2;

/// What an application that stops because of an error leaves as its exit code.
constexpr unsigned stoppedExitCode = 1;

/// What a class of message adds to the actions and to the message box.
struct Widening {
  long actions;
  long icon;
};

Widening wideningOf(long auditClass) noexcept {
  switch (auditClass) {
    case ZEQ_AUD_ERROR:
      return {ZEQ_AUD_ACT_DBG | ZEQ_AUD_ACT_LOG, MB_ICONHAND};
    case ZEQ_AUD_WARNING:
      return {ZEQ_AUD_ACT_STAT, MB_ICONEXCLAMATION};
    case ZEQ_AUD_DEBUG:
      return {ZEQ_AUD_ACT_DBG | ZEQ_AUD_ACT_LOG, MB_ICONASTERISK};
    case ZEQ_AUD_INFO:
      return {ZEQ_AUD_ACT_STAT, MB_ICONASTERISK};
    default:
      return {0, 0};
  }
}

std::wstring logLine(std::wstring_view message) {
  const platform::TimeOfDay now = platform::localTime();
  std::wstring line = L"[";
  line.append(utility::formatInteger(now.hour, 2)).append(L":");
  line.append(utility::formatInteger(now.minute, 2)).append(L":");
  line.append(utility::formatInteger(now.second, 2)).append(L"] ");
  return line.append(message).append(L"\r\n");
}

}  // namespace

STDMETHODIMP CZEQAudit::Create(BSTR DebugFileA, BSTR ApplicationNameA, VARIANT_BOOL ClearDebugFileA,
                               IDispatch* StatusDestControlA) noexcept {
  return quietly([&] {
    debugFile_ = text(DebugFileA);
    applicationName_ = text(ApplicationNameA);
    if (ClearDebugFileA != VARIANT_FALSE) {
      ClearDebugFile();
    }
    putref_StatusDestControl(StatusDestControlA);
  });
}

STDMETHODIMP CZEQAudit::get_DebugFile(BSTR* result) noexcept {
  return quietly(result, [&] { return std::wstring_view(debugFile_); });
}

STDMETHODIMP CZEQAudit::put_DebugFile(BSTR value) noexcept {
  return quietly([&] { debugFile_ = text(value); });
}

STDMETHODIMP CZEQAudit::get_StatusDestControl(IDispatch** result) noexcept {
  return quietly(result, [&] { return statusControl_; });
}

STDMETHODIMP CZEQAudit::putref_StatusDestControl(IDispatch* value) noexcept {
  return quietly([&] {
    if (value != nullptr) {  // Nothing is ignored: a control stays until another one takes its place.
      statusControl_ = ComPtr<IDispatch>(value);
    }
  });
}

STDMETHODIMP CZEQAudit::get_DebugMask(enumZEQAuditAction* result) noexcept {
  return quietly(result, [&] { return static_cast<enumZEQAuditAction>(debugMask_); });
}

STDMETHODIMP CZEQAudit::put_DebugMask(enumZEQAuditAction value) noexcept {
  return quietly([&] { debugMask_ = value; });
}

STDMETHODIMP CZEQAudit::ClearDebugFile() noexcept {
  return quietly([&] {
    if (!debugFile_.empty()) {
      platform::deleteTextFile(debugFile_);
    }
  });
}

STDMETHODIMP CZEQAudit::ZEQMsgBox(BSTR* PromptA, long ButtonsA, BSTR* TitleA, long* result) noexcept {
  return quietly(result, [&] { return ask(std::wstring(text(PromptA)), ButtonsA, text(TitleA)); });
}

STDMETHODIMP CZEQAudit::ZEQDbgLog(BSTR* MsgA) noexcept {
  return quietly([&] { log(text(MsgA)); });
}

STDMETHODIMP CZEQAudit::ZEQStatBar(BSTR* MsgA) noexcept {
  return quietly([&] { showStatus(std::wstring(text(MsgA))); });
}

STDMETHODIMP CZEQAudit::ZEQAudit(BSTR* MsgA, enumZEQAuditClass AuditClassA, enumZEQAuditAction AuditActionsA,
                                 long MsgBoxButtonsA, long* result) noexcept {
  return quietly(result, [&] {
    const auto alive = keepAlive();
    const std::wstring message(text(MsgA));
    const Widening widening = wideningOf(AuditClassA);
    const bool byDefault = AuditActionsA == 0 && AuditClassA != ZEQ_AUD_DEBUG;
    const long actions = (byDefault ? ZEQ_AUD_ACT_STAT : AuditActionsA) | debugMask_ | widening.actions;
    const auto due = [&](long action) { return (actions & action) != 0; };
    long auditClass = AuditClassA;  // A handler may change it for the rest of the call.
    long button = IDOK;
    if (due(ZEQ_AUD_ACT_LOG) && isLeftToUs(auditClass, ZEQ_AUD_ACT_LOG)) {
      quietly([&] { log(message); });
    }
    if (due(ZEQ_AUD_ACT_STAT) && isLeftToUs(auditClass, ZEQ_AUD_ACT_STAT)) {
      quietly([&] { showStatus(message); });
    }
    if (due(ZEQ_AUD_ACT_DBG)) {
      // The debug channel is the event alone.
      static_cast<void>(isLeftToUs(auditClass, ZEQ_AUD_ACT_DBG));
    }
    if (due(ZEQ_AUD_ACT_MB) && isLeftToUs(auditClass, ZEQ_AUD_ACT_MB)) {
      quietly([&] { button = ask(message, MsgBoxButtonsA | widening.icon, applicationName_); });
    }
    if (due(ZEQ_AUD_ACT_STOP) && auditClass == ZEQ_AUD_ERROR) {
      stop();
    }
    return button;
  });
}

/// Offers an action to the client; true if no handler has taken it over.
bool CZEQAudit::isLeftToUs(long& auditClass, long action) noexcept {
  VARIANT_BOOL processed = VARIANT_FALSE;
  raise(auditDataReady, &auditClass, &action, &processed);
  return processed == VARIANT_FALSE;
}

void CZEQAudit::stop() noexcept {
  VARIANT_BOOL processed = VARIANT_FALSE;
  raise(stopApplication, &processed);
  if (processed == VARIANT_FALSE) {
    platform::endProcess(stoppedExitCode);
  }
}

long CZEQAudit::ask(const std::wstring& prompt, long buttons, std::wstring_view title) const {
  const bool blank = title.find_first_not_of(L' ') == std::wstring_view::npos;
  return platform::showMessageBox(prompt, blank ? applicationName_ : std::wstring(title), buttons);
}

void CZEQAudit::log(std::wstring_view message) const {
  if (!debugFile_.empty()) {
    platform::appendText(debugFile_, logLine(message));
  }
}

void CZEQAudit::showStatus(std::wstring_view message) const {
  if (!statusControl_) {
    return;
  }
  const automation::NamedCaller control(
      statusControl_.get());  // It may bring in another one while it is called.
  const automation::Bstr value(message);
  try {
    control.put(L"Text", value);
  } catch (const automation::Error&) {  // No such property, or it rejects the text.
    control.put(L"Caption", value);
  }
}

}  // namespace zeq::audit
