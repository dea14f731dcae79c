#include "filesystem/ScriptingRuntime.h"

#include "automation/Errors.h"
#include "automation/Text.h"

namespace zeq::filesystem {
namespace {

using automation::Bstr;
using automation::check;
using automation::ComPtr;
using automation::Variant;

template <class Member, class Members>
long forEachMember(Members& members, const ScriptingRuntime::Visitor& visit) {
  ComPtr<IUnknown> made;
  check(members.get__NewEnum(made.out()));
  const auto enumerator = made.query<IEnumVARIANT>();
  if (!enumerator) {
    throw automation::Error(E_NOINTERFACE);
  }
  const auto next = [&](Variant& object) {
    const HRESULT found = enumerator->Next(1, object.out(), nullptr);
    check(found);
    return found == S_OK;
  };
  for (Variant object; next(object);) {
    ComPtr<Member> member;
    check(automation::objectIn(object.get())->QueryInterface(__uuidof(Member), member.outVoid()));
    Bstr path;
    check(member->get_Path(path.out()));
    visit(object, path.view());
  }
  long count = 0;
  check(members.get_Count(&count));
  return count;
}

}  // namespace

ComPtr<scripting::IFile> ScriptingRuntime::file(BSTR path) {
  ComPtr<scripting::IFile> result;
  check(fileSystem().GetFile(path, result.out()));
  return result;
}

ComPtr<scripting::IFolder> ScriptingRuntime::folder(BSTR path) {
  ComPtr<scripting::IFolder> result;
  check(fileSystem().GetFolder(path, result.out()));
  return result;
}

long ScriptingRuntime::forEachFile(BSTR path, const Visitor& visit) {
  ComPtr<scripting::IFileCollection> files;
  check(folder(path)->get_Files(files.out()));
  return forEachMember<scripting::IFile>(*files, visit);
}

long ScriptingRuntime::forEachSubfolder(BSTR path, const Visitor& visit) {
  ComPtr<scripting::IFolderCollection> folders;
  check(folder(path)->get_SubFolders(folders.out()));
  return forEachMember<scripting::IFolder>(*folders, visit);
}

scripting::IFileSystem& ScriptingRuntime::fileSystem() {
  if (!fileSystem_) {
    check(CoCreateInstance(scripting::fileSystemObject, nullptr, CLSCTX_INPROC_SERVER,
                           __uuidof(scripting::IFileSystem), fileSystem_.outVoid()));
  }
  return *fileSystem_;
}

}  // namespace zeq::filesystem
