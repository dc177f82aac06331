# SPDX-License-Identifier: Apache-2.0
# The receiver and the program of the box. Sourced.
# shellcheck shell=bash disable=SC2034,SC2154 # what they are started with comes from box

ready_or_gone() { [ -e "$scratch/ready" ] || is_gone "$1"; }

start_receiver() { # start_receiver OUTPUT INPUT
    local words=("$receiver_program" --ready "$scratch/ready")
    # What is replayed names its portal itself.
    [ -n "$replay" ] && [ -z "$portal" ] || words+=(--portal "$address")
    [ -z "$watch" ] || words+=(--watch "$(portal_folder)")
    [ -z "$no_sound" ] || words+=(--silent)
    words+=(${receiver_options[@]+"${receiver_options[@]}"})
    [ -z "$script" ] || words+=(--control "$scratch/control")
    local more_confinement=() file
    for file in ${outputs[@]+"${outputs[@]}"}; do
        more_confinement+=(--bind "$file" "$file")
    done
    start_confined "${words[@]}" >"$1" 2>&1 <&"$2"
    receiver=${children[-1]}
    wait_for 10 ready_or_gone "$receiver" && [ -e "$scratch/ready" ] ||
        fail "the receiver did not start$([ ! -f "$1" ] || echo ": $(cat "$1")")"
}

start_program() { # start_program OUTPUT
    start_confined env QT_PLUGIN_PATH="$plugins" \
        QT_QPA_GENERIC_PLUGINS="vesprel-fresh-pages${inspector:+,vesprel-inspector}${script:+,vesprel-driver}" \
        ${inspector:+VESPREL_INSPECTOR_PORT="$inspector"} \
        ${script:+VESPREL_DRIVER_SOCKET="$scratch/control"} "$program" >"$1" 2>&1 </dev/null
    browser=${children[-1]}
}
