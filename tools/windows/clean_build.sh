#!/usr/bin/env bash
# Makes the Windows packages of the last commit from a copy of it, with nothing of the caller's
# environment. What is needed must be there (tools/setup.sh windows).
#
# usage: tools/windows/clean_build.sh SOURCE-FOLDER
#        SOURCE-FOLDER  is made; the packages are put beside it
set -euo pipefail

[ $# = 1 ] || {
    echo "usage: tools/windows/clean_build.sh SOURCE-FOLDER" >&2
    exit 2
}
mkdir -p "$1"
source=$(cd "$1" && pwd)
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
git archive HEAD | tar -x -C "$source"
time=$(git log -1 --format=%ct)
cd "$source"

# clean COMMAND...: all that is dated takes the time of the commit.
clean() {
    env -i PATH=/usr/local/bin:/usr/bin:/bin HOME="$HOME" LC_ALL=C.UTF-8 SOURCE_DATE_EPOCH="$time" \
        ${XDG_CACHE_HOME:+XDG_CACHE_HOME="$XDG_CACHE_HOME"} "$@"
}
log=$source/build.log
if ! { clean nice tools/windows/build.sh build/windows -DGBDRIVER_TESTS=OFF &&
    clean tools/windows/package.sh build/windows; } >"$log" 2>&1; then
    tail -n 40 "$log" >&2
    echo "clean_build.sh: the build for Windows failed, see above" >&2
    exit 1
fi
mv build/windows/package/gbdriver-* ..
