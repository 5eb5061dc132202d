#!/usr/bin/env bash
# here.sh: tries the drives that need no guest: a local disk, GlusterFS, sshfs and bindfs, each mounted twice. Takes
# DRIVES, CHANGES, SEED and LIMIT from the environment. Runs in namespaces of its own, so that its servers and mounts meet no
# others and go with it: unshare --mount --net --pid --fork --kill-child --mount-proc here.sh. Needs root and /dev/fuse.
set -u
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
readonly kAddress=10.77.1.1

# wanted KIND: makes its folders.
wanted() {
    case " $DRIVES " in *" $1 "*) mkdir -p "$here/$1"/{server,a,b} ;; *) return 1 ;; esac
}
try() { "$here/try_drive.sh" "$2" "$here/$1/server" "${3:-$here/$1/a}" "${4:-$here/$1/b}" "$CHANGES" "$SEED" "$LIMIT"; }

# wait_for COMMAND...: until it succeeds, for ten seconds.
wait_for() {
    local _
    for _ in $(seq 100); do "$@" && return; sleep 0.1; done
    return 1
}
is_online() { gluster --mode=script volume status drive detail | grep -q '^Online.*: Y'; }

start_gluster() {
    local folder side
    ip link set lo up
    ip addr add $kAddress/24 dev lo  # no brick may lie at 127.0.0.1
    # All of /run: the daemon's socket lies there, and a second trial has one of its own.
    for folder in /var/lib/glusterd /var/log/glusterfs /run; do
        mkdir -p $folder
        mount -t tmpfs private $folder
    done
    mkdir -p /run/gluster
    glusterd -l "$here/gluster/glusterd.log"
    for _ in $(seq 30); do gluster --mode=script volume list && break || sleep 1; done
    gluster --mode=script volume create drive transport tcp "$kAddress:$here/gluster/server" force &&
        gluster --mode=script volume start drive && wait_for is_online || return
    for side in a b; do
        glusterfs --volfile-server=$kAddress --volfile-id=drive "$here/gluster/$side" -l "$here/gluster/$side.log" ||
            return
        wait_for mountpoint -q "$here/gluster/$side" || return
    done
}
# The far end of sshfs without a network: its server speaks over a pipe.
mount_sshfs() {
    local side
    printf '#!/bin/sh\nexec /usr/lib/openssh/sftp-server\n' >"$here/sshfs/ssh"
    chmod +x "$here/sshfs/ssh"
    for side in a b; do
        sshfs -o ssh_command="$here/sshfs/ssh" "far:$here/sshfs/server" "$here/sshfs/$side" || return
    done
}
mount_bindfs() {
    bindfs "$here/bindfs/server" "$here/bindfs/a" && bindfs "$here/bindfs/server" "$here/bindfs/b"
}

# The process that keeps GlusterFS's one brick.
brick() { cat /var/run/gluster/vols/drive/*.pid; }

if [ "$DRIVES" = windows ]; then
    mkdir -p "$here"/gluster/{server,a,b}
    start_gluster >&2 && exec "$here/windows.sh" "$PROGRAMS" "$here/gluster/a" "$here/gluster/b" "$(brick)"
    exit 1
fi
! wanted local || try local "local disk" "$here/local/server" "$here/local/server"
! wanted gluster || { start_gluster >&2 && try gluster GlusterFS; }
! wanted sshfs || { mount_sshfs && try sshfs sshfs; }
! wanted bindfs || { mount_bindfs && try bindfs bindfs; }
