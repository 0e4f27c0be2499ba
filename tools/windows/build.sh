#!/usr/bin/env bash
# Builds the Windows programs, and before them what they need from the user's cache.
#
# usage: tools/windows/build.sh BUILD-FOLDER [CMAKE-OPTION...]
set -euo pipefail

[ $# -ge 1 ] || {
    echo "usage: tools/windows/build.sh BUILD-FOLDER [CMAKE-OPTION...]" >&2
    exit 2
}
mkdir -p "$1"
build=$(cd "$1" && pwd)
shift
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

tools/windows/prepare.sh
# Wine runs a part of the configuration already.
export WINEPREFIX=$build/prefix
tools/windows/wine_prefix.sh "$WINEPREFIX"
cmake --preset windows -B "$build" "$@" >/dev/null
cmake --build "$build"
