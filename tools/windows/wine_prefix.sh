#!/usr/bin/env bash
# Makes a fresh Wine prefix whose drives are C:, Z: (the root folder) and those named, without menus,
# mail or browser parts of the system it runs on. An existing prefix is replaced.
#
# usage: tools/windows/wine_prefix.sh FOLDER [LETTER=TYPE:FOLDER]...
#        LETTER  small; TYPE  hd for a fixed drive, floppy for a removable one
set -euo pipefail

[ $# -ge 1 ] || {
    echo "usage: tools/windows/wine_prefix.sh FOLDER [LETTER=TYPE:FOLDER]..." >&2
    exit 2
}
wine=/usr/lib/wine/wine64
server=/usr/lib/wine/wineserver
rm -rf "$1"
mkdir -p "$1"
WINEPREFIX=$(cd "$1" && pwd)
shift
export WINEPREFIX
# Neither a browser engine nor .NET is looked for, and no menu entry reaches the user's desktop.
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree=;mshtml=;winemenubuilder.exe="
"$wine" wineboot --init >/dev/null 2>&1
"$server" -w
[ -e "$WINEPREFIX/system.reg" ] || {
    echo "wine_prefix.sh: Wine made no prefix in $WINEPREFIX" >&2
    exit 1
}
# The drives of this machine, its removable ones above all, are none of a test's business.
find "$WINEPREFIX/dosdevices" -type l ! -name c: ! -name z: -delete

for drive in "$@"; do
    letter=${drive%%=*}
    type=${drive#*=}
    folder=$(cd "${type#*:}" && pwd)
    ln -sfn "$folder" "$WINEPREFIX/dosdevices/$letter:"
    "$wine" reg add 'HKLM\Software\Wine\Drives' /v "$letter:" /d "${type%%:*}" /f >/dev/null 2>&1
done
# The types are looked at when the prefix starts the next time.
"$server" -k || true
"$server" -w
