# SPDX-License-Identifier: Apache-2.0
# Debian packages that building, running and testing need. Sourced by run.sh and test.sh.
# shellcheck shell=bash disable=SC2034 # the lists are used by those

build_packages="cmake g++ ninja-build qtbase5-dev libqt5webkit5-dev
  libxcb1-dev libxcb-xtest0-dev pkg-config"
# What the desktop receiver plays and records with, and what shows the video below the portal.
# bwrap keeps what they and the pages do out of the files of whoever works here.
play_packages="mpv ffmpeg picom bubblewrap"
# What the driver of boxes is built with, and what its boxes run on.
driver_packages="libcpp-httplib-dev xvfb"
screenshot_packages="xvfb xauth imagemagick"
# What shows the screen of a box in a web browser.
web_packages="xvfb xauth x11vnc novnc websockify"
# What the tests run beside the programs, or skip themselves without.
test_packages="mpv ffmpeg xdotool openbox x11-utils xauth imagemagick $driver_packages python3-pytest python3-selenium"
# What the tests of run.sh need beside that.
desk_packages="$play_packages $screenshot_packages $web_packages chromium chromium-driver"
# What packaging/cross needs, beside the compiler of an architecture and what its emulator needs.
cross_packages="mmdebstrap uidmap"
emulator_packages="qemu-user $play_packages $screenshot_packages xdotool"
# What a short bench/run measures with; a whole one also with what docs/performance.md names.
bench_packages="libbenchmark-dev python3-xlib xvfb"
# What soak/run needs: keys for its display, and the plot of its report.
soak_packages="python3-xlib python3-matplotlib xvfb"
# What tests/tools/coverage counts lines with, and what tests/tools/mutate links and runs with.
coverage_packages=gcovr
mutation_packages="lld iproute2"
# What fuzz/run builds with, and reports coverage with.
fuzz_packages="clang llvm libclang-rt-14-dev"
# What .ci/lint runs on C++ and on shell scripts; the scripts' linter comes from npm.
lint_packages="clang-format clang-tidy clazy shellcheck"

# What packaging/build-debs and packaging/release need beside the first and the drivers.
deb_packages="debhelper dpkg-dev lintian"

# install_missing PACKAGE...: installs what is not there, as root or through sudo, and tells how far
# it is.
install_missing() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' ||
            missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    local as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    "${as_root[@]}" true || {
        echo "These packages are missing: ${missing[*]}" >&2
        return 1
    }
    echo "Installing ${missing[*]}"
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends \
        -o APT::Status-Fd=1 -o DPkg::Lock::Timeout=300 "${missing[@]}" | show_install_progress
}

# Shows the state that apt-get writes, on a terminal in one line.
show_install_progress() {
    perl -ne '
        BEGIN { $| = 1; $terminal = -t STDOUT; $shown = -25 }
        print "  $_" if /^(Need to get|After this operation)/;
        next unless /^(dl|pm)status:[^:]*:([\d.]+):/;
        my ($what, $percent) = ($1 eq "dl" ? "downloaded" : "unpacked", int $2);
        $shown = -25 if $what ne ($before // ""); $before = $what;
        if ($terminal) { printf "\r  %s: %d %%   ", $what, $percent }
        elsif ($percent >= $shown + 25) { $shown = $percent; printf "  %s: %d %%\n", $what, $percent }
        END { print "\n" if $terminal && defined $before }'
}
