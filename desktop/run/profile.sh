# SPDX-License-Identifier: Apache-2.0
# The model that the box pretends to be. Sourced.
# shellcheck shell=bash disable=SC2154 # what is asked for comes from options.sh and layout.sh

# The file of --profile: of a name, or given as one.
profile_file() {
    local file=$profiles/${profile:-desk}.env
    [[ $profile != */* && $profile != *.env ]] || file=$profile
    [ -f "$file" ] && [ -r "$file" ] ||
        fail "there is no profile $profile; there are $(cd "$profiles" && printf '%s ' *.env | sed 's/\.env//g')and files of yours"
    echo "$file"
}

# Exports what the profile says, unless the person who started this has said it.
load_profile() {
    local line file
    file=$(profile_file)
    while IFS= read -r line || [ -n "$line" ]; do
        [[ $line =~ ^([A-Za-z_][A-Za-z0-9_]*)=(.*)$ ]] || continue
        [ -n "${!BASH_REMATCH[1]+set}" ] || export "${BASH_REMATCH[1]}=${BASH_REMATCH[2]}"
    done <"$file"
}
