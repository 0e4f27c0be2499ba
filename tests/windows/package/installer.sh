# Parts of package_test.sh: the installer and its uninstaller.

listFiles() { find "$WINEPREFIX/drive_c" -printf '%P\n' | LC_ALL=C sort; }

# The user's part of the registry.
listRegistry() {
    "$wine" reg export HKCU "${files}registry.reg" /y >/dev/null 2>&1 ||
        fail "the registry cannot be read"
    iconv -f UTF-16 -t UTF-8 registry.reg | tr -d '\r'
}

# install [OPTION...]
install() {
    "$wine" "$installer" /S "$@" || fail "the installer ends with $?"
    installed=$(find "$WINEPREFIX/drive_c/users" -type d -path '*/Programs/Velora Cartridge Driver')
    [ -n "$installed" ] || fail "nothing is installed"
    shortcut=$(find "$WINEPREFIX/drive_c/users" -name 'Velora Cartridge Driver.lnk')
    [ -n "$shortcut" ] || fail "no entry in the Start menu"
}

# The uninstaller works on as a copy of itself when its first process has ended.
uninstall() {
    "$wine" "$installed/uninstall.exe" /S || fail "the uninstaller ends with $?"
    waitFor 60 test ! -e "$installed/uninstall.exe" || fail "the uninstaller does nothing"
    waitFor 60 test ! -e "$shortcut" || fail "the entry in the Start menu stays"
    waitFor 60 isForgotten || fail "the uninstaller leaves its registry key"
}

uninstallKey='HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\gbdriver'
registered() { "$wine" reg query "$uninstallKey" /v "$1" 2>/dev/null | tr -d '\r'; }
isForgotten() { ! "$wine" reg query "$uninstallKey"; }

checkInstalled() {
    diff -r "$programs" "$installed" | grep -v '^Only in .*: uninstall\.exe$' &&
        fail "the installed files differ from the unpacked ones"
    ok "installed files are those of the zip"
    holds "$(registered DisplayName)" "Velora Cartridge Driver" "list of programs: name"
    holds "$(registered DisplayVersion)" "$packageVersion" "list of programs: version"
    holds "$(registered QuietUninstallString)" 'uninstall.exe" /S' "list of programs: uninstaller"
    du -sb "$installed" | awk '{ print $1 " bytes: installed tree" }'
}

# From the Start menu, as a user does.
useInstalled() {
    GBDRIVER_VIRTUAL_READER=demo openWindow "$wine" start /wait /unix "$shortcut"
    press $infoButton
    expectLog 1 "Title: DEMO CARTRIDGE"
    closeWindow
    ok "installed program started from the Start menu"
}

# expectLanguage FILE: that translation and no other lies beside the program; none without FILE.
expectLanguage() {
    sameLines "${1:-}" "$(cd "$installed" && find . -maxdepth 1 -name '*.qm' -printf '%P\n')" \
        "installed language: ${1:-English}"
    [ $# = 0 ] || same "$programs/languages/$1" "$installed/$1" "its translation is that of the zip"
}

# The installer is used again to choose another language; without a choice it keeps what is there.
useLanguages() {
    local title="GB Driver 3.0 ビルド" started="GB/GBC/GBA 用 Velora Driver Series 3.0"
    install /LANGUAGE=ja
    expectLanguage gb3_jpn.qm
    GBDRIVER_VIRTUAL_READER=demo openWindow "$wine" start /wait /unix "$shortcut"
    press $infoButton
    expectLog 1 "タイトル: DEMO CARTRIDGE"
    closeWindow
    install
    expectLanguage gb3_jpn.qm
    install /LANGUAGE=zh
    expectLanguage gb3_chs.qm
    "$wine" "$installer" /S /LANGUAGE=fr && fail "a language that is not there is installed"
    expectLanguage gb3_chs.qm
    install /LANGUAGE=en
    expectLanguage
    install
    expectLanguage
    install /LANGUAGE=zh
}

checkNothingIsLeft() {
    local left
    # The uninstaller's copy in the temporary folder is for the system to delete.
    left=$(comm -13 before.files <(listFiles) | grep -vE '/Temp(/|$)' || true)
    [ -z "$left" ] || fail "files left by the uninstaller: $left"
    left=$(diff before.registry <(listRegistry) | grep '^>' || true)
    [ -z "$left" ] || fail "left in the registry by the uninstaller: $left"
    ok "nothing left by the uninstaller"
}

useInstaller() {
    # Windows has the list of programs from the beginning.
    "$wine" reg add "${uninstallKey%\\*}" /f >/dev/null || fail "no list of programs"
    listFiles >before.files
    listRegistry >before.registry
    install
    checkInstalled
    useInstalled
    useLanguages
    uninstall
    checkNothingIsLeft

    install
    cp old.sav "$installed/game.sav"
    cp old.sav "$installed/mapper/own.nut"
    uninstall
    sameLines $'./game.sav\n./mapper/own.nut' \
        "$(cd "$installed" && find . -type f | LC_ALL=C sort)" "only the user's own files are left"
    same old.sav "$installed/game.sav" "the user's save is as it was"
}
