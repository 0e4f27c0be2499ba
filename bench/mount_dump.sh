#!/usr/bin/env bash
# Times one read of the headless dump of an 8 MiB MBC5 cartridge through a real mount of the virtual
# reader, beside dd reading the same bytes in the same unit, and beside a client that does the same
# file operations and nothing else. Prints the median of the rounds, and ratios within this run.
#
# usage: bench/mount_dump.sh [PROGRAM-FOLDER] [ROUNDS]
#        after  cmake --preset release -DGBDRIVER_BENCH=ON && cmake --build --preset release
set -euo pipefail

programs=${1:-build/release/bin}
rounds=${2:-7}
work=$(mktemp -d)
mkdir "$work/mount"
trap 'fusermount3 -u "$work/mount" 2>/dev/null || true; rm -rf "$work"' EXIT

"$programs/gbdriver-virtual-reader" --make-image "$work/image" --type 0x19 --rom-size 8M --seed 1
"$programs/gbdriver-virtual-reader" --mount "$work/mount" --cart "$work/image" --strict-sectors \
    --background >/dev/null

now() { date +%s%N; }
since() { echo $((($(now) - $1) / 1000000)); }
median() { sort -n | sed -n "$(((rounds + 1) / 2))p"; }

# DUMP.ROM is 1 MiB long: eight passes make 8 MiB.
runDd() {
    local start
    start=$(now)
    for _ in 1 2 3 4 5 6 7 8; do
        dd if="$work/mount/DUMP.ROM" of=/dev/null bs=16K count=64 iflag=direct status=none
    done
    since "$start"
}
# One read and no look before it; a dump that is read only once ends with code 10.
dump=("$programs/gbdriver-cli" dump "$work/dump" --overwrite --no-verify --no-auto --system gb
    --mapper mbc5 --rom-size 8M)
runCli() {
    local start
    start=$(now)
    GBDRIVER_DRIVES="E=$work/mount" "${dump[@]}" >/dev/null 2>&1 || [ $? = 10 ]
    since "$start"
}
runBare() { "$programs/bare_client" "$work/mount" | cut -d. -f1; }

for ((round = 0; round < rounds; ++round)); do
    runDd >>"$work/dd"
    runBare >>"$work/bare"
    runCli >>"$work/cli"
done
cmp "$work/image" "$work/dump"

dd=$(median <"$work/dd")
bare=$(median <"$work/bare")
cli=$(median <"$work/cli")
echo "dd, 16 KiB a read       $dd ms"
echo "bare client             $bare ms"
echo "gbdriver-cli dump       $cli ms"
awk -v a="$cli" -v b="$bare" -v c="$dd" \
    'BEGIN { printf "dump / bare client      %.2f\ndump / dd               %.2f\n", a / b, a / c }'

peak=$(GBDRIVER_DRIVES="E=$work/mount" bash -c '
    "$@" >/dev/null 2>&1 &
    program=$!
    peak=0
    while line=$(grep VmHWM "/proc/$program/status" 2>/dev/null); do
        peak=$(echo "$line" | tr -dc 0-9)
    done
    wait $program || [ $? = 10 ] || exit
    echo "$peak"' bash "${dump[@]}")
echo "peak memory of the dump $peak KiB"
