#!/bin/bash
# Installs the Debian packages that scripts/package.sh has built on a bare system
# of this machine's release, and runs what debian/tests has for them. As root; the
# system is unpacked into a temporary folder, and removed again.
# usage: scripts/test_packages.sh [MIRROR]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
if [ "$(id -u)" != 0 ]; then
  echo "A system of its own is set up by root: call this as root." >&2
  exit 1
fi
if [ "${1-}" != --inside ]; then
  # What is mounted in there is gone with the last process that sees it.
  exec unshare --mount --pid --fork --kill-child \
    bash "scripts/$(basename "${BASH_SOURCE[0]}")" --inside "$@"
fi
shift
source scripts/dependencies.sh
install_dependencies debootstrap=debootstrap autopkgtest=autopkgtest

if ! ls build/packages/*.deb >/dev/null 2>&1; then
  echo "There are no packages: run scripts/package.sh first." >&2
  exit 1
fi
dir=$(mktemp -d "${TMPDIR:-/tmp}/palvor-packages.XXXXXX")
system=$dir/system
trap 'umount "$system/proc" 2>/dev/null || true; rm -rf "$dir"' EXIT
trap 'exit 130' INT TERM HUP

release=$(. /etc/os-release && echo "$VERSION_CODENAME")
echo "== Unpacking a bare system ($release)"
debootstrap --variant=minbase "$release" "$system" "$@" >"$dir/log" ||
  { tail -n 20 "$dir/log" >&2; exit 1; }
# As apt gets through here, it does there.
cp -r /etc/apt/apt.conf.d "$system/etc/apt/"
mount -t proc proc "$system/proc"

echo "== Installing the packages there, and testing them"
tests=(build/packages/palvor-*/)
# TMPDIR names a folder out here.
env -u TMPDIR autopkgtest --no-built-binaries \
  --summary-file "$dir/summary" build/packages/*.deb "${tests[@]}" \
  -- chroot "$system" >"$dir/log" 2>&1 ||
  { tail -n 50 "$dir/log" >&2; exit 1; }
cat "$dir/summary"
