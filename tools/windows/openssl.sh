#!/usr/bin/env bash
# Builds OpenSSL's libcrypto as a static library for 64-bit Windows into a cache outside this
# checkout. Only tests use it, as the oracle of the payload cipher; no package of the program holds
# it. The source is Debian's, fetched and checked by tools/debian_source.sh.
#
# usage: tools/windows/openssl.sh            build unless the cache has it already
#        tools/windows/openssl.sh --cached   only say (exit code) whether the cache has it
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/../cached_build.sh"

suite=bookworm
major=3.0
# Goes up with every change below that the flags do not show.
recipe=1
target=x86_64-w64-mingw32

# The tests' cipher is one of those that the library counts as legacy: built in, not a module.
flags=(mingw64 no-shared no-module no-asm no-tests no-threads no-sock no-engine no-zlib)

key=$(keyOf "$recipe" "${flags[@]}")
beginBuild "openssl-$major-$key-mingw" openssl-mingw "${1:-}"

revision=$("$tools/debian_source.sh" "$suite" openssl "$work/source")
[[ $revision == "$major".* ]] || fail "$suite has OpenSSL $revision, this recipe is for $major"

cd "$work/source"
step "Configuring OpenSSL" env CC="$target-gcc-posix" AR="$target-ar" RANLIB="$target-ranlib" \
    RC="$target-windres" ./Configure "${flags[@]}"
step "Building OpenSSL" make -j "$(nproc)" build_generated libcrypto.a

mkdir "$stage/include" "$stage/lib"
cp -r include/openssl "$stage/include"
cp libcrypto.a "$stage/lib"
echo "openssl_$revision" >"$stage/SOURCE"
publishBuild "$stage"
