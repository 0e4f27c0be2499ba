#!/usr/bin/env bash
# Builds Squirrel 3.1 as static libraries into a cache outside this checkout, for systems whose
# distribution has no libsquirrel-dev.
#
# The source is a Debian source package: upstream's 3.1 archive plus Debian's patches, two of which
# close security holes that upstream mended only after 3.1. apt fetches everything from the mirror
# that this machine already uses: it checks the index's signature and the archives' SHA-256.
#
# usage: tools/squirrel.sh            build unless the cache has it already
#        tools/squirrel.sh --cached   only say (exit code) whether the cache has it
#
# CXX and AR choose the compiler; each target architecture has a build of its own.
set -euo pipefail

# Debian 12 has no squirrel3; the release after it has.
suite=trixie
version=3.1
# Goes up with every change of the flags or the layout below; an older build is then left alone and
# not used any more.
recipe=1

keyring=/usr/share/keyrings/debian-archive-keyring.gpg
cxx=${CXX:-g++}
# Debian's own compilers name their architecture like its library folders, others have no such name.
arch=$("$cxx" -print-multiarch)
arch=${arch:-$("$cxx" -dumpmachine)}
cache=${XDG_CACHE_HOME:-${HOME:?HOME is not set}/.cache}/gbdriver
build=squirrel-$version-$suite-r$recipe-$arch
# FindSquirrel.cmake looks here; it stays the same when the build's own name changes.
link=$cache/squirrel-$arch

fail() {
    echo "squirrel.sh: $*" >&2
    exit 1
}

# The directory appears under its name only when it is whole, so its presence is the stamp.
if [ -d "$cache/$build" ]; then
    [ "$(readlink "$link" || true)" = "$build" ] || ln -sfn "$build" "$link"
    exit 0
fi
[ "${1:-}" != --cached ] || exit 1

mkdir -p "$cache"
work=$(mktemp -d)
stage=$(mktemp -d "$cache/.squirrel.XXXXXX")
trap 'rm -rf "$work" "$stage"' EXIT
# As root, apt downloads as the user _apt, who must get through to the download folder.
chmod 755 "$work"
mkdir -p "$work/lists/partial" "$work/cache/archives/partial" "$work/download" "$work/source"
[ "$(id -u)" != 0 ] || chown _apt "$work/download" 2>/dev/null || chmod 777 "$work/download"

# The addresses of plain releases (no -updates, no -security) among the machine's sources. Which of
# them is a Debian mirror shows when it is asked for the suite.
mapfile -t mirrors < <(apt-get --print-uris update |
    sed -nE "s,^'(https?://.*/)dists/[a-z]+/(In)?Release' .*,\1,p" | sort -u)
[ ${#mirrors[@]} != 0 ] || fail "apt has no Debian mirror configured"

signedBy=
[ ! -r "$keyring" ] || signedBy="[signed-by=$keyring]"
apt=(-qq -o "Dir::Etc::SourceList=$work/sources.list" -o Dir::Etc::SourceParts=-
    -o "Dir::State::Lists=$work/lists" -o "Dir::Cache=$work/cache")
# Without the error mode a failed download would count as a warning.
readIndex() {
    echo "deb-src $signedBy $1 $suite main" >"$work/sources.list"
    apt-get update "${apt[@]}" -o APT::Update::Error-Mode=any </dev/null
}
served=
for mirror in "${mirrors[@]}"; do
    if readIndex "$mirror" 2>>"$work/complaints"; then
        served=yes
        break
    fi
done
[ -n "$served" ] || {
    cat "$work/complaints" >&2
    fail "cannot read the package index of $suite from any configured mirror"
}

# fetch PATTERN NAME: downloads the one file of the source package whose name matches.
files=$(apt-get --print-uris source "${apt[@]}" squirrel3)
fetch() {
    local line uri hash
    line=$(grep -E "^'[^']*' squirrel3_$1 " <<<"$files") || fail "$suite lists no squirrel3_$1"
    uri=$(cut -d"'" -f2 <<<"$line")
    hash=${line##* }
    [[ $hash == SHA256:* ]] || fail "$suite gives no SHA-256 for squirrel3_$1"
    (cd "$work/download" && /usr/lib/apt/apt-helper download-file "$uri" "$2" "$hash" >/dev/null) ||
        fail "cannot download squirrel3_$1"
}
fetch "$version\.orig\.tar\.[a-z0-9]+" upstream
fetch "$version-[^ ]*\.debian\.tar\.[a-z0-9]+" debian

tar -xf "$work/download/upstream" -C "$work/source" --strip-components=1
tar -xf "$work/download/debian" -C "$work/source"
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

# mktemp made the directory private; the build may serve other users of this machine.
chmod 755 "$stage"
mkdir "$stage/include" "$stage/lib"
cp include/*.h "$stage/include"
"${AR:-ar}" rcs "$stage/lib/libsquirrel.a" squirrel/*.o
"${AR:-ar}" rcs "$stage/lib/libsqstdlib.a" sqstdlib/*.o
cp COPYRIGHT "$stage/COPYRIGHT"
# Which package revision this is, for whoever asks later.
sed -nE "s,.* (squirrel3_[^ ]*)\.debian\.tar.*,\1,p" <<<"$files" >"$stage/SOURCE"

# Another run may have finished meanwhile; its build is as good as this one.
mv -T "$stage" "$cache/$build" 2>/dev/null || [ -d "$cache/$build" ] ||
    fail "cannot write $cache/$build"
ln -sfn "$build" "$link"
