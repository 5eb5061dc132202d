#!/usr/bin/env bash
# A note made with keys alone, edited by a double click, deleted: each step is seen in the file.
. "$(dirname "${BASH_SOURCE[0]}")/support/notes.sh"

# Colours on the screen: a yellow note's mark.
readonly kYellowNote=FFE765

titles_are() { is "$notes" "'|'.join(n['title'] for n in notes)" "$1"; }
text_is() { is "$notes" "notes[0]['text']" "$1"; }

begin
start_copy "$notes"
titles_are "" || fail "the file is not empty at the start"

opens xdotool key Insert
xdotool type --delay 20 "two bottles"
xdotool key alt+t ctrl+a
xdotool type --delay 20 "Milk"
closes xdotool key Return
await "note made by keys" titles_are "Milk"
text_is "two bottles" || fail "the text differs from what was typed"

await "note on the board" has_colour $kYellowNote
read -r x y < <(at_colour $kYellowNote)
xdotool mousemove "$x" $((y + 20))
opens xdotool mousedown 1 mouseup 1 mousedown 1 mouseup 1
xdotool key ctrl+End
xdotool type --delay 20 " and bread"
xdotool key alt+t
closes xdotool key Return
await "edited text" text_is "two bottles and bread"
titles_are "Milk" || fail "editing changed the title"
await "note given back" is "$notes" "notes[0]['locked']" False

opens xdotool key Delete
closes xdotool key alt+n
titles_are "Milk" || fail "a No deleted the note"
opens xdotool key Delete
closes xdotool key alt+y
await "deletion" titles_are ""

xdotool key ctrl+z
await "undone deletion" titles_are "Milk"
end_copy
titles_are "Milk" || fail "the note is gone after the end"
