#!/usr/bin/env bash
# Downloads a Debian source package and unpacks it with its debian/ folder; applies no patch.
# apt fetches everything from the mirror that this machine already uses: it checks the index's
# signature and the archives' SHA-256.
#
# usage: tools/debian_source.sh SUITE PACKAGE FOLDER
#        FOLDER must exist. Prints the package's full version.
set -euo pipefail

[ $# = 3 ] || {
    echo "usage: tools/debian_source.sh SUITE PACKAGE FOLDER" >&2
    exit 2
}
tools=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
suite=$1
package=$2
folder=$(cd "$3" && pwd)
keyring=/usr/share/keyrings/debian-archive-keyring.gpg

fail() {
    echo "debian_source.sh: $*" >&2
    exit 1
}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# As root, apt downloads as the user _apt, who must get through to the download folder.
chmod 755 "$work"
mkdir -p "$work/lists/partial" "$work/cache/archives/partial" "$work/download"
[ "$(id -u)" != 0 ] || chown _apt "$work/download" 2>/dev/null || chmod 777 "$work/download"

mapfile -t mirrors < <("$tools/debian_mirrors.sh")
[ ${#mirrors[@]} != 0 ] || fail "apt has no Debian mirror configured"

signedBy=
[ ! -r "$keyring" ] || signedBy="[signed-by=$keyring]"
apt=(-qq -o "Dir::Etc::SourceList=$work/sources.list" -o Dir::Etc::SourceParts=-
    -o "Dir::State::Lists=$work/lists" -o "Dir::Cache=$work/cache")
# Without the error mode a failed download would count as a warning.
readIndex() {
    echo "deb-src $signedBy $1 $suite main" >"$work/sources.list"
    apt-get update "${apt[@]}" -o APT::Update::Error-Mode=any </dev/null
}
served=
for mirror in "${mirrors[@]}"; do
    if readIndex "$mirror" 2>>"$work/complaints"; then
        served=yes
        break
    fi
done
[ -n "$served" ] || {
    cat "$work/complaints" >&2
    fail "cannot read the package index of $suite from any configured mirror"
}
files=$(apt-get --print-uris source "${apt[@]}" "$package")

# fetch KIND NAME: downloads the package's one archive of that kind (orig or debian).
fetch() {
    local line uri hash
    line=$(grep -E "^'[^']*' ${package}_[^ ]*\.$1\.tar\.[a-z0-9]+ " <<<"$files") ||
        fail "$suite lists no $1 archive of $package"
    [ "$(wc -l <<<"$line")" = 1 ] || fail "$suite lists several $1 archives of $package"
    uri=$(cut -d"'" -f2 <<<"$line")
    hash=${line##* }
    [[ $hash == SHA256:* ]] || fail "$suite gives no SHA-256 for the $1 archive of $package"
    (cd "$work/download" && /usr/lib/apt/apt-helper download-file "$uri" "$2" "$hash" >/dev/null) ||
        fail "cannot download the $1 archive of $package"
}
fetch orig upstream
fetch debian debian

tar -xf "$work/download/upstream" -C "$folder" --strip-components=1
tar -xf "$work/download/debian" -C "$folder"
sed -nE "s,^'[^']*' ${package}_([^ ]*)\.debian\.tar\..*,\1,p" <<<"$files"
