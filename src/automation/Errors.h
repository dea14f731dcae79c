#pragma once
// Errors as automation clients know them: the number of the automation runtime in an HRESULT 0x800A0000 +
// number, and its usual English text as description (IErrorInfo).

#include <windows.h>

#include <exception>
#include <string>
#include <utility>

namespace zeq::automation {

/// The automation runtime's error numbers that the library reports.
enum class ErrorNumber : int {
  invalidProcedureCall = 5,
  overflow = 6,
  outOfMemory = 7,
  subscriptOutOfRange = 9,
  divisionByZero = 11,
  typeMismatch = 13,
  internalError = 51,
  badFileName = 52,
  fileNotFound = 53,
  fileAlreadyOpen = 55,
  deviceIoError = 57,
  fileAlreadyExists = 58,
  diskFull = 61,
  tooManyFiles = 67,
  deviceUnavailable = 68,
  permissionDenied = 70,
  diskNotReady = 71,
  pathFileAccessError = 75,
  pathNotFound = 76,
  objectNotSet = 91,
  cannotCreateObject = 429,
  memberNotSupported = 438,
  actionNotSupported = 445,
  keyInUse = 457,
};

/// What a client gets to see of a failure.
struct Failure {
  HRESULT code;
  std::wstring description;
};

/// The exception for errors that members raise on purpose.
class Error : public std::exception {
 public:
  explicit Error(ErrorNumber number) noexcept;
  explicit Error(HRESULT code) noexcept : code_(code) {}
  /// With a description of its own instead of the usual text.
  Error(HRESULT code, std::wstring description) noexcept
      : code_(code), description_(std::move(description)) {}
  [[nodiscard]] HRESULT code() const noexcept { return code_; }
  /// Empty if the usual text of the code serves.
  [[nodiscard]] const std::wstring& description() const noexcept { return description_; }
  [[nodiscard]] const char* what() const noexcept override { return "automation error"; }

 private:
  HRESULT code_;
  std::wstring description_;
};

/// Throws if a COM call failed.
inline void check(HRESULT result) {
  if (FAILED(result)) {
    throw Error(result);
  }
}

/// The HRESULT that carries an automation error number.
[[nodiscard]] constexpr HRESULT codeOf(ErrorNumber number) noexcept {
  return MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, static_cast<int>(number));
}

/// The code that an automation error number stands for where a platform function reports the same failure by
/// a code of its own (overflow, type mismatch, division by zero, bad index, out of memory); any other code
/// itself.
[[nodiscard]] HRESULT withErrorNumber(HRESULT code) noexcept;

/// The automation error number for a Win32 error code (GetLastError).
[[nodiscard]] ErrorNumber numberOfWin32Error(DWORD error) noexcept;

/// The usual text of an HRESULT: the runtime's own text for an error number, else the system's.
[[nodiscard]] std::wstring describe(HRESULT code);

/// The failure that stands for the exception being handled: Error by its code, std::system_error by its Win32
/// code, std::overflow_error as overflow, std::bad_alloc and std::length_error as out of memory, anything
/// else as an internal error. Call it from a catch block only.
[[nodiscard]] Failure currentFailure() noexcept;

/// Hands a failure to the client as IErrorInfo and returns its code.
HRESULT report(const Failure& failure, const wchar_t* source) noexcept;

}  // namespace zeq::automation
