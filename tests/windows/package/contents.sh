# Parts of package_test.sh: what the packages hold, without running it.

# What must be there of the licences of everything that is shipped: a file, a text in it.
shippedLicences() {
    cat <<'END'
LICENSE|Permission is hereby granted, free of charge
squirrel.txt|Permission is hereby granted, free of charge
gcc-runtime.txt|GCC RUNTIME LIBRARY EXCEPTION
mingw-w64-runtime.txt|mingw-w64-crt/crt/
mingw-w64-runtime.txt|mingw-w64-libraries/winpthreads/
installer.txt|zlib
qt/LICENSE.LGPL3|GNU LESSER GENERAL PUBLIC LICENSE
qt/LICENSE.GPL3|GNU GENERAL PUBLIC LICENSE
qt/SOURCE.txt|qtbase-opensource-src_5.15
qt/copyright|src/3rdparty/double-conversion/
qt/copyright|src/3rdparty/freetype/
qt/copyright|The FreeType Project LICENSE
qt/copyright|src/3rdparty/harfbuzz-ng/
qt/copyright|src/3rdparty/libpng/
qt/copyright|src/3rdparty/pcre2/
qt/copyright|src/3rdparty/zlib/
qt/copyright|License: Unicode
END
}

checkLicences() {
    local file text
    while IFS='|' read -r file text; do
        grep -qF -e "$text" "$1/licences/$file" || fail "licences/$file does not hold \"$text\""
    done < <(shippedLicences)
    grep -q 'FreeType' "$1/README.txt" || fail "README.txt does not name FreeType"
    ok "licences of what is shipped"
}

# checkProgram FILE NAME SUBSYSTEM: icon, version, manifest.
checkProgram() {
    local manifest version icons subsystem
    manifest=$(wrestool -x -R -t24 "$1")
    holds "$manifest" 'level="asInvoker"' "$2 asks for no rights"
    holds "$manifest" '>permonitor<' "$2 draws for the resolution of each screen"
    version=$(wrestool -x -R -t16 "$1" | strings -el)
    holds "$version" "$packageVersion" "$2 says its version"
    holds "$version" "Velora Cartridge Driver" "$2 says its name"
    # The same as four numbers behind the signature, the half of each pair that counts more last.
    [ "$(wrestool -x -R -t16 "$1" | od -An -tu2 -j48 -N8 | awk '{ print $2 "." $1 "." $4 }')" = \
        "$packageVersion" ] || fail "$2: the version in numbers is another"
    wrestool -x -t14 "$1" >program.ico
    icons=$(icotool -l program.ico | grep -o 'width=[0-9]*' | xargs)
    [ "$icons" = "width=16 width=22 width=24 width=32 width=48 width=64 width=128 width=256" ] ||
        fail "$2: icons of $icons"
    subsystem=$(x86_64-w64-mingw32-objdump -p "$1" | sed -n 's/^Subsystem.*(\(.*\))$/\1/p')
    [ "$subsystem" = "$3" ] || fail "$2 is a program of the kind $subsystem"
    ok "$2: version in numbers, icon, kind of program"
}

# checkContents FOLDER: of the unpacked zip.
checkContents() {
    checkLicences "$1"
    checkProgram "$1/gbdriver.exe" gbdriver.exe "Windows GUI"
    checkProgram "$1/gbdriver-cli.exe" gbdriver-cli.exe "Windows CUI"
    [ -z "$(find "$1" -name '*.qm' ! -path '*/languages/*')" ] ||
        fail "a translation outside its folder chooses the language"
    du -b "$zip" "$installer" | sed 's|\([0-9]*\).*/|\1 bytes: |'
}
