#!/usr/bin/env bash
# Prints the addresses of plain releases (no -updates, no -security) among the sources of this
# machine's apt, one a line. Which of them is a Debian mirror shows when it is asked for a suite.
#
# usage: tools/debian_mirrors.sh
set -euo pipefail
apt-get --print-uris update |
    sed -nE "s,^'(https?://.*/)dists/[a-z]+/(In)?Release' .*,\1,p" | sort -u
