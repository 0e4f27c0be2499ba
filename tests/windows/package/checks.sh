# Parts of package_test.sh, here and for Linux: what is said of a check, and waiting for one to hold.

fail() {
    echo "$(basename "$0"): $*" >&2
    exit 1
}

ok() { echo "ok: $*"; }

# same EXPECTED FILE WHAT: the two files hold the same bytes.
same() {
    cmp "$1" "$2" || fail "$3"
    ok "$3"
}

# sameLines EXPECTED TEXT WHAT: the two texts are the same.
sameLines() {
    diff <(printf '%s\n' "$1") <(printf '%s\n' "$2") || fail "$3"
    ok "$3"
}

# holds TEXT PART WHAT
holds() {
    grep -qF -e "$2" <<<"$1" || fail "$3: no \"$2\" in: $1"
    ok "$3"
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

# The name that a file of this machine has under Wine.
winePath() { printf 'Z:%s' "${1//\//\\}"; }

# The middle one of an odd count of numbers, one a line.
median() { sort -n | awk '{ value[NR] = $1 } END { print value[(NR + 1) / 2] }'; }
