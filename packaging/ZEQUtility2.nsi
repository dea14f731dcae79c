; The Windows installer: copies both bitnesses and registers them, for everybody or for the current user.
;
;   ZEQUtility2-<version>-setup.exe [/S] [/AllUsers | /CurrentUser] [/D=folder]
;
; /S asks nothing. Without a choice of scope it installs for everybody where the user may, else for the user alone.
; Exit codes: 0 done, 1 cancelled, 2 failed: nothing stays behind, but where a file could not be written an earlier
; installation stays registered.
; VERSION, STAGE (the folder to pack) and OUTPUT come from the command line of makensis.

Unicode true
Name "ZEQUtility2 ${VERSION}"
OutFile "${OUTPUT}"
RequestExecutionLevel highest
SetCompressor /SOLID lzma
ShowInstDetails show
XPStyle on
VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "ZEQUtility2"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "FileDescription" "ZEQ General Purpose Utility Classes, installer"
VIAddVersionKey "LegalCopyright" "The ZEQUtility2 developers"

!include "LogicLib.nsh"
!include "FileFunc.nsh"
!include "x64.nsh"

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\ZEQUtility2"

Page directory
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

Var scope ; "machine" or "user"
Var replaces ; "yes" over an earlier installation
Var failures

; Has the regsvr32 of a folder register or unregister a DLL, and counts the call in $failures if that did not succeed or
; could not be started.
!macro Regsvr32 folder switches dll
  StrCpy $1 ""
  ${If} $scope == "user"
    StrCpy $1 "/n /i:user"
  ${EndIf}
  ClearErrors
  ExecWait '"${folder}\regsvr32.exe" /s ${switches} $1 "${dll}"' $0
  ${If} ${Errors}
  ${OrIf} $0 <> 0
    IntOp $failures $failures + 1
  ${EndIf}
!macroend

; The 32-bit installer reaches the 64-bit regsvr32 through Sysnative.
!macro ForBothBitnesses function switches
  Function ${function}
    StrCpy $failures 0
    !insertmacro Regsvr32 "$SYSDIR" "${switches}" "$INSTDIR\win32\ZEQUtility2.dll"
    ${If} ${RunningX64}
      !insertmacro Regsvr32 "$WINDIR\Sysnative" "${switches}" "$INSTDIR\win64\ZEQUtility2.dll"
    ${EndIf}
  FunctionEnd
!macroend
!insertmacro ForBothBitnesses Register ""
!insertmacro ForBothBitnesses Unregister "/u"
!insertmacro ForBothBitnesses un.Unregister "/u"

; Deletes exactly what was installed.
!macro DeleteAll
  SetOutPath "$TEMP" ; The current folder cannot be removed.
  !include "${STAGE}.uninstall.nsh" ; the files that were packed
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  ${If} $scope == "user"
    RMDir "$LOCALAPPDATA\Programs" ; only if nothing else is there
  ${EndIf}
  DeleteRegKey SHCTX "${UNINSTALL_KEY}"
!macroend

!macro UseScope
  ${If} $scope == "user"
    SetShellVarContext current
  ${Else}
    SetShellVarContext all
  ${EndIf}
!macroend

Function .onInit
  StrCpy $scope "machine"
  UserInfo::GetAccountType
  Pop $0
  ${If} $0 != "Admin"
    StrCpy $scope "user"
  ${EndIf}
  ${GetParameters} $1
  ClearErrors
  ${GetOptions} $1 "/CurrentUser" $2
  ${IfNot} ${Errors}
    StrCpy $scope "user"
  ${EndIf}
  ClearErrors
  ${GetOptions} $1 "/AllUsers" $2
  ${IfNot} ${Errors}
    StrCpy $scope "machine"
  ${EndIf}
  !insertmacro UseScope
  ${If} $INSTDIR == "" ; not given with /D
    ${If} $scope == "user"
      StrCpy $INSTDIR "$LOCALAPPDATA\Programs\ZEQUtility2"
    ${Else}
      StrCpy $INSTDIR "$PROGRAMFILES32\ZEQUtility2"
    ${EndIf}
  ${EndIf}
FunctionEnd

Section
  ${If} ${FileExists} "$INSTDIR\win32\ZEQUtility2.dll"
    StrCpy $replaces "yes"
    Call Unregister ; Each DLL takes back what it registered itself.
  ${EndIf}
  SetOutPath "$INSTDIR"
  ClearErrors
  SetOverwrite try
  File /r "${STAGE}\*.*"
  ${If} ${Errors}
    DetailPrint "A file could not be written: a program that uses the library may be running."
    ${If} $replaces == "yes"
      Call Register
    ${Else}
      !insertmacro DeleteAll
    ${EndIf}
    SetErrorLevel 2
    Abort
  ${EndIf}
  Call Register
  ${If} $failures <> 0
    DetailPrint "The library could not be registered."
    Call Unregister
    !insertmacro DeleteAll
    SetErrorLevel 2
    Abort
  ${EndIf}
  WriteUninstaller "$INSTDIR\uninstall.exe"
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayName" "ZEQUtility2 - ZEQ General Purpose Utility Classes"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "Publisher" "The ZEQUtility2 developers"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "EstimatedSize" $0
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoRepair" 1
SectionEnd

Function un.onInit
  ; Which installation this is stands in the registry of its own scope; the folder tells one from the other.
  StrCpy $scope "machine"
  SetShellVarContext current
  ReadRegStr $0 SHCTX "${UNINSTALL_KEY}" "InstallLocation"
  ${If} $0 == $INSTDIR
    StrCpy $scope "user"
  ${EndIf}
  !insertmacro UseScope
FunctionEnd

Section Uninstall
  Call un.Unregister
  !insertmacro DeleteAll
SectionEnd
