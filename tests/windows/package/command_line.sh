# Parts of package_test.sh: gbdriver-cli.exe with both readers, and its speed.

# cliEnds CODE COMMAND FILE [OPTION...]: with the cartridge's kind given, so that nothing is looked
# at.
cliEnds() {
    local wanted=$1 command=$2 file=$3 code=0
    shift 3
    "$wine" "$programs/gbdriver-cli.exe" "$command" "$files$file" "${cartridge[@]}" "$@" \
        >answer.log 2>command.log || code=$?
    [ "$code" = "$wanted" ] || fail "gbdriver-cli.exe $command ends with $code: $(cat command.log)"
}
cli() { cliEnds 0 "$@"; }

cliReport() { "$wine" "$programs/gbdriver-cli.exe" info 2>command.log; }

# useCommandLine NAME SAVE LABEL: as useWindow.
useCommandLine() {
    local report
    report=$(cliReport) || fail "no report: $(cat command.log)"
    sameLines "$(expectedReport "$3")" "$(reportIn "$report")" "$1, command line: report"
    holds "$report" "Global checksum: right" "$1, command line: checksum of the whole ROM"
    cli dump "$1-cli-rom.gb" --rom-size 8M
    same cart.gb "$1-cli-rom.gb" "$1, command line: dump"
    holds "$(cat answer.log)" "consistent: " "$1, command line: verdict of the dump"
    cli read-ram "$1-cli-old.sav" --ram-size 32K
    same old.sav "$1-cli-old.sav" "$1, command line: save read"
    cli write-ram new.sav --ram-size 32K --backup "$files$1-backups"
    same old.sav "$(echo "$1-backups"/*.sav)" "$1, command line: backup of the old save"
    cli read-ram "$1-cli-new.sav" --ram-size 32K
    same new.sav "$1-cli-new.sav" "$1, command line: save written and read back"
    same new.sav "$2" "$1, command line: save kept"
}

elapsed() {
    local start
    start=$(date +%s.%N)
    "$@"
    awk -v a="$start" -v b="$(date +%s.%N)" 'BEGIN { printf "%.3f\n", b - a }'
}

# Single dumps of the mounted cartridge, by turns under Wine and by the Linux program.
timeDumps() {
    local round
    for round in 1 2 3 4 5; do
        elapsed cliEnds 10 dump wine-timed.gb --rom-size 8M --no-verify --overwrite >>wine.times
        elapsed dumpNatively linux-timed.gb >>linux.times
        cmp cart.gb wine-timed.gb && cmp cart.gb linux-timed.gb || fail "dump of round $round"
    done
    awk -v a="$(median <wine.times)" -v b="$(median <linux.times)" 'BEGIN {
        printf "8 MiB dump, median of 5: %.2f s under Wine, ", a
        printf "%.2f s by the Linux program, ratio %.1f\n", b, a / b }'
}
