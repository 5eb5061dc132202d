#!/usr/bin/env bash
# A note made with keys alone, edited by a double click, deleted: each step is seen in the file.
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

# Colours on the screen: a yellow note's mark.
readonly kYellowNote=FFE765

titles() { jotctl list "$notes" --json | python3 -c 'import json, sys; print("|".join(n["title"] for n in json.load(sys.stdin)))'; }
titles_are() { [ "$(titles)" = "$1" ]; }
field_is() { [ "$(jotctl list "$notes" --json | python3 -c 'import json, sys; print(json.load(sys.stdin)[0][sys.argv[1]])' "$1")" = "$2" ]; }

notes=$work/notes.jot
start_screen
jotctl new "$notes"
start_jotlet "$notes"
titles_are "" || fail "the file is not empty at the start"

with_new_window xdotool key Insert
xdotool type --delay 20 "two bottles"
xdotool key alt+t ctrl+a
xdotool type --delay 20 "Milk"
until_closed xdotool key Return
wait_for "note made by keys" titles_are "Milk"
field_is text "two bottles" || fail "the text differs from what was typed"

wait_for "note on the board" has_colour $kYellowNote
read -r x y < <(at_colour $kYellowNote)
xdotool mousemove "$x" $((y + 20))
with_new_window xdotool click --repeat 2 --delay 60 1
xdotool key ctrl+End
xdotool type --delay 20 " and bread"
xdotool key alt+t
until_closed xdotool key Return
wait_for "edited text" field_is text "two bottles and bread"
titles_are "Milk" || fail "editing changed the title"
[ "$(jotctl info "$notes" --json | python3 -c 'import json, sys; print(json.load(sys.stdin)["locked"])')" = 0 ] ||
    fail "the edited note is still locked"

with_new_window xdotool key Delete
until_closed xdotool key alt+n
titles_are "Milk" || fail "a No deleted the note"
with_new_window xdotool key Delete
until_closed xdotool key alt+y
wait_for "deletion" titles_are ""

xdotool key ctrl+z
wait_for "undone deletion" titles_are "Milk"
stop_jotlet
titles_are "Milk" || fail "the note is gone after the end"
