# SPDX-License-Identifier: Apache-2.0
# What can be told to be wrong before anything is installed, built or started. Sourced.
# shellcheck shell=bash disable=SC2154 # what is asked for comes from options.sh and layout.sh

needs_file() { # needs_file OPTION FILE
    [ -f "$2" ] && [ -r "$2" ] || fail "$1: there is no file $2 that can be read"
}

port_is_taken() { (exec 3<>"/dev/tcp/127.0.0.1/$1") 2>/dev/null; }

# take_port OPTION DEFAULT: puts the port of an option that is given into the variable of its name.
take_port() {
    local name=${1#--}
    [ -n "${!name}" ] || return 0
    [ "${!name}" != default ] || declare -g "$name=$2"
    ! port_is_taken "${!name}" ||
        fail "$1: something on this machine uses port ${!name} already; $1 PORT takes another"
}

check_options() {
    check_portal
    take_port --inspector 9222
    take_port --driver 4444
    [ "$web" != default ] || web=$(free_port)
    take_port --web ''
    # The status that says that a script can't be read.
    [ -z "$script" ] || (needs_file --script "$script") || exit 2
    [ -z "$trust" ] || needs_file --trust "$trust"
    [ -z "$profile" ] || profile_file >/dev/null
    if [ -n "$screenshot" ]; then
        [ ! -d "$screenshot" ] || fail "--screenshot: $screenshot is a folder"
        [ -w "$(dirname -- "$screenshot")" ] ||
            fail "--screenshot: nothing can be written into the folder of $screenshot"
    fi
    [ -z "$watch" ] || [ -n "$(portal_folder)" ] ||
        fail "--watch looks at files, and $portal is on a server"
}

# The first port that a browser may be offered the screen at.
free_port() {
    local port
    for port in {6080..6099}; do
        port_is_taken "$port" || break
    done
    echo "$port"
}
