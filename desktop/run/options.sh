# SPDX-License-Identifier: Apache-2.0
# The command line. Sourced by run.sh, which installs and builds what it asks for, and by box.
# shellcheck shell=bash disable=SC2034 # the names are used by those

screenshot=
portal=
inspector=
driver=
script=
replay=
receiver_options=()

# port_or DEFAULT [WORD]: the word if it is a number, otherwise the default.
is_number() { [[ ${1:-} =~ ^[0-9]+$ ]]; }

read_options() {
    while [ $# -gt 0 ]; do
        case $1 in
        --help | -h) usage; exit 0 ;;
        --screenshot)
            [ $# -ge 2 ] || fail "--screenshot needs a file name"
            screenshot=$2
            shift
            ;;
        --player | --script | --junit | --record | --replay)
            [ $# -ge 2 ] || fail "$1 needs an argument"
            receiver_options+=("$1" "$2")
            [ "$1" != --script ] || script=$2
            [ "$1" != --replay ] || replay=$2
            shift
            ;;
        --inspector)
            inspector=9222
            if is_number "${2:-}"; then
                inspector=$2
                shift
            fi
            ;;
        --driver)
            driver=4444
            if is_number "${2:-}"; then
                driver=$2
                shift
            fi
            ;;
        -*) fail "unknown option $1 (see --help)" ;;
        *) [ -z "$portal" ] || fail "more than one URL"; portal=$1 ;;
        esac
        shift
    done
}
