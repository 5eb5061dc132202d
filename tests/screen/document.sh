#!/usr/bin/env bash
# The document's life as a user sees it: New, Save As, Open with passwords, Network Passwords, Compact, options,
# repair after a kill.
. "$(dirname "$0")/lib.sh"

info_says() { "$CONTROL" info "$1" --json | grep -q "\"$2\": *$3\b"; }
default_is() { [ "$(basename "$(setting DefaulFile)")" = "$1" ]; }
sound_is() { [ "$(suite_setting Sound | tail -n 1)" = "$1" ]; }
# From the File menu by mnemonics; where two entries share one, Return takes the one that it led to.
file_menu() {
    pops_up press alt+f
    press "$@"
}
# enter TEXT: in place of what stands in the field with the keys.
enter() {
    press ctrl+a
    type_text "$1"
    press Return
}
type_passwords() {
    type_text "$1"
    press Tab Tab
    type_text "$2"
    press Return
}

start_screen
new_program
start_copy
check "the first run makes its file with four notes" info_says "$WORKS/jotlet.jot" live 4

opens press ctrl+n
closes enter "plans.txt"
check "a name with an extension keeps it" title_is "Jotlet : plans.txt.jot"
check "the new file is the next default" default_is plans.txt.jot

opens file_menu s Return
closes enter "$WORKS/copy.jot"
check "Save As makes the copy" test -s "$WORKS/copy.jot"
check "and goes on with the old file" title_is "Jotlet : plans.txt.jot"
check "the copy holds the notes, free of counters" info_says "$WORKS/copy.jot" freeSlots 0

printf 'boss\n\nguest\n' | "$CONTROL" passwd "$WORKS/copy.jot" >/dev/null 2>&1
open_copy() {
    opens press ctrl+o
    opens enter "$WORKS/copy.jot"
    "$1" enter "$2"
}
open_copy opens wrong
closes press Return
check "a wrong password leaves the open file" title_is "Jotlet : plans.txt.jot"
open_copy closes guest
check "the Reader's password opens it" title_is "Jotlet : copy.jot"
opens file_menu a
check "a Reader may not set passwords" no_window "Network Passwords"
closes press Return
open_copy closes boss

opens file_menu a
opens enter "chief"
opens type_passwords "chef" "guest"
opens press Return
closes type_passwords "chief" "guest"
check "the new Owner's password holds" env JOTLET_PASSWORD=chief "$CONTROL" list "$WORKS/copy.jot"

opens file_menu m
opens enter "$WORKS/copy.jot"
closes press Return
opens file_menu m
closes enter "$WORKS/jotlet.jot"
check "another file is compacted and keeps its notes" info_says "$WORKS/jotlet.jot" live 4

# Options, with a second copy running beside.
first=$PID
firstWindow=$WINDOW
start_copy "$WORKS/jotlet.jot"
second=$PID
switch_to "$firstWindow" "$first"
opens file_menu p p Return
press space
closes press Return
check "the options are stored" sound_is 1

# Killed, the next start repairs the file.
kill -KILL "$first" "$second"
await "end of the copies" gone "$first"
await "end of the copies" gone "$second"
sed -i "s|^DefaulFile=.*|DefaulFile=$WORKS/jotlet.jot|" "${PROGRAM%.*}.ini"
start_copy
check "after a kill the file opens again" title_is "Jotlet : jotlet.jot"
check "repaired: this copy alone has it open" info_says "$WORKS/jotlet.jot" openCount 1
end_copy
check "and closed cleanly" info_says "$WORKS/jotlet.jot" openCount 0
finish
