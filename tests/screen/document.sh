#!/usr/bin/env bash
# The document's life as a user sees it: New, Save As, Open with passwords, Network Passwords, Compact, options,
# repair after a kill.
. "$(dirname "$0")/lib.sh"

live_notes() { "$CONTROL" info "$1" --json 2>/dev/null | tr ',{' '\n\n' | sed -n 's/.*"live": *\([0-9]*\).*/\1/p'; }
# From the File menu by mnemonics; where two entries share one, Return takes the one that it led to.
file_menu() { press alt+f; sleep 0.4; press "$@"; }

start_screen
new_program
start_copy
check "the first run makes its file with four notes" test "$(live_notes "$WORKS/jotlet.jot")" = 4

press ctrl+n
wait_dialog "Create New File"
type_text "plans.txt"
press Return
wait_board "new file"
check "a name with an extension keeps it" title_is "Jotlet : plans.txt.jot"
check "the new file is the next default" test "$(basename "$(setting DefaulFile)")" = plans.txt.jot

file_menu s Return
wait_any_dialog "save as"
press ctrl+a
type_text "$WORKS/copy.jot"
press Return
check "Save As makes the copy" test -s "$WORKS/copy.jot"
wait_board "save as"
check "and goes on with the old file" title_is "Jotlet : plans.txt.jot"
check "the copy holds the notes, free of counters" sh -c "'$CONTROL' info '$WORKS/copy.jot' --json | grep -q '\"freeSlots\": *0'"

printf 'boss\n\nguest\n' | "$CONTROL" passwd "$WORKS/copy.jot" >/dev/null 2>&1
open_copy() {
    press ctrl+o
    wait_any_dialog "open"
    press ctrl+a
    type_text "$WORKS/copy.jot"
    press Return
    wait_dialog "copy.jot"
    type_text "$1"
    press Return
}
open_copy wrong
wait_any_dialog "wrong password"
sleep 0.3
press Return
wait_board "wrong password"
check "a wrong password leaves the open file" title_is "Jotlet : plans.txt.jot"
open_copy guest
wait_board "reader"
check "the Reader's password opens it" title_is "Jotlet : copy.jot"
file_menu a
wait_any_dialog "no permission"
check "a Reader may not set passwords" no_dialog "Network Passwords"
press Return
wait_board "no permission"
open_copy boss
wait_board "owner"

file_menu a
wait_dialog "Network Passwords"
press ctrl+a
type_text "chief"
press Return
wait_dialog "Verify Network Passwords"
type_text "chef"
press Tab Tab
type_text "guest"
press Return
sleep 0.5
wait_any_dialog "mismatch"
press Return
wait_dialog "Verify Network Passwords"
type_text "chief"
press Tab Tab
type_text "guest"
press Return
wait_board "passwords"
JOTLET_PASSWORD=chief
export JOTLET_PASSWORD
check "the new Owner's password holds" "$CONTROL" list "$WORKS/copy.jot"
unset JOTLET_PASSWORD

file_menu m
wait_any_dialog "compact"
press ctrl+a
type_text "$WORKS/copy.jot"
press Return
sleep 0.5
wait_any_dialog "in use"
press Return
wait_board "compact of the open file"
file_menu m
wait_any_dialog "compact"
press ctrl+a
type_text "$WORKS/jotlet.jot"
press Return
wait_board "compact"
check "another file is compacted and keeps its notes" test "$(live_notes "$WORKS/jotlet.jot")" = 4

# Options, with a second copy running beside.
first=$PID
firstWindow=$WINDOW
start_copy "$WORKS/jotlet.jot"
switch_to "$firstWindow"
file_menu p p Return
wait_dialog "General Options"
press space
press Return
wait_board "options"
check "the options are stored" test "$(suite_setting Sound | tail -n 1)" = 1

# Killed, the next start repairs the file.
kill -KILL "$first" "$PID"
wait_for 10 "end of the copies" gone "$first"
wait_for 10 "end of the copies" gone "$PID"
sed -i "s|^DefaulFile=.*|DefaulFile=$WORKS/jotlet.jot|" "${PROGRAM%.*}.ini"
start_copy
check "after a kill the file opens again" title_is "Jotlet : jotlet.jot"
check "repaired: this copy alone has it open" sh -c "'$CONTROL' info '$WORKS/jotlet.jot' --json | grep -q '\"openCount\": *1'"
end_copy
check "and closed cleanly" sh -c "'$CONTROL' info '$WORKS/jotlet.jot' --json | grep -q '\"openCount\": *0'"
finish
