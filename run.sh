#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Runs the whole box on a PC: see --help.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
. "$here/packaging/packages.sh"

usage() {
    cat <<EOT
Usage: ./run.sh [OPTION...] [URL]

Installs what is missing (Debian packages, through sudo unless you are root), builds the desktop
preset, then starts the desktop receiver and Vesprel on the portal at URL; without URL on the demo
portal. A file name works as URL too. The receiver's console is on this terminal: "help" lists its
commands. Ctrl-C, "quit" or closing the window ends everything.

  --screenshot FILE   needs no display: runs everything under Xvfb, plays something, saves a
                      picture of the screen to FILE (PNG) and ends with 0, or with 1 and the reason
                      if the portal did not load or nothing is on the screen
  --player NAME       mpv plays and records for real, simulated only pretends; by default mpv
                      where it is installed
  --script FILE       the receiver runs the commands of FILE: those of its console, and
                      "wait SECONDS" and "wait for TEXT" between them
  --inspector [PORT]  offers the pages to a WebKit browser at http://127.0.0.1:PORT (9222) for
                      inspection; otherwise this is off. It asks for no password: while it is on,
                      every program of this machine can use it, and so can a web site that is
                      open in a browser here
  --driver [PORT]     serves WebDriver clients at http://127.0.0.1:PORT (4444) and starts a box for
                      each of their sessions; needs no display, see docs/testing-portals.md
  --help              this text

EOT
    remote
    cat <<EOT

Where bwrap works, all of this can write into VESPREL_ROOT only, whatever a page does.

Environment:
  VESPREL_ROOT       folder that stands for the box's file system (socket, settings, pages, media);
                     default ~/.local/share/vesprel/box. Recordings are in media/recordings.
  Q_CACHE_PATH       folder of the disk cache; without it there is none
  Q_VESPREL_LOG=true writes the log to /tmp/vesprel.log instead of this terminal
  and every variable that the program itself reads, see docs/box.md.
EOT
}

remote() {
    cat <<EOT
The remote on the keyboard:
  arrows, Enter      move, OK             F1 F2 F3 F4         red, green, yellow, blue
  Esc, Backspace     back                 PageUp, PageDown    next and previous channel
  F5                 Backspace, for a     F11                 favourites
                     page that wants it   F12                 the box's applications
  0 to 9             the digits           Home, U             leave the portal
EOT
}

fail() {
    echo "run.sh: $*" >&2
    exit 1
}

screenshot=
portal=
inspector=
driver=
receiver_options=()
while [ $# -gt 0 ]; do
    case $1 in
    --help | -h) usage; exit 0 ;;
    --screenshot)
        [ $# -ge 2 ] || fail "--screenshot needs a file name"
        screenshot=$2
        shift
        ;;
    --player | --script)
        [ $# -ge 2 ] || fail "$1 needs an argument"
        receiver_options+=("$1" "$2")
        shift
        ;;
    --inspector)
        inspector=9222
        if [[ ${2:-} =~ ^[0-9]+$ ]]; then
            inspector=$2
            shift
        fi
        ;;
    --driver)
        driver=4444
        if [[ ${2:-} =~ ^[0-9]+$ ]]; then
            driver=$2
            shift
        fi
        ;;
    -*) fail "unknown option $1 (see --help)" ;;
    *) [ -z "$portal" ] || fail "more than one URL"; portal=$1 ;;
    esac
    shift
done

if [ -n "$driver" ]; then
    # shellcheck disable=SC2086 # lists of words
    install_missing $build_packages $driver_packages
    # shellcheck disable=SC2086
    install_missing $play_packages || echo "run.sh: without $play_packages boxes only pretend to play" >&2
    cmake -S "$here" --preset desktop >/dev/null
    cmake --build "$here/build/desktop" --target vesprel-driver
    exec "$here/build/desktop/desktop/vesprel-driver" --port "$driver"
fi

if [ -z "$screenshot" ] && [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    fail "there is no display here. ./run.sh --screenshot FILE runs without one and saves a picture."
fi

packages=$build_packages
[ -z "$screenshot" ] || packages="$packages $screenshot_packages"
# shellcheck disable=SC2086 # a list of words
install_missing $packages
# shellcheck disable=SC2086
install_missing $play_packages || echo "run.sh: not all of $play_packages could be installed; see what is missing above" >&2

cmake -S "$here" --preset desktop >/dev/null
cmake --build "$here/build/desktop" --target vesprel vesprel-receiver vesprel-inspector
bin=$here/build/desktop

children=()
scratch=$(mktemp -d "${TMPDIR:-/tmp}/vesprel-run.XXXXXX")

# The process that bwrap, which this is if there is a file of it, started; otherwise the process.
confined_process() { # confined_process PID
    local inside
    inside=$(sed -n 's/.*"child-pid": *\([0-9]*\).*/\1/p' "$scratch/bwrap.$1" 2>/dev/null || true)
    echo "${inside:-$1}"
}

# Ends what this script started, the youngest first, and nothing else.
cleanup() {
    local index
    for ((index = ${#children[@]} - 1; index >= 0; index--)); do
        kill "$(confined_process "${children[index]}")" 2>/dev/null || true
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
VESPREL_ROOT=$(realpath -m "${VESPREL_ROOT:-$default_root}")
export VESPREL_ROOT
(umask 077 && mkdir -p "$VESPREL_ROOT")
# Scripts and a socket below it act for the user, so nobody else may have prepared it.
[ -O "$VESPREL_ROOT" ] && [ ! -L "$VESPREL_ROOT" ] || fail "$VESPREL_ROOT belongs to somebody else"
DESTDIR=$VESPREL_ROOT cmake --install "$bin" --component web >/dev/null

# file_url FILE: its address, whatever characters its name has.
file_url() {
    realpath -z "$1" | perl -0pe 's/\0$//; s/([^A-Za-z0-9\/._~-])/sprintf("%%%02X", ord($1))/ge; s/^/file:\/\//'
}

address=$(file_url "$here/desktop/portal/index.html")
[ -z "$screenshot" ] || address="$address?autoplay=1"
if [ -n "$portal" ] && [ -e "$portal" ]; then
    address=$(file_url "$portal")
elif [ -n "$portal" ]; then
    case $portal in
    *://*) address=$portal ;;
    *) fail "there is no file $portal, and an address needs its scheme, as in http://$portal" ;;
    esac
fi
# As on a box, the receiver tells the program which portal to load.
export Q_VESPREL_PORTAL=about:blank

# The page on the screen is the page on the disk: nothing of it is kept, unless that is asked for.
if [ -z "${Q_CACHE_PATH:-}" ]; then
    export Q_CACHE_PATH=$scratch/cache Q_CACHE_MAX_SIZE=1
fi

# start COMMAND...: starts a child with this terminal as its input.
start() {
    "$@" <&0 &
    children+=($!)
}

# What a page, or a medium that it plays, makes a program do must not reach the files of whoever
# works here. All of them can be read, few can be written.
confinement=()
confine() {
    confinement=(--ro-bind / / --dev /dev --bind "$VESPREL_ROOT" "$VESPREL_ROOT"
        --bind "$scratch" "$scratch")
    local device
    for device in /dev/dri /dev/snd /dev/nvidia*; do
        confinement+=(--dev-bind-try "$device" "$device")
    done
    if [ "${Q_VESPREL_LOG:-}" = true ] && [ ! -L /tmp/vesprel.log ]; then
        touch /tmp/vesprel.log
        confinement+=(--bind /tmp/vesprel.log /tmp/vesprel.log)
    fi
    if [ -n "${Q_CACHE_PATH:-}" ]; then
        mkdir -p "$Q_CACHE_PATH"
        confinement+=(--bind "$Q_CACHE_PATH" "$Q_CACHE_PATH")
    fi
    bwrap "${confinement[@]}" true 2>/dev/null && return 0
    confinement=()
    echo "run.sh: bwrap is not there or may not work here; what runs can write wherever you can" >&2
}

# start_confined COMMAND...: as start, with nothing to write but the box's own.
start_confined() {
    if [ ${#confinement[@]} -eq 0 ]; then
        start "$@"
        return
    fi
    # A Ctrl-C is for what runs inside, and for this script, which then ends that.
    (
        trap '' INT
        exec bwrap "${confinement[@]}" --info-fd 9 -- "$@" 9>"$scratch/bwrap.$BASHPID"
    ) <&0 &
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

# The clips of the demo portal are made once, the first of them before anything else starts.
make_clips() {
    command -v ffmpeg >/dev/null || return 0
    local clips=$bin/clips
    mkdir -p "$VESPREL_ROOT/media" "$clips"
    [ -e "$VESPREL_ROOT/media/demo" ] || ln -sfn "$clips" "$VESPREL_ROOT/media/demo"
    "$here/desktop/demo_clips.sh" "$clips" </dev/null &
    children+=($!)
    [ -e "$clips/first.ts" ] || echo "Making the clips of the demo portal"
    wait_for 60 test -e "$clips/first.ts" || echo "run.sh: the first clip is not there yet" >&2
}

# Without a compositor the transparent parts of a portal would show no video. Where one runs, picom
# says so and ends at once.
start_compositor() {
    if [ -n "${WAYLAND_DISPLAY:-}" ] || ! command -v picom >/dev/null ||
        [[ " ${receiver_options[*]-} " == *" simulated "* ]]; then
        return 0
    fi
    picom --backend xrender --config /dev/null </dev/null >"$scratch/picom" 2>&1 &
    children+=($!)
}

# Whether the announced portal has loaded, and not only the empty page before it.
has_loaded() { sed '1,/^NewPortal/d' "$scratch/program" | grep -q '^finishLoading true'; }

ready_or_gone() { [ -e "$scratch/ready" ] || ! kill -0 "$1" 2>/dev/null; }

start_receiver() { # start_receiver OUTPUT: a file, or "-" for this terminal
    local words=("$bin/desktop/vesprel-receiver" --ready "$scratch/ready" --portal "$address")
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
    local variables=()
    [ -z "$inspector" ] || variables=("VESPREL_INSPECTOR_PORT=$inspector"
        "QT_PLUGIN_PATH=$bin/desktop/plugins" QT_QPA_GENERIC_PLUGINS=vesprel-inspector)
    start_confined env ${variables[@]+"${variables[@]}"} "$bin/app/vesprel"
}

[ -n "$portal" ] || make_clips
if [ -n "$screenshot" ]; then
    Xvfb -displayfd 3 -screen 0 1280x720x24 -nolisten tcp 3>"$scratch/display" 2>/dev/null &
    children+=($!)
    wait_for 10 test -s "$scratch/display" || fail "Xvfb did not start"
    DISPLAY=:$(cat "$scratch/display")
    export DISPLAY
    unset WAYLAND_DISPLAY
fi
# The video lies in a window of X, below the program's. Wayland desktops have X as well.
[ -z "${DISPLAY:-}" ] || export QT_QPA_PLATFORM=xcb
start_compositor
confine

if [ -n "$screenshot" ]; then
    start_receiver "$scratch/receiver"
    start_program >"$scratch/program" 2>&1
    reason=
    wait_for 30 has_loaded || reason="$address did not load"
    # The demo plays something; of other portals nobody knows.
    [ -n "$portal" ] || wait_for 30 grep -q '^sent: play start' "$scratch/receiver" ||
        reason="nothing played within 30 seconds"
    # The picture shall show that time goes on.
    sleep 3
    import -window root "png:$screenshot" || fail "$screenshot could not be written"
    echo "Saved $screenshot"
    [ -n "$reason" ] || [ "$(identify -format %k "png:$screenshot")" -gt 1 ] ||
        reason="nothing is on the screen"
    [ -n "$reason" ] || exit 0
    sed -n 's/^NetworkReplyError: */run.sh: /p' "$scratch/program" | sort -u >&2
    grep '^cannot ' "$scratch/receiver" >&2 || true
    fail "$reason; the picture shows what is there"
fi

remote
[ -z "$inspector" ] || echo "Inspector: http://127.0.0.1:$inspector"
start_receiver -
receiver=${children[-1]}
start_program
# Whichever ends first ends the other; the compositor or the clips end nothing.
status=0
wait -n "$receiver" "${children[-1]}" || status=$?
# 143 is a program that was asked to end; anything else that is not 0 is worth telling.
[ "$status" -eq 0 ] || [ "$status" -eq 143 ] || fail "it ended with status $status"
