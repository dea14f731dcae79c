#pragma once
// The one place through which an application reports to its user and its developers: a message goes to the
// debug file, the status control and a message box, each offered to the client first, and an error may end
// the application.

#include <string>
#include <string_view>

#include "ZEQUtility2.h"
#include "automation/Object.h"

namespace zeq::audit {

class CZEQAudit final : public automation::Object<CZEQAudit, ::CZEQAudit, ::_CZEQAudit, ::__CZEQAudit> {
 public:
  STDMETHODIMP Create(BSTR DebugFileA, BSTR ApplicationNameA, VARIANT_BOOL ClearDebugFileA,
                      IDispatch* StatusDestControlA) noexcept override;
  STDMETHODIMP get_DebugFile(BSTR* result) noexcept override;
  STDMETHODIMP put_DebugFile(BSTR value) noexcept override;
  STDMETHODIMP get_StatusDestControl(IDispatch** result) noexcept override;
  STDMETHODIMP putref_StatusDestControl(IDispatch* value) noexcept override;
  STDMETHODIMP get_DebugMask(enumZEQAuditAction* result) noexcept override;
  STDMETHODIMP put_DebugMask(enumZEQAuditAction value) noexcept override;
  STDMETHODIMP ClearDebugFile() noexcept override;
  STDMETHODIMP ZEQMsgBox(BSTR* PromptA, long ButtonsA, BSTR* TitleA, long* result) noexcept override;
  STDMETHODIMP ZEQDbgLog(BSTR* MsgA) noexcept override;
  STDMETHODIMP ZEQStatBar(BSTR* MsgA) noexcept override;
  STDMETHODIMP ZEQAudit(BSTR* MsgA, enumZEQAuditClass AuditClassA, enumZEQAuditAction AuditActionsA,
                        long MsgBoxButtonsA, long* result) noexcept override;

 private:
  [[nodiscard]] bool isLeftToUs(long& auditClass, long action) noexcept;
  void stop() noexcept;
  [[nodiscard]] long ask(const std::wstring& prompt, long buttons, std::wstring_view title) const;
  void log(std::wstring_view message) const;
  void showStatus(std::wstring_view message) const;

  std::wstring debugFile_;
  automation::ComPtr<IDispatch> statusControl_;
  long debugMask_ = 0;
  std::wstring applicationName_;
};

}  // namespace zeq::audit
