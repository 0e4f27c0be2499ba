# Sourced by the tests of packages, behind tests/windows/package/checks.sh.

# What people are given of a build; a package's .changes and .buildinfo tell of that build alone.
sumsOfFiles() {
    (cd "$1" && find . -maxdepth 1 -regex '.*\.\(deb\|tar\.xz\|zip\|exe\)' -exec sha256sum {} + |
        LC_ALL=C sort -k2)
}

# buildTwice FOLDER COMMAND...: builds into FOLDER/first and FOLDER/second, each time with the folder
# that gets the source as the last argument. These have names of different lengths: a path that gets
# into a file shows.
buildTwice() {
    local folder=$1 sums
    shift
    "$@" "$folder/first/source"
    "$@" "$folder/second/another-source"
    sums=$(sumsOfFiles "$folder/first")
    [ -n "$sums" ] || fail "nothing was built by: $*"
    sameLines "$sums" "$(sumsOfFiles "$folder/second")" "the same files by two runs of: $*"
}
