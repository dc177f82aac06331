# SPDX-License-Identifier: Apache-2.0
# Sourced after fresh_system.sh: starts systemd in the system as first process of a machine of its own,
# which has no network and sees no process, mount or control group of the real one.
# shellcheck shell=bash disable=SC2154 # root is of fresh_system.sh

supervisor= # the process whose end ends the machine
group=      # its control group

# become_first_process ROOT: runs in the name spaces of the machine. A change of root alone would do,
# were it not that the kernel then forbids user name spaces (PrivateUsers=).
become_first_process() {
    cd "$1" || exit
    mount --bind . .
    cd . || exit
    mount -t proc proc proc
    # What is set there is the real machine's.
    mount --bind proc/sys proc/sys
    mount -o remount,bind,ro proc/sys
    [ ! -e proc/sysrq-trigger ] || mount --bind /dev/null proc/sysrq-trigger
    mount -t sysfs -o ro sysfs sys
    mount -t cgroup2 cgroup2 sys/fs/cgroup
    mount -t tmpfs -o mode=755 tmpfs run
    mount -t tmpfs -o mode=755 tmpfs dev
    mkdir dev/pts dev/shm run/real
    mount -t devpts -o newinstance,ptmxmode=666,mode=620,gid=5 devpts dev/pts
    mount -t tmpfs tmpfs dev/shm
    for device in null zero full random urandom tty; do
        touch "dev/$device"
        mount --bind "/dev/$device" "dev/$device"
    done
    ln -s pts/ptmx dev/ptmx
    ln -s /proc/self/fd dev/fd
    ip link set lo up
    pivot_root . run/real
    umount -l /run/real
    rmdir /run/real
    exec env -i container=vesprel-try PATH=/usr/sbin:/usr/bin:/sbin:/bin /lib/systemd/systemd
}

power_on() {
    local hierarchy below
    hierarchy=$(awk '$3 == "cgroup2" { print $2; exit }' /proc/mounts)
    below=$(sed -n 's/^0:://p' /proc/self/cgroup)
    [ -n "$hierarchy" ] || { say "no cgroup2 is mounted here"; exit 1; }
    group=$hierarchy${below%/}/vesprel-try.$$
    mkdir "$group"
    # shellcheck disable=SC2016 # the words are for the inner shells
    setsid bash -euc 'echo $$ >"$1/cgroup.procs"
        exec unshare --mount --pid --fork --kill-child --uts --ipc --net --cgroup bash -euc "$2" - "$3"' \
        - "$group" "cd / ; $(declare -f become_first_process); become_first_process \"\$1\"" "$root" \
        </dev/null >"$folder/boot.log" 2>&1 &
    supervisor=$!
    for _ in $(seq 120); do
        case $(box systemctl is-system-running 2>/dev/null || true) in
        running | degraded) return ;;
        esac
        sleep 0.5
    done
    say "systemd does not start here"
    tail -20 "$folder/boot.log" >&2
    exit 1
}

power_off() {
    if [ -n "$supervisor" ]; then
        # All others end with the first process, before its parent does.
        kill -KILL "$(first_process)" 2>/dev/null || kill -KILL "$supervisor" 2>/dev/null || true
        wait "$supervisor" 2>/dev/null || true
    fi
    [ -z "$group" ] || find "$group" -depth -type d -exec rmdir {} + || true
    supervisor=
    group=
}

first_process() { pgrep --parent "$supervisor"; }
box() { # box COMMAND...: on the machine
    nsenter --all --target "$(first_process)" -- env -i HOME=/root LC_ALL=C.UTF-8 \
        PATH=/usr/sbin:/usr/bin:/sbin:/bin DEBIAN_FRONTEND=noninteractive "$@"
}
