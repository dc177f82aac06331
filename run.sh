#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Installs what is missing, builds the desktop preset, and runs the box on this PC: see --help.
set -euo pipefail
export HOME=${HOME:-~} # who starts this as a service may have none
here=$(cd "$(dirname "$0")" && pwd)
run=$here/desktop/run
export VESPREL_RUN_AS=$0
# What is interrupted may end as if it had failed by itself.
trap 'exit 130' INT TERM HUP
. "$here/packaging/packages.sh"
. "$here/desktop/run/say.sh"
. "$here/desktop/run/help.sh"
. "$here/desktop/run/options.sh"
. "$here/desktop/run/build.sh"
VESPREL_BUILD=$(build_folder)
export VESPREL_BUILD
. "$here/desktop/run/layout.sh"
. "$here/desktop/run/checks.sh"
. "$here/desktop/run/portal.sh"
. "$here/desktop/run/profile.sh"
. "$here/desktop/run/root.sh"
. "$here/desktop/run/display.sh"

read_options "$@"
# What can be wrong is told before anything is installed or built.
(
    name_root
    check_options
    choose_screen 2>/dev/null # box tells
    check_root
)
if [ -z "$new" ]; then
    choose_screen 2>/dev/null
    packages=$build_packages
    targets="vesprel vesprel-receiver vesprel-inspector vesprel-fresh-pages"
    [ -z "$script" ] || targets="$targets vesprel-driver-plugin"
    [ "$screen" = real ] || packages="$packages $screenshot_packages"
    [ -z "$web" ] || packages="$packages $web_packages"
    if [ -n "$driver" ]; then
        packages="$packages $driver_packages"
        targets="vesprel-driver $targets"
    fi
    # shellcheck disable=SC2086 # lists of words
    install_missing $packages || fail "not all packages that this needs could be installed, see above"
    # shellcheck disable=SC2086
    install_missing $play_packages || say "without all of $play_packages it plays less or nothing"
    # shellcheck disable=SC2086
    build "$VESPREL_BUILD" $targets
fi
exec "$run/box" "$@"
