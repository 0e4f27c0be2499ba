#!/usr/bin/env bash
# Uses the packed programs under Wine as people do on Windows: unpacked and installed, with the
# virtual reader in the program and with one on a removable drive that a mount stands behind.
# Needs an X server (DISPLAY). Says what it measured, ends with 1 at the first thing that is wrong.
# Screenshots and everything else that it makes stay in WINDOWS-BUILD/package-test.
#
# usage: tests/windows/package_test.sh WINDOWS-BUILD LINUX-BUILD
set -euo pipefail

source=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
packages=$(cd "$1/package" && pwd)
work=$(cd "$1" && pwd)/package-test
native=$(cd "$2/bin" && pwd)
wine=/usr/lib/wine/wine64
zip=$(echo "$packages"/gbdriver-*-windows.zip)
installer=$(echo "$packages"/gbdriver-*-windows-setup.exe)
packageVersion=$(sed 's/.*gbdriver-\(.*\)-windows\.zip/\1/' <<<"$zip")
cartridge=(--no-auto --system gb --mapper mbc5)
# Wine takes a label from a file, which the reader's drive has not.
mountLabel=

for part in checks reader command_line window contents installer; do
    # shellcheck source=/dev/null
    . "$source/tests/windows/package/$part.sh"
done
for tool in fusermount3 icotool iconv import strings unzip wrestool xclip xdotool "$wine"; do
    command -v "$tool" >/dev/null || fail "$tool is missing; tools/setup.sh windows installs it"
done

# A run that was killed may have left its mount.
mountpoint -q "$work/mount" 2>/dev/null && fusermount3 -u "$work/mount"
rm -rf "$work"
mkdir -p "$work/mount"
cd "$work"
files=$(winePath "$work/")
reader=
window=
cleanUp() {
    [ -z "$window" ] || kill "$window" 2>/dev/null || true
    /usr/lib/wine/wineserver -k || true
    /usr/lib/wine/wineserver -w
    [ -z "$reader" ] || kill "$reader" 2>/dev/null || true
    wait
}
trap cleanUp EXIT

# With its menu builder Wine would copy the installer's menu entry to this machine's desktop.
export WINEPREFIX=$work/prefix WINEDEBUG=-all WINEDLLOVERRIDES=winemenubuilder.exe=
unset WINEPATH GBDRIVER_VIRTUAL_READER GBDRIVER_DRIVES
"$source/tools/windows/wine_prefix.sh" "$WINEPREFIX" "e=floppy:$work/mount"
# Without them the window has the first font that this machine happens to have.
cp /usr/share/wine/fonts/*.ttf "$WINEPREFIX/drive_c/windows/Fonts"
# The services of Wine start here; they would keep the output of the first program open.
/usr/lib/wine/wineserver -p
"$wine" wineboot </dev/null >/dev/null 2>&1
unzip -q "$zip" -d "$WINEPREFIX/drive_c"
programs=$WINEPREFIX/drive_c/gbdriver
makeCartridge

checkContents "$programs"

cp old.sav process-cli.sav
GBDRIVER_VIRTUAL_READER=$(readerInProcess process-cli.sav) \
    useCommandLine process process-cli.sav READER
cp old.sav process.sav
GBDRIVER_VIRTUAL_READER=$(readerInProcess process.sav) useWindow process process.sav READER

startReader
useCommandLine drive mounted.sav "$mountLabel"
timeDumps
cli flash flashed.gb
dumpNatively cli-chip.gb
same chip.gb cli-chip.gb "drive, command line: flash chip written"
stopReader "the command line"

startReader
useWindow drive mounted.sav "$mountLabel"
dumpNatively window-chip.gb
same chip.gb window-chip.gb "drive, window: the chip's content, by the Linux program"
stopReader "the window"

useInstaller
ok "everything"
