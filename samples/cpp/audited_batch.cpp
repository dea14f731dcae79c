// Copies the files of a folder and audits what happens, with ZEQUtility2 used early-bound. The batch's events
// become audit messages, and the audit's own events decide what is done with them: the debug channel is
// printed here, and an error that asks for the end of the application is answered with an orderly end
// instead.
//
//   audited_batch SOURCE-FOLDER DESTINATION-FOLDER LOG-FILE
//
// All that it needs of the library is ZEQUtility2.h and the registered DLL.

#include <windows.h>
#include <comutil.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "Client.h"
#include "ZEQUtility2.h"

namespace {

using client::check;
using client::ComPtr;
using client::create;
using client::Events;

long report(_CZEQAudit* audit, const std::wstring& text, enumZEQAuditClass kind, int actions = 0) {
  const _bstr_t message(text.c_str());
  BSTR argument = message;
  long button = 0;
  check(audit->ZEQAudit(&argument, kind, static_cast<enumZEQAuditAction>(actions), 0, &button), "auditing");
  return button;
}

/// What is done with each message: the identifiers of the events stand in the type library.
void handleAudit(DISPID event, VARIANTARG* arguments) {
  constexpr DISPID auditDataReady = 1;
  if (event == auditDataReady) {
    const auto action = *arguments[1].plVal;
    if (action == ZEQ_AUD_ACT_STAT || action == ZEQ_AUD_ACT_DBG) {
      std::printf("[class %ld, action %ld]\n", static_cast<long>(*arguments[2].plVal),
                  static_cast<long>(action));
    }
  } else {
    // The process is not to be ended at once: the failed batch ends it in order.
    *arguments[0].pboolVal = VARIANT_TRUE;
  }
}

void plan(_CFileOperationBatch* batch, const std::filesystem::path& from, const std::filesystem::path& to) {
  for (const auto& entry : std::filesystem::directory_iterator(from)) {
    if (entry.is_regular_file()) {
      ComPtr<_CFileOperation> added;
      check(batch->AddCopy(_bstr_t(entry.path().c_str()), _bstr_t((to / entry.path().filename()).c_str()),
                           ovrtYes, ptypFile, added.GetAddressOf()),
            "planning");
    }
  }
}

int run(wchar_t** arguments) {
  const auto audit = create<_CZEQAudit>(__uuidof(CZEQAudit));
  check(audit->Create(_bstr_t(arguments[3]), _bstr_t(L"Audited batch"), VARIANT_TRUE, nullptr),
        "setting up the audit");
  const Events<__CZEQAudit> auditEvents(audit.Get(), handleAudit);

  const auto batch = create<_CFileOperationBatch>(__uuidof(CFileOperationBatch));
  const Events<__CFileOperationBatch> batchEvents(batch.Get(), [&](DISPID event, VARIANTARG* list) {
    constexpr DISPID executedOperation = 4;  // op, success, wasCancelled, description
    if (event == executedOperation) {
      const std::wstring outcome(list[0].bstrVal, SysStringLen(list[0].bstrVal));
      const bool success = list[2].boolVal != VARIANT_FALSE;
      report(audit.Get(), L"task: " + outcome, success ? ZEQ_AUD_DEBUG : ZEQ_AUD_ERROR,
             success ? 0 : ZEQ_AUD_ACT_LOG | ZEQ_AUD_ACT_STOP);
    }
  });

  plan(batch.Get(), arguments[1], arguments[2]);
  VARIANT_BOOL done = VARIANT_FALSE;
  check(batch->Execute(VARIANT_TRUE, &done), "running the batch");
  const bool allCopied = done != VARIANT_FALSE;
  report(audit.Get(), allCopied ? L"All files are copied." : L"Stopped by an error.", ZEQ_AUD_INFO,
         ZEQ_AUD_ACT_STAT | ZEQ_AUD_ACT_LOG);
  return allCopied ? 0 : 1;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count != 4) {
    std::printf("usage: audited_batch SOURCE-FOLDER DESTINATION-FOLDER LOG-FILE\n");
    return 2;
  }
  check(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), "starting COM");
  const int result = run(arguments);
  CoUninitialize();
  return result;
}
