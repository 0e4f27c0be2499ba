#!/usr/bin/env bash
# Runs a command on an X server of its own and ends with its exit code.
#
# usage: tools/windows/with_desktop.sh COMMAND [ARGUMENT...]
set -euo pipefail

numbers=$(mktemp -u)
mkfifo "$numbers"
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$numbers" 2>/dev/null &
server=$!
trap 'kill "$server" 2>/dev/null || true; rm -f "$numbers"' EXIT
read -r -t 30 number <"$numbers" || {
    echo "with_desktop.sh: Xvfb does not start; tools/setup.sh windows installs it" >&2
    exit 1
}
DISPLAY=:$number "$@"
