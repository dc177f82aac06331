# SPDX-License-Identifier: Apache-2.0
# The folder that stands for the box's file system. Sourced.
# shellcheck shell=bash disable=SC2154 # the places come from layout.sh

# Names it and fills in what a box brings along.
prepare_root() {
    local default_root=${XDG_DATA_HOME:-$HOME/.local/share}/vesprel/box
    # A socket path holds 107 bytes at most; a longer home falls back to a short folder.
    [ "$(printf '%s/home/.sock.vesprel' "$default_root" | wc -c)" -le 107 ] ||
        default_root=/tmp/vesprel-$(id -u)
    VESPREL_ROOT=$(realpath -m "${VESPREL_ROOT:-$default_root}")
    export VESPREL_ROOT
    (umask 077 && mkdir -p "$VESPREL_ROOT")
    # Scripts and a socket below it act for the user, so nobody else may have prepared it.
    [ -O "$VESPREL_ROOT" ] && [ ! -L "$VESPREL_ROOT" ] || fail "$VESPREL_ROOT belongs to somebody else"
    local pages=$VESPREL_ROOT/usr/share/vesprel/web/system/keyboard
    rm -rf "$pages"
    mkdir -p "${pages%/*}" "$VESPREL_ROOT/media"
    ln -s "$keyboard_pages" "$pages"
}

# The clips of the demo portal are made once, the first of them before anything else starts.
make_clips() {
    command -v ffmpeg >/dev/null || return 0
    mkdir -p "$clips"
    [ -e "$VESPREL_ROOT/media/demo" ] || ln -sfn "$clips" "$VESPREL_ROOT/media/demo"
    "$run/demo_clips" "$clips" </dev/null &
    children+=($!)
    [ -e "$clips/first.ts" ] || echo "Making the clips of the demo portal"
    wait_for 60 test -e "$clips/first.ts" || say "the first clip is not there yet"
}
