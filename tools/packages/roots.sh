# Sourced by scripts that use clean Debian systems: folders that a command sees as its root.
#
# A system is layers of files, one on the other; a command writes into the uppermost alone. The
# lowest of each release is made once and stays in the cache outside this checkout.

tools=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cache=${XDG_CACHE_HOME:-${HOME:?HOME is not set}/.cache}/gbdriver

fail() {
    echo "$(basename "$0"): $*" >&2
    exit 1
}
[ "$(id -u)" = 0 ] || fail "only root can mount systems"

# baseRoot SUITE: prints the folder of the smallest system of that release with apt in it.
baseRoot() {
    local root=$cache/root-$1 mirror
    if [ ! -d "$root" ]; then
        mkdir -p "$cache"
        while read -r mirror; do
            rm -rf "$root.part"
            mmdebstrap --quiet --variant=apt "$1" "$root.part" "$mirror" >&2 || continue
            mv "$root.part" "$root"
            break
        done < <("$tools/debian_mirrors.sh")
        [ -d "$root" ] || fail "no configured mirror serves $1"
    fi
    echo "$root"
}

# inRoot LAYER LOWER SHARED COMMAND...: runs a command in the system of the folders LOWER
# (separated by colons, the uppermost first) with what LAYER holds on top. SHARED is seen there as
# /shared. The packages that apt downloads stay in the cache.
inRoot() {
    local layer=$1 lower=$2 shared=$3
    shift 3
    mkdir -p "$layer/files" "$layer/work" "$layer/root" "$cache/archives/partial"
    # shellcheck disable=SC2016
    unshare --mount --pid --fork --kill-child bash -euc '
        layer=$1 lower=$2 shared=$3 archives=$4
        shift 4
        root=$layer/root
        mount -t overlay overlay -o "lowerdir=$lower,upperdir=$layer/files,workdir=$layer/work" "$root"
        mount -t proc proc "$root/proc"
        mount --rbind /dev "$root/dev"
        mkdir -p "$root/shared" "$root/tmp/.X11-unix"
        mount --bind "$shared" "$root/shared"
        mount --bind "$archives" "$root/var/cache/apt/archives"
        if [ -d /tmp/.X11-unix ]; then
            mount --bind /tmp/.X11-unix "$root/tmp/.X11-unix"
        fi
        cp -L /etc/resolv.conf "$root/etc/resolv.conf"
        exec chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 \
            DEBIAN_FRONTEND=noninteractive ${DISPLAY:+DISPLAY="$DISPLAY"} "$@"
    ' bash "$layer" "$lower" "$shared" "$cache/archives" "$@"
}
