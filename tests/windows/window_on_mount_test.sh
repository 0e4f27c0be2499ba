#!/usr/bin/env bash
# Runs the tests that drive the window on a mounted reader with gbdriver.exe under Wine in the place of
# the Linux program. Needs no X server: each window has its own.
#
# usage: tests/windows/window_on_mount_test.sh WINDOWS-BUILD LINUX-BUILD
set -euo pipefail

source=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
windows=$(cd "$1" && pwd)
native=$(cd "$2" && pwd)

export WINEPREFIX=$windows/window-prefix
trap '/usr/lib/wine/wineserver -k || true' EXIT
mkdir -p "$windows/no-reader"
"$source/tools/windows/wine_prefix.sh" "$WINEPREFIX" "e=floppy:$windows/no-reader"
# For its settings of a desktop without a window manager.
"$source/tools/windows/with_desktop.sh" true
export GBDRIVER_WINDOW_UNDER_WINE=$windows/bin/gbdriver.exe
ctest --test-dir "$native" --output-on-failure --no-tests=error -R '^window_judgement_on_mount_test$'
