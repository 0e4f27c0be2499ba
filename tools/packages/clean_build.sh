#!/usr/bin/env bash
# Makes the Debian packages of the last commit in a clean system of a Debian release, and on Debian
# 12 the archive as well. Run as root, after tools/setup.sh packages.
#
# usage: tools/packages/clean_build.sh SUITE SOURCE-FOLDER
#        SUITE          bookworm, trixie
#        SOURCE-FOLDER  is made; the packages are put beside it
set -euo pipefail

[ $# = 2 ] || {
    echo "usage: tools/packages/clean_build.sh SUITE SOURCE-FOLDER" >&2
    exit 2
}
packages=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$packages/roots.sh"
suite=$1
name=$(basename "$2")
mkdir -p "$(dirname "$2")"
shared=$(cd "$(dirname "$2")" && pwd)
base=$(baseRoot "$suite")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The release's number, for the version of its packages.
number=$(. "$base/etc/os-release" && echo "$VERSION_ID")
"$packages/source.sh" "$shared/$name" "$number"

# inSystem LAYER LOWER COMMAND...: shows the end of what the command says if it fails.
inSystem() {
    local layer=$1 lower=$2
    shift 2
    inRoot "$layer" "$lower" "$shared" "$@" >"$work/output" 2>&1 || {
        tail -n 40 "$work/output" >&2
        fail "a command in $suite failed, see above"
    }
}

# A layer with what building needs. It is made again when the package's list changes.
wanted=$(sed -n '/^Build-Depends/,/^[^ ]/p' "$shared/$name/debian/control" | sha256sum | cut -c1-12)
needed=$cache/build-$suite-$wanted
if [ ! -d "$needed" ]; then
    rm -rf "$needed.part"
    # shellcheck disable=SC2016
    inSystem "$needed.part" "$base" sh -ec '
        apt-get -qq update
        apt-get -qq -y --no-install-recommends install build-essential patchelf
        apt-get -qq -y --no-install-recommends build-dep "$1"' sh "/shared/$name"
    mv "$needed.part" "$needed"
fi

inSystem "$work/layer" "$needed/files:$base" nice "/shared/$name/tools/packages/build.sh" "/shared/$name"
[ "$suite" != bookworm ] ||
    inSystem "$work/layer" "$needed/files:$base" "/shared/$name/tools/packages/archive.sh" "/shared/$name"
