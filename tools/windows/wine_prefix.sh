#!/usr/bin/env bash
# Makes a fresh Wine prefix whose drives are C:, Z: (the root folder) and those named, without
# menus, mail or browser parts of the system it runs on. An existing prefix is replaced.
#
# usage: tools/windows/wine_prefix.sh FOLDER [LETTER=TYPE:FOLDER]...
#        LETTER and TYPE as for tools/windows/wine_drives.sh
set -euo pipefail

[ $# -ge 1 ] || {
    echo "usage: tools/windows/wine_prefix.sh FOLDER [LETTER=TYPE:FOLDER]..." >&2
    exit 2
}
tools=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
rm -rf "$1"
mkdir -p "$1"
WINEPREFIX=$(cd "$1" && pwd)
shift
export WINEPREFIX
# Neither a browser engine nor .NET is looked for, and no menu entry reaches the user's desktop.
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree=;mshtml=;winemenubuilder.exe="
/usr/lib/wine/wine64 wineboot --init >/dev/null 2>&1
# Not ended by force: a service that is just starting would wait for its server for ever.
/usr/lib/wine/wineserver -w
[ -e "$WINEPREFIX/system.reg" ] || {
    echo "wine_prefix.sh: Wine made no prefix in $WINEPREFIX" >&2
    exit 1
}
# The drives of this machine, its removable ones above all, are none of a test's business.
find "$WINEPREFIX/dosdevices" -type l ! -name c: ! -name z: -delete
"$tools/wine_drives.sh" "$WINEPREFIX" "$@"
