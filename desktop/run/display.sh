# SPDX-License-Identifier: Apache-2.0
# The X display that the box is on. Sourced.
# shellcheck shell=bash disable=SC2154 # $scratch comes from box, the rest from children.sh

has_display() { [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; }

# Starts a display that nobody else can use, of the size that was asked for or that the model has.
start_display() {
    need Xvfb xvfb
    need xauth xauth
    local screen=${size:-${VESPREL_WINDOW:-1280x720}}
    # The box fills it.
    unset VESPREL_WINDOW WAYLAND_DISPLAY
    export XAUTHORITY=$scratch/xauthority
    xauth -q -f "$XAUTHORITY" add :0 . "$(od -An -N16 -tx1 /dev/urandom | tr -d ' \n')" 2>/dev/null
    start Xvfb -displayfd 3 -screen 0 "${screen}x24" -nolisten tcp -noreset -auth "$XAUTHORITY" \
        3>"$scratch/display" 2>/dev/null </dev/null
    wait_for 10 test -s "$scratch/display" || fail "Xvfb did not start"
    DISPLAY=:$(cat "$scratch/display")
    export DISPLAY
    # Xvfb looks at the key alone, programs at the number as well.
    xauth -q -f "$XAUTHORITY" list :0 2>/dev/null | while read -r _ kind key; do
        xauth -q -f "$XAUTHORITY" add "$DISPLAY" "$kind" "$key"
    done
}

# Without a compositor the transparent parts of a portal would show no video. Where one runs, picom
# says so and ends at once.
start_compositor() {
    if [ -n "${WAYLAND_DISPLAY:-}" ] || ! command -v picom >/dev/null; then
        return 0
    fi
    start picom --backend xrender --config /dev/null </dev/null >"$scratch/picom" 2>&1
}

# need COMMAND PACKAGE
need() { command -v "$1" >/dev/null || fail "this needs the package $2"; }

# Tells in $screen which one the box gets: the real one of this machine, one that is only photographed
# or looked at from a browser (then $screenshot or $web is set), or a hidden one.
choose_screen() {
    # shellcheck disable=SC2034 # run.sh and box look at it
    screen=hidden
    [ -z "$screenshot$web$driver$new" ] || return 0
    if has_display; then
        screen=real
    elif [ -t 0 ] && [ -t 1 ]; then
        web=$(free_port)
        say "there is no display here, so a web browser shows the screen"
    elif [ -z "$script" ]; then
        screenshot=vesprel.png
        say "there is neither display nor terminal here: the box plays for a few seconds and its screen goes to $PWD/vesprel.png"
    fi
}
