#include "fileops/Recorder.h"

#include <chrono>
#include <stdexcept>
#include <utility>

namespace zeq::test {
namespace {

std::wstring shown(const VARIANT& value) {
  switch (value.vt) {
    case VT_BOOL:
      return value.boolVal != VARIANT_FALSE ? L"True" : L"False";
    case VT_BYREF | VT_BOOL:
      return *value.pboolVal != VARIANT_FALSE ? L"by reference: True" : L"by reference: False";
    case VT_BSTR:
      return std::wstring(automation::text(value.bstrVal));
    case VT_R8:
      return std::to_wstring(static_cast<long long>(value.dblVal));
    case VT_BYREF | VT_DISPATCH:
      return *value.ppdispVal != nullptr ? L"op" : L"nothing";
    default:
      return L"type " + std::to_wstring(value.vt);
  }
}

}  // namespace

std::wstring Sandbox::file(std::wstring_view name, std::size_t size) const {
  if (const auto end = name.rfind(L'\\'); end != std::wstring_view::npos) {
    folder(name.substr(0, end));
  }
  return TempFolder::file(name, std::string(size, 'x'));
}

std::wstring folderOnOtherDrive() {
  constexpr const wchar_t* existing = L"Z:\\tmp";
  if (exists(existing)) {
    return existing;
  }
  static const Sandbox target;
  if (DefineDosDeviceW(0, L"Q:", target.root().c_str()) == FALSE) {
    throw std::runtime_error("there is no second drive");
  }
  return L"Q:";
}

void setReadOnly(const std::wstring& path, bool readOnly) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  SetFileAttributesW(path.c_str(), readOnly ? attributes | FILE_ATTRIBUTE_READONLY
                                            : attributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
}

ShellAnswer::ShellAnswer(int button)
    : thread_([this, button] {
        HWND answered = nullptr;
        while (!stops_) {
          const HWND dialog = FindWindowW(L"#32770", nullptr);
          if (dialog != nullptr && dialog != answered && GetDlgItem(dialog, button) != nullptr) {
            owner_ = GetWindow(dialog, GW_OWNER);
            answered = dialog;
            ++given_;
            PostMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(button), 0);
          }
          std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
      }) {}

ShellAnswer::~ShellAnswer() {
  stops_ = true;
  thread_.join();
}

std::vector<std::wstring> Recorder::operationEvents() {
  return {L"AboutToExecute", L"Executed", L"BeforeOverwrite", L"BeforeFolderDelete",
          L"DriveUsageChangeEstimate"};
}

std::vector<std::wstring> Recorder::batchEvents() {
  return {L"Starting",
          L"Finished",
          L"AboutToExecuteOperation",
          L"ExecutedOperation",
          L"BeforeOperationOverwrite",
          L"BeforeOperationFolderDelete",
          L"OperationDriveUsageChangeEstimate"};
}

Recorder::Recorder(IUnknown* source, REFIID events, std::vector<std::wstring> names)
    : names_(std::move(names)),
      sink_(std::make_unique<Sink>(source, events, [this](DISPID event, Arguments arguments) {
        const std::wstring& name = names_.at(static_cast<std::size_t>(event - 1));
        std::wstring line = name + L"(";
        for (const VARIANT* argument : arguments) {
          line.append(argument == arguments.front() ? L"" : L", ").append(shown(*argument));
        }
        lines_.push_back(line + L")");
        if (const auto found = reactions_.find(name); found != reactions_.end()) {
          const Reaction reaction = found->second;  // It may replace itself.
          reaction(arguments);
        }
        return S_OK;
      })) {}

void sayYes(const Recorder::Arguments& arguments) {
  *arguments.back()->pboolVal = VARIANT_TRUE;
}

}  // namespace zeq::test
