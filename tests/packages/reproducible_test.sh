#!/usr/bin/env bash
# Builds what people are given of the last commit twice, and compares it byte for byte. Run as root,
# after tools/setup.sh packages and tools/setup.sh windows.
#
# usage: tests/packages/reproducible_test.sh [bookworm|trixie|windows]...     all without one
set -euo pipefail

source=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
. "$source/tests/windows/package/checks.sh"
. "$source/tests/packages/twice.sh"
[ $# != 0 ] || set -- bookworm trixie windows
for part; do
    case $part in
    bookworm | trixie | windows) ;;
    *)
        echo "usage: tests/packages/reproducible_test.sh [bookworm|trixie|windows]..." >&2
        exit 2
        ;;
    esac
done

work=$(mktemp -d)
chmod 755 "$work"
trap 'rm -rf "$work"' EXIT
for part; do
    started=$SECONDS
    if [ "$part" = windows ]; then
        buildTwice "$work/$part" "$source/tools/windows/clean_build.sh"
    else
        buildTwice "$work/$part" "$source/tools/packages/clean_build.sh" "$part"
    fi
    sumsOfFiles "$work/$part/first"
    ok "$part ($((SECONDS - started)) s)"
done
