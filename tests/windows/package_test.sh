#!/usr/bin/env bash
# Uses the packed programs under Wine as people do on Windows: unpacked and installed, with the
# virtual reader in the program and with one on a removable drive that a mount stands behind.
# Needs an X server (DISPLAY). Says what it measured, ends with 1 at the first thing that is wrong.
#
# usage: tests/windows/package_test.sh WINDOWS-BUILD LINUX-BUILD
set -euo pipefail

source=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
packages=$(cd "$1/package" && pwd)
work=$(cd "$1" && pwd)/package-test
native=$(cd "$2/bin" && pwd)
wine=/usr/lib/wine/wine64
title="GB Driver 3.0 build"

fail() {
    echo "package_test.sh: $*" >&2
    exit 1
}

# The name that a file of this machine has under Wine.
winePath() {
    printf 'Z:%s' "${1//\//\\}"
}

same() {
    cmp "$1" "$2" || fail "$3"
    echo "ok: $3"
}

holds() {
    grep -qF -e "$2" <<<"$1" || fail "$3: no \"$2\" in: $1"
    echo "ok: $3"
}

# waitFor SECONDS COMMAND...: until the command succeeds.
waitFor() {
    local end=$((SECONDS + $1))
    shift
    until "$@" >/dev/null 2>&1; do
        [ $SECONDS -lt $end ] || return 1
        sleep 0.1
    done
}

if mountpoint -q "$work/mount" 2>/dev/null; then
    fusermount3 -u "$work/mount"
fi
rm -rf "$work"
mkdir -p "$work/mount"
cd "$work"
reader=
window=
cleanUp() {
    [ -z "$window" ] || kill "$window" 2>/dev/null || true
    "${wine%64}server" -k 2>/dev/null || true
    [ -z "$reader" ] || kill "$reader" 2>/dev/null || true
}
trap cleanUp EXIT

# --- a cartridge, and a reader that holds it, mounted --------------------------------------------

"$native/gbdriver-virtual-reader" --make-image cart.gb --type 0x1B --rom-size 8M --ram-size 32K \
    --title PACKAGE >/dev/null
head -c 32768 /dev/urandom >chip.sav
head -c 32768 /dev/urandom >new.sav
cp chip.sav old.sav
"$native/gbdriver-virtual-reader" --mount mount --cart cart.gb --save chip.sav --strict-sectors \
    --log operations.log >reader.log 2>&1 &
reader=$!
waitFor 30 mountpoint -q mount || fail "the virtual reader does not mount: $(cat reader.log)"

export WINEPREFIX=$work/prefix WINEDEBUG=-all
unset WINEPATH GBDRIVER_VIRTUAL_READER
"$source/tools/windows/wine_prefix.sh" "$WINEPREFIX" "e=floppy:$work/mount"
unzip -q "$packages"/gbdriver-*-windows.zip -d "$WINEPREFIX/drive_c"
programs=$WINEPREFIX/drive_c/gbdriver

gb=(--system gb --mapper mbc5)

# --- the unpacked programs -----------------------------------------------------------------------

copy=$(winePath "$work")
GBDRIVER_VIRTUAL_READER="cart=$copy\\cart.gb" "$wine" "$programs/gbdriver-cli.exe" \
    dump "$copy\\virtual.gb" "${gb[@]}" --rom-size 8M 2>/dev/null || fail "no dump in process"
same cart.gb virtual.gb "dump of the reader in the process"

start=$(date +%s.%N)
"$wine" "$programs/gbdriver-cli.exe" dump "$copy\\drive.gb" "${gb[@]}" --rom-size 8M 2>/dev/null ||
    fail "no dump over drive E"
middle=$(date +%s.%N)
GBDRIVER_DRIVES="E=$work/mount" "$native/gbdriver-cli" dump "$work/native.gb" "${gb[@]}" \
    --rom-size 8M 2>/dev/null || fail "no dump by the Linux program"
end=$(date +%s.%N)
same cart.gb drive.gb "dump over drive E"
same cart.gb native.gb "dump by the Linux program"
awk -v a="$start" -v b="$middle" -v c="$end" \
    'BEGIN { printf "8 MiB dump: %.2f s under Wine, %.2f s by the Linux program\n", b - a, c - b }'

saveJob() {
    "$wine" "$programs/gbdriver-cli.exe" "$1" "$copy\\$2" "${gb[@]}" --ram-size 32K 2>/dev/null ||
        fail "$1 over drive E"
}
saveJob read-ram read.sav
same old.sav read.sav "save read over drive E"
saveJob write-ram new.sav
saveJob read-ram back.sav
same new.sav back.sav "save written over drive E and read back"
same new.sav chip.sav "save in the cartridge"
report=$("$wine" "$programs/gbdriver-cli.exe" info 2>/dev/null) || fail "no report over drive E"
holds "$report" "PACKAGE" "report names the cartridge"
if grep -q '"refused"' operations.log; then
    fail "the reader refused a request: $(grep -m1 '"refused"' operations.log)"
fi
grep -q '"file":"K-DRIVER.DMP","offset":32768,"length":1024' operations.log ||
    fail "the identity is not read as one transfer of 1024 bytes"
echo "ok: every request was one that a disk serves"

# --- the window ----------------------------------------------------------------------------------

findWindow() {
    xdotool search --onlyvisible --name "$1" | head -n 1
}
isThere() { [ -n "$(findWindow "$1")" ]; }
isGone() { ! isThere "$1"; }
focus() {
    waitFor 60 isThere "$1" || fail "no window \"$1\""
    xdotool windowfocus --sync "$(findWindow "$1")"
}
# press N: the Nth button behind the log: info, dump, flash, read RAM, write RAM.
press() {
    local id width height
    focus "$title"
    id=$(findWindow "$title")
    eval "$(xdotool getwindowgeometry --shell "$id" | grep -E '^(WIDTH|HEIGHT)=')"
    width=$WIDTH height=$HEIGHT
    xdotool mousemove --window "$id" $((width * 40 / 100)) $((height * 70 / 100)) click 1
    local key
    for ((key = 0; key < $1; ++key)); do xdotool key Tab; done
    xdotool key space
}
# answer N CAPTION FILE: presses a button until its dialog comes, and names a file in it.
answer() {
    local end=$((SECONDS + 60))
    until press "$1" && waitFor 3 isThere "$2"; do
        [ $SECONDS -lt $end ] || fail "no dialog \"$2\""
    done
    focus "$2"
    xdotool type "$copy\\$3"
    xdotool key Return
    waitFor 60 isGone "$2" || fail "the dialog \"$2\" stays"
}

"$wine" "$programs/gbdriver.exe" >window.log 2>&1 &
window=$!
focus "$title"
# From the tab bar: system, mapper, ROM size (the last: 8 MiB), RAM size (the third: 32 KiB).
xdotool key Tab Tab Tab End Tab Down Down
reads=$(wc -l <operations.log)
moreOperations() { [ "$(wc -l <operations.log)" -gt "$reads" ]; }
press 1
waitFor 60 moreOperations || fail "the button Info reaches no reader"
answer 2 "Read ROM to..." window.gb
waitFor 120 cmp -s cart.gb window.gb || fail "no dump by the window"
echo "ok: dump by the window"
answer 4 "Read save to..." window.sav
waitFor 60 cmp -s new.sav window.sav || fail "no save read by the window"
answer 5 "Get Save File." old.sav
waitFor 60 cmp -s old.sav chip.sav || fail "no save written by the window"
echo "ok: save round trip by the window"
import -window root window.png
focus "$title"
xdotool key Escape
waitFor 60 isGone "$title" || fail "the window does not close"
wait "$window" || fail "the window's program ends with $?"
window=
echo "ok: window closed"

# --- the installer -------------------------------------------------------------------------------

listFiles() {
    find "$WINEPREFIX/drive_c" \( -type f -o -type d \) -printf '%P\n' | LC_ALL=C sort
}
listFiles >before.txt
"$wine" "$packages"/gbdriver-*-windows-setup.exe /S || fail "the installer ends with $?"
installed=$(find "$WINEPREFIX/drive_c/users" -type d -path '*/Programs/Velora Cartridge Driver')
[ -n "$installed" ] || fail "nothing is installed"
diff -r "$programs" "$installed" | grep -v '^Only in .*: uninstall\.exe$' &&
    fail "the installed files differ from the unpacked ones"
find "$WINEPREFIX/drive_c/users" -name 'Velora Cartridge Driver.lnk' | grep -q . ||
    fail "no entry in the Start menu"
"$wine" "$installed/gbdriver-cli.exe" read-ram "$copy\\installed.sav" "${gb[@]}" --ram-size 32K \
    2>/dev/null || fail "the installed program reads no save"
same old.sav installed.sav "save read by the installed program"
du -sb "$installed" | awk '{ print "installed tree: " $1 " bytes" }'
"$wine" "$installed/uninstall.exe" /S || fail "the uninstaller ends with $?"
isRemoved() { [ ! -e "$installed" ]; }
waitFor 60 isRemoved || fail "left by the uninstaller: $(find "$installed")"
"${wine%64}server" -w
leftOver=$(diff before.txt <(listFiles) | grep '^>' | grep -vE 'Temp(/|$)|/Programs$' || true)
[ -z "$leftOver" ] || fail "left by the uninstaller: $leftOver"
if "$wine" reg query 'HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\gbdriver' \
    >/dev/null 2>&1; then
    fail "the uninstaller leaves its registry key"
fi
echo "ok: installed, run and uninstalled"
