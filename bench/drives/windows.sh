#!/usr/bin/env bash
# windows.sh PROGRAMS A B BRICK: two windows of the program, on two computers' mounts A and B of one drive whose server is
# the process BRICK; PROGRAMS is the folder of jotlet and jotctl. Each has to see what the other does, to get a note that
# the other's end left locked, and to go on while the server is stopped. Says each step; exits 1 when one failed.
set -u
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
programs=$1 a=$2 b=$3 brick=$4
readonly kSeenWithin=4 kNoticedWithin=15  # seconds; the period of the refresh is 2
work=$(mktemp -d)
failed=0
pids=()
cleanup() {
    local pid
    kill -CONT "$brick" 2>/dev/null
    for pid in "${pids[@]}"; do kill -KILL "$pid" 2>/dev/null; done
    rm -rf "$work"
}
trap cleanup EXIT

say() { printf '%s windows: %s\n' "$(date +%T)" "$*" >&2; }
# within SECONDS COMMAND...: until the command succeeds.
within() {
    local end=$((SECONDS + $1 + 1))
    shift
    until "$@"; do [ "$SECONDS" -lt "$end" ] || return 1; sleep 0.2; done
}
step() {
    local name=$1
    shift
    if "$@"; then say "$name: yes"; else say "$name: NO"; failed=1; fi
}

# start NAME FILE X: a window of its own user, at the left edge X.
start() {
    local home=$work/$1 pid
    mkdir -p "$home/run" && chmod 700 "$home/run"
    XDG_DATA_HOME=$home/data XDG_CONFIG_HOME=$home/config XDG_STATE_HOME=$home/state XDG_RUNTIME_DIR=$home/run \
        QT_QPA_PLATFORM=xcb "$here/as_host.sh" "$1" "$programs/jotlet" "$2" >"$home/log" 2>&1 &
    pid=$!
    pids+=("$pid")
    process[$1]=$pid
    within 30 has_title "$1" 'notes.jot$' || { say "The window of $1 did not open."; cat "$home/log" >&2; exit 1; }
    frame[$1]=$(frame_of "$1")
    xdotool windowmove "${frame[$1]}" "$3" 20
    sleep 1
}
declare -A process frame
windows_of() { xdotool search --all --onlyvisible --pid "${process[$1]}" --name "$2" 2>/dev/null; }
frame_of() { windows_of "$1" '^Jotlet : ' | tail -1; }
has_title() { windows_of "$1" '^Jotlet : ' | xargs -r -n 1 xdotool getwindowname 2>/dev/null | grep -q -- "$2"; }
has_editor() { [ -n "$(windows_of "$1" '^Jotlet$')" ]; }
has_no_editor() { ! has_editor "$1"; }
picture() { import -window "${frame[$1]}" -crop 290x300+20+100 rgb:- | md5sum; }
looks_other() { [ "$(picture "$1")" != "$2" ]; }
screen() { import -window root -crop 420x430+640+20 rgb:- | md5sum; }
screen_differs() { [ "$(screen)" != "$1" ]; }
has_note() { "$programs/jotctl" find "$b/notes.jot" "$1" | grep -q "$1"; }
use() { xdotool windowactivate --sync "${frame[$1]}"; sleep 0.5; }
# make_note NAME TITLE: by keyboard, as a user does.
make_note() {
    xdotool key Insert
    within 10 has_editor "$1" || return 1
    xdotool type "text of $2"
    xdotool key alt+t ctrl+a
    xdotool type "$2"
    xdotool key ctrl+Return
}
sees_note() {
    local from=$1 to=$2 title=$3 before
    use "$from"
    before=$(picture "$to")
    make_note "$from" "$title" && within $kSeenWithin looks_other "$to" "$before" &&
        within 5 has_note "$title"
}
edit_first() {
    use "$1"
    xdotool mousemove --window "${frame[$1]}" 90 160 click 1
    sleep 0.5
    xdotool key Return
    within 5 has_editor "$1"
}
killed_editor_frees() {
    edit_first a || return 1
    kill -KILL "${process[a]}"
    edit_first b || return 1
    xdotool key Escape
    within 5 has_no_editor b && sleep 2  # what a call waits for when the server stops can't be tried
}
stopped_server_is_told() {
    kill -STOP "$brick"
    within $kNoticedWithin has_title b 'does not answer$'
}
menu_opens() {
    local before
    use b
    xdotool mousemove --window "${frame[b]}" 54 61
    sleep 1
    before=$(screen)
    xdotool click 1
    within 5 screen_differs "$before" && xdotool key Escape
}
goes_on() {
    kill -CONT "$brick"
    within 60 has_title b 'notes.jot$' && use b && make_note b "after the stop" &&
        within 20 has_note "after the stop"
}
closes_while_stopped() {
    kill -STOP "$brick"
    within $kNoticedWithin has_title b 'does not answer$' || return 1
    xdotool windowclose "${frame[b]}" 2>/dev/null
    kill -TERM "${process[b]}" 2>/dev/null
    within 5 eval '[ -z "$(windows_of b "^Jotlet : ")" ]'
}

Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp -noreset 3>"$work/display" >"$work/xvfb.log" 2>&1 &
pids+=($!)
within 20 test -s "$work/display" || { say "The virtual display did not start."; exit 1; }
DISPLAY=:$(cat "$work/display")
export DISPLAY
openbox >/dev/null 2>&1 &
pids+=($!)
"$programs/jotctl" new "$a/notes.jot" --examples || exit 1
start a "$a/notes.jot" 20
start b "$b/notes.jot" 640
step "B sees A's new note" sees_note a b aaa
step "A sees B's new note" sees_note b a bbb
step "B edits the note at once that A held when it was killed" killed_editor_frees
step "a stopped server shows in the title" stopped_server_is_told
step "the menu opens meanwhile" menu_opens
step "work goes on when the server is back" goes_on
step "a window closes while the server is stopped" closes_while_stopped
exit $failed
