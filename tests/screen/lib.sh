# What the tests on a real display share. Source it first; everything started here ends with the script.
#
#   start_screen              a virtual display with a window manager; sets DISPLAY
#   new_program               a fresh program folder with private data and runtime folders; sets PROGRAM and WORKS
#   start_copy [FILE]         starts the program; waits until its window has the focus; sets WINDOW and PID
#   switch_to WINDOW PID      another copy comes to the front
#   end_copy                  closes the window as a user does and waits for the process
#   await WHAT COMMAND...     until the command succeeds, else the test fails saying WHAT
#   opens COMMAND...          runs it and waits until a window that was not there before has the focus
#   pops_up COMMAND...        runs it and waits until there is a window more, with the focus or without: a menu
#   closes COMMAND...         runs it and waits until the window with the focus has gone and another one has it
#   pixel X Y                 colour of a pixel of WINDOW, as RRGGBB
#   press KEYS..., type_text TEXT, click X Y, double_click X Y, right_click X Y      in WINDOW's coordinates
#   setting KEY, suite_setting KEY      a value of the section "Preference"
#   check WHAT COMMAND...     says whether the command succeeded in time and counts
#   finish                    the result of the script
#
# The machine may be busy: nothing here waits a fixed time for something to happen, and every press is made only when
# what it is for has been seen.
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

await() {
    local end=$((SECONDS + ${JOTLET_PATIENCE:-30})) what=$1
    shift
    until "$@" >/dev/null 2>&1; do
        [ $SECONDS -le $end ] || fail "no $what in time"
        sleep 0.05
    done
}

start_screen() {
    # Without -noreset the first client that ends takes along whoever is just about to connect.
    Xvfb -displayfd 3 -screen 0 "${1:-1280x800}x24" -nolisten tcp -noreset 3>"$SCRATCH/display" 2>"$SCRATCH/xvfb.log" &
    started+=($!)
    await "display" test -s "$SCRATCH/display"
    DISPLAY=:$(cat "$SCRATCH/display")
    export DISPLAY QT_QPA_PLATFORM=xcb
    unset WAYLAND_DISPLAY
    manage
    await "window manager" managed
    xdotool mousemove 9999 9999
}
manage() {
    openbox >>"$SCRATCH/openbox.log" 2>&1 &
    manager=$!
    started+=("$manager")
}
# A display that is still coming up may turn the window manager away.
managed() {
    xdotool get_num_desktops && return
    kill -0 "$manager" || manage
    return 1
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
setting_is() { [ "$(setting "$1")" = "$2" ]; }
suite_setting() { sed -n "s/^$1=//p" "$(dirname "$PROGRAM")/Pinwell.ini" | tr -d '\r'; }

# The windows of the running copy that are on view.
windows() { xdotool search --onlyvisible --pid "$PID" 2>/dev/null | sort; }
window_of() { xdotool search --all --onlyvisible --pid "$1" --name '^Jotlet : ' 2>/dev/null | tail -n 1 | grep .; }
no_window() { ! xdotool search --onlyvisible --name "$1" 2>/dev/null | grep -q .; }
gone() { ! kill -0 "$1" 2>/dev/null; }

# Starts the program without waiting for its board; sets PID.
launch() {
    "$PROGRAM" "$@" >"$SCRATCH/program.log" 2>&1 &
    PID=$!
    started+=("$PID")
}
start_copy() {
    launch "$@"
    await "window of the program" window_of "$PID"
    switch_to "$(window_of "$PID")" "$PID"
}
switch_to() {
    WINDOW=$1 PID=$2
    xdotool windowactivate "$WINDOW" 2>/dev/null
    await "focus of the board" has_keys "$WINDOW"
}
end_copy() {
    switch_to "$WINDOW" "$PID"
    press alt+F4
    await "end of the program" gone "$PID"
}

# The window that is in front and has the keys.
with_keys() {
    local active
    active=$(xdotool getactivewindow 2>/dev/null) && [ "$(xdotool getwindowfocus 2>/dev/null)" = "$active" ] &&
        echo "$active"
}
has_keys() { [ "$(with_keys)" = "$1" ]; }
opens() {
    before=$(windows)
    "$@"
    await "window after: $*" new_window_has_keys
}
pops_up() {
    before=$(windows)
    "$@"
    await "menu after: $*" new_windows
}
closes() {
    closing=$(with_keys) || closing=none
    "$@"
    await "end of the window after: $*" has_closed
}
new_windows() { comm -13 <(echo "$before") <(windows) | grep .; }
new_window_has_keys() { new_windows | grep -qx "$(with_keys || echo none)"; }
has_closed() { windows >"$SCRATCH/windows" && ! grep -qx "$closing" "$SCRATCH/windows" &&
    grep -qx "$(with_keys || echo none)" "$SCRATCH/windows"; }

place_of() {
    xdotool getwindowgeometry "$WINDOW" |
        sed -n 's/.*Position: \(-*[0-9]*\),\(-*[0-9]*\).*/\1 \2/p; s/.*Geometry: \([0-9]*\)x\([0-9]*\).*/\1 \2/p' | xargs
}
place_is() { [ "$(place_of)" = "$1" ]; }
size_is() { [ "$(place_of | cut -d' ' -f3,4)" = "$1 $2" ]; }
title_is() { [ "$(xdotool getwindowname "$WINDOW")" = "$1" ]; }

pixel() {
    local place
    read -ra place <<<"$(place_of)"
    import -window root -crop "1x1+$((place[0] + $1))+$((place[1] + $2))" +repage -depth 8 rgb:- | od -An -tx1 | tr -d ' \n'
}
pixel_is() { [ "$(pixel "$1" "$2")" = "$3" ]; }

press() { xdotool key "$@"; }
type_text() { xdotool type --delay 5 -- "$1"; }
point() { xdotool mousemove --sync --window "$WINDOW" "$1" "$2"; }
click() { point "$1" "$2" && xdotool click 1; }
right_click() { point "$1" "$2" && xdotool click 3; }
# All at once, so that a busy machine does not make two clicks of it.
double_click() { point "$1" "$2" && xdotool mousedown 1 mouseup 1 mousedown 1 mouseup 1; }

check() {
    local what=$1
    shift
    checks=$((checks + 1))
    local end=$((SECONDS + ${JOTLET_PATIENCE:-30}))
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
