# SPDX-License-Identifier: Apache-2.0
# How what runs is kept from the user's files. What a page, or a medium that it plays, makes a program
# do must not reach them: all can be read, few can be written. Sourced.
# shellcheck shell=bash disable=SC2154 # $scratch and VESPREL_ROOT come from box

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
        Q_CACHE_PATH=$(realpath -m -- "$Q_CACHE_PATH")
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
    start run_in_bwrap "$@"
}

run_in_bwrap() {
    trap '' INT
    exec bwrap "${confinement[@]}" ${more_confinement[@]+"${more_confinement[@]}"} --info-fd 9 -- "$@" 9>"$scratch/bwrap.$BASHPID"
}
