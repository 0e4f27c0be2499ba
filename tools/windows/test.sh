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

tools/windows/build.sh "$build" -DGBDRIVER_TESTS=ON
export WINEPREFIX=$build/prefix

# selects CTEST-OPTION...: whether these select any test.
selects() {
    ctest --test-dir "$build" -N "$@" | grep -q '^Total Tests: [1-9]'
}
selects "$@" || {
    echo "test.sh: no test is selected by: $*" >&2
    exit 1
}
# Programs under Wine spend half their time waiting for each other.
run=(tools/windows/with_desktop.sh ctest --test-dir "$build" --output-on-failure
    -j $(($(nproc) * 2)))
if selects -LE drives "$@"; then
    "${run[@]}" -LE drives "$@"
fi
if selects -L drives "$@"; then
    drives=$build/drives
    mkdir -p "$drives"/{d,e,f,g,h}
    echo READER >"$drives/e/.windows-label"
    # A file that the kernel lets nobody write, the superuser neither.
    ln -sfn /proc/sys/kernel/ostype "$drives/h/CMD.CMD"
    tools/windows/wine_drives.sh "$WINEPREFIX" d=hd:"$drives/d" e=floppy:"$drives/e" \
        f=floppy:"$drives/f" g=floppy:"$drives/g" h=floppy:"$drives/h"
    GBDRIVER_TEST_DRIVES=Z:${drives//\//\\} "${run[@]}" -L drives "$@"
fi
[ $# = 0 ] || exit 0

# The virtual reader on a mount is a Linux program, and so are the tests that drive a window on it.
cmake --preset release -B "$build/native" -DGBDRIVER_TESTS=ON >/dev/null
cmake --build "$build/native" --target gbdriver-virtual-reader gbdriver-cli mapper_scripts e2e_tests
tests/windows/window_on_mount_test.sh "$build" "$build/native"
tools/windows/package.sh "$build"
tools/windows/with_desktop.sh tests/windows/package_test.sh "$build" "$build/native"
