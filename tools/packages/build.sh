#!/usr/bin/env bash
# Builds the Debian packages of a source tree that tools/packages/source.sh made. What building
# needs must be there, but for Squirrel.
#
# usage: tools/packages/build.sh SOURCE-FOLDER
#        The packages are put beside the folder.
set -euo pipefail

[ $# = 1 ] || {
    echo "usage: tools/packages/build.sh SOURCE-FOLDER" >&2
    exit 2
}
cd "$1"
if [ ! -e /usr/include/squirrel3/squirrel.h ]; then
    tools/squirrel.sh
    SQUIRREL_ROOT=${XDG_CACHE_HOME:-$HOME/.cache}/gbdriver/squirrel-$(g++ -print-multiarch)
    export SQUIRREL_ROOT
fi
# There are no symbols to make packages of.
DEB_BUILD_OPTIONS="${DEB_BUILD_OPTIONS:+$DEB_BUILD_OPTIONS }noautodbgsym" dpkg-buildpackage -b -us -uc
