#!/usr/bin/env bash
# try_drive.sh NAME SERVER A B CHANGES SEED LIMIT: lets two hosts work on note files of one drive that is mounted at A and at B,
# and compares what they were told with the bytes in SERVER, the server's own folder. Prints one line, its columns
# divided by tabs; whoever wants to know more reads standard error.
# Each host makes CHANGES, as far as it gets in LIMIT seconds for each part: six tenths with copies that keep the file open, three while they are killed now and then,
# one by calls of jotctl that are killed now and then, beside a copy that keeps the file open.
set -u
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
name=$1 server=$2 a=$3 b=$4 changes=$5 seed=$6 limit=$7
journals=$(mktemp -d)
trap 'rm -rf "$journals"' EXIT
confirmed=0 asked=0 faults=(0 0 0 0 0 0)

say() { printf '%s %s: %s\n' "$(date +%T)" "$name" "$*" >&2; }
trial() { local host=$1; shift; timeout -k 5 300 "$here/as_host.sh" "$host" "$here/trial" "$@"; }
# work FILE HOST MOUNT CHANGES KILLS [JOTCTL]: in the background.
work() {
    local file=$1 host=$2 mount=$3 count=$4 kills=$5
    shift 5
    asked=$((asked + count))
    trial "$host" work "$mount/$file" "$host" "$seed" "$count" "$limit" "$journals/$file/$host" "$kills" "$@" ||
        say "host $host ended with $?" &
}
# check FILE STRICTNESS: adds up what it finds.
check() {
    local counts i
    read -r -a counts < <("$here/trial" check "$server/$1" "$2" "$journals/$1"/*)
    [ ${#counts[@]} = 7 ] || { say "$1 could not be checked"; counts=("${counts[0]:-0}" 1 0 0 0 0 0); }
    checked=${counts[0]}
    for i in 0 1 2 3 4 5; do found[i]=$((${counts[i + 1]} > ${found[i]} ? ${counts[i + 1]} : ${found[i]})); done
}
# round FILE COMMAND...: makes the file, runs COMMAND which starts hosts, and checks.
round() {
    local file=$1 strictness=$2 i start=$SECONDS
    shift 2
    found=(0 0 0 0 0 0)
    rm -f "$server/$file"*
    mkdir "$journals/$file"
    trial a make "$a/$file" || { say "$file could not be made: $?"; faults[0]=$((faults[0] + 1)); return; }
    "$@" "$file"
    wait
    check "$file" "$strictness"
    # Whoever comes next puts right what the dead have left.
    if [ "$strictness" = after-kills ]; then
        as a "$here/jotctl" compact "$a/$file" >&2 || say "$file could not be compacted"
        # The stories have been told.
        if [ "${found[*]}" = "0 0 0 0 0 0" ]; then check "$file" sound; else check "$file" sound 2>/dev/null; fi
    fi
    confirmed=$((confirmed + checked))
    for i in 0 1 2 3 4 5; do faults[i]=$((faults[i] + found[i])); done
    say "$file: $checked confirmed, lost ${found[0]}, doubled ${found[1]}, moved ${found[2]}, put back ${found[3]}," \
        "stuck ${found[4]}, counters ${found[5]}; $((SECONDS - start)) s"
}
as() { timeout -k 5 120 "$here/as_host.sh" "$@"; }

open_copies() { work "$1" a "$a" $((changes * 6 / 10)) 0; work "$1" b "$b" $((changes * 6 / 10)) 0; }
killed_copies() {
    work "$1" a "$a" $((changes * 3 / 10)) $((changes / 50))
    work "$1" b "$b" $((changes * 3 / 10)) $((changes / 50))
}
jotctl_calls() {
    work "$1" a "$a" $((changes / 10)) $((changes / 100)) "$here/jotctl"
    work "$1" b "$b" $((changes / 10)) $((changes / 100)) "$here/jotctl"
    work "$1" c "$b" $((changes / 20)) 0
}
# How soon B sees what A does: the median and the longest in seconds.
freshness() {
    local file=fresh.jot news=6 seen
    rm -f "$server/$file"*
    trial a make "$a/$file" || return
    trial a tell "$a/$file" $news &
    read -r -a seen < <(trial b watch "$b/$file" $news)
    wait
    [ "${seen[2]:-0}" = $news ] || { printf 'never'; return; }
    awk -v middle="${seen[0]}" -v longest="${seen[1]}" 'BEGIN { printf "%.1f, %.1f", middle / 1000, longest / 1000 }'
}
# What work costs with 10,000 notes: server calls of an add, a poll and a refresh after one foreign change, what that
# refresh reads, and the times of an add and a refresh beside SQLite's on the same mount.
cost() {
    local file=cost.jot calls ratios
    rm -f "$server/$file"*
    "$here/trial" fill "$server/$file" 10000
    read -r -a calls < <(trial b cost "$b/$file" "$b" "$a/$file")
    read -r -a ratios < <(trial b rival "$server" "$b" "$a" $file)
    rm -f "$server/$file"*
    [ ${#calls[@]} = 4 ] || calls=(- - - -)
    [ ${#ratios[@]} = 2 ] || ratios=(- -)
    echo "${calls[@]}" "${ratios[@]}"
}

round open.jot unmoved open_copies
round killed.jot after-kills killed_copies
round jotctl.jot after-kills jotctl_calls
fresh=$(freshness)
say "seen after $fresh s"
read -r -a costs < <(cost)
say "server calls: add ${costs[0]}, poll ${costs[1]}, refresh ${costs[2]}, ${costs[3]} kB;" \
    "beside SQLite: add ${costs[4]}, refresh ${costs[5]}"
(IFS=$'\t' && echo "ROW	$name	$confirmed of $asked	${faults[*]}	$fresh	${costs[*]}")
