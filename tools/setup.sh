#!/usr/bin/env bash
# Installs what building, running and testing need from Debian's own packages. Safe to run again: it does nothing
# where everything is there. Needs root or sudo.
source "$(dirname "$0")/lib.sh"

packages=(
  cmake ninja-build python3 git ca-certificates
  g++ googletest
  g++-mingw-w64-i686-posix g++-mingw-w64-x86-64-posix mingw-w64-tools
  libwine-dev wine wine64 wine32:i386
  clang clang-format clang-tidy libclang-rt-14-dev
  python3-markdown nsis zip
)

installed() { [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]; }

missing=()
for package in "${packages[@]}"; do
  installed "$package" || missing+=("$package")
done
if [ ${#missing[@]} -eq 0 ]; then
  say "setup: everything is installed"
  exit 0
fi

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || die "these packages are missing and need root or sudo to install: ${missing[*]}"
  as_root=(sudo)
fi
apt() { "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -o Dpkg::Use-Pty=0 "$@"; }

step "setup: installing ${missing[*]}"
if ! dpkg --print-foreign-architectures | grep -qx i386; then
  say "adding the architecture i386 (32-bit Windows programs need it)"
  "${as_root[@]}" dpkg --add-architecture i386
fi
# A mirror that is being updated may have one stale index; the others are enough.
apt update || say "apt-get update reported an error; going on with the package lists that it has"
log=$(mktemp)
pin=$(mktemp)
trap 'rm -f "$log" "$pin"' EXIT
chmod a+r "$pin"
if ! apt install -y --no-install-recommends "${missing[@]}" >"$log" 2>&1; then
  # With a stale i386 index the two architectures disagree on security updates; without these updates they agree.
  say "apt-get cannot agree on versions; trying again without the security archive for this one call"
  printf 'Package: *\nPin: release l=Debian-Security\nPin-Priority: -1\n' >"$pin"
  apt install -y --no-install-recommends -o Dir::Etc::Preferences="$pin" "${missing[@]}" >"$log" 2>&1 || {
    tail -n 30 "$log" >&2
    die "apt-get could not install the packages"
  }
fi
for package in "${missing[@]}"; do
  installed "$package" || die "apt-get reported success, but $package is not installed"
done
say "setup: done"
