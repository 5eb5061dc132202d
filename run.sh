#!/usr/bin/env bash
# Installs what is missing (Debian 12), builds Jotlet and starts it with the arguments given here, e.g. a note file.
# Where there is no display it starts a virtual one, opens the board there and saves a picture of it:
#   JOTLET_SCREENSHOT=FILE   where the picture goes (default build/screenshot.png)
#   JOTLET_STAY=1 or 0       keep the board running after the picture or close it (default: 1 on a terminal, else 0)
set -euo pipefail
callerFolder=$PWD
cd "$(dirname "${BASH_SOURCE[0]}")"
. cmake/debian.sh

prepare_environment
headless=0
[ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] || headless=1
packages=("${kBuildPackages[@]}" "${kDesktopPackages[@]}")
[ $headless = 0 ] || packages+=("${kScreenPackages[@]}")
[ -z "${WAYLAND_DISPLAY:-}" ] || packages+=("${kWaylandPackages[@]}")
install_missing "${packages[@]}"
build_preset release

program=$PWD/build/release/bin/jotlet
[ -x "$program" ] || { say "There is no desktop program in this tree yet; build/release/bin holds what was built."; exit 1; }
if [ $headless = 0 ]; then
    cd "$callerFolder"
    exec "$program" "$@"
fi

shot=${JOTLET_SCREENSHOT:-$PWD/build/screenshot.png}
case $shot in /*) ;; *) shot=$callerFolder/$shot ;; esac
work=$(mktemp -d)
pids=()
# Ends only what this script started, last first: the board saves its state before its display goes.
cleanup() {
    local i
    for ((i = ${#pids[@]} - 1; i >= 0; i--)); do
        kill "${pids[i]}" 2>/dev/null || continue
        for _ in $(seq 50); do kill -0 "${pids[i]}" 2>/dev/null || break; sleep 0.1; done
        kill -KILL "${pids[i]}" 2>/dev/null || true
    done
    rm -rf "$work"
}
trap cleanup EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

fail() {
    say "$1"
    [ ! -s "$2" ] || tail -n 20 "$2" >&2
    exit 1
}

Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp -noreset 3>"$work/display" >"$work/xvfb.log" 2>&1 &
pids+=($!)
for _ in $(seq 100); do
    [ -s "$work/display" ] && break
    kill -0 "${pids[0]}" 2>/dev/null || fail "The virtual display did not start." "$work/xvfb.log"
    sleep 0.1
done
[ -s "$work/display" ] || fail "The virtual display did not start in time." "$work/xvfb.log"
DISPLAY=:$(cat "$work/display")
export DISPLAY
export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-xcb}
openbox --sm-disable >"$work/openbox.log" 2>&1 &
pids+=($!)
# A window that comes while the window manager is still starting can be lost by it.
for _ in $(seq 100); do
    xdotool get_num_desktops >/dev/null 2>&1 && break
    kill -0 "${pids[1]}" 2>/dev/null || fail "The window manager did not start." "$work/openbox.log"
    sleep 0.1
done

(cd "$callerFolder" && exec "$program" "$@") 2> >(tee "$work/jotlet.log" >&2) &
board=$!
pids+=("$board")

# The board counts as painted when its window is there, shows more than a few colours, and two pictures in a row are
# the same: the splash has gone by then.
painted=0
previous=
for _ in $(seq 120); do
    kill -0 "$board" 2>/dev/null || { wait "$board" || true; fail "Jotlet ended before its board was painted." "$work/jotlet.log"; }
    if [ -n "$(xdotool search --onlyvisible --pid "$board" 2>/dev/null)" ]; then
        import -silent -window root "$work/shot.png" 2>/dev/null || true
        now=$(identify -format '%# %k' "$work/shot.png" 2>/dev/null || echo '- 0')
        if [ "$now" = "$previous" ] && [ "${now##* }" -gt 8 ]; then
            painted=1
            break
        fi
        previous=$now
        sleep 1
    else
        sleep 0.25
    fi
done
[ $painted = 1 ] || fail "The board was not painted within the time given to it." "$work/jotlet.log"
mkdir -p "$(dirname "$shot")"
convert "$work/shot.png" -bordercolor black -border 1 -trim +repage "$shot" # without the empty desktop round it
echo "There is no display here, so the board was opened on the virtual display $DISPLAY."
echo "A picture of it lies in $shot"

stay=${JOTLET_STAY:-}
[ -n "$stay" ] || { [ -t 0 ] && [ -t 1 ] && stay=1 || stay=0; }
if [ "$stay" = 1 ]; then
    echo "It goes on running (process $board) until you press Ctrl+C."
    wait "$board" || exit $?
else
    echo "It is closed again now. JOTLET_STAY=1 ./run.sh keeps it running."
fi
