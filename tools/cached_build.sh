# Sourced by scripts that build a library once, into a cache outside this checkout.
#
# A build appears in the cache under its name only when it is whole, so its presence is the stamp. A
# link leads to it whose name stays the same when the build's own changes; there CMake looks.

tools=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
cache=${XDG_CACHE_HOME:-${HOME:?HOME is not set}/.cache}/gbdriver

fail() {
    echo "$(basename "$0"): $*" >&2
    exit 1
}

# keyOf VALUE...: prints a short text that changes with every one of the values.
keyOf() {
    printf '%s\n' "$@" | sha256sum | cut -c1-12
}

# beginBuild BUILD LINK [--cached]: ends the script if the cache has BUILD; with --cached it ends
# the script anyway, and the exit code says which. Otherwise $work is a folder to work in, with an
# empty folder "source", and $stage one in the cache for the result; both vanish when the script
# ends.
beginBuild() {
    build=$1
    link=$cache/$2
    if [ -d "$cache/$build" ]; then
        [ "$(readlink "$link" || true)" = "$build" ] || ln -sfn "$build" "$link"
        exit 0
    fi
    [ "${3:-}" != --cached ] || exit 1
    mkdir -p "$cache"
    work=$(mktemp -d)
    stage=$(mktemp -d "$cache/.$2.XXXXXX")
    trap 'rm -rf "$work" "$stage"' EXIT
    mkdir "$work/source"
    # mktemp made it private; the build may serve other users of this machine.
    chmod 755 "$stage"
}

# step WHAT COMMAND...: runs a command with its output in a log, whose end is shown where it fails.
step() {
    local what=$1
    shift
    "$@" >"$work/log" 2>&1 </dev/null || {
        tail -n 60 "$work/log" >&2
        fail "$what failed"
    }
}

# publishBuild FOLDER: puts the finished build into the cache. Another run may have finished
# meanwhile; its build is as good as this one.
publishBuild() {
    mv -T "$1" "$cache/$build" 2>/dev/null || [ -d "$cache/$build" ] ||
        fail "cannot write $cache/$build"
    ln -sfn "$build" "$link"
}
