# SPDX-License-Identifier: Apache-2.0
# A picture of the box's screen. Sourced.
# shellcheck shell=bash disable=SC2154 # what is asked for comes from box

# How the load of the announced portal ended, true or false; empty while it has not. The empty page
# before it does not count.
load_state() {
    awk '/^setUrl: / { state = ""; is_portal = !/about:blank/ }
        /^finishLoading / && is_portal { state = $2 }
        END { print state }' "$scratch/program"
}

# Whether the receiver has given up on it, as on a page of the server that says that there is none.
is_refused() {
    [ -n "$(awk '/^cannot load|show load page error/ { refused = "yes" } /^sent: portal/ { refused = "" }
        END { print refused }' "$scratch/receiver")" ]
}

has_loaded() { [ "$(load_state)" = true ] && ! is_refused; }

loaded_or_failed() { [ -n "$(load_state)" ] || is_refused; }

# Writes the picture through our own hands, since ImageMagick reads more into a name than its letters.
save_picture() {
    import -window root "png:$scratch/picture" && cat "$scratch/picture" >"$screenshot"
}

# What the programs found wrong.
show_faults() {
    sed -n 's/^vesprel\.page: //; /^script error\|^not loaded\|^not run\|^certificate of/p' "$scratch/program" |
        sort -u | while IFS= read -r line; do say "$line"; done
    sed -n '/^cannot /p' "$scratch/receiver" | sort -u | while IFS= read -r line; do say "$line"; done
}

# Runs the box, saves its screen and ends with 0, or with 1 and what is wrong with it.
take_picture() {
    need import imagemagick
    : >"$scratch/receiver"
    : >"$scratch/program"
    start_receiver "$scratch/receiver" "$nothing"
    start_program "$scratch/program"
    wait_for 30 loaded_or_failed || true
    # A server may be starting together with this.
    wait_for 5 has_loaded || true
    local reason=
    # The demo plays something; of other portals nobody knows.
    [ -n "$portal" ] || wait_for 30 grep -q '^sent: play start' "$scratch/receiver" ||
        reason="nothing played within 30 seconds"
    # The picture shall show that time goes on.
    sleep "${after:-3}"
    has_loaded || reason="the portal did not load: $address"
    save_picture || fail "$screenshot could not be written"
    echo "Saved $screenshot"
    [ -n "$reason" ] || [ "$(identify -format %k "png:$scratch/picture")" -gt 1 ] ||
        reason="nothing is on the screen"
    show_faults
    [ -z "$reason" ] || fail "$reason"
    exit 0
}
