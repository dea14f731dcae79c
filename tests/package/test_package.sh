#!/usr/bin/env bash
# Installs the package silently for everybody and for the current user, in two Windows environments of their own, uses
# the library from both bitnesses, installs over itself, uninstalls, and compares registry and files with what was
# there before. Prints one line a check and a closing count; needs dist/*-setup.exe from tools/package.sh.
source "$(dirname "$0")/../../tools/lib.sh"
set +e

installer=$(echo "$root"/dist/ZEQUtility2-*-setup.exe)
[ -f "$installer" ] || die "no installer in dist; run tools/package.sh"
passed=0
failed=0
check() { # check NAME COMMAND...
  local name=$1
  shift
  if "$@"; then
    passed=$((passed + 1))
    say "ok $name"
  else
    failed=$((failed + 1))
    say "FAILED $name"
  fi
}

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
runs_quietly() { timeout 120 "$wine32" "$@" >/dev/null 2>&1; }
same() { diff "$work/before.$1" "$work/after.$1" >"$work/difference" || { head -n 20 "$work/difference"; return 1; }; }

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
  check "$scope: installs" runs_quietly "$installer" /S "/$scope"
  check "$scope: is registered" registered "$scope"
  check "$scope: installs over itself" runs_quietly "$installer" /S "/$scope"
  check "$scope: is still registered" registered "$scope"
  uninstaller=$(find "$WINEPREFIX/drive_c" -path '*ZEQUtility2/uninstall.exe' | head -n 1)
  check "$scope: uninstalls" runs_quietly "$uninstaller" /S
  # The uninstaller goes on as a copy of itself; the environment ends when that has ended.
  timeout 60 /usr/lib/wine/wineserver64 -w
  everything after
  check "$scope: leaves the registry as it was" same registry
  check "$scope: leaves the files as they were" same files
  stop_prefix
done

printf '%d passed, %d failed\n' "$passed" "$failed"
[ "$failed" -eq 0 ]
