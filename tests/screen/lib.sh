# What the tests on a real display share. Source it first; everything started here ends with the script.
#
#   start_screen              a virtual display with a window manager; sets DISPLAY
#   new_program               a fresh program folder with private data and runtime folders; sets PROGRAM and WORKS
#   start_copy [FILE]         starts the program; waits for its window; sets WINDOW and PID
#   end_copy                  closes the window as a user does and waits for the process
#   wait_for SECONDS WHAT COMMAND...    until the command succeeds, else the test fails saying WHAT
#   window_named NAME         number of the visible window with that title (a pattern)
#   pixel X Y                 colour of a pixel of WINDOW, as RRGGBB
#   press KEYS..., type_text TEXT, click X Y, double_click X Y, right_click X Y      in WINDOW's coordinates
#   setting KEY, suite_setting KEY      a value of the section "Preference"
#   check WHAT COMMAND...     says whether the command succeeded and counts
#   finish                    the result of the script
set -uo pipefail

BIN=${JOTLET_BIN:?the folder of the built program}
SCRATCH=$(mktemp -d "${TMPDIR:-/tmp}/jotlet-screen-XXXXXX")
started=()
failures=0
checks=0

# Ends only what was started here, last first.
end_all() {
    local i
    for ((i = ${#started[@]} - 1; i >= 0; i--)); do
        kill "${started[i]}" 2>/dev/null || continue
        for _ in $(seq 40); do kill -0 "${started[i]}" 2>/dev/null || break; sleep 0.05; done
        kill -KILL "${started[i]}" 2>/dev/null || true
    done
    wait 2>/dev/null
    rm -rf "$SCRATCH"
}
trap end_all EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

say() { printf '%s\n' "$*"; }
fail() {
    say "FAILED: $*"
    [ -z "${JOTLET_SHOTS:-}" ] || import -window root "$JOTLET_SHOTS/$(basename "$0" .sh)-failed.png" 2>/dev/null
    exit 1
}
skip() { say "skipped: $*"; exit 77; }

for tool in Xvfb openbox xdotool import convert; do
    command -v $tool >/dev/null || skip "$tool is not installed"
done

wait_for() {
    local end=$((SECONDS + $1)) what=$2
    shift 2
    until "$@" >/dev/null 2>&1; do
        [ $SECONDS -le $end ] || fail "no $what in time"
        sleep 0.05
    done
}

start_screen() {
    Xvfb -displayfd 3 -screen 0 "${1:-1280x800}x24" -nolisten tcp 3>"$SCRATCH/display" 2>"$SCRATCH/xvfb.log" &
    started+=($!)
    wait_for 10 "display" test -s "$SCRATCH/display"
    DISPLAY=:$(cat "$SCRATCH/display")
    export DISPLAY QT_QPA_PLATFORM=xcb
    unset WAYLAND_DISPLAY
    openbox >"$SCRATCH/openbox.log" 2>&1 &
    started+=($!)
    wait_for 10 "window manager" xdotool get_num_desktops
}

new_program() {
    local home=$SCRATCH/home$RANDOM
    mkdir -p "$home/run" "$home/data"
    chmod 700 "$home/run"
    cp -r "$BIN" "$home/program"
    rm -rf "$home/program/Works" "$home/program/jotlet.ini"
    touch "$home/program/portable"
    PROGRAM=$home/program/jotlet
    CONTROL=$home/program/jotctl
    WORKS=$home/program/Works
    export HOME=$home XDG_DATA_HOME=$home/data XDG_RUNTIME_DIR=$home/run XDG_CONFIG_HOME=$home/config
    printf 'Splash=0\nSound=0\nAnnimation=0\n' >>"$home/program/Pinwell.ini"
}

setting() { sed -n "s/^$1=//p" "${PROGRAM%.*}.ini" 2>/dev/null | tr -d '\r'; }
suite_setting() { sed -n "s/^$1=//p" "$(dirname "$PROGRAM")/Pinwell.ini" | tr -d '\r'; }

window_named() { xdotool search --onlyvisible --name "$1" 2>/dev/null | tail -n 1 | grep .; }
window_of() { xdotool search --all --onlyvisible --pid "$1" --name "${2:-^Jotlet : }" 2>/dev/null | tail -n 1 | grep .; }
gone() { ! kill -0 "$1" 2>/dev/null; }

# Starts the program without waiting for its board; sets PID.
launch() {
    "$PROGRAM" "$@" >"$SCRATCH/program.log" 2>&1 &
    PID=$!
    started+=("$PID")
}
start_copy() {
    launch "$@"
    wait_for 20 "window of the program" window_of "$PID"
    WINDOW=$(window_of "$PID")
    xdotool windowactivate --sync "$WINDOW" 2>/dev/null || true
}
end_copy() {
    xdotool windowactivate --sync "$WINDOW" 2>/dev/null || true
    press alt+F4
    wait_for 10 "end of the program" gone "$PID"
}

place_of() {
    xdotool getwindowgeometry "$WINDOW" |
        sed -n 's/.*Position: \(-*[0-9]*\),\(-*[0-9]*\).*/\1 \2/p; s/.*Geometry: \([0-9]*\)x\([0-9]*\).*/\1 \2/p' | xargs
}
size_is() { [ "$(place_of | cut -d' ' -f3,4)" = "$1 $2" ]; }
title_is() { [ "$(xdotool getwindowname "$WINDOW")" = "$1" ]; }

pixel() {
    local place
    read -ra place <<<"$(place_of)"
    import -window root -crop "1x1+$((place[0] + $1))+$((place[1] + $2))" +repage -depth 8 rgb:- | od -An -tx1 | tr -d ' \n'
}
pixel_is() { [ "$(pixel "$1" "$2")" = "$3" ]; }

press() { xdotool key --clearmodifiers "$@"; }
type_text() { xdotool type --clearmodifiers --delay 5 -- "$1"; }
point() { xdotool mousemove --sync --window "$WINDOW" "$1" "$2"; }
click() { point "$1" "$2"; xdotool click 1; }
right_click() { point "$1" "$2"; xdotool click 3; }
double_click() { point "$1" "$2"; xdotool click --repeat 2 --delay 40 1; }

# Another window of the program becomes WINDOW, in the foreground and with the focus.
switch_to() {
    WINDOW=$1
    xdotool windowactivate --sync "$WINDOW" 2>/dev/null || true
    wait_board "switch"
    wait_for 5 "focus" has_focus
    sleep 0.2
}
has_focus() { [ "$(xdotool getwindowfocus 2>/dev/null)" = "$WINDOW" ]; }

# The window of a dialog, in DIALOG, focused.
wait_dialog() {
    wait_for 10 "dialog \"$1\"" window_named "$1"
    DIALOG=$(window_named "$1")
    xdotool windowactivate --sync "$DIALOG" 2>/dev/null || true
}
# Any dialog or box of the program, focused.
dialog_up() { local active; active=$(xdotool getactivewindow 2>/dev/null) && [ -n "$active" ] && [ "$active" != "$WINDOW" ]; }
wait_any_dialog() { wait_for 10 "dialog${1:+ ($1)}" dialog_up; sleep 0.2; }
board_active() { [ "$(xdotool getactivewindow 2>/dev/null)" = "$WINDOW" ]; }
wait_board() { wait_for 10 "return to the board${1:+ ($1)}" board_active; }
no_dialog() { ! window_named "$1"; }

check() {
    local what=$1
    shift
    checks=$((checks + 1))
    local end=$((SECONDS + 5))
    until "$@" >/dev/null 2>&1; do
        if [ $SECONDS -gt $end ]; then
            failures=$((failures + 1))
            say "FAILED: $what"
            [ -z "${JOTLET_SHOTS:-}" ] || import -window root "$JOTLET_SHOTS/$(basename "$0" .sh)-$checks.png"
            return
        fi
        sleep 0.05
    done
    say "ok: $what"
}
finish() {
    say "$checks checks, $failures failed"
    [ $failures -eq 0 ] && [ $checks -gt 0 ]
    exit
}
