#pragma once
// One move, copy, delete or create of a file or a folder.

#include "ZEQUtility2.h"
#include "automation/Object.h"
#include "fileops/Operation.h"
#include "fileops/OperationRun.h"

namespace zeq::fileops {

class CFileOperation final
    : public automation::Object<CFileOperation, ::CFileOperation, ::_CFileOperation, ::__CFileOperation>,
      private RunListener {
 public:
  STDMETHODIMP SetMove(BSTR src, BSTR dst, enumOverwriteType overwriteA, enumParamType paramTypeA,
                       VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP SetCopy(BSTR src, BSTR dst, enumOverwriteType overwriteA, enumParamType paramTypeA,
                       VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP SetDelete(BSTR src, enumParamType paramTypeA, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP SetCreate(BSTR src, enumOverwriteType overwriteA, enumParamType paramTypeA,
                         VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP get_OpType(enumOpType* result) noexcept override;
  STDMETHODIMP put_OpType(enumOpType value) noexcept override;
  STDMETHODIMP get_Overwrite(enumOverwriteType* result) noexcept override;
  STDMETHODIMP put_Overwrite(enumOverwriteType value) noexcept override;
  STDMETHODIMP get_OverRideReadOnly(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP put_OverRideReadOnly(VARIANT_BOOL value) noexcept override;
  STDMETHODIMP get_DeleteNonEmptyFolder(enumOverwriteType* result) noexcept override;
  STDMETHODIMP put_DeleteNonEmptyFolder(enumOverwriteType value) noexcept override;
  STDMETHODIMP get_ParameterType(enumParamType* result) noexcept override;
  STDMETHODIMP put_ParameterType(enumParamType value) noexcept override;
  STDMETHODIMP get_Parameter(short Index, BSTR* result) noexcept override;
  STDMETHODIMP put_Parameter(short Index, BSTR value) noexcept override;
  STDMETHODIMP get_State(enumExecutionState* result) noexcept override;
  STDMETHODIMP put_State(enumExecutionState value) noexcept override;
  STDMETHODIMP get_StatusHWnd(long* result) noexcept override;
  STDMETHODIMP put_StatusHWnd(long value) noexcept override;
  STDMETHODIMP get_AsString(VARIANT_BOOL verbose, BSTR lineBreaks, BSTR indents,
                            BSTR* result) noexcept override;
  STDMETHODIMP get_Simulating(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP get_PercentComplete(double* result) noexcept override;
  STDMETHODIMP StateAsString(enumExecutionState StateA, VARIANT_BOOL verbose, BSTR* result) noexcept override;
  STDMETHODIMP Execute(VARIANT_BOOL forReal, VARIANT_BOOL* result) noexcept override;

 private:
  // RunListener
  bool mayOverwrite(std::wstring_view source, std::wstring_view destination) override;
  bool mayDelete(std::wstring_view folder) override;
  void estimate(std::wstring_view drive, bool fills, double bytes) override;

  bool setTransfer(OperationType type, BSTR source, BSTR destination, enumOverwriteType overwrite,
                   enumParamType pathType);
  Outcome runStep(bool simulates);
  [[nodiscard]] double percentWhileExecuting() const;

  Operation operation_;
  bool simulating_ = false;
  double progress_ = 0;
};

}  // namespace zeq::fileops
