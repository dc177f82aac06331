# SPDX-License-Identifier: Apache-2.0
# The folder that stands for the box's file system. Sourced.
# shellcheck shell=bash disable=SC2154 # the places come from layout.sh

socket_of() { printf '%s/home/.sock.vesprel' "$1"; }

fits_socket() { [ "$(socket_of "$1" | wc -c)" -le 107 ]; }

# Puts its name into VESPREL_ROOT.
name_root() {
    local default_root=${XDG_DATA_HOME:-$HOME/.local/share}/vesprel/box
    # A socket path holds 107 bytes at most; a longer home falls back to a short folder.
    fits_socket "$default_root" || default_root=/tmp/vesprel-$(id -u)
    VESPREL_ROOT=$(realpath -m -- "${VESPREL_ROOT:-$default_root}")
    export VESPREL_ROOT
    fits_socket "$VESPREL_ROOT" ||
        fail "the name of $VESPREL_ROOT is too long for the box's socket; --root FOLDER takes another"
}

# Makes the folder of this run, short enough for a box in it.
make_scratch() {
    local folder
    folder=$(realpath -m -- "${TMPDIR:-/tmp}")/vesprel-run.XXXXXX
    fits_socket "$folder/box" || folder=/tmp/vesprel-run.XXXXXX
    mktemp -d "$folder"
}

# Whether another box runs on it. Who runs one holds the lock of the folder itself: a file in it
# could be anything that a page has made there.
root_is_in_use() {
    [ -O "$VESPREL_ROOT" ] && ! flock -n "$VESPREL_ROOT" true
}

# Ends if the box would be the second one on it. Pictures have a root of their own, unless one is named.
check_root() {
    [ -n "$new$driver" ] || { [ -n "$screenshot" ] && [ -z "$root" ]; } || ! root_is_in_use || fail_in_use
}

fail_in_use() {
    fail "a box runs already on $VESPREL_ROOT. A second one beside it: $me --root FOLDER"
}

# Fills in what a box brings along.
prepare_root() {
    (umask 077 && mkdir -p "$VESPREL_ROOT") || fail "$VESPREL_ROOT cannot be made"
    # Scripts and a socket below it act for the user, so nobody else may have prepared it.
    [ -O "$VESPREL_ROOT" ] && [ ! -L "$VESPREL_ROOT" ] || fail "$VESPREL_ROOT belongs to somebody else"
    [ -w "$VESPREL_ROOT" ] || fail "nothing can be written into $VESPREL_ROOT"
    exec {running}<"$VESPREL_ROOT"
    flock -n "$running" || fail_in_use
    local system=$VESPREL_ROOT/usr/share/vesprel/web/system
    # Nor may a link that a page has made lead this script to the user's files.
    [ "$(realpath -m -- "$system")" = "$system" ] || fail "a link in $VESPREL_ROOT/usr leads out of it"
    rm -rf "$system/keyboard"
    mkdir -p "$system" "$VESPREL_ROOT/media"
    ln -s "$keyboard_pages" "$system/keyboard"
}

first_clip_or_none() { [ -e "$clips/first.ts" ] || is_gone "$1"; }

# The clips of the demo portal and of the documents' first page are made once for all roots, the
# first of them before anything else starts.
make_clips() {
    command -v ffmpeg >/dev/null || return 0
    mkdir -p "$clips" 2>/dev/null || return 0
    [ -e "$VESPREL_ROOT/media/demo" ] || ln -sfn "$clips" "$VESPREL_ROOT/media/demo"
    start "$run/demo_clips" "$clips" </dev/null
    [ -e "$clips/first.ts" ] || echo "Making the clips of the demo portal"
    wait_for 60 first_clip_or_none "${children[-1]}" || true
    [ -e "$clips/first.ts" ] || say "the first clip is not there yet"
}
