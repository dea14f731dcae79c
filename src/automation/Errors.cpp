#include "automation/Errors.h"

#include <oleauto.h>

#include <algorithm>
#include <array>
#include <new>
#include <stdexcept>
#include <system_error>

#include "automation/ComPtr.h"
#include "automation/Text.h"

namespace zeq::automation {
namespace {

struct NumberAndText {
  ErrorNumber number;
  const wchar_t* text;
};

constexpr std::array texts{
    NumberAndText{ErrorNumber::invalidProcedureCall, L"Invalid procedure call or argument"},
    NumberAndText{ErrorNumber::overflow, L"Overflow"},
    NumberAndText{ErrorNumber::outOfMemory, L"Out of memory"},
    NumberAndText{ErrorNumber::subscriptOutOfRange, L"Subscript out of range"},
    NumberAndText{ErrorNumber::divisionByZero, L"Division by zero"},
    NumberAndText{ErrorNumber::typeMismatch, L"Type mismatch"},
    NumberAndText{ErrorNumber::internalError, L"Internal error"},
    NumberAndText{ErrorNumber::badFileName, L"Bad file name or number"},
    NumberAndText{ErrorNumber::fileNotFound, L"File not found"},
    NumberAndText{ErrorNumber::fileAlreadyOpen, L"File already open"},
    NumberAndText{ErrorNumber::deviceIoError, L"Device I/O error"},
    NumberAndText{ErrorNumber::fileAlreadyExists, L"File already exists"},
    NumberAndText{ErrorNumber::diskFull, L"Disk full"},
    NumberAndText{ErrorNumber::tooManyFiles, L"Too many files"},
    NumberAndText{ErrorNumber::deviceUnavailable, L"Device unavailable"},
    NumberAndText{ErrorNumber::permissionDenied, L"Permission denied"},
    NumberAndText{ErrorNumber::diskNotReady, L"Disk not ready"},
    NumberAndText{ErrorNumber::pathFileAccessError, L"Path/File access error"},
    NumberAndText{ErrorNumber::pathNotFound, L"Path not found"},
    NumberAndText{ErrorNumber::objectNotSet, L"Object variable or With block variable not set"},
    NumberAndText{ErrorNumber::cannotCreateObject, L"ActiveX component can't create object"},
    NumberAndText{ErrorNumber::memberNotSupported, L"Object doesn't support this property or method"},
    NumberAndText{ErrorNumber::actionNotSupported, L"Object doesn't support this action"},
    NumberAndText{ErrorNumber::keyInUse,
                  L"This key is already associated with an element of this collection"},
};

struct Win32AndNumber {
  DWORD error;
  ErrorNumber number;
};

constexpr std::array win32Numbers{
    Win32AndNumber{ERROR_FILE_NOT_FOUND, ErrorNumber::fileNotFound},
    Win32AndNumber{ERROR_PATH_NOT_FOUND, ErrorNumber::pathNotFound},
    Win32AndNumber{ERROR_TOO_MANY_OPEN_FILES, ErrorNumber::tooManyFiles},
    Win32AndNumber{ERROR_ACCESS_DENIED, ErrorNumber::permissionDenied},
    Win32AndNumber{ERROR_NOT_ENOUGH_MEMORY, ErrorNumber::outOfMemory},
    Win32AndNumber{ERROR_OUTOFMEMORY, ErrorNumber::outOfMemory},
    Win32AndNumber{ERROR_INVALID_DRIVE, ErrorNumber::deviceUnavailable},
    Win32AndNumber{ERROR_CURRENT_DIRECTORY, ErrorNumber::pathFileAccessError},
    Win32AndNumber{ERROR_NOT_SAME_DEVICE, ErrorNumber::permissionDenied},
    Win32AndNumber{ERROR_NO_MORE_FILES, ErrorNumber::fileNotFound},
    Win32AndNumber{ERROR_WRITE_PROTECT, ErrorNumber::permissionDenied},
    Win32AndNumber{ERROR_NOT_READY, ErrorNumber::diskNotReady},
    Win32AndNumber{ERROR_SHARING_VIOLATION, ErrorNumber::permissionDenied},
    Win32AndNumber{ERROR_LOCK_VIOLATION, ErrorNumber::permissionDenied},
    Win32AndNumber{ERROR_FILE_EXISTS, ErrorNumber::fileAlreadyExists},
    Win32AndNumber{ERROR_ALREADY_EXISTS, ErrorNumber::fileAlreadyExists},
    Win32AndNumber{ERROR_INVALID_PARAMETER, ErrorNumber::invalidProcedureCall},
    Win32AndNumber{ERROR_DISK_FULL, ErrorNumber::diskFull},
    Win32AndNumber{ERROR_HANDLE_DISK_FULL, ErrorNumber::diskFull},
    Win32AndNumber{ERROR_INVALID_NAME, ErrorNumber::badFileName},
    Win32AndNumber{ERROR_BAD_PATHNAME, ErrorNumber::badFileName},
    Win32AndNumber{ERROR_FILENAME_EXCED_RANGE, ErrorNumber::badFileName},
    Win32AndNumber{ERROR_DIR_NOT_EMPTY, ErrorNumber::pathFileAccessError},
    Win32AndNumber{ERROR_BAD_NETPATH, ErrorNumber::pathNotFound},
    Win32AndNumber{ERROR_BAD_NET_NAME, ErrorNumber::pathNotFound},
    Win32AndNumber{ERROR_BAD_UNIT, ErrorNumber::deviceUnavailable},
    Win32AndNumber{ERROR_DIRECTORY, ErrorNumber::pathNotFound},
};

std::wstring systemText(HRESULT code) {
  constexpr DWORD flags =
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
  wchar_t* text = nullptr;
  const DWORD length = FormatMessageW(flags, nullptr, static_cast<DWORD>(code), 0,
                                      reinterpret_cast<wchar_t*>(&text), 0, nullptr);
  std::wstring result(text != nullptr ? text : L"", length);
  LocalFree(text);
  while (!result.empty() && (result.back() == L'\n' || result.back() == L'\r' || result.back() == L' ')) {
    result.pop_back();
  }
  return result.empty() ? L"Automation error" : result;
}

}  // namespace

Error::Error(ErrorNumber number) noexcept : code_(codeOf(number)) {}

ErrorNumber numberOfWin32Error(DWORD error) noexcept {
  const auto* found = std::find_if(win32Numbers.begin(), win32Numbers.end(),
                                   [&](const auto& each) { return each.error == error; });
  return found != win32Numbers.end() ? found->number : ErrorNumber::deviceIoError;
}

std::wstring describe(HRESULT code) {
  const auto* found =
      std::find_if(texts.begin(), texts.end(), [&](const auto& each) { return codeOf(each.number) == code; });
  if (found != texts.end()) {
    return found->text;
  }
  return systemText(code);
}

HRESULT withErrorNumber(HRESULT code) noexcept {
  switch (code) {
    case DISP_E_OVERFLOW:
      return codeOf(ErrorNumber::overflow);
    case DISP_E_TYPEMISMATCH:
      return codeOf(ErrorNumber::typeMismatch);
    case DISP_E_DIVBYZERO:
      return codeOf(ErrorNumber::divisionByZero);
    case DISP_E_BADINDEX:
      return codeOf(ErrorNumber::subscriptOutOfRange);
    case E_OUTOFMEMORY:
      return codeOf(ErrorNumber::outOfMemory);
    default:
      return code;
  }
}

Failure currentFailure() noexcept {
  Failure failure{codeOf(ErrorNumber::internalError), {}};
  try {
    try {
      throw;
    } catch (const Error& error) {
      failure.code = withErrorNumber(error.code());
      failure.description = error.description();
    } catch (const std::system_error& error) {
      if (error.code().category() == std::system_category()) {
        failure.code = codeOf(numberOfWin32Error(static_cast<DWORD>(error.code().value())));
      }
    } catch (const std::overflow_error&) {
      failure.code = codeOf(ErrorNumber::overflow);
    } catch (const std::bad_alloc&) {
      failure.code = codeOf(ErrorNumber::outOfMemory);
    } catch (const std::length_error&) {
      failure.code = codeOf(ErrorNumber::outOfMemory);
    } catch (...) {
      failure.code = codeOf(ErrorNumber::internalError);
    }
    if (failure.description.empty()) {
      failure.description = describe(failure.code);
    }
  } catch (...) {  // NOLINT(bugprone-empty-catch): without memory for its text, the code alone tells.
  }
  return failure;
}

HRESULT report(const Failure& failure, const wchar_t* source) noexcept {
  ComPtr<ICreateErrorInfo> created;
  ComPtr<IErrorInfo> info;
  if (SUCCEEDED(CreateErrorInfo(created.out()))) {
    created->SetSource(const_cast<wchar_t*>(source));
    created->SetDescription(const_cast<wchar_t*>(failure.description.c_str()));
    info = created.query<IErrorInfo>(IID_IErrorInfo);
  }
  SetErrorInfo(0, info.get());  // At worst nothing, but never what an earlier failure left.
  return failure.code;
}

}  // namespace zeq::automation
