#!/usr/bin/env bash
# Builds Squirrel 3.1 as static libraries into a cache outside this checkout, for systems whose
# distribution has no libsquirrel-dev.
#
# The source is a Debian source package: upstream's 3.1 archive plus Debian's patches, two of which
# close security holes that upstream mended only after 3.1. tools/debian_source.sh fetches and
# checks it.
#
# usage: tools/squirrel.sh            build unless the cache has it already
#        tools/squirrel.sh --cached   only say (exit code) whether the cache has it
#
# CXX and AR choose the compiler; each target architecture has a build of its own.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/cached_build.sh"

# Debian 12 has no squirrel3; the release after it has.
suite=trixie
version=3.1
# Goes up with every change of the flags or the layout below; an older build is then left alone and
# not used any more.
recipe=1

cxx=${CXX:-g++}
# Debian's own compilers name their architecture like its library folders, others have no such name.
arch=$("$cxx" -print-multiarch)
arch=${arch:-$("$cxx" -dumpmachine)}
beginBuild "squirrel-$version-$suite-r$recipe-$arch" "squirrel-$arch" "${1:-}"

revision=$("$tools/debian_source.sh" "$suite" squirrel3 "$work/source")
[[ $revision == "$version"-* ]] || fail "$suite has Squirrel $revision, this recipe is for $version"
cd "$work/source"
while read -r name _; do
    case $name in '' | '#'*) continue ;; esac
    patch -p1 --forward --quiet --fuzz=0 <"debian/patches/$name" || fail "$name does not apply"
done <debian/patches/series

# As upstream's own build files have it: integers are as wide as a pointer.
flags=(-O2 -fPIC -fno-exceptions -fno-rtti -fno-strict-aliasing -Iinclude)
[ "$(echo __SIZEOF_POINTER__ | "$cxx" -E -P -)" != 8 ] || flags+=(-D_SQ64)
printf '%s\n' squirrel/*.cpp sqstdlib/*.cpp |
    xargs -P "$(nproc)" -I{} "$cxx" "${flags[@]}" -c {} -o {}.o

mkdir "$stage/include" "$stage/lib"
cp include/*.h "$stage/include"
"${AR:-ar}" rcs "$stage/lib/libsquirrel.a" squirrel/*.o
"${AR:-ar}" rcs "$stage/lib/libsqstdlib.a" sqstdlib/*.o
cp COPYRIGHT "$stage/COPYRIGHT"
# Which package revision this is, for whoever asks later.
echo "squirrel3_$revision" >"$stage/SOURCE"
publishBuild "$stage"
