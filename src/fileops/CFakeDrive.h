#pragma once
// One simulated drive: what a batch of simulated operations would do to the space on it. All quantities are
// bytes.

#include <string>

#include "ZEQUtility2.h"
#include "automation/Object.h"
#include "fileops/DriveUsage.h"

namespace zeq::fileops {

class CFakeDrive final : public automation::Object<CFakeDrive, ::CFakeDrive, ::_CFakeDrive> {
 public:
  STDMETHODIMP get_FreeSpace(double* result) noexcept override;
  STDMETHODIMP get_SpaceUsed(double* result) noexcept override;
  STDMETHODIMP put_SpaceUsed(double value) noexcept override;
  STDMETHODIMP get_SafetyMargin(double* result) noexcept override;
  STDMETHODIMP put_SafetyMargin(double value) noexcept override;
  STDMETHODIMP get_Capacity(double* result) noexcept override;
  STDMETHODIMP put_Capacity(double value) noexcept override;
  STDMETHODIMP get_Delta(double* result) noexcept override;
  STDMETHODIMP get_LowTide(double* result) noexcept override;
  STDMETHODIMP get_HighTide(double* result) noexcept override;
  STDMETHODIMP get_LowTideDelta(double* result) noexcept override;
  STDMETHODIMP get_HighTideDelta(double* result) noexcept override;
  STDMETHODIMP get_TooFull(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP get_Name(BSTR* result) noexcept override;
  STDMETHODIMP put_Name(BSTR value) noexcept override;
  STDMETHODIMP get_AsString(BSTR* result) noexcept override;
  STDMETHODIMP UseBytes(double bytesUsedA) noexcept override;
  STDMETHODIMP FreeBytes(double bytesFreedA) noexcept override;
  STDMETHODIMP ResetLimits() noexcept override;

 private:
  DriveUsage usage_;
  std::wstring name_;
};

}  // namespace zeq::fileops
