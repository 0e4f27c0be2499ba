#!/usr/bin/env bash
# One step of what is done with the packages in a clean system, as root there. The packages and a
# version before them are in /shared.
#
# usage: in_system.sh install|upgrade|work|remove|unpack|work-unpacked
set -euo pipefail
set -x

asUser() { chroot --userspec=user --skip-chdir / env HOME=/home/user "$@"; }
# The smallest systems have no program for this.
makeUser() {
    echo 'user:x:1000:1000::/home/user:/bin/sh' >>/etc/passwd
    echo 'user:x:1000:' >>/etc/group
    install -d -o user -g user /home/user
    install -d -o user -g user -m 700 /home/user/run
}
versionOf() { dpkg-query -W -f '${Version}' "$1"; }
packages() { dpkg-query -W -f '${Package} ${Status}\n' | sort; }
backups() { (cd /home/user/.local/share/gbdriver/backups && find . -type f -exec sha256sum {} +); }

case $1 in
install)
    makeUser
    apt-get -q update
    # Every full system has them, and apt does not remove them by itself.
    apt-get -q -y --no-install-recommends install adduser mount
    packages >/root/before
    apt-get -q -y --no-install-recommends install /shared/older/gbdriver_*.deb \
        /shared/older/gbdriver-virtual-reader_*.deb
    asUser gbdriver-virtual-reader --make-image /shared/cart.gb --type 0x1B --rom-size 1M \
        --ram-size 32K --title PACKAGE --seed 3
    head -c 32768 /dev/zero >/shared/new.sav
    # A save that is written leaves the one before in the backups.
    asUser env GBDRIVER_VIRTUAL_READER=cart=/shared/cart.gb gbdriver-cli write-ram /shared/new.sav
    [ "$(backups | wc -l)" -ge 1 ]
    backups >/root/backups
    ;;
upgrade)
    apt-get -q -y --no-install-recommends install /shared/gbdriver_*.deb \
        /shared/gbdriver-virtual-reader_*.deb
    [ "$(versionOf gbdriver)" != 2.9.0-1 ]
    [ "$(versionOf gbdriver-virtual-reader)" != 2.9.0-1 ]
    backups | cmp - /root/backups
    ;;
work)
    asUser gbdriver-cli selftest
    asUser env GBDRIVER_VIRTUAL_READER=cart=/shared/cart.gb gbdriver-cli dump /shared/dump.gb
    cmp /shared/cart.gb /shared/dump.gb
    command -v fusermount3
    asUser gbdriver-virtual-reader --help
    # Where a desktop looks for the entry and its icon.
    grep -x 'Exec=gbdriver' /usr/share/applications/gbdriver.desktop
    grep -x 'Icon=gbdriver' /usr/share/applications/gbdriver.desktop
    for size in 16x16 22x22 24x24 32x32 48x48 64x64 128x128 256x256; do
        test -s "/usr/share/icons/hicolor/$size/apps/gbdriver.png"
    done
    test -s /usr/share/icons/hicolor/scalable/apps/gbdriver.svg
    test -s /usr/share/metainfo/local.velora.gbdriver.metainfo.xml
    ;;
unpack)
    makeUser
    apt-get -q update
    apt-get -q -y --no-install-recommends install mount xz-utils libx11-6 libx11-xcb1 libxcb1 \
        fonts-dejavu-core fontconfig-config
    # Nothing of it may come from this system.
    find /usr/lib -name 'libQt5*' -o -name 'libGL.*' -o -name 'libfontconfig.*' >/root/libraries
    [ ! -s /root/libraries ]
    cd /home/user
    asUser mkdir "unpacked here"
    asUser tar -xf /shared/gbdriver-*.tar.xz -C "unpacked here" --strip-components=1
    # An entry in the menu is made by hand.
    test -s "unpacked here/gbdriver.svg"
    ;;
work-unpacked)
    cd "/home/user/unpacked here"
    asUser ./gbdriver-virtual-reader --make-image /shared/made.gb --type 0x1B --rom-size 1M \
        --ram-size 32K --title PACKAGE --seed 3
    cmp /shared/cart.gb /shared/made.gb
    asUser ./gbdriver-cli selftest
    rm -f /shared/dump.gb
    asUser env GBDRIVER_VIRTUAL_READER=cart=/shared/cart.gb ./gbdriver-cli dump /shared/dump.gb
    cmp /shared/cart.gb /shared/dump.gb
    asUser env GBDRIVER_VIRTUAL_READER=cart=/shared/cart.gb ./gbdriver-cli write-ram /shared/new.sav
    [ "$(backups | wc -l)" = 1 ]
    ;;
remove)
    # Each translation stands beside the program, and only one may.
    for language in /shared/gbdriver-l10n-*.deb; do
        [ -e "$language" ] || continue
        apt-get -q -y install "$language"
        [ "$(find /usr/lib/*/gbdriver -maxdepth 1 -name 'gb3_*.qm' | wc -l)" = 1 ]
    done
    apt-get -q -y purge --autoremove 'gbdriver*'
    find / -xdev -path /shared -prune -o -path /home/user -prune -o -name '*gbdriver*' -print >/root/left
    [ ! -s /root/left ]
    packages | diff /root/before -
    backups | cmp - /root/backups
    ;;
esac
