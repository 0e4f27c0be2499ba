#!/usr/bin/env bash
# Makes Debian packages of the last commit, for the release that this machine runs, into
# build/packages.
#
# usage: tools/package.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

[ $# = 0 ] || {
    echo "usage: tools/package.sh" >&2
    exit 2
}
tools/setup.sh packages
suite=$(. /etc/os-release && echo "${VERSION_ID:?this release of Debian has no number}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
tools/packages/source.sh "$work/gbdriver" "$suite"
tools/packages/build.sh "$work/gbdriver"
mkdir -p build/packages
mv "$work"/*.deb "$work"/*.changes "$work"/*.buildinfo build/packages
ls -l build/packages/*.deb
