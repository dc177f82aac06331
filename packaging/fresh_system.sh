# SPDX-License-Identifier: Apache-2.0
# Sourced by what tries packages in a fresh Debian 12, as root, after $usage is set: reads the folder of
# packages into $folder, and names the two in $program and $desktop.
# shellcheck shell=bash disable=SC2034,SC2154 # used by those; here is theirs

name=${0##*/}
say() { echo "$name: $*" >&2; }

. "$here/usage.sh"
[ $# -eq 1 ] || wrong_usage
[ "$(id -u)" -eq 0 ] || { say "this needs root"; exit 1; }
folder=$(cd "$1" && pwd)
. "$here/packages.sh"
install_missing mmdebstrap
program=$(echo "$folder"/vesprel_*.deb)
desktop=$(echo "$folder"/vesprel-desktop_*.deb)

# make_system [OPTION-OF-MMDEBSTRAP...]: the system, in $root, with the packages in its /packages.
make_system() {
    root=$(mktemp -d /var/tmp/vesprel-try.XXXXXX)
    trap remove_system EXIT
    trap 'exit 130' INT TERM HUP
    mmdebstrap --quiet --variant=minbase "$@" bookworm "$root"
    mkdir "$root/packages"
    cp "$program" "$desktop" "$root/packages"
}
remove_system() { [ -n "${KEEP:-}" ] || rm -rf --one-file-system "$root"; }

# Mounts what a system has, in a mount name space of this script's only, then changes into it.
# shellcheck disable=SC2016 # the words are for the inner shell
enter='mount --bind "$1" "$1" && mount -t proc proc "$1/proc" && mount --rbind /dev "$1/dev" &&
    exec chroot "$@"'
inside() { # inside COMMAND...: in the system, with its own processes
    unshare --mount --pid --fork --kill-child bash -c "$enter" - "$root" "$@"
}
apt_get() {
    inside env DEBIAN_FRONTEND=noninteractive apt-get -qq -y "$@" >"$folder/apt.log" 2>&1 ||
        { tail -20 "$folder/apt.log" >&2; exit 1; }
}

# needs FIELD...: what these fields of the packages name, which stays when they go.
needs() {
    for deb in "$program" "$desktop"; do
        for field in "$@"; do dpkg-deb -f "$deb" "$field"; done
    done | paste -sd,
}

# What there is, apart from what apt, dpkg, logrotate and systemd keep of any package.
listing() {
    inside find / -xdev \( -path /proc -o -path /dev -o -path /packages -o -path /tmp/.X11-unix \
        -o -path '/tmp/systemd-*' -o -path /var/backups -o -path /var/cache -o -path /var/lib/apt \
        -o -path /var/lib/dpkg -o -path /var/lib/logrotate -o -path /var/lib/systemd/timers \
        -o -path /var/log \) -prune -o -print | sort
}
