#!/usr/bin/env bash
# Builds the parts of Qt 5.15 that the program and its tests use, for 64-bit Windows with mingw-w64
# (posix threads), into a cache outside this checkout. Takes 20 to 30 minutes on two cores, once.
#
# The source is Debian's qtbase-opensource-src: upstream's archive plus those of Debian's patches
# that close security holes in code that this build contains. tools/debian_source.sh
# fetches and checks it.
#
# usage: tools/windows/qt.sh            build unless the cache has it already
#        tools/windows/qt.sh --cached   only say (exit code) whether the cache has it
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/../cached_build.sh"

suite=bookworm
version=5.15.8
# Goes up with every change below that the flags and patches do not show.
recipe=1
target=x86_64-w64-mingw32

# The library's own copies of zlib, libpng and the like: no package has them for this target. Off is
# what no window of the program needs.
flags=(-xplatform win32-g++ -device-option "CROSS_COMPILE=$target-"
    -release -opensource -confirm-license
    -nomake examples -nomake tests -nomake tools
    -no-opengl -no-icu -no-openssl -no-dbus
    -no-feature-sql -no-feature-xml -no-feature-network -no-feature-concurrent
    -no-feature-printer -no-feature-tabletevent -no-feature-vulkan -no-feature-sessionmanager
    -no-feature-direct2d
    -qt-zlib -qt-libpng -qt-libjpeg -qt-pcre -qt-freetype -qt-harfbuzz)

# Of the package's other security patches one is for Unix and the rest mend the network and database
# modules, which are not built.
patches=(CVE-2023-32763.diff CVE-2023-37369.diff CVE-2023-38197.diff CVE-2024-25580.diff)

key=$(keyOf "$recipe" "${flags[@]}" "${patches[@]}")
beginBuild "qt-$version-$key-mingw" qt-mingw "${1:-}"

revision=$("$tools/debian_source.sh" "$suite" qtbase-opensource-src "$work/source")
[[ $revision == "$version"+* ]] || fail "$suite has Qt $revision, this recipe is for $version"
for name in "${patches[@]}"; do
    patch -d "$work/source" -p1 --forward --quiet --fuzz=0 <"$work/source/debian/patches/$name" ||
        fail "$name does not apply"
done

mkdir "$work/build" "$work/path"
# The plain names of the compilers may stand for those with Windows' own threads.
for tool in gcc g++; do
    posix=$(command -v "$target-$tool-posix") || fail "$target-$tool-posix is not installed"
    ln -s "$posix" "$work/path/$target-$tool"
done

export PATH=$work/path:$PATH
cd "$work/build"
step "Configuring Qt" "$work/source/configure" -prefix "$cache/$build" "${flags[@]}"
step "Building Qt" make -j "$(nproc)"
step "Installing Qt" make install INSTALL_ROOT="$stage"

staged=$stage$cache/$build
[ -e "$staged/plugins/platforms/qwindows.dll" ] || fail "the build has no platform plugin"
# What the programs' package has to carry along.
mkdir "$staged/licences"
cp "$work/source"/LICENSE.LGPL* "$work/source/LICENSE.GPL3" "$work/source/debian/copyright" \
    "$staged/licences"
echo "qtbase-opensource-src_$revision ${patches[*]}" >"$staged/SOURCE"

publishBuild "$staged"
