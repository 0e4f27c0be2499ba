#!/usr/bin/env bash
# Installs what this machine lacks of what is needed to build (run), to build and test (test), to do
# both with Qt 6 (qt6), to build and test the Windows programs (windows), or to pack for Linux
# (packages).
# Does nothing, quickly, where nothing is missing; never asks a question.
#
# usage: tools/setup.sh run|test|qt6|windows|packages
set -euo pipefail

tools=$(dirname "${BASH_SOURCE[0]}")

# librsvg2-bin draws the icon; xz-utils and patch unpack and mend the Squirrel source.
forRun=(cmake ninja-build g++ pkg-config qtbase5-dev qttools5-dev-tools libmount-dev libfuse3-dev
    fuse3 librsvg2-bin patch xz-utils)
# An X server with a client to type into it and fonts to draw; a desktop session that ends; the bus
# that screen readers use; oracles for cipher, checksums and mappers; a compiler that checks the
# Windows part; one that fuzzes; the shells whose completion is tested, a strict reader of manual
# pages, what validates JSON, desktop entries and AppStream, what records system calls, and what a
# release comes from.
forTest=(xvfb xdotool x11-utils fonts-dejavu-core fonts-wqy-microhei libsm-dev dbus-daemon
    at-spi2-core libssl-dev zlib1g-dev libmgba-dev g++-mingw-w64-x86-64-posix clang libclang-rt-dev
    zsh fish mandoc python3-jsonschema strace desktop-file-utils appstream git)
# The compilers for Windows; perl and python3 build Qt and OpenSSL; Wine runs the result with fonts
# like those of Windows, xclip and icoutils look at it; the rest packs.
forWindows=(g++-mingw-w64-x86-64-posix gcc-mingw-w64-x86-64-posix libz-mingw-w64-dev make perl python3
    wine wine64 fonts-wine xclip icoutils nsis imagemagick zip unzip)
# What builds Debian packages and reads them critically; clean systems to try them in, with an X
# server and a client that types into it.
forPackages=(debhelper dpkg-dev git lintian mmdebstrap xvfb xdotool xclip imagemagick)
forQt6=(qt6-base-dev qt6-5compat-dev qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools)

case ${1:-} in
run) wanted=("${forRun[@]}") ;;
test) wanted=("${forRun[@]}" "${forTest[@]}") ;;
windows) wanted=("${forRun[@]}" "${forTest[@]}" "${forWindows[@]}") ;;
qt6) wanted=("${forRun[@]}" "${forTest[@]}" "${forQt6[@]}") ;;
packages) wanted=("${forRun[@]}" "${forPackages[@]}") ;;
*)
    echo "usage: tools/setup.sh run|test|qt6|windows|packages" >&2
    exit 2
    ;;
esac

if ! command -v apt-get >/dev/null; then
    cat <<'END'
There is no apt-get here to install what is missing. These packages are needed:
  Fedora  cmake ninja-build gcc-c++ pkgconf qt5-qtbase-devel qt5-linguist libmount-devel
          fuse3-devel fuse3 librsvg2-tools squirrel-devel; to test: xorg-x11-server-Xvfb xdotool
          xwininfo dejavu-sans-fonts wqy-microhei-fonts libSM-devel dbus-daemon at-spi2-core
          openssl-devel zlib-devel mgba-devel mingw64-gcc-c++ clang compiler-rt zsh fish mandoc
          python3-jsonschema strace desktop-file-utils appstream git
  Arch    cmake ninja gcc pkgconf qt5-base qt5-tools util-linux-libs fuse3 librsvg squirrel;
          to test: xorg-server-xvfb xdotool xorg-xwininfo ttf-dejavu wqy-microhei libsm dbus
          at-spi2-core openssl zlib libmgba mingw-w64-gcc clang compiler-rt zsh fish mandoc
          python-jsonschema strace desktop-file-utils appstream git
  MSYS2   mingw-w64-x86_64-{cmake,ninja,gcc,pkgconf,qt5-base,qt5-tools,librsvg,squirrel}
Going on with what is there; the configuration names what it does not find.
END
    exit 0
fi

# Prints those of the given packages that are not installed.
missingOf() {
    local have
    have=$(dpkg-query -W -f '${Package} ${db:Status-Status}\n' "$@" 2>/dev/null |
        sed -n 's/ installed$//p') || true
    grep -vxF -e "$have" < <(printf '%s\n' "$@") || true
}

# Prints how many of the given packages apt could install.
availableOf() {
    LC_ALL=C apt-cache policy "$@" 2>/dev/null | grep -c 'Candidate: [^(]' || true
}

# Runs a command as root, with no input. On a terminal sudo may want the user's password; where
# nobody can type one it is not tried.
asRoot() {
    if [ "$(id -u)" = 0 ]; then
        "$@" </dev/null
    elif command -v sudo >/dev/null && { [ -t 0 ] || sudo -n true 2>/dev/null; }; then
        sudo "$@" </dev/null
    else
        return 1
    fi
}

aptGet() {
    asRoot env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=300 "$@"
}

installPackages() {
    [ "$(availableOf "$@")" = $# ] || aptGet update || true
    # The index may be older than the mirror, which then no longer has the versions it names.
    aptGet install -y --no-install-recommends "$@" >/dev/null ||
        { aptGet update && aptGet install -y --no-install-recommends "$@" >/dev/null; } ||
        {
            echo "Could not install the packages. As root, run:" >&2
            echo "  apt-get update && apt-get install $*" >&2
            exit 1
        }
}

mapfile -t missing < <(missingOf "${wanted[@]}")
squirrel=
if [ -n "$(missingOf libsquirrel-dev)" ] && ! "$tools/squirrel.sh" --cached 2>/dev/null; then
    squirrel="Squirrel 3.1"
fi
[ ${#missing[@]} != 0 ] || [ -n "$squirrel" ] || exit 0

echo "Installing:" "${missing[@]}" ${squirrel:+"$squirrel"}
[ ${#missing[@]} = 0 ] || installPackages "${missing[@]}"
if [ -n "$squirrel" ]; then
    # With an empty package index nothing can be known about the distribution's own package.
    [ "$(availableOf libsquirrel-dev)" = 1 ] || aptGet update || true
    if [ "$(availableOf libsquirrel-dev)" = 1 ]; then
        installPackages libsquirrel-dev
    else
        "$tools/squirrel.sh"
    fi
fi
