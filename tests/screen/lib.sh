# What the tests on a virtual display share; each sources it with the folder of the built programs as first argument.
# A test gets a display with a window manager, a copy of the program folder and settings folders of its own, all gone
# at its end. It waits for conditions, never for a time.

set -euo pipefail
programs=$1
work=$(mktemp -d)
readonly kScreenWidth=1024
pids=()

# Ends only what the test started, last first, so that the board saves its state before its display goes.
clean_up() {
    local i
    for ((i = ${#pids[@]} - 1; i >= 0; i--)); do
        kill "${pids[i]}" 2>/dev/null || continue
        for _ in $(seq 50); do kill -0 "${pids[i]}" 2>/dev/null || break; sleep 0.1; done
        kill -KILL "${pids[i]}" 2>/dev/null || true
    done
    rm -rf "$work"
}
trap clean_up EXIT

# JOTLET_SCREEN_SHOTS=FOLDER keeps a picture of the screen at each failure.
fail() {
    printf 'FAILED: %s\n' "$1" >&2
    [ ! -s "$work/jotlet.log" ] || tail -n 20 "$work/jotlet.log" >&2
    [ -z "${JOTLET_SCREEN_SHOTS:-}" ] || shot "$JOTLET_SCREEN_SHOTS/$(basename "$0" .sh).png"
    exit 1
}

shot() { import -silent -window root "$1"; }

# wait_for WHAT COMMAND...: until the command succeeds; the test fails when it does not within JOTLET_PATIENCE seconds.
wait_for() {
    local what=$1 end=$((SECONDS + ${JOTLET_PATIENCE:-30}))
    shift
    until "$@" >/dev/null 2>&1; do
        [ $SECONDS -lt $end ] || fail "waited in vain for: $what"
        sleep 0.05
    done
}

start_screen() {
    local tool
    for tool in Xvfb openbox xdotool import python3; do
        command -v $tool >/dev/null || { echo "skipped: $tool is not installed"; exit 77; }
    done
    Xvfb -displayfd 3 -screen 0 ${kScreenWidth}x768x24 -nolisten tcp 3>"$work/display" >"$work/xvfb.log" 2>&1 &
    pids+=($!)
    wait_for "virtual display" test -s "$work/display"
    DISPLAY=:$(cat "$work/display")
    export DISPLAY QT_QPA_PLATFORM=xcb
    unset WAYLAND_DISPLAY
    export HOME=$work/home XDG_DATA_HOME=$work/data XDG_CONFIG_HOME=$work/config XDG_CACHE_HOME=$work/cache
    export XDG_RUNTIME_DIR=$work/run
    mkdir -p "$HOME" "$XDG_DATA_HOME" "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME" "$XDG_RUNTIME_DIR"
    chmod 700 "$XDG_RUNTIME_DIR"
    openbox --sm-disable >"$work/openbox.log" 2>&1 &
    pids+=($!)
    wait_for "window manager" xdotool get_num_desktops
    # The program folder, without the test programs.
    mkdir "$work/program"
    find "$programs" -mindepth 1 -maxdepth 1 ! -name '*_test' -exec cp -a {} "$work/program/" \;
}

jotctl() { "$work/program/jotctl" "$@"; }

# start_jotlet ARGUMENT...: starts a copy and waits for its board; `board` is its process, `frame` its window.
start_jotlet() {
    "$work/program/jotlet" "$@" >>"$work/jotlet.log" 2>&1 &
    board=$!
    pids+=("$board")
    wait_for "board" has_board
}
has_board() {
    local window name
    for window in $(xdotool search --onlyvisible --pid "$board"); do
        name=$(xdotool getwindowname "$window")
        case $name in 'Jotlet :'*) frame=$window; xdotool windowactivate --sync "$window" && return 0 ;; esac
    done
    return 1
}
stop_jotlet() {
    kill "$board"
    wait "$board" || true
}

# The windows of the running copy that are on view.
windows() { xdotool search --onlyvisible --pid "$board" 2>/dev/null | sort; }

# at_colour RRGGBB: where the first pixel of this colour stands on the screen, as "x y".
at_colour() {
    import -silent -window root -depth 8 rgb:- | python3 -c '
import sys
pixels, colour = sys.stdin.buffer.read(), bytes.fromhex(sys.argv[1])
at = pixels.find(colour)
while at % 3 and at >= 0:
    at = pixels.find(colour, at + 1)
if at < 0:
    sys.exit(1)
print(at // 3 % int(sys.argv[2]), at // 3 // int(sys.argv[2]))' "$1" $kScreenWidth
}
has_colour() { at_colour "$1" >/dev/null; }

# with_new_window COMMAND...: runs it and waits until the board has one window more and that is the active one.
with_new_window() {
    before=$(windows)
    "$@"
    wait_for "window after: $*" new_window_is_active
}
new_window_is_active() {
    local added
    added=$(comm -13 <(echo "$before") <(windows))
    [ -n "$added" ] && grep -qx "$(xdotool getactivewindow)" <<<"$added"
}
# until_closed COMMAND...: runs it and waits until the window that is active now has gone and the board has the keys.
until_closed() {
    closing=$(xdotool getactivewindow)
    "$@"
    wait_for "end of the window after: $*" has_closed
}
has_closed() { ! windows | grep -qx "$closing" && windows | grep -qx "$(xdotool getactivewindow)"; }
