#!/usr/bin/env bash
# Makes everything that people are given of a release, from a checkout of its tag: the Debian
# packages, the archive for Linux, the Windows packages, and SHA256SUMS over them. Run as root, on
# Debian 12.
#
# usage: tools/release.sh TAG
#        TAG  v and the version of CMakeLists.txt; the files are put into build/releases/TAG
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

[ $# = 1 ] || {
    echo "usage: tools/release.sh TAG" >&2
    exit 2
}
tag=$1
releases=$PWD/build/releases

fail() {
    echo "release.sh: $*" >&2
    exit 1
}
say() { echo "$tag, $SECONDS s: $*"; }

git rev-parse -q --verify "refs/tags/$tag^{commit}" >/dev/null || fail "there is no tag $tag"
version=$(git show "refs/tags/$tag:CMakeLists.txt" |
    sed -n 's/^project(gbdriver VERSION \([0-9.]*\) .*/\1/p')
[ "$tag" = "v$version" ] || fail "the version at the tag $tag is $version, its tag would be v$version"
[ ! -e "$releases/$tag" ] || fail "$releases/$tag is there already"

mkdir -p "$releases"
work=$(mktemp -d)
# Beside its place, so that it gets there in one step, and whole.
made=$(mktemp -d "$releases/.$tag.XXXXXX")
trap 'rm -rf "$work" "$made"' EXIT
# Builders in other systems are not the owner.
chmod 755 "$work" "$made"

say "checking out $(git rev-parse --short=12 "refs/tags/$tag^{commit}")"
{ git clone -q --no-checkout . "$work/checkout" &&
    git -C "$work/checkout" checkout -q --detach "refs/tags/$tag"; } || fail "the tag cannot be checked out"
tools=$work/checkout/tools
for kind in packages windows; do
    say "installing what is missing to build ($kind)"
    "$tools/setup.sh" "$kind" || fail "what building needs cannot be installed"
done
for suite in bookworm trixie; do
    say "building for Debian $suite"
    "$tools/packages/clean_build.sh" "$suite" "$work/$suite/source" ||
        fail "the packages for Debian $suite were not built"
done
say "building for Windows"
"$tools/windows/clean_build.sh" "$work/windows/source" || fail "the Windows packages were not built"

mv "$work"/bookworm/*.deb "$work"/trixie/*.deb "$work"/bookworm/gbdriver-*.tar.xz \
    "$work"/windows/gbdriver-*.zip "$work"/windows/gbdriver-*.exe "$made"
cd "$made"
export LC_ALL=C
sha256sum gbdriver* >SHA256SUMS
sha256sum --quiet -c SHA256SUMS
mv -T "$made" "$releases/$tag"
say "made $releases/$tag"
cat "$releases/$tag/SHA256SUMS"
