#!/usr/bin/env bash
# Runs the whole box on a PC: see --help.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
. "$here/packaging/packages.sh"

usage() {
    cat <<EOT
Usage: ./run.sh [URL]
       ./run.sh --screenshot FILE [URL]

Installs what is missing (Debian packages, through sudo unless you are root), builds the desktop
preset, then starts the desktop receiver and Vesprel on the portal at URL; without URL on the demo
portal. A file name works as URL too. The receiver's console is on this terminal: "help" lists its
commands. Ctrl-C, "quit" or closing the window ends both.

  --screenshot FILE  needs no display: runs everything under Xvfb, plays something, saves a picture
                     of the screen to FILE (PNG) and ends with 0
  --help             this text

Environment:
  VESPREL_ROOT       folder that stands for the box's file system (socket, settings, pages);
                     default ~/.local/share/vesprel/box
  Q_VESPREL_LOG=true writes the log to /tmp/vesprel.log instead of this terminal
  and every variable that the program itself reads, see docs/box.md.
EOT
}

fail() {
    echo "run.sh: $*" >&2
    exit 1
}

screenshot=
portal=
while [ $# -gt 0 ]; do
    case $1 in
    --help | -h) usage; exit 0 ;;
    --screenshot)
        [ $# -ge 2 ] || fail "--screenshot needs a file name"
        screenshot=$2
        shift
        ;;
    -*) fail "unknown option $1 (see --help)" ;;
    *) [ -z "$portal" ] || fail "more than one URL"; portal=$1 ;;
    esac
    shift
done

if [ -z "$screenshot" ] && [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    fail "there is no display here. ./run.sh --screenshot FILE runs without one and saves a picture."
fi

packages=$build_packages
[ -z "$screenshot" ] || packages="$packages xvfb xauth imagemagick"
# shellcheck disable=SC2086 # a list of words
install_missing $packages

cmake -S "$here" --preset desktop >/dev/null
cmake --build "$here/build/desktop" --target vesprel vesprel-receiver
bin=$here/build/desktop

children=()
scratch=$(mktemp -d "${TMPDIR:-/tmp}/vesprel-run.XXXXXX")

# Ends what this script started, the youngest first, and nothing else.
cleanup() {
    local index
    for ((index = ${#children[@]} - 1; index >= 0; index--)); do
        kill "${children[index]}" 2>/dev/null || true
        wait "${children[index]}" 2>/dev/null || true
    done
    rm -rf "$scratch"
}
trap cleanup EXIT
trap 'exit 130' INT TERM HUP

# A picture shows a box as it is on its first day, whatever the user keeps in theirs.
[ -z "$screenshot" ] || export VESPREL_ROOT="$scratch/box"
default_root=${XDG_DATA_HOME:-$HOME/.local/share}/vesprel/box
# A socket path holds 107 bytes at most; a longer home falls back to a short folder.
[ "$(printf '%s/home/.sock.vesprel' "$default_root" | wc -c)" -le 107 ] ||
    default_root=/tmp/vesprel-$(id -u)
export VESPREL_ROOT=${VESPREL_ROOT:-$default_root}
mkdir -p "$VESPREL_ROOT"
DESTDIR=$VESPREL_ROOT cmake --install "$bin" --component web >/dev/null

demo=file://$here/desktop/portal/index.html
[ -z "$screenshot" ] || demo="$demo?autoplay=1"
if [ -n "$portal" ] && [ -e "$portal" ]; then
    portal=file://$(realpath "$portal")
fi
export Q_VESPREL_PORTAL=${portal:-$demo}

# start NAME COMMAND...: starts a child with this terminal as its input.
start() {
    "$@" <&0 &
    children+=($!)
}

wait_for() { # wait_for SECONDS COMMAND...
    local tries=$(($1 * 10))
    shift
    until "$@"; do
        ((tries-- > 0)) || return 1
        sleep 0.1
    done
}

receiver_serves() { [ -S "$VESPREL_ROOT/home/.sock.vesprel" ]; }

if [ -n "$screenshot" ]; then
    Xvfb -displayfd 3 -screen 0 1280x720x24 -nolisten tcp 3>"$scratch/display" 2>/dev/null &
    children+=($!)
    wait_for 10 test -s "$scratch/display" || fail "Xvfb did not start"
    DISPLAY=:$(cat "$scratch/display")
    export DISPLAY QT_QPA_PLATFORM=xcb
    "$bin/desktop/vesprel-receiver" </dev/null >"$scratch/receiver" &
    children+=($!)
    wait_for 10 receiver_serves || fail "the receiver did not start: $(cat "$scratch/receiver")"
    "$bin/app/vesprel" >"$scratch/program" 2>&1 &
    children+=($!)
    wait_for 30 grep -q '^sent: play start' "$scratch/receiver" ||
        echo "run.sh: nothing played within 30 seconds; the picture shows what is there" >&2
    sleep 3
    import -window root "$screenshot"
    echo "Saved $screenshot"
    exit 0
fi

start "$bin/desktop/vesprel-receiver"
wait_for 10 receiver_serves || fail "the receiver did not start"
start "$bin/app/vesprel"
# Whichever ends first ends the other.
wait -n || true
