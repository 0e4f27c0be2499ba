#!/usr/bin/env bash
# Builds the Windows programs, packs them, and runs them and every test of theirs under Wine.
#
# usage: tools/windows/test.sh [CTEST-OPTION...]
#        with an option only the tests that it selects run, and not those of the package
#        GBDRIVER_WINDOWS_BUILD  folder to build in, otherwise build/windows
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

mkdir -p "${GBDRIVER_WINDOWS_BUILD:=build/windows}"
build=$(cd "$GBDRIVER_WINDOWS_BUILD" && pwd)
jobs=$(nproc)

tools/windows/prepare.sh
# Wine runs a part of the configuration already.
export WINEPREFIX=$build/prefix
tools/windows/wine_prefix.sh "$WINEPREFIX"
cmake --preset windows -B "$build" >/dev/null
cmake --build "$build"
tools/windows/package.sh "$build"

# These test the build on the machine that builds, or an X11 program.
hostOnly='^(game_table_script_test|install_test)$|_x11$'
run=(ctest --test-dir "$build" --output-on-failure --no-tests=error)
tools/windows/with_desktop.sh "${run[@]}" -j "$jobs" -LE drives -E "$hostOnly" "$@"
[ $# = 0 ] || exit 0

drives=$build/drives
mkdir -p "$drives"/{d,e,f,g}
echo READER >"$drives/e/.windows-label"
export WINEPREFIX=$build/prefix-drives GBDRIVER_TEST_DRIVES=Z:${drives//\//\\}
tools/windows/wine_prefix.sh "$WINEPREFIX" \
    d=hd:"$drives/d" e=floppy:"$drives/e" f=floppy:"$drives/f" g=floppy:"$drives/g"
tools/windows/with_desktop.sh "${run[@]}" -L drives

# The virtual reader on a mount is a Linux program.
cmake --preset release -B "$build/native" -DGBDRIVER_TESTS=OFF >/dev/null
cmake --build "$build/native" --target gbdriver-virtual-reader gbdriver-cli mapper_scripts
tools/windows/with_desktop.sh tests/windows/package_test.sh "$build" "$build/native"
