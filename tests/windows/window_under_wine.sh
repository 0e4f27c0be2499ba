#!/usr/bin/env bash
# Runs gbdriver.exe under Wine in the place of the Linux program, for tests/e2e/driven_window.cpp: with
# the folder that a test declares in GBDRIVER_DRIVES as drive E:, and with its backups below
# XDG_DATA_HOME.
#
# usage: tests/windows/window_under_wine.sh GBDRIVER.EXE
#        WINEPREFIX  the prefix to use; its drive E: is a removable one
set -euo pipefail

: "${WINEPREFIX:?}" "${GBDRIVER_DRIVES:?}" "${XDG_DATA_HOME:?}"
declared=${GBDRIVER_DRIVES#E=}

# The services keep to the display that they were started on, and each window has its own.
/usr/lib/wine/wineserver -k || true
/usr/lib/wine/wineserver -w
ln -sfn "${declared%:*}" "$WINEPREFIX/dosdevices/e:"
mkdir -p "$XDG_DATA_HOME/gbdriver"
for data in "$WINEPREFIX"/drive_c/users/*/AppData/Local; do
    rm -rf "$data/gbdriver"
    ln -s "$XDG_DATA_HOME/gbdriver" "$data/gbdriver"
done
unset GBDRIVER_DRIVES QT_QPA_PLATFORM
exec "$(dirname "$0")/../../tools/windows/wine.sh" "$1"
