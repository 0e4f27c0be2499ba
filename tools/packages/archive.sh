#!/usr/bin/env bash
# Makes an archive that can be unpacked and used anywhere, of the Debian packages that
# tools/packages/build.sh has put beside its source folder, and of this system's Qt. Needs patchelf.
# The archive is put beside the packages.
#
# usage: tools/packages/archive.sh SOURCE-FOLDER
set -euo pipefail

[ $# = 1 ] || {
    echo "usage: tools/packages/archive.sh SOURCE-FOLDER" >&2
    exit 2
}
source=$(cd "$1" && pwd)
packages=$(dirname "$source")
system=/usr/lib/$(dpkg-architecture -q DEB_HOST_MULTIARCH)
version=$(dpkg-parsechangelog -l "$source/debian/changelog" -S Version)
name=gbdriver-${version%%-*}-linux-$(dpkg-architecture -q DEB_HOST_GNU_CPU)

# What every system has of its own: the C and C++ runtimes, the X client libraries and what tells of
# mounts. Another copy of these in one process would be in the way.
ofSystem=(ld-linux-x86-64.so.2 libc.so.6 libm.so.6 libdl.so.2 libpthread.so.0 librt.so.1 libresolv.so.2
    libstdc++.so.6 libgcc_s.so.1 libX11.so.6 libX11-xcb.so.1 libxcb.so.1 libmount.so.1)

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
files=$work/$name
mkdir -p "$work/unpacked" "$files/lib" "$files/plugins" "$files/licences"
for package in "$packages"/gbdriver*_"$version"_*.deb; do
    dpkg-deb -x "$package" "$work/unpacked"
done
cp -r "$work/unpacked$system/gbdriver/." "$work/unpacked/usr/bin/gbdriver-virtual-reader" \
    "$work/unpacked/usr/share/icons/hicolor/scalable/apps/gbdriver.svg" "$files"
# Beside the program, a translation would be used.
for language in "$files"/gb3_*.qm; do
    [ -e "$language" ] || continue
    mkdir -p "$files/languages"
    mv "$language" "$files/languages"
done
cp "$source/packaging/archive/README.txt" "$source/packaging/archive/qt.conf" "$files"

# The window on X, and the ways to type letters that no key has.
for plugin in platforms/libqxcb.so platforminputcontexts/libcomposeplatforminputcontextplugin.so \
    platforminputcontexts/libibusplatforminputcontextplugin.so; do
    install -D -m 644 "$system/qt5/plugins/$plugin" "$files/plugins/$plugin"
done

# addLibraries FILE: copies the libraries that it needs, and those that they need.
addLibraries() {
    local library
    for library in $(objdump -p "$1" | sed -n 's/^ *NEEDED *//p'); do
        [ ! -e "$files/lib/$library" ] || continue
        [[ " ${ofSystem[*]} " != *" $library "* ]] || continue
        install -m 644 "$system/$library" "$files/lib/$library"
        addLibraries "$system/$library"
    done
}
while read -r file; do
    addLibraries "$file"
done < <(find "$files" -maxdepth 1 -name 'gbdriver*' && find "$files/plugins" -type f)

# In this form the path holds for what libraries need, too.
for program in gbdriver gbdriver-cli gbdriver-virtual-reader; do
    patchelf --force-rpath --set-rpath "\$ORIGIN/lib" "$files/$program"
done

# Of every package that something was taken from: its licences, and its source by name and version.
# Files may have come by another name of their folder.
packageOf() {
    dpkg -S "$(realpath "$1")" 2>/dev/null || dpkg -S "$(realpath "$1" | sed 's,^/usr,,')"
}
while read -r library; do
    packageOf "$library"
done < <(find "$files/lib" -type f -printf "$system/%f\n" &&
    find "$files/plugins" -type f -printf "$system/qt5/plugins/%P\n") |
    cut -d: -f1 | sort -u >"$work/packages"
while read -r package; do
    cp -L "/usr/share/doc/$package/copyright" "$files/licences/$package.txt"
done <"$work/packages"
xargs dpkg-query -W -f '${source:Package} ${source:Version}\n' <"$work/packages" | sort -u \
    >"$files/licences/SOURCES.txt"
cp "$work/unpacked/usr/share/doc/gbdriver/copyright" "$files/licences/gbdriver.txt"

cd "$work"
tar --sort=name --mtime="@$(dpkg-parsechangelog -l "$source/debian/changelog" -S Timestamp)" \
    --owner=0 --group=0 --numeric-owner --mode=go=rX,u+rw --format=gnu -c "$name" |
    xz -T1 -9 >"$packages/$name.tar.xz"
