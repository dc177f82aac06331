# SPDX-License-Identifier: Apache-2.0
# What this script starts, how it is kept from the user's files, and how it is ended. Sourced.
# shellcheck shell=bash disable=SC2154 # $scratch and VESPREL_ROOT come from box

children=()

# start COMMAND...: starts a child with this terminal as its input.
start() {
    "$@" <&0 &
    children+=($!)
}

# What a page, or a medium that it plays, makes a program do must not reach the files of whoever
# works here. All of them can be read, few can be written.
confinement=()
confine() {
    confinement=(--ro-bind / / --dev /dev --bind "$VESPREL_ROOT" "$VESPREL_ROOT"
        --bind "$scratch" "$scratch")
    local device
    for device in /dev/dri /dev/snd /dev/nvidia*; do
        confinement+=(--dev-bind-try "$device" "$device")
    done
    if [ "${Q_VESPREL_LOG:-}" = true ] && [ ! -L /tmp/vesprel.log ]; then
        touch /tmp/vesprel.log
        confinement+=(--bind /tmp/vesprel.log /tmp/vesprel.log)
    fi
    if [ -n "${Q_CACHE_PATH:-}" ]; then
        mkdir -p "$Q_CACHE_PATH"
        confinement+=(--bind "$Q_CACHE_PATH" "$Q_CACHE_PATH")
    fi
    bwrap "${confinement[@]}" true 2>/dev/null && return 0
    confinement=()
    say "bwrap is not there or may not work here; what runs can write wherever you can"
}

# start_confined COMMAND...: as start, with nothing to write but the box's own, and what the caller
# has in more_confinement.
start_confined() {
    if [ ${#confinement[@]} -eq 0 ]; then
        start "$@"
        return
    fi
    # A Ctrl-C is for what runs inside, and for this script, which then ends that.
    (
        trap '' INT
        exec bwrap "${confinement[@]}" ${more_confinement[@]+"${more_confinement[@]}"} --info-fd 9 -- "$@" 9>"$scratch/bwrap.$BASHPID"
    ) <&0 &
    children+=($!)
}

# The process that bwrap, which this is if there is a file of it, started; otherwise the process.
confined_process() { # confined_process PID
    local inside
    inside=$(sed -n 's/.*"child-pid": *\([0-9]*\).*/\1/p' "$scratch/bwrap.$1" 2>/dev/null || true)
    echo "${inside:-$1}"
}

# Ends what this script started, the youngest first, and nothing else.
end_children() {
    local index
    for ((index = ${#children[@]} - 1; index >= 0; index--)); do
        kill "$(confined_process "${children[index]}")" 2>/dev/null || true
        wait "${children[index]}" 2>/dev/null || true
    done
}

wait_for() { # wait_for SECONDS COMMAND...
    local tries=$(($1 * 10))
    shift
    until "$@"; do
        ((tries-- > 0)) || return 1
        sleep 0.1
    done
}
