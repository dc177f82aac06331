# SPDX-License-Identifier: Apache-2.0
# The screen of the box in a web browser of this machine. Sourced.
# shellcheck shell=bash disable=SC2154 # what is asked for comes from options.sh, $scratch from box

novnc=/usr/share/novnc

# Offers it at the port $web, to who knows the password.
offer_screen() {
    need x11vnc x11vnc
    need websockify websockify
    [ -d "$novnc" ] || need novnc novnc
    local password
    password=$(head -c 200 /dev/urandom | base64 | tr -dc 'a-hjkmnp-z2-9' | cut -c1-8)
    (umask 077 && echo "$password" >"$scratch/password")
    # IPv4 only, since its IPv6 port would be open to all networks.
    start x11vnc -display "$DISPLAY" -auth "$XAUTHORITY" -autoport 5900 -localhost -no6 -noipv6 \
        -passwdfile "rm:$scratch/password" -forever -shared -noxrecord -nocursor -quiet -norc \
        ${no_keys:+-viewonly} </dev/null >"$scratch/x11vnc" 2>&1
    wait_for 20 grep -q '^PORT=' "$scratch/x11vnc" ||
        fail "x11vnc did not start: $(tail -n 3 "$scratch/x11vnc")"
    start websockify --web "$novnc" "127.0.0.1:$web" \
        "127.0.0.1:$(sed -n 's/^PORT=//p' "$scratch/x11vnc")" </dev/null >"$scratch/websockify" 2>&1
    wait_for 20 port_is_taken "$web" ||
        fail "websockify did not start: $(tail -n 3 "$scratch/websockify")"
    cat <<EOT

The screen is at http://127.0.0.1:$web/vnc.html?autoconnect=1&resize=scale
Password: $password${no_keys:+ (keys are off)}

EOT
}
