#!/usr/bin/env bash
# Times one read of the headless dump of a 32 MiB GBA cartridge through a real mount of the virtual
# reader, beside dd reading as many bytes from the same mount in the same unit, 1 MiB. Prints the
# median of the rounds, and the ratio within this run.
#
# usage: bench/gba_mount_dump.sh [PROGRAM-FOLDER] [ROUNDS]
#        after  cmake --preset release && cmake --build --preset release
set -euo pipefail

programs=${1:-build/release/bin}
rounds=${2:-5}
work=$(mktemp -d)
mkdir "$work/mount"
trap 'fusermount3 -u "$work/mount" 2>/dev/null || true; rm -rf "$work"' EXIT

"$programs/gbdriver-virtual-reader" --make-image "$work/image" --system gba --rom-size 32M
"$programs/gbdriver-virtual-reader" --mount "$work/mount" --cart "$work/image" --strict-sectors \
    --background >/dev/null

now() { date +%s%N; }
since() { echo $((($(now) - $1) / 1000000)); }
median() { sort -n | sed -n "$(((rounds + 1) / 2))p"; }

# DUMP.ROM is 1 MiB long: 32 passes.
runDd() {
    local start
    start=$(now)
    for ((pass = 0; pass < 32; ++pass)); do
        dd if="$work/mount/DUMP.ROM" of=/dev/null bs=1M count=1 iflag=direct status=none
    done
    since "$start"
}
runCli() {
    local start
    start=$(now)
    # One read and no look before it; a dump that is read only once ends with code 10.
    GBDRIVER_DRIVES="E=$work/mount" "$programs/gbdriver-cli" dump "$work/dump" --overwrite \
        --no-verify --no-auto --system gba --rom-size 32M >/dev/null 2>&1 || [ $? = 10 ]
    since "$start"
}

for ((round = 0; round < rounds; ++round)); do
    runDd >>"$work/dd"
    runCli >>"$work/cli"
    cmp "$work/image" "$work/dump"
done

dd=$(median <"$work/dd")
cli=$(median <"$work/cli")
echo "dd, 1 MiB a read        $dd ms"
echo "gbdriver-cli dump       $cli ms"
awk -v a="$cli" -v b="$dd" 'BEGIN { printf "dump / dd               %.2f\n", a / b }'
