#!/usr/bin/env bash
# as_host.sh NAME COMMAND...: runs COMMAND as on a computer of that name, with its network where one was made for it.
network=()
[ ! -e "/run/netns/drives-$1" ] || network=(nsenter "--net=/run/netns/drives-$1")
exec "${network[@]}" unshare --uts sh -c 'hostname "host-$0"; exec "$@"' "$@"
