#!/usr/bin/env bash
# Installs the package silently for everybody and for the current user, in two Windows environments of their own, uses
# the library from both bitnesses, installs over itself, uninstalls, and compares registry and files with what was
# there before. Then it has installations fail, which are to leave everything as it was. Prints one line a check and a
# closing count; needs what tools/package.sh makes.
source "$(dirname "$0")/../../tools/count.sh"
set +e

installer=$(echo "$root"/dist/ZEQUtility2-*-setup.exe)
[ -f "$installer" ] || die "no installer in dist; run tools/package.sh"

work=$(mktemp -d)
trap 'stop_prefix; rm -rf "$work"' EXIT
cat >"$work/use.vbs" <<'SCRIPT'
Set drive = CreateObject("ZEQUtility2.CFakeDrive")
drive.Name = "C:"
drive.UseBytes 1048576
WScript.Echo drive.Name & drive.Delta
SCRIPT

# everything NAME: the registry and the files as they are, without what changes by itself.
everything() {
  local key
  for key in 'HKLM\Software' 'HKCU\Software'; do
    "$wine64" reg export "$key" "$(windows_path "$work/export.reg")" /y >/dev/null 2>&1
    iconv -f UTF-16LE -t UTF-8 "$work/export.reg" 2>/dev/null
  done | tr -d '\r' | sed '/^\[.*\\Wine\\Temporary System Parameters/,/^$/d' >"$work/$1.registry"
  (cd "$WINEPREFIX/drive_c" && find . -not -path './users/*/Temp*' -not -path './windows/temp*' | sort) >"$work/$1.files"
}
uses_library() { [ "$(timeout 60 "$(wine_for "$1")" cscript //nologo "$(windows_path "$work/use.vbs")" 2>/dev/null | tr -d '\r')" = "C:1048576" ]; }
# registered SCOPE: scripts of both bitnesses can use the library. Wine 8 does not look for classes below HKEY_CURRENT_USER,
# so that for one user the keys that Windows reads there are all that can be checked.
registered() {
  if [ "$1" = AllUsers ]; then
    uses_library 32 && uses_library 64
  else
    "$wine64" reg query 'HKCU\Software\Classes\ZEQUtility2.CFakeDrive\CLSID' 2>/dev/null | grep -q '{5BC7EAE3-' &&
      "$wine64" reg query 'HKCU\Software\Classes\CLSID' /s 2>/dev/null | grep -q 'ZEQUtility2.dll'
  fi
}
runs_quietly() { timeout 120 "$wine32" "$@"; }
fails() {
  runs_quietly "$@"
  [ $? -eq 2 ]
}
# uninstall PROGRAM: the uninstaller goes on as a copy of itself; the environment ends when that has ended.
uninstall() { runs_quietly "$1" /S && timeout 60 /usr/lib/wine/wineserver64 -w; }
same() { diff "$work/before.$1" "$work/after.$1" >"$work/difference" || { head -n 20 "$work/difference"; return 1; }; }

# leaves_all_as_it_was CASE: compares with what was there before.
leaves_all_as_it_was() {
  everything after
  run_command "$1: leaves the registry as it was" same registry
  run_command "$1: leaves the files as they were" same files
}

# The scripting host registers its own type library when it first runs, and Windows always has the keys below.
warm_up() {
  local bits key
  for bits in 32 64; do uses_library $bits; done
  for key in 'HKCU\Software\Classes' 'HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall'; do
    "$wine64" reg add "$key" /f >/dev/null 2>&1
  done
}

for scope in AllUsers CurrentUser; do
  use_prefix "package-$scope"
  warm_up
  everything before
  run_command "$scope: installs" runs_quietly "$installer" /S "/$scope"
  run_command "$scope: is registered" registered "$scope"
  run_command "$scope: installs over itself" runs_quietly "$installer" /S "/$scope"
  run_command "$scope: is still registered" registered "$scope"
  run_command "$scope: uninstalls" uninstall "$(find "$WINEPREFIX/drive_c" -path '*ZEQUtility2/uninstall.exe' | head -n 1)"
  leaves_all_as_it_was "$scope"
  stop_prefix
done

# broken_installer: one whose 64-bit library is none.
broken_installer() {
  local stage version
  version=${installer##*/ZEQUtility2-}
  version=${version%-setup.exe}
  stage=$build/package/ZEQUtility2-$version
  cp -r "$stage" "$stage.uninstall.nsh" "$work"
  echo "no library" >"$work/ZEQUtility2-$version/win64/ZEQUtility2.dll"
  makensis -V1 -X'SetCompress off' -DVERSION="$version" -DSTAGE="$work/ZEQUtility2-$version" -DOUTPUT="$work/broken-setup.exe" \
    packaging/ZEQUtility2.nsi
}

rm -rf "$build/prefix-package-failing"
use_prefix package-failing
warm_up
folder='C:\ZEQ'
installed=$WINEPREFIX/drive_c/ZEQ
everything before
run_command "an installer with a broken library is made" broken_installer
run_command "broken library: fails" fails "$work/broken-setup.exe" /S /AllUsers "/D=$folder"
leaves_all_as_it_was "broken library"
run_command "installs before a failure" runs_quietly "$installer" /S /AllUsers "/D=$folder"
run_command "broken library over an installation: fails" fails "$work/broken-setup.exe" /S /AllUsers "/D=$folder"
leaves_all_as_it_was "broken library over an installation"

run_command "installs before another failure" runs_quietly "$installer" /S /AllUsers "/D=$folder"
rm "$installed/README.md"
mkdir "$installed/README.md" # A folder, where the installer cannot write its file.
run_command "a file that cannot be written over an installation: fails" fails "$installer" /S /AllUsers "/D=$folder"
run_command "a file that cannot be written over an installation: is still registered" registered AllUsers
run_command "uninstalls what a failure left" uninstall "$installed/uninstall.exe"

mkdir -p "$installed/README.md"
everything before
run_command "a file that cannot be written: fails" fails "$installer" /S /AllUsers "/D=$folder"
leaves_all_as_it_was "a file that cannot be written"
rm -r "$installed"

program=$WINEPREFIX/drive_c/windows/system32/regsvr32.exe
rm "$program" # The file is one with those of the other environments.
echo "no program" >"$program"
everything before
run_command "regsvr32 that does not start: fails" fails "$installer" /S /AllUsers "/D=$folder"
leaves_all_as_it_was "regsvr32 that does not start"
stop_prefix

report_total
