#!/usr/bin/env bash
# Builds the packages of the last commit in a clean system of each Debian release, twice and in two
# folders, and uses them in another clean system: installs, upgrades, works with them, removes them.
# Uses the archive that Debian 12 makes in a system of each release that has nothing but what the
# archive asks for, and in which only the home folder can be written. Ends with 1 at the first thing
# that is wrong. Run as root, after tools/setup.sh packages.
#
# usage: tests/packages/package_test.sh [SUITE...]     bookworm and trixie without one
set -euo pipefail

source=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
. "$source/tools/packages/roots.sh"
# The window is used as that of the packages for Windows is.
. "$source/tests/windows/package/checks.sh"
. "$source/tests/windows/package/window.sh"
. "$source/tests/packages/twice.sh"
[ $# != 0 ] || set -- bookworm trixie

passed() { ok "$suite: $1 ($SECONDS s)"; }

work=$(mktemp -d)
chmod 755 "$work"
server=
# A window that is left ends with its server.
cleanUp() {
    [ -z "$server" ] || kill "$server" 2>/dev/null || true
    wait
    rm -rf "$work"
}
trap cleanUp EXIT
cd "$work"

failOutput() {
    tail -n 40 "$output" >&2
    fail "a command in $suite failed, see above"
}

# Texts of the window that its users know hold words in a spelling of their own.
readCritically() {
    lintian --allow-root --display-info --pedantic --suppress-tags spelling-error-in-binary \
        --fail-on error,warning,info,pedantic "$shared"/*.changes ||
        fail "$suite: lintian has something to say"
    passed "lintian has nothing to say"
}

# Packages of an older version, with the same files.
makeOlder() {
    local package
    mkdir -p "$shared/older"
    for package in "$shared"/*.deb; do
        dpkg-deb -R "$package" "$shared/unpacked"
        sed -i -E 's/^Version: .*/Version: 2.9.0-1/; s/\(= [^)]*\)/(= 2.9.0-1)/' \
            "$shared/unpacked/DEBIAN/control"
        dpkg-deb --root-owner-group -b "$shared/unpacked" "$shared/older" >/dev/null
        rm -rf "$shared/unpacked"
    done
}

# Sets DISPLAY, and $server to the process to end.
startServer() {
    mkfifo "$work/display"
    Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp -noreset -ac \
        3>"$work/display" 2>/dev/null &
    server=$!
    read -r DISPLAY <"$work/display"
    export DISPLAY=:$DISPLAY
}

# dumpInWindow LAYER PROGRAM [SCRIPT]: the program is started by the script, if there is one.
dumpInWindow() {
    files=/shared/
    rm -f "$shared/window.gb"
    openWindow inRoot "$1" "$base" "$shared" ${3:+"$3"} chroot --userspec=user / \
        env HOME=/home/user XDG_RUNTIME_DIR=/home/user/run \
        GBDRIVER_VIRTUAL_READER=cart=/shared/cart.gb "$2"
    press $infoButton
    expectLog 1 "RAM Size:"
    runJob $dumpButton "Read ROM to..." window.gb
    closeWindow
    same "$shared/cart.gb" "$shared/window.gb" "$suite: the window's dump"
}

usePackages() {
    makeOlder
    cp "$source/tests/packages/in_system.sh" "$shared"
    local step
    for step in install upgrade work; do
        inRoot "$work/$suite-use" "$base" "$shared" bash /shared/in_system.sh "$step" \
            >"$output" 2>&1 || failOutput
        passed "$step"
    done
    dumpInWindow "$work/$suite-use" gbdriver
    inRoot "$work/$suite-use" "$base" "$shared" bash /shared/in_system.sh remove \
        >"$output" 2>&1 || failOutput
    passed "remove"
}

# Its folder has another name than the archive's, and a blank in it.
useArchive() {
    local layer=$work/$suite-archive
    [ "$archive" -ef "$shared/${archive##*/}" ] || cp "$archive" "$shared"
    cp "$source"/tests/packages/{in_system,read_only}.sh "$shared"
    inRoot "$layer" "$base" "$shared" bash /shared/in_system.sh unpack >"$output" 2>&1 || failOutput
    passed "unpack"
    inRoot "$layer" "$base" "$shared" /shared/read_only.sh bash /shared/in_system.sh work-unpacked \
        >"$output" 2>&1 || failOutput
    passed "work unpacked, all but the home folder read-only"
    dumpInWindow "$layer" "/home/user/unpacked here/gbdriver" /shared/read_only.sh
}

startServer
archive=
for suite; do
    base=$(baseRoot "$suite")
    shared=$work/$suite/first
    output=$work/$suite.log
    buildTwice "$work/$suite" "$source/tools/packages/clean_build.sh" "$suite"
    passed "built twice"
    # Those who use the programs are not root.
    chmod 777 "$shared"
    readCritically
    usePackages
    [ "$suite" != bookworm ] || archive=$(echo "$shared"/gbdriver-*.tar.xz)
    [ -z "$archive" ] || useArchive
    mkdir -p "$source/build/packages"
    cp "$shared"/*.deb "$source/build/packages"
    [ "$suite" != bookworm ] || cp "$archive" "$source/build/packages"
    for package in "$shared"/*.deb; do
        printf '%9d bytes, %6d KiB installed  %s\n' "$(stat -c %s "$package")" \
            "$(dpkg-deb -f "$package" Installed-Size)" "${package##*/}"
    done
done
ok "everything"
