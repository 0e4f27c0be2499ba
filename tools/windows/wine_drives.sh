#!/usr/bin/env bash
# Gives a Wine prefix drives that folders of this machine stand behind. Types are looked at when the
# prefix starts, so nothing may run in it; the script waits until its own commands have ended.
#
# usage: tools/windows/wine_drives.sh FOLDER [LETTER=TYPE:FOLDER]...
#        LETTER  small; TYPE  hd for a fixed drive, floppy for a removable one
set -euo pipefail

[ $# -ge 1 ] || {
    echo "usage: tools/windows/wine_drives.sh FOLDER [LETTER=TYPE:FOLDER]..." >&2
    exit 2
}
WINEPREFIX=$(cd "$1" && pwd)
shift
export WINEPREFIX WINEDEBUG=-all

for drive in "$@"; do
    letter=${drive%%=*}
    type=${drive#*=}
    folder=$(cd "${type#*:}" && pwd)
    ln -sfn "$folder" "$WINEPREFIX/dosdevices/$letter:"
    /usr/lib/wine/wine64 reg add 'HKLM\Software\Wine\Drives' /v "$letter:" /d "${type%%:*}" /f \
        >/dev/null 2>&1
done
/usr/lib/wine/wineserver -w
