#!/usr/bin/env bash
# A note dragged by a real mouse: to a day, with Ctrl, to the bin, to the chosen day and past every target, with the
# cursor that each place calls for.
. "$(dirname "${BASH_SOURCE[0]}")/support/notes.sh"

# Colours on the screen: marks of notes, the chosen day, the inside of the empty bin.
readonly kGreenNote=76E476 kChosenDay=E1E2B2 kEmptyBin=5A2C08
readonly kDayHeight=14

count_is() { is "$notes" "len(notes)" "$1"; }
dates_are() { is "$notes" "' '.join(sorted(n['date'] for n in notes))" "$1"; }

# drag_to X Y [KEY]: from the note to a point, with a key held from there on; the button stays down. Each time it grabs
# the note at another place: two quick presses at one place are a double click.
grab=0
drag_to() {
    read -r x y < <(at_colour $kGreenNote)
    grab=$((14 - grab))
    xdotool mousemove $((x + grab)) $((y + 20)) mousedown 1 mousemove_relative 4 4
    [ -z "${3:-}" ] || xdotool keydown "$3"
    xdotool mousemove "$1" "$2"
    held=${3:-}
}
drop() {
    xdotool mouseup 1
    [ -z "$held" ] || xdotool keyup "$held"
}
shows_today() { [ "$(at_colour $kChosenDay)" = "$chosen_day" ] && has_colour $kGreenNote; }
shows_other_day() { local day; day=$(at_colour $kChosenDay) && [ "$day" != "$chosen_day" ] && has_colour $kGreenNote; }

# A hand is never still, and a key shows at the next move.
step=1
tremble() {
    step=$((-step))
    xdotool mousemove_relative -- $step 0
    sleep 0.02
}
looks() { tremble; [ "$(cursor_look)" = "$1" ]; }
looks_other_than() {
    local look now
    tremble
    now=$(cursor_look)
    for look in "$@"; do [ "$now" != "$look" ] || return 1; done
}

begin
cursor_look >/dev/null 2>&1 || skip "the display does not tell the look of its cursor"
jotctl add "$notes" --title Milk --text "two bottles" --colour green >/dev/null
today=$(ask "$notes" "notes[0]['date']")
start_copy "$notes"
await "note on the board" has_colour $kGreenNote

# By the keyboard to the tab "Date": past the letters and the bin.
xdotool key Tab Tab Tab Right
await "calendar" has_colour $kChosenDay
await "note of today" has_colour $kGreenNote

# Today, a week before or after it, and the bin.
chosen_day=$(at_colour $kChosenDay)
read -r todayX todayY <<<"$chosen_day"
todayX=$((todayX + 4)) todayY=$((todayY + 4))
if [ "$(date -d "$today" +%-d)" -gt 7 ]; then week=-1; else week=1; fi
otherY=$((todayY + week * kDayHeight))
other=$(date -d "$today $((week * 7)) days" +%F)
read -r binX binY < <(at_colour $kEmptyBin)
binX=$((binX + 6)) binY=$((binY + 10))
besideX=$binX besideY=$((binY - 60))

plain=$(cursor_look)
read -r x y < <(at_colour $kGreenNote)
xdotool mousemove "$x" $((y + 20))
await "cursor over a note" looks_other_than "$plain"
hand=$(cursor_look)
drag_to $besideX $besideY
await "cursor off every target" looks_other_than "$plain" "$hand"
stop=$(cursor_look)
drop
drag_to $todayX $otherY
await "cursor over a day" looks_other_than "$plain" "$hand" "$stop"
move=$(cursor_look)
xdotool keydown ctrl
await "cursor with Ctrl" looks_other_than "$plain" "$hand" "$stop" "$move"
copy=$(cursor_look)
xdotool keyup ctrl
await "cursor without Ctrl again" looks "$move"
xdotool mousemove $binX $binY
await "cursor over the bin" looks "$move"
xdotool mousemove $besideX $besideY
await "cursor off every target again" looks "$stop"
drop
dates_are "$today" || fail "a drop on nothing changed the note"

drag_to $todayX $todayY
await "cursor over the chosen day" looks "$move"
drop
drag_to $todayX $todayY ctrl
await "cursor over the chosen day with Ctrl" looks "$copy"
drop
drag_to $binX $binY ctrl
await "cursor over the bin with Ctrl" looks "$copy"
drop
dates_are "$today" || fail "a drop on the chosen day, or on the bin with Ctrl, changed the file"

drag_to $todayX $otherY ctrl
await "cursor before the copy" looks "$copy"
drop
await "copy" dates_are "$(printf '%s\n' "$today" "$other" | sort | paste -sd ' ')"
# The board shows the other day now; its note goes back to today.
await "copy on the board" shows_other_day
drag_to $todayX $todayY
await "cursor before the move" looks "$move"
drop
await "moved copy" dates_are "$today $today"
await "both notes on the board" shows_today
drag_to $binX $binY
await "cursor before the deletion" looks "$move"
drop
await "deletion by a drop" count_is 1
await "plain cursor" looks_other_than "$move" "$copy" "$stop"
end_copy

# On a screen of another scale the hand is as large as all else and points with the tip of its finger.
hand_is() { [ "$(cursor_look | cut -d' ' -f1)" = "$1" ]; }
for scale in "1 32x32+10+1" "1.25 40x40+13+1" "2 64x64+20+2"; do
    QT_SCALE_FACTOR=${scale% *} start_copy "$notes"
    await "note on the board" has_colour $kGreenNote
    read -r x y < <(at_colour $kGreenNote)
    xdotool mousemove "$x" $((y + 40))
    await "hand for the scale ${scale% *}" hand_is "${scale#* }"
    end_copy
done
