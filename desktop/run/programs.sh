# SPDX-License-Identifier: Apache-2.0
# The receiver and the program of the box. Sourced.
# shellcheck shell=bash disable=SC2154 # what they are started with comes from box

ready_or_gone() { [ -e "$scratch/ready" ] || ! kill -0 "$1" 2>/dev/null; }

# What a script, its report and a record are written to. Each is made here and may be written where
# else nothing may; checking them first tells of a bad script before anything starts.
outputs=()
prepare_outputs() {
    [ ${#receiver_options[@]} -gt 0 ] || return 0
    "$receiver_program" "${receiver_options[@]}" --check >"$scratch/outputs" || exit $?
    local file
    mapfile -t outputs <"$scratch/outputs"
    for file in ${outputs[@]+"${outputs[@]}"}; do
        : 2>/dev/null >>"$file" || fail "$file cannot be written"
    done
}

# Of those that nothing came into, nothing stays.
remove_empty_outputs() {
    local file
    for file in ${outputs[@]+"${outputs[@]}"}; do
        [ -s "$file" ] || rm -f "$file"
    done
}

start_receiver() { # start_receiver OUTPUT: a file, or "-" for this terminal
    local words=("$receiver_program" --ready "$scratch/ready")
    # What is replayed names its portal itself.
    [ -n "$replay" ] && [ -z "$portal" ] || words+=(--portal "$address")
    words+=(${receiver_options[@]+"${receiver_options[@]}"})
    [ -z "$script" ] || words+=(--control "$scratch/control")
    local more_confinement=() file
    for file in ${outputs[@]+"${outputs[@]}"}; do
        more_confinement+=(--bind "$file" "$file")
    done
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
        QT_QPA_GENERIC_PLUGINS="vesprel-fresh-pages${inspector:+,vesprel-inspector}${script:+,vesprel-driver}" \
        ${inspector:+VESPREL_INSPECTOR_PORT="$inspector"} \
        ${script:+VESPREL_DRIVER_SOCKET="$scratch/control"} "$program"
}
