# SPDX-License-Identifier: Apache-2.0
# What a script, its report and a record are written to. Sourced.
# shellcheck shell=bash disable=SC2154 # what is asked for comes from options.sh, $scratch from box

outputs=()
made_outputs=()

# Makes each of them, since they may be written where else nothing may; looking at them first tells of
# a bad script before anything starts.
prepare_outputs() {
    [ ${#receiver_options[@]} -gt 0 ] || return 0
    "$receiver_program" "${receiver_options[@]}" --check >"$scratch/outputs" || exit $?
    local file
    mapfile -t outputs <"$scratch/outputs"
    for file in ${outputs[@]+"${outputs[@]}"}; do
        [ -e "$file" ] || made_outputs+=("$file")
        : 2>/dev/null >>"$file" || fail "$file cannot be written"
    done
}

# Of those that were made here and that nothing came into, nothing stays.
remove_empty_outputs() {
    local file
    for file in ${made_outputs[@]+"${made_outputs[@]}"}; do
        [ -s "$file" ] || rm -f "$file"
    done
}
