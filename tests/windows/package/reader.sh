# Parts of package_test.sh: the cartridge, and the reader that holds it, in the program or mounted.
#
# The cartridge is an MBC5 board with 8 MiB of flash and 32 KiB of RAM, so that one window can dump
# it, read and write its save, and flash it.

makeImage() {
    "$native/gbdriver-virtual-reader" --make-image "$1" --type 0x1B --rom-size "$2" \
        --ram-size 32K --title "$3" --seed "$4" >/dev/null
}

# Makes cart.gb, flashed.gb (the ROM file to flash) and chip.gb (what the chip holds afterwards).
makeCartridge() {
    makeImage cart.gb 8M PACKAGE 1
    makeImage flashed.gb 1M FLASHED 2
    {
        cat flashed.gb
        head -c $((7 * 1024 * 1024)) /dev/zero | tr '\0' '\377'
    } >chip.gb
    head -c 32768 /dev/urandom >old.sav
    head -c 32768 /dev/urandom >new.sav
}

# expectedReport LABEL: the report about cart.gb in a reader whose drive has that label.
expectedReport() {
    cat <<END
--Device information--
Driver label: $1
Device firmware: QDX_PCB02_FW303
--GB/GBC Cartridge information--
Title: PACKAGE
Cart type: ROM+MBC5+RAM+BATT
ROM Size: 8192KB
RAM Size: 32KB
END
}

# The report in a log or in what the command line prints, without empty lines and checksums.
reportIn() {
    tr -d '\r' <<<"$1" | sed -n '/^--Device information--$/,/^RAM Size:/p' | grep -v '^$'
}

# readerInProcess SAVE: the reader in the program; its cartridge keeps its save in that file.
readerInProcess() { echo "cart=${files}cart.gb,save=$files$1,flash=8,label=READER"; }

# Mounts a reader whose cartridge keeps its save in mounted.sav.
startReader() {
    cp old.sav mounted.sav
    rm -f operations.log
    "$native/gbdriver-virtual-reader" --mount mount --cart cart.gb --save mounted.sav --flash 8 \
        --strict-sectors --log operations.log >reader.log 2>&1 &
    reader=$!
    waitFor 60 mountpoint -q mount || fail "the virtual reader does not mount: $(cat reader.log)"
}

# Unmounts it and looks at what it was asked.
stopReader() {
    kill "$reader"
    wait "$reader" || fail "the virtual reader ends with $?: $(cat reader.log)"
    reader=
    if grep -q '"refused"' operations.log; then
        fail "the reader refused a request: $(grep -m1 '"refused"' operations.log)"
    fi
    grep -q '"file":"K-DRIVER.DMP","offset":32768,"length":1024' operations.log ||
        fail "the identity is not read as one transfer of 1024 bytes"
    ok "$1 asked the mounted reader only for what a disk serves"
}

# What the chip of the mounted reader holds, by the Linux program: code 10 as it is read only once,
# or 7 if the chip is larger than the ROM in it.
dumpNatively() {
    local code=0
    GBDRIVER_DRIVES="E=$work/mount" "$native/gbdriver-cli" dump "$1" "${cartridge[@]}" \
        --rom-size 8M --no-verify --overwrite >/dev/null 2>&1 || code=$?
    [ $code = 10 ] || [ $code = 7 ] || fail "the dump by the Linux program ends with $code"
}
