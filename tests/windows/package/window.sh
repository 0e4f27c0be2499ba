# Parts of package_test.sh, here and for Linux: a hand on the program's window, and an eye on its log.
# The folder of the files that its dialogs are told, as the program names it and with its last
# separator, is $files.

title="GB Driver 3.0 build"
started="Velora Driver Series"
# The shortcuts of the buttons.
infoButton=ctrl+i dumpButton=ctrl+d flashButton=ctrl+f readRamButton=ctrl+r writeRamButton=ctrl+w
# What the window begins a judgement with, about jobs that have ended well.
judged='\(unverified\|suspicious\|written\): '

findWindow() { xdotool search --onlyvisible --name "$1" | head -n 1; }
isThere() { [ -n "$(findWindow "$1")" ]; }
isGone() { ! isThere "$1"; }
# A window that has just come may refuse the keyboard for a moment.
takeFocus() { xdotool windowfocus --sync "$(findWindow "$1")"; }
focus() { waitFor 60 takeFocus "$1" || fail "no window \"$1\""; }

# The log is the one wide area in the lower half.
clickLog() {
    local id WIDTH HEIGHT
    focus "$title"
    id=$(findWindow "$title")
    eval "$(xdotool getwindowgeometry --shell "$id" | grep -E '^(WIDTH|HEIGHT)=')"
    xdotool mousemove --window "$id" $((WIDTH * 40 / 100)) $((HEIGHT * 70 / 100)) click 1
}

# The log, or the beginning of it: copying takes a moment. Lines only ever come behind others.
readLog() {
    clickLog
    xdotool key ctrl+a ctrl+c
    timeout 10 xclip -o -selection clipboard 2>/dev/null | tr -d '\r'
}

jobFailed() { grep -q '^>Operation failure' <<<"$log"; }

# logHolds COUNT LINE: so many lines of the log begin with it, or it is of no use to wait for them.
logHolds() {
    log=$(readLog) || return 1
    jobFailed || [ "$(grep -c -e "^$2" <<<"$log")" -ge "$1" ]
}

# expectLog COUNT LINE: waits for it; leaves the log in `log`.
expectLog() {
    log=
    waitFor 120 logHolds "$@" || fail "the log has not $1 times \"$2\": $log"
    ! jobFailed || fail "a job has failed: $log"
}

# press BUTTON: only while no job runs; it does nothing then.
press() {
    focus "$title"
    xdotool key "$1"
}

# runJob BUTTON CAPTION FILE: presses a button, names a file in its dialog; the job must succeed.
runJob() {
    press "$1"
    waitFor 60 isThere "$2" || fail "no dialog \"$2\""
    focus "$2"
    xdotool type "$files$3"
    xdotool key Return
    waitFor 60 isGone "$2" || fail "the dialog \"$2\" stays"
    jobs=$((jobs + 1))
    expectLog $jobs ">Success!"
    expectLog $jobs "$judged"
}

# openWindow COMMAND...: starts the program.
openWindow() {
    # What an earlier window has copied is not taken for this one's log.
    xclip -i -selection clipboard </dev/null >/dev/null 2>&1
    "$@" >window.log 2>&1 &
    window=$!
    jobs=0
    expectLog 1 "$started"
}

# A picture and the log of a window that does not do what it should, beside the words.
failWithWindow() {
    import -window root "$work/failure.png" || true
    fail "$1; its log: $(readLog)"
}

escape() {
    isGone "$title" && return
    xdotool windowfocus --sync "$(findWindow "$title")" key Escape
    waitFor 10 isGone "$title"
}

# A key can get lost between the X server and Wine, so it is pressed again. That a window without a
# job closes at the first Escape is TabDialogTest's matter.
closeWindow() {
    waitFor 60 escape || failWithWindow "the window does not close"
    wait "$window" || fail "the program ends with $?: $(cat window.log)"
    window=
    [ ! -s window.log ] || fail "the program complains: $(cat window.log)"
}

# useWindow NAME SAVE LABEL: what a user does on a first evening. NAME says which reader it is and
# begins the names of the files; the cartridge keeps its save in SAVE, which holds old.sav; the
# reader's drive has that LABEL.
useWindow() {
    openWindow "$wine" "$programs/gbdriver.exe"
    press $infoButton
    expectLog 1 "RAM Size:"
    sameLines "$(expectedReport "$3")" "$(reportIn "$log")" "$1, window: report"
    # The report has set system, mapper and sizes.
    runJob $dumpButton "Read ROM to..." "$1-rom.gb"
    same cart.gb "$1-rom.gb" "$1, window: dump"
    runJob $readRamButton "Read save to..." "$1-old.sav"
    same old.sav "$1-old.sav" "$1, window: save read"
    runJob $writeRamButton "Get Save File." new.sav
    runJob $readRamButton "Read save to..." "$1-new.sav"
    same new.sav "$1-new.sav" "$1, window: save written and read back"
    runJob $flashButton "Get ROM File." flashed.gb
    holds "$log" "Flash chip is 8bit width" "$1, window: flash chip found"
    import -window root "$1-window.png"
    runJob $dumpButton "Read ROM to..." "$1-chip.gb"
    same chip.gb "$1-chip.gb" "$1, window: flash chip written"
    closeWindow
    waitFor 60 cmp "$2" new.sav || fail "$1, window: the cartridge does not keep the save"
    ok "$1, window: save kept, window closed"
}
