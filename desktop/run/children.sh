# SPDX-License-Identifier: Apache-2.0
# What this script starts, and how it is ended. Sourced.
# shellcheck shell=bash disable=SC2154 # $scratch comes from box, $running from root.sh

children=()
listeners=() # what shows the output of the others, and ends with them

# start COMMAND...: starts a child with this terminal as its input.
start() {
    # The lock of the root is this script's alone.
    "$@" <&0 {running}>&- &
    children+=($!)
}

# listen_to LABEL: shows what comes through the pipe $scratch/LABEL, each line with the label.
listen_to() {
    mkfifo "$scratch/$1"
    perl "$run/show.pl" "$1" ${verbose:+--verbose} <"$scratch/$1" {running}>&- &
    listeners+=($!)
}

# The process that bwrap, which this is if there is a file of it, started; otherwise the process.
confined_process() { # confined_process PID
    local inside
    inside=$(sed -n 's/.*"child-pid": *\([0-9]*\).*/\1/p' "$scratch/bwrap.$1" 2>/dev/null || true)
    echo "${inside:-$1}"
}

is_gone() { ! kill -0 "$1" 2>/dev/null; }

# Ends one child; one that does not end when it is asked to is killed.
end_child() {
    local inside
    inside=$(confined_process "$1")
    kill "$inside" || return 0
    wait_for 3 is_gone "$1" || kill -KILL "$inside" "$1" || true
    wait "$1" || true
}

# Ends what this script started, the youngest first, and nothing else. Nobody asks how.
end_children() {
    local index
    for ((index = ${#children[@]} - 1; index >= 0; index--)); do
        end_child "${children[index]}"
    done
    for index in "${listeners[@]}"; do
        wait_for 1 is_gone "$index" || kill "$index" || true
    done
} 2>/dev/null

wait_for() { # wait_for SECONDS COMMAND...
    local tries=$(($1 * 10))
    shift
    until "$@"; do
        ((tries-- > 0)) || return 1
        sleep 0.1
    done
}
