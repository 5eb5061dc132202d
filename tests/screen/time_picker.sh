#!/usr/bin/env bash
# The time picker under a real mouse and real keys: the thumb dragged and stepped, the list folded out, a time alone.
# Where things stand is worked out here from the window's size.
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

# open_picker span|single FROM TO: its track's place (left, top, width, scale) in screen pixels.
open_picker() {
    from=$2
    "$BIN/time_picker_host" "$@" >"$SCRATCH/answer" 2>>"$SCRATCH/program.log" &
    picker=$!
    started+=("$picker")
    await "time picker" has_picker
    await "place of the time picker" stands_still
    eval "$(xdotool getwindowgeometry --shell "$window")"
    # Its own corner, decoration apart, is where the mouse says that it is.
    xdotool mousemove --window "$window" 0 0
    eval "$(xdotool getmouselocation --shell)"
    left=$((X + 3)) top=$((Y + 2)) width=$((WIDTH - 5))
    scale=$((HEIGHT - 38 - 20 - 38))
    middle=$((left + width / 2))
}
has_picker() {
    window=$(xdotool search --all --onlyvisible --pid "$picker" --name '^Time$') &&
        [ "$(xdotool getactivewindow)" = "$window" ]
}
# The window manager may still be moving a window that shows already.
stands_still() {
    local before
    before=$(xdotool getwindowgeometry --shell "$window")
    sleep 0.3
    [ "$(xdotool getwindowgeometry --shell "$window")" = "$before" ]
}
slot() { echo $((10#${1%:*} * 12 + 10#${1#*:} / 5)); }
time_of() { printf '%02d:%02d' $(($1 / 12)) $(($1 % 12 * 5)); }
readonly kLatest=276
# Top of the thumb at a time, below the track's top.
thumb() { echo $((20 + ($(slot "$1") - $(slot "$from")) * scale / (kLatest - $(slot "$from")))); }
# The time that a place on the scale, in pixels from its top, stands for.
time_at() {
    if [ "$1" -lt 1 ]; then echo "$from"
    elif [ "$1" -ge $scale ]; then echo 23:00
    else time_of $(($(slot "$from") + 1 + $1 * (kLatest - $(slot "$from")) / scale)); fi
}
# First row below the scale's top that shows the thumb's red, from the track's top.
red_row() {
    import -silent -window root -crop "40x$((scale + 40))+$((middle - 20))+$((top + 25))" +repage txt:- |
        awk -F'[,: ]+' '/ red$/ { print $2 + 25; exit }'
}
thumb_stands_at() { [ "$(red_row)" = "$1" ]; }
mouse_stands_at() {
    local X Y SCREEN WINDOW
    eval "$(xdotool getmouselocation --shell)"
    [ "$X $Y" = "$1 $2" ]
}
has_ended() { ! kill -0 "$picker" 2>/dev/null; }
answer_is() {
    await "end of the picker" has_ended
    [ "$(cat "$SCRATCH/answer")" = "$1" ] || fail "the picker said '$(cat "$SCRATCH/answer")' instead of '$1'"
}
hold_thumb() {
    xdotool mousemove $middle $((top + $(thumb "$1") + 10)) mousedown 1
    await "cursor on the held thumb" mouse_stands_at $middle $((top + $(thumb "$1")))
}

start_screen

# Dragged in the middle of the scale: the thumb goes to the step below the mouse, the mouse to the thumb's new place.
open_picker span 07:00 09:00
await "thumb at 9:00" thumb_stands_at "$(thumb 09:00)"
for place in $((scale / 3)) $((scale - 20)) 31; do
    hold_thumb "${held:-09:00}"
    xdotool mousemove $((middle + 4)) $((top + 20 + place))
    held=$(time_at "$place")
    await "thumb at $held" thumb_stands_at "$(thumb "$held")"
    xdotool mouseup 1
    await "mouse on the thumb at $held" mouse_stands_at $middle $((top + $(thumb "$held")))
done
xdotool key Return
answer_is "ok 07:00 $held"

# To both ends, and beside the thumb.
open_picker span 08:00 12:00
hold_thumb 12:00
xdotool mousemove $middle $((top + 20 + scale)) mouseup 1
await "thumb at the end" thumb_stands_at "$(thumb 23:00)"
xdotool mousemove $middle $((top + $(thumb 23:00) - 8)) mousedown 1 mousemove $middle $((top + 60)) mouseup 1
xdotool mousemove $middle $((top + $(thumb 23:00) + 26)) mousedown 1 mousemove $middle $((top + 60)) mouseup 1
thumb_stands_at "$(thumb 23:00)" || fail "a press beside the thumb moved it"
# Keys: an hour back, three steps on.
xdotool key Prior Down Down Down
await "thumb at 22:15" thumb_stands_at "$(thumb 22:15)"
xdotool key Return
answer_is "ok 08:00 22:15"

open_picker span 08:00 12:00
hold_thumb 12:00
xdotool mousemove $middle $((top + 20)) mouseup 1
await "mouse at the start" mouse_stands_at $middle $((top + 20))
xdotool key Return
answer_is "ok 08:00 08:00"

# The list folds out of its button and takes a time; a press on the scale only folds it in.
open_picker span 07:00 07:00
button_x=$((left + width / 2 - 24 + 5)) button_y=$((top + 8 + 5))
list_left=$((left + width / 2 - 29)) list_top=$((top + 20))
# Dark enough for a letter, however its edges are smoothed.
has_list_text() {
    local darkest
    darkest=$(import -silent -window root -crop "50x24+$((list_left + 5))+$((list_top + 100))" -colorspace gray \
        -format '%[fx:round(100*minima)]' info:)
    [ "$darkest" -lt 40 ]
}
list_is_in() { ! has_list_text; }
xdotool mousemove $button_x $button_y click 1
await "list" has_list_text
xdotool mousemove $((left + 4)) $((top + 100)) click 1
await "list folded in" list_is_in
xdotool mousemove $button_x $button_y click 1
await "list again" has_list_text
xdotool mousemove $((list_left + 35)) $((list_top + 1 + 6 * 12 + 5)) click 1
await "list folded in by the choice" list_is_in
await "thumb at 7:30" thumb_stands_at "$(thumb 07:30)"
xdotool key Return
answer_is "ok 07:00 07:30"

# A time alone: a click chooses, a double click is OK, Escape gives nothing.
open_picker single 07:00 07:00
list_left=$((left + width / 2 - 29)) list_top=$((top + 20))
await "list of times" has_list_text
xdotool mousemove $((list_left + 35)) $((list_top + 1 + 3 * 12 + 5)) click 1
sleep 0.5 # longer than a double click may take
! has_ended || fail "a click closed the picker"
xdotool mousemove $((list_left + 35)) $((list_top + 1 + 4 * 12 + 5)) click --repeat 2 --delay 60 1
await "end of the picker" has_ended
grep -q ' 07:20$' "$SCRATCH/answer" || fail "the double click gave '$(cat "$SCRATCH/answer")'"

open_picker single 07:00 15:00
xdotool key Escape
answer_is cancel
