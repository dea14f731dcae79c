# Shared by the commands in this folder: where things are, what to install, how to run a Windows program.
# shellcheck shell=bash
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
build=$root/build
wine32=/usr/lib/wine/wine
wine64=/usr/lib/wine/wine64
export LC_ALL=C.UTF-8  # Else Wine takes no file names with letters beyond ASCII.

say() { printf '%s\n' "$*"; }
step() { printf '\n== %s\n' "$*"; }
die() {
  printf 'error: %s\n' "$*" >&2
  exit 1
}

# configure PRESET: makes build/PRESET ready to be built, by what CMakePresets.json says now.
configure() {
  local log=$build/configure-$1.log
  mkdir -p "$build"
  cmake --preset "$1" >"$log" 2>&1 || {
    cat "$log" >&2
    die "cmake failed"
  }
}

# use_prefix NAME: makes the Wine prefix build/prefix-NAME (both bitnesses) if it is not there, and selects it. Windows
# are created without a display, so that message boxes and the shell's dialogs work on a machine that has none. The help
# viewer beside a test program goes before Wine's own, as the one beside a program does on Windows.
use_prefix() {
  local template=$build/prefix-template
  export WINEPREFIX=$build/prefix-$1 WINEDEBUG=${WINEDEBUG:--all} WINEDLLOVERRIDES="hhctrl.ocx=n,b;mscoree,mshtml=;winemenubuilder.exe=d"
  unset WINEARCH DISPLAY
  [ ! -f "$WINEPREFIX/ready" ] || return 0
  rm -rf "$WINEPREFIX"
  if [ "$1" = template ]; then
    say "making a Windows environment (once)"
    mkdir -p "$build"
    "$wine64" wineboot -i >/dev/null 2>&1 || die "wineboot failed"
    "$wine64" reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f >/dev/null 2>&1 || die "cannot set the null display"
    stop_prefix
  else
    # Making one takes half a minute and a gigabyte, so that all are the same files but for those that programs write to.
    (use_prefix template)
    cp -al "$template" "$WINEPREFIX"
    rm -rf "$WINEPREFIX/wineserver"
    cp -a --remove-destination "$template"/*.reg "$WINEPREFIX"
    cp -a --remove-destination "$template"/drive_c/windows/*.ini "$WINEPREFIX/drive_c/windows"
  fi
  touch "$WINEPREFIX/ready"
}

# stop_prefix: ends the programs of the selected prefix and waits until its registry is written.
stop_prefix() {
  /usr/lib/wine/wineserver64 -k >/dev/null 2>&1 || true
  /usr/lib/wine/wineserver64 -w >/dev/null 2>&1 || true
}

# wine_for BITS: the loader that starts programs of that bitness.
wine_for() { if [ "$1" = 32 ]; then echo "$wine32"; else echo "$wine64"; fi; }

# windows_path PATH: the Windows spelling of a path of this machine.
windows_path() { printf 'Z:%s' "${1//\//\\}"; }

# describe_library BITS FILE: writes what the type library of the built DLL says, as JSON.
describe_library() {
  timeout 120 "$(wine_for "$1")" "$build/win$1/bin/describe_typelib.exe" "$(windows_path "$root/dist/win$1/ZEQUtility2.dll")" \
    </dev/null >"$2" || die "the type library cannot be read"
}

# register_library BITS: registers the DLL of dist/ in the selected prefix with the regsvr32 of that bitness.
register_library() {
  timeout 120 "$(wine_for "$1")" regsvr32.exe /s "$(windows_path "$root/dist/win$1/ZEQUtility2.dll")" \
    </dev/null >/dev/null 2>&1 || die "the $1-bit library cannot be registered"
}
