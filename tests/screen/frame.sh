#!/usr/bin/env bash
# The main window under a window manager: sizes, caption buttons, grip, place, copies, skins.
. "$(dirname "$0")/lib.sh"

start_screen
new_program
start_copy
check "the first start shows the example notes' file" title_is "Jotlet : jotlet.jot"
check "it opens in its small size" size_is 420 430

# Window coordinates of the caption buttons at the small size.
click 387 12
check "maximise makes it large" size_is 560 580
click 527 12
check "and small again" size_is 420 430
double_click 150 12
check "so does a double click on the title" size_is 560 580
double_click 150 12
check "and back" size_is 420 430

# pull X Y DX DY COMMAND...: holds the mouse there and draws it on until the command succeeds. A window manager that gets
# to know of the pull only after the release would never let go.
pull() {
    local x=$1 y=$2 dx=$3 dy=$4
    shift 4
    point "$x" "$y"
    xdotool mousedown 1
    await "effect of the pull" pulled_on "$dx" "$dy" "$@"
    xdotool mouseup 1
}
pulled_on() {
    local dx=$1 dy=$2
    shift 2
    "$@" || { xdotool mousemove_relative -- "$dx" "$dy"; sleep 0.1; "$@"; }
}

point 405 12
xdotool mousedown 1
point 200 200
xdotool mouseup 1
check "a close button left before the release does nothing" window_of "$PID"

grown() { local p; read -ra p <<<"$(place_of)"; [ "${p[2]}" -gt 440 ]; }
pull 414 424 5 5 grown
within() { local p; read -ra p <<<"$(place_of)"; [ "${p[2]}" -le 560 ] && [ "${p[3]}" -le 580 ]; }
check "the grip sizes it within the limits" within

read -ra before <<<"$(place_of)"
moved() { local p; read -ra p <<<"$(place_of)"; [ "${p[0]}" -gt $((before[0] + 20)) ]; }
pull 150 12 5 0 moved
on_line() { local p; read -ra p <<<"$(place_of)"; [ "${p[1]}" -eq "${before[1]}" ]; }
check "the caption moves it" on_line

place=$(place_of)
end_copy
check "its end is remembered" setting_is PaneId 1
start_copy
check "the place comes back" place_is "$place"

"$PROGRAM" >/dev/null 2>&1
check "a second start without a file ends at once with code 0" test $? -eq 0
first=$PID
firstWindow=$WINDOW
"$CONTROL" new "$WORKS/other.jot" --examples
start_copy "$WORKS/other.jot"
check "a start with a file runs beside it" title_is "Jotlet : other.jot"
check "the file of the command line is not the next default" test "$(basename "$(setting DefaulFile)")" = jotlet.jot

# A skin chosen in one copy changes both.
old=$(pixel 200 426)
pops_up right_click 12 400
press Down Return
chosen_skin() { [ -n "$(suite_setting CurrSkin)" ]; }
changed() { [ "$(pixel 200 426)" != "$old" ]; }
check "the skin popup changes this copy" changed
now=$(pixel 200 426)
switch_to "$firstWindow" "$first"
read -ra p <<<"$(place_of)"
check "and the other one" pixel_is 200 $((p[3] - 4)) "$now"
check "the choice is stored" chosen_skin

# Asked to end, it closes as by its button.
kill "$first"
await "end after a signal" gone "$first"
check "a file closed on request was closed cleanly" "$CONTROL" check "$WORKS/jotlet.jot"
finish
