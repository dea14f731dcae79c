#pragma once
// One file that is attached to something: what it is, and how to open it.

#include <string>

#include "ZEQUtility2.h"
#include "automation/Object.h"

namespace zeq::filesystem {

class CAttachment final : public automation::Object<CAttachment, ::CAttachment, ::_CAttachment> {
 public:
  CAttachment();

  STDMETHODIMP get_FullPath(BSTR* result) noexcept override;
  STDMETHODIMP put_FullPath(BSTR value) noexcept override;
  STDMETHODIMP get_Location(BSTR* result) noexcept override;
  STDMETHODIMP put_Location(BSTR value) noexcept override;
  STDMETHODIMP get_Name(BSTR* result) noexcept override;
  STDMETHODIMP put_Name(BSTR value) noexcept override;
  STDMETHODIMP get_Extension(BSTR* result) noexcept override;
  STDMETHODIMP put_Extension(BSTR value) noexcept override;
  STDMETHODIMP get_Association(BSTR* result) noexcept override;
  STDMETHODIMP put_Association(BSTR value) noexcept override;
  STDMETHODIMP get_IconKey(BSTR* result) noexcept override;
  STDMETHODIMP put_IconKey(BSTR value) noexcept override;
  STDMETHODIMP Create(BSTR AttachmentFullPathA) noexcept override;
  STDMETHODIMP Execute(VARIANT_BOOL* result) noexcept override;

 private:
  using PathPart = HRESULT (STDMETHODCALLTYPE _CZEQFileSystemObject::*)(BSTR* path, BSTR* part);

  /// A part of the full path, as the helper says it.
  [[nodiscard]] std::wstring part(PathPart member) const;

  const automation::ComPtr<_CZEQFileSystemObject> files_;
  std::wstring fullPath_;
  std::wstring location_;
  std::wstring name_;
  std::wstring extension_;
  std::wstring association_;
  std::wstring iconKey_;
};

}  // namespace zeq::filesystem
