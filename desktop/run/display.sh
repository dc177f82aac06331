# SPDX-License-Identifier: Apache-2.0
# The X display that the box is on. Sourced.
# shellcheck shell=bash disable=SC2154 # $scratch comes from box, the rest from children.sh

start_display() {
    Xvfb -displayfd 3 -screen 0 1280x720x24 -nolisten tcp 3>"$scratch/display" 2>/dev/null &
    children+=($!)
    wait_for 10 test -s "$scratch/display" || fail "Xvfb did not start"
    DISPLAY=:$(cat "$scratch/display")
    export DISPLAY
    unset WAYLAND_DISPLAY
}

# Without a compositor the transparent parts of a portal would show no video. Where one runs, picom
# says so and ends at once.
start_compositor() {
    if [ -n "${WAYLAND_DISPLAY:-}" ] || ! command -v picom >/dev/null; then
        return 0
    fi
    picom --backend xrender --config /dev/null </dev/null >"$scratch/picom" 2>&1 &
    children+=($!)
}
