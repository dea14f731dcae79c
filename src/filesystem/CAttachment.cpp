#include "filesystem/CAttachment.h"

#include "filesystem/CZEQFileSystemObject.h"
#include "platform/ShellFiles.h"

namespace zeq::filesystem {
namespace {

using automation::Bstr;
using automation::raising;
using automation::text;

std::wstring typeDescription(const std::wstring& path) noexcept {
  try {
    return platform::fileTypeDescription(path);
  } catch (...) {
    return {};
  }
}

}  // namespace

CAttachment::CAttachment() : files_(CZEQFileSystemObject::make().get()) {}

STDMETHODIMP CAttachment::get_FullPath(BSTR* result) noexcept {
  return raising(result, [&] { return std::wstring_view(fullPath_); });
}

STDMETHODIMP CAttachment::put_FullPath(BSTR value) noexcept {
  return raising([&] { fullPath_ = text(value); });
}

STDMETHODIMP CAttachment::get_Location(BSTR* result) noexcept {
  return raising(result, [&] { return std::wstring_view(location_); });
}

STDMETHODIMP CAttachment::put_Location(BSTR value) noexcept {
  return raising([&] { location_ = text(value); });
}

STDMETHODIMP CAttachment::get_Name(BSTR* result) noexcept {
  return raising(result, [&] { return std::wstring_view(name_); });
}

STDMETHODIMP CAttachment::put_Name(BSTR value) noexcept {
  return raising([&] { name_ = text(value); });
}

STDMETHODIMP CAttachment::get_Extension(BSTR* result) noexcept {
  return raising(result, [&] { return std::wstring_view(extension_); });
}

STDMETHODIMP CAttachment::put_Extension(BSTR value) noexcept {
  return raising([&] { extension_ = text(value); });
}

STDMETHODIMP CAttachment::get_Association(BSTR* result) noexcept {
  return raising(result, [&] { return std::wstring_view(association_); });
}

STDMETHODIMP CAttachment::put_Association(BSTR value) noexcept {
  return raising([&] { association_ = text(value); });
}

STDMETHODIMP CAttachment::get_IconKey(BSTR* result) noexcept {
  return raising(result, [&] { return std::wstring_view(iconKey_); });
}

STDMETHODIMP CAttachment::put_IconKey(BSTR value) noexcept {
  return raising([&] { iconKey_ = text(value); });
}

std::wstring CAttachment::part(PathPart member) const {
  const Bstr path(fullPath_);
  BSTR argument = path.get();
  Bstr result;
  automation::check((files_.get()->*member)(&argument, result.out()));
  return std::wstring(result.view());
}

STDMETHODIMP CAttachment::Create(BSTR AttachmentFullPathA) noexcept {
  return raising([&] {
    const auto alive = keepAlive();  // The shell may let the client's own code run.
    fullPath_ = text(AttachmentFullPathA);
    location_ = part(&_CZEQFileSystemObject::FSO_GetParentFolderName);
    extension_ = part(&_CZEQFileSystemObject::FSO_GetExtensionName);
    name_ = part(&_CZEQFileSystemObject::FSO_GetBaseName);
    association_ = typeDescription(fullPath_);
    iconKey_.clear();
  });
}

STDMETHODIMP CAttachment::Execute(VARIANT_BOOL* result) noexcept {
  return raising(result, [&] {
    const auto alive = keepAlive();
    const std::wstring path = fullPath_;
    const Bstr copy(path);
    BSTR argument = copy.get();
    VARIANT_BOOL exists = VARIANT_FALSE;
    automation::check(files_->FSO_FileExists(&argument, &exists));
    if (exists == VARIANT_FALSE) {
      return false;
    }
    platform::openFile(path);
    return true;
  });
}

}  // namespace zeq::filesystem
