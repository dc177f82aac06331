# SPDX-License-Identifier: Apache-2.0
# The receiver and the program of the box. Sourced.
# shellcheck shell=bash disable=SC2154 # what they are started with comes from box

ready_or_gone() { [ -e "$scratch/ready" ] || ! kill -0 "$1" 2>/dev/null; }

start_receiver() { # start_receiver OUTPUT: a file, or "-" for this terminal
    local words=("$receiver_program" --ready "$scratch/ready" --portal "$address")
    words+=(${receiver_options[@]+"${receiver_options[@]}"})
    if [ "$1" = - ]; then
        start_confined "${words[@]}"
    else
        start_confined "${words[@]}" </dev/null >"$1" 2>&1
    fi
    wait_for 10 ready_or_gone "$!" && [ -e "$scratch/ready" ] ||
        fail "the receiver did not start$([ "$1" = - ] || echo ": $(cat "$1")")"
}

start_program() {
    start_confined env QT_PLUGIN_PATH="$plugins" \
        QT_QPA_GENERIC_PLUGINS="vesprel-fresh-pages${inspector:+,vesprel-inspector}" \
        ${inspector:+VESPREL_INSPECTOR_PORT="$inspector"} "$program"
}
