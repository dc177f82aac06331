# SPDX-License-Identifier: Apache-2.0
# Where the programs and their data are. run.sh names the build of a checkout in VESPREL_BUILD;
# otherwise they are where a package puts them, seen from this folder, PREFIX/lib/vesprel/run.
# Sourced.
# shellcheck shell=bash disable=SC2034,SC2154 # the names are used by box, which sets $run

if [ -n "${VESPREL_BUILD:-}" ]; then
    tree=$(cd "$run/../.." && pwd)
    program=$VESPREL_BUILD/app/vesprel
    receiver_program=$VESPREL_BUILD/desktop/vesprel-receiver
    driver_program=$VESPREL_BUILD/desktop/vesprel-driver
    plugins=$VESPREL_BUILD/desktop/plugins
    demo_portal=$tree/desktop/portal
    template=$tree/desktop/template
    profiles=$tree/desktop/profiles
    keyboard_pages=$tree/web/keyboard
    clips=$VESPREL_BUILD/clips
    unset tree
else
    prefix=$(cd "$run/../../.." && pwd)
    program=$prefix/lib/vesprel/vesprel-desktop
    receiver_program=$prefix/lib/vesprel/vesprel-receiver
    driver_program=$prefix/bin/vesprel-driver
    plugins=$prefix/lib/vesprel/plugins
    demo_portal=$prefix/share/vesprel/portal
    template=$prefix/share/vesprel/template
    profiles=$prefix/share/vesprel/profiles
    keyboard_pages=$prefix/share/vesprel/keyboard
    clips=${XDG_CACHE_HOME:-$HOME/.cache}/vesprel/clips
    unset prefix
fi
