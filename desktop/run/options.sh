# SPDX-License-Identifier: Apache-2.0
# The command line. Sourced by run.sh, which installs and builds what it asks for, and by box.
# shellcheck shell=bash disable=SC2034 # the names are used by those

# What is asked for; empty is what is not.
portal=
profile=
root=
trust=
window= # the program's
size=   # of a screen that is made for it
no_keys=
no_sound=
watch=
verbose=
version=
inspector=
web=
driver=
new=
screenshot=
after=
script=
replay=
receiver_options=()

is_port() { [[ $1 =~ ^[0-9]{1,5}$ ]] && [ "$1" -ge 1 ] && [ "$1" -le 65535 ]; }

# port_after OPTION WORD: whether the word is the option's port; one that cannot be ends it all.
port_after() {
    [[ $2 == [0-9]* ]] && [ ! -e "$2" ] || return 1
    is_port "$2" || fail "$1: there is no port $2, they go from 1 to 65535"
}

# Reads one option with all that belongs to it, and tells in $taken how many words these were.
read_option() {
    taken=1
    case $1 in
    --help | -h) usage; exit 0 ;;
    --version) version=yes ;;
    --no-keys) no_keys=yes ;;
    --no-sound) no_sound=yes ;;
    --watch) watch=yes ;;
    --verbose) verbose=yes ;;
    --inspector | --web | --driver)
        declare -g "${1#--}=default"
        port_after "$1" "${2:-}" || return 0
        declare -g "${1#--}=$2"
        taken=2
        ;;
    --screenshot | --size | --after | --root | --profile | --trust | --window | --new | --player | \
        --script | --junit | --record | --replay)
        [ -n "${2:-}" ] || fail "$1 needs an argument (see --help)"
        read_argument "$1" "$2"
        taken=2
        ;;
    -*) fail "there is no option $1 (see --help)" ;;
    *)
        [ -z "$portal" ] || fail "two portals, $portal and $1: one at a time"
        portal=$1
        ;;
    esac
}

read_argument() { # read_argument OPTION ARGUMENT
    case $1 in
    --root) root=$2 VESPREL_ROOT=$2 ;;
    --size | --window)
        [[ $2 =~ ^[0-9]{2,5}x[0-9]{2,5}$ ]] ||
            fail "$1 needs WIDTHxHEIGHT in px, as in 1280x720, not \"$2\""
        declare -g "${1#--}=$2"
        ;;
    --after)
        [[ $2 =~ ^[0-9]+(\.[0-9]+)?$ ]] || fail "--after needs seconds, as in 2.5, not \"$2\""
        after=$2
        ;;
    --screenshot | --profile | --trust | --new) declare -g "${1#--}=$2" ;;
    *)
        receiver_options+=("$1" "$2")
        [ "$1" != --script ] || script=$2
        [ "$1" != --replay ] || replay=$2
        ;;
    esac
}

read_options() {
    local taken
    while [ $# -gt 0 ]; do
        case $1 in
        --help=* | --version=* | --no-keys=* | --no-sound=* | --watch=* | --verbose=*)
            fail "${1%%=*} takes no value (see --help)"
            ;;
        --*=*) set -- "${1%%=*}" "${1#*=}" "${@:2}" ;;
        esac
        read_option "$@"
        shift "$taken"
    done
}
