# SPDX-License-Identifier: Apache-2.0
# A picture of the box's screen. Sourced.
# shellcheck shell=bash disable=SC2154 # what is asked for comes from box

# Whether the announced portal has loaded, and not only the empty page before it.
has_loaded() { sed '1,/^NewPortal/d' "$scratch/program" | grep -q '^finishLoading true'; }

# Runs the box, saves its screen and ends with 0, or with 1 and what is wrong with it.
take_picture() {
    start_receiver "$scratch/receiver"
    start_program >"$scratch/program" 2>&1
    local reason=
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
    sed -n 's/^NetworkReplyError: *//p' "$scratch/program" | sort -u |
        while read -r line; do say "$line"; done
    grep '^cannot ' "$scratch/receiver" >&2 || true
    fail "$reason; the picture shows what is there"
}
