#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Runs scripts on a whole box, with the demo portal: run.sh BOX BUILD DOCUMENTS. 77: no Xvfb here.
set -euo pipefail
command -v Xvfb >/dev/null || exit 77
box=$1
documents=$3
export VESPREL_BUILD=$2
unset DISPLAY WAYLAND_DISPLAY
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export VESPREL_ROOT=$work/root

# script STATUS OPTION...: runs the script of the standard input, which has to end so.
script() {
    local expected=$1 status=0
    shift
    cat >"$work/script"
    "$box" --player simulated --script "$work/script" --junit "$work/report.xml" "$@" \
        </dev/null >"$work/output" 2>&1 || status=$?
    [ "$status" -eq "$expected" ] && return 0
    cat "$work/output"
    echo "the script ended with $status, not $expected" >&2
    exit 1
}

# holds FILE TEXT
holds() {
    grep -qF -- "$2" "$1" && return 0
    cat "$1"
    echo "$1 does not hold: $2" >&2
    exit 1
}

# The example that people copy, and a picture.
fence=$(printf '\140\140\140')
{
    sed -n '/^## An example/,/^## The lines/p' "$documents/scripts.md" |
        sed -n "/^$fence/,/^$fence/p" | grep -v "^$fence"
    echo "screenshot $work/screen.png"
} | script 0
holds "$work/report.xml" 'tests="5" failures="0"'
[ "$(head -c 4 "$work/screen.png" | tail -c 3)" = PNG ]

script 0 <<EOT
receiver slow 300
eval window.t = Date.now(), gSTB.GetStorageInfo('{}'), Date.now() - t >= 300
expect value: true
EOT

script 1 <<EOT
eval 1
expect nothing <like> this within 0.1
EOT
holds "$work/output" "$work/script:2: expect nothing <like> this within 0.1: not printed within 0.1 s"
holds "$work/report.xml" 'failures="1"'

# A page that hangs.
script 1 <<EOT
eval setTimeout(function () { for (;;) {} }, 0)
wait 0.2
key ok within 1
EOT
holds "$work/output" "the program does not answer"

script 2 <<EOT
bogus
EOT

# What was recorded is played again, with another portal than the recorded one.
script 0 --record "$work/session" <<EOT
expect eval document.readyState === 'complete'
key ok
expect sent: play start
EOT
holds "$work/session" '"message":"PlayStart"'
demo=$(realpath "$(dirname "$box")/../portal/index.html")
script 0 --replay "$work/session" "file://$demo?again" <<EOT
expect eval location.search === '?again'
expect eval document.readyState === 'complete'
key ok
expect sent: play start
expect replay: the recording is at its end
EOT
script 2 --replay /dev/null <<EOT
eval 1
EOT
holds "$work/output" "/dev/null:0: there is no message in it"
