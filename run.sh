#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Installs what is missing, builds the desktop preset, and runs the box on this PC: see --help.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
export VESPREL_RUN_AS=$0
. "$here/packaging/packages.sh"
. "$here/desktop/run/say.sh"
. "$here/desktop/run/help.sh"
. "$here/desktop/run/options.sh"

read_options "$@"

targets="vesprel vesprel-receiver vesprel-inspector vesprel-fresh-pages"
packages=$build_packages
[ -z "$screenshot" ] || packages="$packages $screenshot_packages"
if [ -n "$script" ]; then
    targets="$targets vesprel-driver-plugin"
    [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] || packages="$packages $screenshot_packages"
fi
if [ -n "$driver" ]; then
    targets=vesprel-driver
    packages="$packages $driver_packages"
fi
# shellcheck disable=SC2086 # lists of words
install_missing $packages
# shellcheck disable=SC2086
install_missing $play_packages || say "without all of $play_packages it plays less or nothing; see what is missing above"

cmake -S "$here" --preset desktop >/dev/null
# shellcheck disable=SC2086
cmake --build "$here/build/desktop" --target $targets

export VESPREL_BUILD=$here/build/desktop
exec "$here/desktop/run/box" "$@"
