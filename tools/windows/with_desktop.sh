#!/usr/bin/env bash
# Runs a command with an X server of its own and with Wine started in the prefix WINEPREFIX, if
# there is one; ends both, and with the command's exit code.
#
# usage: tools/windows/with_desktop.sh COMMAND [ARGUMENT...]
set -euo pipefail

numbers=$(mktemp -u)
mkfifo "$numbers"
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp -noreset 3>"$numbers" 2>/dev/null &
server=$!
cleanUp() {
    [ -z "${WINEPREFIX:-}" ] || /usr/lib/wine/wineserver -k || true
    kill "$server" 2>/dev/null || true
    rm -f "$numbers"
}
trap cleanUp EXIT
read -r -t 30 number <"$numbers" || {
    echo "with_desktop.sh: Xvfb does not start; tools/setup.sh windows installs it" >&2
    exit 1
}
export DISPLAY=:$number

# The first program would start Wine's services, which keep its output open after it has ended.
if [ -e "${WINEPREFIX:-}/system.reg" ]; then
    wine() { WINEDEBUG=-all /usr/lib/wine/wine64 "$@" </dev/null >/dev/null 2>&1; }
    /usr/lib/wine/wineserver -p
    wine wineboot
    # There is no window manager, for which Wine would wait seconds whenever a window closes.
    wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f
fi
"$@"
