#!/usr/bin/env bash
# Builds OpenSSL's libcrypto as a static library for 64-bit Windows into a cache outside this
# checkout. Only tests use it, as the oracle of the payload cipher; no package of the program holds
# it. The source is Debian's, fetched and checked by tools/windows/debian-source.sh.
#
# usage: tools/windows/openssl.sh            build unless the cache has it already
#        tools/windows/openssl.sh --cached   only say (exit code) whether the cache has it
set -euo pipefail

tools=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

suite=bookworm
major=3.0
# Goes up with every change below that the flags do not show.
recipe=1
target=x86_64-w64-mingw32

# The tests' cipher is one of those that the library counts as legacy: built in, not a module.
flags=(mingw64 no-shared no-module no-asm no-tests no-threads no-sock no-engine no-zlib)

cache=${XDG_CACHE_HOME:-${HOME:?HOME is not set}/.cache}/gbdriver
key=$(printf '%s\n' "$recipe" "${flags[@]}" | sha256sum | cut -c1-12)
build=openssl-$major-$key-mingw
# cmake/mingw-w64.cmake looks here; it stays the same when the build's own name changes.
link=$cache/openssl-mingw

fail() {
    echo "openssl.sh: $*" >&2
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
stage=$(mktemp -d "$cache/.openssl.XXXXXX")
trap 'rm -rf "$work" "$stage"' EXIT
mkdir "$work/source"

revision=$("$tools/debian-source.sh" "$suite" openssl "$work/source")
[[ $revision == "$major".* ]] || fail "$suite has OpenSSL $revision, this recipe is for $major"

# step WHAT COMMAND...: runs a command with its output in a log, shown where it fails.
step() {
    local what=$1
    shift
    (cd "$work/source" && "$@") >"$work/log" 2>&1 </dev/null || {
        tail -n 60 "$work/log" >&2
        fail "$what failed"
    }
}
step "Configuring OpenSSL" env CC="$target-gcc-posix" AR="$target-ar" RANLIB="$target-ranlib" \
    RC="$target-windres" ./Configure "${flags[@]}"
step "Building OpenSSL" make -j "$(nproc)" build_generated libcrypto.a

chmod 755 "$stage"
mkdir "$stage/include" "$stage/lib"
cp -r "$work/source/include/openssl" "$stage/include"
cp "$work/source/libcrypto.a" "$stage/lib"
echo "openssl_$revision" >"$stage/SOURCE"

# Another run may have finished meanwhile; its build is as good as this one.
mv -T "$stage" "$cache/$build" 2>/dev/null || [ -d "$cache/$build" ] ||
    fail "cannot write $cache/$build"
ln -sfn "$build" "$link"
