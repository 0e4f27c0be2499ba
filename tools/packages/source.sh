#!/usr/bin/env bash
# Makes the source tree that Debian packages are built from: what the last commit holds, and
# packaging/debian made whole in debian/.
#
# usage: tools/packages/source.sh FOLDER SUITE-NUMBER
#        FOLDER        is made
#        SUITE-NUMBER  of the Debian release that the packages are for: 12, 13. A package of a later
#                      release replaces that of an earlier one.
set -euo pipefail

[ $# = 2 ] || {
    echo "usage: tools/packages/source.sh FOLDER SUITE-NUMBER" >&2
    exit 2
}
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
folder=$1
suite=$2

mkdir -p "$folder"
git archive HEAD | tar -x -C "$folder"
cd "$folder"
cp -r packaging/debian debian
rm debian/*.in

version=$(sed -n 's/^project(gbdriver VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)
maintainer=$(sed -n 's/^Maintainer: //p' debian/control)
sed -e "s/@VERSION@/$version-1~deb$suite/" -e "s/@SUITE@/UNRELEASED/" \
    -e "s/@COMMIT@/$(git -C "$OLDPWD" rev-parse --short=12 HEAD)/" -e "s/@MAINTAINER@/$maintainer/" \
    -e "s/@DATE@/$(git -C "$OLDPWD" log -1 --format=%cD)/" packaging/debian/changelog.in >debian/changelog

# addLanguage FILE CODE LANGUAGE OTHER-CODE: a package for a translation that is there.
addLanguage() {
    [ -e "translations/$1.ts" ] || return 0
    sed -e "s/@CODE@/$2/" -e "s/@LANGUAGE@/$3/" -e "s/@OTHER@/$4/" \
        packaging/debian/control.l10n.in >>debian/control
}
addLanguage gb3_chs zh Chinese ja
addLanguage gb3_jpn ja Japanese zh
