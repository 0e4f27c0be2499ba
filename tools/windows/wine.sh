#!/usr/bin/env bash
# Runs a Windows program under Wine with the libraries that it was built with, from where they were
# built: for test programs, which no package holds.
#
# usage: tools/windows/wine.sh PROGRAM [ARGUMENT...]
#        WINEPREFIX  the prefix to use; made by tools/windows/wine_prefix.sh
set -euo pipefail

: "${WINEPREFIX:?names the Wine prefix; tools/windows/wine_prefix.sh makes one}"
target=x86_64-w64-mingw32
cache=${XDG_CACHE_HOME:-${HOME:?HOME is not set}/.cache}/gbdriver

# Wine wants its own form of paths, separated by semicolons; drive Z: is the root folder.
search=
for library in libstdc++-6.dll libwinpthread-1.dll; do
    found=$("$target-g++-posix" -print-file-name="$library")
    folder=$(cd "$(dirname "$found")" && pwd)
    search+="Z:${folder//\//\\};"
done
qt=$(readlink -f "$cache/qt-mingw")/bin
export WINEPATH="${search}Z:${qt//\//\\}"
export WINEDEBUG=${WINEDEBUG:--all}
# Without a console Qt would log to the system's debugger. Wine keeps variables of Qt from programs
# unless they are marked as meant for them.
export QT_FORCE_STDERR_LOGGING=1
for name in "${!QT_@}"; do
    export "WINE$name=${!name}"
done
exec /usr/lib/wine/wine64 "$@"
