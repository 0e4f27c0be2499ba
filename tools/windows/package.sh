#!/usr/bin/env bash
# Packs a Windows build: a zip archive, and an installer with the same files.
#
# usage: tools/windows/package.sh BUILD-FOLDER
#        BUILD-FOLDER       of the preset "windows", built; the packages are put into its package/
#        SOURCE_DATE_EPOCH  the time that all files get, otherwise now
set -euo pipefail

[ $# = 1 ] || {
    echo "usage: tools/windows/package.sh BUILD-FOLDER" >&2
    exit 2
}
source=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
build=$(cd "$1" && pwd)
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")
stage=$build/package/stage
name=gbdriver-$version-windows

rm -rf "$build/package"
mkdir -p "$stage"
cmake --install "$build" --prefix "$stage" --strip >/dev/null
files=$stage/gbdriver
# The compiler's libraries come with their symbols.
x86_64-w64-mingw32-strip "$files"/*.dll
find "$stage" -exec touch -d "@${SOURCE_DATE_EPOCH:-$(date +%s)}" {} +
# The times of a zip are those of a place, and its order is that of the disk.
(cd "$stage" && find gbdriver | LC_ALL=C sort | TZ=UTC zip -q -X -@ "../$name.zip")

# Windows form of the folder of a file below $files, empty for $files itself.
folderOf() {
    local folder
    folder=$(dirname "$1")
    [ "$folder" = . ] || printf '\\%s' "${folder//\//\\}"
}

installs=$build/package/install.nsh
removes=$build/package/remove.nsh
while read -r file; do
    printf 'SetOutPath "$INSTDIR%s"\nFile "%s"\n' "$(folderOf "$file")" "$files/$file" >>"$installs"
    printf 'Delete "$INSTDIR\\%s"\n' "${file//\//\\}" >>"$removes"
done < <(cd "$files" && find . -type f -printf '%P\n' | LC_ALL=C sort)
# The deepest first: only an empty folder can be removed.
while read -r folder; do
    printf 'RMDir "$INSTDIR\\%s"\n' "${folder//\//\\}" >>"$removes"
done < <(cd "$files" && find . -mindepth 1 -type d -printf '%P\n' | LC_ALL=C sort -r)

makensis -V2 -WX -INPUTCHARSET UTF8 -NOCD "-DVERSION=$version" "-DLANGUAGES=$files/languages" \
    "-DICON=$build/packaging/windows/gbdriver.ico" \
    "-DINSTALL_LIST=$installs" "-DREMOVE_LIST=$removes" "-DOUTPUT=$build/package/$name-setup.exe" \
    "$source/packaging/windows/installer.nsi"
du -b "$build/package/$name.zip" "$build/package/$name-setup.exe"
du -sb "$files"
