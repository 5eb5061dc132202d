#!/bin/bash
# The first process of the guest: starts an NFS server, an SMB server and two client hosts with networks of their own,
# mounts the drives on both, tries them, and turns the machine off.
export PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8
cd "$(dirname "$0")" || exit
. ./order.sh

start_machine() {
    local kind
    mount -t tmpfs tmp /tmp
    mkdir -p /dev/shm /dev/pts /run/netns
    hostname server
    ip link set lo up
    for kind in nfsd nfs nfsv4 nfsv3 cifs veth; do modprobe "$kind"; done
    ip link add hub type bridge
    ip addr add 10.77.0.1/24 dev hub
    ip link set hub up
}
start_servers() {
    mkdir -p /srv/nfs /srv/smb /run/rpc_pipefs /run/samba
    chmod 777 /srv/nfs /srv/smb
    mount -t nfsd nfsd /proc/fs/nfsd
    mount -t rpc_pipefs pipes /run/rpc_pipefs
    echo "/srv/nfs 10.77.0.0/24(rw,no_root_squash,insecure,fsid=0,async,no_subtree_check)" >/etc/exports
    rpcbind
    rpc.statd
    exportfs -ra
    rpc.nfsd --grace-time 10 --lease-time 10 8
    rpc.mountd
    printf '%s\n' '[global]' 'server role = standalone' 'map to guest = Bad User' 'smb ports = 445' \
        '[share]' 'path = /srv/smb' 'guest ok = yes' 'read only = no' 'force user = root' >/etc/samba/smb.conf
    smbd -D
    for _ in $(seq 600); do (: </dev/tcp/127.0.0.1/445) && break; sleep 0.1; done
}
# start_host NAME ADDRESS
start_host() {
    ip netns add "drives-$1"
    ip link add "cable-$1" type veth peer name eth0 netns "drives-$1"
    ip link set "cable-$1" master hub up
    ip -n "drives-$1" link set lo up
    ip -n "drives-$1" addr add "$2/24" dev eth0
    ip -n "drives-$1" link set eth0 up
}
# mount_both KIND TYPE OPTIONS SOURCE: at /mnt/KIND-a and /mnt/KIND-b.
mount_both() {
    local host
    for host in a b; do
        mkdir -p "/mnt/$1-$host"
        ./as_host.sh $host mount -t "$2" -o "$3" "$4" "/mnt/$1-$host" || echo "$1 could not be mounted on $host"
    done
}
try() {
    local kind=$1 name=$2 server=$3
    shift 3
    case " $DRIVES " in *" $kind "*) ;; *) return ;; esac
    mount_both "$kind" "$@"
    ./try_drive.sh "$name" "$server" "/mnt/$kind-a" "/mnt/$kind-b" "$CHANGES" "$SEED" "$LIMIT"
}

mount -t proc proc /proc 2>/dev/null
mount -t sysfs sys /sys 2>/dev/null
mount -t tmpfs run /run 2>/dev/null
export LD_LIBRARY_PATH=$PWD/lib
{
    start_machine
    start_servers
    start_host a 10.77.0.2
    start_host b 10.77.0.3
} >/tmp/start.log 2>&1
try nfs4 "NFS 4.2" /srv/nfs nfs vers=4.2 10.77.0.1:/
try nfs3 "NFS 3, nolock" /srv/nfs nfs vers=3,nolock 10.77.0.1:/srv/nfs
try smb "SMB 3.1.1" /srv/smb cifs guest,vers=3.1.1,nosharesock //10.77.0.1/share
try smb-uncached "SMB, cache=none" /srv/smb cifs guest,vers=3.1.1,nosharesock,cache=none //10.77.0.1/share
echo GUEST-DONE
sync
echo o >/proc/sysrq-trigger
sleep infinity  # the first process may not end before the machine does
