#!/usr/bin/env bash
# Makes everything that the build for Windows takes from the user's cache, as far as it is not
# there. The first time takes 20 to 30 minutes on two cores.
#
# usage: tools/windows/prepare.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

CXX=x86_64-w64-mingw32-g++-posix AR=x86_64-w64-mingw32-ar ../squirrel.sh
./openssl.sh
./qt.sh
