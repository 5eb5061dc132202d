#!/usr/bin/env bash
# Tries note files on shared drives: real servers, two hosts each, random work at full speed with kills now and then, and
# what was confirmed against the server's own bytes. Prints one table; exits 1 when anything confirmed was lost, doubled,
# moved or put back, or stayed locked. Takes up to a quarter of an hour, and some minutes more at the first time.
#
#   ./drives.sh [--changes N] [--seed N] [--limit N] [KIND...]
#   changes a host (1000), and the seconds after which a host makes no more in each of the three parts of a trial (50)
#   ./drives.sh --windows
#   instead: two windows on two mounts of GlusterFS, on a virtual display, and what each must see of the other
#   KIND: local nfs4 nfs3 smb smb-uncached gluster sshfs bindfs (all of them)
#
# NFS and SMB need a kernel's servers and clients, so they run in an emulated machine with Debian's own kernel, built
# once in build/drives (JOTLET_DRIVES names another folder). Needs root and /dev/fuse.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
. cmake/debian.sh

readonly kGuestPackages=linux-image-amd64,nfs-kernel-server,nfs-common,cifs-utils,samba,iproute2,kmod,procps,initramfs-tools,util-linux
readonly kGuestDrives="nfs4 nfs3 smb smb-uncached"
readonly kDrivesHere="local gluster sshfs bindfs"
# Of all its drives: what doesn't depend on the limit, and how many times that may be reached.
readonly kGuestStart=700 kGuestParts=16

try_windows() {
    install_missing "${kBuildPackages[@]}" "${kDesktopPackages[@]}" "${kScreenPackages[@]}" "${kDrivesPackages[@]}"
    build_preset release jotlet jotctl
    mkdir "$work/parts"
    cp bench/drives/*.sh "$work/parts"
    DRIVES=windows PROGRAMS=$PWD/build/release/bin \
        unshare --mount --net --pid --fork --kill-child --mount-proc "$work/parts/here.sh"
}

usage() { sed -n '2,/^set/{/^#/s/^# \{0,1\}//p}' "$0"; exit "$1"; }
CHANGES=1000 SEED=1 LIMIT=50 DRIVES="" WINDOWS=""
while [ $# -gt 0 ]; do
    case $1 in
        --changes) CHANGES=${2:?}; shift ;;
        --seed) SEED=${2:?}; shift ;;
        --limit) LIMIT=${2:?}; shift ;;
        --windows) WINDOWS=1 ;;
        --help) usage 0 ;;
        *) case " $kGuestDrives $kDrivesHere " in *" $1 "*) DRIVES+=" $1" ;; *) usage 2 >&2 ;; esac ;;
    esac
    shift
done
DRIVES=${DRIVES:-$kGuestDrives $kDrivesHere}
export CHANGES SEED LIMIT DRIVES
[ "$(id -u)" = 0 ] || { say "Mounting drives takes root rights. As root, run: ./drives.sh"; exit 2; }

# any_of KINDS: whether one of them is wanted.
any_of() {
    local kind
    for kind in $1; do case " $DRIVES " in *" $kind "*) return 0 ;; esac; done
    return 1
}
mirror() {
    { sed -n 's/^URIs: *//p' /etc/apt/sources.list.d/*.sources; sed -n 's/^deb \(\[.*\] \)\?\([^ ]*\).*/\2/p' /etc/apt/sources.list; } \
        2>/dev/null | head -1
}
build_image() {
    [ ! -s "$cache/image.ext4" ] || return 0
    say "Building the guest in $cache"
    rm -rf "$cache/system"
    debootstrap --variant=minbase --include="$kGuestPackages" bookworm "$cache/system" "$(mirror)" >"$cache/debootstrap.log" 2>&1 || {
        tail -5 "$cache/debootstrap.log" >&2
        return 1
    }
    cp "$cache"/system/boot/vmlinuz-* "$cache/vmlinuz"
    cp "$cache"/system/boot/initrd.img-* "$cache/initrd"
    mke2fs -q -t ext4 -d "$cache/system" "$cache/image.part" 2500M
    mv "$cache/image.part" "$cache/image.ext4"
    rm -rf "$cache/system"
}
# What both sides run: the scripts, the programs and the libraries that a bare Debian may lack.
gather() {
    mkdir "$work/parts" "$work/parts/lib"
    cp bench/drives/*.sh build/bench/bin/trial build/bench/bin/jotctl "$work/parts"
    ldd build/bench/bin/trial build/bench/bin/jotctl | awk '$3 ~ /^\// && $3 !~ /\/lib(c|m|pthread)\.so/ { print $3 }' |
        sort -u | xargs cp -Lt "$work/parts/lib"
    printf 'CHANGES=%s SEED=%s LIMIT=%s DRIVES="%s"\n' "$CHANGES" "$SEED" "$LIMIT" "$DRIVES" >"$work/parts/order.sh"
}
run_guest() {
    mke2fs -q -t ext4 -d "$work/parts" "$work/parts.ext4" 128M >/dev/null
    timeout $((kGuestStart + kGuestParts * LIMIT)) qemu-system-x86_64 -accel tcg,thread=multi -cpu Nehalem -m 1024 -smp 2 -nographic \
        -nodefaults -serial stdio -no-reboot -kernel "$cache/vmlinuz" -initrd "$cache/initrd" \
        -append 'console=ttyS0 root=/dev/vda rw init=/bin/sh panic=-1 mitigations=off loglevel=3 -- -c "mount /dev/vdb /mnt; mkdir /parts; cp -a /mnt/. /parts; umount /mnt; exec /parts/guest.sh"' \
        -drive "file=$cache/image.ext4,format=raw,if=virtio,snapshot=on" \
        -drive "file=$work/parts.ext4,format=raw,if=virtio,snapshot=on" </dev/null
}
# Rows from both sides; whether each drive gave one, and none of them a fault.
print_table() {
    local wanted
    wanted=$(wc -w <<<"$DRIVES")
    { printf 'drive\tconfirmed\tlost\tdoubled\tmoved\tput back\tstuck\tcounters\tseen after s\tcalls: add\tpoll\trefresh\tkB\tto SQLite: add\trefresh\n'
        sed -n 's/^ROW\t//p' "$@"; } | column -t -s $'\t'
    awk -F '\t' -v wanted="$wanted" '/^ROW\t/ { ++rows; for (i = 4; i <= 9; ++i) bad += $i; none += $3 + 0 == 0 }
        END { if (rows < wanted) print wanted - rows " of the drives could not be tried."; exit rows < wanted || bad || none }' "$@"
}

prepare_environment
mkdir -p build
work=$(mktemp -d "$PWD/build/drives-XXXXXX")
trap 'kill $(jobs -p) 2>/dev/null || true; wait; rm -rf --one-file-system "$work"' EXIT
trap 'exit 1' INT TERM
if [ -n "$WINDOWS" ]; then
    try_windows
    exit
fi
install_missing cmake ninja-build g++ pkg-config libcli11-dev nlohmann-json3-dev "${kBenchPackages[@]}" "${kDrivesPackages[@]}"
build_preset bench trial jotctl
cache=${JOTLET_DRIVES:-$PWD/build/drives}
mkdir -p "$cache"
gather
touch "$work/guest.log" "$work/here.log"
if any_of "$kGuestDrives"; then
    build_image
    run_guest >"$work/guest.log" 2>&1 &
fi
if any_of "$kDrivesHere"; then
    unshare --mount --net --pid --fork --kill-child --mount-proc "$work/parts/here.sh" >"$work/here.log" 2>&1 &
fi
wait
sed -i 's/\r//g' "$work"/*.log
cp "$work"/*.log build
print_table "$work/guest.log" "$work/here.log" || { say "The stories are in build/guest.log and build/here.log."; exit 1; }
