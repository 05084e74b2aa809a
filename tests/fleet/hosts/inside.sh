#!/bin/bash
# The first process of a host: its bus, its logind, its sessions and its ssh. Ends with all of them.
# inside.sh DIRECTORY: "root" is the file system, "host" what describes it.
set -eu
directory=$1
root=$directory/root

mount -t tmpfs tmpfs "$root/run"
mount -t tmpfs tmpfs "$root/tmp"
chmod 1777 "$root/tmp"
mount -t proc proc "$root/proc"
mount --rbind /dev "$root/dev"
mkdir -p "$root/run/sshd" "$root/run/dbus" "$root/run/host"
cp -r "$directory/host/." "$root/run/host/"
hostname "$(basename "$directory")"
ip link set lo up
[ ! -e "$directory/readonlyhome" ] || {
    mount --bind "$root/home/ann" "$root/home/ann"
    mount -o remount,ro,bind "$root/home/ann"
}

exec chroot "$root" /bin/bash -c '
    set -eu
    dbus-daemon --config-file=/run/host/bus.conf --fork --nopidfile
    DBUS_SYSTEM_BUS_ADDRESS=unix:path=/run/dbus/system_bus_socket \
        /usr/bin/python3 /run/host/logind.py /run/host/sessions.json &
    bash /run/host/sessions.sh
    exec /usr/sbin/sshd -D -e -f /run/host/sshd.conf
'
